// Board files of parallel-port cables: no text may crash, and whatever masks it gives, a change of
// the lines costs at most one read of the data register and two writes.
#include "simulator/ParallelCable.h"
#include "transport/ParallelPortBoardType.h"

#include <unistd.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace {

using vorel::TJTagParallelPort_BoardType;
using vorel::sim::PortAccesses;

void Require(bool condition) {
    if (!condition) {
        std::abort();
    }
}

std::filesystem::path BoardFile() {
    return std::filesystem::temp_directory_path() / ("fuzz" + std::to_string(getpid()) + ".JTGBRD");
}

void Drive(TJTagParallelPort_BoardType::TMapping& mapping, vorel::sim::TParallelCable& cable) {
    mapping->Activate();
    for (unsigned lines = 0; lines < 16; ++lines) {
        const PortAccesses before = cable.Accesses();
        mapping->SetSignals(lines & 1U, (lines >> 1U) & 1U, (lines >> 2U) & 1U);
        const PortAccesses& after = cable.Accesses();
        Require(after.DataReads - before.DataReads <= 1);
        Require(after.DataWrites + after.ControlWrites - before.DataWrites - before.ControlWrites <=
                2);
        std::uint8_t level = 0xFF;
        mapping->ReadTdo(level);
        Require(level <= 1);
    }
    mapping->Deactivate();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const std::filesystem::path file = BoardFile();
    std::ofstream(file, std::ios::binary)
        .write(reinterpret_cast<const char*>(data), static_cast<std::streamsize>(size));
    TJTagParallelPort_BoardType board;
    const bool loaded = board.LoadFromFile(file);
    std::filesystem::remove(file);
    if (!loaded) {
        Require(board.HardChannel == nullptr && board.BoardIds.empty() && board.Name.empty());
        return 0;
    }
    vorel::sim::TParallelCable cable;
    board.SetPort(&cable);
    Require(board.HardChannel != nullptr || !board.PortIsUsable());
    for (auto* mapping :
         {&board.BoardChannel, &board.HardChannel, &board.SoftChannel, &board.SPIChannel}) {
        if (*mapping != nullptr) {
            Drive(*mapping, cable);
        }
    }
    return 0;
}
