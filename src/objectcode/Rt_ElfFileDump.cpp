#include "objectcode/Rt_ElfFileLoader.h"
#include "support/Text.h"

#include <array>
#include <utility>

namespace vorel {

namespace {

constexpr std::uint64_t LineBytes = 4;

constexpr std::array<const char*, 12> TypeTexts{
    "SHT_NULL    ", "SHT_PROGBITS", "SHT_SYMTAB  ", "SHT_STRTAB  ", "SHT_RELA    ", "SHT_HASH    ",
    "SHT_DYNAMIC ", "SHT_NOTE    ", "SHT_NOBITS  ", "SHT_REL     ", "SHT_SHLIB   ", "SHT_DYNSYM  "};

constexpr std::array<std::pair<unsigned, const char*>, 10> FlagTexts{{{0, "SHF_WRITE, "},
                                                                      {1, "SHF_ALLOC, "},
                                                                      {2, "SHF_EXECINSTR, "},
                                                                      {4, "SHF_MERGE, "},
                                                                      {5, "SHF_STRINGS, "},
                                                                      {6, "SHF_INFO_LINK, "},
                                                                      {7, "SHF_LINK_ORDER, "},
                                                                      {8, "SHF_OS_NONCONFORMING, "},
                                                                      {9, "SHF_GROUP, "},
                                                                      {10, "SHF_TLS, "}}};

std::string TypeText(std::uint32_t type) {
    return type < TypeTexts.size() ? TypeTexts[type] : "UNKNOWN     ";
}

std::string FlagList(std::uint32_t flags) {
    std::string text;
    for (const auto& [bit, name] : FlagTexts) {
        if ((flags >> bit & 1U) != 0) {
            text += name;
        }
    }
    return text;
}

std::string LineOf(const TSection& section, std::uint64_t index) {
    std::string line = ToHex((section.sh_addr + index) & 0xFFFFFFFF, 8) + ": ";
    for (std::uint64_t i = index; i < index + LineBytes; ++i) {
        line += ToHex(section.GetByte(static_cast<std::uint32_t>(i)), 8) + " ";
    }
    return line + "\r\n";
}

} // namespace

void TElfFile::Dump(const TTextConsumer& write) {
    std::uint64_t allowance = Allowance();
    for (const std::uint64_t header : Sections) {
        const TSection section = SectionAt(header);
        if (!section.IsLoadable()) {
            continue;
        }
        write("Name=\"" + std::string(GetName(section)) +
              "\"\r\n"
              "  Type    =" +
              TypeText(section.sh_type) +
              "\r\n"
              "  Flags   =" +
              FlagList(section.sh_flags) +
              "\r\n"
              "  VA_Start=" +
              ToHex(section.sh_addr, 8) +
              "\r\n"
              "  Size    =" +
              ToHex(section.sh_size, 8) + "\r\n\r\n");
        const std::uint64_t length = LengthToLoad(section, allowance);
        allowance -= length;
        for (std::uint64_t index = 0; index < length; index += LineBytes) {
            write(LineOf(section, index));
        }
        write("\r\n\r\n");
    }
}

} // namespace vorel
