// What the soft processor reaches with loads, stores and fetches: 1 MiB of RAM at address 0, and
// from 0xFFFF0000 on the console and the timer. Big-endian: the byte at the lowest address is the
// highest of a word.
//
// Peripheral words, for loads and stores of words only (bytes and halfwords there are bus errors):
//   FFFF0000  console. Store: bits 7 to 0 are a character; while the console is full the store
//             waits. Load: characters that still fit.
//   FFFF0004  timer. Load: the low 32 bits of the cycle count.
#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <vector>

namespace vorel::sim {

class TProcessorBus final {
public:
    static constexpr std::uint32_t RamSize = 0x100000; // bytes
    static constexpr std::uint32_t ConsoleAddress = 0xFFFF0000;
    static constexpr std::uint32_t TimerAddress = 0xFFFF0004;
    static constexpr std::size_t ConsoleCapacity = 4096; // characters

    enum class Outcome { Done, Wait, Error };

    // `size` is 1, 2 or 4 and `address` a multiple of it. Nothing where there is nothing.
    std::optional<std::uint32_t> Load(std::uint32_t address, unsigned size) const;
    // Wait: the store took no effect and has to be tried again later.
    Outcome Store(std::uint32_t address, unsigned size, std::uint32_t value);

    // Characters that were written and not yet taken, the oldest first.
    const std::deque<std::uint8_t>& Console() const noexcept { return ConsoleText; }
    // Takes up to `count` of the oldest.
    void DropConsole(std::size_t count);

    std::uint64_t Cycles = 0; // counted by the processor

private:
    std::vector<std::uint8_t> Ram = std::vector<std::uint8_t>(RamSize);
    std::deque<std::uint8_t> ConsoleText;
};

} // namespace vorel::sim
