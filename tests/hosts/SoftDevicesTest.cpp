// Soft devices through the whole stack: loaded library, driver modules, chain, pod and the virtual
// processor behind it.
#include "SoftRig.h"

#include <numeric>

namespace vorel::host {
namespace {

using SoftDevices = TSoftRigTest;

// Prints "Hi", breaks, counts in v0 for ever.
const std::vector<std::uint32_t> Program{0x3C08FFFF, 0x24090048, 0xAD090000, 0x24090069, 0xAD090000,
                                         0x0000000D, 0x24420001, 0x1000FFFE, 0x00000000};
constexpr std::int32_t V0 = 2;
constexpr std::int32_t Pc = 34;

TEST_F(SoftDevices, AProgramIsLoadedRunAndDebugged) {
    EXPECT_EQ(Rig.StatusText(), "Reset");
    Rig.WriteWords(0, Program);
    IVorelBreakpoint* breakpoint = nullptr;
    ASSERT_EQ(Rig.Processor->AddBreakpoint(0, 0x10, breakpoint), StatusOk);
    ASSERT_NE(breakpoint, nullptr);
    ASSERT_TRUE(Rig.RunToStop());
    EXPECT_EQ(Rig.Text(1), "Breakpoint at 00000010");
    EXPECT_EQ(Rig.Register(9), 0x69U);
    EXPECT_EQ(Rig.Text(0), "H");
    EXPECT_EQ(Rig.Processor->SingleStep(), StatusOk);
    EXPECT_EQ(Rig.Text(1), "Step at 00000014");
    EXPECT_EQ(Rig.Text(0), "i");
    EXPECT_EQ(Rig.Text(0), "") << "what was read is taken";
    ASSERT_TRUE(Rig.RunToStop());
    EXPECT_EQ(Rig.Text(1), "Trap: break instruction at 00000014");
    EXPECT_EQ(Rig.Text(2), "6");

    EXPECT_EQ(Rig.Processor->RunSteps(4), StatusOk) << "the break counts as one";
    EXPECT_EQ(Rig.Register(Pc), 0x18U);
    EXPECT_EQ(Rig.Register(V0), 1U);

    EXPECT_EQ(Rig.Processor->ContinueProcessor(), StatusOk);
    EXPECT_EQ(Rig.StatusText(), "Running");
    EXPECT_EQ(Rig.Processor->BeginHalt(), StatusOk);
    EXPECT_EQ(Rig.StatusText(), "Paused");
    std::uint32_t slot = 0;
    EXPECT_EQ(Rig.Ram->ReadBlock(&slot, 3, 1), StatusOk);
    EXPECT_EQ(slot, 0xFFU);
    EXPECT_EQ(Rig.StatusText(), "Running") << "a block read ends the halt";
    EXPECT_EQ(Rig.Processor->ResetProcessor(), StatusOk);
    EXPECT_EQ(Rig.StatusText(), "Reset");
    EXPECT_EQ(Rig.Register(V0), 0U);
}

TEST_F(SoftDevices, RegistersHaveNamesValuesAndTexts) {
    std::int32_t count = 0;
    Rig.Processor->GetRegisterCount(count);
    ASSERT_EQ(count, 35);
    for (std::int32_t i = 0; i < count; ++i) {
        IProcessorRegister* handle = nullptr;
        Rig.Processor->GetRegister(i, handle);
        EXPECT_EQ(handle->WriteValue(0x11110000U + static_cast<unsigned>(i)), StatusOk) << i;
    }
    EXPECT_EQ(Rig.Register(0), 0U);
    for (std::int32_t i = 1; i < count; ++i) {
        EXPECT_EQ(Rig.Register(i), 0x11110000U + static_cast<unsigned>(i));
    }
    IProcessorRegister* pc = nullptr;
    Rig.Processor->GetProgramCounterRegister(pc);
    EXPECT_EQ(pc->WriteText(u" 0x40 "), StatusOk);
    WideText text;
    EXPECT_EQ(pc->ReadText(text), StatusOk);
    EXPECT_EQ(text, u"00000040");
    EXPECT_EQ(pc->WriteText(u"123456789"), StatusBadArgument);
    EXPECT_EQ(pc->WriteText(u"pc"), StatusBadArgument);
    Rig.WriteWords(0x40, {0x1000FFFF, 0}); // branches to itself
    Rig.Processor->ContinueProcessor();
    EXPECT_TRUE(Failed(pc->WriteValue(0))) << "while it runs";
    IProcessorRegister* second = nullptr;
    Rig.Processor->GetSecondRegister(second);
    second->GetName(text);
    EXPECT_EQ(text, u"ra");
}

TEST_F(SoftDevices, BlocksKeepWhatStandsAroundThem) {
    Rig.WriteWords(0x100, {0x11223344, 0x55667788, 0x99AABBCC});
    for (const auto& [address, count] : {std::pair{0x101, 1}, {0x103, 6}, {0x104, 3}, {0x102, 2}}) {
        std::vector<std::uint32_t> before(12);
        Rig.Ram->ReadBlock(before.data(), 0x100, 12);
        const std::vector<std::uint32_t> block(static_cast<std::size_t>(count), 0xFFFFFF5A);
        EXPECT_EQ(Rig.Ram->WriteBlock(block.data(), address, count), StatusOk);
        std::fill_n(before.begin() + (address - 0x100), count, 0x5A);
        std::vector<std::uint32_t> after(12);
        Rig.Ram->ReadBlock(after.data(), 0x100, 12);
        EXPECT_EQ(after, before) << address << " " << count;
    }
}

TEST_F(SoftDevices, BlocksOutsideTheMemoryTouchNothing) {
    std::vector<std::uint32_t> buffer(8, 7);
    const std::uint64_t clocks = Rig.Clocks();
    struct Case {
        std::int64_t Address;
        std::int32_t Count;
    };
    for (const Case& c : {Case{0x100000, 1}, Case{0xFFFFF, 2}, Case{-1, 1}, Case{0, -1},
                          Case{std::int64_t{1} << 40, 1}, Case{0, 0x7FFFFFFF}}) {
        EXPECT_EQ(Rig.Ram->WriteBlock(buffer.data(), c.Address, c.Count), StatusIndexOutOfRange);
    }
    EXPECT_LT(Rig.Clocks() - clocks, 100U) << "only the resets of opening the chain";
    EXPECT_EQ(Rig.Ram->ReadBlock(buffer.data(), 0xFFFFF, 2), StatusIndexOutOfRange);
    EXPECT_EQ(buffer, std::vector<std::uint32_t>(8, 7));
    EXPECT_EQ(Rig.Ram->ReadBlock(buffer.data(), 0xFFFFF, 1), StatusOk);

    IMemorySpace* peripherals = nullptr;
    Rig.Processor->GetMemorySpace(1, peripherals);
    std::uint32_t room = 0;
    EXPECT_EQ(peripherals->ReadBlock(&room, 0, 1), StatusOk);
    EXPECT_EQ(room, 4096U);
    EXPECT_TRUE(Failed(peripherals->WriteBlock(&room, 1, 1))) << "the timer cannot be written";
    EXPECT_EQ(peripherals->WriteBlock(&room, 0, 1), StatusOk) << "the failure is told once";
}

// The whole RAM, or an eighth of it where every access is checked.
#ifdef __SANITIZE_ADDRESS__
constexpr std::int32_t LoadSize = 0x20000;
#else
constexpr std::int32_t LoadSize = 0x100000;
#endif

TEST_F(SoftDevices, ALoadCostsItsBitsAndReadsBackEqual) {
    constexpr std::int32_t Size = LoadSize;
    constexpr std::int32_t PartSize = 16384; // as object files are loaded
    constexpr double DataBits = 8.0 * Size;
    std::vector<std::uint32_t> block(Size);
    for (std::size_t i = 0; i < block.size(); ++i) {
        block[i] = (i * 7 + i / 256) & 0xFF;
    }
    const std::uint64_t clocks = Rig.Clocks();
    const std::uint64_t writes = Rig.Pod().Counters().Writes;
    for (std::int32_t start = 0; start < Size; start += PartSize) {
        ASSERT_EQ(Rig.Ram->WriteBlock(block.data() + start, start, PartSize), StatusOk);
    }
    const auto used = static_cast<double>(Rig.Clocks() - clocks);
    EXPECT_LE(used, 1.01 * DataBits) << "TCK cycles for a data bit: " << used / DataBits;
    // A batch holds 512 bytes with four clocks to two bytes.
    EXPECT_LT(Rig.Pod().Counters().Writes - writes, DataBits / 1020 + 6.0 * Size / PartSize);
    std::vector<std::uint32_t> seen(Size);
    ASSERT_EQ(Rig.Ram->ReadBlock(seen.data(), 0, Size), StatusOk);
    EXPECT_TRUE(seen == block);
}

TEST_F(SoftDevices, DiagnosticsTellWhatAnswers) {
    std::int32_t result = -1;
    EXPECT_EQ(Rig.Processor->RunDiagnostic(result), StatusOk);
    EXPECT_EQ(result, 0);
    EXPECT_EQ(Rig.Memory->RunDiagnostic(result), StatusOk);
    EXPECT_EQ(result, 0);
    Rig.Processor->SetChainIndex(1);
    EXPECT_EQ(Rig.Processor->RunDiagnostic(result), StatusOk);
    EXPECT_EQ(result, 1) << "the memory is no processor";
    Rig.Processor->SetChainIndex(-1);
    EXPECT_TRUE(Failed(Rig.Processor->RunDiagnostic(result)));
}

TEST_F(SoftDevices, TheMemoryInstrumentKeepsItsWords) {
    IMemorySpace* space = nullptr;
    Rig.Memory->GetMainMemorySpace(space);
    std::vector<std::uint32_t> words(4096);
    std::iota(words.begin(), words.end(), 0xFFFFF800U);
    EXPECT_EQ(space->WriteBlock(words.data(), 0, 4096), StatusOk);
    std::vector<std::uint32_t> seen(3);
    EXPECT_EQ(space->ReadBlock(seen.data(), 4093, 3), StatusOk);
    EXPECT_EQ(seen, std::vector<std::uint32_t>(words.end() - 3, words.end()));
    EXPECT_EQ(space->WriteBlock(words.data(), 4095, 2), StatusIndexOutOfRange);
}

} // namespace
} // namespace vorel::host
