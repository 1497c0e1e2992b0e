// The entity's interface, and how its attributes are found.
#include "bsdl/BSDLEntity.h"

namespace vorel {

namespace {

template<class Value, class Source>
Status Give(Value& value, Source source) noexcept {
    value = static_cast<Value>(source);
    return StatusOk;
}

Status GiveText(WideText& text, std::string_view bytes) noexcept {
    return Guard([&] {
        text.clear();
        text = FileTextToWide(bytes);
    });
}

template<class Interface, class List>
Status GiveMember(Interface*& member, const List& list, std::int32_t index) noexcept {
    const auto place = static_cast<std::size_t>(index);
    member = index >= 0 && place < list.size() ? std::to_address(list[place]) : nullptr;
    return StatusOk;
}

} // namespace

const TVHDLAttribute* TBSDLEntity::FindAttribute(std::size_t keyword) const {
    for (const auto& [key, attribute] : Attributes) {
        if (SameText(attribute->Name, BSDLKeywords[keyword])) {
            return attribute.get();
        }
    }
    return nullptr;
}

const TVHDLConstant* TBSDLEntity::FindConstant(std::size_t keyword) const {
    for (const auto& [key, constant] : Constants) {
        if (SameText(constant->TypeName, BSDLKeywords[keyword])) {
            return constant.get();
        }
    }
    return nullptr;
}

std::string_view TBSDLEntity::ValueOf(std::size_t keyword) const {
    const TVHDLAttribute* attribute = FindAttribute(keyword);
    return attribute != nullptr ? std::string_view(attribute->Value) : std::string_view();
}

Status TBSDLEntity::GetName(WideText& name) noexcept {
    return GiveText(name, Name);
}
Status TBSDLEntity::GetInstructionLength(std::int32_t& bits) noexcept {
    return Give(bits, InstructionLength);
}
Status TBSDLEntity::GetIdCode(std::uint32_t& idCode) noexcept {
    return Give(idCode, IdCode);
}
Status TBSDLEntity::GetBoundaryLength(std::int32_t& cells) noexcept {
    cells = 0;
    return Guard([&] {
        GetBoundaryCells();
        cells = BoundaryLength;
    });
}
Status TBSDLEntity::GetPin(std::int32_t index, IBSDLPin*& pin) noexcept {
    return GiveMember(pin, Pins, index);
}
Status TBSDLEntity::GetPinMapping(std::int32_t index, IBSDLPinMapping*& mapping) noexcept {
    return GiveMember(mapping, PinMappings, index);
}
Status TBSDLEntity::GetBoundaryCell(std::int32_t index, IBSDLBoundaryCell*& cell) noexcept {
    cell = nullptr;
    return Guard([&] { return GiveMember(cell, GetBoundaryCells(), index); });
}
Status TBSDLEntity::GetOpCode(std::int32_t index, IBSDLOpCode*& opCode) noexcept {
    return GiveMember(opCode, OpCodes, index);
}
Status TBSDLEntity::GetRegisterAssociation(std::int32_t index,
                                           IBSDLRegisterAssociation*& association) noexcept {
    return GiveMember(association, RegisterAssociations, index);
}
Status TBSDLEntity::GetPinCount(std::int32_t& count) noexcept {
    return Give(count, Pins.size());
}
Status TBSDLEntity::GetPinMappingCount(std::int32_t& count) noexcept {
    return Give(count, PinMappings.size());
}
Status TBSDLEntity::GetBoundaryCellCount(std::int32_t& count) noexcept {
    count = 0;
    return Guard([&] { count = static_cast<std::int32_t>(GetBoundaryCells().size()); });
}
Status TBSDLEntity::GetOpCodeCount(std::int32_t& count) noexcept {
    return Give(count, OpCodes.size());
}
Status TBSDLEntity::GetRegisterAssociationCount(std::int32_t& count) noexcept {
    return Give(count, RegisterAssociations.size());
}
Status TBSDLEntity::GetTdiPin(IBSDLPin*& pin) noexcept {
    return Give(pin, TdiPin);
}
Status TBSDLEntity::GetTdoPin(IBSDLPin*& pin) noexcept {
    return Give(pin, TdoPin);
}
Status TBSDLEntity::GetTmsPin(IBSDLPin*& pin) noexcept {
    return Give(pin, TmsPin);
}
Status TBSDLEntity::GetTckPin(IBSDLPin*& pin) noexcept {
    return Give(pin, TckPin);
}
Status TBSDLEntity::GetTrstPin(IBSDLPin*& pin) noexcept {
    return Give(pin, TrstPin);
}
Status TBSDLEntity::GetBypassOpcode(std::int32_t& value) noexcept {
    return Give(value, BypassOpcode);
}
Status TBSDLEntity::GetExtestOpcode(std::int32_t& value) noexcept {
    return Give(value, ExtestOpcode);
}
Status TBSDLEntity::GetSampleOpcode(std::int32_t& value) noexcept {
    return Give(value, SampleOpcode);
}
Status TBSDLEntity::GetIdcodeOpcode(std::int32_t& value) noexcept {
    return Give(value, IdcodeOpcode);
}
Status TBSDLEntity::GetUsercodeOpcode(std::int32_t& value) noexcept {
    return Give(value, UsercodeOpcode);
}
Status TBSDLEntity::GetClampOpcode(std::int32_t& value) noexcept {
    return Give(value, ClampOpcode);
}
Status TBSDLEntity::GetHighzOpcode(std::int32_t& value) noexcept {
    return Give(value, HighzOpcode);
}
Status TBSDLEntity::GetScanClockFrequency(double& hertz) noexcept {
    return Give(hertz, ScanClockFrequency);
}
Status TBSDLEntity::GetScanClockMode(std::int32_t& mode) noexcept {
    return Give(mode, ScanClockMode);
}
Status TBSDLEntity::GetComponentConformance(WideText& text) noexcept {
    return GiveText(text, ComponentConformance);
}
Status TBSDLEntity::GetReservedText(WideText& text) noexcept {
    text.clear();
    return StatusOk;
}
Status TBSDLEntity::GetDesignWarning(WideText& text) noexcept {
    return GiveText(text, DesignWarning);
}
Status TBSDLEntity::GetFileName(WideText& path) noexcept {
    return Guard([&] {
        path.clear();
        path = ToWide(FileName);
    });
}

} // namespace vorel
