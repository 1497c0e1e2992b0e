// The soft processor's instructions, each by a known answer.
#include "simulator/MipsCore.h"

#include <gtest/gtest.h>

#include <initializer_list>
#include <vector>

namespace vorel::sim {
namespace {

// rt and rs are r1 and r2 in all cases, the result is r3 (or r1 for immediates).
constexpr std::uint32_t Special(unsigned function, unsigned shift = 0) {
    return 2U << 21 | 1U << 16 | 3U << 11 | shift << 6 | function;
}
constexpr std::uint32_t Immediate(unsigned op, unsigned value, unsigned rs = 2, unsigned rt = 1) {
    return op << 26 | rs << 21 | rt << 16 | (value & 0xFFFF);
}
constexpr std::uint32_t SetR3(unsigned value) {
    return Immediate(0x0D, value, 0, 3);
}

struct TMachine {
    TProcessorBus Bus;
    TMipsCore Core{Bus};

    void Put(std::uint32_t address, std::initializer_list<std::uint32_t> words) {
        for (const std::uint32_t word : words) {
            Bus.Store(address, 4, word);
            address += 4;
        }
    }
    // Executes `count` instructions; gives the last one's trap.
    Trap Steps(int count) {
        Trap trap = Trap::None;
        for (int i = 0; i < count; ++i) {
            trap = Core.Step();
        }
        return trap;
    }
};

TEST(MipsCore, ComputesKnownAnswers) {
    constexpr std::uint32_t Min = 0x80000000;
    struct Case {
        const char* Name;
        std::uint32_t Word;
        std::uint32_t S; // r2
        std::uint32_t T; // r1
        unsigned Index;  // of the result
        std::uint32_t Result;
    };
    const Case cases[] = {
        {"sll", Special(0x00, 4), 0, 0x81234567, 3, 0x12345670},
        {"srl", Special(0x02, 4), 0, 0x81234567, 3, 0x08123456},
        {"sra", Special(0x03, 4), 0, 0x81234567, 3, 0xF8123456},
        {"sllv takes five bits", Special(0x04), 33, 3, 3, 6},
        {"srlv", Special(0x06), 31, Min, 3, 1},
        {"srav", Special(0x07), 31, Min, 3, 0xFFFFFFFF},
        {"add", Special(0x20), 5, 0xFFFFFFFF, 3, 4},
        {"addu wraps", Special(0x21), 0xFFFFFFFF, 2, 3, 1},
        {"sub", Special(0x22), 5, 7, 3, 0xFFFFFFFE},
        {"subu wraps", Special(0x23), 0, 1, 3, 0xFFFFFFFF},
        {"and", Special(0x24), 0xF0F0, 0xFF00, 3, 0xF000},
        {"or", Special(0x25), 0xF0F0, 0xFF00, 3, 0xFFF0},
        {"xor", Special(0x26), 0xF0F0, 0xFF00, 3, 0x0FF0},
        {"nor", Special(0x27), 0xF0F0, 0xFF00, 3, 0xFFFF000F},
        {"slt is signed", Special(0x2A), Min, 1, 3, 1},
        {"sltu is not", Special(0x2B), Min, 1, 3, 0},
        {"mult high", Special(0x18), 0xFFFFFFFE, 3, TMipsCore::HiIndex, 0xFFFFFFFF},
        {"mult low", Special(0x18), 0xFFFFFFFE, 3, TMipsCore::LoIndex, 0xFFFFFFFA},
        {"mult of negatives, high", Special(0x18), 0xFFFFFFFE, 0xFFFFFFFD, TMipsCore::HiIndex, 0},
        {"multu high", Special(0x19), 0xFFFFFFFE, 3, TMipsCore::HiIndex, 2},
        {"multu low", Special(0x19), 0xFFFFFFFE, 3, TMipsCore::LoIndex, 0xFFFFFFFA},
        {"mthi", Special(0x11), 0x12345678, 0, TMipsCore::HiIndex, 0x12345678},
        {"mtlo", Special(0x13), 0x12345678, 0, TMipsCore::LoIndex, 0x12345678},
        {"div rounds to 0", Special(0x1A), 0xFFFFFFF9, 2, TMipsCore::LoIndex, 0xFFFFFFFD},
        {"div remainder", Special(0x1A), 0xFFFFFFF9, 2, TMipsCore::HiIndex, 0xFFFFFFFF},
        {"div by a negative", Special(0x1A), 7, 0xFFFFFFFE, TMipsCore::LoIndex, 0xFFFFFFFD},
        {"its remainder has the dividend's sign", Special(0x1A), 7, 0xFFFFFFFE, TMipsCore::HiIndex,
         1},
        {"div overflows without rest", Special(0x1A), Min, 0xFFFFFFFF, TMipsCore::HiIndex, 0},
        {"div overflows", Special(0x1A), Min, 0xFFFFFFFF, TMipsCore::LoIndex, Min},
        {"div by 0", Special(0x1A), 9, 0, TMipsCore::HiIndex, 9},
        {"div of a negative by 0", Special(0x1A), 0xFFFFFFF7, 0, TMipsCore::LoIndex, 0xFFFFFFFF},
        {"divu by 0", Special(0x1B), 9, 0, TMipsCore::LoIndex, 0xFFFFFFFF},
        {"divu remainder by 0", Special(0x1B), 0xFFFFFFF9, 0, TMipsCore::HiIndex, 0xFFFFFFF9},
        {"divu remainder", Special(0x1B), 0xFFFFFFF9, 10, TMipsCore::HiIndex, 9},
        {"divu", Special(0x1B), 0xFFFFFFF9, 2, TMipsCore::LoIndex, 0x7FFFFFFC},
        {"addi", Immediate(0x08, 0xFFFF), 5, 0, 1, 4},
        {"addiu", Immediate(0x09, 0x8000), 0, 0, 1, 0xFFFF8000},
        {"sltu of equals", Special(0x2B), 5, 5, 3, 0},
        {"slti of equals", Immediate(0x0A, 0xFFFE), 0xFFFFFFFE, 0, 1, 0},
        {"slti", Immediate(0x0A, 0xFFFF), 0xFFFFFFFE, 0, 1, 1},
        {"sltiu compares the extended value", Immediate(0x0B, 0xFFFF), 5, 0, 1, 1},
        {"andi", Immediate(0x0C, 0xFF0F), 0xFFFFFFFF, 0, 1, 0xFF0F},
        {"ori", Immediate(0x0D, 0x8001), 0x10000, 0, 1, 0x18001},
        {"xori", Immediate(0x0E, 0xFFFF), 0xFFFF0000, 0, 1, 0xFFFFFFFF},
        {"lui", Immediate(0x0F, 0x8001), 0, 0, 1, 0x80010000},
        {"lb", Immediate(0x20, 1), 0x100, 0, 1, 0xFFFFFF92},
        {"lbu", Immediate(0x24, 1), 0x100, 0, 1, 0x92},
        {"lh", Immediate(0x21, 0), 0x100, 0, 1, 0xFFFF8192},
        {"lhu", Immediate(0x25, 2), 0x100, 0, 1, 0xA3B4},
        {"lw", Immediate(0x23, 0xFFFC), 0x104, 0, 1, 0x8192A3B4},
        {"lwl 0", Immediate(0x22, 0), 0x100, 0x11223344, 1, 0x8192A3B4},
        {"lwl 3", Immediate(0x22, 3), 0x100, 0x11223344, 1, 0xB4223344},
        {"lwr 0", Immediate(0x26, 0), 0x100, 0x11223344, 1, 0x11223381},
        {"lwr 3", Immediate(0x26, 3), 0x100, 0x11223344, 1, 0x8192A3B4},
        {"r0 stays 0", Immediate(0x0D, 7, 2, 0), 0, 0, 0, 0},
    };
    for (const Case& c : cases) {
        TMachine machine;
        machine.Put(0, {c.Word});
        machine.Put(0x100, {0x8192A3B4});
        machine.Core.SetRegister(2, c.S);
        machine.Core.SetRegister(1, c.T);
        EXPECT_EQ(machine.Steps(1), Trap::None) << c.Name;
        EXPECT_EQ(machine.Core.Register(c.Index), c.Result) << c.Name;
        EXPECT_EQ(machine.Core.ProgramCounter(), 4U) << c.Name;
    }
}

TEST(MipsCore, StoresPartsOfWords) {
    struct Case {
        unsigned Op;
        unsigned Offset;
        std::uint32_t Word;
    };
    const Case cases[] = {
        {0x28, 0, 0x44BBCCDD}, {0x28, 2, 0xAABB44DD}, {0x29, 0, 0x3344CCDD}, // SB, SH
        {0x29, 2, 0xAABB3344}, {0x2B, 0, 0x11223344},                        // SH, SW
        {0x2A, 0, 0x11223344}, {0x2A, 3, 0xAABBCC11},                        // SWL
        {0x2E, 0, 0x44BBCCDD}, {0x2E, 3, 0x11223344},                        // SWR
    };
    for (const Case& c : cases) {
        TMachine machine;
        machine.Put(0, {Immediate(c.Op, c.Offset)});
        machine.Put(0x100, {0xAABBCCDD});
        machine.Core.SetRegister(2, 0x100);
        machine.Core.SetRegister(1, 0x11223344);
        EXPECT_EQ(machine.Steps(1), Trap::None);
        EXPECT_EQ(machine.Bus.Load(0x100, 4), c.Word) << c.Op << "+" << c.Offset;
    }
}

TEST(MipsCore, BranchesAfterTheDelaySlot) {
    struct Case {
        const char* Name;
        std::uint32_t Word;
        std::uint32_t S;
        std::uint32_t T;
        std::uint32_t Pc; // after the branch and its delay slot
        std::uint32_t Link;
    };
    const Case cases[] = {
        {"beq", Immediate(0x04, 4), 7, 7, 0x54, 0},
        {"beq not", Immediate(0x04, 4), 7, 8, 0x48, 0},
        {"bne back", Immediate(0x05, 0xFFF0), 7, 8, 0x04, 0},
        {"bne not", Immediate(0x05, 4), 7, 7, 0x48, 0},
        {"blez", Immediate(0x06, 4, 2, 0), 0, 0, 0x54, 0},
        {"blez of a negative", Immediate(0x06, 4, 2, 0), 0x80000000, 0, 0x54, 0},
        {"blez not", Immediate(0x06, 4, 2, 0), 1, 0, 0x48, 0},
        {"bgtz", Immediate(0x07, 4, 2, 0), 1, 0, 0x54, 0},
        {"bgtz of 0", Immediate(0x07, 4, 2, 0), 0, 0, 0x48, 0},
        {"bgtz not", Immediate(0x07, 4, 2, 0), 0x80000000, 0, 0x48, 0},
        {"bltz", Immediate(0x01, 4, 2, 0), 0x80000000, 0, 0x54, 0},
        {"bltz not", Immediate(0x01, 4, 2, 0), 0, 0, 0x48, 0},
        {"bgez", Immediate(0x01, 4, 2, 1), 0, 0, 0x54, 0},
        {"bgez not", Immediate(0x01, 4, 2, 1), 0x80000000, 0, 0x48, 0},
        {"bltzal", Immediate(0x01, 4, 2, 16), 0x80000000, 0, 0x54, 0x48},
        {"bgezal not", Immediate(0x01, 4, 2, 17), 0x80000000, 0, 0x48, 0x48},
        {"the furthest back", Immediate(0x04, 0x8000), 7, 7, 0xFFFE0044, 0},
        {"bltzal links all the same", Immediate(0x01, 4, 2, 16), 1, 0, 0x48, 0x48},
        {"bgezal", Immediate(0x01, 4, 2, 17), 1, 0, 0x54, 0x48},
        {"j", 0x02U << 26 | 0x80, 0, 0, 0x200, 0},
        {"jal", 0x03U << 26 | 0x80, 0, 0, 0x200, 0x48},
        {"jr", Special(0x08), 0x300, 0, 0x300, 0},
        {"jalr", 2U << 21 | 31U << 11 | 0x09, 0x300, 0, 0x300, 0x48},
        {"jr to an odd address", Special(0x08), 0x302, 0, 0x302, 0},
    };
    for (const Case& c : cases) {
        TMachine machine;
        machine.Put(0x40, {c.Word, SetR3(5)});
        machine.Core.SetProgramCounter(0x40);
        machine.Core.SetRegister(2, c.S);
        machine.Core.SetRegister(1, c.T);
        machine.Steps(2);
        EXPECT_EQ(machine.Core.ProgramCounter(), c.Pc) << c.Name;
        EXPECT_EQ(machine.Core.Register(31), c.Link) << c.Name;
        EXPECT_EQ(machine.Core.Register(3), 5U) << c.Name << ": the delay slot is executed";
    }
}

TEST(MipsCore, TrapsLeaveTheInstructionUndone) {
    struct Case {
        std::uint32_t Word;
        std::uint32_t S;
        Trap Cause;
        std::uint32_t Pc;
    };
    const Case cases[] = {
        {Special(0x0C), 0, Trap::Syscall, 4},
        {Special(0x0D), 0, Trap::Break, 0},
        {Special(0x20), 0x7FFFFFFF, Trap::Overflow, 0},
        {Special(0x22), 0x80000000, Trap::Overflow, 0},
        {Immediate(0x08, 1), 0x7FFFFFFF, Trap::Overflow, 0},
        {Immediate(0x08, 0xFFFF), 0x80000000, Trap::Overflow, 0},
        {Immediate(0x23, 2), 0, Trap::AddressLoad, 0},
        {Immediate(0x21, 0), 0x101, Trap::AddressLoad, 0},
        {Immediate(0x25, 0), 0x103, Trap::AddressLoad, 0},
        {Immediate(0x2B, 0), 0x102, Trap::AddressStore, 0},
        {Immediate(0x23, 0), 0x200001, Trap::AddressLoad, 0}, // before the memory is asked
        {Immediate(0x22, 1), 0x100000, Trap::BusData, 0},
        {Immediate(0x26, 1), 0x100000, Trap::BusData, 0},
        {Immediate(0x2A, 1), 0x100000, Trap::BusData, 0},
        {Immediate(0x2E, 1), 0x100000, Trap::BusData, 0},
        {Immediate(0x20, 0), 0xFFFFFFFF, Trap::BusData, 0},
        {Immediate(0x29, 1), 0, Trap::AddressStore, 0},
        {Immediate(0x23, 0), 0x100000, Trap::BusData, 0},
        {Immediate(0x28, 0), 0xFFFF0000, Trap::BusData, 0},
        {Immediate(0x2B, 0), 0xFFFFFFFC, Trap::BusData, 0},
        {0xFFFFFFFF, 0, Trap::Instruction, 0},
        {Special(0x3F), 0, Trap::Instruction, 0},
        {Special(0x1F), 0, Trap::Instruction, 0},
        {Immediate(0x01, 0, 2, 2), 0, Trap::Instruction, 0},
        {Immediate(0x14, 0), 0, Trap::Instruction, 0},
        {Immediate(0x27, 0), 0, Trap::Instruction, 0},
        {Immediate(0x31, 0), 0, Trap::Instruction, 0},
        {0x40000000, 0, Trap::Coprocessor, 0},
        {0x4C000000, 0, Trap::Coprocessor, 0},
    };
    for (const Case& c : cases) {
        TMachine machine;
        machine.Put(0, {c.Word});
        machine.Core.SetRegister(2, c.S);
        machine.Core.SetRegister(1, 1);
        EXPECT_EQ(machine.Steps(1), c.Cause) << std::hex << c.Word;
        EXPECT_EQ(machine.Core.ProgramCounter(), c.Pc) << std::hex << c.Word;
        EXPECT_EQ(machine.Core.Register(1), 1U) << std::hex << c.Word;
    }
    TMachine machine;
    for (const auto& [address, trap] : {std::pair{0x100000U, Trap::BusFetch},
                                        {0xFFFF0000U, Trap::BusFetch},
                                        {6U, Trap::AddressLoad}}) {
        machine.Core.SetProgramCounter(address);
        EXPECT_EQ(machine.Steps(1), trap);
        EXPECT_EQ(machine.Core.TrapAddress(), address);
    }
}

TEST(MipsCore, ALoadedValueIsThereAtOnce) {
    TMachine machine;
    machine.Put(0, {Immediate(0x23, 0x100, 0), Special(0x21)}); // lw r1; addu r3, r2, r1
    machine.Put(0x100, {0x12340000});
    machine.Core.SetRegister(2, 0x5678);
    machine.Steps(2);
    EXPECT_EQ(machine.Core.Register(3), 0x12345678U);
}

TEST(MipsCore, AWrittenProgramCounterForgetsABranch) {
    TMachine machine;
    machine.Put(0x40, {0x02U << 26 | 0x80, SetR3(5)}); // j 200
    machine.Core.SetProgramCounter(0x40);
    machine.Steps(1);
    machine.Core.SetProgramCounter(0x44);
    machine.Steps(1);
    EXPECT_EQ(machine.Core.ProgramCounter(), 0x48U);
}

TEST(MipsCore, JumpsUseWhatARegisterHeldBefore) {
    TMachine machine;
    machine.Put(0x40, {31U << 21 | 31U << 11 | 0x09, 0}); // jalr r31, r31
    machine.Core.SetProgramCounter(0x40);
    machine.Core.SetRegister(31, 0x300);
    machine.Steps(2);
    EXPECT_EQ(machine.Core.ProgramCounter(), 0x300U);
    EXPECT_EQ(machine.Core.Register(31), 0x48U);

    machine.Put(0x60, {Immediate(0x01, 4, 31, 16), 0}); // bltzal r31
    machine.Core.SetProgramCounter(0x60);
    machine.Core.SetRegister(31, 0x80000000);
    machine.Steps(2);
    EXPECT_EQ(machine.Core.ProgramCounter(), 0x74U);
    EXPECT_EQ(machine.Core.Register(31), 0x68U);
}

TEST(MipsCore, AStoredInstructionCountsFromTheNextOneOn) {
    TMachine machine;
    machine.Put(0, {Immediate(0x2B, 4, 0), SetR3(1)}); // sw r1, 4(r0) over what follows
    machine.Core.SetRegister(1, SetR3(2));
    machine.Steps(2);
    EXPECT_EQ(machine.Core.Register(3), 2U);
}

TEST(MipsCore, WaitsForAFullConsole) {
    TMachine machine;
    machine.Put(0, {Immediate(0x2B, 0), SetR3(1), Immediate(0x23, 4)});
    machine.Core.SetRegister(2, TProcessorBus::ConsoleAddress);
    machine.Core.SetRegister(1, 'x');
    for (std::size_t i = 0; i < TProcessorBus::ConsoleCapacity; ++i) {
        machine.Bus.Store(TProcessorBus::ConsoleAddress, 4, 'a');
    }
    EXPECT_EQ(machine.Bus.Load(TProcessorBus::ConsoleAddress, 4), 0U);
    machine.Steps(3);
    EXPECT_EQ(machine.Core.ProgramCounter(), 0U);
    machine.Bus.DropConsole(TProcessorBus::ConsoleCapacity - 1);
    machine.Steps(3);
    EXPECT_EQ(machine.Core.ProgramCounter(), 12U);
    EXPECT_EQ(machine.Bus.Console(), (std::deque<std::uint8_t>{'a', 'x'}));
    EXPECT_EQ(machine.Core.Register(1), 6U) << "the timer counts every cycle";
}

} // namespace
} // namespace vorel::sim
