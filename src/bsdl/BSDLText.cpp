#include "bsdl/BSDLText.h"

#include <algorithm>
#include <limits>
#include <utility>

namespace vorel {

namespace {

bool IsBlank(char c) noexcept {
    return static_cast<unsigned char>(c) - 1U < 32U;
}

} // namespace

TCommaText::TCommaText(std::string_view text, TTextStore& store) : Rest(text), Store(store) {
    SkipBlanks();
}

void TCommaText::SkipBlanks() noexcept {
    while (!Rest.empty() && IsBlank(Rest.front())) {
        Rest.remove_prefix(1);
    }
}

bool TCommaText::Next(std::string_view& item) {
    if (Rest.empty()) {
        item = {};
        return std::exchange(LastIsEmpty, false);
    }
    if (Rest.front() == '"') {
        item = TakeQuoted();
    } else {
        std::size_t end = 0;
        while (end < Rest.size() && !IsBlank(Rest[end]) && Rest[end] != ',') {
            ++end;
        }
        item = Rest.substr(0, end);
        Rest.remove_prefix(end);
    }
    SkipBlanks();
    if (!Rest.empty() && Rest.front() == ',') {
        Rest.remove_prefix(1);
        SkipBlanks();
        LastIsEmpty = Rest.empty();
    }
    return true;
}

std::string_view TCommaText::TakeQuoted() {
    std::size_t end = 1;
    bool doubled = false;
    for (; end < Rest.size(); ++end) {
        if (Rest[end] != '"') {
            continue;
        }
        if (end + 1 >= Rest.size() || Rest[end + 1] != '"') {
            break;
        }
        doubled = true;
        ++end;
    }
    end = std::min(end, Rest.size());
    const std::string_view inner = Rest.substr(1, end - 1);
    Rest.remove_prefix(std::min(end + 1, Rest.size()));
    if (!doubled) {
        return inner;
    }
    std::string& plain = Store.emplace_back();
    for (std::size_t i = 0; i < inner.size(); ++i) {
        plain.push_back(inner[i]);
        i += inner[i] == '"' ? 1 : 0;
    }
    return plain;
}

std::int32_t ToInteger(std::string_view text, std::int32_t fallback) noexcept {
    const std::int64_t value = ParseDecimal(text).value_or(fallback);
    const bool fits = value >= std::numeric_limits<std::int32_t>::min() &&
                      value <= std::numeric_limits<std::int32_t>::max();
    return fits ? static_cast<std::int32_t>(value) : fallback;
}

std::uint32_t BinaryToNumber(std::string_view text) noexcept {
    if (!text.empty() && text.front() == 'B') {
        text.remove_prefix(1);
    }
    std::uint32_t value = 0;
    for (const char c : text) {
        if (c == '0' || c == '1') {
            value = (value << 1U) | static_cast<std::uint32_t>(c - '0');
        } else if (c != ' ' && c != '\r') {
            return 0;
        }
    }
    return value;
}

std::string WithoutBlanks(std::string_view text) {
    std::string result(text);
    std::erase(result, ' ');
    return result;
}

void DropLeadingX(std::string& text) {
    text.erase(0, std::min(text.find_first_not_of("xX"), text.size()));
}

std::int32_t FindWord(std::span<const char* const> table, std::string_view word) noexcept {
    const auto found = std::find_if(table.begin(), table.end(),
                                    [&](const char* entry) { return SameText(entry, word); });
    return found == table.end() ? 0 : static_cast<std::int32_t>(found - table.begin());
}

} // namespace vorel
