#include "transport/UsbPort.h"

#include "support/Errors.h"
#include "transport/UsbJtagManager.h"
#include "vorel/Analyser.h"

#include <utility>

namespace vorel {

namespace {

constexpr std::string_view ReadyIdentity = "11";

constexpr std::uint8_t Level(bool value) noexcept {
    return value ? 1 : 0;
}

} // namespace

void TUsbPort::AddSample(bool select, bool tdi) noexcept {
    const bool capture = ReadDepth > 0;
    const auto opcode =
        static_cast<std::uint8_t>(UsbPodOpcode::Sample | (select ? UsbPodOpcode::SelectFlag : 0) |
                                  (capture ? UsbPodOpcode::CaptureFlag : 0));
    Buffer.Add(opcode, Level(tdi), capture);
}

bool TUsbPort::ClockBits(bool select, std::string_view bits, std::int32_t count) {
    const bool capture = ReadDepth > 0;
    std::size_t place = bits.size();
    for (std::int32_t i = 0; i < count; ++i) {
        const bool tdi = bits[--place] == '1';
        place = place == 0 ? bits.size() : place;
        Buffer.AddClock(select, false, tdi, capture);
        if (Analyser != nullptr) [[unlikely]] {
            RecordClock(select, false, tdi, true);
        }
        if (!Buffer.TakesClocks() && !FlushIfFull()) {
            return false;
        }
    }
    return FlushIfFull();
}

bool TUsbPort::SetTms(bool level) {
    Buffer.Add(UsbPodOpcode::Tms, Level(level));
    if (Analyser != nullptr) {
        RecordedTms = Level(level);
        Analyser->RecordSignals(RecordedMode, RecordedTms, RecordedTdi, 0);
    }
    return FlushIfFull();
}

bool TUsbPort::Delay(std::uint8_t ticks) {
    Buffer.Add(UsbPodOpcode::Wait, ticks);
    return FlushIfFull();
}

bool TUsbPort::SetTiming(std::uint32_t& timing, std::uint32_t value, std::uint8_t opcode) {
    if (timing == value) {
        return true;
    }
    timing = value;
    Buffer.Add(opcode, static_cast<std::uint8_t>(value));
    return FlushIfFull();
}

bool TUsbPort::SetTimingA(std::uint32_t value) {
    return SetTiming(TimingA, value, UsbPodOpcode::TimingA);
}

bool TUsbPort::SetTimingB(std::uint32_t value) {
    return SetTiming(TimingB, value, UsbPodOpcode::TimingB);
}

bool TUsbPort::SetTimingD(std::uint32_t value) {
    return SetTiming(TimingD, value, UsbPodOpcode::TimingD);
}

bool TUsbPort::SetPodMode(std::uint32_t mode) {
    PodMode = mode;
    Buffer.Add(UsbPodOpcode::Mode, static_cast<std::uint8_t>(mode));
    return FlushIfFull();
}

bool TUsbPort::BeginSession() {
    if (SessionDepth == 0) {
        Buffer.Add(UsbPodOpcode::Session, 1);
    }
    const bool sent = Flush();
    ++SessionDepth;
    return sent;
}

bool TUsbPort::EndSession() {
    --SessionDepth;
    if (SessionDepth == 0) {
        Buffer.Add(UsbPodOpcode::Session, 0);
    }
    return Flush();
}

void TUsbPort::BeginRead() noexcept {
    ++ReadDepth;
    ReadResult.clear();
    UntoldTicks = 0;
    UntoldSamples = 0;
    if (Analyser != nullptr) {
        Analyser->BeginRead();
    }
}

bool TUsbPort::EndRead(std::string& text) {
    const bool sent = Flush();
    --ReadDepth;
    text.assign(ReadResult.rbegin(), ReadResult.rend());
    if (Analyser != nullptr) {
        if (sent) {
            RecordResult(text);
        }
        Analyser->EndRead();
    }
    return sent;
}

void TUsbPort::RecordClock(bool select, bool tms, bool tdi, bool tick) noexcept {
    RecordedMode = Level(select);
    RecordedTdi = Level(tdi);
    if (tick) {
        RecordedTms = Level(tms);
        Analyser->RecordTick(RecordedMode, RecordedTms, RecordedTdi);
        UntoldTicks += ReadDepth > 0 ? 1 : 0;
    } else {
        Analyser->RecordSignals(RecordedMode, RecordedTms, RecordedTdi, 0);
        UntoldSamples += ReadDepth > 0 ? 1 : 0;
    }
}

// The newest bits stand at the left. A read that mixes clocks and samples is not told: the recorder
// could not say which bit belongs where.
void TUsbPort::RecordResult(const std::string& text) noexcept {
    const std::size_t ticks = std::exchange(UntoldTicks, 0);
    const std::size_t samples = std::exchange(UntoldSamples, 0);
    if (samples == 0 && ticks > 0 && ticks <= text.size()) {
        static_cast<void>(Guard([&] { return Analyser->RecordTdoString(text.substr(0, ticks)); }));
    } else if (samples == 1 && ticks == 0 && !text.empty()) {
        Analyser->RecordTdo(text.front() == '1' ? 1 : 0);
    }
}

bool TUsbPort::ReadIdentity(std::string& text) {
    BeginRead();
    Buffer.Add(UsbPodOpcode::Identify, 0, true);
    return EndRead(text);
}

bool TUsbPort::IsReady() {
    std::string identity;
    ReadIdentity(identity);
    return identity == ReadyIdentity;
}

bool TUsbPort::Flush() {
    if (Buffer.GetWriteLen() < TUsbBuffer::Capacity) {
        Buffer.Add(UsbPodOpcode::EndOfBatch, 0);
    }
    if (Analyser == nullptr) {
        return Buffer.Transfer(ReadResult);
    }
    Analyser->BeginWrite();
    const bool sent = Buffer.Transfer(ReadResult);
    Analyser->EndWrite();
    return sent;
}

WideText TUsbPort::ProductName() {
    return Manager.ProductName(DeviceIndex);
}

WideText TUsbPort::SerialNumber() {
    return Manager.SerialNumber(DeviceIndex);
}

Status TUsbPort::LastStatus() const noexcept {
    return StatusFromUsb(Buffer.GetLastError());
}

} // namespace vorel
