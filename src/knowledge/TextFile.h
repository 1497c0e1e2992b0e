// Reading and writing of the small text files of the installation and the user.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>

namespace vorel {

// More than any honest file of these kinds holds; what lies behind is not read.
inline constexpr std::size_t TextFileLimit = std::size_t{8} << 20U;

// The bytes of a file, at most `limit` of them; nothing for a file that is missing or cannot be
// read.
std::optional<std::string> ReadTextFile(const std::string& path, std::size_t limit = TextFileLimit);

// Writes the whole file beside its place and moves it there, so that a failure leaves the old one.
// False when that failed.
bool ReplaceTextFile(const std::string& path, std::string_view text);

// Takes the first line off `rest`, without its end (LF, CR LF or CR). False when nothing is left.
bool TakeLine(std::string_view& rest, std::string_view& line) noexcept;

// True when `word` (upper case) stands anywhere in the text, without case.
bool ContainsWord(std::string_view text, std::string_view word) noexcept;

} // namespace vorel
