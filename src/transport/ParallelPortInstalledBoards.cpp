#include "transport/ParallelPortInstalledBoards.h"

#include "support/Text.h"

#include <algorithm>

namespace vorel {

namespace {

constexpr std::string_view BoardFileExtension = ".JTGBRD";

std::vector<std::filesystem::path> ListBoardFiles(const std::filesystem::path& folder) {
    std::vector<std::filesystem::path> files;
    std::error_code error;
    for (std::filesystem::directory_iterator entry(folder, error), end; !error && entry != end;
         entry.increment(error)) {
        if (SameText(entry->path().extension().string(), BoardFileExtension)) {
            files.push_back(entry->path());
        }
    }
    std::sort(files.begin(), files.end());
    return files;
}

} // namespace

TJTagParallelPort_InstalledBoardTypes::TJTagParallelPort_InstalledBoardTypes(
    const std::filesystem::path& systemFolder) {
    for (const std::filesystem::path& file : ListBoardFiles(systemFolder)) {
        auto board = std::make_unique<TJTagParallelPort_BoardType>();
        if (board->LoadFromFile(file)) {
            Boards.push_back(std::move(board));
        }
    }
    std::stable_partition(Boards.begin(), Boards.end(),
                          [](const auto& board) { return board->BoardIdCount() > 0; });
}

} // namespace vorel
