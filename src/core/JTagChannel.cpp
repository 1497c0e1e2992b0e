#include "core/JTagChannel.h"

#include "core/BitVector.h"
#include "core/JTagPort.h"

#include <algorithm>

namespace vorel {

namespace {

// Instructions of a board's controller: one takes the address, the other the content.
constexpr std::uint32_t BoardDataInstruction = 10;
constexpr std::uint32_t BoardAddressInstruction = 11;
// The address byte of the one register in use, for both directions.
constexpr std::uint8_t BoardReadAccess = 1;
constexpr std::uint8_t BoardWriteAccess = 129;

// The multiplexer's value that leads to the SPI devices; the device number stands above it.
constexpr std::uint8_t SpiChainNumber = 2;
constexpr int SpiSelectPolls = 100;

} // namespace

TJTagChannel::TJTagChannel(std::string name, TJtagPort& port, TJTagChannel* parent,
                           const TCoreContext& context)
    : Name(std::move(name)), Port(port), Parent(parent), Context(context) {}

TJTagChannel::~TJTagChannel() = default;

bool TJTagChannel::HasDevice(std::int32_t index) const noexcept {
    return index >= 0 && index < DeviceCount();
}

std::int32_t TJTagChannel::IndexOf(const TJTagDevice& device) const noexcept {
    for (std::size_t i = 0; i < Devices.size(); ++i) {
        if (Devices[i].get() == &device) {
            return static_cast<std::int32_t>(i);
        }
    }
    return -1;
}

// Makes room for the object's retirement right away, so that retiring cannot fail.
std::unique_ptr<TJTagDevice> TJTagChannel::NewDevice() {
    if (RetiredDevices.capacity() <= DevicesMade) {
        RetiredDevices.reserve(2 * DevicesMade + 8);
    }
    auto device = std::make_unique<TJTagDevice>(*this, Context);
    ++DevicesMade;
    return device;
}

std::unique_ptr<TJTagDevice> TJTagChannel::TakeById(TDeviceList& list, std::uint32_t id) {
    const auto hit = std::find_if(list.begin(), list.end(), [id](const auto& device) {
        return device->JTagId() != 0 && device->JTagId() == id;
    });
    if (hit == list.end()) {
        return nullptr;
    }
    std::unique_ptr<TJTagDevice> device = std::move(*hit);
    list.erase(hit);
    return device;
}

std::unique_ptr<TJTagDevice> TJTagChannel::TakeRetired(std::uint32_t id) {
    return TakeById(RetiredDevices, id);
}

void TJTagChannel::Retire(TDeviceList& devices) noexcept {
    for (std::unique_ptr<TJTagDevice>& device : devices) {
        RetiredDevices.push_back(std::move(device));
    }
    devices.clear();
}

void TJTagChannel::DoLock() {
    if (AccessCount == 0) {
        DoOpen();
    }
    ++AccessCount;
}

void TJTagChannel::DoUnlock() {
    if (AccessCount < 1) {
        return;
    }
    --AccessCount;
    if (AccessCount == 0) {
        DoClose();
    }
}

void TJTagChannel::DoClock(bool tms) {
    Tms = tms ? 1 : 0;
    DoWritePins();
    Tck = 1;
    DoWritePins();
    Tck = 0;
    DoWritePins();
    Tap.Step(Tms);
}

void TJTagChannel::DoResetTap() {
    for (int i = 0; i < 5; ++i) {
        DoClock(true);
    }
    Tap.SetState(TTapState::RESET);
}

void TJTagChannel::DoResetToIdle() {
    DoResetTap();
    DoTapMove(TTapState::RESET, TTapState::IDLE);
}

void TJTagChannel::DoTapMove(TTapState from, TTapState to) {
    for (const char tms : FindTmsPath(from, to)) {
        DoClock(tms == '1');
    }
}

// A whole scan from Run-Test/Idle and back, around the shift in between.
template<class Shift>
auto TJTagChannel::FromIdle(TTapState shiftState, TTapState exitState, Shift&& shift) {
    DoTapMove(TTapState::IDLE, shiftState);
    auto captured = shift();
    DoTapMove(exitState, TTapState::IDLE);
    return captured;
}

BitText TJTagChannel::DoShiftBits(std::string_view bits, std::int32_t count, bool capture,
                                  bool exitShift) {
    if (bits.empty()) {
        return {};
    }
    const auto shift = [&] {
        std::size_t place = bits.size();
        for (std::int32_t i = 0; i < count; ++i) {
            Tdi = bits[--place] == '1' ? 1 : 0;
            DoWritePins();
            DoClock(exitShift && i == count - 1);
            place = place == 0 ? bits.size() : place;
        }
    };
    if (capture) {
        return WithCapture(shift);
    }
    shift();
    return {};
}

BitText TJTagChannel::DoShiftDataRegister(std::string_view bits, std::int32_t count, bool capture,
                                          bool exitShift, std::int32_t device) {
    if (!HasDevice(device)) {
        return {};
    }
    DoShiftBits("0", DeviceCount() - device - 1, false, false);
    BitText captured = DoShiftBits(bits, count, capture, exitShift && device == 0);
    DoShiftBits("0", device, false, exitShift);
    return captured;
}

BitText TJTagChannel::DoShiftInstructionRegister(std::string_view bits, std::int32_t device,
                                                 bool capture, bool exitShift) {
    BitText captured;
    for (std::int32_t i = DeviceCount() - 1; i >= 0; --i) {
        const std::int32_t length = Devices[static_cast<std::size_t>(i)]->IrLengthNow();
        const bool exit = exitShift && i == 0;
        if (i == device) {
            captured = DoShiftBits(bits, length, capture, exit);
        } else {
            DoShiftBits("1", length, false, exit);
        }
    }
    return captured;
}

void TJTagChannel::DoScanDrWrite(std::uint32_t value, std::int32_t bitCount, std::int32_t device) {
    if (HasDevice(device)) {
        FromIdle(TTapState::DRSHIFT, TTapState::DREXIT1, [&] {
            return DoShiftDataRegister(NumberToBits(value, bitCount), bitCount, false, true,
                                       device);
        });
    }
}

std::uint32_t TJTagChannel::DoScanDrExchange(std::uint32_t value, std::int32_t bitCount,
                                             std::int32_t device) {
    if (!HasDevice(device)) {
        return 0;
    }
    return BitsToNumber(FromIdle(TTapState::DRSHIFT, TTapState::DREXIT1, [&] {
        return DoShiftDataRegister(NumberToBits(value, bitCount), bitCount, true, true, device);
    }));
}

BitText TJTagChannel::DoScanDrFill(bool bit, std::int32_t count, std::int32_t device) {
    if (!HasDevice(device)) {
        return {};
    }
    return FromIdle(TTapState::DRSHIFT, TTapState::DREXIT1, [&] {
        return DoShiftDataRegister(bit ? "1" : "0", count, true, true, device);
    });
}

BitText TJTagChannel::DoScanIr(std::string_view bits, bool capture, std::int32_t device) {
    if (!HasDevice(device)) {
        return {};
    }
    return FromIdle(TTapState::IRSHIFT, TTapState::IREXIT1,
                    [&] { return DoShiftInstructionRegister(bits, device, capture, true); });
}

void TJTagChannel::DoScanIrWrite(std::uint32_t value, std::int32_t device) {
    DoScanIr(NumberToBits(value, 32), false, device);
}

std::uint8_t TJTagChannel::AccessBoardUnit(std::uint8_t unit, std::uint8_t access,
                                           std::uint8_t value) {
    DoScanIrWrite(BoardAddressInstruction, unit);
    DoScanDrWrite(access, 8, unit);
    DoScanIrWrite(BoardDataInstruction, unit);
    return static_cast<std::uint8_t>(DoScanDrExchange(value, 8, unit));
}

std::uint8_t TJTagChannel::AccessBoardRegisters(std::uint8_t unit, std::uint8_t access,
                                                std::uint8_t value) {
    if (unit != AllUnits) {
        return AccessBoardUnit(unit, access, value);
    }
    const std::int32_t units = std::min<std::int32_t>(DeviceCount(), AllUnits);
    for (std::int32_t i = 0; i < units; ++i) {
        AccessBoardUnit(static_cast<std::uint8_t>(i), access, value);
    }
    return 0;
}

void TJTagChannel::DoWriteBoardRegister(std::uint8_t unit, std::uint8_t value) {
    if (Parent == nullptr) {
        AccessBoardRegisters(unit, BoardWriteAccess, value);
        return;
    }
    TChannelLock lock(*Parent);
    Parent->DoWriteBoardRegister(unit, value);
    lock.Release();
}

std::uint8_t TJTagChannel::DoReadBoardRegister(std::uint8_t unit) {
    if (Parent == nullptr) {
        return AccessBoardRegisters(unit, BoardReadAccess, 0);
    }
    TChannelLock lock(*Parent);
    const std::uint8_t value = Parent->DoReadBoardRegister(unit);
    lock.Release();
    return value;
}

// Half a switch is worse than none: until all units have the number, the position counts as
// unknown.
void TJTagChannel::SelectChain(std::uint8_t chain) {
    Port.SetSelectedChain(TJtagPort::NoChain);
    DoWriteBoardRegister(AllUnits, chain);
    Port.SetSelectedChain(chain);
}

bool TJTagChannel::DoSelectSpiUnit(std::uint8_t unit, std::uint8_t device) {
    DoWriteBoardRegister(AllUnits, SpiChainNumber);
    DoWriteBoardRegister(unit, static_cast<std::uint8_t>(device % 32 * 4 + SpiChainNumber));
    bool ready = false;
    for (int i = 0; i < SpiSelectPolls && !ready; ++i) {
        ready = (DoReadBoardRegister(unit) & 1U) == 0;
    }
    Port.SetSelectedChain(SpiChainNumber);
    return ready;
}

void TJTagChannel::DoSpiWriteByte(std::uint8_t value) {
    DoSpiExchangeByte(value);
}

std::uint8_t TJTagChannel::DoSpiExchangeByte(std::uint8_t value) {
    unsigned received = 0;
    ClockSpiByte(value, [&] {
        DoReadTdo();
        received = received << 1U | Tdo;
    });
    return static_cast<std::uint8_t>(received);
}

void TJTagChannel::DoSpiExchangeBlock(std::uint8_t* buffer, std::int32_t count) {
    std::for_each(buffer, buffer + count,
                  [this](std::uint8_t& byte) { byte = DoSpiExchangeByte(byte); });
}

void TJTagChannel::DoSpiWriteNumber(std::uint32_t value, int bytes) {
    for (int i = bytes - 1; i >= 0; --i) {
        DoSpiExchangeByte(static_cast<std::uint8_t>(value >> (8U * static_cast<unsigned>(i))));
    }
}

} // namespace vorel
