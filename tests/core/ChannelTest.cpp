#include "core/BitVector.h"
#include "core/ChainScan.h"
#include "core/CoreRig.h"
#include "knowledge/Manage_GenericDevices.h"
#include "knowledge/TempFolder.h"

#include <gtest/gtest.h>

namespace vorel::test {
namespace {

TEST(BitVector, NumbersAndTexts) {
    EXPECT_EQ(NumberToBits(5, 4), "0101");
    EXPECT_EQ(NumberToBits(0xFFFFFFFF, 34), "00" + BitText(32, '1'));
    EXPECT_EQ(NumberToBits(6, 2), "10");
    EXPECT_EQ(NumberToBits(1, -3), "");
    EXPECT_EQ(BitsToNumber("110"), 6U);
    EXPECT_EQ(BitsToNumber("11" + BitText(31, '0') + "1"), 1U);
}

// Three devices of 3, 8 and 5 instruction bits behind a bare pod, detected and locked.
struct TChainRig : TRig {
    TChainRig() {
        AddDevice(IdA, 3);
        AddDevice(IdB, 8);
        AddDevice(IdC, 5);
        EXPECT_TRUE(Detect(Port(1)));
        Channel.DoLock();
        Pod.Counters() = {};
    }
    void AddDevice(std::uint32_t id, unsigned irBits) {
        Knowledge.AddPart(id, "part" + std::to_string(irBits), static_cast<std::int32_t>(irBits));
        AddTap(Wires, id, irBits);
    }
    // The instructions in effect once what was collected has reached the devices.
    std::vector<BitText> Instructions() {
        Channel.DoRefresh();
        return {Wires.Device(0).Instruction(), Wires.Device(1).Instruction(),
                Wires.Device(2).Instruction()};
    }

    sim::TSimPod& Pod = AddPod();
    sim::TChain& Wires = Pod.Target()->HardChain();
    TJTagChannel& Channel = HardChain(Port(1));
};

TEST(Channel, OpensOnceAndClosesOnce) {
    TRig rig;
    sim::TSimPod& pod = rig.AddPod();
    TJTagChannel& channel = HardChain(rig.Port(1));
    rig.Ports.SetJTagTicks(7);
    Bool32 locked = False32;
    EXPECT_EQ(channel.Lock(locked), StatusOk);
    EXPECT_EQ(locked, True32);
    EXPECT_EQ(channel.Lock(locked), StatusOk);
    EXPECT_EQ(pod.Firmware()->State().TimingB, 7);
    for (int i = 0; i < 3; ++i) {
        EXPECT_TRUE(pod.Firmware()->State().Session == (i < 2)) << i;
        EXPECT_EQ(channel.Unlock(), StatusOk);
    }
    EXPECT_EQ(pod.Firmware()->State().Sessions, 1U);
    EXPECT_EQ(pod.Firmware()->State().TimingB, 0);

    pod.Unplug();
    EXPECT_TRUE(Failed(channel.Lock(locked)));
    EXPECT_EQ(locked, False32);
    pod.Plug();
    rig.Ports.ScanJTagPorts();
    EXPECT_EQ(channel.Lock(locked), StatusOk);
    EXPECT_EQ(pod.Firmware()->State().Session, true);
    EXPECT_EQ(channel.Unlock(), StatusOk);
    EXPECT_EQ(pod.Firmware()->State().Session, false);
}

TEST(Channel, ScansReachOneDeviceAndBypassTheOthers) {
    TChainRig rig;
    std::uint32_t number = 0;
    ASSERT_EQ(rig.Channel.ScanIrExchange(0x5A5, 1, number), StatusOk);
    EXPECT_EQ(number, 1U); // what Capture-IR loads
    EXPECT_EQ(rig.Instructions(), (std::vector<BitText>{"111", "10100101", "11111"}));
    ASSERT_EQ(rig.Channel.ScanIrWrite(1, 2), StatusOk);
    EXPECT_EQ(rig.Instructions(), (std::vector<BitText>{"111", "11111111", "00001"}));
    for (std::int32_t device = 0; device < 3; ++device) {
        constexpr std::uint32_t ids[] = {IdA, IdB, IdC};
        ASSERT_EQ(rig.Channel.ScanIrWrite(1, device), StatusOk);
        ASSERT_EQ(rig.Channel.ScanDrExchange(0, 32, device, number), StatusOk);
        EXPECT_EQ(number, ids[device]);
    }
    BitText bits;
    ASSERT_EQ(rig.Channel.ScanIrFill(1, 0, bits), StatusOk);
    EXPECT_EQ(bits, "001");
    // All in BYPASS now. Device 1 gives its own bit, then those that were before it: that of
    // device 0 and the zero that filled device 2.
    rig.Channel.DoTapMove(TTapState::IDLE, TTapState::DRSHIFT);
    ASSERT_EQ(rig.Channel.ExchangeDrText("1011001", 1, bits), StatusOk);
    EXPECT_EQ(bits, "1001000");
    rig.Channel.DoTapMove(TTapState::DREXIT1, TTapState::IDLE);
    ASSERT_EQ(rig.Channel.ScanDrFill(1, 9, 1, bits), StatusOk);
    EXPECT_EQ(bits, "111111000");

    rig.Channel.DoRefresh();
    const std::uint64_t clocks = rig.Wires.ClockCount();
    for (const std::int32_t device : {-1, 3}) {
        EXPECT_EQ(rig.Channel.ScanIrWrite(1, device), StatusOk);
        EXPECT_EQ(rig.Channel.ScanDrExchange(1, 8, device, number), StatusOk);
        EXPECT_EQ(number, 0U);
    }
    EXPECT_EQ(rig.Channel.ExchangeText("", True32, bits), StatusOk);
    rig.Channel.DoRefresh();
    EXPECT_EQ(rig.Wires.ClockCount(), clocks);
    EXPECT_EQ(rig.Wires.Device(0).State(), sim::TapState::RunTestIdle);
}

// A device that no driver knows, with 10 instruction bits, between two that are known.
TEST(Channel, ReachesBehindAnUnknownDeviceOnceTheUserGivesItsLength) {
    TTempFolder folder;
    const std::string mapping = "[JTAGMapping1]\nIdCode=02222093\nInstructionLength=10\n"
                                "UseInstructionLength=1\n";
    for (const bool isMapped : {false, true}) {
        Ref<TGenericDeviceManager> generics(new TGenericDeviceManager(
            folder.Write("BSDL_FileMap.txt", isMapped ? mapping : ""), nullptr));
        TRig rig;
        rig.Context.Generic = generics.Get();
        rig.Knowledge.AddPart(IdA, "Near", 3);
        rig.Knowledge.AddPart(IdB, "GenericDevice").Family = "Generic";
        rig.Knowledge.AddPart(IdC, "Far", 5);
        sim::TChain& wires = rig.AddPod().Target()->HardChain();
        AddTap(wires, IdA, 3);
        AddTap(wires, IdB, 10);
        AddTap(wires, IdC, 5);
        ASSERT_TRUE(Detect(rig.Port(1)));
        TJTagChannel& channel = HardChain(rig.Port(1));
        EXPECT_EQ(channel.ChainDevices().at(1)->IrLengthNow(), isMapped ? 10 : 4);
        channel.DoLock();
        std::uint32_t id = 0;
        ASSERT_EQ(channel.ScanIrWrite(1, 2), StatusOk);
        ASSERT_EQ(channel.ScanDrExchange(0, 32, 2, id), StatusOk);
        EXPECT_EQ(id == IdC, isMapped) << std::hex << id;
        channel.DoRefresh();
        EXPECT_EQ(wires.Device(2).Instruction() == "00001", isMapped);
        EXPECT_EQ(wires.Device(1).Instruction() == "1111111111", isMapped);
        channel.DoUnlock();
    }
}

TEST(Channel, LongShiftsFillTheBatches) {
    TChainRig rig;
    TChainScan(rig.Channel).SetAllBypass();
    rig.Channel.DoTapMove(TTapState::IDLE, TTapState::DRSHIFT);
    rig.Channel.DoRefresh();
    rig.Pod.Counters() = {};
    const std::uint64_t before = rig.Wires.ClockCount();
    BitText sent;
    for (unsigned i = 0; i < 102'000; ++i) {
        sent.push_back((i * i >> 3U & 1U) != 0 ? '1' : '0');
    }
    BitText received;
    ASSERT_EQ(rig.Channel.ExchangeText(sent, False32, received), StatusOk);
    EXPECT_EQ(received, sent.substr(3) + "000");
    EXPECT_EQ(rig.Wires.ClockCount() - before, 102'000U);
    EXPECT_LE(rig.Pod.Counters().Writes, 102'000 / 1020 + 1U);

    rig.Pod.Counters() = {};
    const BitText longer(1'020'000, '1');
    ASSERT_EQ(rig.Channel.ShiftOutText(longer, True32), StatusOk);
    EXPECT_LE(rig.Pod.Counters().Writes, 1000U) << "each batch carries 1,020 clocks";
    EXPECT_EQ(rig.Pod.Counters().Reads, 0U);
    EXPECT_EQ(Get<std::int32_t>([&](auto& s) { return rig.Channel.GetTapState(s); }),
              static_cast<std::int32_t>(TTapState::DREXIT1));
}

TEST(Channel, TransferFailuresComeBackAsStatusAndLeaveTheReadClosed) {
    TChainRig rig;
    BitText bits = "11";
    rig.Pod.Unplug();
    EXPECT_TRUE(Failed(rig.Channel.ExchangeText(BitText(5000, '1'), False32, bits)));
    EXPECT_EQ(bits, "");
    EXPECT_TRUE(Failed(rig.Channel.ReadTdo()));
    EXPECT_TRUE(Failed(rig.Channel.Unlock()));
    EXPECT_EQ(rig.Channel.Unlock(), StatusOk);
    rig.Pod.Plug();
    ASSERT_TRUE(Detect(rig.Port(1)));
    rig.Channel.DoLock();
    rig.Pod.Counters() = {};
    rig.Channel.DoClock(false);
    rig.Channel.DoRefresh();
    EXPECT_EQ(rig.Pod.Firmware()->AnswerBytes(), 0U); // a read left open would ask for one
}

TEST(Channel, RunsWithoutPod) {
    TRig rig;
    TJTagChannel_UsbPort channel({"Hard-Devices", 0, true}, dynamic_cast<TJtagPort&>(rig.Port(0)),
                                 nullptr, nullptr, rig.Context);
    ASSERT_EQ(channel.Scan(), StatusOk);
    EXPECT_EQ(channel.DeviceCount(), 0);
    BitText bits;
    ASSERT_EQ(channel.ExchangeFill(1, 5, False32, bits), StatusOk);
    EXPECT_EQ(bits, "00000");
    std::uint8_t byte = 0xFF;
    ASSERT_EQ(channel.SpiExchangeByte(0xA5, byte), StatusOk);
    EXPECT_EQ(byte, 0);
}

} // namespace
} // namespace vorel::test
