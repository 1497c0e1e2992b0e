#include "drivers/PartTable.h"

#include <algorithm>
#include <charconv>

namespace vorel {

namespace {

constexpr std::size_t LargestStandardsNumber = 1000;

// Takes what stands before `separator` off `rest`.
std::string_view Take(std::string_view& rest, char separator) {
    const std::size_t end = std::min(rest.find(separator), rest.size());
    const std::string_view item = rest.substr(0, end);
    rest.remove_prefix(std::min(end + 1, rest.size()));
    return item;
}

template<class T>
T NumberIn(std::string_view text, int base = 10) {
    T value = 0;
    const char* const end = text.data() + text.size();
    const auto [stop, error] = std::from_chars(text.data(), end, value, base);
    return error == std::errc{} && stop == end ? value : 0;
}

// Calls `use` for each item of a comma list; once, with an empty item, for an empty list.
template<class Use>
void ForEachItem(std::string_view list, Use use) {
    do {
        use(Take(list, ','));
    } while (!list.empty());
}

std::string_view LettersOf(std::string_view code) {
    return code.substr(0, std::min(code.find_first_of("0123456789"), code.size()));
}

std::string_view FieldOf(char letter, const TPart& part, const TPartVariant& variant) {
    const std::string_view letters = LettersOf(part.PackageCode);
    switch (letter) {
    case 'b':
        return part.Base;
    case 'p':
        return part.PackageCode;
    case 'l':
        return letters;
    case 'n':
        return part.PackageCode.substr(letters.size());
    case 's':
        return variant.Speed;
    case 't':
        return variant.Temperature;
    case 'S':
        return variant.Speed == "Std" ? std::string_view() : variant.Speed;
    case 'T':
        return variant.Temperature == "C" ? std::string_view() : variant.Temperature;
    default:
        return {};
    }
}

} // namespace

TPartTable::TPartTable(std::span<const char* const> lines) {
    Parts.reserve(lines.size());
    for (const char* line : lines) {
        ReadLine(line);
    }
}

void TPartTable::ReadLine(std::string_view line) {
    const std::string_view kind = Take(line, '\t');
    if (kind == "part") {
        ReadPart(line);
    } else if (kind == "family") {
        TPartFamily family;
        family.Name = Take(line, '\t');
        family.Type = Take(line, '\t');
        family.NamePattern = Take(line, '\t');
        Families.push_back(family);
    } else if (kind == "standards") {
        const auto number = NumberIn<std::size_t>(Take(line, '\t'));
        if (number <= LargestStandardsNumber) {
            StandardLists.resize(std::max(StandardLists.size(), number + 1));
            StandardLists[number] = line;
        }
    } else if (kind == "vendor") {
        Vendor = Take(line, '\t');
        BsdlPattern = Take(line, '\t');
    }
}

void TPartTable::ReadPart(std::string_view columns) {
    if (Families.empty()) {
        return;
    }
    TPart part;
    part.Family = Families.size() - 1;
    part.Base = Take(columns, '\t');
    std::string_view package = Take(columns, '\t');
    part.Package = Take(package, '=');
    part.PackageCode = package.empty() ? part.Package : package;
    part.IdCode = NumberIn<std::uint32_t>(Take(columns, '\t'), 16);
    for (std::int32_t* number :
         {&part.IrLength, &part.Pins, &part.Ios, &part.Capacity, &part.Multipliers,
          &part.RamKilobits, &part.ClockManagers, &part.GlobalClocks, &part.DifferentialPairs,
          &part.HighSpeedPairs, &part.ConfigBits}) {
        *number = NumberIn<std::int32_t>(Take(columns, '\t'));
    }
    part.OnChipTermination = Take(columns, '\t') == "1";
    const std::string_view grades = Take(columns, '\t');
    const auto standards = NumberIn<std::size_t>(columns);
    if (standards < StandardLists.size()) {
        part.Standards = StandardLists[standards];
    }
    Parts.push_back(part);
    ReadGrades(grades);
}

void TPartTable::ReadGrades(std::string_view grades) {
    do {
        std::string_view group = Take(grades, ';');
        const std::string_view speeds = Take(group, '/');
        ForEachItem(speeds, [&](std::string_view speed) {
            ForEachItem(group, [&](std::string_view temperature) {
                Variants.push_back({Parts.size() - 1, speed, temperature});
            });
        });
    } while (!grades.empty());
}

std::string TPartTable::NameOf(const TPartVariant& variant) const {
    return Expand(Families[Parts[variant.Part].Family].NamePattern, variant);
}

std::string TPartTable::BsdlFileOf(const TPartVariant& variant) const {
    return Expand(BsdlPattern, variant);
}

std::string TPartTable::Expand(std::string_view pattern, const TPartVariant& variant) const {
    std::string name;
    while (!pattern.empty()) {
        name += Take(pattern, '%');
        if (!pattern.empty()) {
            name += FieldOf(pattern.front(), Parts[variant.Part], variant);
            pattern.remove_prefix(1);
        }
    }
    return name;
}

} // namespace vorel
