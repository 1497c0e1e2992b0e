#include "simulator/SoftDevice.h"

#include "support/Errors.h"

#include <utility>

namespace vorel::sim {

namespace {

TapSettings Checked(TapSettings settings) {
    if (settings.IrLength < 4) {
        throw EVorelError(StatusBadArgument, "Soft device \"" + settings.Name +
                                                 "\" needs an instruction register of at least 4 "
                                                 "bits for its instruction 11");
    }
    return settings;
}

BitText PortInstruction(std::size_t length) {
    return BitText(length - 4, '0') + "1011";
}

} // namespace

TSoftDevice::TSoftDevice(TapSettings settings) : TTapDevice(Checked(std::move(settings))) {}

TDataRegister& TSoftDevice::SelectRegister(const BitText& instruction) {
    if (instruction != PortInstruction(instruction.size())) {
        return TTapDevice::SelectRegister(instruction);
    }
    Port.ExpectAddress();
    return Port;
}

void TSoftDevice::TPort::Capture() {
    In = 0;
    InCount = 0;
    InWord = 0;
    OutCount = 0;
    OutWord = 0;
    Started = false;
    Streaming = !AddressDue && !Reading && Owner.IsStream(Number);
    Out = !AddressDue && Reading ? Owner.ReadWord(Number, 0) : 0;
    OutBit = (Out & 1) != 0;
}

void TSoftDevice::TPort::Shift(bool tdi) {
    if (Streaming) {
        TakeStreamBit(tdi);
    } else {
        In = In >> 1 | (tdi ? 0x80000000 : 0);
    }
    Out >>= 1;
    if (++OutCount == 32) {
        OutCount = 0;
        Out = !AddressDue && Reading ? Owner.ReadWord(Number, ++OutWord) : 0;
    }
    OutBit = (Out & 1) != 0;
}

void TSoftDevice::TPort::TakeStreamBit(bool tdi) {
    if (!Started) {
        Started = tdi;
        return;
    }
    In = In >> 1 | (tdi ? 0x80000000 : 0);
    if (++InCount == 32) {
        InCount = 0;
        Owner.WriteWord(Number, InWord++, In);
    }
}

void TSoftDevice::TPort::Update() {
    if (AddressDue) {
        const std::uint32_t address = In >> 24;
        Number = address >> 1;
        Reading = (address & 1) != 0;
    } else if (!Reading && !Streaming) {
        Owner.WriteWord(Number, 0, In);
    }
    AddressDue = !AddressDue;
}

} // namespace vorel::sim
