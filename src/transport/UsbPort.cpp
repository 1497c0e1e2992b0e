#include "transport/UsbPort.h"

#include "transport/UsbJtagManager.h"

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
        Buffer.AddClock(select, false, bits[--place] == '1', capture);
        place = place == 0 ? bits.size() : place;
        if (!Buffer.TakesClocks() && !FlushIfFull()) {
            return false;
        }
    }
    return FlushIfFull();
}

bool TUsbPort::SetTms(bool level) {
    Buffer.Add(UsbPodOpcode::Tms, Level(level));
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
}

bool TUsbPort::EndRead(std::string& text) {
    const bool sent = Flush();
    --ReadDepth;
    text.assign(ReadResult.rbegin(), ReadResult.rend());
    return sent;
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
    return Buffer.Transfer(ReadResult);
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
