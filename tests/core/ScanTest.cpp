#include "core/CoreRig.h"

#include <gtest/gtest.h>

namespace vorel::test {
namespace {

using sim::UsbFault;
using sim::UsbTransfer;
using sim::WireFault;
using TIds = std::vector<std::uint32_t>;

struct TBareRig : TRig {
    sim::TSimPod& Pod = AddPod();
    sim::TChain& Wires = Pod.Target()->HardChain();
};

TEST(Scan, FindsDevicesNearestTdiFirstInFewTransfers) {
    TBareRig rig;
    AddTap(rig.Wires, IdA, 5);
    AddTap(rig.Wires, 0xF0000000 | IdB, 8);            // a version that does not count
    AddTap(rig.Wires, 0xF0000000 | (110U << 1U) | 1U); // and one that does
    const TIds expected{IdA, IdB, 0xF00000DD};
    IJTagPort& port = rig.Port(1);
    ASSERT_TRUE(Detect(port));
    EXPECT_EQ(IdsOn(HardChain(port)), expected);
    EXPECT_EQ(Utf8(Get<WideText>([&](auto& t) { return HardChain(port).GetIdText(t); })),
              "0111109302222093F00000DD");

    rig.Pod.Counters() = {};
    ASSERT_EQ(HardChain(port).Scan(), StatusOk);
    EXPECT_EQ(IdsOn(HardChain(port)), expected);
    EXPECT_LE(rig.Pod.Counters().Writes, 16U);
    EXPECT_LE(rig.Pod.Counters().Reads, 8U);
    EXPECT_EQ(rig.Pod.Firmware()->State().ClocksOutsideSession, 0U);
    EXPECT_FALSE(rig.Pod.Firmware()->State().Session);
}

TEST(Scan, ChainsThatCannotBeCountedHaveNoDevices) {
    struct TCase {
        const char* Name;
        int Devices;
        WireFault Fault;
        std::int32_t Count;
    };
    const TCase cases[] = {
        {"empty", 0, WireFault::None, 0},         {"one", 1, WireFault::None, 1},
        {"stuck low", 2, WireFault::StuckLow, 0}, {"stuck high", 2, WireFault::StuckHigh, 0},
        {"looped", 2, WireFault::Loop, 0},        {"longest", 910, WireFault::None, 910},
        {"one more", 911, WireFault::None, 0},    {"too long", 1000, WireFault::None, 0}};
    for (const TCase& test : cases) {
        SCOPED_TRACE(test.Name);
        TBareRig rig;
        for (int i = 0; i < test.Devices; ++i) {
            AddTap(rig.Wires, IdA);
        }
        rig.Wires.SetTdoFault(test.Fault);
        IJTagPort& port = rig.Port(1);
        EXPECT_EQ(Detect(port), test.Count != 0);
        TJTagChannel& channel = HardChain(port);
        EXPECT_EQ(channel.DeviceCount(), test.Count);

        // Counting leaves the devices where the tracker says: in Run-Test/Idle.
        channel.DoLock();
        EXPECT_EQ(Get<std::int32_t>([&](auto& n) { return channel.GetChainLength(n); }),
                  test.Count);
        EXPECT_EQ(Get<std::int32_t>([&](auto& s) { return channel.GetTapState(s); }),
                  static_cast<std::int32_t>(TTapState::IDLE));
        channel.DoRefresh();
        if (test.Devices > 0) {
            EXPECT_EQ(rig.Wires.Device(0).State(), sim::TapState::RunTestIdle);
        }
        channel.DoUnlock();
    }
}

TEST(Scan, DevicesKeepTheirObjects) {
    TBareRig rig;
    AddTap(rig.Wires, IdA);
    AddTap(rig.Wires, IdB);
    AddTap(rig.Wires, IdA);
    IJTagPort& port = rig.Port(1);
    ASSERT_TRUE(Detect(port));
    TJTagChannel& channel = HardChain(port);
    std::vector<TJTagDevice*> before;
    for (const auto& device : channel.ChainDevices()) {
        before.push_back(device.get());
    }
    const auto same = [&] {
        for (std::size_t i = 0; i < before.size(); ++i) {
            EXPECT_EQ(channel.ChainDevices().at(i).get(), before[i]) << i;
        }
    };
    ASSERT_EQ(channel.Scan(), StatusOk);
    same();

    rig.Wires.SetTdoFault(WireFault::StuckLow);
    EXPECT_FALSE(Detect(port));
    EXPECT_EQ(channel.DeviceCount(), 0);
    EXPECT_EQ(channel.RetiredChainDevices().size(), 3U);
    EXPECT_EQ(Get<std::int32_t>([&](auto& i) { return before[1]->GetChainIndex(i); }), -1);

    rig.Wires.SetTdoFault(WireFault::None);
    ASSERT_TRUE(Detect(port));
    same();
    EXPECT_TRUE(channel.RetiredChainDevices().empty());
}

TEST(Scan, ChoosesAmongTheNamesOfAnId) {
    struct TCase {
        std::vector<std::string> Names;
        std::string Chosen;
        std::int32_t IrLength;
    };
    const TCase cases[] = {{{}, "Unknown", 4},
                           {{"GenericDevice"}, "GenericDevice", 4},
                           {{"P5", "P6"}, "P6", 6},
                           {{"P5", "GenericDevice", "FamilyOnly"}, "P5", 5},
                           {{"GenericDevice", "NoDriver"}, "NoDriver", 4},
                           {{"Huge"}, "Huge", 4}};
    for (const TCase& test : cases) {
        TBareRig rig;
        rig.Knowledge.AddPart(0, "GenericDevice").Family = "generic";
        rig.Knowledge.AddPart(0, "FamilyOnly", 9).Family = "Generic";
        rig.Knowledge.AddPart(0, "P5", 5);
        rig.Knowledge.AddPart(0, "P6", 6);
        rig.Knowledge.AddPart(0, "Huge", 2'000'000'000);
        rig.Knowledge.Names[IdA] = test.Names;
        AddTap(rig.Wires, IdA);
        IJTagPort& port = rig.Port(1);
        ASSERT_TRUE(Detect(port));
        TJTagDevice& device = *HardChain(port).ChainDevices().at(0);
        EXPECT_EQ(device.PartName(), test.Chosen);
        EXPECT_EQ(device.IrLengthNow(), test.IrLength) << test.Chosen;
    }
}

// Pulls the pod out at the n-th transfer of a detection, for every n there is, then puts it back.
TEST(Scan, SurvivesAPodThatGoesAtAnyTransfer) {
    for (const UsbTransfer kind : {UsbTransfer::Write, UsbTransfer::Read, UsbTransfer::Control}) {
        bool reached = true;
        for (std::uint64_t n = 1; reached; ++n) {
            TBareRig rig;
            AddTap(rig.Wires, IdA);
            AddTap(rig.Wires, IdB);
            IJTagPort& port = rig.Port(1);
            rig.Pod.Counters() = {};
            rig.Pod.Faults().Add({UsbFault::Effect::Unplug, kind, n, false, 0});
            Bool32 found = False32;
            const Status status = port.Detect(True32, found);
            reached = !rig.Pod.IsPlugged();
            TJTagChannel& channel = HardChain(port);
            if (reached) {
                // Only the last transfer of all may still let it succeed.
                const bool succeeded = Succeeded(status) && found != False32;
                EXPECT_EQ(channel.DeviceCount(), succeeded ? 2 : 0) << n;
                EXPECT_EQ(Get<Bool32>([&](auto& b) { return port.IsPresent(b); }), False32);
                rig.Pod.Plug();
            }
            rig.Pod.Faults().Clear();
            ASSERT_TRUE(Detect(rig.Port(1))) << n;
            EXPECT_EQ(IdsOn(channel), (TIds{IdA, IdB})) << n;
            EXPECT_FALSE(rig.Pod.Firmware()->State().Session) << n;
            EXPECT_EQ(rig.Pod.Firmware()->State().TimingA, 0) << n;
            ASSERT_LT(n, 1000U);
        }
    }
}

TEST(Scan, AnswersThatComeLateOrShortDoNotBreakTheNextScan) {
    const UsbFault::Effect effects[] = {UsbFault::Effect::Short, UsbFault::Effect::TimeOut,
                                        UsbFault::Effect::Fail, UsbFault::Effect::Drop};
    for (const UsbFault::Effect effect : effects) {
        for (const bool onwards : {false, true}) {
            SCOPED_TRACE(static_cast<int>(effect) * 2 + (onwards ? 1 : 0));
            TBareRig rig;
            AddTap(rig.Wires, IdA);
            IJTagPort& port = rig.Port(1);
            rig.Pod.Faults().Add({effect, UsbTransfer::Read, 1, onwards, 1});
            Bool32 found = False32;
            static_cast<void>(port.Detect(False32, found));
            rig.Pod.Faults().Clear();
            ASSERT_TRUE(Detect(rig.Port(1)));
            EXPECT_EQ(IdsOn(HardChain(port)), TIds{IdA});
        }
    }
}

} // namespace
} // namespace vorel::test
