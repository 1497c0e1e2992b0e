#include "platform/ElfFile.h"

#include <link.h>

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <vector>

namespace vorel {

namespace {

using THeader = ElfW(Ehdr);
using TSegment = ElfW(Phdr);

constexpr unsigned char WordClass = sizeof(void*) == 8 ? ELFCLASS64 : ELFCLASS32;

template<class T>
bool ReadAt(std::ifstream& file, std::uint64_t offset, T* items, std::size_t count) {
    file.seekg(static_cast<std::streamoff>(offset));
    file.read(reinterpret_cast<char*>(items), static_cast<std::streamsize>(count * sizeof(T)));
    return file.good();
}

bool IsWithin(std::uint64_t offset, std::uint64_t length, std::uint64_t size) {
    return offset <= size && length <= size - offset;
}

} // namespace

bool IsWholeElfFile(const std::string& path) {
    std::error_code error;
    const std::uintmax_t size = std::filesystem::file_size(path, error);
    std::ifstream file(path, std::ios::binary);
    THeader header{};
    if (error || !ReadAt(file, 0, &header, 1) ||
        std::memcmp(header.e_ident, ELFMAG, SELFMAG) != 0 ||
        header.e_ident[EI_CLASS] != WordClass || header.e_phentsize != sizeof(TSegment) ||
        !IsWithin(header.e_phoff, std::uint64_t{header.e_phnum} * sizeof(TSegment), size)) {
        return false;
    }
    std::vector<TSegment> segments(header.e_phnum);
    return ReadAt(file, header.e_phoff, segments.data(), segments.size()) &&
           std::all_of(segments.begin(), segments.end(), [&](const TSegment& segment) {
               return segment.p_type != PT_LOAD ||
                      IsWithin(segment.p_offset, segment.p_filesz, size);
           });
}

} // namespace vorel
