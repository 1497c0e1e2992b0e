#include "drivers/ProcessorUnit.h"

#include "support/Errors.h"
#include "support/Text.h"

#include <algorithm>
#include <array>
#include <vector>

namespace vorel {

namespace {

// Registers of the debug unit.
constexpr std::uint8_t IdRegister = 0;
constexpr std::uint8_t ControlRegister = 1;
constexpr std::uint8_t StatusRegister = 2;
constexpr std::uint8_t ProgramCounter = 3;
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
constexpr std::int32_t MaxSteps = 1'000'000; // of one command

constexpr unsigned ReasonStep = 2;
constexpr unsigned ReasonBreakpoint = 3;
constexpr unsigned ReasonTrap = 4;
constexpr unsigned CauseSyscall = 8;
constexpr unsigned CauseBreak = 9;
constexpr std::uint32_t AccessFailedBit = 1U << 16;
constexpr std::uint32_t MaxConsole = 4096; // characters

const char* CauseText(unsigned cause) {
    switch (cause) {
    case 4:
        return "misaligned load or fetch";
    case 5:
        return "misaligned store";
    case 6:
        return "fetch from where there is no memory";
    case 7:
        return "access to where there is no memory";
    case CauseSyscall:
        return "system call";
    case CauseBreak:
        return "break instruction";
    case 10:
        return "unknown instruction";
    case 11:
        return "coprocessor instruction";
    case 12:
        return "arithmetic overflow";
    default:
        return "unknown cause";
    }
}

constexpr bool IsBreak(std::uint32_t instruction) noexcept {
    return instruction >> 26 == 0 && (instruction & 63) == 13;
}

constexpr std::uint32_t ByteShift(std::uint32_t address) noexcept {
    return 24 - 8 * (address & 3);
}

} // namespace

TProcessorUnit::TStatus TProcessorUnit::Status() const {
    return {Port.Read(StatusRegister)};
}

// A BREAK that the program brought along would stop the processor again at once.
bool TProcessorUnit::PassBreak(const TStatus& status) const {
    if (!status.IsPaused() || status.Cause() != CauseBreak) {
        return false;
    }
    const std::uint32_t address = Port.Read(ProgramCounter);
    std::uint32_t instruction = 0;
    ReadMemory({&instruction, 1}, address);
    if (!IsBreak(instruction)) {
        return false;
    }
    Port.Write(ProgramCounter, address + 4);
    return true;
}

void TProcessorUnit::Continue() const {
    PassBreak(Status());
    Port.Write(ControlRegister, RunCommand);
}

void TProcessorUnit::Pause() const {
    Port.Write(ControlRegister, PauseCommand);
}

void TProcessorUnit::Reset() const {
    Port.Write(ControlRegister, ResetCommand);
}

void TProcessorUnit::Step(std::int32_t count) const {
    if (count > 0 && PassBreak(Status())) {
        --count;
    }
    while (count > 0) {
        const std::int32_t part = std::min(count, MaxSteps);
        Port.Write(ControlRegister, static_cast<std::uint32_t>(part) << 8 | StepCommand);
        const TStatus status = Status();
        if (!status.IsPaused() || status.Reason() != ReasonStep) {
            return;
        }
        count -= part;
    }
}

std::uint32_t TProcessorUnit::ReadRegister(std::int32_t index) const {
    if (index == ProgramCounterIndex) {
        return Port.Read(ProgramCounter);
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
        Port.Write(ProgramCounter, value);
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

void TProcessorUnit::ReadBytes(std::uint32_t* slots, std::uint32_t address,
                               std::uint32_t count) const {
    if (count == 0) {
        return;
    }
    const std::uint32_t first = address / 4;
    std::vector<std::uint32_t> words((address + count - 1) / 4 - first + 1);
    ReadMemory(words, first * 4);
    for (std::uint32_t i = 0; i < count; ++i) {
        slots[i] = words[(address + i) / 4 - first] >> ByteShift(address + i) & 0xFF;
    }
}

void TProcessorUnit::WriteBytes(const std::uint32_t* slots, std::uint32_t address,
                                std::uint32_t count) const {
    if (count == 0) {
        return;
    }
    const std::uint32_t first = address / 4;
    std::vector<std::uint32_t> words((address + count - 1) / 4 - first + 1);
    if (address % 4 != 0) {
        ReadMemory({words.data(), 1}, first * 4);
    }
    if ((address + count) % 4 != 0 && (words.size() > 1 || address % 4 == 0)) {
        ReadMemory({&words.back(), 1}, (address + count) & ~3U);
    }
    for (std::uint32_t i = 0; i < count; ++i) {
        const std::uint32_t shift = ByteShift(address + i);
        std::uint32_t& word = words[(address + i) / 4 - first];
        word = (word & ~(0xFFU << shift)) | (slots[i] & 0xFF) << shift;
    }
    WriteMemory(words, first * 4);
}

void TProcessorUnit::SetBreakpoint(std::size_t number, std::uint32_t address) const {
    Port.Write(static_cast<std::uint8_t>(FirstBreakpoint + number), address | 1);
}

void TProcessorUnit::ClearBreakpoint(std::size_t number) const {
    Port.Write(static_cast<std::uint8_t>(FirstBreakpoint + number), 0);
}

std::string TProcessorUnit::StopText() const {
    const TStatus status = Status();
    if (!status.IsPaused()) {
        return {};
    }
    const std::string place = " at " + ToHex(Port.Read(ProgramCounter), 8);
    switch (status.Reason()) {
    case ReasonStep:
        return "Step" + place;
    case ReasonBreakpoint:
        return "Breakpoint" + place;
    case ReasonTrap:
        return std::string("Trap: ") + CauseText(status.Cause()) +
               (status.Cause() == CauseSyscall ? ", goes on" : "") + place;
    default:
        return "Paused" + place;
    }
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
