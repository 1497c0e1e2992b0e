#include "objectcode/Rt_ElfFileLoader.h"

#include "support/Text.h"

#include <algorithm>
#include <array>

namespace vorel {

namespace {

constexpr std::array<std::uint8_t, 4> Magic{127, 'E', 'L', 'F'};
constexpr std::uint8_t Class32 = 1;
constexpr std::uint8_t BigEndian = 2;
constexpr std::uint32_t SHT_STRTAB = 3;
constexpr std::uint32_t SHT_NOBITS = 8;
constexpr std::uint32_t SHF_ALLOC = 2;
constexpr std::size_t NameLimit = 1024;
// A section of up to this size may lie outside a file that is even smaller.
constexpr std::uint64_t SmallSection = 65536;

bool HasMagic(std::span<const std::uint8_t> contents) {
    return contents.size() >= Magic.size() &&
           std::equal(Magic.begin(), Magic.end(), contents.begin());
}

// The part of `bytes` in a range that may lie outside it in part or as a whole.
std::span<const std::uint8_t> Part(std::span<const std::uint8_t> bytes, std::size_t offset,
                                   std::size_t size) {
    const std::size_t start = std::min(offset, bytes.size());
    return bytes.subspan(start, std::min(size, bytes.size() - start));
}

std::string_view NameIn(std::span<const std::uint8_t> table, std::size_t offset) {
    const auto text = Part(table, offset, NameLimit);
    const auto end = std::find(text.begin(), text.end(), 0);
    return {reinterpret_cast<const char*>(text.data()),
            static_cast<std::size_t>(end - text.begin())};
}

bool IsCodeOrConstants(std::string_view name) {
    return name.starts_with(".text") || name.starts_with(".rodata");
}

bool IsCode(std::string_view name) {
    return SameText(name, ".text");
}

} // namespace

bool IsElfFile(const std::string& fileName) {
    const auto start = ReadObjectFile(fileName, Magic.size());
    return start && HasMagic(start->View());
}

bool TSection::IsLoadable() const noexcept {
    return sh_size > 0 && (sh_type & 9U) != 0 && (sh_flags & SHF_ALLOC) != 0;
}

TElfFile::TElfFile(IHostClient& host, std::string fileName)
    : Host(host), FileName(std::move(fileName)) {}

void TElfFile::SetContents(std::span<const std::uint8_t> contents) {
    Stream.Bytes = std::make_unique_for_overwrite<std::uint8_t[]>(contents.size());
    Stream.Size = contents.size();
    std::copy(contents.begin(), contents.end(), Stream.Bytes.get());
    HaveContents = true;
}

// Fields beyond the end of the file read as 0.
std::uint16_t TElfFile::Half(std::uint64_t offset) const noexcept {
    const auto bytes = Part(Stream.View(), offset, 2);
    return static_cast<std::uint16_t>(bytes.size() < 2 ? 0 : bytes[0] << 8U | bytes[1]);
}

std::uint32_t TElfFile::Word(std::uint64_t offset) const noexcept {
    return std::uint32_t{Half(offset)} << 16U | Half(offset + 2);
}

TSection TElfFile::SectionAt(std::uint64_t header) const noexcept {
    TSection section;
    section.sh_name = Word(header);
    section.sh_type = Word(header + 4);
    section.sh_flags = Word(header + 8);
    section.sh_addr = Word(header + 12);
    section.sh_offset = Word(header + 16);
    section.sh_size = Word(header + 20);
    if (section.sh_type != SHT_NOBITS) {
        section.Data = Part(Stream.View(), section.sh_offset, section.sh_size);
    }
    return section;
}

bool TElfFile::Read() {
    Sections.clear();
    Remark.clear();
    StringTable = {};
    NamesByIndex = {};
    if (!HaveContents) {
        auto file = ReadObjectFile(FileName);
        if (!file) {
            return false;
        }
        Stream = std::move(*file);
    }
    const std::string name(FileNameOf(FileName));
    if (!HasMagic(Stream.View())) {
        ShowError(Host, name + " is not an ELF file");
        return false;
    }
    if (!ReadSectionTable()) {
        ShowError(Host, name + " is not an valid ELF file");
        RemarkOnKind();
        return false;
    }
    return true;
}

void TElfFile::RemarkOnKind() {
    const auto kind = Part(Stream.View(), 4, 2);
    if (kind.size() == 2 && (kind[0] != Class32 || kind[1] != BigEndian)) {
        Remark = "Only 32-bit big-endian ELF files are read, and this one is " +
                 std::string(kind[0] == Class32 ? "32-bit" : "64-bit") +
                 (kind[1] == BigEndian ? " big-endian." : " little-endian.") +
                 " Convert it to Intel Hex (objcopy -O ihex).";
    } else {
        Remark = "Its section table is empty or lies beyond the end of the file.";
    }
}

bool TElfFile::ReadSectionTable() {
    const std::uint64_t tableOffset = Word(32);
    const std::uint64_t entrySize = Half(46);
    const std::uint64_t count = Half(48);
    const std::uint16_t nameTableIndex = Half(50);
    // A count of 0 sets no end: the table runs beyond the file, sooner or later.
    if (count == 0 || tableOffset + entrySize * (count - 1) >= Stream.Size) {
        return false;
    }
    for (std::uint64_t i = 0; i < count; ++i) {
        const std::uint64_t header = tableOffset + entrySize * i;
        const TSection section = SectionAt(header);
        if (section.sh_type == SHT_STRTAB && StringTable.data() == nullptr) {
            StringTable = section.Data;
        }
        if (i == nameTableIndex) {
            NamesByIndex = section.Data;
        }
        Sections.push_back(header);
    }
    std::stable_sort(Sections.begin(), Sections.end(), [this](std::uint64_t a, std::uint64_t b) {
        return Word(a + 12) < Word(b + 12);
    });
    return true;
}

std::string_view TElfFile::GetName(const TSection& section) const noexcept {
    return NameIn(StringTable, section.sh_name);
}

std::vector<std::uint64_t> TElfFile::SelectSections(TNameTest test) {
    Remark.clear();
    std::vector<std::uint64_t> selected;
    for (const std::uint64_t header : Sections) {
        const TSection section = SectionAt(header);
        if (section.IsLoadable() && test(GetName(section))) {
            selected.push_back(header);
        }
    }
    if (selected.empty()) {
        RemarkOnNothing(test);
    }
    return selected;
}

// Sections of a sane file do not overlap; headers that all point at the same bytes must not
// multiply the file.
std::uint64_t TElfFile::Allowance() const noexcept {
    return 4 * std::max<std::uint64_t>(Stream.Size, SmallSection);
}

std::uint64_t TElfFile::LengthToLoad(const TSection& section, std::uint64_t allowance) {
    const std::uint64_t largest = std::max<std::uint64_t>(Stream.Size, SmallSection);
    if (section.sh_size <= largest && section.sh_size <= allowance) {
        return section.sh_size;
    }
    Remark = "Section " + std::string(GetName(section)) + " claims " +
             std::to_string(section.sh_size) +
             " bytes, out of all proportion to the file; the excess was dropped.";
    return std::min<std::uint64_t>(section.Data.size(), allowance);
}

void TElfFile::RemarkOnNothing(TNameTest test) {
    const bool namesElsewhere =
        std::any_of(Sections.begin(), Sections.end(), [&](std::uint64_t header) {
            const TSection section = SectionAt(header);
            return section.IsLoadable() && test(NameIn(NamesByIndex, section.sh_name));
        });
    Remark = namesElsewhere
                 ? "The file's section names are not in its first string table, which holds the "
                   "names of its symbols, so no section was recognised. Strip the file (strip), or "
                   "convert it to Intel Hex (objcopy -O ihex)."
                 : "The file has no loadable section with a name of program code. Convert it to "
                   "Intel Hex to load it as a whole (objcopy -O ihex).";
}

void TElfFile::DeliverTo(const TByteConsumer& consumer) {
    std::uint64_t allowance = Allowance();
    std::vector<std::uint8_t> padded;
    for (const std::uint64_t header : SelectSections(IsCodeOrConstants)) {
        const TSection section = SectionAt(header);
        const std::uint64_t length = LengthToLoad(section, allowance);
        if (length == 0 || !consumer) {
            continue;
        }
        allowance -= length;
        auto held = Part(section.Data, 0, length);
        if (held.size() < length) {
            padded.assign(held.begin(), held.end());
            padded.resize(length);
            held = padded;
        }
        consumer(held.data(), static_cast<std::int64_t>(length), section.sh_addr);
    }
}

std::int64_t TElfFile::WriteTo(TMemoryImage& image) {
    image.fill(0);
    std::int64_t maxAddress = 0;
    std::size_t allowance = 4 * image.size();
    for (const std::uint64_t header : SelectSections(IsCode)) {
        const TSection section = SectionAt(header);
        const auto room = std::span(image).subspan(std::min<std::size_t>(section.sh_addr, 65536));
        const std::size_t length = std::min<std::size_t>(section.sh_size, room.size());
        const auto target = room.first(std::min(length, allowance));
        if (target.size() < length) {
            Remark = "The sections lie on top of each other; the last of them were dropped.";
        }
        allowance -= target.size();
        const auto held = Part(section.Data, 0, target.size());
        std::fill(std::copy(held.begin(), held.end(), target.begin()), target.end(), 0U);
        maxAddress =
            std::max(maxAddress, std::int64_t{section.sh_addr} + std::int64_t{section.sh_size});
    }
    return maxAddress;
}

namespace {

bool ReadOrShow(TElfFile& file, IHostClient& host, const std::string& fileName) {
    if (file.Read()) {
        return true;
    }
    ShowError(host,
              "Errors Found When Loading Elf File: " + std::string(FileNameOf(fileName)) + "\r\r");
    return false;
}

void TakeRemark(const TElfFile& file, std::string* remark) {
    if (remark != nullptr) {
        *remark = file.GetRemark();
    }
}

} // namespace

bool LoadElfToConsumer(IHostClient& host, const std::string& fileName,
                       const TBlockConsumer& consumer, std::string* remark) {
    return LoadElfAsBytes(host, fileName, AsWords(consumer), remark);
}

bool LoadElfAsBytes(IHostClient& host, const std::string& fileName, const TByteConsumer& consumer,
                    std::string* remark) {
    TElfFile file(host, fileName);
    const bool good = ReadOrShow(file, host, fileName);
    if (good) {
        file.DeliverTo(consumer);
    }
    TakeRemark(file, remark);
    return good;
}

bool LoadElfToImage(IHostClient& host, const std::string& fileName, TMemoryImage& image,
                    std::int32_t& errorCount, std::int64_t& maxAddress, std::string* remark) {
    errorCount = 0;
    maxAddress = 0;
    image.fill(0);
    TElfFile file(host, fileName);
    const bool good = ReadOrShow(file, host, fileName);
    if (good) {
        maxAddress = file.WriteTo(image);
    }
    TakeRemark(file, remark);
    return good;
}

} // namespace vorel
