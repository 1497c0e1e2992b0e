// Writing the files of a recording.
#pragma once

#include <string>

namespace vorel {

// Replaces the file's contents. EVorelError that names the file when it cannot be written.
void WriteTrafficFile(const std::string& path, const std::string& contents);

} // namespace vorel
