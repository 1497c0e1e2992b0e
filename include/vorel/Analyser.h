// Who is told of the traffic on JTAG lines. What drives lines tells, as it happens; a host that
// records hands its analyser to the library (IHostClient::GetTrafficAnalyser), and it must stay
// until the library is unloaded.
//
// `mode` names the set of lines: a pod's output, 0 or 1; a cable's board channel is 1, its other
// channels are 0. Levels are 0 or 1. Statuses are those of the recorder's own failures; without a
// recorder every operation succeeds and does nothing.
#pragma once

#include "vorel/Interface.h"

namespace vorel {

class IJTagAnalyser : public IInterface {
public:
    static constexpr Guid Id{
        0xAD251A61, 0x3A05, 0x4A9E, {0x91, 0xDF, 0x77, 0xCD, 0xDD, 0x23, 0xB5, 0x18}};

    // Transfers to and from the hardware; they nest.
    virtual Status BeginWrite() noexcept = 0;
    virtual Status EndWrite() noexcept = 0;
    virtual Status BeginRead() noexcept = 0;
    virtual Status EndRead() noexcept = 0;
    // Bytes that a transfer moved.
    virtual Status AddBytesOut(std::int32_t count) noexcept = 0;
    virtual Status AddBytesIn(std::int32_t count) noexcept = 0;
    // The lines were brought to these levels.
    virtual Status RecordSignals(std::int32_t mode, std::int32_t tms, std::int32_t tdi,
                                 std::int32_t tck) noexcept = 0;
    // One whole clock with these levels.
    virtual Status RecordTick(std::int32_t mode, std::int32_t tms, std::int32_t tdi) noexcept = 0;
    // TDO was read now, in the state that the line recorded last left.
    virtual Status RecordTdo(std::int32_t bit) noexcept = 0;
    // TDO as sampled at the last clocks, one character for each, the oldest rightmost.
    virtual Status RecordTdoString(const BitText& bits) noexcept = 0;
    // Writes what is recorded, and starts anew.
    virtual Status Save() noexcept = 0;

protected:
    ~IJTagAnalyser() = default;
};

} // namespace vorel
