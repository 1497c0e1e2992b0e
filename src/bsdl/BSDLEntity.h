// A BSDL file's entity (IEEE 1149.1): what its attributes and its pin map say of the device.
//
// Nothing in here raises an error: a value that does not fit leaves its field at its default, a
// malformed fragment ends the list that it stands in. The one exception is the boundary register,
// see IBSDLEntity. Lists take at most MaximumRecords members; a vector port that would bring more
// pins gives none.
//
// An entity needs neither the parser nor the file once its attributes are read.
#pragma once

#include "bsdl/BSDLRecords.h"
#include "bsdl/BSDLText.h"
#include "bsdl/NameTable.h"
#include "bsdl/VHDLObjects.h"

namespace vorel {

class TBSDLParser;
class TIdMap;

class TBSDLEntity : public TEntity, public TNonRefCountedInterfacedObject<IBSDLEntity> {
public:
    static constexpr std::size_t MaximumRecords = std::size_t{1} << 20U;

    TBSDLEntity() = default;
    ~TBSDLEntity() override = default;

    // Reads everything but the boundary register. Called once, after the parse, while `parser` is
    // there to take log lines; `idMap` settles what the id code pattern stands for.
    void ParseAttributes(const TIdMap& idMap, TBSDLParser& parser);

    // The cells by number, read on the first call of this or of an interface operation that needs
    // them. Throws std::out_of_range when the cells are not numbered 0 to n-1.
    const std::vector<TBoundaryCell*>& GetBoundaryCells();

    Status GetName(WideText& name) noexcept override;
    Status GetInstructionLength(std::int32_t& bits) noexcept override;
    Status GetIdCode(std::uint32_t& idCode) noexcept override;
    Status GetBoundaryLength(std::int32_t& cells) noexcept override;
    Status GetPin(std::int32_t index, IBSDLPin*& pin) noexcept override;
    Status GetPinMapping(std::int32_t index, IBSDLPinMapping*& mapping) noexcept override;
    Status GetBoundaryCell(std::int32_t index, IBSDLBoundaryCell*& cell) noexcept override;
    Status GetOpCode(std::int32_t index, IBSDLOpCode*& opCode) noexcept override;
    Status GetRegisterAssociation(std::int32_t index,
                                  IBSDLRegisterAssociation*& association) noexcept override;
    Status GetPinCount(std::int32_t& count) noexcept override;
    Status GetPinMappingCount(std::int32_t& count) noexcept override;
    Status GetBoundaryCellCount(std::int32_t& count) noexcept override;
    Status GetOpCodeCount(std::int32_t& count) noexcept override;
    Status GetRegisterAssociationCount(std::int32_t& count) noexcept override;
    Status GetTdiPin(IBSDLPin*& pin) noexcept override;
    Status GetTdoPin(IBSDLPin*& pin) noexcept override;
    Status GetTmsPin(IBSDLPin*& pin) noexcept override;
    Status GetTckPin(IBSDLPin*& pin) noexcept override;
    Status GetTrstPin(IBSDLPin*& pin) noexcept override;
    Status GetBypassOpcode(std::int32_t& value) noexcept override;
    Status GetExtestOpcode(std::int32_t& value) noexcept override;
    Status GetSampleOpcode(std::int32_t& value) noexcept override;
    Status GetIdcodeOpcode(std::int32_t& value) noexcept override;
    Status GetUsercodeOpcode(std::int32_t& value) noexcept override;
    Status GetClampOpcode(std::int32_t& value) noexcept override;
    Status GetHighzOpcode(std::int32_t& value) noexcept override;
    Status GetScanClockFrequency(double& hertz) noexcept override;
    Status GetScanClockMode(std::int32_t& mode) noexcept override;
    Status GetComponentConformance(WideText& text) noexcept override;
    Status GetReservedText(WideText& text) noexcept override;
    Status GetDesignWarning(WideText& text) noexcept override;
    Status GetFileName(WideText& path) noexcept override;

    std::uint32_t IdCode = 0;
    std::vector<std::unique_ptr<TScanPin>> Pins;           // by Number, in natural order
    std::vector<std::unique_ptr<TPinMapping>> PinMappings; // by PinNumber, in natural order
    std::vector<std::unique_ptr<TInstructionOpCode>> OpCodes;
    std::vector<std::unique_ptr<TRegisterAssociation>> RegisterAssociations;
    std::string InstructionCapture;
    std::vector<std::string_view> InstructionPrivate;
    std::int32_t BoundaryLength = 0; // of the lazy read
    std::int32_t InstructionLength = 0;
    TScanPin* TdiPin = nullptr;
    TScanPin* TdoPin = nullptr;
    TScanPin* TmsPin = nullptr;
    TScanPin* TckPin = nullptr;
    TScanPin* TrstPin = nullptr;
    double ScanClockFrequency = 0; // hertz
    std::int32_t ScanClockMode = 0;
    std::string IdCodePattern; // the first one of several
    std::string UserCodePattern;
    std::string ComponentConformance;
    std::string CompliancePatterns;
    std::string DesignWarning;
    std::string FileName;
    std::int32_t BypassOpcode = -1;
    std::int32_t ExtestOpcode = -1;
    std::int32_t SampleOpcode = -1;
    std::int32_t IdcodeOpcode = -1;
    std::int32_t UsercodeOpcode = -1;
    std::int32_t ClampOpcode = -1;
    std::int32_t HighzOpcode = -1;

private:
    enum class TBoundaryState : std::uint8_t { Unread, Read, Failed };

    // The attribute or constant type of this keyword that was declared last; null without one.
    const TVHDLAttribute* FindAttribute(std::size_t keyword) const;
    const TVHDLConstant* FindConstant(std::size_t keyword) const;
    // The value of that attribute; empty without one.
    std::string_view ValueOf(std::size_t keyword) const;

    void ReadPinMap(TBSDLParser& parser);
    void ReadPinMappings(std::string_view text);
    void AddPinMappings(std::string_view name, std::string_view numbers);
    void AddPinMapping(std::string_view name, std::int32_t nameId, std::string_view number);
    void MakePins(TBSDLParser& parser);
    void AddPins(const TVHDLPort& port, std::size_t count);
    void FindFirstPins();
    TScanPin* FindPin(std::string_view name) const noexcept;
    void LinkPins();

    void ReadTapPins();
    TScanPin* FindTapPin(std::size_t keyword) const;
    void ReadScanClock(std::string_view value);
    void ReadInstructions();
    void ReadOpCodes(std::string_view text);
    void AddOpCode(std::string_view name, std::string_view pattern);
    void ReadRegisterAccess(std::string_view text);

    void ReadBoundaryRegister(std::string_view text);
    void AddBoundaryCell(std::int32_t number, std::string_view text);
    void PlaceBoundaryCells();

    TNameTable Names;                 // of ports and of the pin map
    std::vector<TScanPin*> FirstPins; // the first member of Pins by number of its name
    std::vector<std::unique_ptr<TBoundaryCell>> AllCells; // in the order of the file
    std::vector<TBoundaryCell*> BoundaryCells;            // by number
    TTextStore Texts;
    TBoundaryState BoundaryState = TBoundaryState::Unread;
};

} // namespace vorel
