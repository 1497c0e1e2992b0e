#include "knowledge/JtagAliases.h"

#include "knowledge/TextFile.h"
#include "support/Text.h"

#include <optional>

namespace vorel {

namespace {

// The all-ones id reads as no number: no device has it.
std::optional<std::uint32_t> IdOf(std::string_view text) {
    const std::optional<std::uint64_t> value = ParseHex(text);
    if (!value || *value >= 0xFFFFFFFFU) {
        return std::nullopt;
    }
    return static_cast<std::uint32_t>(*value);
}

} // namespace

TJtagAliases::TJtagAliases(std::string_view text) {
    std::string_view line;
    while (TakeLine(text, line)) {
        ReadLine(line);
    }
}

void TJtagAliases::ReadLine(std::string_view line) {
    line = Trim(line.substr(0, line.find(';')));
    const std::size_t equals = line.find('=');
    if (equals == std::string_view::npos) {
        return;
    }
    const std::optional<std::uint32_t> left = IdOf(line.substr(0, equals));
    const std::optional<std::uint32_t> right = IdOf(line.substr(equals + 1));
    if (left && right) {
        Map[*left] = *right;
    }
}

std::uint32_t TJtagAliases::Resolve(std::uint32_t idCode) const {
    const auto entry = Map.find(idCode);
    return entry == Map.end() ? idCode : entry->second;
}

} // namespace vorel
