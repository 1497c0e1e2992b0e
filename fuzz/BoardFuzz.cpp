// Any text as a board file. Whatever mappings it gives, driving them keeps to the cost of a change:
// one read and two writes at most.
#include "simulator/ParallelCable.h"
#include "transport/ParallelPortBoardType.h"

#include <cstdlib>

namespace {

using namespace vorel;

void Require(bool holds) {
    if (!holds) {
        std::abort();
    }
}

void Drive(TJTagParallelPort_ChannelMapping& mapping, const sim::TParallelCable& cable) {
    mapping.Activate();
    for (std::uint8_t levels = 0; levels < 8; ++levels) {
        const sim::PortAccesses before = cable.Accesses();
        mapping.SetSignals(levels & 1U, (levels >> 1U) & 1U, (levels >> 2U) & 1U);
        const sim::PortAccesses& after = cable.Accesses();
        Require(after.DataReads - before.DataReads == 1);
        Require(after.DataWrites - before.DataWrites <= 1);
        Require(after.ControlWrites - before.ControlWrites <= 1);
    }
    std::uint8_t level = 7;
    mapping.ReadTdo(level);
    Require(level <= 1);
    mapping.Deactivate();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    TJTagParallelPort_BoardType board;
    if (!board.LoadFromText({reinterpret_cast<const char*>(data), size})) {
        return 0;
    }
    sim::TParallelCable cable;
    board.SetPort(&cable);
    Require(!board.PortIsUsable() || board.HardChannel != nullptr);
    for (const auto* mapping :
         {&board.BoardChannel, &board.HardChannel, &board.SoftChannel, &board.SPIChannel}) {
        if (*mapping != nullptr) {
            Drive(**mapping, cable);
        }
    }
    return 0;
}
