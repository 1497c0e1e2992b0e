// Logic levels and the four JTAG wires as everything in the virtual hardware sees them.
#pragma once

#include <cstdint>

namespace vorel::sim {

// Level of an output. A released output leaves its wire to the pull-up.
enum class Level : std::uint8_t { Low, High, Released };

constexpr Level ToLevel(bool high) noexcept {
    return high ? Level::High : Level::Low;
}
// What an input on that wire reads: a released wire is pulled up.
constexpr bool IsHigh(Level level) noexcept {
    return level != Level::Low;
}

// Whatever hangs on a set of wires TCK, TMS, TDI (driven from outside) and TDO: a chain of TAPs, an
// SPI device (TCK = SCK, TMS = chip select, TDI = MOSI, TDO = MISO), a multiplexer.
class IWireTarget {
public:
    IWireTarget() = default;
    IWireTarget(const IWireTarget&) = delete;
    IWireTarget& operator=(const IWireTarget&) = delete;
    virtual ~IWireTarget() = default;

    // Drives the three wires to these levels. TMS and TDI settle before an edge of TCK.
    virtual void SetLines(bool tck, bool tms, bool tdi) = 0;
    // TMS and TDI settle while TCK is low, then TCK rises and falls.
    virtual void Clock(bool tms, bool tdi) {
        SetLines(false, tms, tdi);
        SetLines(true, tms, tdi);
        SetLines(false, tms, tdi);
    }
    // The level on TDO now.
    virtual Level Tdo() const = 0;
    // The reset wire of the TAPs; while it is asserted they stay in Test-Logic-Reset.
    virtual void SetTrst(bool asserted) = 0;
};

} // namespace vorel::sim
