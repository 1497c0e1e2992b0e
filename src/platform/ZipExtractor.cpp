#include "platform/ZipExtractor.h"

#include "support/Text.h"

#include <zip.h>

#include <array>
#include <cstdio>
#include <filesystem>
#include <memory>
#include <optional>
#include <random>

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
    return !baseName.empty() && baseName != "." && baseName != ".." &&
           baseName.find('\0') == std::string_view::npos;
}

// One run over one archive.
class TExtraction {
public:
    TExtraction(const std::string& folder, const TZipLimits& limits)
        : Folder(ToPath(folder)), Limits(limits), Budget(limits.BytesPerArchive) {}

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
        if (!IsSafe(baseName)) {
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
};

} // namespace

bool TZipExtractor::ExtractAll(const std::string& archive, const std::string& folder) {
    int error = 0;
    const std::unique_ptr<zip_t, TDiscardArchive> opened(
        zip_open(archive.c_str(), ZIP_RDONLY, &error));
    return opened && TExtraction(folder, Limits).Run(opened.get());
}

} // namespace vorel
