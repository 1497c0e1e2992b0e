#include "support/Text.h"

#include <algorithm>
#include <charconv>

namespace vorel {

namespace {

constexpr char32_t ReplacementCharacter = 0xFFFD;

bool IsDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

// Decodes one character at `pos` and moves behind it; an ill-formed byte counts as one character.
char32_t DecodeUtf8(std::string_view text, std::size_t& pos) {
    const auto lead = static_cast<unsigned char>(text[pos++]);
    if (lead < 0x80) {
        return lead;
    }
    const int extra = lead >= 0xF0 && lead < 0xF5   ? 3
                      : lead >= 0xE0 && lead < 0xF0 ? 2
                      : lead >= 0xC2 && lead < 0xE0 ? 1
                                                    : 0;
    if (extra == 0 || text.size() - pos < static_cast<std::size_t>(extra)) {
        return ReplacementCharacter;
    }
    char32_t code = lead & (0x3FU >> extra);
    for (int i = 0; i < extra; ++i) {
        const auto next = static_cast<unsigned char>(text[pos + static_cast<std::size_t>(i)]);
        if ((next & 0xC0U) != 0x80U) {
            return ReplacementCharacter;
        }
        code = (code << 6U) | (next & 0x3FU);
    }
    constexpr char32_t smallest[] = {0, 0x80, 0x800, 0x10000};
    if (code < smallest[extra] || code > 0x10FFFF || (code >= 0xD800 && code < 0xE000)) {
        return ReplacementCharacter;
    }
    pos += static_cast<std::size_t>(extra);
    return code;
}

void AppendUtf8(std::string& out, char32_t code) {
    const auto put = [&out](char32_t byte) { out.push_back(static_cast<char>(byte)); };
    if (code < 0x80) {
        put(code);
    } else if (code < 0x800) {
        put(0xC0U | (code >> 6U));
        put(0x80U | (code & 0x3FU));
    } else if (code < 0x10000) {
        put(0xE0U | (code >> 12U));
        put(0x80U | ((code >> 6U) & 0x3FU));
        put(0x80U | (code & 0x3FU));
    } else {
        put(0xF0U | (code >> 18U));
        put(0x80U | ((code >> 12U) & 0x3FU));
        put(0x80U | ((code >> 6U) & 0x3FU));
        put(0x80U | (code & 0x3FU));
    }
}

// The run of digits at `pos` without its leading zeros; moves behind the run.
std::string_view TakeDigits(std::string_view text, std::size_t& pos) {
    const std::size_t start = pos;
    while (pos < text.size() && IsDigit(text[pos])) {
        ++pos;
    }
    std::string_view run = text.substr(start, pos - start);
    run.remove_prefix(std::min(run.find_first_not_of('0'), run.size()));
    return run;
}

int Order(std::size_t a, std::size_t b) noexcept {
    return a < b ? -1 : static_cast<int>(a > b);
}

// One item in double quotes, starting at the opening quote; moves behind the closing one.
std::string TakeQuoted(std::string_view text, std::size_t& pos) {
    std::string item;
    for (++pos; pos < text.size(); ++pos) {
        if (text[pos] == '"') {
            if (pos + 1 >= text.size() || text[pos + 1] != '"') {
                ++pos;
                break;
            }
            ++pos;
        }
        item.push_back(text[pos]);
    }
    return item;
}

bool IsBlank(char c) noexcept {
    return static_cast<unsigned char>(c) - 1U < 32U;
}

} // namespace

WideText ToWide(std::string_view utf8) {
    WideText wide;
    wide.reserve(utf8.size());
    for (std::size_t pos = 0; pos < utf8.size();) {
        const char32_t code = DecodeUtf8(utf8, pos);
        if (code < 0x10000) {
            wide.push_back(static_cast<char16_t>(code));
        } else {
            wide.push_back(static_cast<char16_t>(0xD800U + ((code - 0x10000U) >> 10U)));
            wide.push_back(static_cast<char16_t>(0xDC00U + (code & 0x3FFU)));
        }
    }
    return wide;
}

std::string ToUtf8(std::u16string_view wide) {
    std::string utf8;
    utf8.reserve(wide.size());
    for (std::size_t i = 0; i < wide.size(); ++i) {
        const char32_t unit = wide[i];
        if (unit < 0xD800 || unit >= 0xE000) {
            AppendUtf8(utf8, unit);
        } else if (unit < 0xDC00 && i + 1 < wide.size() && wide[i + 1] >= 0xDC00 &&
                   wide[i + 1] < 0xE000) {
            AppendUtf8(utf8,
                       0x10000U + ((unit - 0xD800U) << 10U) + (char32_t{wide[++i]} - 0xDC00U));
        } else {
            AppendUtf8(utf8, ReplacementCharacter);
        }
    }
    return utf8;
}

std::string UpperCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), UpperAscii);
    return result;
}

std::string LowerCase(std::string_view text) {
    std::string result(text);
    std::transform(result.begin(), result.end(), result.begin(), LowerAscii);
    return result;
}

int CompareText(std::string_view a, std::string_view b) noexcept {
    const std::size_t common = std::min(a.size(), b.size());
    for (std::size_t i = 0; i < common; ++i) {
        const auto x = static_cast<unsigned char>(UpperAscii(a[i]));
        const auto y = static_cast<unsigned char>(UpperAscii(b[i]));
        if (x != y) {
            return x < y ? -1 : 1;
        }
    }
    return Order(a.size(), b.size());
}

bool SameText(std::string_view a, std::string_view b) noexcept {
    return a.size() == b.size() && CompareText(a, b) == 0;
}

int CompareNatural(std::string_view a, std::string_view b) noexcept {
    std::size_t i = 0;
    std::size_t j = 0;
    while (i < a.size() && j < b.size()) {
        if (IsDigit(a[i]) && IsDigit(b[j])) {
            const std::string_view x = TakeDigits(a, i);
            const std::string_view y = TakeDigits(b, j);
            const int order = x.size() != y.size() ? Order(x.size(), y.size()) : x.compare(y);
            if (order != 0) {
                return order < 0 ? -1 : 1;
            }
        } else {
            const auto x = static_cast<unsigned char>(UpperAscii(a[i++]));
            const auto y = static_cast<unsigned char>(UpperAscii(b[j++]));
            if (x != y) {
                return x < y ? -1 : 1;
            }
        }
    }
    const int order = Order(a.size() - i, b.size() - j);
    return order != 0 ? order : CompareText(a, b);
}

std::string_view Trim(std::string_view text) noexcept {
    while (!text.empty() && static_cast<unsigned char>(text.front()) <= ' ') {
        text.remove_prefix(1);
    }
    while (!text.empty() && static_cast<unsigned char>(text.back()) <= ' ') {
        text.remove_suffix(1);
    }
    return text;
}

std::string PadLeft(std::string_view text, std::size_t width) {
    return std::string(width - std::min(width, text.size()), ' ').append(text);
}

std::string PadRight(std::string_view text, std::size_t width) {
    return std::string(text).append(width - std::min(width, text.size()), ' ');
}

std::string_view FileNameOf(std::string_view path) noexcept {
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string_view::npos ? path : path.substr(separator + 1);
}

std::string_view StemOf(std::string_view path) noexcept {
    const std::string_view name = FileNameOf(path);
    return name.substr(0, name.rfind('.'));
}

std::vector<std::string> SplitLines(std::string_view text) {
    std::vector<std::string> lines;
    while (!text.empty()) {
        const std::size_t end = text.find_first_of("\r\n");
        lines.emplace_back(text.substr(0, end));
        if (end == std::string_view::npos) {
            break;
        }
        const bool pair = text[end] == '\r' && end + 1 < text.size() && text[end + 1] == '\n';
        text.remove_prefix(end + (pair ? 2 : 1));
    }
    return lines;
}

std::string JoinLines(const std::vector<std::string>& lines) {
    std::string text;
    for (const std::string& line : lines) {
        text.append(line).push_back('\n');
    }
    return text;
}

std::vector<std::string> SplitCommaText(std::string_view text) {
    std::vector<std::string> items;
    std::size_t pos = 0;
    const auto skipBlanks = [&] {
        while (pos < text.size() && IsBlank(text[pos])) {
            ++pos;
        }
    };
    skipBlanks();
    while (pos < text.size()) {
        if (text[pos] == '"') {
            items.push_back(TakeQuoted(text, pos));
        } else {
            const std::size_t start = pos;
            while (pos < text.size() && !IsBlank(text[pos]) && text[pos] != ',') {
                ++pos;
            }
            items.emplace_back(text.substr(start, pos - start));
        }
        skipBlanks();
        if (pos < text.size() && text[pos] == ',') {
            ++pos;
            skipBlanks();
            if (pos >= text.size()) {
                items.emplace_back();
            }
        }
    }
    return items;
}

std::string JoinCommaText(const std::vector<std::string>& items) {
    std::string text;
    for (std::size_t i = 0; i < items.size(); ++i) {
        if (i > 0) {
            text.push_back(',');
        }
        const std::string& item = items[i];
        const bool plain = std::none_of(item.begin(), item.end(), [](char c) {
            return static_cast<unsigned char>(c) <= ' ' || c == ',' || c == '"';
        });
        if (plain && !(item.empty() && items.size() == 1)) {
            text.append(item);
            continue;
        }
        text.push_back('"');
        for (const char c : item) {
            text.append(c == '"' ? 2 : 1, c);
        }
        text.push_back('"');
    }
    return text;
}

std::optional<std::string> FindParameter(std::string_view parameters, std::string_view name) {
    while (!parameters.empty()) {
        const std::size_t bar = parameters.find('|');
        const std::string_view pair = parameters.substr(0, bar);
        const std::size_t equals = pair.find('=');
        if (equals != std::string_view::npos && SameText(Trim(pair.substr(0, equals)), name)) {
            return std::string(pair.substr(equals + 1));
        }
        if (bar == std::string_view::npos) {
            break;
        }
        parameters.remove_prefix(bar + 1);
    }
    return std::nullopt;
}

std::optional<std::int64_t> ParseDecimal(std::string_view text) noexcept {
    text = Trim(text);
    if (text.size() > 1 && text.front() == '+' && IsDigit(text[1])) {
        text.remove_prefix(1);
    }
    std::int64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

std::optional<std::uint64_t> ParseHex(std::string_view text) noexcept {
    text = Trim(text);
    std::uint64_t value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, 16);
    if (error != std::errc{} || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

std::optional<double> ParseFloat(std::string_view text) noexcept {
    text = Trim(text);
    if (text.size() > 1 && text.front() == '+' && text[1] != '-') {
        text.remove_prefix(1);
    }
    double value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value);
    if (error != std::errc{} || end != text.data() + text.size()) {
        return std::nullopt;
    }
    return value;
}

std::string ToHex(std::uint64_t value, int digits) {
    std::string text;
    for (; value != 0 || static_cast<int>(text.size()) < digits; value >>= 4U) {
        text.push_back("0123456789ABCDEF"[value & 0xFU]);
    }
    std::reverse(text.begin(), text.end());
    return text;
}

} // namespace vorel
