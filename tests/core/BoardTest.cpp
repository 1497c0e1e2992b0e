#include "core/CoreRig.h"

#include "simulator/SpiMemory.h"

#include <gtest/gtest.h>

namespace vorel::test {
namespace {

// A board with one controller, one device on each chain and SPI memories as devices 0 and 3.
struct TBoardRig : TRig {
    TBoardRig() {
        Knowledge.AddPart(sim::TBoardController::DefaultId & 0x0FFFFFFFU, "Lumaplate LP-1", 8);
        sim::TTarget& target = *Pod.Target();
        Controller = &target.Board()->AddController(
            {"controller", sim::TBoardController::DefaultId, 8, BitText(), BitText()});
        AddTap(target.HardChain(), IdA);
        AddTap(target.SoftChain(), IdB);
        for (const std::size_t number : {0U, 3U}) {
            target.Board()->SetSpiDevice(
                number, std::make_unique<sim::TSpiMemory>("flash", 0xC22010U + number));
        }
    }
    unsigned Selection() const { return Pod.Target()->Board()->Selection(); }

    sim::TSimPod& Pod = AddPod("1", true);
    sim::TBoardController* Controller = nullptr;
    IJTagPort& BoardPort = Port(1);
    IJTagBitBus& Bus = *Get<IJTagBitBus*>([&](auto& bus) { return BoardPort.GetSpiChain(bus); });
};

TEST(Board, DetectionGoesThroughTheMultiplexer) {
    TBoardRig rig;
    ASSERT_TRUE(Detect(rig.BoardPort));
    EXPECT_EQ(IdsOn(HardChain(rig.BoardPort)), std::vector<std::uint32_t>{IdA});
    EXPECT_EQ(IdsOn(SoftChain(rig.BoardPort)), std::vector<std::uint32_t>{IdB});
    EXPECT_EQ(rig.Selection(), 0U);

    // A chain is selected when it opens, and only when another one was.
    const std::uint64_t writes = rig.Controller->WriteCount();
    TJTagChannel& soft = SoftChain(rig.BoardPort);
    for (int i = 0; i < 2; ++i) {
        soft.DoLock();
        EXPECT_EQ(rig.Selection(), 1U);
        std::uint32_t id = 0;
        ASSERT_EQ(soft.ScanDrExchange(0, 32, 0, id), StatusOk);
        EXPECT_EQ(id, IdB);
        soft.DoUnlock();
    }
    EXPECT_EQ(rig.Controller->WriteCount(), writes + 1);
    ASSERT_EQ(soft.Scan(), StatusOk);
    EXPECT_EQ(rig.Controller->WriteCount(), writes + 2);
}

TEST(Board, AnUnknownControllerIsNoBoard) {
    TBoardRig rig;
    rig.Knowledge.Names.clear();
    ASSERT_TRUE(Detect(rig.BoardPort));
    EXPECT_EQ(rig.Pod.Firmware()->State().Mode, 1);
    IJTagChannel& board =
        *Get<IJTagChannel*>([&](auto& chain) { return rig.BoardPort.GetBoardChain(chain); });
    EXPECT_EQ(Get<std::int32_t>([&](auto& n) { return board.GetDeviceCount(n); }), 0);
    EXPECT_EQ(IdsOn(HardChain(rig.BoardPort)), std::vector<std::uint32_t>{IdA});
}

TEST(Board, SelectingAnSpiUnitWaitsUntilItIsReady) {
    TBoardRig rig;
    ASSERT_TRUE(Detect(rig.BoardPort));
    Check(rig.Bus.Lock(*std::make_unique<Bool32>()), "locking the bus");
    for (const unsigned busy : {0U, 99U, 100U}) {
        rig.Controller->SetBusyReads(busy);
        const bool ready =
            Get<Bool32>([&](auto& r) { return rig.Bus.SelectSpiUnit(0, 35, r); }) != False32;
        EXPECT_EQ(ready, busy < 100) << busy;
        EXPECT_EQ(rig.Selection(), 3U * 4 + 2);
    }
    Check(rig.Bus.Unlock(), "unlocking the bus");
    EXPECT_EQ(rig.Selection(), 0U);
    EXPECT_EQ(rig.Pod.Firmware()->State().Session, false);
}

TEST(Board, SpiBytesOfThePodAgreeWithTheBitsOnTheBus) {
    TBoardRig rig;
    ASSERT_TRUE(Detect(rig.BoardPort));
    Check(rig.Bus.Lock(*std::make_unique<Bool32>()), "locking the bus");
    EXPECT_EQ(rig.Pod.Firmware()->State().TimingA, 50);
    ASSERT_NE(Get<Bool32>([&](auto& r) { return rig.Bus.SelectSpiUnit(0, 3, r); }), False32);
    const auto select = [&](bool on) { Check(rig.Bus.SetTms(on ? 0 : 1), "selecting"); };
    auto& channel = dynamic_cast<TJTagChannel&>(rig.Bus);

    select(false);
    select(true);
    const std::vector<std::uint8_t> command{0x9F, 0, 0, 0};
    std::vector<std::uint8_t> block = command;
    rig.Pod.Counters() = {};
    ASSERT_EQ(rig.Bus.SpiExchangeBlock(block.data(), 4), StatusOk);
    EXPECT_EQ(rig.Pod.Counters().Reads, 1U);
    EXPECT_EQ(std::vector<std::uint8_t>(block.begin() + 1, block.end()),
              (std::vector<std::uint8_t>{0xC2, 0x20, 0x13}));
    select(false);

    // The same command byte by byte, and with each bit sampled on its own.
    for (const bool single : {false, true}) {
        select(true);
        std::vector<std::uint8_t> id;
        id.reserve(command.size());
        for (const std::uint8_t sent : command) {
            id.push_back(single ? channel.TJTagChannel::DoSpiExchangeByte(sent)
                                : channel.DoSpiExchangeByte(sent));
        }
        id.erase(id.begin());
        EXPECT_EQ(id, (std::vector<std::uint8_t>{0xC2, 0x20, 0x13})) << single;
        select(false);
    }

    auto& memory = dynamic_cast<sim::TSpiMemory&>(*rig.Pod.Target()->Board()->SpiDevice(3));
    memory.Contents()[0x1234] = 0x5A;
    select(true);
    ASSERT_EQ(rig.Bus.SpiWrite32(0x03001234), StatusOk);
    EXPECT_EQ(Get<std::uint8_t>([&](auto& b) { return rig.Bus.SpiExchangeByte(0, b); }), 0x5A);
    select(false);
    select(true);
    ASSERT_EQ(rig.Bus.SpiWriteByte(0x03), StatusOk);
    ASSERT_EQ(rig.Bus.SpiWrite24(0xFF001234), StatusOk);
    EXPECT_EQ(Get<std::uint8_t>([&](auto& b) { return rig.Bus.SpiExchangeByte(0, b); }), 0x5A);
    Check(rig.Bus.Unlock(), "unlocking the bus");
}

} // namespace
} // namespace vorel::test
