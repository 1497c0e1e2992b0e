#include "core/CoreRig.h"

#include <gtest/gtest.h>

namespace vorel::test {
namespace {

std::int32_t CountOf(TRig& rig) {
    return Get<std::int32_t>([&](auto& n) { return rig.Ports.GetJTagPortCount(n); });
}

TEST(PortList, KeepsPortsOfPodsThatAreGone) {
    TRig rig;
    EXPECT_EQ(CountOf(rig), 0);
    IJTagPort& parallel = rig.Port(0);
    EXPECT_EQ(CountOf(rig), 1);
    EXPECT_NE(QueryFor<IJTagParallelPort>(&parallel), nullptr);
    EXPECT_EQ(QueryFor<IJTagUsbPort>(&parallel), nullptr);

    rig.AddPod("A1");
    sim::TSimPod& second = rig.AddPod("B2");
    IJTagPort* third = &rig.Port(2);
    EXPECT_EQ(CountOf(rig), 3);
    EXPECT_NE(QueryFor<IJTagUsbPort>(third), nullptr);
    EXPECT_EQ(QueryFor<IJTagPort>(third), third);
    second.Unplug();
    EXPECT_EQ(&rig.Port(2), third);
    EXPECT_EQ(CountOf(rig), 2);
    second.Plug();
    EXPECT_EQ(&rig.Port(2), third);
    EXPECT_EQ(CountOf(rig), 3);
    EXPECT_EQ(rig.Ports.ReleaseJTagPorts(), StatusOk);
    EXPECT_EQ(rig.Usb.OpenHandleCount(), 0U);

    IJTagPort* none = third;
    EXPECT_EQ(rig.Ports.GetJTagPort(3, none), StatusOk);
    EXPECT_EQ(none, nullptr);
    EXPECT_TRUE(Failed(rig.Ports.GetJTagPort(-1, none)));
}

TEST(PortList, TakesTicksFrom1To255) {
    TRig rig;
    for (const auto& [ticks, kept] :
         {std::pair{255, 255}, {0, 255}, {256, 255}, {-4, 255}, {1, 1}}) {
        EXPECT_EQ(rig.Ports.SetJTagTicks(ticks), StatusOk);
        EXPECT_EQ(rig.Context.TicksPerClock, kept) << ticks;
    }
}

TEST(UsbPort, TextsAndPresence) {
    TRig rig;
    sim::TSimPod& pod = rig.AddPod("7\u00E9\u4E2D");
    IJTagPort& port = rig.Port(1);
    const auto id = Get<WideText>([&](auto& t) { return port.GetPortId(t); });
    EXPECT_EQ(Utf8(id).substr(0, 1), "7");
    EXPECT_EQ(Utf8(Get<WideText>([&](auto& t) { return port.GetName(t); })),
              "Virtual pod (ID: " + Utf8(id) + ")");
    EXPECT_EQ(Utf8(Get<WideText>([&](auto& t) { return port.GetDescription(t); })),
              "USB JTAG Cable found at address 0.");
    const auto connected = [&] {
        return Get<Bool32>([&](auto& b) { return port.IsConnected(b); });
    };
    EXPECT_EQ(connected(), False32);
    EXPECT_EQ(Get<Bool32>([&](auto& b) { return port.IsPresent(b); }), True32);
    pod.Unplug();
    EXPECT_EQ(connected(), True32);
    EXPECT_EQ(Get<Bool32>([&](auto& b) { return port.IsPresent(b); }), False32);
    EXPECT_EQ(connected(), False32);
    EXPECT_EQ(Get<std::int32_t>([&](auto& n) { return port.GetBoardInfo1(n); }), 0);
}

} // namespace
} // namespace vorel::test
