#include "transport/USBIO.h"

#include "transport/FakeUsb.h"

#include <gmock/gmock.h>

namespace vorel {
namespace {

using testing::ElementsAre;
using TReply = TFakeUsb::TReply;

struct UsbIo : testing::Test {
    TFakeUsb Usb;
    TUsbIoPipe Pipe{Usb};
    const Guid* Class = &UsbIoInterfaceClass;

    // Opens device 0 without a list and forgets the calls.
    void OpenPipe() {
        ASSERT_EQ(Pipe.Bind(0, 0x86, nullptr, Class), StatusSuccess);
        Usb.Log.clear();
    }
};

TEST_F(UsbIo, OpenTakesThePathOfTheListAndIsDoneOnce) {
    Usb.Devices.resize(2);
    UsbList* list = Pipe.CreateDeviceList(UsbIoInterfaceClass);
    EXPECT_EQ(Pipe.Open(1, list, Class), StatusSuccess);
    EXPECT_STREQ(Pipe.DevicePathName(), "path-1");
    EXPECT_EQ(Pipe.Open(7, nullptr, nullptr), StatusSuccess)
        << "open already: nothing is looked at";
    EXPECT_THAT(Usb.Log, ElementsAre("open path-1", "control 108: "));
    EXPECT_TRUE(Pipe.HasDriverFlag20());
    EXPECT_FALSE(Pipe.HasDriverFlag10());
    Pipe.Close();
    Pipe.Close();
    EXPECT_EQ(Pipe.DevicePathName(), nullptr);
    EXPECT_EQ(Pipe.Open(1, nullptr, Class), StatusSuccess);
    EXPECT_EQ(Usb.Log[3], "open \\\\.\\USBIO_Device1");
    Pipe.DestroyDeviceList(list);
}

TEST_F(UsbIo, AFailingOpenLeavesNothingBehind) {
    struct Case {
        std::uint32_t Expected;
        void (*Break)(TFakeUsb&);
    };
    const Case cases[] = {
        {StatusNoSuchInstance, [](TFakeUsb& usb) { usb.Devices.clear(); }},
        {1722U,
         [](TFakeUsb& usb) {
             usb.Devices.clear();
             usb.EnumError = 1722;
         }},
        {StatusFailed, [](TFakeUsb& usb) { usb.DetailSize = 0; }},
        {UsbError::InsufficientBuffer, [](TFakeUsb& usb) { usb.DetailSize = 1; }},
        {StatusNoMemory, [](TFakeUsb& usb) { usb.DetailSize = 0xFFFFFFFF; }},
        {StatusDeviceNotFound, [](TFakeUsb& usb) { usb.Devices[0].OpenError = 5; }},
        {StatusNoMemory, [](TFakeUsb& usb) { usb.HasRequests = false; }},
        {UsbError::DeviceFailed,
         [](TFakeUsb& usb) { usb.FailingControl = UsbControl::GetDriverInfo; }},
        {StatusVersionMismatch, [](TFakeUsb& usb) { usb.Version = UsbDriverVersion + 1; }},
    };
    for (const Case& c : cases) {
        TFakeUsb usb;
        c.Break(usb);
        TUsbIo io(usb);
        UsbList* list = io.CreateDeviceList(UsbIoInterfaceClass);
        EXPECT_EQ(io.Open(0, list, Class), c.Expected);
        io.DestroyDeviceList(list);
        EXPECT_FALSE(io.IsOpen());
        EXPECT_EQ(io.DevicePathName(), nullptr);
        EXPECT_EQ(usb.Alive, 0);
    }
    UsbList* list = Pipe.CreateDeviceList(UsbIoInterfaceClass);
    EXPECT_EQ(Pipe.AcquireDevicePath(0, nullptr, Class), StatusInvalidArgument);
    EXPECT_EQ(Pipe.AcquireDevicePath(0, list, nullptr), StatusInvalidArgument);
    Pipe.DestroyDeviceList(list);
}

TEST_F(UsbIo, ControlRequestsGoOutByteForByte) {
    for (const bool later : {false, true}) {
        Usb.ControlLater = later;
        OpenPipe();
        char text[8]{};
        std::uint32_t size = sizeof text;
        EXPECT_EQ(Pipe.GetStringDescriptor(text, size, 0x0407, 2), StatusSuccess);
        EXPECT_EQ(size, sizeof text) << "a longer descriptor is cut, and counted as cut";
        std::array<std::uint8_t, 18> descriptor{};
        EXPECT_EQ(Pipe.GetDeviceDescriptor(descriptor), StatusSuccess);
        EXPECT_EQ(Bytes(&descriptor[8], 4), "8C 1B 00 01");
        TUsbConfiguration configuration;
        configuration.ConfigurationIndex = 0x0102;
        configuration.InterfaceCount = 2;
        configuration.Interfaces[1] = {3, 4, 0x1000};
        EXPECT_EQ(Pipe.SetConfiguration(configuration), StatusSuccess);
        EXPECT_EQ(Pipe.Unbind(), StatusSuccess);
        std::string record = "02 01 02 00 00 00 00 00 00 00 00 00 03 00 04 00 00 10 00 00";
        for (int i = 0; i < 240; ++i) {
            record += " 00";
        }
        EXPECT_THAT(Usb.Log, ElementsAre("control 6: 00 00 00 00 03 02 07 04",
                                         "control 6: 00 00 00 00 01 00 00 00",
                                         "control 36: " + record, "control 124: "));
        Pipe.Close();
    }
}

TEST_F(UsbIo, AClosedDeviceIsNotTouched) {
    std::uint32_t size = 4;
    EXPECT_EQ(Pipe.Unbind(), StatusNotOpen);
    EXPECT_EQ(Pipe.ReadSync(&size, size, 1), UsbError::InvalidHandle);
    EXPECT_EQ(size, 0U);
    Pipe.CancelIo();
    EXPECT_TRUE(Usb.Log.empty());
}

TEST_F(UsbIo, TransfersGiveTheirBytesAndTheirError) {
    struct Case {
        TReply Reply;
        std::uint32_t Status, Count;
    };
    const Case cases[] = {
        {{0, 3, "", TReply::AtOnce}, 0, 3},
        {{0, 3, "", TReply::Later}, 0, 3},
        {{31, 1, "", TReply::Later}, 31, 1},
        {{1167, 0, "", TReply::Refused}, 1167, 0},
    };
    OpenPipe();
    char data[4]{};
    for (const Case& c : cases) {
        Usb.Reads = {c.Reply};
        Usb.Writes = {c.Reply};
        std::uint32_t readCount = 4;
        std::uint32_t writeCount = 4;
        EXPECT_EQ(Pipe.ReadSync(data, readCount, 10), c.Status);
        EXPECT_EQ(Pipe.WriteSync(data, writeCount, 10), c.Status);
        EXPECT_EQ(readCount, c.Count);
        EXPECT_EQ(writeCount, c.Count);
    }
    Usb.HasRequests = false;
    std::uint32_t count = 4;
    EXPECT_EQ(Pipe.WriteSync(data, count, 10), UsbError::NotEnoughMemory);
}

TEST_F(UsbIo, ALateTransferIsCancelledAndWaitedFor) {
    OpenPipe();
    char data[4]{};
    TUsbIoBuf buf(Usb, data, sizeof data);
    buf.NumberOfBytesToTransfer = 100; // more than there is
    Usb.Reads = {{UsbError::Aborted, 2, "", TReply::NotAtAll}};
    EXPECT_TRUE(Pipe.Read(buf));
    EXPECT_EQ(Pipe.WaitForCompletion(buf, 77), StatusTimeout);
    EXPECT_EQ(buf.Status, UsbError::Pending) << "still under way";
    Pipe.CancelIo();
    EXPECT_EQ(Pipe.WaitForCompletion(buf, TUsbIoPipe::NoLimit), UsbError::Aborted);

    Usb.Writes = {{UsbError::Aborted, 2, "", TReply::NotAtAll}};
    std::uint32_t count = 4;
    EXPECT_EQ(Pipe.WriteSync("abc", count, 5000), UsbError::Aborted) << "not the time-out";
    EXPECT_EQ(count, 2U);
    EXPECT_THAT(Usb.Log, ElementsAre("read 4", "waited 77", "cancel", "write 61 62 63 00",
                                     "waited 5000", "cancel"));
}

} // namespace
} // namespace vorel
