// A soft device: a processor, a memory or an instrument that can be debugged, with its registers
// and memories.
//
// Such a device holds no knowledge of any kind of processor: nearly everything is forwarded to its
// driver, and without a driver each operation gives the stated neutral value. Devices belong to the
// device manager; registers and memory spaces belong to their device and stay valid as long as it.
// None of them is counted. Operations with a number in their name are passed to the driver's entry
// of that number, whose meaning the driver defines.
#pragma once

#include "vorel/Interface.h"

namespace vorel {

class IBSDLEntity;
class IJTagChannel;
class IVorelBreakpoint;
class IVorelDevice;
class IVorelDriver;

// One register of a processor. It stores no value: each read and write goes to the target.
class IProcessorRegister : public IInterface {
public:
    static constexpr Guid Id{
        0x06510BE2, 0x46EE, 0x4D1F, {0xAE, 0xD9, 0x51, 0xEE, 0xA4, 0xDD, 0x4A, 0xC9}};

    virtual Status GetDevice(IVorelDevice*& device) noexcept = 0;
    virtual Status Reserved1() noexcept = 0;
    virtual Status Reserved2() noexcept = 0;
    virtual Status GetIndex(std::int32_t& index) noexcept = 0;
    virtual Status GetName(WideText& name) noexcept = 0;
    virtual Status GetAttributeText(WideText& text) noexcept = 0;
    virtual Status GetAttributeNumber(std::int32_t& value) noexcept = 0;
    virtual Status ReadValue(std::uint32_t& value) noexcept = 0;
    // Bits 0-7, 8-15, 16-23, 24-31 of a value that each call reads anew.
    virtual Status GetByte0(std::uint8_t& value) noexcept = 0;
    virtual Status GetByte1(std::uint8_t& value) noexcept = 0;
    virtual Status GetByte2(std::uint8_t& value) noexcept = 0;
    virtual Status GetByte3(std::uint8_t& value) noexcept = 0;
    virtual Status WriteValue(std::uint32_t value) noexcept = 0;
    // The value in the text form of its driver; "0" without one.
    virtual Status ReadText(WideText& text) noexcept = 0;
    virtual Status WriteText(const WideText& text) noexcept = 0;

protected:
    ~IProcessorRegister() = default;
};

// One addressable memory of a device. Addresses and counts are in locations, whatever their width;
// a buffer holds one location in each 32-bit slot.
class IMemorySpace : public IInterface {
public:
    static constexpr Guid Id{
        0xB4D2FAD7, 0xC43E, 0x412D, {0xAE, 0xB0, 0xB2, 0x89, 0xD4, 0x81, 0x52, 0x2A}};

    virtual Status GetDevice(IVorelDevice*& device) noexcept = 0;
    virtual Status GetIndex(std::int32_t& index) noexcept = 0;
    virtual Status GetName(WideText& name) noexcept = 0;
    virtual Status GetAttributeText(WideText& text) noexcept = 0;
    virtual Status GetWidth(std::int32_t& bits) noexcept = 0;
    virtual Status GetSize(std::int64_t& locations) noexcept = 0;
    virtual Status GetAttributeNumber75(std::int32_t& value) noexcept = 0;
    virtual Status GetAttributeNumber76(std::int32_t& value) noexcept = 0;
    // `buffer` has room for `count` slots. The driver decides what is out of range. Each read also
    // closes one level of the device's BeginHalt. One that fails leaves the halt as it is and the
    // device's channel locked once more than before: its caller unlocks it.
    virtual Status ReadBlock(std::uint32_t* buffer, std::int64_t address,
                             std::int32_t count) noexcept = 0;
    virtual Status WriteBlock(const std::uint32_t* buffer, std::int64_t address,
                              std::int32_t count) noexcept = 0;
    virtual Status MemoryAction83(std::int32_t argument) noexcept = 0;
    virtual Status MemoryAction84(std::int32_t argument) noexcept = 0;

protected:
    ~IMemorySpace() = default;
};

class IVorelDevice : public IInterface {
public:
    static constexpr Guid Id{
        0xAA89294F, 0x5FAD, 0x4D00, {0x8D, 0xA2, 0x9B, 0xAE, 0x07, 0x52, 0x86, 0xB2}};

    // What the part is.
    virtual Status GetIdCode(std::uint32_t& idCode) noexcept = 0;
    virtual Status GetDeviceName(WideText& text) noexcept = 0;
    // Without a text of its own, the name of the BSDL entity at its place on the chain.
    virtual Status GetDescription(WideText& text) noexcept = 0;
    virtual Status GetFamily(WideText& text) noexcept = 0;
    virtual Status GetAttributeText7(WideText& text) noexcept = 0;
    virtual Status GetAttributeText8(WideText& text) noexcept = 0;
    virtual Status GetAttributeText9(WideText& text) noexcept = 0;
    virtual Status GetAttributeText10(WideText& text) noexcept = 0;
    // Memory size, logic cells or macrocells; -1 when not known. Both give the same.
    virtual Status GetCapacity(std::int32_t& value) noexcept = 0;
    virtual Status GetCapacityAgain(std::int32_t& value) noexcept = 0;
    virtual Status GetAttributeText13(WideText& text) noexcept = 0;
    virtual Status GetAttributeText14(WideText& text) noexcept = 0;
    virtual Status GetAttributeText15(WideText& text) noexcept = 0;
    virtual Status GetAttributeText16(WideText& text) noexcept = 0;
    virtual Status GetAttributeText17(WideText& text) noexcept = 0;
    virtual Status GetPackage(WideText& text) noexcept = 0;
    virtual Status GetAttributeText19(WideText& text) noexcept = 0;
    virtual Status GetAttributeText20(WideText& text) noexcept = 0;
    virtual Status GetTemperatureGrade(WideText& text) noexcept = 0;
    virtual Status GetAttributeText22(WideText& text) noexcept = 0;
    virtual Status GetAttributeText23(WideText& text) noexcept = 0;
    // A device has no speed grade of its own: this gives the text of GetBsdlFile.
    virtual Status GetSpeedGrade(WideText& text) noexcept = 0;
    virtual Status GetAttributeText25(WideText& text) noexcept = 0;
    virtual Status GetAttributeText26(WideText& text) noexcept = 0;
    virtual Status GetAttributeText27(WideText& text) noexcept = 0;
    virtual Status GetAttributeText28(WideText& text) noexcept = 0;
    virtual Status GetBsdlFile(WideText& text) noexcept = 0;
    virtual Status GetDefaultEntity(IBSDLEntity*& entity) noexcept = 0;
    virtual Status GetVendor(WideText& text) noexcept = 0;
    // Bits; 4 without a driver.
    virtual Status GetIrLength(std::int32_t& value) noexcept = 0;
    virtual Status GetPinCount(std::int32_t& value) noexcept = 0;
    virtual Status GetIoPinCount(std::int32_t& value) noexcept = 0;
    virtual Status GetDescriptionItem(std::int32_t index, IInterface*& item) noexcept = 0;
    virtual Status GetAttributeText36(WideText& text) noexcept = 0;
    // Resources of physical parts: always 0, false and null here.
    virtual Status GetDspMultipliers(std::int32_t& value) noexcept = 0;
    virtual Status GetClockManagers(std::int32_t& value) noexcept = 0;
    virtual Status GetEmbeddedRam(std::int32_t& value) noexcept = 0;
    virtual Status GetOnChipTermination(Bool32& value) noexcept = 0;
    virtual Status GetGlobalClocks(std::int32_t& value) noexcept = 0;
    virtual Status GetConfigMemory(std::int32_t& value) noexcept = 0;
    virtual Status GetDifferentialPairs(std::int32_t& value) noexcept = 0;
    virtual Status GetHighSpeedPairs(std::int32_t& value) noexcept = 0;
    virtual Status GetAttributeNumber45(std::int32_t& value) noexcept = 0;
    virtual Status GetAttributeItem46(std::int32_t index, IInterface*& item) noexcept = 0;
    virtual Status GetDisplayName(WideText& text) noexcept = 0;
    // Where it is. The chain index is -1 off the chain. The hard device is kept as given, without a
    // reference.
    virtual Status GetChainIndex(std::int32_t& value) noexcept = 0;
    virtual Status GetChannel(IJTagChannel*& channel) noexcept = 0;
    virtual Status GetHardDevice(IInterface*& device) noexcept = 0;
    virtual Status SetChainIndex(std::int32_t index) noexcept = 0;
    virtual Status SetChannel(IJTagChannel* channel) noexcept = 0;
    virtual Status SetHardDevice(IInterface* device) noexcept = 0;
    virtual Status GetDriver(IVorelDriver*& driver) noexcept = 0;
    virtual Status GetCoreNumber87(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber88(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber89(std::int32_t argument, std::int32_t& value) noexcept = 0;
    // 0 big-endian, -1 without a driver, any other value little-endian.
    virtual Status GetByteOrder(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreItem91(IInterface*& item) noexcept = 0;
    virtual Status GetCoreItem92(IInterface*& item) noexcept = 0;
    virtual Status GetCoreText93(WideText& text) noexcept = 0;
    virtual Status GetUniqueId(WideText& text) noexcept = 0;
    virtual Status GetEmptyText(WideText& text) noexcept = 0;
    // "Reset", "Paused" or "Running".
    virtual Status GetStatusText(WideText& text) noexcept = 0;
    virtual Status GetCoreNumber52(std::int32_t& value) noexcept = 0;
    // Run control. IsPaused and IsReset ask the target each time.
    virtual Status RunControl94() noexcept = 0;
    virtual Status SingleStep() noexcept = 0;
    virtual Status RunControl96() noexcept = 0;
    virtual Status ResetProcessor() noexcept = 0;
    virtual Status PauseProcessor() noexcept = 0;
    virtual Status ContinueProcessor() noexcept = 0;
    virtual Status RunSteps(std::int32_t count) noexcept = 0;
    virtual Status IsPaused(Bool32& value) noexcept = 0;
    virtual Status IsReset(Bool32& value) noexcept = 0;
    virtual Status GetCoreNumber103(std::int32_t& value) noexcept = 0;
    // Registers and memories; null when out of range or when the driver names none.
    virtual Status GetBreakpointCount(std::int32_t& value) noexcept = 0;
    virtual Status GetRegisterCount(std::int32_t& value) noexcept = 0;
    virtual Status GetMemorySpaceCount(std::int32_t& value) noexcept = 0;
    virtual Status GetMemorySpace(std::int32_t index, IMemorySpace*& space) noexcept = 0;
    virtual Status GetRegister(std::int32_t index,
                               IProcessorRegister*& processorRegister) noexcept = 0;
    virtual Status GetProgramCounterRegister(IProcessorRegister*& processorRegister) noexcept = 0;
    virtual Status GetSecondRegister(IProcessorRegister*& processorRegister) noexcept = 0;
    virtual Status GetMainMemorySpace(IMemorySpace*& space) noexcept = 0;
    // Breakpoints by memory space index and location. Null and false when there is none, or none
    // can be had.
    virtual Status FindBreakpoint(std::int32_t space, std::int64_t address,
                                  IVorelBreakpoint*& breakpoint) noexcept = 0;
    virtual Status AddBreakpoint(std::int32_t space, std::int64_t address,
                                 IVorelBreakpoint*& breakpoint) noexcept = 0;
    virtual Status RemoveBreakpoint(std::int32_t space, std::int64_t address,
                                    Bool32& removed) noexcept = 0;
    virtual Status RemoveAllBreakpoints() noexcept = 0;
    // The register port that soft devices have on the chain (instruction 11): one address byte,
    // then the data. For drivers. Off the chain nothing happens and results stay 0 or empty.
    virtual Status ReadRegisterNumber(std::uint8_t registerNumber, std::int32_t bitCount,
                                      std::uint32_t& value) noexcept = 0;
    virtual Status WriteRegisterNumber(std::uint8_t registerNumber, std::int32_t bitCount,
                                       std::uint32_t value) noexcept = 0;
    virtual Status ReadRegisterText(std::uint8_t registerNumber, std::int32_t bitCount,
                                    BitText& bits) noexcept = 0;
    virtual Status WriteRegisterText(std::uint8_t registerNumber, const BitText& bits) noexcept = 0;
    virtual Status HasAboutInfo(Bool32& value) noexcept = 0;
    virtual Status GetAboutInfo(IInterface*& item) noexcept = 0;
    virtual Status ShowAbout() noexcept = 0;
    // Words in use: "PROC", "SPROC", "GPROC", "FPGA", "CPLD", "PROM".
    virtual Status HasAttribute(const WideText& word, Bool32& value) noexcept = 0;
    virtual Status GetCoreNumber86(std::int32_t& value) noexcept = 0;
    // Bracket for work that needs a stopped processor. They nest; a processor that ran before runs
    // again at the end. A block read of a memory space closes one level. A BeginHalt that fails has
    // opened its level as well; an EndHalt that fails has closed none.
    virtual Status BeginHalt() noexcept = 0;
    virtual Status EndHalt() noexcept = 0;
    virtual Status RunDiagnostic(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreText59(WideText& text) noexcept = 0;
    virtual Status GetCoreNumber60(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber61(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber105(std::int32_t& value) noexcept = 0;
    virtual Status GetCoreNumber106(std::int32_t argument, std::int32_t& value) noexcept = 0;
    virtual Status CoreAction107() noexcept = 0;
    virtual Status GetCoreFlag110(std::int32_t argument, Bool32& value) noexcept = 0;
    virtual Status GetCoreText111(std::int32_t argument, WideText& text) noexcept = 0;
    virtual Status GetCoreFlag113(Bool32& value) noexcept = 0;
    virtual Status CoreAction114() noexcept = 0;
    virtual Status NotifyReleased() noexcept = 0;
    virtual Status GetCoreFlag116(Bool32& value) noexcept = 0;
    virtual Status CoreAction117(std::int32_t argument) noexcept = 0;
    virtual Status CoreAction118(std::int32_t a, std::int32_t b, std::int32_t c, std::int32_t d,
                                 std::int32_t e, std::int32_t f) noexcept = 0;
    virtual Status CoreCommand119(const WideText& a, const WideText& b, const WideText& c,
                                  Bool32& done) noexcept = 0;
    virtual Status GetCoreFlag120(Bool32& value) noexcept = 0;
    virtual Status GetCoreNumber121(std::int32_t argument, std::int32_t& value) noexcept = 0;
    virtual Status CoreAction122(std::int32_t argument) noexcept = 0;

protected:
    ~IVorelDevice() = default;
};

} // namespace vorel
