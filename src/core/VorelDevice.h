// A soft device: a processor, a memory or an instrument that can be debugged.
//
// It holds no knowledge of any kind of processor; that lives in its driver. The device puts the
// driver on a chain, gives it the register port there, and turns its counts of registers and
// memories into objects. Almost every operation is one line below: the driver's entry that answers
// it, and what it gives without a driver. That value is also set up before the driver is asked, so
// a driver that leaves an out value alone leaves it. `AskLocked` holds the channel's lock around
// the call. Failures of driver, channel and host come out as their statuses.
#pragma once

#include "core/DriverLink.h"
#include "support/Objects.h"
#include "vorel/VorelDevice.h"

#include <memory>
#include <vector>

namespace vorel {

class IHostClient;
class IUserDialogs;
class TMemorySpace;
class TProcessorRegister;

// Owned by the device manager. The driver and the device know each other: the driver gets the
// device's interface when it is made and may keep it, uncounted, as long as the device lives.
class TVorelDevice : public TNonRefCountedInterfacedObject<IVorelDevice> {
public:
    // More registers or memories than this are not believed; the rest stays out of reach.
    static constexpr std::int32_t MaxListLength = 65536;

    // `driver` may be null. Host and dialogs outlive the device. Asks the host for the unique id
    // and the driver for its counts; their failures raise.
    TVorelDevice(IHostClient& host, IUserDialogs& dialogs, IVorelDriver* driver);
    ~TVorelDevice() override;

    const WideText& GetIdentity() const noexcept { return UniqueId; }
    TDriverLink& GetLink() noexcept { return Link; }
    // What the driver calls its kind of device; "Unknown" without one. Raises on failure.
    WideText GetKind();

    // What the part is.
    Status GetIdCode(std::uint32_t& idCode) noexcept override {
        return Link.AskLocked(&Entry::GetIdCode, idCode, 0U);
    }
    Status GetDeviceName(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetDeviceName, text, u"Unknown Device");
    }
    Status GetDescription(WideText& text) noexcept override;
    Status GetFamily(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetFamily, text, u"");
    }
    Status GetAttributeText7(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText7, text, u"");
    }
    Status GetAttributeText8(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText8, text, u"");
    }
    Status GetAttributeText9(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText9, text, u"");
    }
    Status GetAttributeText10(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText10, text, u"");
    }
    Status GetCapacity(std::int32_t& value) noexcept override {
        return Link.Ask(&Entry::GetCapacity, value, -1);
    }
    Status GetCapacityAgain(std::int32_t& value) noexcept override {
        return Link.Ask(&Entry::GetCapacity, value, -1);
    }
    Status GetAttributeText13(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText13, text, u"");
    }
    Status GetAttributeText14(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText14, text, u"");
    }
    Status GetAttributeText15(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText15, text, u"");
    }
    Status GetAttributeText16(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText16, text, u"");
    }
    Status GetAttributeText17(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText17, text, u"");
    }
    Status GetPackage(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetPackage, text, u"");
    }
    Status GetAttributeText19(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText19, text, u"");
    }
    Status GetAttributeText20(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText20, text, u"");
    }
    Status GetTemperatureGrade(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetTemperatureGrade, text, u"");
    }
    Status GetAttributeText22(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText22, text, u"");
    }
    Status GetAttributeText23(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText23, text, u"");
    }
    Status GetSpeedGrade(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetBsdlFile, text, u"");
    }
    Status GetAttributeText25(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText25, text, u"");
    }
    Status GetAttributeText26(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText26, text, u"");
    }
    Status GetAttributeText27(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText27, text, u"");
    }
    Status GetAttributeText28(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText28, text, u"");
    }
    Status GetBsdlFile(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetBsdlFile, text, u"");
    }
    Status GetDefaultEntity(IBSDLEntity*& entity) noexcept override {
        return Link.Ask(&Entry::GetDefaultEntity, entity, nullptr);
    }
    Status GetVendor(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetVendor, text, u"");
    }
    Status GetIrLength(std::int32_t& value) noexcept override {
        return Link.Ask(&Entry::GetIrLength, value, 4);
    }
    Status GetPinCount(std::int32_t& value) noexcept override {
        return Link.Ask(&Entry::GetPinCount, value, 0);
    }
    Status GetIoPinCount(std::int32_t& value) noexcept override {
        return Link.Ask(&Entry::GetIoPinCount, value, -1);
    }
    Status GetDescriptionItem(std::int32_t index, IInterface*& item) noexcept override {
        return Link.Ask(&Entry::GetDescriptionItem, item, nullptr, index);
    }
    Status GetAttributeText36(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetAttributeText36, text, u"");
    }
    // Resources of physical parts, which a soft device has none of: the driver is not asked.
    Status GetDspMultipliers(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetClockManagers(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetEmbeddedRam(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetOnChipTermination(Bool32& value) noexcept override { return Give(value, False32); }
    Status GetGlobalClocks(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetConfigMemory(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetDifferentialPairs(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetHighSpeedPairs(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetAttributeNumber45(std::int32_t& value) noexcept override { return Give(value, 0); }
    Status GetAttributeItem46(std::int32_t, IInterface*& item) noexcept override {
        return Give(item, nullptr);
    }

    // Where it is, and whose.
    Status GetDisplayName(WideText& text) noexcept override;
    Status GetChainIndex(std::int32_t& value) noexcept override { return Give(value, ChainIndex); }
    Status GetChannel(IJTagChannel*& channel) noexcept override {
        return Give(channel, Link.GetChannel());
    }
    Status GetHardDevice(IInterface*& device) noexcept override { return Give(device, HardDevice); }
    Status SetChainIndex(std::int32_t index) noexcept override { return Give(ChainIndex, index); }
    Status SetChannel(IJTagChannel* channel) noexcept override;
    Status SetHardDevice(IInterface* device) noexcept override { return Give(HardDevice, device); }
    Status GetDriver(IVorelDriver*& driver) noexcept override {
        return Give(driver, Link.GetDriver());
    }
    Status GetCoreNumber87(std::int32_t& value) noexcept override {
        return Link.AskLocked(&Entry::GetCoreNumber87, value, 0);
    }
    Status GetCoreNumber88(std::int32_t& value) noexcept override {
        return Link.AskLocked(&Entry::GetCoreNumber88, value, 0);
    }
    Status GetCoreNumber89(std::int32_t argument, std::int32_t& value) noexcept override {
        return Link.Ask(&Entry::GetCoreNumber89, value, 0, argument);
    }
    Status GetByteOrder(std::int32_t& value) noexcept override {
        return Link.Ask(&Entry::GetByteOrder, value, -1);
    }
    Status GetCoreItem91(IInterface*& item) noexcept override {
        return Link.Ask(&Entry::GetCoreItem91, item, nullptr);
    }
    Status GetCoreItem92(IInterface*& item) noexcept override {
        return Link.Ask(&Entry::GetCoreItem92, item, nullptr);
    }
    Status GetCoreText93(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetCoreText93, text, u"");
    }
    Status GetUniqueId(WideText& text) noexcept override { return Give(text, UniqueId); }
    Status GetEmptyText(WideText& text) noexcept override { return Give(text, u""); }
    Status GetStatusText(WideText& text) noexcept override;
    Status GetCoreNumber52(std::int32_t& value) noexcept override {
        return Link.Ask(&Entry::GetCoreNumber52, value, 0);
    }

    // Run control. The device keeps no copy of the processor's state.
    Status RunControl94() noexcept override { return Link.Tell(&Entry::RunControl94); }
    Status SingleStep() noexcept override { return Link.Tell(&Entry::SingleStep); }
    Status RunControl96() noexcept override { return Link.Tell(&Entry::RunControl96); }
    Status ResetProcessor() noexcept override { return Link.Tell(&Entry::ResetProcessor); }
    Status PauseProcessor() noexcept override { return Link.Tell(&Entry::PauseProcessor); }
    Status ContinueProcessor() noexcept override { return Link.Tell(&Entry::ContinueProcessor); }
    Status RunSteps(std::int32_t count) noexcept override {
        return Link.Tell(&Entry::RunSteps, count);
    }
    Status IsPaused(Bool32& value) noexcept override {
        return Link.Ask(&Entry::IsPaused, value, False32);
    }
    Status IsReset(Bool32& value) noexcept override {
        return Link.Ask(&Entry::IsReset, value, False32);
    }
    Status GetCoreNumber103(std::int32_t& value) noexcept override {
        return Link.Ask(&Entry::GetCoreNumber103, value, 0);
    }

    // Registers, memories and breakpoints.
    Status GetBreakpointCount(std::int32_t& value) noexcept override;
    Status GetRegisterCount(std::int32_t& value) noexcept override;
    Status GetMemorySpaceCount(std::int32_t& value) noexcept override;
    Status GetMemorySpace(std::int32_t index, IMemorySpace*& space) noexcept override;
    Status GetRegister(std::int32_t index,
                       IProcessorRegister*& processorRegister) noexcept override;
    Status GetProgramCounterRegister(IProcessorRegister*& processorRegister) noexcept override;
    Status GetSecondRegister(IProcessorRegister*& processorRegister) noexcept override;
    Status GetMainMemorySpace(IMemorySpace*& space) noexcept override;
    Status FindBreakpoint(std::int32_t space, std::int64_t address,
                          IVorelBreakpoint*& breakpoint) noexcept override;
    // When the target has hardware breakpoints and none is left, the user is told so.
    Status AddBreakpoint(std::int32_t space, std::int64_t address,
                         IVorelBreakpoint*& breakpoint) noexcept override;
    Status RemoveBreakpoint(std::int32_t space, std::int64_t address,
                            Bool32& removed) noexcept override;
    Status RemoveAllBreakpoints() noexcept override;

    // The register port on the chain. Without a channel, and (but for WriteRegisterText) with a
    // chain index outside the chain, nothing is shifted.
    Status ReadRegisterNumber(std::uint8_t registerNumber, std::int32_t bitCount,
                              std::uint32_t& value) noexcept override;
    Status WriteRegisterNumber(std::uint8_t registerNumber, std::int32_t bitCount,
                               std::uint32_t value) noexcept override;
    Status ReadRegisterText(std::uint8_t registerNumber, std::int32_t bitCount,
                            BitText& bits) noexcept override;
    Status WriteRegisterText(std::uint8_t registerNumber, const BitText& bits) noexcept override;

    // The rest.
    Status HasAboutInfo(Bool32& value) noexcept override;
    Status GetAboutInfo(IInterface*& item) noexcept override {
        return Link.Ask(&Entry::GetAboutInfo, item, nullptr);
    }
    Status ShowAbout() noexcept override;
    // True for any word without a driver.
    Status HasAttribute(const WideText& word, Bool32& value) noexcept override {
        return Link.Ask(&Entry::HasAttribute, value, True32, word);
    }
    Status GetCoreNumber86(std::int32_t& value) noexcept override {
        return Link.Ask(&Entry::GetCoreNumber86, value, -1);
    }
    Status BeginHalt() noexcept override;
    Status EndHalt() noexcept override;
    Status RunDiagnostic(std::int32_t& value) noexcept override {
        return Link.AskLocked(&Entry::RunDiagnostic, value, -1);
    }
    Status GetCoreText59(WideText& text) noexcept override {
        return Link.Ask(&Entry::GetCoreText59, text, u"");
    }
    Status GetCoreNumber60(std::int32_t& value) noexcept override {
        return Link.Ask(&Entry::GetCoreNumber60, value, 0);
    }
    Status GetCoreNumber61(std::int32_t& value) noexcept override {
        return Link.Ask(&Entry::GetCoreNumber61, value, 0);
    }
    Status GetCoreNumber105(std::int32_t& value) noexcept override {
        return Link.Ask(&Entry::GetCoreNumber105, value, 0);
    }
    Status GetCoreNumber106(std::int32_t argument, std::int32_t& value) noexcept override {
        return Link.Ask(&Entry::GetCoreNumber106, value, 0, argument);
    }
    Status CoreAction107() noexcept override { return Link.Tell(&Entry::CoreAction107); }
    Status GetCoreFlag110(std::int32_t argument, Bool32& value) noexcept override {
        return Link.Ask(&Entry::GetCoreFlag110, value, False32, argument);
    }
    Status GetCoreText111(std::int32_t argument, WideText& text) noexcept override {
        return Link.Ask(&Entry::GetCoreText111, text, u"", argument);
    }
    Status GetCoreFlag113(Bool32& value) noexcept override {
        return Link.Ask(&Entry::GetCoreFlag113, value, False32);
    }
    Status CoreAction114() noexcept override { return Link.Tell(&Entry::CoreAction114); }
    Status NotifyReleased() noexcept override { return Link.Tell(&Entry::NotifyReleased); }
    Status GetCoreFlag116(Bool32& value) noexcept override {
        return Link.Ask(&Entry::GetCoreFlag116, value, False32);
    }
    Status CoreAction117(std::int32_t argument) noexcept override {
        return Link.Tell(&Entry::CoreAction117, argument);
    }
    Status CoreAction118(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d,
                         std::int32_t e, std::int32_t f) noexcept override {
        return Link.Tell(&Entry::CoreAction118, a, b, c, d, e, f);
    }
    Status CoreCommand119(const WideText& a, const WideText& b, const WideText& c,
                          Bool32& done) noexcept override {
        return Link.Ask(&Entry::CoreCommand119, done, False32, a, b, c);
    }
    Status GetCoreFlag120(Bool32& value) noexcept override {
        return Link.Ask(&Entry::GetCoreFlag120, value, False32);
    }
    Status GetCoreNumber121(std::int32_t argument, std::int32_t& value) noexcept override {
        return Link.Ask(&Entry::GetCoreNumber121, value, -1, argument);
    }
    Status CoreAction122(std::int32_t argument) noexcept override {
        return Link.Tell(&Entry::CoreAction122, argument);
    }

private:
    using Entry = IVorelDriver;

    template<class Out, class Value>
    static Status Give(Out& out, const Value& value) noexcept {
        return Guard([&] { out = value; });
    }
    // The driver's optional breakpoint interface; empty without it.
    Ref<IVorelBreakpoints> QueryBreakpoints() const noexcept;
    void TellOfMissingBreakpoint(IVorelBreakpoints& breakpoints);
    bool IsHalted();

    IHostClient& Host;
    IUserDialogs& Dialogs;
    TDriverLink Link;
    std::vector<std::unique_ptr<TProcessorRegister>> Registers;
    std::vector<std::unique_ptr<TMemorySpace>> Memories;
    bool ResumeNeeded = false; // BeginHalt stopped a running processor
    std::int32_t HaltCount = 0;
    std::int32_t ChainIndex = -1;
    IInterface* HardDevice = nullptr;
    WideText UniqueId;
};

// A soft device that was made for a caller and stands on no list: it starts with no reference and
// goes with its last one. Give it back before the library is unloaded, while its driver's module is
// still there.
class TOwnedVorelDevice final : public TVorelDevice {
public:
    using TVorelDevice::TVorelDevice;

    std::int32_t AddRef() noexcept override { return ++References; }
    std::int32_t Release() noexcept override;

private:
    std::atomic<std::int32_t> References{0};
};

} // namespace vorel
