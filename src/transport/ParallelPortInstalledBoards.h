// All boards of the installation that a parallel-port cable may lead to.
#pragma once

#include "transport/ParallelPortBoardType.h"

namespace vorel {

class TJTagParallelPort_InstalledBoardTypes {
public:
    TJTagParallelPort_InstalledBoardTypes() = default;
    // Reads the board files (*.JTGBRD) of a folder; one that cannot be used is left out. Boards
    // that can prove themselves by an id stand before those that cannot, each kind in the order of
    // the file names.
    explicit TJTagParallelPort_InstalledBoardTypes(const std::filesystem::path& systemFolder);

    std::size_t Count() const noexcept { return Boards.size(); }
    TJTagParallelPort_BoardType& BoardAt(std::size_t index) { return *Boards.at(index); }
    // For every board; not owned.
    void SetAnalyser(IJTagAnalyser* analyser) noexcept {
        for (const auto& board : Boards) {
            board->SetAnalyser(analyser);
        }
    }

private:
    std::vector<std::unique_ptr<TJTagParallelPort_BoardType>> Boards;
};

} // namespace vorel
