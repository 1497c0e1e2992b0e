// Breakpoints of the soft processor through the whole stack: the four of its debug unit and those
// that the driver plants in the memory.
#include "SoftRig.h"

#include "simulator/DebugUnit.h"
#include "vorel/Driver.h"

namespace vorel::host {
namespace {

constexpr std::uint32_t Planted = 0x016948CD;
constexpr std::int32_t V0 = 2;
constexpr std::int32_t Pc = 34;

// Counts in v0 for ever: 0, 4, 8 add 1 each, C branches to 0, its delay slot at 10 adds 0x100.
const std::vector<std::uint32_t> Counter{0x24420001, 0x24420001, 0x24420001, 0x1000FFFC,
                                         0x24420100};

class Breakpoints : public TSoftRigTest {
protected:
    // What the memory really holds.
    std::uint32_t Plain(std::uint32_t address) { return *Unit.Bus().Load(address, 4); }
    IVorelBreakpoint* Add(std::int64_t address) {
        IVorelBreakpoint* breakpoint = nullptr;
        EXPECT_EQ(Rig.Processor->AddBreakpoint(0, address, breakpoint), StatusOk);
        return breakpoint;
    }
    // Uses up the comparators at places where nothing runs.
    void FillUnit() {
        for (const std::int64_t address : {0x80000, 0x80004, 0x80008, 0x8000C}) {
            ASSERT_NE(Add(address), nullptr);
        }
    }
    std::int32_t Count() {
        std::int32_t count = -1;
        EXPECT_EQ(Rig.Processor->GetBreakpointCount(count), StatusOk);
        return count;
    }
    bool Remove(std::int64_t address) {
        Bool32 removed = False32;
        EXPECT_EQ(Rig.Processor->RemoveBreakpoint(0, address, removed), StatusOk);
        return removed != False32;
    }
    std::string RunToStop() { return Rig.RunToStop() ? Rig.Text(1) : "still runs"; }
    std::vector<std::uint32_t> ReadBytes(std::int64_t address, std::int32_t count) {
        std::vector<std::uint32_t> slots(static_cast<std::size_t>(count));
        EXPECT_EQ(Rig.Ram->ReadBlock(slots.data(), address, count), StatusOk);
        return slots;
    }

    sim::TDebugUnit& Unit =
        dynamic_cast<sim::TDebugUnit&>(Rig.Pod().Target()->SoftChain().Device(0));
};

TEST_F(Breakpoints, TheFifthIsPlantedInTheMemory) {
    Rig.WriteWords(0, Counter);
    FillUnit();
    IVorelBreakpoint* const breakpoint = Add(4);
    ASSERT_NE(breakpoint, nullptr);
    EXPECT_EQ(Add(4), breakpoint);
    EXPECT_EQ(Add(0x80000), Add(0x80000));
    std::int32_t number = 0;
    EXPECT_EQ(breakpoint->GetNumber10(number), StatusOk);
    EXPECT_EQ(number, -1);
    EXPECT_EQ(Count(), 5);
    EXPECT_EQ(Plain(4), Planted);

    EXPECT_EQ(RunToStop(), "Breakpoint at 00000004");
    EXPECT_EQ(Rig.Register(V0), 1U);
    EXPECT_EQ(RunToStop(), "Breakpoint at 00000004") << "once around";
    EXPECT_EQ(Rig.Register(V0), 0x104U);
    EXPECT_EQ(Plain(4), Planted);
    EXPECT_EQ(Rig.Processor->SingleStep(), StatusOk);
    EXPECT_EQ(Rig.Text(1), "Step at 00000008");
    EXPECT_EQ(Rig.Register(V0), 0x105U);
    EXPECT_EQ(Rig.Processor->RunSteps(100), StatusOk);
    EXPECT_EQ(Rig.Text(1), "Breakpoint at 00000004") << "a row of steps ends there as well";
    EXPECT_EQ(Rig.Processor->RunSteps(3), StatusOk);
    EXPECT_EQ(Rig.Register(Pc), 0x10U) << "the instruction below the breakpoint counts";

    EXPECT_TRUE(Remove(0x80000));
    IVorelBreakpoint* const next = Add(8);
    next->GetNumber10(number);
    EXPECT_EQ(number, 0) << "a comparator that is free is taken first";
    EXPECT_EQ(Rig.Messages, "");
}

TEST_F(Breakpoints, RefusedAtNoCostWhereNoInstructionCanBe) {
    FillUnit();
    const std::uint64_t writes = Rig.Pod().Counters().Writes;
    for (const auto& [space, address] : {std::pair{0, std::int64_t{2}},
                                         {0, 0x100000},
                                         {0, -4},
                                         {0, 0xFFFF0000},
                                         {0, std::int64_t{1} << 32},
                                         {1, 0},
                                         {7, 0}}) {
        Rig.Messages.clear();
        IVorelBreakpoint* breakpoint = nullptr;
        EXPECT_EQ(Rig.Processor->AddBreakpoint(space, address, breakpoint), StatusOk);
        EXPECT_EQ(breakpoint, nullptr) << space << " " << address;
        EXPECT_EQ(Rig.Messages,
                  "Error: A request for a hardware breakpoint could not be satisfied!\nEither the "
                  "underlying hardware has no support for hardware breakpoints or you need to free "
                  "up an existing hardware breakpoint.");
    }
    EXPECT_EQ(Rig.Pod().Counters().Writes, writes);
    EXPECT_EQ(Count(), 4);
    EXPECT_EQ(Plain(0), 0U);
}

TEST_F(Breakpoints, ReadsShowWhatStandsBelow) {
    Rig.WriteWords(0, Counter);
    const std::vector<std::uint32_t> before = ReadBytes(0, 24);
    FillUnit();
    for (const std::int64_t address : {0x0, 0x8, 0x10}) {
        ASSERT_NE(Add(address), nullptr);
    }
    EXPECT_EQ(ReadBytes(0, 24), before);
    for (std::int32_t i = 0; i < 24; ++i) {
        EXPECT_EQ(ReadBytes(i, 1)[0], before[static_cast<std::size_t>(i)]) << i;
    }
    EXPECT_EQ(ReadBytes(7, 6), std::vector(before.begin() + 7, before.begin() + 13));
}

TEST_F(Breakpoints, WritesGoBelowThem) {
    Rig.WriteWords(0, {0x11111111, 0x22222222, 0x33333333, 0x44444444});
    FillUnit();
    ASSERT_NE(Add(4), nullptr);
    ASSERT_NE(Add(8), nullptr);
    const std::vector<std::uint32_t> bytes{0xA5, 0xA6, 0xA7, 0xA8};
    EXPECT_EQ(Rig.Ram->WriteBlock(bytes.data(), 6, 4), StatusOk); // the half of each
    EXPECT_EQ(Rig.Ram->WriteBlock(bytes.data(), 8, 1), StatusOk);
    EXPECT_EQ(Rig.Ram->WriteBlock(bytes.data(), 5, 1), StatusOk);
    EXPECT_EQ(Plain(4), Planted);
    EXPECT_EQ(Plain(8), Planted);
    EXPECT_EQ(Plain(0), 0x11111111U);
    EXPECT_EQ(Plain(12), 0x44444444U);
    EXPECT_TRUE(Remove(4));
    EXPECT_TRUE(Remove(8));
    EXPECT_EQ(Plain(4), 0x22A5A5A6U);
    EXPECT_EQ(Plain(8), 0xA5A83333U);

    ASSERT_NE(Add(4), nullptr);
    Rig.WriteWords(0, Counter); // a program is loaded over it
    EXPECT_EQ(Plain(4), Planted);
    EXPECT_EQ(RunToStop(), "Breakpoint at 00000004");
    EXPECT_EQ(Rig.Processor->RemoveAllBreakpoints(), StatusOk);
    EXPECT_EQ(Plain(4), Counter[1]);
    EXPECT_EQ(Rig.Text(1), "Breakpoint at 00000004") << "why it stopped has not changed";
    EXPECT_EQ(Rig.Processor->ContinueProcessor(), StatusOk);
    EXPECT_EQ(Rig.StatusText(), "Running");
}

TEST_F(Breakpoints, OneInADelaySlotKeepsTheBranch) {
    Rig.WriteWords(0, Counter);
    FillUnit();
    ASSERT_NE(Add(0x10), nullptr);
    EXPECT_EQ(RunToStop(), "Breakpoint at 00000010");
    EXPECT_EQ(Rig.Register(V0), 3U);
    EXPECT_EQ(Rig.Processor->SingleStep(), StatusOk);
    EXPECT_EQ(Rig.Text(1), "Step at 00000000") << "the branch is taken";
    EXPECT_EQ(RunToStop(), "Breakpoint at 00000010");
    EXPECT_EQ(RunToStop(), "Breakpoint at 00000010");
    EXPECT_EQ(Rig.Register(V0), 0x209U);
}

TEST_F(Breakpoints, OverAnInstructionThatStopsByItself) {
    Rig.WriteWords(0, {0x24420001, 0x0000000D, 0x24420001, 0x0000000C, 0x8C010002, 0x1000FFFF, 0});
    FillUnit();
    for (const std::int64_t address : {0x4, 0xC, 0x10}) {
        ASSERT_NE(Add(address), nullptr);
    }
    EXPECT_EQ(RunToStop(), "Breakpoint at 00000004");
    EXPECT_EQ(RunToStop(), "Breakpoint at 0000000C") << "its own break has been passed";
    EXPECT_EQ(RunToStop(), "Trap: system call, goes on at 00000010");
    EXPECT_EQ(RunToStop(), "Trap: misaligned load or fetch at 00000010");
    EXPECT_EQ(Rig.Register(V0), 2U);
    EXPECT_EQ(Plain(0xC), Planted);
    EXPECT_EQ(Plain(0x10), Planted);
}

// The program stores v0 = 12345678 over its own instruction at 10.
TEST_F(Breakpoints, WhatTheProgramWritesOverOneStays) {
    Rig.WriteWords(0, {0x3C021234, 0x34425678, 0xAC020010, 0x0000000D, 0x00000000});
    FillUnit();
    ASSERT_NE(Add(0x10), nullptr);
    EXPECT_EQ(RunToStop(), "Trap: break instruction at 0000000C");
    EXPECT_EQ(ReadBytes(0x10, 2), (std::vector<std::uint32_t>{0x12, 0x34}));
    EXPECT_TRUE(Remove(0x10));
    EXPECT_EQ(Plain(0x10), 0x12345678U);
}

TEST_F(Breakpoints, StayOverAResetAndLeaveWithTheDevice) {
    Rig.WriteWords(0, Counter);
    FillUnit();
    ASSERT_NE(Add(0), nullptr);
    ASSERT_NE(Add(8), nullptr);
    EXPECT_EQ(RunToStop(), "Breakpoint at 00000008") << "the first instruction is executed";
    EXPECT_EQ(Rig.Processor->ResetProcessor(), StatusOk);
    EXPECT_EQ(Rig.StatusText(), "Reset");
    EXPECT_EQ(Plain(0), Planted);
    EXPECT_EQ(RunToStop(), "Breakpoint at 00000008");
    EXPECT_EQ(Rig.Register(V0), 2U);

    ASSERT_EQ(Rig.Vorel.DeviceManager()->ReleaseDevice(Rig.Processor), StatusOk);
    EXPECT_EQ(Plain(0), Counter[0]);
    EXPECT_EQ(Plain(8), Counter[2]);
    std::int32_t place = 0;
    IJTagChannel* channel = Rig.Chain;
    Rig.Processor->GetChainIndex(place);
    Rig.Processor->GetChannel(channel);
    EXPECT_EQ(place, -1);
    EXPECT_EQ(channel, nullptr);
    EXPECT_EQ(Count(), 0);

    Rig.Processor->SetChannel(Rig.Chain);
    Rig.Processor->SetChainIndex(0);
    EXPECT_EQ(Count(), 4) << "the unit keeps its own";
    ASSERT_NE(Add(0), nullptr);
    EXPECT_EQ(Plain(0), Planted) << "they stay in use";
    EXPECT_EQ(Rig.Processor->RemoveAllBreakpoints(), StatusOk);
    EXPECT_EQ(Count(), 0);
    Rig.WriteWords(0x80000, {0x0000000C});
    Rig.WriteWords(0, {0x3C020008, 0x00400008, 0}); // jumps to 80000
    EXPECT_EQ(RunToStop(), "Trap: system call, goes on at 00080004");
}

TEST_F(Breakpoints, APodPulledOutWhileOneIsLiftedLosesNone) {
    Rig.WriteWords(0, Counter);
    FillUnit();
    ASSERT_NE(Add(4), nullptr);
    ASSERT_EQ(RunToStop(), "Breakpoint at 00000004");
    std::uint64_t writes = Rig.Pod().Counters().Writes;
    ASSERT_EQ(RunToStop(), "Breakpoint at 00000004");
    const std::uint64_t most = Rig.Pod().Counters().Writes - writes;
    ASSERT_GT(most, 10U);
    for (std::uint64_t after = 1; after <= most; ++after) {
        sim::UsbFault fault;
        fault.First = Rig.Pod().Counters().Writes + after;
        Rig.Pod().Faults().Add(fault);
        static_cast<void>(Rig.Processor->ContinueProcessor());
        Rig.Pod().Faults().Clear();
        ASSERT_EQ(Rig.Processor->PauseProcessor(), StatusOk) << after;
        ASSERT_EQ(RunToStop(), "Breakpoint at 00000004") << after;
        ASSERT_EQ(Plain(4), Planted) << after;
        ASSERT_EQ(ReadBytes(4, 4), (std::vector<std::uint32_t>{0x24, 0x42, 0, 1})) << after;
    }
}

// Going on from a planted breakpoint costs the same however many there are.
TEST_F(Breakpoints, GoingOnCostsTheSameWithAThousand) {
    Rig.WriteWords(0, Counter);
    FillUnit();
    ASSERT_NE(Add(0), nullptr);
    ASSERT_NE(Add(4), nullptr);
    ASSERT_EQ(RunToStop(), "Breakpoint at 00000004");
    const auto clocksOfARun = [&] {
        const std::uint64_t before = Rig.Clocks();
        EXPECT_EQ(Rig.Processor->ContinueProcessor(), StatusOk);
        return Rig.Clocks() - before;
    };
    const std::uint64_t resets = Unit.ResetCount();
    const std::uint64_t few = clocksOfARun();
    EXPECT_EQ(Unit.ResetCount() - resets, 17U) << "accesses: each opens the chain, with a reset";
    for (std::int64_t address = 0x1000; address < 0x2000; address += 4) {
        ASSERT_NE(Add(address), nullptr);
    }
    ASSERT_EQ(Rig.Text(1), "Breakpoint at 00000000");
    EXPECT_EQ(clocksOfARun(), few);
    EXPECT_LT(few, 17U * 120);

    std::vector<std::uint32_t> slots(4096);
    const std::uint64_t clocks = Rig.Clocks();
    ASSERT_EQ(Rig.Ram->ReadBlock(slots.data(), 0x1000, 4096), StatusOk);
    EXPECT_LT(Rig.Clocks() - clocks, 8U * 4096 + 300) << "one stream, as without any";
    EXPECT_EQ(slots, std::vector<std::uint32_t>(4096));
    EXPECT_EQ(Rig.Processor->RemoveAllBreakpoints(), StatusOk);
    EXPECT_EQ(Plain(0x1FFC), 0U);
}

} // namespace
} // namespace vorel::host
