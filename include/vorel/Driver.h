// The contract of driver modules: what a module exports and the table that each of its drivers has.
//
// A module is a dynamic library with the extension .VOR beside the library itself. It exports the
// two functions named below. Modules are separate binaries, so the order of the operations is part
// of the contract: entry n of the table is the n-th operation, the three reference counting
// operations being 0 to 2. The same table describes physical parts (entries 3 to 47) and drives
// soft devices (the rest). Entries that only carry a number are passed on unread.
#pragma once

#include "vorel/Interface.h"

namespace vorel {

class IBSDLEntity;
class IVorelDevice;

// The object that implements a driver. It belongs to whoever called GetVorelDriver.
class IDriverObject {
public:
    virtual void Free() noexcept = 0;

protected:
    ~IDriverObject() = default;
};

// One breakpoint; owned by the driver that gave it.
class IVorelBreakpoint : public IInterface {
public:
    static constexpr Guid Id{
        0x2CB0DBEF, 0xA051, 0x4D73, {0xB5, 0x92, 0x1E, 0xE7, 0xA9, 0x65, 0x06, 0x45}};

    virtual Status Reserved3() noexcept { return StatusNotSupported; }
    virtual Status Reserved4() noexcept { return StatusNotSupported; }
    virtual Status Reserved5() noexcept { return StatusNotSupported; }
    virtual Status Reserved6() noexcept { return StatusNotSupported; }
    virtual Status Reserved7() noexcept { return StatusNotSupported; }
    virtual Status Reserved8() noexcept { return StatusNotSupported; }
    virtual Status Reserved9() noexcept { return StatusNotSupported; }
    // Asked for once when a breakpoint was added; the driver defines the number.
    virtual Status GetNumber10(std::int32_t& value) noexcept = 0;

protected:
    ~IVorelBreakpoint() = default;
};

// Breakpoints of a processor: an optional interface of a driver. Spaces are memory space indices,
// addresses locations.
class IVorelBreakpoints : public IInterface {
public:
    static constexpr Guid Id{
        0x12A4AFC9, 0xD5E7, 0x451F, {0x86, 0x64, 0xCF, 0xA2, 0x83, 0xA1, 0xBC, 0x94}};

    virtual Status Reserved3() noexcept { return StatusNotSupported; }
    virtual Status Reserved4() noexcept { return StatusNotSupported; }
    virtual Status Reserved5() noexcept { return StatusNotSupported; }
    virtual Status Reserved6() noexcept { return StatusNotSupported; }
    // Null when the breakpoint cannot be had.
    virtual Status Add(std::int32_t space, std::int64_t address,
                       IVorelBreakpoint*& breakpoint) noexcept = 0;
    virtual Status Reserved8() noexcept { return StatusNotSupported; }
    virtual Status Remove(IVorelBreakpoint* breakpoint) noexcept = 0;
    virtual Status Reserved10() noexcept { return StatusNotSupported; }
    virtual Status Reserved11() noexcept { return StatusNotSupported; }
    virtual Status Reserved12() noexcept { return StatusNotSupported; }
    virtual Status Reserved13() noexcept { return StatusNotSupported; }
    virtual Status Reserved14() noexcept { return StatusNotSupported; }
    virtual Status Reserved15() noexcept { return StatusNotSupported; }
    virtual Status Reserved16() noexcept { return StatusNotSupported; }
    virtual Status Reserved17() noexcept { return StatusNotSupported; }
    virtual Status Reserved18() noexcept { return StatusNotSupported; }
    // Null when there is none.
    virtual Status Find(std::int32_t space, std::int64_t address,
                        IVorelBreakpoint*& breakpoint) noexcept = 0;
    virtual Status Reserved20() noexcept { return StatusNotSupported; }
    // Two lists, as the driver keeps them; items may leave while a caller walks up the indices.
    virtual Status CountA(std::int32_t& count) noexcept = 0;
    virtual Status CountB(std::int32_t& count) noexcept = 0;
    virtual Status GetA(std::int32_t index, IVorelBreakpoint*& breakpoint) noexcept = 0;
    virtual Status GetB(std::int32_t index, IVorelBreakpoint*& breakpoint) noexcept = 0;
    virtual Status Reserved25() noexcept { return StatusNotSupported; }
    virtual Status Reserved26() noexcept { return StatusNotSupported; }
    virtual Status Reserved27() noexcept { return StatusNotSupported; }
    virtual Status Reserved28() noexcept { return StatusNotSupported; }
    virtual Status Reserved29() noexcept { return StatusNotSupported; }
    virtual Status Reserved30() noexcept { return StatusNotSupported; }
    // Number of hardware breakpoints that the target has.
    virtual Status HardwareLimit(std::int32_t& count) noexcept = 0;

protected:
    ~IVorelBreakpoints() = default;
};

class IVorelDriver : public IInterface {
public:
    static constexpr Guid Id{
        0x9C750857, 0x41D6, 0x4515, {0xA7, 0x6F, 0x87, 0x5F, 0x70, 0x31, 0xBF, 0x4D}};

    virtual Status GetIdCode(std::uint32_t& idCode) noexcept = 0;
    // The key by which the device is known everywhere; empty for a driver that is no device.
    virtual Status GetDeviceName(WideText& text) noexcept = 0;
    virtual Status GetDescription(WideText& text) noexcept = 0;
    virtual Status GetFamily(WideText& text) noexcept = 0;
    virtual Status GetAttributeText7(WideText& text) noexcept = 0;
    virtual Status GetAttributeText8(WideText& text) noexcept = 0;
    virtual Status GetAttributeText9(WideText& text) noexcept = 0;
    // Entry 10:
    virtual Status GetAttributeText10(WideText& text) noexcept = 0;
    // Memory size, logic cells or macrocells; -1 when not known.
    virtual Status GetCapacity(std::int32_t& value) noexcept = 0;
    virtual Status GetAttributeNumber12(std::int32_t& value) noexcept = 0;
    virtual Status GetAttributeText13(WideText& text) noexcept = 0;
    virtual Status GetAttributeText14(WideText& text) noexcept = 0;
    virtual Status GetAttributeText15(WideText& text) noexcept = 0;
    virtual Status GetAttributeText16(WideText& text) noexcept = 0;
    virtual Status GetAttributeText17(WideText& text) noexcept = 0;
    virtual Status GetPackage(WideText& text) noexcept = 0;
    virtual Status GetAttributeText19(WideText& text) noexcept = 0;
    // Entry 20:
    virtual Status GetAttributeText20(WideText& text) noexcept = 0;
    virtual Status GetTemperatureGrade(WideText& text) noexcept = 0;
    virtual Status GetAttributeText22(WideText& text) noexcept = 0;
    virtual Status GetAttributeText23(WideText& text) noexcept = 0;
    virtual Status GetSpeedGrade(WideText& text) noexcept = 0;
    virtual Status GetAttributeText25(WideText& text) noexcept = 0;
    virtual Status GetAttributeText26(WideText& text) noexcept = 0;
    virtual Status GetAttributeText27(WideText& text) noexcept = 0;
    virtual Status GetAttributeText28(WideText& text) noexcept = 0;
    // A bare file name is looked for below the library folder: BSDL, vendor, family.
    virtual Status GetBsdlFile(WideText& text) noexcept = 0;
    // Entry 30:
    // What to use when there is no BSDL file; stays the driver's, may be null.
    virtual Status GetDefaultEntity(IBSDLEntity*& entity) noexcept = 0;
    virtual Status GetVendor(WideText& text) noexcept = 0;
    // Length of the instruction register in bits.
    virtual Status GetIrLength(std::int32_t& value) noexcept = 0;
    virtual Status GetPinCount(std::int32_t& value) noexcept = 0;
    virtual Status GetIoPinCount(std::int32_t& value) noexcept = 0;
    virtual Status GetDescriptionItem(std::int32_t index, IInterface*& item) noexcept = 0;
    virtual Status GetAttributeText36(WideText& text) noexcept = 0;
    // Counted as 18x18.
    virtual Status GetDspMultipliers(std::int32_t& value) noexcept = 0;
    virtual Status GetClockManagers(std::int32_t& value) noexcept = 0;
    // In units of 1,024 bits.
    virtual Status GetEmbeddedRam(std::int32_t& value) noexcept = 0;
    // Entry 40:
    virtual Status GetOnChipTermination(Bool32& value) noexcept = 0;
    virtual Status GetGlobalClocks(std::int32_t& value) noexcept = 0;
    // Bits.
    virtual Status GetConfigMemory(std::int32_t& value) noexcept = 0;
    virtual Status GetDifferentialPairs(std::int32_t& value) noexcept = 0;
    virtual Status GetHighSpeedPairs(std::int32_t& value) noexcept = 0;
    virtual Status GetAttributeNumber45(std::int32_t& value) noexcept = 0;
    virtual Status GetAttributeItem46(std::int32_t index, IInterface*& item) noexcept = 0;
    virtual Status GetDisplayName(WideText& text) noexcept = 0;
    virtual Status GetKind(WideText& text) noexcept = 0;
    virtual Status GetCoreText49(WideText& text) noexcept = 0;
    // Entry 50:
    // Tells a driver instance which device it serves; the device outlives the call and is not
    // counted.
    virtual Status SetDevice(IVorelDevice* device) noexcept = 0;
    virtual Status GetCoreNumber51(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber52(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber53(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber54(std::int32_t& value) noexcept = 0;
    virtual Status PrepareAboutInfo() noexcept = 0;
    virtual Status GetAboutInfo(IInterface*& item) noexcept = 0;
    // Type words: "PROC", "SPROC", "GPROC", "FPGA", "CPLD", "PROM".
    virtual Status HasAttribute(const WideText& word, Bool32& value) noexcept = 0;
    virtual Status GetCoreNumber58(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreText59(WideText& text) noexcept = 0;
    // Entry 60:
    virtual Status GetCoreNumber60(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber61(std::int32_t& value) noexcept = 0;
    // Registers by index, 0 to GetRegisterCount - 1. Callers drop `result`.
    virtual Status WriteRegister(std::int32_t index, std::uint32_t value,
                                 std::int32_t& result) noexcept = 0;
    virtual Status ReadRegister(std::int32_t index, std::uint32_t& value) noexcept = 0;
    virtual Status GetRegisterAttributeNumber(std::int32_t index, std::int32_t& value) noexcept = 0;
    virtual Status GetRegisterName(std::int32_t index, WideText& name) noexcept = 0;
    virtual Status GetRegisterAttributeText(std::int32_t index, WideText& text) noexcept = 0;
    // Fixed for the life of the instance.
    virtual Status GetRegisterCount(std::int32_t& value) noexcept = 0;
    // Register indices; negative for none.
    virtual Status GetProgramCounterIndex(std::int32_t& value) noexcept = 0;
    virtual Status GetSecondRegisterIndex(std::int32_t& value) noexcept = 0;
    // Entry 70:
    virtual Status GetCoreNumber70(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber71(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber72(std::int32_t& value) noexcept = 0;
    // Memory spaces by index, 0 to GetMemorySpaceCount - 1. Sizes and addresses count locations.
    virtual Status GetMemoryWidth(std::int32_t index, std::int32_t& bits) noexcept = 0;
    virtual Status GetMemorySize(std::int32_t index, std::int64_t& locations) noexcept = 0;
    virtual Status GetMemoryAttributeNumber75(std::int32_t index, std::int32_t& value) noexcept = 0;
    virtual Status GetMemoryAttributeNumber76(std::int32_t index, std::int32_t& value) noexcept = 0;
    virtual Status GetMemoryName(std::int32_t index, WideText& name) noexcept = 0;
    virtual Status GetMemoryAttributeText(std::int32_t index, WideText& text) noexcept = 0;
    // Fixed for the life of the instance.
    virtual Status GetMemorySpaceCount(std::int32_t& value) noexcept = 0;
    // Entry 80:
    // Negative for none.
    virtual Status GetMainMemoryIndex(std::int32_t& value) noexcept = 0;
    // One location in each of `count` 32-bit slots. What lies out of range is the driver's
    // decision. Callers drop `result`.
    virtual Status ReadMemory(std::int32_t index, std::uint32_t* buffer, std::int64_t address,
                              std::int32_t count, std::int32_t& result) noexcept = 0;
    virtual Status WriteMemory(std::int32_t index, const std::uint32_t* buffer,
                               std::int64_t address, std::int32_t count,
                               std::int32_t& result) noexcept = 0;
    virtual Status MemoryAction83(std::int32_t index, std::int32_t& result) noexcept = 0;
    virtual Status MemoryAction84(std::int32_t index, std::int32_t& result) noexcept = 0;
    virtual Status RunDiagnostic(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber86(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber87(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber88(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber89(std::int32_t argument, std::int32_t& value) noexcept = 0;
    // Entry 90:
    // 0 big-endian, any other value little-endian.
    virtual Status GetByteOrder(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreItem91(IInterface*& item) noexcept = 0;
    virtual Status GetCoreItem92(IInterface*& item) noexcept = 0;
    virtual Status GetCoreText93(WideText& text) noexcept = 0;
    virtual Status RunControl94() noexcept = 0;
    virtual Status SingleStep() noexcept = 0;
    virtual Status RunControl96() noexcept = 0;
    virtual Status ResetProcessor() noexcept = 0;
    virtual Status PauseProcessor() noexcept = 0;
    virtual Status ContinueProcessor() noexcept = 0;
    // Entry 100:
    virtual Status RunSteps(std::int32_t count) noexcept = 0;
    virtual Status IsPaused(Bool32& value) noexcept = 0;
    virtual Status IsReset(Bool32& value) noexcept = 0;
    virtual Status GetCoreNumber103(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber104(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber105(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber106(std::int32_t argument, std::int32_t& value) noexcept = 0;
    virtual Status CoreAction107() noexcept = 0;
    virtual Status WriteRegisterText(std::int32_t index, const WideText& text,
                                     std::int32_t& result) noexcept = 0;
    virtual Status ReadRegisterText(std::int32_t index, WideText& text) noexcept = 0;
    // Entry 110:
    virtual Status GetCoreFlag110(std::int32_t argument, Bool32& value) noexcept = 0;
    virtual Status GetCoreText111(std::int32_t argument, WideText& text) noexcept = 0;
    // The object behind the interface, for freeing: drop the interface, then Free the object.
    virtual Status GetImplementingObject(IDriverObject*& object) noexcept = 0;
    virtual Status GetCoreFlag113(Bool32& value) noexcept = 0;
    virtual Status CoreAction114() noexcept = 0;
    // The device was released by its user.
    virtual Status NotifyReleased() noexcept = 0;
    virtual Status GetCoreFlag116(Bool32& value) noexcept = 0;
    virtual Status CoreAction117(std::int32_t argument) noexcept = 0;
    virtual Status CoreAction118(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d,
                                 std::int32_t e, std::int32_t f) noexcept = 0;
    virtual Status CoreCommand119(const WideText& a, const WideText& b, const WideText& c,
                                  Bool32& done) noexcept = 0;
    // Entry 120:
    virtual Status GetCoreFlag120(Bool32& value) noexcept = 0;
    virtual Status GetCoreNumber121(std::int32_t argument, std::int32_t& value) noexcept = 0;
    virtual Status CoreAction122(std::int32_t argument) noexcept = 0;

protected:
    ~IVorelDriver() = default;
};

// The two exports of a module. A count of 0 or less means that the module offers nothing.
inline constexpr const char* GetVorelDriverCountName = "GetVorelDriverCount";
inline constexpr const char* GetVorelDriverName = "GetVorelDriver";
extern "C" {
using GetVorelDriverCountProc = Status (*)(std::int32_t* count);
// Makes a new driver object for entry `index`, from 0; may give null, which is passed over.
using GetVorelDriverProc = Status (*)(std::int32_t index, IVorelDriver** driver);
}

} // namespace vorel
