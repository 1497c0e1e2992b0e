#include "core/BitVector.h"
#include "core/CoreRig.h"
#include "knowledge/TempFolder.h"
#include "simulator/ParallelCable.h"

#include <gtest/gtest.h>

namespace vorel::test {
namespace {

// A cable that knows whether anybody holds it, and can fail from one write on.
class THeldCable : public TNonRefCountedInterfacedObject<IParallelPort> {
public:
    std::int32_t AddRef() noexcept override { return ++Users; }
    std::int32_t Release() noexcept override { return --Users; }
    Status Prepare() noexcept override {
        UnusedPrepares += Users == 0 ? 1 : 0;
        return Cable.Prepare();
    }
    Status GetBaseAddress(std::uint32_t& value) noexcept override {
        return Cable.GetBaseAddress(value);
    }
    Status IsXilinxCable(Bool32& value) noexcept override { return Cable.IsXilinxCable(value); }
    Status ReadData(std::uint8_t& value) noexcept override { return Cable.ReadData(value); }
    Status WriteData(std::uint8_t value) noexcept override {
        if (Cable.Accesses().DataWrites == FailingWrite) {
            Cable.SetFailure(StatusFromOsError(5));
        }
        return Cable.WriteData(value);
    }
    Status PrepareStatusRead() noexcept override { return Cable.PrepareStatusRead(); }
    Status ReadStatus(std::uint8_t& value) noexcept override { return Cable.ReadStatus(value); }
    Status WriteControl(std::uint8_t value, std::uint8_t mask) noexcept override {
        return Cable.WriteControl(value, mask);
    }

    sim::TParallelCable Cable;
    std::uint64_t FailingWrite = ~0ULL; // counted from 0
    int Users = 0;
    int UnusedPrepares = 0;
};

class TFakeManager : public TNonRefCountedInterfacedObject<IParallelPortManager> {
public:
    Status GetPortCount(std::int32_t& count) noexcept override {
        count = Cable != nullptr ? 1 : 0;
        return StatusOk;
    }
    Status GetPort(std::int32_t index, IParallelPort*& port) noexcept override {
        port = index == 0 ? Cable : nullptr;
        return StatusOk;
    }
    IParallelPort* Cable = nullptr;
};

// Two sets of wires: TDI, TCK and TMS are bits 0 to 2 and 3 to 5 of the data register, TDO are bits
// 4 and 5 of the status register.
constexpr const char* FirstWires = "Mask_TDI=1\nMask_TCK=2\nMask_TMS=4\nMask_TDO=1000\n";
constexpr const char* SecondWires = "Mask_TDI=8\nMask_TCK=10\nMask_TMS=20\nMask_TDO=2000\n";

struct ParallelPort : ::testing::Test {
    ParallelPort() {
        using enum sim::PortRegister;
        sim::TBoard& board = Target.AddBoard();
        Cable.Connect({{Data, 1}, {Data, 2}, {Data, 0}, {Status, 4}}, board.ControllerChain());
        Cable.Connect({{Data, 4}, {Data, 5}, {Data, 3}, {Status, 5}}, board.MultiplexedLines());
        Knowledge.AddPart(sim::TBoardController::DefaultId & 0x0FFFFFFFU, "Lumaplate", 8);
        board.AddController(
            {"controller", sim::TBoardController::DefaultId, 8, BitText(), BitText()});
        AddTap(Target.HardChain(), IdA);
        AddTap(Target.HardChain(), IdB);
        AddTap(Target.SoftChain(), IdC);
        Manager.Cable = &Held;
    }

    // A board around the two sets of wires that proves itself by an id.
    void WriteBoard(const std::string& id) {
        const std::string hard = std::string("Multiplexed=1\n") + SecondWires;
        Folder.Write("board.JTGBRD", Head + "[BoardDetails]\nName=Board\nBoardId0=" + id +
                                         "\n[BoardChannel]\n" + FirstWires + "[HardChannel]\n" +
                                         hard + "[SoftChannel]\n" + hard +
                                         "ChannelAddress=1\nNextChannel=0\n");
    }
    // A bare cable whose hard chain is the second set.
    void WriteCable() { Folder.Write("a_cable.JTGBRD", Head + "[HardChannel]\n" + SecondWires); }
    void LoadPort() {
        Boards = std::make_unique<TJTagParallelPort_InstalledBoardTypes>(Folder.Path());
        Port = std::make_unique<TJtagParallelPort>(&Manager, *Boards, Context);
    }
    std::string Name() {
        return Utf8(Get<WideText>([&](auto& text) { return Port->GetName(text); }));
    }
    std::int32_t BoardInfo2() {
        return Get<std::int32_t>([&](auto& value) { return Port->GetBoardInfo2(value); });
    }

    const std::string Head = "[FileVersion]\nVersion=JTag Board File v1.0\n";
    TTempFolder Folder;
    sim::TTarget Target;
    THeldCable Held;
    sim::TParallelCable& Cable = Held.Cable;
    TFakeManager Manager;
    TRecordingHost Host;
    TFakeKnowledge Knowledge;
    TCoreContext Context{Host, &Knowledge, nullptr, nullptr, 4};
    std::unique_ptr<TJTagParallelPort_InstalledBoardTypes> Boards;
    std::unique_ptr<TJtagParallelPort> Port;
};

TEST_F(ParallelPort, FindsABoardByItsIdAndDrivesItsMultiplexer) {
    WriteBoard("0B8C0B01");
    WriteCable();
    LoadPort();
    EXPECT_EQ(Name(), "Parallel-Port");
    ASSERT_TRUE(Detect(*Port));
    EXPECT_EQ(Name(), "Parallel-Port (Address: 378)");
    EXPECT_EQ(Utf8(Get<WideText>([&](auto& text) { return Port->GetDescription(text); })),
              "Parallel-Port Cable found at address 378H.");
    EXPECT_EQ(BoardInfo2(), 0x1000);
    EXPECT_EQ(IdsOn(HardChain(*Port)), (std::vector<std::uint32_t>{IdA, IdB}));
    EXPECT_EQ(IdsOn(SoftChain(*Port)), std::vector<std::uint32_t>{IdC});
    TJTagChannel& soft = SoftChain(*Port);
    soft.DoLock();
    EXPECT_EQ(Target.Board()->Selection(), 1);
    soft.DoUnlock();
    EXPECT_EQ(Target.Board()->Selection(), 0);

    // The bits of the capture stand in order, and levels that stay are not written again.
    TJTagChannel& hard = HardChain(*Port);
    hard.DoLock();
    const std::uint64_t before = Cable.Accesses().DataWrites;
    BitText bits;
    hard.DoTapMove(TTapState::IDLE, TTapState::DRSHIFT);
    ASSERT_EQ(hard.ExchangeFill(0, 64, False32, bits), StatusOk);
    EXPECT_EQ(bits, NumberToBits(IdA, 32) + NumberToBits(IdB, 32));
    EXPECT_LE(Cable.Accesses().DataWrites - before, 2U * (3 + 64) + 3);
    hard.DoUnlock();
}

// At each clock TDO is read once, and the two edges of TCK cost a read and a write of the data
// register each; TMS and TDI stay.
TEST_F(ParallelPort, ReadsAnIdWith160Accesses) {
    WriteBoard("0B8C0B01");
    LoadPort();
    ASSERT_TRUE(Detect(*Port));
    TJTagChannel& hard = HardChain(*Port);
    hard.DoLock();
    hard.DoTapMove(TTapState::IDLE, TTapState::DRSHIFT);
    const sim::PortAccesses before = Cable.Accesses();
    std::uint32_t id = 0;
    ASSERT_EQ(hard.ExchangeNumber(0, 32, False32, id), StatusOk);
    EXPECT_EQ(id, IdB);
    EXPECT_EQ(Cable.Accesses().DataWrites - before.DataWrites, 64U);
    EXPECT_EQ(Cable.Accesses().DataReads - before.DataReads, 64U);
    EXPECT_EQ(Cable.Accesses().StatusReads - before.StatusReads, 32U);
    ASSERT_EQ(hard.SetTms(0), StatusOk);
    ASSERT_EQ(hard.WritePins(), StatusOk);
    EXPECT_EQ(Cable.Accesses().DataWrites - before.DataWrites, 64U) << "no level changed";
    hard.DoUnlock();
}

TEST_F(ParallelPort, TriesTheBoardFoundLastFirstUnlessASearchIsForced) {
    WriteBoard("01234567"); // costs a scan of the board chain each time it is tried
    WriteCable();
    LoadPort();
    const auto writesOfDetection = [&](Bool32 force) {
        const std::uint64_t before = Cable.Accesses().DataWrites;
        Bool32 found = False32;
        EXPECT_EQ(Port->Detect(force, found), StatusOk);
        EXPECT_EQ(found, True32);
        return Cable.Accesses().DataWrites - before;
    };
    const std::uint64_t search = writesOfDetection(False32);
    EXPECT_EQ(writesOfDetection(True32), search);
    EXPECT_LT(writesOfDetection(False32) * 3, search * 2);
}

TEST_F(ParallelPort, FallsBackToACableWithoutIds) {
    WriteBoard("01234567");
    WriteCable();
    LoadPort();
    EXPECT_EQ(Utf8(Get<WideText>([&](auto& text) { return Port->GetPortId(text); })), "378");
    EXPECT_EQ(IdsOn(HardChain(*Port)), (std::vector<std::uint32_t>{IdA, IdB}));
    EXPECT_EQ(BoardInfo2(), 0);

    Cable.SetFailure(StatusFromOsError(5));
    Bool32 found = True32;
    EXPECT_EQ(Port->Detect(False32, found), StatusFromOsError(5));
    EXPECT_EQ(HardChain(*Port).DeviceCount(), 0);
    EXPECT_EQ(Name(), "Parallel-Port");
    Cable.SetFailure(StatusOk);
    EXPECT_TRUE(Detect(*Port));
    EXPECT_EQ(HardChain(*Port).DeviceCount(), 2);

    Manager.Cable = nullptr;
    EXPECT_FALSE(Detect(*Port));
    EXPECT_EQ(Get<Bool32>([&](auto& b) { return Port->IsPresent(b); }), False32);
    EXPECT_EQ(Get<WideText>([&](auto& text) { return Port->GetPortId(text); }), u"");
}

TEST_F(ParallelPort, KeepsAReferenceOfThePortOnlyWhileAChannelIsOpen) {
    WriteBoard("0B8C0B01");
    WriteCable();
    LoadPort();
    ASSERT_TRUE(Detect(*Port));
    EXPECT_EQ(Held.Users, 0);
    SoftChain(*Port).DoLock();
    EXPECT_EQ(Held.Users, 1);
    SoftChain(*Port).DoUnlock();
    EXPECT_EQ(Held.Users, 0);
    EXPECT_EQ(Held.UnusedPrepares, 0);

    // Wherever in a search the port fails, nobody holds it afterwards.
    const std::uint64_t whole = Cable.Accesses().DataWrites;
    for (std::uint64_t failAt = 1; failAt < whole; failAt = failAt * 3 + 1) {
        Held.FailingWrite = Cable.Accesses().DataWrites + failAt;
        Bool32 found = True32;
        EXPECT_TRUE(Failed(Port->Detect(True32, found))) << failAt;
        EXPECT_EQ(Held.Users, 0) << failAt;
        Cable.SetFailure(StatusOk);
    }
}

} // namespace
} // namespace vorel::test
