#include "objectcode/ObjectCodeFile.h"

#include "support/Text.h"

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <fstream>
#include <system_error>

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

std::string WhyUnreadable(std::string_view fileName) {
    std::error_code error;
    const std::filesystem::file_status status = std::filesystem::status(PathOf(fileName), error);
    switch (status.type()) {
    case std::filesystem::file_type::not_found:
        return "The file does not exist.";
    case std::filesystem::file_type::directory:
        return "This is a folder.";
    case std::filesystem::file_type::regular:
        break;
    default:
        return error ? "The file cannot be reached: " + error.message() + "."
                     : "This is no regular file.";
    }
    errno = 0;
    if (OpenAtEnd(fileName).is_open()) {
        return {};
    }
    return "The file cannot be opened: " + std::generic_category().message(errno) + ".";
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
