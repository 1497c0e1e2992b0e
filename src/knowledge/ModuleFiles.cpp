#include "knowledge/ModuleFiles.h"

#include "support/Text.h"

#include <filesystem>

namespace vorel {

std::vector<std::string> ListModuleFiles(const std::string& directory) {
    namespace fs = std::filesystem;
    std::vector<std::string> files;
    std::error_code error;
    fs::directory_iterator entry(directory, error);
    while (!error && entry != fs::directory_iterator()) {
        std::error_code unknown;
        if (SameText(entry->path().extension().string(), ModuleSuffix) &&
            !entry->is_directory(unknown)) {
            files.push_back(entry->path().string());
        }
        entry.increment(error);
    }
    return files;
}

} // namespace vorel
