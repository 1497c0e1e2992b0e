// Soft devices through the whole stack while the pod fails, is pulled out, or the target refuses.
#include "SoftRig.h"

#include <algorithm>
#include <functional>

namespace vorel::host {
namespace {

using sim::UsbFault;
using sim::UsbTransfer;

// What a register and a block of the RAM hold, so that an answer shows whether it is the right one.
constexpr std::int32_t Marked = 5;
constexpr std::uint32_t Mark = 0x1234ABCD;
constexpr std::int64_t Place = 0x10000;
constexpr std::int32_t BlockSize = 20000;

class SoftFaults : public TSoftRigTest {
protected:
    struct TWork {
        const char* Name;
        std::function<Status()> Do;
    };

    SoftFaults() : Block(BlockSize), Seen(BlockSize) {
        for (std::size_t i = 0; i < Block.size(); ++i) {
            Block[i] = (i * 7 + i / 256) & 0xFF;
        }
        EXPECT_EQ(Rig.Ram->WriteBlock(Block.data(), Place, BlockSize), StatusOk);
        EXPECT_EQ(Handle().WriteValue(Mark), StatusOk);
        EXPECT_EQ(Rig.Processor->SingleStep(), StatusOk);
    }

    IProcessorRegister& Handle() {
        IProcessorRegister* handle = nullptr;
        Check(Rig.Processor->GetRegister(Marked, handle), "Getting a register");
        return *handle;
    }
    // A caller knows that a failed read leaves the chain locked once more.
    Status ReadBlock(std::int32_t count) {
        const Status status = Rig.Ram->ReadBlock(Seen.data(), Place, count);
        if (Failed(status)) {
            Rig.Chain->Unlock();
        }
        return status;
    }
    // All of them leave registers and RAM as they are.
    std::vector<TWork> Works() {
        return {
            {"register read", [&] { return Handle().ReadValue(Value); }},
            {"register text", [&] { return Handle().WriteText(u"1234ABCD"); }},
            {"block read", [&] { return ReadBlock(BlockSize); }},
            {"block write", [&] { return Rig.Ram->WriteBlock(Block.data(), Place, BlockSize); }},
            {"status", [&] { return Rig.Processor->GetStatusText(Text); }},
            {"pause", [&] { return Rig.Processor->PauseProcessor(); }},
            {"step", [&] { return Rig.Processor->SingleStep(); }},
            {"diagnostic", [&] { return Rig.Processor->RunDiagnostic(Number); }},
            {"memory instrument",
             [&] {
                 IMemorySpace* words = nullptr;
                 Check(Rig.Memory->GetMainMemorySpace(words), "Getting the memory");
                 return words->WriteBlock(Block.data(), 0, 1000);
             }},
            {"console", [&] { return Rig.Processor->GetCoreText111(0, Text); }},
            {"halt",
             [&] {
                 const Status begun = Rig.Processor->BeginHalt();
                 const Status ended = Rig.Processor->EndHalt();
                 return Failed(begun) ? begun : ended;
             }},
            {"breakpoint",
             [&] {
                 IVorelBreakpoint* item = nullptr;
                 const Status added = Rig.Processor->AddBreakpoint(0, 0x40, item);
                 const Status removed = Rig.Processor->RemoveAllBreakpoints();
                 return Failed(added) ? added : removed;
             }},
        };
    }

    std::uint64_t Transfers(UsbTransfer kind) {
        const sim::UsbCounters& counters = Rig.Pod().Counters();
        return kind == UsbTransfer::Write ? counters.Writes : counters.Reads;
    }
    // Does the work with a fault on its transfer `number`, which has to come out as a failure.
    void FailIn(const TWork& work, UsbFault fault, std::uint64_t number) {
        fault.First = Transfers(fault.On) + number;
        Rig.Pod().Faults().Add(fault);
        EXPECT_TRUE(Failed(work.Do()));
        Rig.Pod().Faults().Clear();
    }
    // What a host does about a pod that came back.
    void Replug() {
        Rig.Pod().Plug();
        EXPECT_EQ(Rig.Vorel.ScanJTagPorts(), StatusOk);
        Bool32 found = False32;
        EXPECT_EQ(Rig.Port->Detect(True32, found), StatusOk);
        EXPECT_EQ(found, True32);
    }
    void ExpectAllWell() {
        EXPECT_EQ(Rig.Register(Marked), Mark);
        EXPECT_EQ(Rig.StatusText(), "Paused");
        EXPECT_EQ(Rig.Ram->WriteBlock(Block.data(), Place, 40), StatusOk);
        EXPECT_EQ(ReadBlock(40), StatusOk);
        EXPECT_TRUE(std::equal(Seen.begin(), Seen.begin() + 40, Block.begin()));
        EXPECT_EQ(Rig.Processor->RemoveAllBreakpoints(), StatusOk);
        EXPECT_FALSE(Rig.Pod().Firmware()->State().Session) << "a lock is left";
        EXPECT_EQ(Rig.Usb->OpenHandleCount(), 3U);
    }
    // Each of the first transfers and some of the others.
    template<class Body>
    void ForEachTransfer(UsbTransfer kind, Body body) {
        for (const TWork& work : Works()) {
            const std::uint64_t before = Transfers(kind);
            ASSERT_EQ(work.Do(), StatusOk) << work.Name;
            const std::uint64_t count = Transfers(kind) - before;
            for (std::uint64_t i = 1; i <= count; i += i < 10 ? 1 : 37) {
                SCOPED_TRACE(std::string(work.Name) + ", transfer " + std::to_string(i) + " of " +
                             std::to_string(count));
                body(work, i);
            }
        }
    }

    std::vector<std::uint32_t> Block;
    std::vector<std::uint32_t> Seen;
    std::uint32_t Value = 0;
    std::int32_t Number = 0;
    WideText Text;
};

TEST_F(SoftFaults, APodPulledOutAtAnyTransferIsToldAndServesAgainWhenItIsBack) {
    for (const UsbTransfer kind : {UsbTransfer::Write, UsbTransfer::Read}) {
        ForEachTransfer(kind, [&](const TWork& work, std::uint64_t number) {
            FailIn(work, {UsbFault::Effect::Unplug, kind}, number);
            EXPECT_FALSE(Rig.Pod().IsPlugged());
            EXPECT_TRUE(Failed(work.Do())) << "the pod is still out";
            Replug();
            ExpectAllWell();
        });
    }
}

TEST_F(SoftFaults, ALockAroundWorkThatThePodCutsOffIsStillTheCallers) {
    const std::vector<TWork> works = Works();
    for (const TWork& work : {works[0], works[2], works[3]}) { // those that wait for an answer
        SCOPED_TRACE(work.Name);
        Bool32 locked = False32;
        ASSERT_EQ(Rig.Chain->Lock(locked), StatusOk);
        FailIn(work, {UsbFault::Effect::Unplug}, 1);
        Replug();
        EXPECT_EQ(Rig.Chain->Unlock(), StatusOk);
        ExpectAllWell();
    }
}

TEST_F(SoftFaults, APodThatTakesOrAnswersNothingForAWhileServesAgainBehindIt) {
    for (const auto& [kind, effect] : {std::pair{UsbTransfer::Write, UsbFault::Effect::Fail},
                                       {UsbTransfer::Write, UsbFault::Effect::TimeOut},
                                       {UsbTransfer::Read, UsbFault::Effect::Fail},
                                       {UsbTransfer::Read, UsbFault::Effect::TimeOut}}) {
        ForEachTransfer(kind, [&, fault = UsbFault{effect, kind, 1, true}](const TWork& work,
                                                                           std::uint64_t number) {
            FailIn(work, fault, number);
            if (fault.On == UsbTransfer::Read) {
                Handle().ReadValue(Value); // meets the answers that nobody fetched
            }
            ExpectAllWell();
        });
    }
}

TEST_F(SoftFaults, AHaltThatThePodCutsOffIsClosedByItsEnd) {
    ASSERT_EQ(Rig.Ram->WriteBlock(std::vector<std::uint32_t>{0x10, 0, 0xFF, 0xFF}.data(), 0, 4),
              StatusOk); // branches to itself
    ASSERT_EQ(Rig.Processor->ResetProcessor(), StatusOk);
    ASSERT_EQ(Rig.Processor->ContinueProcessor(), StatusOk);
    const TWork begin{"halt", [&] { return Rig.Processor->BeginHalt(); }};
    FailIn(begin, {UsbFault::Effect::Unplug}, 1);
    Replug();
    EXPECT_EQ(Rig.Processor->EndHalt(), StatusOk);
    EXPECT_EQ(Rig.StatusText(), "Running");
    EXPECT_EQ(Rig.Processor->BeginHalt(), StatusOk);
    EXPECT_EQ(Rig.StatusText(), "Paused") << "the halt that failed is not open any more";
    EXPECT_EQ(Rig.Processor->EndHalt(), StatusOk);
    EXPECT_EQ(Rig.StatusText(), "Running");
}

// A breakpoint that was not added, or not removed, must not stop the processor unseen.
TEST_F(SoftFaults, BreakpointsThatThePodCutsOffCanBeRemoved) {
    std::vector<std::uint32_t> loop(0x100);
    std::copy_n(std::vector<std::uint32_t>{0x10, 0, 0xFF, 0xEF}.begin(), 4, loop.begin() + 0x40);
    ASSERT_EQ(Rig.Ram->WriteBlock(loop.data(), 0, 0x100), StatusOk); // 0 to 0x44 for ever
    IVorelBreakpoint* item = nullptr;
    Bool32 removed = False32;
    const TWork add{"add", [&] { return Rig.Processor->AddBreakpoint(0, 0x20, item); }};
    const TWork remove{"remove", [&] { return Rig.Processor->RemoveBreakpoint(0, 0x20, removed); }};
    std::int32_t held = -1;
    ASSERT_EQ(Rig.Processor->GetBreakpointCount(held), StatusOk); // looks into the unit once
    const std::uint64_t before = Transfers(UsbTransfer::Write);
    ASSERT_EQ(add.Do(), StatusOk);
    const std::uint64_t count = Transfers(UsbTransfer::Write) - before;
    ASSERT_EQ(remove.Do(), StatusOk);
    for (std::uint64_t transfer = 1; transfer <= count; ++transfer) {
        SCOPED_TRACE(transfer);
        FailIn(add, {UsbFault::Effect::Unplug}, transfer);
        Replug();
        EXPECT_EQ(Rig.Processor->RemoveAllBreakpoints(), StatusOk);
        EXPECT_EQ(Rig.Processor->ContinueProcessor(), StatusOk);
        for (int i = 0; i < 100; ++i) {
            ASSERT_EQ(Rig.StatusText(), "Running");
        }
        EXPECT_EQ(Rig.Processor->PauseProcessor(), StatusOk);

        FailIn(add, {UsbFault::Effect::Unplug}, transfer);
        Replug();
        EXPECT_EQ(add.Do(), StatusOk);
        ASSERT_TRUE(Rig.RunToStop());
        EXPECT_EQ(Rig.Text(1), "Breakpoint at 00000020");
        FailIn(remove, {UsbFault::Effect::Unplug}, transfer);
        Replug();
        EXPECT_EQ(add.Do(), StatusOk);
        ASSERT_TRUE(Rig.RunToStop());
        EXPECT_EQ(Rig.Text(1), "Breakpoint at 00000020") << "added again after half a removal";
        EXPECT_EQ(remove.Do(), StatusOk);
        EXPECT_EQ(removed, True32);
    }
}

TEST_F(SoftFaults, AReadBehindTheEndLeavesTheChainOpenOnceAndTheHaltAsItIs) {
    const auto& pod = Rig.Pod().Firmware()->State();
    EXPECT_EQ(Rig.Processor->BeginHalt(), StatusOk);
    EXPECT_EQ(Rig.Ram->ReadBlock(Seen.data(), 0xFFFF0, 17), StatusIndexOutOfRange);
    EXPECT_TRUE(pod.Session);
    const std::uint64_t sessions = pod.Sessions;
    EXPECT_EQ(Rig.Register(Marked), Mark);
    EXPECT_EQ(Rig.Ram->WriteBlock(Block.data(), 0xFFFF0, 17), StatusIndexOutOfRange);
    EXPECT_EQ(pod.Sessions, sessions) << "the chain was open all the time";
    EXPECT_EQ(Rig.Chain->Unlock(), StatusOk);
    EXPECT_FALSE(pod.Session);
    EXPECT_EQ(Rig.Processor->EndHalt(), StatusOk);
    ExpectAllWell();

    IMemorySpace* words = nullptr;
    ASSERT_EQ(Rig.Memory->GetMainMemorySpace(words), StatusOk);
    EXPECT_EQ(words->ReadBlock(Seen.data(), 4096, 1), StatusIndexOutOfRange);
    EXPECT_EQ(Rig.Chain->Unlock(), StatusOk);
    EXPECT_EQ(words->WriteBlock(Block.data(), 4095, 1), StatusOk);
    EXPECT_EQ(words->ReadBlock(Seen.data(), 4095, 1), StatusOk);
    EXPECT_EQ(Seen[0], Block[0]);
}

} // namespace
} // namespace vorel::host
