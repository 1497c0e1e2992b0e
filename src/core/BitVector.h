// Numbers as bit vectors and back. A bit vector is a text of '0' and '1' whose rightmost character
// is bit 0 and is shifted first.
#pragma once

#include "vorel/Types.h"

#include <string_view>

namespace vorel {

// `bitCount` characters wide, below 1 empty. Beyond 32 characters only zeros stand at the left.
BitText NumberToBits(std::uint32_t value, std::int32_t bitCount);
// A longer text loses its high bits; an empty one is 0. Any character but '1' counts as 0.
std::uint32_t BitsToNumber(std::string_view bits) noexcept;

} // namespace vorel
