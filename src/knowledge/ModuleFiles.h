// Which files are driver modules.
#pragma once

#include <string>
#include <vector>

namespace vorel {

inline constexpr const char* ModuleSuffix = ".VOR";

// Full paths of the module files of a folder, in the order that the file system gives; folders are
// passed over. Empty for a folder that is missing or cannot be read.
std::vector<std::string> ListModuleFiles(const std::string& directory);

} // namespace vorel
