#include "simulator/SimUsbServices.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <map>
#include <string>

namespace vorel::sim {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct Outcome {
    std::uint32_t Result = 0;
    Bytes Data;
};

struct UsbFixture : testing::Test {
    UsbFixture() { AddPod("Pod one", "1.25"); }
    ~UsbFixture() override {
        Usb.DestroyRequest(Request);
        Usb.CloseDevice(Device);
        EXPECT_EQ(Usb.OpenHandleCount(), 0U);
    }

    TSimPod& AddPod(const char* name, const char* serial) {
        auto target = std::make_unique<TTarget>();
        return Usb.Add(std::make_unique<TSimPod>(UsbIdentity{0x1B8C, 0x0200, name, serial},
                                                 std::move(target)));
    }
    std::uint32_t Open(const char* path = R"(\\.\USBIO_Device0)") {
        return Usb.OpenDevice(path, Device);
    }
    Outcome Control(std::uint32_t code, const Bytes& input, std::uint32_t size = 0) {
        Bytes data(size);
        Usb.Control(Device, code, input.data(), static_cast<std::uint32_t>(input.size()),
                    data.data(), size, Request);
        return Complete(data);
    }
    Outcome Read(std::uint32_t size) {
        Bind(0x86);
        Bytes data(size);
        Usb.Read(Device, data.data(), size, Request);
        return Complete(data);
    }
    Outcome Write(const Bytes& data) {
        Bind(0x02);
        Usb.Write(Device, data.data(), static_cast<std::uint32_t>(data.size()), Request);
        return Complete(data);
    }
    void Bind(std::uint8_t endpoint) {
        Control(UsbControl::UnbindPipe, {});
        Control(UsbControl::BindPipe, {endpoint});
    }
    std::uint32_t Configure() {
        Bytes record(260, 0);
        record[2] = 1;
        record[9] = 0x10;
        return Control(UsbControl::SetConfiguration, record).Result;
    }
    // The end of a transfer, which is cancelled when it hangs, and the bytes that were moved.
    Outcome Complete(const Bytes& data) {
        if (Usb.WaitForRequest(Request, 5000) == UsbError::WaitTimeout) {
            std::uint32_t none = 0;
            EXPECT_EQ(Usb.GetResult(Device, Request, none, false), UsbError::Pending);
            Usb.CancelIo(Device);
            EXPECT_EQ(Usb.WaitForRequest(Request, 0xFFFFFFFF), 0U);
        }
        std::uint32_t count = 0;
        const std::uint32_t result = Usb.GetResult(Device, Request, count, false);
        return {result, Bytes(data.begin(), data.begin() + count)};
    }

    TSimUsbServices Usb;
    UsbDevice* Device = nullptr;
    UsbRequest* Request = Usb.CreateRequest();
};

TEST_F(UsbFixture, ListsThePodsThatArePluggedIn) {
    Usb.Add(std::make_unique<TSimPod>(UsbIdentity{0x0403, 0x6010, "Other", "9"}));
    AddPod("Pod two", "2").Unplug();
    AddPod("Pod three", "3");
    UsbList* const list = Usb.CreateInterfaceList(UsbIoInterfaceClass);
    for (std::uint32_t index = 0; index < 3; ++index) {
        EXPECT_EQ(Usb.EnumInterface(list, UsbIoInterfaceClass, index), 0U);
    }
    EXPECT_EQ(Usb.EnumInterface(list, UsbIoInterfaceClass, 3), UsbError::NoMoreItems);
    EXPECT_EQ(Usb.EnumInterface(list, Guid{}, 0), UsbError::NoMoreItems);
    EXPECT_EQ(Usb.EnumInterface(nullptr, UsbIoInterfaceClass, 0), UsbError::InvalidHandle);

    std::array<char, 64> record{};
    std::uint32_t needed = 0;
    EXPECT_EQ(Usb.GetInterfaceDetail(list, UsbIoInterfaceClass, 2, nullptr, 0, needed),
              UsbError::InsufficientBuffer);
    EXPECT_EQ(Usb.GetInterfaceDetail(list, UsbIoInterfaceClass, 2, record.data(), 64, needed),
              UsbError::InvalidParameter);
    record[0] = 5;
    EXPECT_EQ(
        Usb.GetInterfaceDetail(list, UsbIoInterfaceClass, 2, record.data(), needed - 1, needed),
        UsbError::InsufficientBuffer);
    EXPECT_EQ(record[4], 0);
    EXPECT_EQ(Usb.GetInterfaceDetail(list, UsbIoInterfaceClass, 2, record.data(), needed, needed),
              0U);
    EXPECT_EQ(std::strlen(record.data() + 4) + 5, needed);
    ASSERT_EQ(Open(record.data() + 4), 0U);
    EXPECT_EQ(Usb.Pod(3).Counters().Opens, 1U);
    Usb.DestroyInterfaceList(list);

    UsbDevice* none = Device;
    for (const char* path : {R"(\\.\USBIO_Device2)", R"(\\.\USBIO_Device9)", "", "COM1"}) {
        EXPECT_EQ(Usb.OpenDevice(path, none), UsbError::FileNotFound) << path;
        EXPECT_EQ(none, nullptr);
    }
}

TEST_F(UsbFixture, AnswersControlRequests) {
    constexpr std::uint32_t Invalid = UsbError::InvalidParameter;
    ASSERT_EQ(Open(), 0U);
    const Bytes device{18, 1, 0, 2, 0xFF, 0, 0xFF, 64, 0x8C, 0x1B, 0x00, 0x02, 0, 1, 0, 2, 3, 1};
    EXPECT_EQ(Control(UsbControl::GetDescriptor, {0, 0, 0, 0, 1, 0, 0, 0}, 18).Data, device);
    EXPECT_EQ(Control(UsbControl::GetDescriptor, {0, 0, 0, 0, 3, 3, 0, 0}, 256).Data,
              (Bytes{10, 3, '1', 0, '.', 0, '2', 0, '5', 0}));
    EXPECT_EQ(Control(UsbControl::GetDescriptor, {0, 0, 0, 0, 3, 2, 0, 0}, 4).Data,
              (Bytes{16, 3, 'P', 0}));
    EXPECT_EQ(Control(UsbControl::GetDescriptor, {0, 0, 0, 0, 2, 0, 0, 0}, 64).Data.size(), 32U);
    EXPECT_EQ(Control(UsbControl::GetDescriptor, {0, 0, 0, 0, 3, 9, 0, 0}, 64).Result,
              UsbError::DeviceFailed);
    EXPECT_EQ(Control(UsbControl::GetDescriptor, {0, 0, 0, 0}, 64).Result, Invalid);
    const Outcome info = Control(UsbControl::GetDriverInfo, {}, 12);
    ASSERT_EQ(info.Data.size(), 12U);
    EXPECT_EQ(info.Data[0] + 256 * info.Data[1], 0x0230);
    EXPECT_EQ(Control(UsbControl::BindPipe, {0x02}).Result, Invalid) << "not configured";
    EXPECT_EQ(Control(UsbControl::SetConfiguration, Bytes(259, 0)).Result, Invalid);
    EXPECT_EQ(Configure(), 0U);
    EXPECT_EQ(Control(UsbControl::BindPipe, {0x03}).Result, Invalid);
    EXPECT_EQ(Control(UsbControl::BindPipe, {0x02}).Result, 0U);
    EXPECT_EQ(Control(UsbControl::BindPipe, {0x86}).Result, Invalid);
    EXPECT_EQ(Control(UsbControl::UnbindPipe, {}).Result, 0U);
    EXPECT_EQ(Control(UsbControl::UnbindPipe, {}).Result, Invalid);
    Bytes data(2);
    EXPECT_EQ(Usb.Read(Device, data.data(), 2, Request), Invalid);
    EXPECT_EQ(Usb.Write(Device, data.data(), 2, Request), Invalid);
    std::uint32_t count = 0;
    EXPECT_EQ(Usb.GetResult(Device, nullptr, count, false), UsbError::InvalidHandle);
    EXPECT_EQ(Usb.Control(nullptr, 0, nullptr, 0, nullptr, 0, Request), UsbError::InvalidHandle);
}

TEST_F(UsbFixture, EndsAReadWhenItsAnswerComes) {
    Open();
    Configure();
    Bind(0x86);
    Bytes data(8);
    UsbRequest* const read = Usb.CreateRequest();
    EXPECT_EQ(Usb.Read(Device, data.data(), 8, read), UsbError::Pending);
    EXPECT_EQ(Usb.Read(Device, data.data(), 8, read), UsbError::InvalidHandle)
        << "one request at a time";
    Write({0, 0x00});
    std::uint32_t count = 0;
    EXPECT_EQ(Usb.WaitForRequest(read, 0), 0U);
    EXPECT_EQ(Usb.GetResult(Device, read, count, false), 0U);
    EXPECT_EQ(count, 2U);
    EXPECT_EQ(data[0], '1');
    const UsbCounters& counters = Usb.Pod(0).Counters();
    EXPECT_EQ(counters.Writes, 1U);
    EXPECT_EQ(counters.Reads, 1U);
    EXPECT_EQ(counters.BytesWritten, 2U);
    EXPECT_EQ(counters.BytesRead, 2U);
    Bind(0x86);
    EXPECT_EQ(Usb.Read(Device, data.data(), 8, read), UsbError::Pending);
    EXPECT_EQ(Usb.GetResult(Device, read, count, true), UsbError::TimedOut);
    Usb.DestroyRequest(read);
}

TEST_F(UsbFixture, ShowsItsFaults) {
    using Effect = UsbFault::Effect;
    constexpr UsbTransfer R = UsbTransfer::Read;
    constexpr UsbTransfer W = UsbTransfer::Write;
    // Results and answers of three rounds of write and read; each round asks for identity ("11")
    // and one sample (a zero byte and 0x80, shown as "s").
    struct Case {
        const char* Name;
        UsbFault Fault;
        const char* Writes; // '.' success, 'F' DeviceFailed, 'A' Aborted, 'G' DeviceRemoved
        const char* Reads;
        const char* Answers;
    };
    const std::map<std::uint32_t, char> letters{{0, '.'},
                                                {UsbError::DeviceFailed, 'F'},
                                                {UsbError::Aborted, 'A'},
                                                {UsbError::AccessDenied, '5'},
                                                {UsbError::DeviceRemoved, 'G'}};
    for (const Case& c :
         {Case{"none", {Effect::Fail, W, 9}, "...", "...", "11s11s11s"},
          {"write fails", {Effect::Fail, W, 2}, ".F.", ".A.", "11s11s"},
          {"writes fail", {Effect::Fail, W, 2, true, 5}, ".55", ".AA", "11s"},
          {"write hangs", {Effect::TimeOut, W, 3}, "..A", "..A", "11s11s"},
          {"half a write", {Effect::Short, W, 1, false, 2}, "...", "...", "1111s11s"},
          {"read fails", {Effect::Fail, R, 1, false, 5}, "...", "5..", "11s11s11s"},
          {"reads hang", {Effect::TimeOut, R, 1, true}, "...", "AAA", ""},
          {"answer in pieces", {Effect::Short, R, 1, false, 3}, "...", "...", "11s11s11s"},
          {"answer lost", {Effect::Drop, R, 1, false, 2}, "...", "...", "1111s11s"},
          {"pulled out", {Effect::Unplug, R, 2}, "..G", ".GG", "11s"},
          {"pulled out and back", {Effect::Replug, R, 2}, "..G", ".GG", "11s"}}) {
        TSimPod& pod = Usb.Pod(0);
        pod.Plug();
        pod.Faults().Clear();
        pod.Firmware()->Reset();
        Open();
        Configure();
        pod.Counters() = {};
        pod.Faults().Add(c.Fault);
        std::string writes;
        std::string reads;
        std::string answers;
        for (int round = 0; round < 3; ++round) {
            writes += letters.at(Write({0, 0x00, 0, 0xF1}).Result);
            const Outcome read = Read(512);
            reads += letters.at(read.Result);
            for (const std::uint8_t byte : read.Data) {
                answers.append(byte == 0 ? 0 : 1, byte == 0x80 ? 's' : static_cast<char>(byte));
            }
        }
        EXPECT_EQ(writes, c.Writes) << c.Name;
        EXPECT_EQ(reads, c.Reads) << c.Name;
        EXPECT_EQ(answers, c.Answers) << c.Name;
        EXPECT_EQ(pod.IsPlugged(), c.Fault.What != Effect::Unplug) << c.Name;
        Usb.CloseDevice(Device);
    }
    Device = nullptr;
}

TEST_F(UsbFixture, KeepsOldHandlesDeadAfterReplugging) {
    Open();
    Configure();
    Write({9, 0x41});
    Bind(0x86);
    Bytes data(2);
    EXPECT_EQ(Usb.Read(Device, data.data(), 2, Request), UsbError::Pending);
    Usb.Pod(0).Unplug();
    std::uint32_t count = 0;
    EXPECT_EQ(Usb.GetResult(Device, Request, count, false), UsbError::DeviceRemoved);
    Usb.Pod(0).Plug();
    EXPECT_EQ(Usb.Pod(0).Firmware()->State().TimingA, 0) << "a pod forgets when it loses power";
    EXPECT_EQ(Configure(), UsbError::DeviceRemoved);
}

} // namespace
} // namespace vorel::sim
