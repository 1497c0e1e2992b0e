// The form in which object code and memory contents travel: one location to a 32-bit word, whatever
// the location's width. The file readers put one byte of the file into each word, unless they
// assemble words of a stated size.
#pragma once

#include <array>
#include <cstdint>
#include <functional>
#include <vector>

namespace vorel {

using TMemoryWord = std::uint32_t;
using TMemoryWords = std::vector<TMemoryWord>;

// A flat memory image of 256 KiB; too large for the stack. The loader that takes one zeroes it.
using TMemoryImage = std::array<TMemoryWord, 65536>;

// Receives one block: `count` words, of which the first belongs at `address`. The words are the
// loader's and only good during the call. A consumer must ignore a count below 1. What it throws
// leaves the loader and ends the loading.
using TBlockConsumer =
    std::function<void(const TMemoryWord* words, std::int64_t count, std::int64_t address)>;

// Receives the same blocks as bytes, which costs a quarter of the memory; often they stand where
// the file was read to. The same rules.
using TByteConsumer =
    std::function<void(const std::uint8_t* bytes, std::int64_t count, std::int64_t address)>;

// Passes each block on to `consumer`, one byte to a word. `consumer` has to outlive the result,
// which is empty when it is.
TByteConsumer AsWords(const TBlockConsumer& consumer);

} // namespace vorel
