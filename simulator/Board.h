// A development board: its controller chain and the multiplexer that connects one of the target's
// chains, or one SPI device, to the board's second set of lines.
//
// The value written to a controller's multiplexer register selects: bits 1 and 0 are 0 for the hard
// chain, 1 for the soft chain, 2 for the SPI device of number (value >> 2); 3, or an SPI device
// that is not there, connects nothing. With several controllers the value written last holds. After
// power-up the hard chain is connected.
#pragma once

#include "simulator/BoardController.h"
#include "simulator/Chain.h"

#include <array>
#include <memory>

namespace vorel::sim {

class TBoard final {
public:
    static constexpr std::size_t MaxSpiDevices = 32;

    // The chains are the target's and must outlive the board.
    TBoard(TChain& hardChain, TChain& softChain) : Multiplexer(hardChain, softChain) {}

    // Puts a controller behind those that are on the board chain.
    TBoardController& AddController(const TapSettings& settings);
    // Puts an SPI device on the board as `number`, 0 to 31; EVorelError for another number or one
    // that is taken.
    void SetSpiDevice(std::size_t number, std::unique_ptr<IWireTarget> device);
    // Null when there is none.
    IWireTarget* SpiDevice(std::size_t number) const noexcept;

    // The first set of lines.
    TChain& ControllerChain() noexcept { return Controllers; }
    // The second set of lines.
    IWireTarget& MultiplexedLines() noexcept { return Multiplexer; }
    // The value that the multiplexer follows now.
    std::uint8_t Selection() const noexcept { return Multiplexer.Selection; }

private:
    class TMultiplexer final : public IWireTarget {
    public:
        TMultiplexer(TChain& hardChain, TChain& softChain)
            : Hard(hardChain), Soft(softChain), Current(&hardChain) {}

        void SetLines(bool tck, bool tms, bool tdi) override;
        void Clock(bool tms, bool tdi) override;
        Level Tdo() const override;
        void SetTrst(bool asserted) override;
        void Select(std::uint8_t value);

        TChain& Hard;
        TChain& Soft;
        std::array<std::unique_ptr<IWireTarget>, MaxSpiDevices> Spi;
        IWireTarget* Current;
        std::uint8_t Selection = 0;
    };

    TChain Controllers;
    TMultiplexer Multiplexer;
};

} // namespace vorel::sim
