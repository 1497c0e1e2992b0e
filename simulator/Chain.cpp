#include "simulator/Chain.h"

#include "support/Errors.h"

#include <string>
#include <utility>

namespace vorel::sim {

namespace {

// The level behind an output's wire, given the level on the input that a loop connects.
Level Behind(WireFault fault, Level output, bool input) noexcept {
    switch (fault) {
    case WireFault::Open:
        return Level::Released;
    case WireFault::StuckLow:
        return Level::Low;
    case WireFault::StuckHigh:
        return Level::High;
    case WireFault::Loop:
        return ToLevel(input);
    case WireFault::None:
        break;
    }
    return output;
}

EVorelError OutsideChain(std::size_t index, std::size_t count) {
    return {StatusIndexOutOfRange, "The chain has no device " + std::to_string(index) +
                                       ", it has " + std::to_string(count)};
}

} // namespace

TTapDevice& TChain::Add(std::unique_ptr<TTapDevice> device) {
    if (Positions.size() >= MaxDevices) {
        throw EVorelError(StatusBadArgument,
                          "A chain holds at most " + std::to_string(MaxDevices) + " devices");
    }
    Positions.push_back({std::move(device)});
    return *Positions.back().Device;
}

TTapDevice& TChain::Device(std::size_t index) const {
    if (index >= Positions.size()) {
        throw OutsideChain(index, Positions.size());
    }
    return *Positions[index].Device;
}

void TChain::SetWireFault(std::size_t index, WireFault fault) {
    if (index >= Positions.size()) {
        throw OutsideChain(index, Positions.size());
    }
    Positions[index].Wire = fault;
}

void TChain::SetLines(bool tck, bool tms, bool tdi) {
    Tms = tms;
    Tdi = tdi;
    if (tck != std::exchange(Tck, tck)) {
        tck ? Rise() : Fall();
    }
}

void TChain::Clock(bool tms, bool tdi) {
    if (Tck) {
        SetLines(false, tms, tdi);
    }
    Tms = tms;
    Tdi = tdi;
    ++Clocks;
    if (Trst) {
        return;
    }
    // Both edges in one pass: each device's old output is taken before its falling edge.
    bool input = tdi;
    for (Position& position : Positions) {
        TTapDevice& device = *position.Device;
        const bool next = IsHigh(Behind(position.Wire, device.Tdo(), input));
        device.Rise(tms, input);
        device.Fall();
        input = next;
    }
}

void TChain::Rise() {
    ++Clocks;
    if (Trst) {
        return;
    }
    bool input = Tdi;
    for (Position& position : Positions) {
        position.Device->Rise(Tms, input);
        input = IsHigh(Behind(position.Wire, position.Device->Tdo(), input));
    }
}

void TChain::Fall() {
    if (Trst) {
        return;
    }
    for (Position& position : Positions) {
        position.Device->Fall();
    }
}

Level TChain::Tdo() const {
    if (TdoFault != WireFault::None) {
        return Behind(TdoFault, Level::Released, Tdi);
    }
    // Only loops hand an input through; otherwise the last wire alone decides.
    std::size_t first = Positions.size();
    while (first > 0 && Positions[first - 1].Wire == WireFault::Loop) {
        --first;
    }
    if (first == 0) {
        return Positions.empty() ? Level::Released : ToLevel(Tdi);
    }
    const Position& source = Positions[first - 1];
    return Behind(source.Wire, source.Device->Tdo(), false);
}

void TChain::SetTrst(bool asserted) {
    if (asserted && !Trst) {
        for (Position& position : Positions) {
            position.Device->Reset();
        }
    }
    Trst = asserted;
}

} // namespace vorel::sim
