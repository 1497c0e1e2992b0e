#include "support/IniFile.h"

#include "support/Text.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace vorel {

namespace {

constexpr std::string_view ByteOrderMark = "\xEF\xBB\xBF";

std::string FirstLineEnd(std::string_view text) {
    const std::size_t at = text.find_first_of("\r\n");
    if (at == std::string_view::npos || text[at] == '\n') {
        return "\n";
    }
    return text.substr(at, 2) == "\r\n" ? "\r\n" : "\r";
}

// The name in brackets; nothing when the line is no section.
std::optional<std::string_view> SectionName(std::string_view line) {
    const std::string_view text = Trim(line);
    const std::size_t end = text.find(']');
    if (!text.starts_with('[') || end == std::string_view::npos) {
        return std::nullopt;
    }
    return Trim(text.substr(1, end - 1));
}

std::string OneLine(std::string_view text) {
    std::string result(Trim(text));
    std::replace(result.begin(), result.end(), '\n', ' ');
    std::replace(result.begin(), result.end(), '\r', ' ');
    return result;
}

} // namespace

TIniFile::TIniFile(std::string_view text) {
    HasByteOrderMark = text.starts_with(ByteOrderMark);
    if (HasByteOrderMark) {
        text.remove_prefix(ByteOrderMark.size());
    }
    LineEnd = FirstLineEnd(text);
    for (std::string& line : SplitLines(text)) {
        if (const auto name = SectionName(line)) {
            Block block;
            block.Name = *name;
            block.Header = std::move(line);
            Blocks.push_back(std::move(block));
        } else {
            Blocks.back().Lines.push_back(Keep(ParseLine(std::move(line))));
        }
    }
    BuildIndex();
}

TIniFile::TextLine TIniFile::ParseLine(std::string line) {
    TextLine result;
    const std::string_view text = Trim(line);
    const std::size_t equals = text.find('=');
    if (!text.starts_with(';') && !text.starts_with('#') && equals != std::string_view::npos) {
        result.Key = Trim(text.substr(0, equals));
        result.Value = Trim(text.substr(equals + 1));
    }
    result.Raw = std::move(line);
    return result;
}

std::string TIniFile::KeyName(std::string_view section, std::string_view key) {
    std::string name = LowerCase(Trim(section));
    name += '\n'; // stands in no line
    return name += LowerCase(Trim(key));
}

std::size_t TIniFile::Keep(TextLine line) {
    Store.push_back(std::move(line));
    return Store.size() - 1;
}

void TIniFile::BuildIndex() {
    Index.clear();
    Keys.clear();
    for (std::size_t i = 0; i < Blocks.size(); ++i) {
        const bool unused = i == 0 && Blocks[0].Lines.empty();
        if (!unused) {
            Index[LowerCase(Blocks[i].Name)].push_back(i);
        }
        for (const std::size_t line : Blocks[i].Lines) {
            if (!Store[line].Key.empty()) {
                Keys.try_emplace(KeyName(Blocks[i].Name, Store[line].Key), line);
            }
        }
    }
}

const TIniFile::TextLine* TIniFile::Find(std::string_view section, std::string_view key) const {
    const auto found = Keys.find(KeyName(section, key));
    return found == Keys.end() ? nullptr : &Store[found->second];
}

bool TIniFile::HasSection(std::string_view section) const {
    return Index.contains(LowerCase(Trim(section)));
}

bool TIniFile::HasKey(std::string_view section, std::string_view key) const {
    return Find(section, key) != nullptr;
}

std::string TIniFile::Read(std::string_view section, std::string_view key,
                           std::string_view defaultValue) const {
    const TextLine* line = Find(section, key);
    return line != nullptr ? line->Value : std::string(defaultValue);
}

std::vector<TIniFile::Section> TIniFile::Sections() const {
    std::vector<Section> result;
    std::size_t number = 0;
    for (std::size_t i = 0; i < Blocks.size(); ++i) {
        Section section;
        section.Name = Blocks[i].Name;
        section.Line = i == 0 ? 1 : ++number;
        for (const std::size_t place : Blocks[i].Lines) {
            const TextLine& line = Store[place];
            ++number;
            if (!line.Key.empty()) {
                section.Entries.push_back({line.Key, line.Value, number});
            }
        }
        if (i > 0 || !section.Entries.empty()) {
            result.push_back(std::move(section));
        }
    }
    return result;
}

std::vector<std::size_t> TIniFile::ForeignLines() const {
    std::vector<std::size_t> result;
    std::size_t number = 0;
    for (std::size_t i = 0; i < Blocks.size(); ++i) {
        number += i > 0 ? 1 : 0;
        for (const std::size_t place : Blocks[i].Lines) {
            const TextLine& line = Store[place];
            ++number;
            const std::string_view text = Trim(line.Raw);
            if (line.Key.empty() && !text.empty() && !text.starts_with(';') &&
                !text.starts_with('#')) {
                result.push_back(number);
            }
        }
    }
    return result;
}

TIniFile::Block& TIniFile::BlockFor(const std::string& section) {
    if (section.empty()) {
        Index[section] = {0};
        return Blocks.front();
    }
    const auto known = Index.find(LowerCase(section));
    if (known != Index.end()) {
        return Blocks[known->second.front()];
    }
    std::vector<std::size_t>& last = Blocks.back().Lines;
    const bool gap = !last.empty() && !Trim(Store[last.back()].Raw).empty();
    if (gap || (last.empty() && Blocks.size() > 1)) {
        last.push_back(Keep({}));
    }
    Blocks.push_back({section, "[" + section + "]", {}});
    Index[LowerCase(section)].push_back(Blocks.size() - 1);
    return Blocks.back();
}

void TIniFile::Write(std::string_view section, std::string_view key, std::string_view value) {
    TextLine line;
    line.Key = OneLine(key);
    line.Value = OneLine(value);
    line.Raw = line.Key + "=" + line.Value;
    const std::string where = OneLine(section);
    std::string name = KeyName(where, line.Key);
    const auto old = Keys.find(name);
    if (old != Keys.end()) {
        Store[old->second] = std::move(line);
        return;
    }
    std::vector<std::size_t>& lines = BlockFor(where).Lines;
    const auto lastEntry = std::find_if(lines.rbegin(), lines.rend(), [this](std::size_t place) {
        return !Store[place].Key.empty();
    });
    const std::size_t added = Keep(std::move(line));
    lines.insert(lastEntry.base(), added);
    if (!Store[added].Key.empty()) {
        Keys.emplace(std::move(name), added);
    }
}

bool TIniFile::Erase(std::string_view section, std::string_view key) {
    if (Keys.erase(KeyName(section, key)) == 0) {
        return false;
    }
    const std::string_view wanted = Trim(key);
    for (const std::size_t number : Index.at(LowerCase(Trim(section)))) {
        std::erase_if(Blocks[number].Lines, [this, wanted](std::size_t place) {
            return SameText(Store[place].Key, wanted);
        });
    }
    return true;
}

bool TIniFile::EraseSection(std::string_view section) {
    const std::string wanted(Trim(section));
    if (!HasSection(wanted)) {
        return false;
    }
    if (wanted.empty()) {
        Blocks.front().Lines.clear();
    }
    const auto first = std::next(Blocks.begin());
    Blocks.erase(std::remove_if(first, Blocks.end(),
                                [&](const Block& block) { return SameText(block.Name, wanted); }),
                 Blocks.end());
    BuildIndex();
    return true;
}

std::string TIniFile::ToText() const {
    std::string text(HasByteOrderMark ? ByteOrderMark : std::string_view());
    for (std::size_t i = 0; i < Blocks.size(); ++i) {
        if (i > 0) {
            text.append(Blocks[i].Header).append(LineEnd);
        }
        for (const std::size_t place : Blocks[i].Lines) {
            const TextLine& line = Store[place];
            text.append(line.Raw).append(LineEnd);
        }
    }
    return text;
}

} // namespace vorel
