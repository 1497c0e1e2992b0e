#include "drivers/ProcessorUnit.h"

#include "support/Errors.h"

#include <algorithm>
#include <array>
#include <vector>

namespace vorel {

namespace {

// Registers of the debug unit.
constexpr std::uint8_t IdRegister = 0;
constexpr std::uint8_t ControlRegister = 1;
constexpr std::uint8_t StatusRegister = 2;
constexpr std::uint8_t ProgramCounterRegister = 3;
constexpr TRegisterPort::TStream RegisterStream{4, 5, 1};
constexpr TRegisterPort::TStream MemoryStream{6, 7, 4};
constexpr std::uint8_t CyclesRegister = 8;
constexpr std::uint8_t ConsoleRegister = 9;
constexpr std::uint8_t ConsoleData = 10;
constexpr std::uint8_t ScratchRegister = 12;
constexpr std::uint8_t FirstBreakpoint = 16;

constexpr std::uint32_t RunCommand = 1;
constexpr std::uint32_t PauseCommand = 2;
constexpr std::uint32_t StepCommand = 3;
constexpr std::uint32_t ResetCommand = 4;

constexpr std::uint32_t AccessFailedBit = 1U << 16;
constexpr std::uint32_t MaxConsole = 4096; // characters

} // namespace

TProcessorUnit::TStatus TProcessorUnit::Status() const {
    return {Port.Read(StatusRegister)};
}

void TProcessorUnit::Run() const {
    Port.Write(ControlRegister, RunCommand);
}

void TProcessorUnit::Pause() const {
    Port.Write(ControlRegister, PauseCommand);
}

void TProcessorUnit::Step(std::int32_t count) const {
    Port.Write(ControlRegister, static_cast<std::uint32_t>(count) << 8 | StepCommand);
}

void TProcessorUnit::Reset() const {
    Port.Write(ControlRegister, ResetCommand);
}

std::uint32_t TProcessorUnit::ProgramCounter() const {
    return Port.Read(ProgramCounterRegister);
}

void TProcessorUnit::SetProgramCounter(std::uint32_t address) const {
    Port.Write(ProgramCounterRegister, address);
}

std::uint32_t TProcessorUnit::ReadRegister(std::int32_t index) const {
    if (index == ProgramCounterIndex) {
        return ProgramCounter();
    }
    std::uint32_t value = 0;
    Port.ReadStream(RegisterStream, static_cast<std::uint32_t>(index), {&value, 1});
    return value;
}

void TProcessorUnit::WriteRegister(std::int32_t index, std::uint32_t value) const {
    if (Status().IsRunning()) {
        throw EVorelError(StatusError, "Registers cannot be written while the processor runs");
    }
    if (index == ProgramCounterIndex) {
        SetProgramCounter(value);
    } else {
        Port.WriteStream(RegisterStream, static_cast<std::uint32_t>(index), {&value, 1});
    }
}

void TProcessorUnit::ReadMemory(std::span<std::uint32_t> words, std::uint32_t address) const {
    Port.ReadStream(MemoryStream, address, words);
}

void TProcessorUnit::WriteMemory(std::span<const std::uint32_t> words,
                                 std::uint32_t address) const {
    Port.WriteStream(MemoryStream, address, words);
    if (!words.empty() && Status().AccessFailed()) {
        Port.Write(StatusRegister, AccessFailedBit);
        throw EVorelError(StatusError, "The processor's bus refused a write");
    }
}

std::uint32_t TProcessorUnit::ReadWord(std::uint32_t address) const {
    std::uint32_t word = 0;
    ReadMemory({&word, 1}, address);
    return word;
}

std::optional<std::uint32_t> TProcessorUnit::Breakpoint(std::size_t number) const {
    const std::uint32_t word = Port.Read(static_cast<std::uint8_t>(FirstBreakpoint + number));
    return (word & 1) != 0 ? std::optional(word & ~3U) : std::nullopt;
}

void TProcessorUnit::SetBreakpoint(std::size_t number, std::uint32_t address) const {
    Port.Write(static_cast<std::uint8_t>(FirstBreakpoint + number), address | 1);
}

void TProcessorUnit::ClearBreakpoint(std::size_t number) const {
    Port.Write(static_cast<std::uint8_t>(FirstBreakpoint + number), 0);
}

std::string TProcessorUnit::TakeConsole() const {
    std::vector<std::uint32_t> characters(std::min(Port.Read(ConsoleRegister), MaxConsole));
    if (characters.empty()) {
        return {};
    }
    Port.ReadWords(ConsoleData, characters);
    Port.Write(ConsoleRegister, static_cast<std::uint32_t>(characters.size()));
    std::string text;
    for (const std::uint32_t character : characters) {
        text += static_cast<char>(character & 0xFF);
    }
    return text;
}

std::uint64_t TProcessorUnit::Cycles() const {
    std::array<std::uint32_t, 2> halves{};
    Port.ReadWords(CyclesRegister, halves);
    return std::uint64_t{halves[1]} << 32 | halves[0];
}

std::int32_t TProcessorUnit::Diagnose() const {
    if (Port.Read(IdRegister) != UnitId) {
        return 1;
    }
    for (const std::uint32_t pattern : {0x00000000U, 0xFFFFFFFFU, 0x5A0FF1C3U, 0x80000001U}) {
        Port.Write(ScratchRegister, pattern);
        if (Port.Read(ScratchRegister) != pattern) {
            return 2;
        }
    }
    return KeepsMemory() ? 0 : 3;
}

// Tries the last words of the RAM.
bool TProcessorUnit::KeepsMemory() const {
    constexpr std::uint32_t place = RamSize - 64;
    std::array<std::uint32_t, 16> kept{};
    std::array<std::uint32_t, 16> written{};
    std::array<std::uint32_t, 16> seen{};
    ReadMemory(kept, place);
    for (std::uint32_t i = 0; i < written.size(); ++i) {
        written[i] = ~kept[i] ^ (i * 0x01010101);
    }
    WriteMemory(written, place);
    ReadMemory(seen, place);
    WriteMemory(kept, place);
    return seen == written;
}

} // namespace vorel
