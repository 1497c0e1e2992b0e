#include "platform/LibusbServices.h"

#include "platform/EmulatedPod.h"
#include "transport/Manage_UsbJtag.h"

#include <gmock/gmock.h>
#include <linux/capability.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace vorel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

// Root may open everything, unless this thread gives up that right for a while.
class TOrdinaryUser {
public:
    TOrdinaryUser() {
        syscall(SYS_capget, &Header, Old);
        __user_cap_data_struct reduced[2] = {Old[0], Old[1]};
        reduced[0].effective &= ~((1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH));
        syscall(SYS_capset, &Header, reduced);
    }
    TOrdinaryUser(const TOrdinaryUser&) = delete;
    TOrdinaryUser& operator=(const TOrdinaryUser&) = delete;
    ~TOrdinaryUser() { syscall(SYS_capset, &Header, Old); }

private:
    __user_cap_header_struct Header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct Old[2]{};
};

struct Libusb : testing::Test {
    UMockdevTestbed* Testbed = nullptr;
    std::unique_ptr<TEmulatedPod> First, Second;
    TLibusbServices Usb;
    UsbDevice* Device = nullptr;
    UsbRequest* Request = nullptr;
    std::uint32_t Count = 0; // of bytes, of the last result

    void SetUp() override {
        Testbed = umockdev_testbed_new();
        if (!umockdev_in_mock_environment()) {
            GTEST_SKIP() << "skipped: libumockdev-preload.so.0 is not in LD_PRELOAD";
        }
        First = std::make_unique<TEmulatedPod>(Testbed, 1, 0x0100);
        Second = std::make_unique<TEmulatedPod>(Testbed, 2, 0x0200, 0);
    }
    void TearDown() override {
        Usb.CloseDevice(Device);
        First.reset();
        Second.reset();
        g_clear_object(&Testbed);
    }

    // The first pod, configured, with an endpoint bound.
    void OpenFirst(std::uint8_t endpoint) {
        ASSERT_EQ(Usb.OpenDevice("\\\\.\\USBIO_Device0", Device), UsbError::None);
        Request = Usb.CreateRequest();
        const std::uint8_t configuration[260] = {0, 0, 1, 0};
        EXPECT_EQ(Control(UsbControl::BindPipe, &endpoint, 1), UsbError::InvalidParameter);
        ASSERT_EQ(Control(UsbControl::SetConfiguration, configuration, 260), UsbError::None);
        ASSERT_EQ(Control(UsbControl::BindPipe, &endpoint, 1), UsbError::None);
    }
    std::uint32_t Control(std::uint32_t code, const void* input, std::uint32_t size) {
        return Usb.Control(Device, code, input, size, nullptr, 0, Request);
    }
    std::uint32_t Result() { return Usb.GetResult(Device, Request, Count, true); }
};

TEST_F(Libusb, PodsAreFoundNamedAndClockedThroughTheManager) {
    TUsbJtagManager manager(Usb, [] { return std::string(); });
    EXPECT_EQ(manager.CountPods(), 2);
    EXPECT_TRUE(Usb.GetRefusedDevices().empty());
    for (int index = 0; index < 2; ++index) {
        TUsbPort& port = manager.GetPort(index);
        EXPECT_TRUE(port.IsReady());
        EXPECT_EQ(port.ProductName(), u"Pod");
        EXPECT_EQ(port.SerialNumber(), u"0815");
        std::string text;
        port.BeginRead();
        for (int i = 0; i < 3; ++i) {
            port.Clock(false, false, false, true);
        }
        EXPECT_TRUE(port.EndRead(text));
        EXPECT_EQ(text, "101");
    }
    manager.Release();
    EXPECT_THAT(First->TakeEvents(), ElementsAre("claim 0", "out 4", "out 4", "release 0"));
    EXPECT_THAT(Second->TakeEvents(),
                ElementsAre("config 1", "claim 0", "out 4", "out 4", "release 0"))
        << "a configuration is set only where it is not the present one";
    EXPECT_TRUE(manager.GetPort(1).IsReady()) << "by number, without a list";
}

TEST_F(Libusb, StringsAreAskedForInTheDevicesLanguageWhenNeeded) {
    TUsbJtagManager manager(Usb, [] { return std::string(); });
    ASSERT_EQ(manager.CountPods(), 2);
    First->Behaviour.WantsLanguage = true;
    EXPECT_EQ(manager.GetPort(0).ProductName(), u"Pod");
    First->Behaviour.StallsStrings = true;
    EXPECT_EQ(manager.GetPort(0).ProductName(), u"");
}

TEST_F(Libusb, AReadRunsOutOfTimeAndIsCancelled) {
    OpenFirst(0x86);
    char data[512];
    EXPECT_EQ(Usb.Read(Device, data, 512, Request), UsbError::Pending);
    EXPECT_EQ(Usb.Read(Device, data, 512, Request), UsbError::InvalidParameter) << "in use";
    EXPECT_EQ(Usb.WaitForRequest(Request, 5), UsbError::WaitTimeout);
    EXPECT_EQ(Usb.GetResult(Device, Request, Count, false), UsbError::Pending);
    Count = 1;
    Usb.CancelIo(Device);
    EXPECT_EQ(Result(), UsbError::Aborted);
    EXPECT_EQ(Count, 0U);
    // What is under way when the device is closed, or its block given back, ends too.
    EXPECT_EQ(Usb.Read(Device, data, 512, Request), UsbError::Pending);
    Usb.DestroyRequest(Request);
    Request = Usb.CreateRequest();
    EXPECT_EQ(Usb.Read(Device, data, 512, Request), UsbError::Pending);
    Usb.CloseDevice(Device);
    EXPECT_EQ(Usb.WaitForRequest(Request, 0), UsbError::None);
    EXPECT_EQ(Usb.Read(Device, data, 512, Request), UsbError::InvalidHandle);
}

TEST_F(Libusb, StallsAndWrongDirectionsAreErrors) {
    OpenFirst(0x86);
    char data[8]{};
    First->Behaviour.StallsAnswers = true;
    EXPECT_EQ(Usb.Read(Device, data, 8, Request), UsbError::Pending);
    EXPECT_EQ(Result(), UsbError::DeviceFailed);
    EXPECT_EQ(Usb.Write(Device, data, 8, Request), UsbError::InvalidParameter);
    EXPECT_EQ(Result(), UsbError::InvalidParameter) << "a failed start is the block's result";
    EXPECT_EQ(Control(UsbControl::UnbindPipe, nullptr, 0), UsbError::None);
    EXPECT_EQ(Usb.Read(Device, data, 8, Request), UsbError::InvalidParameter);
    EXPECT_EQ(Control(0x12345678, nullptr, 0), UsbError::InvalidParameter);
    EXPECT_EQ(Control(UsbControl::GetDriverInfo, nullptr, 0), UsbError::InsufficientBuffer);
    const std::uint8_t lying[8] = {0, 0, 200, 0};
    EXPECT_EQ(Control(UsbControl::SetConfiguration, lying, 8), UsbError::InvalidParameter);
}

TEST_F(Libusb, AnUnpluggedPodEndsItsTransfersAndLeavesTheList) {
    TUsbJtagManager manager(Usb);
    ASSERT_EQ(manager.CountPods(), 2);
    OpenFirst(0x86);
    char data[8];
    EXPECT_EQ(Usb.Read(Device, data, 8, Request), UsbError::Pending);
    First->Unplug();
    EXPECT_EQ(Result(), UsbError::DeviceRemoved);
    EXPECT_FALSE(manager.GetPort(0).IsReady());
    EXPECT_NE(Usb.Read(Device, data, 8, Request), UsbError::Pending);
    EXPECT_EQ(manager.CountPods(), 1);
}

TEST_F(Libusb, PodsThatMayNotBeOpenedStandLastAndAreNamed) {
    char* root = umockdev_testbed_get_root_dir(Testbed);
    ASSERT_EQ(chmod((root + First->Node()).c_str(), 0), 0);
    g_free(root);
    const TOrdinaryUser user;
    TUsbJtagManager manager(Usb);
    EXPECT_EQ(manager.CountPods(), 1);
    EXPECT_TRUE(manager.GetPort(0).IsReady()) << "the pod that can be opened comes first";
    EXPECT_FALSE(Second->TakeEvents().empty());
    ASSERT_EQ(Usb.GetRefusedDevices().size(), 1U);
    const TRefusedUsbDevice& refused = Usb.GetRefusedDevices()[0];
    EXPECT_EQ(refused.Bus, 1);
    EXPECT_EQ(refused.Address, 2);
    EXPECT_EQ(refused.ProductId, 0x0100);
    EXPECT_EQ(refused.Node, First->Node());
    EXPECT_THAT(refused.Reason, HasSubstr("60-vorel-pods.rules"));
    EXPECT_EQ(Usb.OpenDevice("\\\\.\\USBIO_Device1", Device), UsbError::AccessDenied);
    EXPECT_EQ(Usb.OpenDevice("\\\\.\\USBIO_Device2", Device), UsbError::FileNotFound);
    EXPECT_EQ(Usb.OpenDevice("usb-001-099", Device), UsbError::FileNotFound);
}

} // namespace
} // namespace vorel
