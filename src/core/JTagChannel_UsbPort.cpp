#include "core/JTagChannel_UsbPort.h"

#include "core/BitVector.h"
#include "core/JTagPort.h"
#include "support/Errors.h"
#include "support/Text.h"
#include "transport/Manage_UsbJtag.h"

#include <algorithm>

namespace vorel {

namespace {

// The serial bus runs at a pace of its own.
constexpr std::string_view SpiChannelName = "SPI-Devices";
constexpr std::uint32_t SpiTicksPerClock = 50;

// The multiplexer's rest position: the hard devices.
constexpr std::uint8_t RestChain = 0;
// The pod's output behind which the multiplexer sits.
constexpr std::uint8_t MultiplexedOutput = 1;

} // namespace

TJTagChannel_UsbPort::TJTagChannel_UsbPort(TUsbChannelSetup setup, TJtagPort& port, TUsbPort* pod,
                                           TJTagChannel* parent, const TCoreContext& context)
    : TJTagChannel(std::move(setup.Name), port, parent, context),
      Pod(pod),
      ChainNumber(setup.ChainNumber),
      ResetOnOpen(setup.ResetOnOpen) {
    SavedTicks.fill(static_cast<std::uint32_t>(context.TicksPerClock));
}

void TJTagChannel_UsbPort::CheckPod(bool done) const {
    if (!done) {
        throw EVorelError(Pod->LastStatus(), "transfer of channel " + GetName() + " failed");
    }
}

void TJTagChannel_UsbPort::ClearPins() noexcept {
    Tck = 0;
    Tdo = 0;
    Tdi = 0;
    Tms = 0;
}

void TJTagChannel_UsbPort::DoOpen() {
    ClearPins();
    if (Pod != nullptr) {
        SavedTicks = {Pod->GetTimingA(), Pod->GetTimingD(), Pod->GetTimingB()};
    }
    bool inSession = false;
    try {
        if (Pod != nullptr) {
            const std::uint32_t ticks =
                SameText(GetName(), SpiChannelName)
                    ? SpiTicksPerClock
                    : static_cast<std::uint32_t>(GetContext().TicksPerClock);
            CheckPod(SetTiming({ticks, ticks, ticks}));
        }
        if (BoardMode && PodChannel == MultiplexedOutput &&
            OwningPort().GetSelectedChain() != ChainNumber) {
            SelectChain(ChainNumber);
        }
        if (Pod != nullptr) {
            inSession = true;
            CheckPod(Pod->BeginSession());
        }
        if (ResetOnOpen) {
            DoResetToIdle();
        }
    } catch (...) {
        Leave(inSession);
        throw;
    }
    LastTck = 0;
}

// The session ends whatever else fails, else the pod would count it as open for ever.
void TJTagChannel_UsbPort::DoClose() {
    ClearPins();
    try {
        if (Pod != nullptr) {
            CheckPod(SetTiming(SavedTicks));
        }
        if (!ResetOnOpen && BoardMode) {
            SelectChain(RestChain);
        }
    } catch (...) {
        Leave(true);
        throw;
    }
    if (Pod != nullptr) {
        CheckPod(Pod->EndSession());
    }
}

// Gives back after a failure; what fails now has been told already.
void TJTagChannel_UsbPort::Leave(bool inSession) noexcept {
    ClearPins();
    if (Pod == nullptr) {
        return;
    }
    static_cast<void>(Guard([&] {
        SetTiming(SavedTicks);
        if (inSession) {
            Pod->EndSession();
        }
    }));
}

bool TJTagChannel_UsbPort::SetTiming(const TTiming& timing) {
    const bool first = Pod->SetTimingA(timing[0]);
    const bool second = Pod->SetTimingD(timing[1]);
    const bool third = Pod->SetTimingB(timing[2]);
    return first && second && third;
}

void TJTagChannel_UsbPort::DoWritePins() {
    if (Pod == nullptr) {
        Tms = 0;
        Tdi = 0;
        Tck = 0;
    } else if (LastTck == 0 && Tck == 1) {
        LastTms = Tms;
        LastTdi = Tdi;
    } else if (LastTck == 1 && Tck == 0) {
        LastTck = Tck;
        CheckPod(Pod->Clock(PodChannel != 0, LastTms != 0, LastTdi != 0, true));
    } else if (Tms != LastTms) {
        LastTms = Tms;
        CheckPod(Pod->SetTms(Tms));
    }
    LastTck = Tck;
}

// No capture by way of DoBeginCapture: TCK may stand high here, and stays there.
void TJTagChannel_UsbPort::DoReadTdo() {
    Tdo = 0;
    if (Pod == nullptr) {
        return;
    }
    Pod->BeginRead();
    try {
        CheckPod(Pod->Clock(PodChannel != 0, Tms != 0, Tdi != 0, false));
    } catch (...) {
        DoAbandonCapture();
        throw;
    }
    const BitText result = DoEndCapture();
    Tdo = !result.empty() && result.back() == '1' ? 1 : 0;
}

void TJTagChannel_UsbPort::DoRefresh() {
    if (Pod != nullptr) {
        CheckPod(Pod->Flush());
    }
}

void TJTagChannel_UsbPort::DoDelay(std::uint8_t ticks) {
    if (Pod != nullptr) {
        CheckPod(Pod->Delay(ticks));
    }
}

void TJTagChannel_UsbPort::DoBeginCapture() {
    if (Pod != nullptr) {
        Pod->BeginRead();
        LastTck = 0;
    }
}

BitText TJTagChannel_UsbPort::DoEndCapture() {
    BitText captured;
    if (Pod != nullptr) {
        CheckPod(Pod->EndRead(captured));
    }
    return captured;
}

void TJTagChannel_UsbPort::DoAbandonCapture() noexcept {
    if (Pod != nullptr) {
        static_cast<void>(Guard([&] {
            BitText ignored;
            Pod->EndRead(ignored);
        }));
    }
}

// All bits but the last go to the pod at once: TMS stays 0, so the TAP stays where it is.
void TJTagChannel_UsbPort::ShiftFast(std::string_view bits, std::int32_t count) {
    if (Pod != nullptr) {
        CheckPod(Pod->ClockBits(PodChannel != 0, bits, count));
    }
    const std::size_t last = static_cast<std::size_t>(count - 1) % bits.size();
    Tdi = bits[bits.size() - 1 - last] == '1' ? 1 : 0;
    Tms = 0;
    Tck = 0;
    LastTck = 0;
}

BitText TJTagChannel_UsbPort::DoShiftBits(std::string_view bits, std::int32_t count, bool capture,
                                          bool exitShift) {
    if (bits.empty() || count < 1) {
        return {};
    }
    const auto shift = [&] {
        if (count > 1) {
            ShiftFast(bits, count - 1);
        }
        const std::size_t last = static_cast<std::size_t>(count - 1) % bits.size();
        Tdi = bits[bits.size() - 1 - last] == '1' ? 1 : 0;
        DoClock(exitShift);
    };
    if (!capture) {
        shift();
        return {};
    }
    BitText captured = WithCapture(shift);
    if (captured.size() < static_cast<std::size_t>(count)) {
        captured.resize(static_cast<std::size_t>(count), '0');
    }
    return captured;
}

void TJTagChannel_UsbPort::DoSpiWriteByte(std::uint8_t value) {
    ClockSpiByte(value, [] {});
}

// The pod samples while it clocks, so no round trip lies between the bits.
std::uint8_t TJTagChannel_UsbPort::DoSpiExchangeByte(std::uint8_t value) {
    DoSpiExchangeBlock(&value, 1);
    return value;
}

void TJTagChannel_UsbPort::DoSpiExchangeBlock(std::uint8_t* buffer, std::int32_t count) {
    const std::string_view bytes(reinterpret_cast<const char*>(buffer),
                                 static_cast<std::size_t>(count));
    BitText captured = WithCapture([&] {
        for (const char byte : bytes) {
            DoSpiWriteByte(static_cast<std::uint8_t>(byte));
        }
    });
    std::reverse(captured.begin(), captured.end());
    captured.resize(bytes.size() * 8, '0');
    for (std::size_t i = 0; i < bytes.size(); ++i) {
        buffer[i] =
            static_cast<std::uint8_t>(BitsToNumber(std::string_view(captured).substr(i * 8, 8)));
    }
}

} // namespace vorel
