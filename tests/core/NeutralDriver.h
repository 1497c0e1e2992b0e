// A driver that answers every question with nothing: the base of drivers that tests make up.
#pragma once

#include "support/Objects.h"
#include "vorel/Driver.h"

namespace vorel::test {

class TNeutralDriver : public TNonRefCountedInterfacedObject<IVorelDriver> {
public:
    Status GetIdCode(std::uint32_t&) noexcept override { return StatusOk; }
    Status GetDeviceName(WideText&) noexcept override { return StatusOk; }
    Status GetDescription(WideText&) noexcept override { return StatusOk; }
    Status GetFamily(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText7(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText8(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText9(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText10(WideText&) noexcept override { return StatusOk; }
    Status GetCapacity(std::int32_t&) noexcept override { return StatusOk; }
    Status GetAttributeNumber12(std::int32_t&) noexcept override { return StatusOk; }
    Status GetAttributeText13(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText14(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText15(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText16(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText17(WideText&) noexcept override { return StatusOk; }
    Status GetPackage(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText19(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText20(WideText&) noexcept override { return StatusOk; }
    Status GetTemperatureGrade(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText22(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText23(WideText&) noexcept override { return StatusOk; }
    Status GetSpeedGrade(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText25(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText26(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText27(WideText&) noexcept override { return StatusOk; }
    Status GetAttributeText28(WideText&) noexcept override { return StatusOk; }
    Status GetBsdlFile(WideText&) noexcept override { return StatusOk; }
    Status GetDefaultEntity(IBSDLEntity*&) noexcept override { return StatusOk; }
    Status GetVendor(WideText&) noexcept override { return StatusOk; }
    Status GetIrLength(std::int32_t&) noexcept override { return StatusOk; }
    Status GetPinCount(std::int32_t&) noexcept override { return StatusOk; }
    Status GetIoPinCount(std::int32_t&) noexcept override { return StatusOk; }
    Status GetDescriptionItem(std::int32_t, IInterface*&) noexcept override { return StatusOk; }
    Status GetAttributeText36(WideText&) noexcept override { return StatusOk; }
    Status GetDspMultipliers(std::int32_t&) noexcept override { return StatusOk; }
    Status GetClockManagers(std::int32_t&) noexcept override { return StatusOk; }
    Status GetEmbeddedRam(std::int32_t&) noexcept override { return StatusOk; }
    Status GetOnChipTermination(Bool32&) noexcept override { return StatusOk; }
    Status GetGlobalClocks(std::int32_t&) noexcept override { return StatusOk; }
    Status GetConfigMemory(std::int32_t&) noexcept override { return StatusOk; }
    Status GetDifferentialPairs(std::int32_t&) noexcept override { return StatusOk; }
    Status GetHighSpeedPairs(std::int32_t&) noexcept override { return StatusOk; }
    Status GetAttributeNumber45(std::int32_t&) noexcept override { return StatusOk; }
    Status GetAttributeItem46(std::int32_t, IInterface*&) noexcept override { return StatusOk; }
    Status GetDisplayName(WideText&) noexcept override { return StatusOk; }
    Status GetKind(WideText&) noexcept override { return StatusOk; }
    Status GetCoreText49(WideText&) noexcept override { return StatusOk; }
    Status SetDevice(IVorelDevice*) noexcept override { return StatusOk; }
    Status GetCoreNumber51(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreNumber52(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreNumber53(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreNumber54(std::int32_t&) noexcept override { return StatusOk; }
    Status PrepareAboutInfo() noexcept override { return StatusOk; }
    Status GetAboutInfo(IInterface*&) noexcept override { return StatusOk; }
    Status HasAttribute(const WideText&, Bool32&) noexcept override { return StatusOk; }
    Status GetCoreNumber58(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreText59(WideText&) noexcept override { return StatusOk; }
    Status GetCoreNumber60(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreNumber61(std::int32_t&) noexcept override { return StatusOk; }
    Status WriteRegister(std::int32_t, std::uint32_t, std::int32_t&) noexcept override {
        return StatusOk;
    }
    Status ReadRegister(std::int32_t, std::uint32_t&) noexcept override { return StatusOk; }
    Status GetRegisterAttributeNumber(std::int32_t, std::int32_t&) noexcept override {
        return StatusOk;
    }
    Status GetRegisterName(std::int32_t, WideText&) noexcept override { return StatusOk; }
    Status GetRegisterAttributeText(std::int32_t, WideText&) noexcept override { return StatusOk; }
    Status GetRegisterCount(std::int32_t&) noexcept override { return StatusOk; }
    Status GetProgramCounterIndex(std::int32_t&) noexcept override { return StatusOk; }
    Status GetSecondRegisterIndex(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreNumber70(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreNumber71(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreNumber72(std::int32_t&) noexcept override { return StatusOk; }
    Status GetMemoryWidth(std::int32_t, std::int32_t&) noexcept override { return StatusOk; }
    Status GetMemorySize(std::int32_t, std::int64_t&) noexcept override { return StatusOk; }
    Status GetMemoryAttributeNumber75(std::int32_t, std::int32_t&) noexcept override {
        return StatusOk;
    }
    Status GetMemoryAttributeNumber76(std::int32_t, std::int32_t&) noexcept override {
        return StatusOk;
    }
    Status GetMemoryName(std::int32_t, WideText&) noexcept override { return StatusOk; }
    Status GetMemoryAttributeText(std::int32_t, WideText&) noexcept override { return StatusOk; }
    Status GetMemorySpaceCount(std::int32_t&) noexcept override { return StatusOk; }
    Status GetMainMemoryIndex(std::int32_t&) noexcept override { return StatusOk; }
    Status ReadMemory(std::int32_t, std::uint32_t*, std::int64_t, std::int32_t,
                      std::int32_t&) noexcept override {
        return StatusOk;
    }
    Status WriteMemory(std::int32_t, const std::uint32_t*, std::int64_t, std::int32_t,
                       std::int32_t&) noexcept override {
        return StatusOk;
    }
    Status MemoryAction83(std::int32_t, std::int32_t&) noexcept override { return StatusOk; }
    Status MemoryAction84(std::int32_t, std::int32_t&) noexcept override { return StatusOk; }
    Status RunDiagnostic(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreNumber86(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreNumber87(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreNumber88(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreNumber89(std::int32_t, std::int32_t&) noexcept override { return StatusOk; }
    Status GetByteOrder(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreItem91(IInterface*&) noexcept override { return StatusOk; }
    Status GetCoreItem92(IInterface*&) noexcept override { return StatusOk; }
    Status GetCoreText93(WideText&) noexcept override { return StatusOk; }
    Status RunControl94() noexcept override { return StatusOk; }
    Status SingleStep() noexcept override { return StatusOk; }
    Status RunControl96() noexcept override { return StatusOk; }
    Status ResetProcessor() noexcept override { return StatusOk; }
    Status PauseProcessor() noexcept override { return StatusOk; }
    Status ContinueProcessor() noexcept override { return StatusOk; }
    Status RunSteps(std::int32_t) noexcept override { return StatusOk; }
    Status IsPaused(Bool32&) noexcept override { return StatusOk; }
    Status IsReset(Bool32&) noexcept override { return StatusOk; }
    Status GetCoreNumber103(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreNumber104(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreNumber105(std::int32_t&) noexcept override { return StatusOk; }
    Status GetCoreNumber106(std::int32_t, std::int32_t&) noexcept override { return StatusOk; }
    Status CoreAction107() noexcept override { return StatusOk; }
    Status WriteRegisterText(std::int32_t, const WideText&, std::int32_t&) noexcept override {
        return StatusOk;
    }
    Status ReadRegisterText(std::int32_t, WideText&) noexcept override { return StatusOk; }
    Status GetCoreFlag110(std::int32_t, Bool32&) noexcept override { return StatusOk; }
    Status GetCoreText111(std::int32_t, WideText&) noexcept override { return StatusOk; }
    Status GetImplementingObject(IDriverObject*&) noexcept override { return StatusOk; }
    Status GetCoreFlag113(Bool32&) noexcept override { return StatusOk; }
    Status CoreAction114() noexcept override { return StatusOk; }
    Status NotifyReleased() noexcept override { return StatusOk; }
    Status GetCoreFlag116(Bool32&) noexcept override { return StatusOk; }
    Status CoreAction117(std::int32_t) noexcept override { return StatusOk; }
    Status CoreAction118(std::int32_t, std::int32_t, std::int32_t, std::int32_t, std::int32_t,
                         std::int32_t) noexcept override {
        return StatusOk;
    }
    Status CoreCommand119(const WideText&, const WideText&, const WideText&,
                          Bool32&) noexcept override {
        return StatusOk;
    }
    Status GetCoreFlag120(Bool32&) noexcept override { return StatusOk; }
    Status GetCoreNumber121(std::int32_t, std::int32_t&) noexcept override { return StatusOk; }
    Status CoreAction122(std::int32_t) noexcept override { return StatusOk; }
};

} // namespace vorel::test
