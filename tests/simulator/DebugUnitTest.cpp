// The registers of the debug unit over its port, between two devices in BYPASS, as
// drivers/ZRC3000.md tells them.
#include "simulator/DebugUnit.h"
#include "TapDriver.h"
#include "simulator/Chain.h"

#include <gtest/gtest.h>

#include <memory>
#include <vector>

namespace vorel::sim {
namespace {

using Words = std::vector<std::uint32_t>;

class DebugUnit : public testing::Test {
protected:
    enum Register : unsigned {
        Control = 1,
        Status = 2,
        Pc = 3,
        Number = 4,
        Data = 5,
        Address = 6,
        Memory = 7,
        Console = 9,
        Characters = 10,
        TrapAddress = 11,
        FirstBreakpoint = 16
    };
    enum Command : unsigned { Run = 1, Pause = 2, Step = 3, Reset = 4 };

    DebugUnit() {
        Chain.Add(std::make_unique<TTapDevice>(Part({})));
        Chain.Add(std::make_unique<TDebugUnit>(Part(0x1B8C0101)));
        Chain.Add(std::make_unique<TTapDevice>(Part({})));
        Master.ResetToIdle();
    }

    // An access of the port; the host sees what is left when the BYPASS bits are taken away.
    BitText Access(unsigned number, bool read, const BitText& data) {
        Master.Ir("111110111111"); // BYPASS, 11, BYPASS
        Master.Dr("0" + TapDriver::Bits(number * 2 + (read ? 1 : 0)) + "0");
        const BitText seen = Master.Dr("0" + data + "0");
        return seen.substr(1, data.size());
    }
    Words ReadWords(unsigned number, std::size_t count) {
        const BitText bits = Access(number, true, BitText(32 * count, '0'));
        Words words;
        for (std::size_t i = count; i-- > 0;) {
            words.push_back(
                static_cast<std::uint32_t>(std::stoul(bits.substr(32 * i, 32), nullptr, 2)));
        }
        return words;
    }
    std::uint32_t Read(unsigned number) { return ReadWords(number, 1)[0]; }
    void Write(unsigned number, std::uint32_t value) {
        Access(number, false, TapDriver::Bits(value, 32));
    }
    void WriteStream(unsigned number, const Words& words) {
        BitText text = "1";
        for (const std::uint32_t word : words) {
            text = TapDriver::Bits(word, 32) + text;
        }
        Access(number, false, text);
    }
    // Status without the number of breakpoints.
    std::uint32_t State() { return Read(Status) & 0x0FFFFFFF; }

    TChain Chain;
    TapDriver Master{Chain};
};

TEST_F(DebugUnit, RegistersHoldWhatTheyShould) {
    struct Case {
        unsigned Number;
        std::uint32_t AtFirst;
        std::uint32_t AfterWrite; // of FFFFFFFF
    };
    const Case cases[] = {{0, 0x5A523033, 0x5A523033},
                          {Control, 0, 0}, // no command
                          {Status, 0x40000004, 0x40000004},
                          {Pc, 0, 0xFFFFFFFF},
                          {Number, 0, 34},
                          {Address, 0, 0xFFFFFFFC},
                          {Console, 0, 0},
                          {Characters, 0, 0},
                          {TrapAddress, 0, 0},
                          {12, 0, 0xFFFFFFFF},
                          {13, 0, 0},
                          {16, 0, 0xFFFFFFFD},
                          {19, 0, 0xFFFFFFFD},
                          {20, 0, 0},
                          {127, 0, 0}};
    for (const Case& c : cases) {
        EXPECT_EQ(Read(c.Number), c.AtFirst) << c.Number;
        Write(c.Number, 0xFFFFFFFF);
        EXPECT_EQ(ReadWords(c.Number, 2), (Words{c.AfterWrite, 0})) << c.Number;
    }
}

TEST_F(DebugUnit, StreamsCountFromTheirPointers) {
    Write(Address, 0x102);
    WriteStream(Memory, {1, 2, 3});
    EXPECT_EQ(Read(Address), 0x100U) << "the pointer stays";
    EXPECT_EQ(ReadWords(Memory, 4), (Words{1, 2, 3, 0}));
    Write(Address, 0xFFFF8);
    WriteStream(Memory, {4, 5});
    EXPECT_EQ(ReadWords(Memory, 3), (Words{4, 5, 0})) << "nothing reads 0";
    EXPECT_EQ(State(), 4U) << "and is no failure";
    WriteStream(Memory, {4, 5, 6});
    EXPECT_EQ(State(), 0x10004U);
    Write(Status, 0xFFFEFFFF);
    EXPECT_EQ(State(), 0x10004U);
    Write(Status, 0x10000);
    EXPECT_EQ(State(), 4U);

    Write(Number, 31);
    WriteStream(Data, {7, 8, 9, 10});
    EXPECT_EQ(ReadWords(Data, 4), (Words{7, 8, 9, 0}));
    Write(Number, 0);
    WriteStream(Data, {7, 8});
    EXPECT_EQ(ReadWords(Data, 2), (Words{0, 8}));
}

TEST_F(DebugUnit, CommandsDoWhatTheStateAllows) {
    constexpr std::uint32_t running = 1;
    constexpr std::uint32_t paused = 0x12;
    constexpr std::uint32_t stepped = 0x22;
    constexpr std::uint32_t held = 4;
    struct Case {
        Command Before; // brings the state about, from reset
        Command Then;
        std::uint32_t State;
    };
    const Case cases[] = {
        {Reset, Reset, held},   {Reset, Run, running},  {Reset, Pause, paused},
        {Reset, Step, stepped}, {Run, Run, running},    {Run, Pause, paused},
        {Run, Step, running},   {Run, Reset, held},     {Step, Run, running},
        {Step, Pause, stepped}, {Step, Step, stepped},  {Step, Reset, held},
        {Pause, Pause, paused}, {Pause, Step, stepped},
    };
    Write(Address, 0);
    WriteStream(Memory, {0x1000FFFF, 0}); // branches to itself
    for (const Case& c : cases) {
        Write(Control, Reset);
        Write(Control, c.Before);
        Write(Control, c.Then);
        EXPECT_EQ(State(), c.State) << c.Before << " " << c.Then;
        Write(Control, 0);
        Write(Control, 15);
        EXPECT_EQ(State(), c.State) << "unknown commands";
    }
    Write(Control, Run);
    Write(Pc, 0x100);
    Write(Number, 1);
    WriteStream(Data, {5});
    EXPECT_LT(Read(Pc), 8U) << "dropped while it runs";
    EXPECT_EQ(Read(Data), 0U);
}

TEST_F(DebugUnit, StepsEndAtBreakpointsAndTraps) {
    Write(Address, 0);
    WriteStream(Memory, {0, 0, 0, 0x8C000002}); // lw r0, 2(r0)
    Write(FirstBreakpoint + 3, 0x8 | 1);
    Write(Control, 100U << 8 | Step);
    EXPECT_EQ(State(), 0x32U);
    EXPECT_EQ(Read(Pc), 8U);
    Write(Control, 100U << 8 | Step);
    EXPECT_EQ(State(), 0x442U);
    EXPECT_EQ(Read(Pc), 0xCU);
    EXPECT_EQ(Read(TrapAddress), 2U);
    Write(Control, Reset);
    EXPECT_EQ(Read(TrapAddress), 0U);
    EXPECT_EQ(Read(FirstBreakpoint + 3), 9U) << "a reset leaves it";
    Write(Control, 2U << 8 | Step);
    EXPECT_EQ(State(), 0x22U) << "at the breakpoint, by its count";
    EXPECT_EQ(Read(Pc), 8U);
}

TEST_F(DebugUnit, TheConsoleWaitsUntilItIsTaken) {
    Write(Address, TProcessorBus::ConsoleAddress);
    for (const char c : std::string("abc")) {
        WriteStream(Memory, {0xFFFFFF00U | static_cast<unsigned char>(c)});
    }
    EXPECT_EQ(Read(Console), 3U);
    EXPECT_EQ(ReadWords(Characters, 4), (Words{'a', 'b', 'c', 0}));
    EXPECT_EQ(Read(Console), 3U) << "reading takes nothing";
    Write(Console, 2);
    EXPECT_EQ(Read(Characters), std::uint32_t{'c'});
    Write(Console, 0xFFFFFFFF);
    EXPECT_EQ(Read(Console), 0U);
}

} // namespace
} // namespace vorel::sim
