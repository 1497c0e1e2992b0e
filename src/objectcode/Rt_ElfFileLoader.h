// Reading the code sections of 32-bit big-endian ELF files (System V ABI, "Object Files"), as the
// tool chains of soft processors write them. All header fields are read as big-endian and the
// identification behind the magic bytes is not looked at, so any other ELF file falls apart on its
// section table. Sections are placed at their sh_addr; program headers are not read.
//
// Section names are looked up in the first string table of the file, whatever e_shstrndx says. In a
// file that still has its symbols this is the table of symbol names, so that no section is
// recognised by name; such a file delivers nothing until it is stripped. GetRemark tells that.
#pragma once

#include "objectcode/MemoryWords.h"
#include "objectcode/ObjectCodeFile.h"
#include "vorel/Host.h"

#include <cstdint>
#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vorel {

// The file has at least one byte and starts with 127 "ELF".
bool IsElfFile(const std::string& fileName);

// One entry of the section table, with the fields of the format.
struct TSection {
    std::uint32_t sh_name = 0;
    std::uint32_t sh_type = 0;
    std::uint32_t sh_flags = 0;
    std::uint32_t sh_addr = 0;
    std::uint32_t sh_offset = 0;
    std::uint32_t sh_size = 0;
    // What the file holds of the section; nothing for SHT_NOBITS.
    std::span<const std::uint8_t> Data;

    // Has a size, a type with bit 0 or 3 (SHT_PROGBITS, SHT_NOBITS, but others too) and SHF_ALLOC.
    bool IsLoadable() const noexcept;
    // 0 where the file holds nothing.
    std::uint8_t GetByte(std::uint32_t index) const noexcept {
        return index < Data.size() ? Data[index] : std::uint8_t{0};
    }
};

class TElfFile {
public:
    // The host shows the messages. `fileName` is UTF-8.
    TElfFile(IHostClient& host, std::string fileName);

    // Takes the bytes from memory instead of from the file; the name only serves the messages.
    void SetContents(std::span<const std::uint8_t> contents);

    // Reads the section table. False without a message if the file does not exist; after a message
    // if it is no ELF file, or if the table is empty or goes beyond the file.
    bool Read();

    // One block for each loadable section named .text... or .rodata..., in order of address. Bytes
    // that the file holds are handed out where they stand. Nothing without a consumer. What the
    // file does not hold of a section comes as zeros; a section that claims more than the whole
    // file (and more than 64 KiB) is cut to what the file holds, and so are sections that together
    // make more than four times the file.
    void DeliverTo(const TByteConsumer& consumer);
    // Zeroes the image and writes the loadable sections named .text (without case) into it, in
    // order of address, one byte to a word. What lies beyond the image is dropped, and so are
    // sections that together make more than four images. Gives one above the highest address.
    std::int64_t WriteTo(TMemoryImage& image);

    // For people: name, type, flags, address and size of each loadable section, in order of
    // address, and its bytes, four to a line; what lies behind its end in the last line as 0. Lines
    // end with CR LF. Cut as in DeliverTo.
    using TTextConsumer = std::function<void(const std::string& text)>;
    void Dump(const TTextConsumer& write);

    // The text at sh_name in the first string table, up to 1024 characters of it; empty outside the
    // table or without one.
    std::string_view GetName(const TSection& section) const noexcept;

    // Why the table was not read, and after DeliverTo or WriteTo: why nothing, or less than the
    // headers say, came out, and what can be done; empty when all is well.
    const std::string& GetRemark() const noexcept { return Remark; }

private:
    using TNameTest = bool (*)(std::string_view name);
    using TNameTable = std::span<const std::uint8_t>;

    std::uint16_t Half(std::uint64_t offset) const noexcept;
    std::uint32_t Word(std::uint64_t offset) const noexcept;
    bool ReadSectionTable();
    TSection SectionAt(std::uint64_t header) const noexcept;
    std::vector<std::uint64_t> SelectSections(TNameTest test);
    std::uint64_t Allowance() const noexcept;
    std::uint64_t LengthToLoad(const TSection& section, std::uint64_t allowance);
    void RemarkOnNothing(TNameTest test);
    void RemarkOnKind();

    IHostClient& Host;
    std::string FileName;
    TFileBytes Stream;
    bool HaveContents = false;
    std::vector<std::uint64_t> Sections; // where the headers lie, in order of sh_addr
    TNameTable StringTable;
    TNameTable NamesByIndex; // the table that e_shstrndx names; for remarks only
    std::string Remark;
};

// Loading in one call. `remark`, if given, takes GetRemark. A file that cannot be read as ELF gives
// false after a message. The image way always has an error count of 0.
bool LoadElfToConsumer(IHostClient& host, const std::string& fileName,
                       const TBlockConsumer& consumer, std::string* remark = nullptr);
bool LoadElfAsBytes(IHostClient& host, const std::string& fileName, const TByteConsumer& consumer,
                    std::string* remark = nullptr);
bool LoadElfToImage(IHostClient& host, const std::string& fileName, TMemoryImage& image,
                    std::int32_t& errorCount, std::int64_t& maxAddress,
                    std::string* remark = nullptr);

} // namespace vorel
