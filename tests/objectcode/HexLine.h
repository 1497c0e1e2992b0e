// Intel Hex records with their right checksum.
#pragma once

#include "support/Text.h"

#include <cstdint>
#include <numeric>
#include <string>
#include <vector>

namespace vorel {

// With LF at its end.
inline std::string HexLine(unsigned type, unsigned address, const std::vector<std::uint8_t>& data) {
    std::vector<std::uint8_t> bytes{
        static_cast<std::uint8_t>(data.size()), static_cast<std::uint8_t>(address >> 8U),
        static_cast<std::uint8_t>(address), static_cast<std::uint8_t>(type)};
    bytes.insert(bytes.end(), data.begin(), data.end());
    bytes.push_back(static_cast<std::uint8_t>(-std::accumulate(bytes.begin(), bytes.end(), 0)));
    std::string text = ":";
    for (const std::uint8_t byte : bytes) {
        text += ToHex(byte, 2);
    }
    return text + "\n";
}

} // namespace vorel
