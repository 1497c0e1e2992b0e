// A chain of TAPs that share TCK and TMS: TDI -> device 0 -> ... -> last device -> TDO.
//
// The chain owns its devices. Faults can be put on any wire between two devices and on TDO.
#pragma once

#include "simulator/TapDevice.h"
#include "simulator/Wires.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace vorel::sim {

// What is wrong with an output's wire.
enum class WireFault : std::uint8_t {
    None,
    Open,      // broken: the next input sees its pull-up
    StuckLow,  // shorted to ground
    StuckHigh, // shorted to the supply
    Loop       // wired to the input: a device's TDI, or the chain's TDI for the chain's TDO
};

class TChain final : public IWireTarget {
public:
    // At most so many devices fit on a chain.
    static constexpr std::size_t MaxDevices = 10'000;

    // Puts a device behind those that are there. EVorelError when the chain is full.
    TTapDevice& Add(std::unique_ptr<TTapDevice> device);
    std::size_t DeviceCount() const noexcept { return Positions.size(); }
    // Device `index`, 0 being nearest TDI. EVorelError outside the chain.
    TTapDevice& Device(std::size_t index) const;

    // The fault on the wire behind device `index`: Open there breaks the chain between `index` and
    // the next device. EVorelError outside the chain.
    void SetWireFault(std::size_t index, WireFault fault);
    // The fault on the chain's TDO. The devices are still clocked.
    void SetTdoFault(WireFault fault) noexcept { TdoFault = fault; }

    void SetLines(bool tck, bool tms, bool tdi) override;
    void Clock(bool tms, bool tdi) override;
    // An empty chain leaves TDO to its pull-up.
    Level Tdo() const override;
    void SetTrst(bool asserted) override;
    // Rising edges of TCK so far.
    std::uint64_t ClockCount() const noexcept { return Clocks; }

private:
    struct Position {
        std::unique_ptr<TTapDevice> Device;
        WireFault Wire = WireFault::None;
    };

    void Rise();
    void Fall();

    std::vector<Position> Positions;
    WireFault TdoFault = WireFault::None;
    bool Tck = false;
    bool Tms = true;
    bool Tdi = true;
    bool Trst = false;
    std::uint64_t Clocks = 0;
};

} // namespace vorel::sim
