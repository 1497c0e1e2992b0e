// The debug unit of the ZRC3000 as its driver sees it. The registers stand in ZRC3000.md.
#pragma once

#include "drivers/RegisterPort.h"

#include <cstdint>
#include <optional>
#include <string>

namespace vorel {

// One per driver. Every operation raises EVorelError when the chain fails.
class TProcessorUnit final {
public:
    static constexpr std::uint32_t UnitId = 0x5A523033;
    static constexpr std::uint32_t RamSize = 0x100000; // bytes
    static constexpr std::uint32_t PeripheralBase = 0xFFFF0000;
    static constexpr std::uint32_t PeripheralWords = 2;
    static constexpr std::size_t BreakpointCount = 4;
    static constexpr std::int32_t MaxSteps = 1'000'000; // of one command
    // Register indices: 0 to 31, HI, LO, and behind the unit's own numbers PC.
    static constexpr std::int32_t ProgramCounterIndex = 34;
    static constexpr std::int32_t RegisterCount = 35;

    TRegisterPort Port;

    struct TStatus {
        std::uint32_t Word;
        bool IsRunning() const noexcept { return (Word & 1) != 0; }
        bool IsPaused() const noexcept { return (Word & 2) != 0; }
        bool IsReset() const noexcept { return (Word & 4) != 0; }
        unsigned Reason() const noexcept { return Word >> 4 & 15; }
        unsigned Cause() const noexcept { return Word >> 8 & 255; }
        bool AccessFailed() const noexcept { return (Word >> 16 & 1) != 0; }
    };
    TStatus Status() const;

    void Run() const;
    void Pause() const;
    // Up to MaxSteps instructions, whatever breakpoint stands at the first one.
    void Step(std::int32_t count) const;
    void Reset() const;

    std::uint32_t ProgramCounter() const;
    // Forgets a branch whose delay slot was to come.
    void SetProgramCounter(std::uint32_t address) const;
    std::uint32_t ReadRegister(std::int32_t index) const;
    // Fails while the processor runs.
    void WriteRegister(std::int32_t index, std::uint32_t value) const;

    // Words from a byte address on, a multiple of 4.
    void ReadMemory(std::span<std::uint32_t> words, std::uint32_t address) const;
    std::uint32_t ReadWord(std::uint32_t address) const;
    void WriteMemory(std::span<const std::uint32_t> words, std::uint32_t address) const;

    // The address of an enabled one.
    std::optional<std::uint32_t> Breakpoint(std::size_t number) const;
    void SetBreakpoint(std::size_t number, std::uint32_t address) const;
    void ClearBreakpoint(std::size_t number) const;

    // The characters that wait in the console, which are taken from it.
    std::string TakeConsole() const;
    std::uint64_t Cycles() const;

    // 0 when the unit answers as it should, else the number of the check that failed: 1 identity,
    // 2 data of the register port, 3 memory. The memory keeps its contents.
    std::int32_t Diagnose() const;

private:
    bool KeepsMemory() const;
};

} // namespace vorel
