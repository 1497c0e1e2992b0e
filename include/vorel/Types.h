// The few types that may cross the boundary between the library, its hosts and its driver modules.
//
// Nothing else crosses it: integers, doubles, the texts below, buffers with an explicit count, and
// interface pointers. All of it is passed on one thread, the host's main thread.
#pragma once

#include <cstdint>
#include <string>

namespace vorel {

// Result of every interface operation and exported function. 0 and above is success.
using Status = std::int32_t;

// Boolean at an interface: 32 bits, -1 true, 0 false.
using Bool32 = std::int32_t;
inline constexpr Bool32 True32 = -1;
inline constexpr Bool32 False32 = 0;

constexpr Bool32 ToBool32(bool value) noexcept {
    return value ? True32 : False32;
}

// Text for people and names: UTF-16.
using WideText = std::u16string;

// A bit vector: the characters '0' and '1', most significant bit at the left. The rightmost
// character is shifted first, and the first bit captured stands rightmost.
using BitText = std::string;

} // namespace vorel
