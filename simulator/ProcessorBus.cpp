#include "simulator/ProcessorBus.h"

#include <algorithm>

namespace vorel::sim {

namespace {

constexpr bool IsInRam(std::uint32_t address, unsigned size) noexcept {
    return address <= TProcessorBus::RamSize - size;
}

} // namespace

std::optional<std::uint32_t> TProcessorBus::Load(std::uint32_t address, unsigned size) const {
    if (IsInRam(address, size)) {
        std::uint32_t value = 0;
        for (unsigned i = 0; i < size; ++i) {
            value = value << 8 | Ram[address + i];
        }
        return value;
    }
    if (size == 4 && address == ConsoleAddress) {
        return static_cast<std::uint32_t>(ConsoleCapacity - ConsoleText.size());
    }
    if (size == 4 && address == TimerAddress) {
        return static_cast<std::uint32_t>(Cycles);
    }
    return std::nullopt;
}

TProcessorBus::Outcome TProcessorBus::Store(std::uint32_t address, unsigned size,
                                            std::uint32_t value) {
    if (IsInRam(address, size)) {
        for (unsigned i = 0; i < size; ++i) {
            Ram[address + i] = static_cast<std::uint8_t>(value >> (8 * (size - 1 - i)));
        }
        return Outcome::Done;
    }
    if (size != 4 || address != ConsoleAddress) {
        return Outcome::Error;
    }
    if (ConsoleText.size() >= ConsoleCapacity) {
        return Outcome::Wait;
    }
    ConsoleText.push_back(static_cast<std::uint8_t>(value));
    return Outcome::Done;
}

void TProcessorBus::DropConsole(std::size_t count) {
    const auto end =
        ConsoleText.begin() + static_cast<std::ptrdiff_t>(std::min(count, ConsoleText.size()));
    ConsoleText.erase(ConsoleText.begin(), end);
}

} // namespace vorel::sim
