#include "bsdl/FileText.h"

#include <algorithm>
#include <fstream>

namespace vorel {

WideText FileTextToWide(std::string_view bytes) {
    WideText wide(bytes.size(), u'\0');
    std::transform(bytes.begin(), bytes.end(), wide.begin(),
                   [](char c) { return static_cast<char16_t>(static_cast<unsigned char>(c)); });
    return wide;
}

std::filesystem::path ToPath(std::string_view utf8) {
    return {std::u8string(utf8.begin(), utf8.end())};
}

bool FileExists(const std::string& path) noexcept {
    try {
        return std::filesystem::is_regular_file(ToPath(path));
    } catch (const std::exception&) {
        return false;
    }
}

std::string WithSeparator(std::string folder) {
    constexpr char separator = std::filesystem::path::preferred_separator;
    if (!folder.empty() && folder.back() != separator && folder.back() != '/') {
        folder.push_back(separator);
    }
    return folder;
}

std::optional<std::string> ReadWholeFile(const std::string& path) {
    constexpr std::uintmax_t largest = std::uintmax_t{1} << 30U;
    std::error_code error;
    const std::filesystem::path file = ToPath(path);
    // Anything else than a regular file could block in open or never end.
    if (!std::filesystem::is_regular_file(file, error)) {
        return std::nullopt;
    }
    const std::uintmax_t size = std::filesystem::file_size(file, error);
    std::ifstream stream(file, std::ios::binary);
    if (error || size > largest || !stream) {
        return std::nullopt;
    }
    std::string bytes(static_cast<std::size_t>(size), '\0');
    stream.read(bytes.data(), static_cast<std::streamsize>(size));
    bytes.resize(static_cast<std::size_t>(stream.gcount()));
    return bytes;
}

} // namespace vorel
