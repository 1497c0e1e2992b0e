#include "simulator/DataRegister.h"

#include "support/Errors.h"

namespace vorel::sim {

TWordRegister::TWordRegister(unsigned length) : Length(length) {
    if (length < 1 || length > 64) {
        throw EVorelError(StatusBadArgument,
                          "A word register has 1 to 64 bits, not " + std::to_string(length));
    }
}

void TWordRegister::Load(std::uint64_t value) noexcept {
    Bits = Length == 64 ? value : value & ((std::uint64_t{1} << Length) - 1);
    OutBit = (Bits & 1) != 0;
}

TBitRegister::TBitRegister(std::size_t length) {
    if (length < 1 || length > MaxLength) {
        throw EVorelError(StatusBadArgument, "A register has 1 to " + std::to_string(MaxLength) +
                                                 " bits, not " + std::to_string(length));
    }
    Ring.resize(length);
}

void TBitRegister::Load(const BitText& bits) {
    if (bits.size() != Ring.size()) {
        throw EVorelError(StatusBadArgument, "A register of " + std::to_string(Ring.size()) +
                                                 " bits cannot take " +
                                                 std::to_string(bits.size()));
    }
    Head = 0;
    for (std::size_t i = 0; i < bits.size(); ++i) {
        Ring[i] = bits[bits.size() - 1 - i] == '1' ? 1 : 0;
    }
    OutBit = Ring[0] != 0;
}

BitText TBitRegister::Text() const {
    BitText text(Ring.size(), '0');
    for (std::size_t i = 0; i < Ring.size(); ++i) {
        if (Ring[(Head + i) % Ring.size()] != 0) {
            text[Ring.size() - 1 - i] = '1';
        }
    }
    return text;
}

} // namespace vorel::sim
