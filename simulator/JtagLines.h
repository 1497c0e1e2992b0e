// One set of JTAG lines as a pod's firmware drives it: operations are queued, and one call runs
// what is queued and collects all samples of TDO in order.
//
// So lines behind a socket cost one write and one read per batch, however many samples it holds.
// Lines within the process do each operation at once. The four lines of a pod are driven
// independently; the order of operations is kept within one set of lines and, for local lines,
// across all of them.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vorel::sim {

class IJtagLines {
public:
    IJtagLines() = default;
    IJtagLines(const IJtagLines&) = delete;
    IJtagLines& operator=(const IJtagLines&) = delete;
    virtual ~IJtagLines() = default;

    // One clock: TMS and TDI settle while TCK is low, TCK rises and falls.
    virtual void Clock(bool tms, bool tdi) = 0;
    // The same, with TDO sampled just before TCK rises.
    virtual void ClockSampled(bool tms, bool tdi) = 0;
    // Levels without a clock.
    virtual void SetTms(bool level) = 0;
    virtual void SetTdi(bool level) = 0;
    // Samples TDO once, without a clock.
    virtual void Sample() = 0;
    // Runs what is queued and appends the samples since the last call, 0 or 1 each, in order. False
    // when the hardware could not be reached: the samples are then worthless, and every later call
    // fails too.
    virtual bool Finish(std::vector<std::uint8_t>& samples) = 0;
    // Why Finish failed; empty while it has not.
    virtual std::string ErrorText() const = 0;
};

} // namespace vorel::sim
