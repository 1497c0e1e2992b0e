// An ini text in memory: sections in square brackets, "key=value" lines, and everything else kept
// as it stands.
//
// Names of sections and keys compare without case; blanks around names and values are dropped. A
// line whose first character is ';' or '#' is a comment; comments, empty lines and lines that fit
// nothing keep their place and text when the file is written back. Keys before the first section
// belong to the section "". Sections of the same name read as one; of several lines with the same
// key the first counts. Values are not unquoted. Bytes of any encoding survive, and a UTF-8 byte
// order mark is kept.
#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <string_view>
#include <unordered_map>
#include <vector>

namespace vorel {

class TIniFile {
public:
    // `Line` counts from 1 in the text as ToText gives it.
    struct Entry {
        std::string Key;
        std::string Value;
        std::size_t Line = 0;
    };
    struct Section {
        std::string Name;
        std::size_t Line = 0;
        std::vector<Entry> Entries;
    };

    TIniFile() = default;
    // Takes the bytes of a file; any text will do.
    explicit TIniFile(std::string_view text);

    bool HasSection(std::string_view section) const;
    bool HasKey(std::string_view section, std::string_view key) const;
    // The value, or `defaultValue` when the key is not there. A key with nothing behind "=" has the
    // empty value.
    std::string Read(std::string_view section, std::string_view key,
                     std::string_view defaultValue = {}) const;

    // All sections in file order, those of the same name apart, each with its lines in order. The
    // section "" comes first when there are keys before the first section.
    std::vector<Section> Sections() const;
    // Lines that are neither empty, comment, section nor "key=value", by number.
    std::vector<std::size_t> ForeignLines() const;

    // Changes the line that Read takes, or adds one at the end of the (first) section of that name,
    // or of a new section at the end. Line ends in the arguments turn into blanks.
    void Write(std::string_view section, std::string_view key, std::string_view value);
    // Removes all lines of a key, or a section with all that stands in it. False when there was
    // nothing to remove.
    bool Erase(std::string_view section, std::string_view key);
    bool EraseSection(std::string_view section);

    // The file's bytes: unchanged lines as they were read. Line ends are all like the first one
    // that was read, LF for a new file.
    std::string ToText() const;

private:
    struct TextLine {
        std::string Raw;
        std::string Key; // empty unless the line is "key=value"
        std::string Value;
    };
    struct Block {
        std::string Name;
        std::string Header;             // the line in brackets; none for the first block
        std::vector<std::size_t> Lines; // places in Store, in file order
    };

    static TextLine ParseLine(std::string line);
    // The name of a line in Keys.
    static std::string KeyName(std::string_view section, std::string_view key);
    std::size_t Keep(TextLine line);
    void BuildIndex();
    // The line that counts for a key, or null.
    const TextLine* Find(std::string_view section, std::string_view key) const;
    Block& BlockFor(const std::string& section);

    std::vector<TextLine> Store; // a line keeps its place; the lines of no block are gone
    std::vector<Block> Blocks{1};
    std::unordered_map<std::string, std::vector<std::size_t>> Index; // lower-case name -> blocks
    std::unordered_map<std::string, std::size_t> Keys; // KeyName -> the line that counts
    std::string LineEnd = "\n";
    bool HasByteOrderMark = false;
};

} // namespace vorel
