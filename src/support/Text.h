// Small text helpers. Inside the library text is std::string: UTF-8 for names and messages, raw
// bytes for the contents of files. Comparisons "without case" fold the ASCII letters only, so bytes
// of any encoding survive.
#pragma once

#include "vorel/Types.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vorel {

// UTF-8 <-> UTF-16. Ill-formed input gives U+FFFD in its place; nothing is lost before or behind
// it.
WideText ToWide(std::string_view utf8);
std::string ToUtf8(std::u16string_view wide);

constexpr char UpperAscii(char c) noexcept {
    return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}
constexpr char LowerAscii(char c) noexcept {
    return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c;
}
std::string UpperCase(std::string_view text);
std::string LowerCase(std::string_view text);

// Negative, 0 or positive, without case.
int CompareText(std::string_view a, std::string_view b) noexcept;
bool SameText(std::string_view a, std::string_view b) noexcept;

// Order for lists that people read: runs of digits compare by value ("A2" before "A10"), letters
// without case. 0 means equal without case, digit by digit; texts that differ only in leading zeros
// are ordered, not equal.
int CompareNatural(std::string_view a, std::string_view b) noexcept;

// Drops characters of code 32 and below at both ends.
std::string_view Trim(std::string_view text) noexcept;
std::string PadLeft(std::string_view text, std::size_t width);
std::string PadRight(std::string_view text, std::size_t width);

// The part behind the last path separator ('/' or '\'), and that part without its last ".suffix".
std::string_view FileNameOf(std::string_view path) noexcept;
std::string_view StemOf(std::string_view path) noexcept;

// Lines of a text; LF, CR LF and CR end a line, and no empty line is made of a final line end.
std::vector<std::string> SplitLines(std::string_view text);
// Each item followed by LF.
std::string JoinLines(const std::vector<std::string>& lines);

// Comma text: items separated by commas or blanks (codes 1 to 32); an item in double quotes may
// hold both, and a doubled quote in it stands for one. "a, b" are two items, "a,,b" three.
std::vector<std::string> SplitCommaText(std::string_view text);
// The reverse: items that need quotes get them.
std::string JoinCommaText(const std::vector<std::string>& items);

// Parameter text "name=value|name=value". Names compare without case; the first hit counts. Nothing
// without the name.
std::optional<std::string> FindParameter(std::string_view parameters, std::string_view name);

// Whole text as a number, blanks at both ends allowed; anything else, or a value that does not fit,
// gives nothing.
std::optional<std::int64_t> ParseDecimal(std::string_view text) noexcept;
std::optional<std::uint64_t> ParseHex(std::string_view text) noexcept;
std::optional<double> ParseFloat(std::string_view text) noexcept;

// Upper-case hexadecimal, at least `digits` wide.
std::string ToHex(std::uint64_t value, int digits);

} // namespace vorel
