// What all readers of object code share: whole files and the error box.
#pragma once

#include "vorel/Host.h"

#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <string_view>

namespace vorel {

// The bytes of a file, owned; they are not cleared before they are read.
struct TFileBytes {
    std::unique_ptr<std::uint8_t[]> Bytes;
    std::size_t Size = 0;

    std::span<std::uint8_t> View() const noexcept { return {Bytes.get(), Size}; }
};

// A regular file has this name (UTF-8). Folders, pipes and devices are not object code.
bool ObjectFileExists(std::string_view fileName);

// Why the file cannot be read, as a sentence; empty when it can be opened.
std::string WhyUnreadable(std::string_view fileName);

// The file's size in bytes, counted by opening it for shared reading; -1 when that fails.
std::int64_t GetFileSize64(std::string_view fileName);

// Up to `limit` bytes from the start of the file; nothing when it is missing or cannot be opened. A
// file that shrinks meanwhile gives fewer bytes than its size was.
std::optional<TFileBytes> ReadObjectFile(std::string_view fileName,
                                         std::size_t limit = static_cast<std::size_t>(-1));

// The modal error box with the caption "Error".
void ShowError(IHostClient& host, std::string_view text);

} // namespace vorel
