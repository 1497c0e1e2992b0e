// Bytes of files as texts for people, and files as bytes.
#pragma once

#include "vorel/Types.h"

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vorel {

// Text of a file in unknown encoding: each byte becomes the character of the same code.
WideText FileTextToWide(std::string_view bytes);

// A path of this library (UTF-8) for the file system.
std::filesystem::path ToPath(std::string_view utf8);
// True for a regular file (or a link to one).
bool FileExists(const std::string& path) noexcept;
// The folder with a separator at its end; an empty one stays empty.
std::string WithSeparator(std::string folder);

// The whole file; nothing if it is no regular file, cannot be read or is above 1 GiB.
std::optional<std::string> ReadWholeFile(const std::string& path);

} // namespace vorel
