// The soft processor's core: the integer instructions of MIPS I, big-endian, one instruction a
// cycle.
//
// 32 registers (r0 is 0), HI and LO, branch delay slots. No coprocessors, no address translation,
// no interrupts. A loaded value is there for the next instruction, so code that fills load delay
// slots and code that does not both run; MULT and DIV end at once. A division by zero gives LO all
// ones and HI the dividend.
//
// There are no exception handlers: what would be an exception ends Run with its cause. The
// instruction then took no effect and PC stands at it, except for SYSCALL, which PC has passed.
#pragma once

#include "simulator/ProcessorBus.h"

#include <array>
#include <cstdint>

namespace vorel::sim {

// Causes by their MIPS I exception codes; None where nothing happened.
enum class Trap : std::uint8_t {
    None = 0,
    AddressLoad = 4,  // misaligned load or fetch
    AddressStore = 5, // misaligned store
    BusFetch = 6,
    BusData = 7,
    Syscall = 8,
    Break = 9,
    Instruction = 10, // unknown
    Coprocessor = 11,
    Overflow = 12
};

class TMipsCore final {
public:
    static constexpr unsigned HiIndex = 32;
    static constexpr unsigned LoIndex = 33;
    static constexpr unsigned RegisterCount = 34;

    // The bus outlives the core.
    explicit TMipsCore(TProcessorBus& bus) : Bus(bus) {}

    // All registers 0, PC 0.
    void Reset() noexcept;
    // Executes one instruction and counts a cycle, also for a store that has to wait.
    Trap Step();

    std::uint32_t ProgramCounter() const noexcept { return Pc; }
    // Forgets a branch whose delay slot was to come.
    void SetProgramCounter(std::uint32_t address) noexcept {
        Pc = address;
        NextPc = address + 4;
    }
    // r0 to r31, HI, LO; 0 for other numbers.
    std::uint32_t Register(unsigned index) const noexcept {
        return index < RegisterCount ? Registers[index] : 0;
    }
    // r0 and other numbers stay as they are.
    void SetRegister(unsigned index, std::uint32_t value) noexcept {
        if (index > 0 && index < RegisterCount) {
            Registers[index] = value;
        }
    }
    // The address that the last address or bus trap was about.
    std::uint32_t TrapAddress() const noexcept { return BadAddress; }

private:
    // Parts of an instruction word.
    struct TFields {
        explicit TFields(std::uint32_t word) noexcept : Word(word) {}
        unsigned Op() const noexcept { return Word >> 26; }
        unsigned Rs() const noexcept { return Word >> 21 & 31; }
        unsigned Rt() const noexcept { return Word >> 16 & 31; }
        unsigned Rd() const noexcept { return Word >> 11 & 31; }
        unsigned Shift() const noexcept { return Word >> 6 & 31; }
        unsigned Function() const noexcept { return Word & 63; }
        std::uint32_t Unsigned() const noexcept { return Word & 0xFFFF; }
        std::uint32_t Signed() const noexcept {
            return static_cast<std::uint32_t>(static_cast<std::int16_t>(Word & 0xFFFF));
        }
        std::uint32_t Word;
    };

    Trap Execute(TFields f);
    Trap ExecuteSpecial(TFields f);
    Trap ExecuteArithmetic(TFields f);
    Trap ExecuteMultiply(TFields f);
    Trap ExecuteRegImm(TFields f);
    Trap ExecuteImmediate(TFields f);
    Trap ExecuteLoad(TFields f);
    Trap ExecuteStore(TFields f);
    Trap LoadPart(TFields f, std::uint32_t address, bool left);
    Trap StorePart(TFields f, std::uint32_t address, bool left);
    Trap StoreValue(std::uint32_t address, unsigned size, std::uint32_t value);
    Trap AddTo(unsigned index, std::uint32_t a, std::uint32_t b, bool subtract);
    Trap FailAt(Trap trap, std::uint32_t address) noexcept {
        BadAddress = address;
        return trap;
    }
    void BranchIf(bool taken, TFields f) noexcept {
        if (taken) {
            Target = NextPc + (f.Signed() << 2);
        }
    }

    TProcessorBus& Bus;
    std::array<std::uint32_t, RegisterCount> Registers{};
    std::uint32_t Pc = 0;
    std::uint32_t NextPc = 4;
    std::uint32_t Target = 8; // what follows NextPc, while an instruction executes
    bool Waiting = false;     // the instruction has to be executed again
    std::uint32_t BadAddress = 0;
};

} // namespace vorel::sim
