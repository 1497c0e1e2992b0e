#include "knowledge/TextFile.h"

#include "support/Text.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace vorel {

std::optional<std::string> ReadTextFile(const std::string& path, std::size_t limit) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    if (error) {
        return std::nullopt;
    }
    std::ifstream file(path, std::ios::binary);
    std::string text(static_cast<std::size_t>(std::min<std::uintmax_t>(size, limit)), '\0');
    file.read(text.data(), static_cast<std::streamsize>(text.size()));
    if (file.bad() || !file.is_open()) {
        return std::nullopt;
    }
    text.resize(static_cast<std::size_t>(file.gcount()));
    return text;
}

bool ReplaceTextFile(const std::string& path, std::string_view text) {
    const std::string draft = path + ".new";
    std::ofstream file(draft, std::ios::binary | std::ios::trunc);
    file.write(text.data(), static_cast<std::streamsize>(text.size()));
    file.close();
    std::error_code error;
    if (file) {
        std::filesystem::rename(draft, path, error);
    }
    const bool written = file && !error;
    if (!written) {
        std::filesystem::remove(draft, error);
    }
    return written;
}

bool TakeLine(std::string_view& rest, std::string_view& line) noexcept {
    if (rest.empty()) {
        return false;
    }
    const std::size_t end = std::min(rest.find_first_of("\r\n"), rest.size());
    line = rest.substr(0, end);
    rest.remove_prefix(end);
    if (rest.size() > 1 && rest[0] == '\r' && rest[1] == '\n') {
        rest.remove_prefix(1);
    }
    rest.remove_prefix(rest.empty() ? 0 : 1);
    return true;
}

bool ContainsWord(std::string_view text, std::string_view word) noexcept {
    return std::search(text.begin(), text.end(), word.begin(), word.end(),
                       [](char a, char b) { return UpperAscii(a) == b; }) != text.end();
}

} // namespace vorel
