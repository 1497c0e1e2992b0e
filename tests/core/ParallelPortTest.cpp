#include "core/BitVector.h"
#include "core/CoreRig.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <unistd.h>

namespace vorel::test {
namespace {

namespace fs = std::filesystem;

// A cable with two sets of wires: TDI, TCK and TMS are bits 0 to 2 and 3 to 5 of the data register,
// TDO are bits 4 and 5 of the status register.
class TFakeCable : public TNonRefCountedInterfacedObject<IParallelPort> {
public:
    TFakeCable(sim::IWireTarget& first, sim::IWireTarget& second) : Sets{&first, &second} {}

    std::int32_t AddRef() noexcept override { return ++Users; }
    std::int32_t Release() noexcept override { return --Users; }
    Status Prepare() noexcept override {
        UnusedPrepares += Users == 0 ? 1 : 0;
        return Result;
    }
    Status GetBaseAddress(std::uint32_t& address) noexcept override {
        address = 0x0378;
        return StatusOk;
    }
    Status IsXilinxCable(Bool32& present) noexcept override {
        present = False32;
        return StatusOk;
    }
    Status ReadData(std::uint8_t& value) noexcept override {
        value = Data;
        ++Reads;
        return Result;
    }
    Status WriteData(std::uint8_t value) noexcept override {
        Data = value;
        ++Writes;
        if (Writes == FailingWrite) {
            Result = StatusFromOsError(5);
        }
        for (sim::IWireTarget* set : Sets) {
            set->SetLines((value & 2U) != 0, (value & 4U) != 0, (value & 1U) != 0);
            value = static_cast<std::uint8_t>(value >> 3U);
        }
        return StatusOk;
    }
    Status PrepareStatusRead() noexcept override { return StatusOk; }
    Status ReadStatus(std::uint8_t& value) noexcept override {
        value = static_cast<std::uint8_t>((IsHigh(Sets[0]->Tdo()) ? 0x10U : 0U) |
                                          (IsHigh(Sets[1]->Tdo()) ? 0x20U : 0U));
        ++StatusReads;
        return StatusOk;
    }
    Status WriteControl(std::uint8_t, std::uint8_t) noexcept override { return StatusOk; }

    Status Result = StatusOk;
    int Writes = 0;
    int Reads = 0;
    int StatusReads = 0;
    int FailingWrite = -1; // the one from which on the port fails
    int Users = 0;
    int UnusedPrepares = 0;

private:
    sim::IWireTarget* Sets[2];
    std::uint8_t Data = 0xFF;
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

constexpr const char* FirstWires = "Mask_TDI=1\nMask_TCK=2\nMask_TMS=4\nMask_TDO=1000\n";
constexpr const char* SecondWires = "Mask_TDI=8\nMask_TCK=10\nMask_TMS=20\nMask_TDO=2000\n";

struct ParallelPort : ::testing::Test {
    ParallelPort() {
        fs::create_directories(Folder);
        Knowledge.AddPart(sim::TBoardController::DefaultId & 0x0FFFFFFFU, "Lumaplate", 8);
        Target.AddBoard().AddController(
            {"controller", sim::TBoardController::DefaultId, 8, BitText(), BitText()});
        AddTap(Target.HardChain(), IdA);
        AddTap(Target.HardChain(), IdB);
        AddTap(Target.SoftChain(), IdC);
        Manager.Cable = &Cable;
    }
    ~ParallelPort() override { fs::remove_all(Folder); }

    // A board around the two sets of wires that proves itself by an id.
    void WriteBoard(const std::string& id) {
        std::ofstream(Folder / "board.JTGBRD")
            << "[FileVersion]\nVersion=JTag Board File v1.0\n[BoardDetails]\nName=Board\nBoardId0="
            << id << "\n[BoardChannel]\n"
            << FirstWires << "[HardChannel]\nMultiplexed=1\n"
            << SecondWires << "[SoftChannel]\nMultiplexed=1\nChannelAddress=1\nNextChannel=0\n"
            << SecondWires;
    }
    // A bare cable whose hard chain is the second set.
    void WriteCable() {
        std::ofstream(Folder / "a_cable.JTGBRD")
            << "[FileVersion]\nVersion=JTag Board File v1.0\n[HardChannel]\n"
            << SecondWires;
    }
    void LoadPort() {
        Boards = std::make_unique<TJTagParallelPort_InstalledBoardTypes>(Folder);
        Port = std::make_unique<TJtagParallelPort>(&Manager, *Boards, Context);
    }
    std::string Name() {
        return Utf8(Get<WideText>([&](auto& text) { return Port->GetName(text); }));
    }
    std::int32_t BoardInfo2() {
        return Get<std::int32_t>([&](auto& value) { return Port->GetBoardInfo2(value); });
    }

    fs::path Folder = fs::temp_directory_path() / ("vorel_boards_" + std::to_string(getpid()));
    sim::TTarget Target;
    TFakeCable Cable{Target.AddBoard().ControllerChain(), Target.Board()->MultiplexedLines()};
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
    const int before = Cable.Writes;
    BitText bits;
    hard.DoTapMove(TTapState::IDLE, TTapState::DRSHIFT);
    ASSERT_EQ(hard.ExchangeFill(0, 64, False32, bits), StatusOk);
    EXPECT_EQ(bits, NumberToBits(IdA, 32) + NumberToBits(IdB, 32));
    EXPECT_LE(Cable.Writes - before, 2 * (3 + 64) + 3);
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
    const int writes = Cable.Writes;
    const int reads = Cable.Reads;
    const int statusReads = Cable.StatusReads;
    std::uint32_t id = 0;
    ASSERT_EQ(hard.ExchangeNumber(0, 32, False32, id), StatusOk);
    EXPECT_EQ(id, IdB);
    EXPECT_EQ(Cable.Writes - writes, 64);
    EXPECT_EQ(Cable.Reads - reads, 64);
    EXPECT_EQ(Cable.StatusReads - statusReads, 32);
    ASSERT_EQ(hard.SetTms(0), StatusOk);
    ASSERT_EQ(hard.WritePins(), StatusOk);
    EXPECT_EQ(Cable.Writes - writes, 64) << "no level changed";
    hard.DoUnlock();
}

TEST_F(ParallelPort, TriesTheBoardFoundLastFirstUnlessASearchIsForced) {
    WriteBoard("01234567"); // costs a scan of the board chain each time it is tried
    WriteCable();
    LoadPort();
    const auto writesOfDetection = [&](Bool32 force) {
        const int before = Cable.Writes;
        Bool32 found = False32;
        EXPECT_EQ(Port->Detect(force, found), StatusOk);
        EXPECT_EQ(found, True32);
        return Cable.Writes - before;
    };
    const int search = writesOfDetection(False32);
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

    Cable.Result = StatusFromOsError(5);
    Bool32 found = True32;
    EXPECT_EQ(Port->Detect(False32, found), StatusFromOsError(5));
    EXPECT_EQ(HardChain(*Port).DeviceCount(), 0);
    EXPECT_EQ(Name(), "Parallel-Port");
    Cable.Result = StatusOk;
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
    EXPECT_EQ(Cable.Users, 0);
    SoftChain(*Port).DoLock();
    EXPECT_EQ(Cable.Users, 1);
    SoftChain(*Port).DoUnlock();
    EXPECT_EQ(Cable.Users, 0);
    EXPECT_EQ(Cable.UnusedPrepares, 0);

    // Wherever in a search the port fails, nobody holds it afterwards.
    const int whole = Cable.Writes;
    for (int failAt = 1; failAt < whole; failAt = failAt * 3 + 1) {
        Cable.FailingWrite = Cable.Writes + failAt;
        Bool32 found = True32;
        EXPECT_TRUE(Failed(Port->Detect(True32, found))) << failAt;
        EXPECT_EQ(Cable.Users, 0) << failAt;
        Cable.Result = StatusOk;
    }
}

} // namespace
} // namespace vorel::test
