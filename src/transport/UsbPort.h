// One USB JTAG pod as channels and ports see it.
#pragma once

#include "transport/UsbBuffer.h"
#include "vorel/Status.h"

#include <string>
#include <string_view>

namespace vorel {

class IJTagAnalyser;

// Owned by the TUsbJtagManager. Commands are collected and sent when the batch is full, when an
// answer is needed or on Flush; a shift never costs a USB transfer for each bit. All operations
// that add to the batch give false when that made a transfer necessary and it failed; LastStatus
// tells why.
class TUsbPort {
public:
    TUsbPort(TUsbJtagManager& manager, std::int32_t deviceIndex) noexcept
        : Manager(manager), Buffer(manager, deviceIndex), DeviceIndex(deviceIndex) {}
    TUsbPort(const TUsbPort&) = delete;
    TUsbPort& operator=(const TUsbPort&) = delete;

    // Number of the pod among the devices of its interface class, from 0.
    std::int32_t GetDeviceIndex() const noexcept { return DeviceIndex; }

    // With `tick` one TCK cycle with these levels on the signal set `select` (0 or 1), and one bit
    // of TDO into the result while a read is open. Without `tick` no clock: TDI is driven and,
    // while a read is open, TDO sampled once; `tms` plays no part.
    bool Clock(bool select, bool tms, bool tdi, bool tick) {
        if (tick) {
            Buffer.AddClock(select, tms, tdi, ReadDepth > 0);
        } else {
            AddSample(select, tdi);
        }
        if (Analyser != nullptr) [[unlikely]] {
            RecordClock(select, tms, tdi, tick);
        }
        return FlushIfFull();
    }
    // A long shift: `count` clocks with TMS 0, TDI from the right end of `bits` and again from the
    // right when they run out. `bits` must not be empty. A batch goes only when its last item is
    // full as well, so it carries 1,020 clocks.
    bool ClockBits(bool select, std::string_view bits, std::int32_t count);
    // Sets the level of TMS without a clock.
    bool SetTms(bool level);
    // Makes the pod wait for 0 to 255 ticks.
    bool Delay(std::uint8_t ticks);

    // The low byte goes to the pod, and only when the value differs from the last one.
    bool SetTimingA(std::uint32_t value);
    bool SetTimingB(std::uint32_t value);
    bool SetTimingD(std::uint32_t value);
    std::uint32_t GetTimingA() const noexcept { return TimingA; }
    std::uint32_t GetTimingB() const noexcept { return TimingB; }
    std::uint32_t GetTimingD() const noexcept { return TimingD; }

    // 0 for a board behind the pod, 1 for bare chains. Always sent.
    bool SetPodMode(std::uint32_t mode);
    std::uint32_t GetPodMode() const noexcept { return PodMode; }

    // Sessions nest; the outermost switches the pod's outputs on and off. Both flush.
    bool BeginSession();
    bool EndSession();

    // Reads nest, but have one result, which the innermost BeginRead empties. While a read is open
    // every clock captures. `text` gives the bits, the first one captured rightmost.
    void BeginRead() noexcept;
    bool EndRead(std::string& text);

    // The pod's two characters of identity; ready pods give "11".
    bool ReadIdentity(std::string& text);
    bool IsReady();

    // Sends what waits; an empty batch goes as its end-of-batch item alone.
    bool Flush();
    bool FlushIfFull() { return !Buffer.IsFull() || Flush(); }

    // Who is told of every clock and every bit read; not owned, null for nobody. What the recorder
    // fails in does not disturb the traffic.
    void SetAnalyser(IJTagAnalyser* analyser) noexcept { Analyser = analyser; }

    // The texts of the pod's device descriptor; empty when they cannot be read.
    WideText ProductName();
    WideText SerialNumber();

    // The failing status of the last transfer, StatusOk when it succeeded or none took place.
    Status LastStatus() const noexcept;

private:
    void AddSample(bool select, bool tdi) noexcept;
    bool SetTiming(std::uint32_t& timing, std::uint32_t value, std::uint8_t opcode);
    void RecordClock(bool select, bool tms, bool tdi, bool tick) noexcept;
    void RecordResult(const std::string& text) noexcept;

    TUsbJtagManager& Manager;
    TUsbBuffer Buffer;
    std::int32_t DeviceIndex;
    std::string ReadResult; // reversed, so that it grows at its end; EndRead turns it
    std::int32_t ReadDepth = 0;
    std::int32_t SessionDepth = 0;
    std::uint32_t TimingA = 0;
    std::uint32_t TimingB = 0;
    std::uint32_t TimingD = 0;
    std::uint32_t PodMode = 0;

    IJTagAnalyser* Analyser = nullptr;
    std::int32_t RecordedMode = 0; // levels told last
    std::int32_t RecordedTms = 0;
    std::int32_t RecordedTdi = 0;
    std::size_t UntoldTicks = 0; // captured in the open read, and its result not told yet
    std::size_t UntoldSamples = 0;
};

} // namespace vorel
