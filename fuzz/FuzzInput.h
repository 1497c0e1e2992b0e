// The bytes of an input one after the other; zeros behind its end.
#pragma once

#include <cstddef>
#include <cstdint>

namespace vorel::fuzz {

class TInput {
public:
    TInput(const std::uint8_t* data, std::size_t size) : Data(data), Left(size) {}

    bool AtEnd() const noexcept { return Left == 0; }
    std::uint8_t Byte() noexcept {
        if (Left == 0) {
            return 0;
        }
        --Left;
        return *Data++;
    }
    std::uint32_t Word() noexcept {
        std::uint32_t word = 0;
        for (int i = 0; i < 4; ++i) {
            word = word << 8 | Byte();
        }
        return word;
    }

private:
    const std::uint8_t* Data;
    std::size_t Left;
};

} // namespace vorel::fuzz
