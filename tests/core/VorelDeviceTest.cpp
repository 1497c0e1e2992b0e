#include "core/VorelDevice.h"
#include "DeviceRig.h"
#include "vorel/Bsdl.h"
#include "vorel/Device.h"
#include "vorel/DriverBase.h"

namespace vorel::test {
namespace {

class SoftDevice : public TDeviceTest {};

TEST_F(SoftDevice, ForwardsEveryOperationToItsEntry) {
    TVorelDevice driven(Host, Dialogs, Driver.Get());
    EXPECT_EQ(TakeCalls(), "d50 d67 d79");
    TSilentDriver silentDriver;
    TVorelDevice silent(Host, Dialogs, &silentDriver);
    TVorelDevice bare(Host, Dialogs, nullptr);
    ASSERT_EQ(driven.SetChannel(Channel.Get()), StatusOk);
    ASSERT_EQ(silent.SetChannel(Channel.Get()), StatusOk);
    ASSERT_EQ(bare.SetChannel(Channel.Get()), StatusOk);
    TForwardTable<IVorelDevice> t(driven, silent, bare, Driver, Channel);
    using D = IVorelDevice;
    t.Row(&D::GetIdCode, "c3 d3 c4", 0U);
    t.Row(&D::GetDeviceName, "d4", u"Unknown Device");
    t.Forwards(5, u"", &D::GetDescription, &D::GetFamily, &D::GetAttributeText7,
               &D::GetAttributeText8, &D::GetAttributeText9, &D::GetAttributeText10);
    t.Row(&D::GetCapacity, "d11", -1);
    t.Row(&D::GetCapacityAgain, "d11", -1);
    t.Forwards(13, u"", &D::GetAttributeText13, &D::GetAttributeText14, &D::GetAttributeText15,
               &D::GetAttributeText16, &D::GetAttributeText17, &D::GetPackage,
               &D::GetAttributeText19, &D::GetAttributeText20, &D::GetTemperatureGrade,
               &D::GetAttributeText22, &D::GetAttributeText23);
    t.Row(&D::GetSpeedGrade, "d29", u"");
    t.Forwards(25, u"", &D::GetAttributeText25, &D::GetAttributeText26, &D::GetAttributeText27,
               &D::GetAttributeText28, &D::GetBsdlFile);
    t.Row(&D::GetDefaultEntity, "d30", nullptr);
    t.Row(&D::GetVendor, "d31", u"");
    t.Row(&D::GetIrLength, "d32", 4);
    t.Row(&D::GetPinCount, "d33", 0);
    t.Row(&D::GetIoPinCount, "d34", -1);
    t.Row(&D::GetDescriptionItem, "d35", nullptr);
    t.Row(&D::GetAttributeText36, "d36", u"");
    t.Constants(0, &D::GetDspMultipliers, &D::GetClockManagers, &D::GetEmbeddedRam,
                &D::GetOnChipTermination, &D::GetGlobalClocks, &D::GetConfigMemory,
                &D::GetDifferentialPairs, &D::GetHighSpeedPairs, &D::GetAttributeNumber45);
    t.Row(&D::GetAttributeItem46, "", nullptr);
    t.Row(&D::GetDisplayName, "d4 d47", u"Unknown Device");
    t.Row(&D::GetChainIndex, "", -1);
    t.Row(&D::GetChannel, "", Channel.Get());
    t.Row(&D::GetHardDevice, "", nullptr);
    t.Place(&D::SetChainIndex);
    t.Place(&D::SetChannel);
    t.Place(&D::SetHardDevice);
    t.Place(&D::GetDriver);
    t.Row(&D::GetCoreNumber87, "c3 d87 c4", 0);
    t.Row(&D::GetCoreNumber88, "c3 d88 c4", 0);
    t.Row(&D::GetCoreNumber89, "d89", 0);
    t.Row(&D::GetByteOrder, "d90", -1);
    t.Row(&D::GetCoreItem91, "d91", nullptr);
    t.Row(&D::GetCoreItem92, "d92", nullptr);
    t.Row(&D::GetCoreText93, "d93", u"");
    t.Place(&D::GetUniqueId);
    t.Row(&D::GetEmptyText, "", u"");
    t.Row(&D::GetStatusText, "d102 d101", u"Running");
    t.Row(&D::GetCoreNumber52, "d52", 0);
    t.Commands(94, &D::RunControl94, &D::SingleStep, &D::RunControl96, &D::ResetProcessor,
               &D::PauseProcessor, &D::ContinueProcessor, &D::RunSteps);
    t.Forwards(101, 0, &D::IsPaused, &D::IsReset, &D::GetCoreNumber103);
    t.Constants(0, &D::GetBreakpointCount, &D::GetRegisterCount, &D::GetMemorySpaceCount);
    t.Row(&D::GetMemorySpace, "", nullptr);
    t.Row(&D::GetRegister, "", nullptr);
    t.Row(&D::GetProgramCounterRegister, "d68", nullptr);
    t.Row(&D::GetSecondRegister, "d69", nullptr);
    t.Row(&D::GetMainMemorySpace, "d80", nullptr);
    t.Row(&D::FindBreakpoint, "", nullptr);
    t.Row(&D::AddBreakpoint, "", nullptr);
    t.Row(&D::RemoveBreakpoint, "", False32);
    t.Row(&D::RemoveAllBreakpoints, "");
    t.Rows(&D::ReadRegisterNumber, "c3 c9 c4", "c3 c9 c4", 0U);
    t.Rows(&D::WriteRegisterNumber, "c3 c9 c4", "c3 c9 c4");
    t.Rows(&D::ReadRegisterText, "c3 c9 c4", "c3 c9 c4", "");
    const char* const writtenText = "c3 c31 c35 c18 c35 c35 c20 c35 c4";
    t.Rows(&D::WriteRegisterText, writtenText, writtenText);
    t.Row(&D::HasAboutInfo, "d55 d56", False32);
    t.Row(&D::GetAboutInfo, "d56", nullptr);
    t.Row(&D::ShowAbout, "about");
    t.Row(&D::HasAttribute, "d57", True32);
    t.Row(&D::GetCoreNumber86, "d86", -1);
    t.RowThatCounts(&D::BeginHalt, "d101 d102 d98", "");
    t.RowThatCounts(&D::EndHalt, "d99", "");
    t.Row(&D::RunDiagnostic, "c3 d85 c4", -1);
    t.Row(&D::GetCoreText59, "d59", u"");
    t.Row(&D::GetCoreNumber60, "d60", 0);
    t.Row(&D::GetCoreNumber61, "d61", 0);
    t.Row(&D::GetCoreNumber105, "d105", 0);
    t.Row(&D::GetCoreNumber106, "d106", 0);
    t.Row(&D::CoreAction107, "d107");
    t.Row(&D::GetCoreFlag110, "d110", False32);
    t.Row(&D::GetCoreText111, "d111", u"");
    t.Row(&D::GetCoreFlag113, "d113", False32);
    t.Row(&D::CoreAction114, "d114");
    t.Row(&D::NotifyReleased, "d115");
    t.Row(&D::GetCoreFlag116, "d116", False32);
    t.Row(&D::CoreAction117, "d117");
    t.Row(&D::CoreAction118, "d118");
    t.Row(&D::CoreCommand119, "d119", False32);
    t.Row(&D::GetCoreFlag120, "d120", False32);
    t.Row(&D::GetCoreNumber121, "d121", -1);
    t.Row(&D::CoreAction122, "d122");
    EXPECT_EQ(t.Count(), 115);
    EXPECT_EQ(t.FailureCount(), 106);

    EXPECT_EQ(driven.GetKind(), u"Unknown");
    EXPECT_EQ(TakeCalls(), "d48");
    EXPECT_NE(driven.GetIdentity(), bare.GetIdentity());
}

// Runs, pauses, and says what it was told.
class TProcessor : public TDriverBase {
public:
    Status GetRegisterCount(std::int32_t& value) noexcept override { return Give(value, 1 << 30); }
    Status GetProgramCounterIndex(std::int32_t& value) noexcept override { return Give(value, 7); }
    Status IsPaused(Bool32& value) noexcept override { return Give(value, Paused); }
    Status IsReset(Bool32& value) noexcept override { return Give(value, Reset); }
    Status PauseProcessor() noexcept override { return Say("pause"), Give(Paused, True32); }
    Status ContinueProcessor() noexcept override { return Say("continue"), Give(Paused, False32); }
    Status CoreAction118(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d,
                         std::int32_t e, std::int32_t f) noexcept override {
        return Say(std::to_string(((((a * 10 + b) * 10 + c) * 10 + d) * 10 + e) * 10 + f));
    }
    Status CoreCommand119(const WideText& a, const WideText& b, const WideText& c,
                          Bool32& done) noexcept override {
        return Say(ToUtf8(a + b + c)), Give(done, True32);
    }
    Status GetCoreNumber121(std::int32_t argument, std::int32_t& value) noexcept override {
        return Give(value, argument);
    }

    Bool32 Paused = False32;
    Bool32 Reset = False32;

private:
    static Status Say(const std::string& text) { return Record(text), StatusOk; }
};

TEST_F(SoftDevice, HandsArgumentsAndResultsThrough) {
    TProcessor processor;
    TVorelDevice device(Host, Dialogs, &processor);
    Bool32 done = False32;
    std::int32_t value = 0;
    EXPECT_EQ(device.CoreAction118(1, 2, 3, 4, 5, 6), StatusOk);
    EXPECT_EQ(device.CoreCommand119(u"x", u"y", u"z", done), StatusOk);
    EXPECT_EQ(device.GetCoreNumber121(-7, value), StatusOk);
    EXPECT_EQ(TakeCalls(), "123456 xyz");
    EXPECT_EQ(done, True32);
    EXPECT_EQ(value, -7);
}

TEST_F(SoftDevice, BelievesNoAbsurdRegisterCount) {
    TProcessor processor;
    TVorelDevice device(Host, Dialogs, &processor);
    std::int32_t count = 0;
    IProcessorRegister* found = nullptr;
    EXPECT_EQ(device.GetRegisterCount(count), StatusOk);
    EXPECT_EQ(count, TVorelDevice::MaxListLength);
    EXPECT_EQ(device.GetProgramCounterRegister(found), StatusOk);
    ASSERT_NE(found, nullptr);
    EXPECT_EQ(found->GetIndex(count), StatusOk);
    EXPECT_EQ(count, 7);
    EXPECT_EQ(device.GetRegister(-1, found), StatusOk);
    EXPECT_EQ(found, nullptr);
}

TEST_F(SoftDevice, HaltsNestAndResumeOnlyWhatRan) {
    TProcessor processor;
    TVorelDevice device(Host, Dialogs, &processor);
    const auto bracket = [&](int begins, int ends) {
        for (int i = 0; i < begins; ++i) {
            EXPECT_EQ(device.BeginHalt(), StatusOk);
        }
        for (int i = 0; i < ends; ++i) {
            EXPECT_EQ(device.EndHalt(), StatusOk);
        }
        return TakeCalls();
    };
    EXPECT_EQ(bracket(0, 1), "");
    EXPECT_EQ(bracket(2, 1), "pause");
    EXPECT_EQ(bracket(0, 2), "continue");
    EXPECT_EQ(bracket(1, 1), "pause continue") << "an end too many must not count";
    processor.Paused = True32;
    EXPECT_EQ(bracket(2, 2), "");
    processor.Paused = False32;
    processor.Reset = True32;
    EXPECT_EQ(bracket(1, 1), "");
}

std::string At(std::int32_t device) {
    return "@" + std::to_string(device);
}

TEST_F(SoftDevice, RegisterPortSendsAddressAndDataUnderOneInstruction) {
    using C = IJTagChannel;
    Channel.Replace(
        &C::GetDeviceCount, +[](C*, std::int32_t& n) -> Status { return n = 3, StatusOk; });
    Channel.Replace(
        &C::ScanIrWrite, +[](C*, std::uint32_t value, std::int32_t device) -> Status {
            return Record("ir" + std::to_string(value) + At(device)), StatusOk;
        });
    Channel.Replace(
        &C::TapMove, +[](C*, std::int32_t from, std::int32_t to) -> Status {
            return Record(std::to_string(from) + ">" + std::to_string(to)), StatusOk;
        });
    Channel.Replace(
        &C::WriteDr, +[](C*, std::uint32_t value, std::int32_t bits, std::int32_t device) {
            Record("w" + std::to_string(value) + "/" + std::to_string(bits) + At(device));
            return StatusOk;
        });
    Channel.Replace(
        &C::ExchangeDr,
        +[](C*, std::uint32_t value, std::int32_t bits, std::int32_t device, std::uint32_t& got) {
            Record("x" + std::to_string(value) + "/" + std::to_string(bits) + At(device));
            return got = 0xCAFE, StatusOk;
        });
    Channel.Replace(
        &C::WriteDrText, +[](C*, const BitText& bits, std::int32_t device) -> Status {
            return Record("w" + bits + At(device)), StatusOk;
        });
    Channel.Replace(
        &C::ExchangeDrText, +[](C*, const BitText& bits, std::int32_t device, BitText& got) {
            Record("x" + bits + At(device));
            return got = "101", StatusOk;
        });
    TVorelDevice device(Host, Dialogs, nullptr);
    std::uint32_t value = 1;
    BitText bits = "1";
    EXPECT_EQ(device.ReadRegisterNumber(5, 16, value), StatusOk);
    EXPECT_EQ(TakeCalls() + std::to_string(value), "0") << "no channel";
    ASSERT_EQ(device.SetChannel(Channel.Get()), StatusOk);
    ASSERT_EQ(device.SetChainIndex(2), StatusOk);
    EXPECT_EQ(device.ReadRegisterNumber(5, 16, value), StatusOk);
    EXPECT_EQ(TakeCalls(), "c3 ir11@2 2>5 w11/8@2 6>2 2>5 x0/16@2 6>2 c4");
    EXPECT_EQ(value, 0xCAFEU);
    EXPECT_EQ(device.WriteRegisterNumber(0xFF, 32, 9), StatusOk);
    EXPECT_EQ(TakeCalls(), "c3 ir11@2 2>5 w254/8@2 6>2 2>5 w9/32@2 6>2 c4");
    EXPECT_EQ(device.ReadRegisterText(0xFF, 3, bits), StatusOk);
    EXPECT_EQ(TakeCalls(), "c3 ir11@2 2>5 w255/8@2 6>2 2>5 x000@2 6>2 c4");
    EXPECT_EQ(bits, "101");
    ASSERT_EQ(device.SetChainIndex(3), StatusOk);
    EXPECT_EQ(device.WriteRegisterText(0, "0110"), StatusOk);
    EXPECT_EQ(TakeCalls(), "c3 ir11@3 2>5 w0/8@3 6>2 2>5 w0110@3 6>2 c4");
    EXPECT_EQ(device.WriteRegisterNumber(1, 32, 9), StatusOk);
    EXPECT_EQ(device.ReadRegisterText(1, 1 << 30, bits), StatusOk);
    EXPECT_EQ(TakeCalls(), "c3 c4 c3 c4") << "beyond the chain";
    EXPECT_EQ(bits, "");
}

TEST_F(SoftDevice, DescribesItselfByTheEntityAtItsPlace) {
    static TTableDouble<IBSDLEntity> entity;
    static TTableDouble<IJTagDevice> hard;
    entity.Replace(
        &IBSDLEntity::GetName,
        +[](IBSDLEntity*, WideText& name) -> Status { return name = u"XC9", StatusOk; });
    hard.Replace(
        &IJTagDevice::GetBsdlEntity, +[](IJTagDevice*, IBSDLEntity*& found) -> Status {
            return found = entity.Get(), StatusOk;
        });
    Channel.Replace(
        &IJTagChannel::GetDevice, +[](IJTagChannel*, std::int32_t index, IJTagDevice*& found) {
            return found = index == 1 ? hard.Get() : nullptr, StatusOk;
        });
    TVorelDevice device(Host, Dialogs, nullptr);
    ASSERT_EQ(device.SetChannel(Channel.Get()), StatusOk);
    for (const auto& [index, expected] :
         {std::pair(-1, u""), std::pair(0, u""), std::pair(1, u"XC9")}) {
        WideText text = u"old";
        ASSERT_EQ(device.SetChainIndex(index), StatusOk);
        EXPECT_EQ(device.GetDescription(text), StatusOk);
        EXPECT_EQ(text, expected);
    }
}

} // namespace
} // namespace vorel::test
