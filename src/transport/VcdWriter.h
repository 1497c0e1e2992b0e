// JTAG traffic as a value change dump (IEEE 1364, section 18), which wave viewers open.
//
// Each set of lines that carried traffic is a scope "jtag0" or "jtag1" with the wires TCK, TMS,
// TDI and TDO and the text STATE, the TAP's state after the last rising edge. The clock's real
// times are not known: a half clock takes one unit of 1 us. TMS, TDI and TDO change with TCK low,
// at least one unit before it rises, so a decoder that samples at rising edges sees what the TAPs
// saw. TDO is x at clocks at which nobody read it.
#pragma once

#include "objectcode/Rt_TAP.h"
#include "transport/JTagAnalyser.h"

#include <string>
#include <vector>

namespace vorel {

class TVcdWriter final : public ITrafficRecorder {
public:
    // A byte is kept for each event; what comes beyond is not recorded, and the file says so.
    static constexpr std::size_t MaxEvents = std::size_t{8} * 1024 * 1024;

    explicit TVcdWriter(std::string path) : Path(std::move(path)) {}

    void BeginWrite() override {}
    void EndWrite() override {}
    void BeginRead() override {}
    void EndRead() override {}
    void AddBytesOut(std::int32_t /*count*/) override {}
    void AddBytesIn(std::int32_t /*count*/) override {}
    void RecordSignals(std::int32_t mode, std::int32_t tms, std::int32_t tdi,
                       std::int32_t tck) override;
    void RecordTick(std::int32_t mode, std::int32_t tms, std::int32_t tdi) override;
    void RecordTdo(std::int32_t bit) override;
    void RecordTdoString(const BitText& bits) override;
    // EVorelError when the file cannot be written; the recording is kept then.
    void Save() override;

    // The file's text for what is recorded.
    std::string ToText() const;

private:
    void Add(std::uint8_t event);

    std::string Path;
    std::vector<std::uint8_t> Events;
    bool Truncated = false;
};

} // namespace vorel
