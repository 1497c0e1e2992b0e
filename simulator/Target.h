// What stands in front of a pod: a hard chain of physical devices, a soft chain of instruments
// inside a programmed device, and perhaps a board around them.
#pragma once

#include "simulator/Board.h"
#include "simulator/Chain.h"

#include <memory>

namespace vorel::sim {

class TTarget final {
public:
    TChain& HardChain() noexcept { return Hard; }
    TChain& SoftChain() noexcept { return Soft; }

    // Puts a board around the chains, once; later calls give the same board.
    TBoard& AddBoard() {
        if (Carrier == nullptr) {
            Carrier = std::make_unique<TBoard>(Hard, Soft);
        }
        return *Carrier;
    }
    // Null for a bare target.
    TBoard* Board() const noexcept { return Carrier.get(); }

private:
    TChain Hard;
    TChain Soft;
    std::unique_ptr<TBoard> Carrier;
};

} // namespace vorel::sim
