#include "simulator/Board.h"

#include "support/Errors.h"

#include <string>
#include <utility>

namespace vorel::sim {

TBoardController& TBoard::AddController(const TapSettings& settings) {
    auto controller = std::make_unique<TBoardController>(
        settings, [this](std::uint8_t value) { Multiplexer.Select(value); });
    TBoardController& result = *controller;
    Controllers.Add(std::move(controller));
    return result;
}

void TBoard::SetSpiDevice(std::size_t number, std::unique_ptr<IWireTarget> device) {
    if (number >= MaxSpiDevices || Multiplexer.Spi[number] != nullptr) {
        throw EVorelError(StatusBadArgument,
                          "SPI device " + std::to_string(number) + " is above 31 or there already");
    }
    Multiplexer.Spi[number] = std::move(device);
}

IWireTarget* TBoard::SpiDevice(std::size_t number) const noexcept {
    return number < MaxSpiDevices ? Multiplexer.Spi[number].get() : nullptr;
}

void TBoard::TMultiplexer::SetLines(bool tck, bool tms, bool tdi) {
    if (Current != nullptr) {
        Current->SetLines(tck, tms, tdi);
    }
}

void TBoard::TMultiplexer::Clock(bool tms, bool tdi) {
    if (Current != nullptr) {
        Current->Clock(tms, tdi);
    }
}

Level TBoard::TMultiplexer::Tdo() const {
    return Current != nullptr ? Current->Tdo() : Level::Released;
}

void TBoard::TMultiplexer::SetTrst(bool asserted) {
    Hard.SetTrst(asserted);
    Soft.SetTrst(asserted);
}

void TBoard::TMultiplexer::Select(std::uint8_t value) {
    IWireTarget* const before = Current;
    Selection = value;
    switch (value & 3) {
    case 0:
        Current = &Hard;
        break;
    case 1:
        Current = &Soft;
        break;
    case 2:
        Current = Spi[(value >> 2) % MaxSpiDevices].get();
        break;
    default:
        Current = nullptr;
        break;
    }
    // What is no longer connected sees its pull-ups: an SPI device is deselected.
    if (before != nullptr && before != Current) {
        before->SetLines(false, true, true);
    }
}

} // namespace vorel::sim
