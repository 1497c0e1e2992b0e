// Registers and memory spaces: the handles on a device's driver.
#include "core/MemorySpace.h"
#include "DeviceRig.h"
#include "core/ProcessorRegister.h"
#include "core/VorelDevice.h"
#include "vorel/DriverBase.h"

namespace vorel::test {
namespace {

class Handles : public TDeviceTest {};

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
    t.Forwards(73, 0, &M::GetWidth, &M::GetSize, &M::GetAttributeNumber75,
               &M::GetAttributeNumber76);
    t.RowThatCounts(&M::ReadBlock, "c3 d81 c4", "");
    t.Row(&M::WriteBlock, "c3 d82 c4");
    t.Row(&M::MemoryAction83, "c3 d83 c4");
    t.Row(&M::MemoryAction84, "c3 d84 c4");
    EXPECT_EQ(t.Count(), 12);
    EXPECT_EQ(t.FailureCount(), 15);
}

TEST_F(Handles, ARegisterGivesTheBytesOfItsValueAndNothingAfterAFailure) {
    class TTarget : public TDriverBase {
    public:
        Status GetRegisterCount(std::int32_t& value) noexcept override { return Give(value, 1); }
        Status ReadRegister(std::int32_t, std::uint32_t& value) noexcept override {
            return value = 0x89ABCDEF, Failure;
        }
        Status Failure = StatusOk;
    } target;
    TVorelDevice device(Host, Dialogs, &target);
    IProcessorRegister* item = nullptr;
    ASSERT_EQ(device.GetRegister(0, item), StatusOk);
    std::array<std::uint8_t, 4> bytes{};
    EXPECT_EQ(item->GetByte0(bytes[0]), StatusOk);
    EXPECT_EQ(item->GetByte1(bytes[1]), StatusOk);
    EXPECT_EQ(item->GetByte2(bytes[2]), StatusOk);
    EXPECT_EQ(item->GetByte3(bytes[3]), StatusOk);
    EXPECT_EQ(bytes, (std::array<std::uint8_t, 4>{0xEF, 0xCD, 0xAB, 0x89}));
    target.Failure = StatusError;
    std::uint32_t value = 77;
    EXPECT_EQ(item->ReadValue(value), StatusError);
    EXPECT_EQ(value, 0U);
}

} // namespace
} // namespace vorel::test
