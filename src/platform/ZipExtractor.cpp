#include "platform/ZipExtractor.h"

#include "support/Text.h"

#include <zip.h>

#include <algorithm>
#include <array>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <memory>
#include <random>
#include <vector>

namespace vorel {

namespace {

struct TDiscardArchive {
    void operator()(zip_t* archive) const noexcept { zip_discard(archive); }
};
struct TCloseEntry {
    void operator()(zip_file_t* entry) const noexcept { zip_fclose(entry); }
};
struct TCloseFile {
    void operator()(std::FILE* file) const noexcept { std::fclose(file); }
};

std::filesystem::path ToPath(std::string_view utf8) {
    return {std::u8string(utf8.begin(), utf8.end())};
}

std::string_view BaseName(std::string_view name) noexcept {
    return name.substr(name.find_last_of("/\\:") + 1);
}

bool IsFolder(std::string_view name) noexcept {
    return name.ends_with('/') || name.ends_with('\\');
}

bool IsSafe(std::string_view baseName) noexcept {
    return !baseName.empty() && baseName != "." && baseName != "..";
}

std::uint32_t LittleEndian(std::string_view bytes, std::size_t at, int count) noexcept {
    std::uint32_t value = 0;
    for (int i = count; i-- > 0;) {
        value = (value << 8U) | static_cast<unsigned char>(bytes[at + static_cast<std::size_t>(i)]);
    }
    return value;
}

std::string ReadPart(std::ifstream& file, std::uint64_t from, std::uint64_t size) {
    std::string bytes(static_cast<std::size_t>(size), '\0');
    file.clear();
    file.seekg(static_cast<std::streamoff>(from));
    file.read(bytes.data(), static_cast<std::streamsize>(size));
    bytes.resize(static_cast<std::size_t>(file.gcount()));
    return bytes;
}

// Which entries have a NUL in their name, by index. libzip gives such names with a blank in its
// place, so this looks into the central directory (APPNOTE.TXT 4.3.12 and 4.3.16) itself. One that
// cannot be followed gives nothing.
std::vector<bool> FindNulNames(const std::string& archive) {
    constexpr std::uint64_t longestTail = 22 + 65535; // end record and its comment
    constexpr std::uint64_t largestDirectory = std::uint64_t{64} << 20U;
    constexpr std::size_t headSize = 46;
    std::vector<bool> found;
    std::ifstream file(ToPath(archive), std::ios::binary | std::ios::ate);
    const auto size = static_cast<std::uint64_t>(std::max<std::streamoff>(file.tellg(), 0));
    const std::uint64_t tailSize = std::min(size, longestTail);
    const std::string tail = ReadPart(file, size - tailSize, tailSize);
    const std::size_t end = tail.rfind("PK\x05\x06");
    if (end == std::string::npos || tail.size() - end < 22) {
        return found;
    }
    const std::uint64_t directorySize = LittleEndian(tail, end + 12, 4);
    if (directorySize > std::min(size, largestDirectory)) {
        return found;
    }
    const std::string directory = ReadPart(file, LittleEndian(tail, end + 16, 4), directorySize);
    for (std::size_t at = 0; at + headSize <= directory.size();) {
        const std::size_t name = LittleEndian(directory, at + 28, 2);
        const std::size_t more =
            LittleEndian(directory, at + 30, 2) + LittleEndian(directory, at + 32, 2);
        const std::string_view text = std::string_view(directory).substr(at + headSize, name);
        found.push_back(text.find('\0') != std::string_view::npos);
        at += headSize + name + more;
    }
    return found;
}

// One run over one archive.
class TExtraction {
public:
    TExtraction(const std::string& folder, const TZipLimits& limits, std::vector<bool> nulNames)
        : Folder(ToPath(folder)),
          Limits(limits),
          Budget(limits.BytesPerArchive),
          NulNames(std::move(nulNames)) {}

    bool Run(zip_t* archive) {
        const zip_int64_t count = zip_get_num_entries(archive, 0);
        bool good = count <= Limits.Entries;
        for (zip_int64_t i = 0; i < std::min<zip_int64_t>(count, Limits.Entries); ++i) {
            if (Budget == 0) {
                return false;
            }
            good = ExtractEntry(archive, static_cast<zip_uint64_t>(i)) && good;
        }
        return good;
    }

private:
    bool ExtractEntry(zip_t* archive, zip_uint64_t index) {
        const char* name = zip_get_name(archive, index, ZIP_FL_ENC_GUESS);
        if (name == nullptr) {
            return false;
        }
        if (IsFolder(name)) {
            return true;
        }
        const std::string_view baseName = BaseName(name);
        if (!IsSafe(baseName) || (index < NulNames.size() && NulNames[index])) {
            return false;
        }
        const std::unique_ptr<zip_file_t, TCloseEntry> entry(zip_fopen_index(archive, index, 0));
        const std::filesystem::path draft = Folder / DraftName();
        std::error_code error;
        if (entry && Copy(*entry, draft)) {
            std::filesystem::rename(draft, Folder / ToPath(baseName), error);
            if (!error) {
                return true;
            }
        }
        std::filesystem::remove(draft, error);
        return false;
    }

    // Random, so that no archive can hold an entry of this name.
    static std::string DraftName() {
        std::random_device source;
        return "unzip-" + ToHex((std::uint64_t{source()} << 32U) | source(), 16) + ".new";
    }

    // True when the entry came out whole, its checksum was right and the file was written.
    bool Copy(zip_file_t& entry, const std::filesystem::path& draft) {
        // "x": never into a file or link that is there already.
        std::unique_ptr<std::FILE, TCloseFile> file(std::fopen(draft.string().c_str(), "wbx"));
        if (!file) {
            return false;
        }
        std::array<char, 65536> block{};
        std::uint64_t left = Limits.BytesPerFile;
        for (;;) {
            const zip_int64_t got = zip_fread(&entry, block.data(), block.size());
            if (got <= 0) {
                return got == 0 && std::fclose(file.release()) == 0;
            }
            const auto size = static_cast<std::uint64_t>(got);
            const bool fits = size <= left && size <= Budget;
            left -= std::min(left, size);
            Budget -= std::min(Budget, size);
            if (!fits || std::fwrite(block.data(), 1, size, file.get()) != size) {
                return false;
            }
        }
    }

    std::filesystem::path Folder;
    TZipLimits Limits;
    std::uint64_t Budget; // bytes that the archive may still bring
    std::vector<bool> NulNames;
};

} // namespace

bool TZipExtractor::ExtractAll(const std::string& archive, const std::string& folder) {
    int error = 0;
    const std::unique_ptr<zip_t, TDiscardArchive> opened(
        zip_open(archive.c_str(), ZIP_RDONLY, &error));
    return opened && TExtraction(folder, Limits, FindNulNames(archive)).Run(opened.get());
}

} // namespace vorel
