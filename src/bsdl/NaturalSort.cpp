#include "bsdl/NaturalSort.h"

namespace vorel {

namespace {

bool IsDigit(char c) noexcept {
    return c >= '0' && c <= '9';
}

// Takes up to 16 bytes, the first one most significant.
class TFrontBuilder {
public:
    bool Full() const noexcept { return Used >= 16; }
    void Put(unsigned value) noexcept {
        if (Full()) {
            return;
        }
        std::uint64_t& half = Used < 8 ? Front.High : Front.Low;
        half |= std::uint64_t{value & 0xFFU} << (56U - 8U * (Used % 8U));
        ++Used;
    }
    const TNaturalFront& Get() const noexcept { return Front; }

private:
    TNaturalFront Front;
    unsigned Used = 0;
};

} // namespace

TNaturalFront NaturalFrontOf(std::string_view name) noexcept {
    TFrontBuilder front;
    for (std::size_t i = 0; i < name.size() && !front.Full();) {
        if (!IsDigit(name[i])) {
            front.Put(static_cast<unsigned char>(UpperAscii(name[i++])));
            continue;
        }
        // A run of digits: a byte in the place of the digits among the characters, its length
        // without leading zeros, and the digits.
        std::size_t end = i;
        while (end < name.size() && IsDigit(name[end])) {
            ++end;
        }
        while (i < end && name[i] == '0') {
            ++i;
        }
        constexpr std::size_t longest = 200;
        front.Put('0');
        front.Put(static_cast<unsigned>(std::min(end - i, longest)));
        if (end - i >= longest) {
            break;
        }
        for (; i < end; ++i) {
            front.Put(static_cast<unsigned char>(name[i]));
        }
    }
    return front.Get();
}

} // namespace vorel
