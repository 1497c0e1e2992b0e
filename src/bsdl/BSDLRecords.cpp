#include "bsdl/BSDLRecords.h"

#include "bsdl/TextSink.h"

namespace vorel {

namespace {

Status GiveText(WideText& text, std::string_view bytes) noexcept {
    return Guard([&] {
        text.clear();
        text = FileTextToWide(bytes);
    });
}

template<class Value, class Source>
Status Give(Value& value, Source source) noexcept {
    value = static_cast<Value>(source);
    return StatusOk;
}

const char* ModeName(PinMode mode) noexcept {
    return PinModeNames[static_cast<std::size_t>(mode)];
}

template<std::size_t Size>
const char* NameIn(const std::array<const char*, Size>& table, std::int32_t index) noexcept {
    return table[static_cast<std::size_t>(index)];
}

} // namespace

std::string TScanPin::Text() const {
    TTextSink sink;
    (sink << " Pin Name:").Padded(Name, 12) << " Number:";
    return (sink.Padded(Number, 12) << " IO:" << ModeName(Mode)).Get();
}

std::string TScanPin::LongText() const {
    return (TTextSink() << Name << "(" << Number << ")-" << ModeName(Mode)).Get();
}

Status TScanPin::GetMode(std::int32_t& mode) noexcept {
    return Give(mode, Mode);
}
Status TScanPin::GetName(WideText& name) noexcept {
    return GiveText(name, Name);
}
Status TScanPin::GetNumber(WideText& number) noexcept {
    return GiveText(number, Number);
}
Status TScanPin::GetFunction(std::int32_t& function) noexcept {
    return Give(function, Function);
}
Status TScanPin::GetMapping(IBSDLPinMapping*& mapping) noexcept {
    return Give(mapping, Mapping);
}
Status TScanPin::GetCellCount(std::int32_t& count) noexcept {
    return Give(count, Cells.size());
}
Status TScanPin::GetCell(std::int32_t index, IBSDLBoundaryCell*& cell) noexcept {
    const auto place = static_cast<std::size_t>(index);
    return Give(cell, index >= 0 && place < Cells.size() ? Cells[place] : nullptr);
}
Status TScanPin::GetTag(std::int32_t& tag) noexcept {
    return Give(tag, Tag);
}
Status TScanPin::SetTag(std::int32_t value) noexcept {
    return Give(Tag, value);
}

Status TPinMapping::GetPinName(WideText& name) noexcept {
    return GiveText(name, PinName);
}
Status TPinMapping::GetPinNumber(WideText& number) noexcept {
    return GiveText(number, PinNumber);
}
Status TPinMapping::GetPin(IBSDLPin*& pin) noexcept {
    return Give(pin, Pin);
}

std::string TBoundaryCell::Text() const {
    TTextSink sink;
    (sink.Padded(std::to_string(Number), 4) << "(")
            .Padded(NameIn(BoundaryCellTypeNames, CellType), 10)
        << ",";
    (sink.Padded(PortName, 10) << ",").Padded(NameIn(BoundaryCellFunctionNames, CellFunction), 10)
        << ",";
    sink.Padded(NameIn(BoundaryCellValueNames, SafeBit), 2);
    if (ControlCell >= 0) {
        (sink << ",").Padded(std::to_string(ControlCell), 4) << ",";
        sink.Padded(NameIn(BoundaryCellValueNames, DisableValue), 2) << ",";
        sink.Padded(NameIn(BoundaryCellDisableNames, DisableResult), 10) << ",";
        if (Pin != nullptr) {
            sink << " Pin:" << Pin->Name;
        }
    }
    return sink.Get();
}

Status TBoundaryCell::GetNumber(std::int32_t& number) noexcept {
    return Give(number, Number);
}
Status TBoundaryCell::GetCellType(std::int32_t& type) noexcept {
    return Give(type, CellType);
}
Status TBoundaryCell::GetPortName(WideText& name) noexcept {
    return GiveText(name, PortName);
}
Status TBoundaryCell::GetCellFunction(std::int32_t& function) noexcept {
    return Give(function, CellFunction);
}
Status TBoundaryCell::GetSafeBit(std::int32_t& value) noexcept {
    return Give(value, SafeBit);
}
Status TBoundaryCell::GetControlCell(std::int32_t& number) noexcept {
    return Give(number, ControlCell);
}
Status TBoundaryCell::GetDisableValue(std::int32_t& value) noexcept {
    return Give(value, DisableValue);
}
Status TBoundaryCell::GetDisableResult(std::int32_t& result) noexcept {
    return Give(result, DisableResult);
}
Status TBoundaryCell::GetPin(IBSDLPin*& pin) noexcept {
    return Give(pin, Pin);
}
Status TBoundaryCell::GetControlCellObject(IBSDLBoundaryCell*& cell) noexcept {
    return Give(cell, ControlCellObject);
}
Status TBoundaryCell::GetControlledCellObject(IBSDLBoundaryCell*& cell) noexcept {
    return Give(cell, ControlledCellObject);
}
Status TBoundaryCell::GetTag(std::int32_t& tag) noexcept {
    return Give(tag, Tag);
}
Status TBoundaryCell::SetTag(std::int32_t value) noexcept {
    return Give(Tag, value);
}

std::string TInstructionOpCode::Text() const {
    return (TTextSink() << Name << "(" << Pattern << ")").Get();
}
Status TInstructionOpCode::GetName(WideText& name) noexcept {
    return GiveText(name, Name);
}
Status TInstructionOpCode::GetPattern(BitText& pattern) noexcept {
    return Guard([&] {
        pattern.clear();
        pattern = Pattern;
    });
}

std::string TRegisterAssociation::Text() const {
    TTextSink sink(TextLimit);
    sink.Padded(Name, 10);
    if (Length > 0) {
        sink << "[" << std::to_string(Length) << "]";
    }
    sink << " (";
    for (std::size_t i = 0; i < OpCodes.size(); ++i) {
        const TInstructionOpCode* opCode = OpCodes[i].OpCode;
        if (opCode == nullptr) {
            // The name of the register and what stood before give way to this word.
            sink = TTextSink(TextLimit);
            sink << "NoOpcode";
            continue;
        }
        sink << (i > 0 ? "," : "") << opCode->Name << "(" << opCode->Pattern << ")";
    }
    return (sink << ")").Get();
}
Status TRegisterAssociation::GetName(WideText& name) noexcept {
    return GiveText(name, Name);
}
Status TRegisterAssociation::GetLength(std::int32_t& length) noexcept {
    return Give(length, Length);
}
Status TRegisterAssociation::GetOpCodeCount(std::int32_t& count) noexcept {
    return Give(count, OpCodes.size());
}
Status TRegisterAssociation::GetOpCode(std::int32_t index, IBSDLOpCode*& opCode) noexcept {
    return Guard([&] {
        opCode = nullptr;
        const auto place = static_cast<std::size_t>(index);
        if (index >= 0 && place <= OpCodes.size()) {
            opCode = OpCodes.at(place).OpCode;
        }
    });
}

} // namespace vorel
