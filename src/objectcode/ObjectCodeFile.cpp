#include "objectcode/ObjectCodeFile.h"

#include "support/Text.h"

#include <algorithm>
#include <filesystem>
#include <fstream>

namespace vorel {

namespace {

std::filesystem::path PathOf(std::string_view fileName) {
#ifdef _WIN32
    return {ToWide(fileName)};
#else
    return {fileName};
#endif
}

std::ifstream OpenAtEnd(std::string_view fileName) {
    if (!ObjectFileExists(fileName)) {
        return {};
    }
    return std::ifstream(PathOf(fileName), std::ios::binary | std::ios::ate);
}

} // namespace

bool ObjectFileExists(std::string_view fileName) {
    std::error_code error;
    return std::filesystem::is_regular_file(PathOf(fileName), error);
}

std::int64_t GetFileSize64(std::string_view fileName) {
    std::ifstream file = OpenAtEnd(fileName);
    return file.is_open() ? static_cast<std::int64_t>(file.tellg()) : -1;
}

std::optional<TFileBytes> ReadObjectFile(std::string_view fileName, std::size_t limit) {
    std::ifstream file = OpenAtEnd(fileName);
    const std::streamoff end = file.is_open() ? std::streamoff{file.tellg()} : -1;
    if (end < 0) {
        return std::nullopt;
    }
    const std::size_t size = std::min(limit, static_cast<std::size_t>(end));
    TFileBytes result{std::make_unique_for_overwrite<std::uint8_t[]>(size), 0};
    file.seekg(0);
    file.read(reinterpret_cast<char*>(result.Bytes.get()), static_cast<std::streamsize>(size));
    result.Size = static_cast<std::size_t>(file.gcount());
    return result;
}

void ShowError(IHostClient& host, std::string_view text) {
    MessageBoxAnswer answer{};
    host.ShowMessageBox(MessageBoxKind::Error, u"Error", ToWide(text), answer);
}

} // namespace vorel
