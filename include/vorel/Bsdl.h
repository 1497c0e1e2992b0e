// A boundary-scan description as objects: the entity of one BSDL file (IEEE 1149.1) and its
// records.
//
// None of these objects is reference counted: an entity lives until its owner frees it (the device
// or driver that gave it out), and its records live as long as the entity. Texts of the file keep
// their bytes: a byte above 127 becomes the character of the same code. Index operations give null
// for an index out of range unless they say otherwise.
#pragma once

#include "vorel/Interface.h"

namespace vorel {

class IBSDLEntity;
class IBSDLPinMapping;
class IBSDLBoundaryCell;

// Electrical types of pins, shared by BSDL objects and hosts.
enum class PinMode : std::int32_t {
    Input = 0,
    InputOutput = 1,
    Output = 2,
    OpenCollector = 3,
    Passive = 4,
    HiZ = 5,
    OpenEmitter = 6,
    Power = 7,
};
inline constexpr std::array<const char*, 8> PinModeNames{
    "Input", "I/O", "Output", "Open Collector", "Passive", "HiZ", "Open Emitter", "Power"};

// What a pin is there for (IBSDLPin::GetFunction).
enum class PinFunction : std::int32_t {
    Normal = 0,
    Trst = 1,
    Tck = 2,
    Tdo = 3,
    Tdi = 4,
    Tms = 5,
    Power = 6,
    Ground = 7,
};

// Vocabulary of boundary cells; index 0 means that the word in the file is none of these.
inline constexpr std::array<const char*, 12> BoundaryCellTypeNames{
    "", "BC_0", "BC_1", "BC_2", "BC_3", "BC_4", "BC_5", "BC_6", "BC_7", "BC_8", "BC_9", "BC_10"};
inline constexpr std::array<const char*, 10> BoundaryCellFunctionNames{
    "",        "Input",    "Clock",    "Output2", "Output3",
    "Control", "ControlR", "Internal", "BiDir",   "ObserveOnly"};
inline constexpr std::array<const char*, 4> BoundaryCellValueNames{"", "0", "1", "X"};
inline constexpr std::array<const char*, 7> BoundaryCellDisableNames{
    "", "Z", "Weak0", "Weak1", "Pull0", "Pull1", "Keeper"};

// TCK levels at which the clock may stop (IBSDLEntity::GetScanClockMode).
inline constexpr std::array<const char*, 3> ScanClockModeNames{"None", "Low", "Both"};

// Common head of all records.
class IBSDLRecord : public IInterface {
public:
    virtual Status GetText(WideText& text) noexcept = 0;
    virtual Status GetLongText(WideText& text) noexcept = 0;
    virtual Status GetEntity(IBSDLEntity*& entity) noexcept = 0;

protected:
    ~IBSDLRecord() = default;
};

// A free number that a caller may attach to a pin or cell.
class IBSDLTagged : public IInterface {
public:
    static constexpr Guid Id{
        0xAEA6610D, 0xF39F, 0x422D, {0xAB, 0xA9, 0xCE, 0x81, 0x32, 0xFD, 0x97, 0xB4}};

    virtual Status SetTag(std::int32_t value) noexcept = 0;

protected:
    ~IBSDLTagged() = default;
};

class IBSDLPin : public IBSDLRecord {
public:
    static constexpr Guid Id{
        0xED81D346, 0x0EA2, 0x4CA9, {0x84, 0xD1, 0x6B, 0x98, 0x51, 0xBB, 0xA8, 0x8A}};

    virtual Status GetMode(std::int32_t& mode) noexcept = 0; // a PinMode
    virtual Status GetName(WideText& name) noexcept = 0; // the port; all bits of a vector share it
    virtual Status
    GetNumber(WideText& number) noexcept = 0; // the package pin; empty without a mapping
    virtual Status GetFunction(std::int32_t& function) noexcept = 0; // a PinFunction
    virtual Status GetMapping(IBSDLPinMapping*& mapping) noexcept = 0;
    virtual Status GetCellCount(std::int32_t& count) noexcept = 0;
    virtual Status GetCell(std::int32_t index, IBSDLBoundaryCell*& cell) noexcept = 0;
    virtual Status GetTag(std::int32_t& tag) noexcept = 0;

protected:
    ~IBSDLPin() = default;
};

class IBSDLPinMapping : public IBSDLRecord {
public:
    static constexpr Guid Id{
        0xB3255F8C, 0x0A58, 0x4235, {0xB5, 0x7C, 0x1E, 0x30, 0xFC, 0xDB, 0x4A, 0x9F}};

    virtual Status GetPinName(WideText& name) noexcept = 0;
    virtual Status GetPinNumber(WideText& number) noexcept = 0;
    virtual Status GetPin(IBSDLPin*& pin) noexcept = 0; // null when no port has this name

protected:
    ~IBSDLPinMapping() = default;
};

// One cell of the boundary register. Cell 0 is nearest TDO.
class IBSDLBoundaryCell : public IBSDLRecord {
public:
    static constexpr Guid Id{
        0x671AC32E, 0x9A4B, 0x47B3, {0xB8, 0x6F, 0xAA, 0xD9, 0x43, 0x94, 0x18, 0xD5}};

    virtual Status GetNumber(std::int32_t& number) noexcept = 0;
    virtual Status GetCellType(std::int32_t& type) noexcept = 0; // into BoundaryCellTypeNames
    virtual Status GetPortName(WideText& name) noexcept = 0;     // "*" for none
    virtual Status
    GetCellFunction(std::int32_t& function) noexcept = 0;        // into BoundaryCellFunctionNames
    virtual Status GetSafeBit(std::int32_t& value) noexcept = 0; // into BoundaryCellValueNames
    virtual Status GetControlCell(std::int32_t& number) noexcept = 0; // -1 for none
    virtual Status GetDisableValue(std::int32_t& value) noexcept = 0; // into BoundaryCellValueNames
    virtual Status
    GetDisableResult(std::int32_t& result) noexcept = 0; // into BoundaryCellDisableNames
    virtual Status GetPin(IBSDLPin*& pin) noexcept = 0;
    virtual Status GetControlCellObject(IBSDLBoundaryCell*& cell) noexcept = 0;
    virtual Status GetControlledCellObject(IBSDLBoundaryCell*& cell) noexcept = 0;
    virtual Status GetTag(std::int32_t& tag) noexcept = 0;

protected:
    ~IBSDLBoundaryCell() = default;
};

class IBSDLOpCode : public IBSDLRecord {
public:
    static constexpr Guid Id{
        0x41E572E1, 0xFFC1, 0x4C35, {0xAA, 0x99, 0xB5, 0xB1, 0x0D, 0x0E, 0x8B, 0x11}};

    virtual Status GetName(WideText& name) noexcept = 0;
    virtual Status GetPattern(BitText& pattern) noexcept = 0; // may hold X; leading X are dropped

protected:
    ~IBSDLOpCode() = default;
};

class IBSDLRegisterAssociation : public IBSDLRecord {
public:
    static constexpr Guid Id{
        0x1829FA5A, 0x9978, 0x4E55, {0xA1, 0x59, 0x09, 0xF5, 0x6E, 0x61, 0xD0, 0xEE}};

    virtual Status GetName(WideText& name) noexcept = 0;
    virtual Status GetLength(std::int32_t& length) noexcept = 0;
    virtual Status GetOpCodeCount(std::int32_t& count) noexcept = 0;
    // Null for a negative index or one above the count; the count itself fails with
    // StatusIndexOutOfRange.
    virtual Status GetOpCode(std::int32_t index, IBSDLOpCode*& opCode) noexcept = 0;

protected:
    ~IBSDLRegisterAssociation() = default;
};

// The entity. The boundary register is read on the first call of GetBoundaryLength, GetBoundaryCell
// or GetBoundaryCellCount; a register whose cells are not numbered 0 to n-1 makes that call fail.
class IBSDLEntity : public IInterface {
public:
    static constexpr Guid Id{
        0x1D1CC13E, 0x48AC, 0x40F1, {0x81, 0xBA, 0xCD, 0x13, 0xF0, 0xAD, 0xE2, 0x46}};

    virtual Status GetName(WideText& name) noexcept = 0;
    virtual Status GetInstructionLength(std::int32_t& bits) noexcept = 0;
    virtual Status GetIdCode(std::uint32_t& idCode) noexcept = 0;
    virtual Status GetBoundaryLength(std::int32_t& cells) noexcept = 0;
    virtual Status GetPin(std::int32_t index, IBSDLPin*& pin) noexcept = 0;
    virtual Status GetPinMapping(std::int32_t index, IBSDLPinMapping*& mapping) noexcept = 0;
    virtual Status GetBoundaryCell(std::int32_t index, IBSDLBoundaryCell*& cell) noexcept = 0;
    virtual Status GetOpCode(std::int32_t index, IBSDLOpCode*& opCode) noexcept = 0;
    virtual Status GetRegisterAssociation(std::int32_t index,
                                          IBSDLRegisterAssociation*& association) noexcept = 0;
    virtual Status GetPinCount(std::int32_t& count) noexcept = 0;
    virtual Status GetPinMappingCount(std::int32_t& count) noexcept = 0;
    virtual Status GetBoundaryCellCount(std::int32_t& count) noexcept = 0;
    virtual Status GetOpCodeCount(std::int32_t& count) noexcept = 0;
    virtual Status GetRegisterAssociationCount(std::int32_t& count) noexcept = 0;
    // The pins of the test access port; null when the file names none.
    virtual Status GetTdiPin(IBSDLPin*& pin) noexcept = 0;
    virtual Status GetTdoPin(IBSDLPin*& pin) noexcept = 0;
    virtual Status GetTmsPin(IBSDLPin*& pin) noexcept = 0;
    virtual Status GetTckPin(IBSDLPin*& pin) noexcept = 0;
    virtual Status GetTrstPin(IBSDLPin*& pin) noexcept = 0;
    // Instruction codes as numbers; -1 when the device has no such instruction.
    virtual Status GetBypassOpcode(std::int32_t& value) noexcept = 0;
    virtual Status GetExtestOpcode(std::int32_t& value) noexcept = 0;
    virtual Status GetSampleOpcode(std::int32_t& value) noexcept = 0;
    virtual Status GetIdcodeOpcode(std::int32_t& value) noexcept = 0;
    virtual Status GetUsercodeOpcode(std::int32_t& value) noexcept = 0;
    virtual Status GetClampOpcode(std::int32_t& value) noexcept = 0;
    virtual Status GetHighzOpcode(std::int32_t& value) noexcept = 0;
    virtual Status GetScanClockFrequency(double& hertz) noexcept = 0;
    virtual Status GetScanClockMode(std::int32_t& mode) noexcept = 0; // into ScanClockModeNames
    virtual Status GetComponentConformance(WideText& text) noexcept = 0;
    virtual Status GetReservedText(WideText& text) noexcept = 0; // always empty
    virtual Status GetDesignWarning(WideText& text) noexcept = 0;
    virtual Status GetFileName(WideText& path) noexcept = 0;

protected:
    ~IBSDLEntity() = default;
};

} // namespace vorel
