// The stages that read TAP pins, instructions and registers from the entity's attributes.
#include "bsdl/BSDLEntity.h"
#include "bsdl/BSDLParser.h"
#include "bsdl/IdMap.h"

#include <algorithm>
#include <array>
#include <cmath>

namespace vorel {

namespace {

constexpr std::size_t NotFound = std::string_view::npos;

struct TNamedOpcode {
    std::string_view Name;
    std::int32_t TBSDLEntity::*Field;
};
constexpr std::array<TNamedOpcode, 7> NamedOpcodes{{
    {"BYPASS", &TBSDLEntity::BypassOpcode},
    {"EXTEST", &TBSDLEntity::ExtestOpcode},
    {"SAMPLE", &TBSDLEntity::SampleOpcode},
    {"IDCODE", &TBSDLEntity::IdcodeOpcode},
    {"USERCODE", &TBSDLEntity::UsercodeOpcode},
    {"CLAMP", &TBSDLEntity::ClampOpcode},
    {"HIGHZ", &TBSDLEntity::HighzOpcode},
}};

// Finds the first instruction of a name.
class TOpCodeIndex {
public:
    explicit TOpCodeIndex(const std::vector<std::unique_ptr<TInstructionOpCode>>& opCodes) {
        for (const auto& opCode : opCodes) {
            const auto id = static_cast<std::size_t>(Names.Intern(opCode->Name));
            if (id == First.size()) {
                First.push_back(opCode.get());
            }
        }
    }
    TInstructionOpCode* Find(std::string_view name) const noexcept {
        const std::int32_t id = Names.Find(name);
        return id == TNameTable::None ? nullptr : First[static_cast<std::size_t>(id)];
    }

private:
    TNameTable Names;
    std::vector<TInstructionOpCode*> First;
};

} // namespace

void TBSDLEntity::ParseAttributes(const TIdMap& idMap, TBSDLParser& parser) {
    if (FindAttribute(BSDLKeyword("Component_Conformance")) == nullptr) {
        parser.Log("Missing Component Conformance Statement");
    }
    ComponentConformance = ValueOf(BSDLKeyword("Component_Conformance"));
    ReadPinMap(parser);
    ReadTapPins();
    CompliancePatterns = ValueOf(BSDLKeyword("Compliance_Patterns"));
    ReadInstructions();
    if (FindAttribute(BSDLKeyword("IDCode_Register")) != nullptr) {
        IdCodePattern = ValueOf(BSDLKeyword("IDCode_Register"));
        IdCode = idMap.PatternToValue(IdCodePattern);
    }
    UserCodePattern = ValueOf(BSDLKeyword("UserCode_Register"));
    ReadRegisterAccess(ValueOf(BSDLKeyword("Register_Access")));
    DesignWarning = ValueOf(BSDLKeyword("Design_Warning"));
    LinkPins();
}

TScanPin* TBSDLEntity::FindTapPin(std::size_t keyword) const {
    const TVHDLAttribute* attribute = FindAttribute(keyword);
    return attribute != nullptr && !attribute->EntityNames.empty()
               ? FindPin(attribute->EntityNames.front())
               : nullptr;
}

void TBSDLEntity::ReadTapPins() {
    TdiPin = FindTapPin(BSDLKeyword("TAP_Scan_In"));
    TdoPin = FindTapPin(BSDLKeyword("TAP_Scan_Out"));
    TmsPin = FindTapPin(BSDLKeyword("TAP_Scan_Mode"));
    TrstPin = FindTapPin(BSDLKeyword("TAP_Scan_Reset"));
    TckPin = FindTapPin(BSDLKeyword("TAP_Scan_Clock"));
    const auto mark = [](TScanPin* pin, PinFunction function) {
        if (pin != nullptr) {
            pin->Function = function;
        }
    };
    mark(TdiPin, PinFunction::Tdi);
    mark(TdoPin, PinFunction::Tdo);
    mark(TmsPin, PinFunction::Tms);
    mark(TrstPin, PinFunction::Trst);
    mark(TckPin, PinFunction::Tck);
    ReadScanClock(ValueOf(BSDLKeyword("TAP_Scan_Clock")));
}

// "(frequency, edge)"
void TBSDLEntity::ReadScanClock(std::string_view value) {
    const std::size_t open = value.find('(');
    const std::size_t comma = value.find(',');
    const std::size_t close = value.find(')');
    if (open == NotFound || comma == NotFound || close == NotFound || open > comma ||
        comma > close) {
        return;
    }
    const std::optional<double> hertz = ParseFloat(value.substr(open + 1, comma - open - 1));
    if (hertz && std::isfinite(*hertz)) {
        ScanClockFrequency = *hertz;
    }
    const std::string_view edge = Trim(value.substr(comma + 1, close - comma - 1));
    ScanClockMode = SameText(edge, BSDLKeywords[BSDLKeyword("LOW")])    ? 1
                    : SameText(edge, BSDLKeywords[BSDLKeyword("Both")]) ? 2
                                                                        : 0;
}

void TBSDLEntity::ReadInstructions() {
    InstructionLength = ToInteger(ValueOf(BSDLKeyword("Instruction_Length")), 0);
    InstructionCapture = ValueOf(BSDLKeyword("Instruction_Capture"));
    TCommaText names(ValueOf(BSDLKeyword("Instruction_Private")), Texts);
    std::string_view name;
    while (InstructionPrivate.size() < MaximumRecords && names.Next(name)) {
        InstructionPrivate.push_back(name);
    }
    ReadOpCodes(ValueOf(BSDLKeyword("Instruction_OPCode")));
}

// "name (pattern, pattern), name (pattern)"; the first pattern counts.
void TBSDLEntity::ReadOpCodes(std::string_view text) {
    while (OpCodes.size() < MaximumRecords) {
        const std::size_t open = text.find('(');
        const std::size_t close = text.find(')');
        if (open == NotFound || close == NotFound || close < open) {
            return;
        }
        const std::size_t end = std::min(close, text.find(','));
        AddOpCode(Trim(text.substr(0, open)),
                  end > open ? text.substr(open + 1, end - open - 1) : std::string_view());
        const std::size_t next = text.find(',', close);
        if (next == NotFound) {
            return;
        }
        text.remove_prefix(next + 1);
    }
}

void TBSDLEntity::AddOpCode(std::string_view name, std::string_view pattern) {
    auto opCode = std::make_unique<TInstructionOpCode>(*this);
    opCode->Name = name;
    opCode->Pattern = WithoutBlanks(Trim(pattern));
    DropLeadingX(opCode->Pattern);
    opCode->Value = static_cast<std::int32_t>(BinaryToNumber(opCode->Pattern));
    for (const TNamedOpcode& named : NamedOpcodes) {
        if (SameText(named.Name, name)) {
            this->*named.Field = opCode->Value;
        }
    }
    OpCodes.push_back(std::move(opCode));
}

// "register (instruction, instruction), register (instruction)"
void TBSDLEntity::ReadRegisterAccess(std::string_view text) {
    const TOpCodeIndex index(OpCodes);
    std::size_t start = 0;
    std::size_t open = text.find('(');
    while (RegisterAssociations.size() < MaximumRecords) {
        if (open != NotFound && open < start) {
            open = text.find('(', start);
        }
        const std::size_t close = text.find(')', start);
        if (open == NotFound || close == NotFound) {
            return;
        }
        auto association = std::make_unique<TRegisterAssociation>(*this);
        association->Name = Trim(text.substr(start, open - start));
        if (association->Name.empty()) {
            return;
        }
        if (close > open) {
            TCommaText names(Trim(text.substr(open + 1, close - open - 1)), Texts);
            std::string_view name;
            while (association->OpCodes.size() < MaximumRecords && names.Next(name)) {
                association->OpCodes.push_back({name, index.Find(name)});
            }
        }
        RegisterAssociations.push_back(std::move(association));
        const std::size_t comma = text.find(',', close);
        if (comma == NotFound) {
            return;
        }
        start = comma + 1;
    }
}

} // namespace vorel
