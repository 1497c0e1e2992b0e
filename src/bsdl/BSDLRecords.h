// The records of a BSDL entity: pins, pin mappings, boundary cells, instructions and registers.
//
// Records are owned by their entity and live as long as it. Their texts are views into the values
// of the entity's attributes, constants and ports, which do not change after the parse.
#pragma once

#include "bsdl/FileText.h"
#include "support/Errors.h"
#include "support/Objects.h"
#include "vorel/Bsdl.h"

#include <memory>
#include <vector>

namespace vorel {

class TPinMapping;
class TBoundaryCell;

// Common part: owner and texts.
template<class... Interfaces>
class TBSDLObject : public TNonRefCountedInterfacedObject<Interfaces...> {
public:
    explicit TBSDLObject(IBSDLEntity& owner) : Owner(&owner) {}

    // First and second text of the object, in the bytes of the file.
    virtual std::string Text() const { return {}; }
    virtual std::string LongText() const { return {}; }
    virtual std::int32_t ClassCode() const { return 4; }

    Status GetText(WideText& text) noexcept final {
        return Guard([&] {
            text.clear();
            text = FileTextToWide(Text());
        });
    }
    Status GetLongText(WideText& text) noexcept final {
        return Guard([&] {
            text.clear();
            text = FileTextToWide(LongText());
        });
    }
    Status GetEntity(IBSDLEntity*& entity) noexcept final {
        entity = Owner;
        return StatusOk;
    }

    IBSDLEntity* const Owner;
};

class TScanPin : public TBSDLObject<IBSDLPin, IBSDLTagged> {
public:
    using TBSDLObject::TBSDLObject;

    std::string Text() const override;
    std::string LongText() const override;
    std::int32_t ClassCode() const override { return 19; }

    Status GetMode(std::int32_t& mode) noexcept override;
    Status GetName(WideText& name) noexcept override;
    Status GetNumber(WideText& number) noexcept override;
    Status GetFunction(std::int32_t& function) noexcept override;
    Status GetMapping(IBSDLPinMapping*& mapping) noexcept override;
    Status GetCellCount(std::int32_t& count) noexcept override;
    Status GetCell(std::int32_t index, IBSDLBoundaryCell*& cell) noexcept override;
    Status GetTag(std::int32_t& tag) noexcept override;
    Status SetTag(std::int32_t value) noexcept override;

    std::string_view Name;   // of the port, the same for all bits of a vector
    std::string_view Number; // of the package pin; empty until linked
    PinMode Mode = PinMode::Passive;
    PinFunction Function = PinFunction::Normal;
    TPinMapping* Mapping = nullptr;
    std::vector<TBoundaryCell*> Cells; // those that name this pin
    std::int32_t NameId = -1;          // in the entity's TNameTable
    std::int32_t Tag = 0;
};

class TPinMapping : public TBSDLObject<IBSDLPinMapping> {
public:
    using TBSDLObject::TBSDLObject;

    Status GetPinName(WideText& name) noexcept override;
    Status GetPinNumber(WideText& number) noexcept override;
    Status GetPin(IBSDLPin*& pin) noexcept override;

    std::string_view PinName;
    std::string_view PinNumber;
    TScanPin* Pin = nullptr;
    std::int32_t NameId = -1;
};

class TBoundaryCell : public TBSDLObject<IBSDLBoundaryCell, IBSDLTagged> {
public:
    using TBSDLObject::TBSDLObject;

    std::string Text() const override;
    std::string LongText() const override { return Text(); }
    std::int32_t ClassCode() const override { return 41; }

    Status GetNumber(std::int32_t& number) noexcept override;
    Status GetCellType(std::int32_t& type) noexcept override;
    Status GetPortName(WideText& name) noexcept override;
    Status GetCellFunction(std::int32_t& function) noexcept override;
    Status GetSafeBit(std::int32_t& value) noexcept override;
    Status GetControlCell(std::int32_t& number) noexcept override;
    Status GetDisableValue(std::int32_t& value) noexcept override;
    Status GetDisableResult(std::int32_t& result) noexcept override;
    Status GetPin(IBSDLPin*& pin) noexcept override;
    Status GetControlCellObject(IBSDLBoundaryCell*& cell) noexcept override;
    Status GetControlledCellObject(IBSDLBoundaryCell*& cell) noexcept override;
    Status GetTag(std::int32_t& tag) noexcept override;
    Status SetTag(std::int32_t value) noexcept override;

    std::int32_t Number = -1;
    std::int32_t CellType = 0; // these five into the tables of vorel/Bsdl.h
    std::int32_t CellFunction = 0;
    std::int32_t SafeBit = 3;
    std::int32_t DisableValue = 1;
    std::int32_t DisableResult = 0;
    std::int32_t ControlCell = -1;
    std::int32_t Tag = 0;
    std::string_view PortName = "*";
    TScanPin* Pin = nullptr;
    TBoundaryCell* ControlCellObject = nullptr;
    TBoundaryCell* ControlledCellObject = nullptr; // the last cell that this one controls
};

class TInstructionOpCode : public TBSDLObject<IBSDLOpCode> {
public:
    using TBSDLObject::TBSDLObject;

    std::string Text() const override;
    std::string LongText() const override { return Text(); }
    std::int32_t ClassCode() const override { return 72; }

    Status GetName(WideText& name) noexcept override;
    Status GetPattern(BitText& pattern) noexcept override;

    std::string_view Name;
    std::string Pattern; // without blanks and leading X
    std::int32_t Value = 0;
};

class TRegisterAssociation : public TBSDLObject<IBSDLRegisterAssociation> {
public:
    // Longest text; a register with more instructions than fit is cut there.
    static constexpr std::size_t TextLimit = std::size_t{1} << 20U;

    using TBSDLObject::TBSDLObject;

    struct TInstruction {
        std::string_view Name;
        TInstructionOpCode* OpCode = nullptr; // null when the device names no such instruction
    };

    std::string Text() const override;
    std::string LongText() const override { return Text(); }
    std::int32_t ClassCode() const override { return 99; }

    Status GetName(WideText& name) noexcept override;
    Status GetLength(std::int32_t& length) noexcept override;
    Status GetOpCodeCount(std::int32_t& count) noexcept override;
    Status GetOpCode(std::int32_t index, IBSDLOpCode*& opCode) noexcept override;

    std::string_view Name;   // with the length that the file may give in brackets
    std::int32_t Length = 0; // no file sets it
    std::vector<TInstruction> OpCodes;
};

} // namespace vorel
