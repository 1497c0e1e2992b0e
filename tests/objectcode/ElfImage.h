// ELF files that a test makes up.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace vorel {

struct TElfPart {
    std::string Name;
    std::uint32_t Type, Flags, Address;
    std::string Data;
    std::uint32_t Size = 0; // of the header, if not that of the data
};

// A 32-bit big-endian file of these sections with a section name table in front of them; and, in
// front of that, a table of symbol names, if one is given: such a file is not stripped.
class TElfImage {
public:
    explicit TElfImage(const std::vector<TElfPart>& parts, const std::string& symbolNames = "")
        : Bytes(52, '\0') {
        std::vector<TElfPart> all;
        if (!symbolNames.empty()) {
            all.push_back({"", 3, 0, 0, symbolNames});
        }
        const std::size_t nameTable = all.size();
        std::string names(1, '\0');
        for (const TElfPart& part : parts) {
            names += part.Name + '\0';
        }
        all.push_back({"", 3, 0, 0, names});
        all.insert(all.end(), parts.begin(), parts.end());
        const std::string headers = TakeParts(all);
        Bytes.replace(0, 7, "\177ELF\1\2\1");
        Set(32, Bytes.size(), 4);
        Set(46, 40, 2);
        Set(48, all.size(), 2);
        Set(50, nameTable, 2);
        Bytes += headers;
    }
    void Set(std::size_t offset, std::size_t value, std::size_t width) {
        Bytes.replace(offset, width, Number(value, width));
    }

    std::string Bytes;

private:
    // Appends the data; gives the headers.
    std::string TakeParts(const std::vector<TElfPart>& parts) {
        std::string headers;
        std::size_t name = 1;
        for (const TElfPart& part : parts) {
            const std::size_t size = part.Size != 0 ? part.Size : part.Data.size();
            for (const std::size_t field :
                 {part.Name.empty() ? 0 : name, std::size_t{part.Type}, std::size_t{part.Flags},
                  std::size_t{part.Address}, Bytes.size(), size}) {
                headers += Number(field, 4);
            }
            headers += std::string(16, '\0');
            Bytes += part.Data;
            name += part.Name.empty() ? 0 : part.Name.size() + 1;
        }
        return headers;
    }
    static std::string Number(std::size_t value, std::size_t width) {
        std::string text;
        for (std::size_t i = width; i-- > 0;) {
            text.push_back(static_cast<char>(value >> (8 * i)));
        }
        return text;
    }
};

} // namespace vorel
