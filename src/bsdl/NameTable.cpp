#include "bsdl/NameTable.h"

#include "support/Text.h"

#include <random>

namespace vorel {

namespace {

// Another one in each process, so that no file can be made whose names all meet in one slot.
std::uint64_t HashSeed() {
    static const std::uint64_t seed = [] {
        std::random_device source;
        return (std::uint64_t{source()} << 32U) | source();
    }();
    return seed;
}

} // namespace

std::uint64_t TNameTable::HashOf(std::string_view name) const noexcept {
    std::uint64_t hash = HashSeed() ^ name.size();
    for (const char c : name) {
        hash = (hash ^ static_cast<unsigned char>(UpperAscii(c))) * 0x9E3779B97F4A7C15ULL;
        hash ^= hash >> 29U;
    }
    return hash;
}

// The slot that holds the name, or the free one where it belongs.
std::size_t TNameTable::SlotOf(std::string_view name, std::uint64_t hash) const noexcept {
    const std::size_t mask = Slots.size() - 1;
    for (std::size_t slot = hash & mask;; slot = (slot + 1) & mask) {
        if (Slots[slot] == None) {
            return slot;
        }
        const TName& there = Names[static_cast<std::size_t>(Slots[slot])];
        if (there.Hash == hash && SameText(there.Text, name)) {
            return slot;
        }
    }
}

std::int32_t TNameTable::Intern(std::string_view name) {
    if (Names.size() * 2 >= Slots.size()) {
        Grow();
    }
    const std::uint64_t hash = HashOf(name);
    const std::size_t slot = SlotOf(name, hash);
    if (Slots[slot] == None) {
        Names.push_back({name, hash});
        Slots[slot] = static_cast<std::int32_t>(Names.size() - 1);
    }
    return Slots[slot];
}

std::int32_t TNameTable::Find(std::string_view name) const noexcept {
    return Slots.empty() ? None : Slots[SlotOf(name, HashOf(name))];
}

void TNameTable::Grow() {
    const std::size_t size = Slots.empty() ? 64 : Slots.size() * 2;
    Slots.assign(size, None);
    for (std::size_t i = 0; i < Names.size(); ++i) {
        std::size_t slot = Names[i].Hash & (size - 1);
        while (Slots[slot] != None) {
            slot = (slot + 1) & (size - 1);
        }
        Slots[slot] = static_cast<std::int32_t>(i);
    }
}

} // namespace vorel
