// The parts of one maker: a table of facts that is compiled into a driver module. One line of the
// table is one base device in one package; its speed and temperature grades make it several names.
//
// Lines, columns separated by tabs, empty columns not known, "#" in front for a comment:
//
//   vendor <name> <BSDL file pattern>       once, first
//   standards <number> <I/O standards>      a comma list that parts refer to by its number
//   family <name> <type> <name pattern>     heads the parts of a family; type FPGA, CPLD, PROM,
//   PROC part <columns>
//     1 base device           2 package; with "=code" when names have another code for it
//     3 JTAG id, hexadecimal  4 instruction length
//     5 pins                  6 user I/O
//     7 capacity: logic cells or elements, macrocells, or bits of storage
//     8 multipliers 18x18     9 embedded RAM in 1,024 bits
//     10 clock managers       11 global clocks
//     12 differential pairs   13 high speed differential pairs
//     14 configuration bits   15 on-chip termination, 0 or 1
//     16 grades: groups "speeds/temperatures" joined by ";", both sides comma lists
//     17 number of its list of I/O standards
//
// Patterns: %b base device, %p package code, %l and %n the letters and digits of that code, %s
// speed grade, %t temperature grade, %S speed grade without "Std", %T temperature grade without
// "C"; all else stands for itself.
#pragma once

#include <array>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vorel {

struct TPartFamily {
    std::string_view Name;
    std::string_view Type;
    std::string_view NamePattern;
};

// Numbers that are not known are 0.
struct TPart {
    std::size_t Family = 0; // into TPartTable::GetFamilies
    std::string_view Base;
    std::string_view Package;
    std::string_view PackageCode;
    std::uint32_t IdCode = 0;
    std::int32_t IrLength = 0;
    std::int32_t Pins = 0;
    std::int32_t Ios = 0;
    std::int32_t Capacity = 0;
    std::int32_t Multipliers = 0;
    std::int32_t RamKilobits = 0;
    std::int32_t ClockManagers = 0;
    std::int32_t GlobalClocks = 0;
    std::int32_t DifferentialPairs = 0;
    std::int32_t HighSpeedPairs = 0;
    std::int32_t ConfigBits = 0;
    bool OnChipTermination = false;
    std::string_view Standards;
};

// One device name: a part in one pair of grades.
struct TPartVariant {
    std::size_t Part = 0; // into TPartTable::GetParts
    std::string_view Speed;
    std::string_view Temperature;
};

// Views into the lines, which must stay. Lines that do not fit are passed over.
class TPartTable {
public:
    explicit TPartTable(std::span<const char* const> lines);

    std::string_view GetVendor() const noexcept { return Vendor; }
    const std::vector<TPartFamily>& GetFamilies() const noexcept { return Families; }
    const std::vector<TPart>& GetParts() const noexcept { return Parts; }
    const std::vector<TPartVariant>& GetVariants() const noexcept { return Variants; }
    // The name under which a variant is ordered.
    std::string NameOf(const TPartVariant& variant) const;
    // The name that the maker's BSDL file for the variant's device and package has.
    std::string BsdlFileOf(const TPartVariant& variant) const;

private:
    void ReadLine(std::string_view line);
    void ReadPart(std::string_view columns);
    void ReadGrades(std::string_view grades);
    std::string Expand(std::string_view pattern, const TPartVariant& variant) const;

    std::string_view Vendor;
    std::string_view BsdlPattern;
    std::vector<std::string_view> StandardLists; // by number
    std::vector<TPartFamily> Families;
    std::vector<TPart> Parts;
    std::vector<TPartVariant> Variants;
};

} // namespace vorel
