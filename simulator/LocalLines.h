// JTAG lines that end at virtual hardware in the same process.
#pragma once

#include "simulator/JtagLines.h"
#include "simulator/Wires.h"

namespace vorel::sim {

class TLocalLines final : public IJtagLines {
public:
    // The target is not owned and must outlive the lines.
    explicit TLocalLines(IWireTarget& target) noexcept : Target(target) {}

    void Clock(bool tms, bool tdi) override;
    void ClockSampled(bool tms, bool tdi) override;
    void SetTms(bool level) override;
    void SetTdi(bool level) override;
    void Sample() override;
    // Never fails.
    bool Finish(std::vector<std::uint8_t>& samples) override;
    std::string ErrorText() const override { return {}; }

private:
    IWireTarget& Target;
    bool Tms = true;
    bool Tdi = true;
    std::vector<std::uint8_t> Samples;
};

} // namespace vorel::sim
