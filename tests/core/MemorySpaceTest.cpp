// Registers and memory spaces: the handles on a device's driver.
#include "core/MemorySpace.h"
#include "DeviceRig.h"
#include "core/ProcessorRegister.h"
#include "core/VorelDevice.h"
#include "vorel/DriverBase.h"

namespace vorel::test {
namespace {

class Handles : public testing::Test {
protected:
    THost Host;
    TDialogs Dialogs;
    TTableDouble<IVorelDriver> Driver{"d"};
    TTableDouble<IJTagChannel> Channel{"c"};
};

TEST_F(Handles, ForwardEveryOperationToItsEntry) {
    TVorelDevice device(Host, Dialogs, Driver.Get());
    TSilentDriver silentDriver;
    TVorelDevice silentDevice(Host, Dialogs, &silentDriver);
    TVorelDevice bareDevice(Host, Dialogs, nullptr);
    ASSERT_EQ(device.SetChannel(Channel.Get()), StatusOk);
    ASSERT_EQ(silentDevice.SetChannel(Channel.Get()), StatusOk);
    ASSERT_EQ(bareDevice.SetChannel(Channel.Get()), StatusOk);
    {
        TProcessorRegister driven(3, device);
        TProcessorRegister silent(3, silentDevice);
        TProcessorRegister bare(3, bareDevice);
        TForwardTable<IProcessorRegister> t(driven, silent, bare, Driver, Channel);
        using R = IProcessorRegister;
        t.Place(&R::GetDevice);
        t.Row(&R::Reserved1, "");
        t.Row(&R::Reserved2, "");
        t.Row(&R::GetIndex, "", 3);
        t.Row(&R::GetName, "d65", u"");
        t.Row(&R::GetAttributeText, "d66", u"");
        t.Row(&R::GetAttributeNumber, "d64", 0);
        t.Row(&R::ReadValue, "c3 d63 c4", 0U);
        t.Row(&R::GetByte0, "c3 d63 c4", 0);
        t.Row(&R::GetByte1, "c3 d63 c4", 0);
        t.Row(&R::GetByte2, "c3 d63 c4", 0);
        t.Row(&R::GetByte3, "c3 d63 c4", 0);
        t.Row(&R::WriteValue, "c3 d62 c4");
        t.Row(&R::ReadText, "c3 d109 c4", u"0");
        t.Row(&R::WriteText, "c3 d108 c4");
        EXPECT_EQ(t.Count(), 15);
        EXPECT_EQ(t.FailureCount(), 27);
    }
    TMemorySpace driven(2, device);
    TMemorySpace silent(2, silentDevice);
    TMemorySpace bare(2, bareDevice);
    TForwardTable<IMemorySpace> t(driven, silent, bare, Driver, Channel);
    using M = IMemorySpace;
    t.Place(&M::GetDevice);
    t.Row(&M::GetIndex, "", 2);
    t.Row(&M::GetName, "d77", u"");
    t.Row(&M::GetAttributeText, "d78", u"");
    t.Row(&M::GetWidth, "d73", 0);
    t.Row(&M::GetSize, "d74", 0);
    t.Row(&M::GetAttributeNumber75, "d75", 0);
    t.Row(&M::GetAttributeNumber76, "d76", 0);
    t.RowThatCounts(&M::ReadBlock, "c3 d81 c4", "");
    t.Row(&M::WriteBlock, "c3 d82 c4");
    t.Row(&M::MemoryAction83, "c3 d83 c4");
    t.Row(&M::MemoryAction84, "c3 d84 c4");
    EXPECT_EQ(t.Count(), 12);
    EXPECT_EQ(t.FailureCount(), 15);
}

// Two registers, two memories of 2^33 locations, and a processor that runs.
class TTarget : public TDriverBase {
public:
    Status GetRegisterCount(std::int32_t& value) noexcept override { return Give(value, 2); }
    Status GetMemorySpaceCount(std::int32_t& value) noexcept override { return Give(value, 2); }
    Status GetMainMemoryIndex(std::int32_t& value) noexcept override { return Give(value, 1); }
    Status GetMemorySize(std::int32_t, std::int64_t& locations) noexcept override {
        return Give(locations, 1LL << 33);
    }
    Status PauseProcessor() noexcept override { return Record("pause"), StatusOk; }
    Status ContinueProcessor() noexcept override { return Record("continue"), StatusOk; }
    Status ReadRegister(std::int32_t index, std::uint32_t& value) noexcept override {
        return value = 0x89ABCDEFU + static_cast<std::uint32_t>(index), Failure;
    }
    Status WriteRegister(std::int32_t index, std::uint32_t value, std::int32_t&) noexcept override {
        return Record("reg" + std::to_string(index) + "=" + std::to_string(value)), StatusOk;
    }
    Status ReadMemory(std::int32_t index, std::uint32_t* buffer, std::int64_t address,
                      std::int32_t count, std::int32_t&) noexcept override {
        Record("mem" + std::to_string(index) + "@" + std::to_string(address) + "x" +
               std::to_string(count));
        for (std::int32_t i = 0; i < count; ++i) {
            buffer[i] = static_cast<std::uint32_t>(i) + 1;
        }
        return Failure;
    }
    Status WriteMemory(std::int32_t index, const std::uint32_t* buffer, std::int64_t address,
                       std::int32_t, std::int32_t&) noexcept override {
        Record("mem" + std::to_string(index) + "@" + std::to_string(address) + "=" +
               std::to_string(*buffer));
        return Failure;
    }

    Status Failure = StatusOk;
};

TEST_F(Handles, RegistersReadTheTargetEachTimeAndGiveNothingAfterAFailure) {
    TTarget target;
    TVorelDevice device(Host, Dialogs, &target);
    IProcessorRegister* item = nullptr;
    ASSERT_EQ(device.GetRegister(1, item), StatusOk);
    std::uint32_t value = 0;
    std::array<std::uint8_t, 4> bytes{};
    EXPECT_EQ(item->ReadValue(value), StatusOk);
    EXPECT_EQ(value, 0x89ABCDF0U);
    EXPECT_EQ(item->GetByte0(bytes[0]), StatusOk);
    EXPECT_EQ(item->GetByte1(bytes[1]), StatusOk);
    EXPECT_EQ(item->GetByte2(bytes[2]), StatusOk);
    EXPECT_EQ(item->GetByte3(bytes[3]), StatusOk);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 4>{0xF0, 0xCD, 0xAB, 0x89}));
    TakeCalls();
    EXPECT_EQ(item->WriteValue(77), StatusOk);
    EXPECT_EQ(TakeCalls(), "reg1=77");
    target.Failure = StatusError;
    EXPECT_EQ(item->ReadValue(value), StatusError);
    EXPECT_EQ(value, 0U);
    device.GetLink().ForgetDriver();
    WideText text;
    EXPECT_EQ(item->ReadText(text), StatusOk);
    EXPECT_EQ(text, u"0");
}

TEST_F(Handles, AGoodBlockReadEndsOneHaltAndAFailedOneLeavesHaltAndLock) {
    TTarget target;
    TVorelDevice device(Host, Dialogs, &target);
    IMemorySpace* memory = nullptr;
    ASSERT_EQ(device.GetMainMemorySpace(memory), StatusOk);
    ASSERT_NE(memory, nullptr);
    std::array<std::uint32_t, 2> buffer{};
    std::int64_t size = 0;
    EXPECT_EQ(memory->GetSize(size), StatusOk);
    EXPECT_EQ(size, 1LL << 33);
    TakeCalls();
    EXPECT_EQ(memory->ReadBlock(buffer.data(), 1LL << 32, 0), StatusOk);
    EXPECT_EQ(TakeCalls(), "mem1@4294967296x0") << "no channel, no halt, and nothing to read";
    ASSERT_EQ(device.SetChannel(Channel.Get()), StatusOk);

    EXPECT_EQ(device.BeginHalt(), StatusOk);
    EXPECT_EQ(memory->WriteBlock(buffer.data(), 8, 1), StatusOk);
    EXPECT_EQ(TakeCalls(), "pause c3 mem1@8=0 c4");
    EXPECT_EQ(memory->ReadBlock(buffer.data(), 4, 2), StatusOk);
    EXPECT_EQ(TakeCalls(), "c3 mem1@4x2 continue c4");
    EXPECT_EQ(buffer[1], 2U);
    EXPECT_EQ(device.EndHalt(), StatusOk);
    EXPECT_EQ(TakeCalls(), "") << "the read has ended the halt";

    target.Failure = StatusError;
    EXPECT_EQ(device.BeginHalt(), StatusOk);
    EXPECT_EQ(memory->ReadBlock(buffer.data(), 4, 2), StatusError);
    EXPECT_EQ(memory->WriteBlock(buffer.data(), 8, 1), StatusError);
    EXPECT_EQ(TakeCalls(), "pause c3 mem1@4x2 c3 mem1@8=1 c4");
    EXPECT_EQ(device.EndHalt(), StatusOk);
    EXPECT_EQ(TakeCalls(), "continue");
}

} // namespace
} // namespace vorel::test
