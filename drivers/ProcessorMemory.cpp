#include "drivers/ProcessorMemory.h"

#include <utility>
#include <vector>

namespace vorel {

namespace {

constexpr std::uint32_t ByteShift(std::uint32_t address) noexcept {
    return 24 - 8 * (address & 3);
}

} // namespace

void TProcessorMemory::ReadBytes(std::uint32_t* slots, std::uint32_t address,
                                 std::uint32_t count) const {
    if (count == 0) {
        return;
    }
    const std::uint32_t first = address / 4;
    std::vector<std::uint32_t> words((address + count - 1) / 4 - first + 1);
    ReadWords(words, first * 4);
    for (std::uint32_t i = 0; i < count; ++i) {
        slots[i] = words[(address + i) / 4 - first] >> ByteShift(address + i) & 0xFF;
    }
}

void TProcessorMemory::WriteBytes(const std::uint32_t* slots, std::uint32_t address,
                                  std::uint32_t count) {
    if (count == 0) {
        return;
    }
    const std::uint32_t first = address / 4;
    std::vector<std::uint32_t> words((address + count - 1) / 4 - first + 1);
    if (address % 4 != 0) {
        ReadWords({words.data(), 1}, first * 4);
    }
    if ((address + count) % 4 != 0 && (words.size() > 1 || address % 4 == 0)) {
        ReadWords({&words.back(), 1}, (address + count) & ~3U);
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t shift = ByteShift(address + i);
        std::uint32_t& word = words[(address + i) / 4 - first];
        word = (word & ~(0xFFU << shift)) | (slots[i] & 0xFF) << shift;
    }
    WriteWords(words, first * 4);
}

void TProcessorMemory::ReadWords(std::span<std::uint32_t> words, std::uint32_t address) const {
    Unit.ReadMemory(words, address);
    const auto end = KeptWords.lower_bound(address + 4 * static_cast<std::uint32_t>(words.size()));
    for (auto planted = KeptWords.lower_bound(address); planted != end; ++planted) {
        std::uint32_t& word = words[(planted->first - address) / 4];
        word = word == PlantedBreak ? planted->second : word;
    }
}

// The kept words change only when the memory has taken the rest of the block.
void TProcessorMemory::WriteWords(std::span<std::uint32_t> words, std::uint32_t address) {
    const auto begin = KeptWords.lower_bound(address);
    const auto end = KeptWords.lower_bound(address + 4 * static_cast<std::uint32_t>(words.size()));
    std::vector<std::uint32_t> kept;
    for (auto planted = begin; planted != end; ++planted) {
        kept.push_back(std::exchange(words[(planted->first - address) / 4], PlantedBreak));
    }
    Unit.WriteMemory(words, address);
    auto word = kept.begin();
    for (auto planted = begin; planted != end; ++planted) {
        planted->second = *word++;
    }
}

std::optional<std::uint32_t> TProcessorMemory::KeptWord(std::uint32_t address) const {
    const auto planted = KeptWords.find(address);
    return planted != KeptWords.end() ? std::optional(planted->second) : std::nullopt;
}

// The word is noted before the BREAK goes out: when the chain fails after that, nobody knows
// whether it arrived.
bool TProcessorMemory::Plant(std::uint32_t address) {
    const std::uint32_t word = Unit.ReadWord(address);
    if (word != PlantedBreak) {
        KeptWords.insert_or_assign(address, word);
    } else {
        KeptWords.try_emplace(address, word);
    }
    Unit.WriteMemory({&PlantedBreak, 1}, address);
    if (Unit.ReadWord(address) == PlantedBreak) {
        return true;
    }
    KeptWords.erase(address);
    return false;
}

void TProcessorMemory::PutBack(std::uint32_t address, std::uint32_t word) const {
    if (Unit.ReadWord(address) == PlantedBreak) {
        Unit.WriteMemory({&word, 1}, address);
    }
}

void TProcessorMemory::Remove(std::uint32_t address) {
    const auto planted = KeptWords.find(address);
    if (planted == KeptWords.end()) {
        return;
    }
    PutBack(address, planted->second);
    KeptWords.erase(planted);
    if (Lifted == address) {
        Lifted.reset();
    }
}

void TProcessorMemory::Lift(std::uint32_t address) {
    const auto planted = KeptWords.find(address);
    if (planted != KeptWords.end()) {
        Lifted = address;
        PutBack(address, planted->second);
    }
}

// Also what stayed lifted because the chain failed in between.
void TProcessorMemory::PlantLifted() {
    if (Lifted) {
        Plant(*Lifted);
        Lifted.reset();
    }
}

} // namespace vorel
