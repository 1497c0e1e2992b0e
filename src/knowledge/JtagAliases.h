// JTAG ids that stand for other ids: the file JTAG_ALIAS.txt of the installation.
//
// Each line is looked at by itself: what stands behind ";" is a comment, and LEFT=RIGHT, both
// hexadecimal without prefix, says that an id LEFT is treated as RIGHT. The last line for an id
// counts; lines of any other form are passed over.
#pragma once

#include <cstdint>
#include <string_view>
#include <unordered_map>

namespace vorel {

class TJtagAliases {
public:
    TJtagAliases() = default;
    explicit TJtagAliases(std::string_view text);

    // The id that `idCode` stands for; itself without an entry. One step only.
    std::uint32_t Resolve(std::uint32_t idCode) const;
    std::size_t Count() const noexcept { return Map.size(); }

private:
    void ReadLine(std::string_view line);

    std::unordered_map<std::uint32_t, std::uint32_t> Map;
};

} // namespace vorel
