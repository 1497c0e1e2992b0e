// The RAM of the ZRC3000 as its program was loaded, and the software breakpoints planted in it.
#pragma once

#include "drivers/ProcessorUnit.h"

#include <cstdint>
#include <map>
#include <optional>
#include <span>

namespace vorel {

// A software breakpoint is a BREAK in the place of an instruction, the kept word. Reads and writes
// of the host meet kept words, never a planted BREAK. A program that writes over one of its
// instructions takes the BREAK away; what it wrote is then what counts, here too.
//
// Failures of the chain raise EVorelError.
class TProcessorMemory final {
public:
    // Its code tells it from the BREAKs that a program brings along.
    static constexpr std::uint32_t PlantedBreak = 0x016948CD;

    // The unit outlives the memory.
    explicit TProcessorMemory(const TProcessorUnit& unit) : Unit(unit) {}

    // Bytes, one to a slot. Words that are written in part are read first.
    void ReadBytes(std::uint32_t* slots, std::uint32_t address, std::uint32_t count) const;
    void WriteBytes(const std::uint32_t* slots, std::uint32_t address, std::uint32_t count);

    // Addresses of planted words are multiples of 4 inside the RAM.
    bool HasPlanted() const noexcept { return !KeptWords.empty(); }
    std::optional<std::uint32_t> KeptWord(std::uint32_t address) const;
    // False when the memory does not take the BREAK.
    bool Plant(std::uint32_t address);
    // Puts the kept word back, unless the program has replaced the BREAK.
    void Remove(std::uint32_t address);
    // Puts the kept word back until PlantLifted, so that it can be executed.
    void Lift(std::uint32_t address);
    void PlantLifted();

private:
    using TKeptWords = std::map<std::uint32_t, std::uint32_t>; // by address

    void ReadWords(std::span<std::uint32_t> words, std::uint32_t address) const;
    void WriteWords(std::span<std::uint32_t> words, std::uint32_t address);
    void PutBack(std::uint32_t address, std::uint32_t word) const;

    const TProcessorUnit& Unit;
    TKeptWords KeptWords;
    std::optional<std::uint32_t> Lifted;
};

} // namespace vorel
