#include "core/BitVector.h"

namespace vorel {

BitText NumberToBits(std::uint32_t value, std::int32_t bitCount) {
    BitText bits(bitCount > 0 ? static_cast<std::size_t>(bitCount) : 0U, '0');
    for (auto place = bits.rbegin(); place != bits.rend() && value != 0; ++place, value >>= 1U) {
        *place = (value & 1U) != 0 ? '1' : '0';
    }
    return bits;
}

std::uint32_t BitsToNumber(std::string_view bits) noexcept {
    std::uint32_t value = 0;
    for (const char bit : bits) {
        value = value * 2 + (bit == '1' ? 1U : 0U);
    }
    return value;
}

} // namespace vorel
