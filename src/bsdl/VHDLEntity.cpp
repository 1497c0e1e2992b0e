// The rules of entities: generics, ports, attributes, constants and signals.
#include "bsdl/VHDLParser.h"

#include <algorithm>

namespace vorel {

namespace {

constexpr std::int32_t EntityWeight = 8;

std::optional<std::int32_t> ToNumber(std::string_view text) {
    const std::optional<std::int64_t> value = ParseDecimal(text);
    if (!value || *value < std::numeric_limits<std::int32_t>::min() ||
        *value > std::numeric_limits<std::int32_t>::max()) {
        return std::nullopt;
    }
    return static_cast<std::int32_t>(*value);
}

// A string expression comes as "ab"&"cd" and becomes ab cd; any other text stays.
void Unquote(std::string& text) {
    if (text.size() < 3 || text.front() != '"' || text.back() != '"') {
        return;
    }
    const std::string_view inner = std::string_view(text).substr(1, text.size() - 2);
    std::size_t from = 0;
    std::size_t to = 0;
    while (from < inner.size()) {
        const std::size_t joint = std::min(inner.find("\"&\"", from), inner.size());
        std::copy(inner.begin() + static_cast<std::ptrdiff_t>(from),
                  inner.begin() + static_cast<std::ptrdiff_t>(joint),
                  text.begin() + static_cast<std::ptrdiff_t>(to));
        to += joint - from;
        from = joint;
        if (joint < inner.size()) {
            text[to++] = ' ';
            from += 3;
        }
    }
    text.resize(to);
    const std::string_view trimmed = Trim(text);
    const auto front = static_cast<std::size_t>(trimmed.data() - text.data());
    text.resize(front + trimmed.size());
    text.erase(0, front);
}

template<class List, class Element>
void AddElements(List& list, std::vector<std::unique_ptr<Element>>& elements) {
    for (std::unique_ptr<Element>& element : elements) {
        element->ListIndex = static_cast<std::int32_t>(list.Count());
        std::string key = UpperCase(element->Name);
        list.Add(std::move(key), std::move(element));
    }
}

} // namespace

void TVHDLParser::EntityRule() {
    const TState here = State;
    Expect(VHDLToken::Entity);
    const std::string_view name = ReadIdentifier();
    State = here;
    ShowStatus("Entity:", name);
    if (Entities.Find(name) != nullptr) {
        Raise("Entity " + std::string(name) + " Redeclared");
    }
    Log((TTextSink(TParserLog::LineLimit) << "New Entity:" << name).Get());
    ClaimObjects(EntityWeight);
    std::unique_ptr<TEntity> created = CreateEntity();
    TEntity& entity = *created;
    Entities.Add(UpperCase(name), std::move(created));
    EntityBody(entity);
}

void TVHDLParser::EntityBody(TEntity& entity) {
    Expect(VHDLToken::Entity);
    entity.Name = ReadIdentifier();
    entity.Line = State.Line + 1;
    entity.Column = static_cast<std::int32_t>(State.TokenStart - State.LineStart) + 1;
    Expect(VHDLToken::Is);
    for (;;) {
        switch (Peek()) {
        case VHDLToken::Attribute:
            entity.Attributes.Add("", AttributeRule());
            break;
        case VHDLToken::Constant:
            entity.Constants.Add("", ConstantRule());
            break;
        case VHDLToken::Generic:
            GenericClause(entity);
            break;
        case VHDLToken::Port:
            PortClause(entity);
            break;
        case VHDLToken::Signal:
            SignalDeclaration(entity);
            break;
        case VHDLToken::End:
            return EndClause(VHDLToken::Entity);
        default:
            if (LookAhead().Kind == TTokenKind::Eof) {
                return;
            }
            Next();
        }
    }
}

void TVHDLParser::GenericClause(TEntity& entity) {
    Expect(VHDLToken::Generic);
    Expect(VHDLToken::OpenParenthesis);
    do {
        auto generics = InterfaceDeclaration<TVHDLGeneric>();
        AddElements(entity.Generics, generics);
    } while (TakeIf(VHDLToken::Semicolon));
    Expect(VHDLToken::CloseParenthesis);
    Expect(VHDLToken::Semicolon);
}

void TVHDLParser::PortClause(TEntity& entity) {
    Expect(VHDLToken::Port);
    Expect(VHDLToken::OpenParenthesis);
    if (Peek() != VHDLToken::CloseParenthesis) {
        do {
            auto ports = InterfaceDeclaration<TVHDLPort>();
            for (const auto& port : ports) {
                entity.PortsByIndex.push_back(port.get());
            }
            AddElements(entity.Ports, ports);
        } while (TakeIf(VHDLToken::Semicolon));
    }
    Expect(VHDLToken::CloseParenthesis);
    Expect(VHDLToken::Semicolon);
}

void TVHDLParser::SignalDeclaration(TEntity& entity) {
    Expect(VHDLToken::Signal);
    auto signals = InterfaceDeclaration<TVHDLSignal>();
    AddElements(entity.Signals, signals);
    Expect(VHDLToken::Semicolon);
}

template<class Element>
std::vector<std::unique_ptr<Element>> TVHDLParser::InterfaceDeclaration() {
    std::vector<std::unique_ptr<Element>> elements;
    do {
        const std::string_view name = ReadIdentifier();
        elements.push_back(Make<Element>());
        elements.back()->Name = name;
    } while (TakeIf(VHDLToken::Comma));
    Expect(VHDLToken::Colon);
    const std::shared_ptr<const TDeclaredType> type = ReadDeclaredType();
    for (const auto& element : elements) {
        element->Type = type;
    }
    return elements;
}

std::shared_ptr<const TDeclaredType> TVHDLParser::ReadDeclaredType() {
    auto type = std::make_shared<TDeclaredType>();
    type->Mode = ReadMode();
    type->TypeName = ReadIdentifier();
    if (Peek() == VHDLToken::OpenParenthesis) {
        type->Range = ReadParenthesisedRange();
    } else if (Peek() == VHDLToken::Range) {
        ReadRangeClause(type->Range);
    }
    if (TakeIf(VHDLToken::Assign)) {
        type->DefaultValue = ReadUntil(VHDLToken::Semicolon, VHDLToken::CloseParenthesis);
    }
    type->LeftNumber = ToNumber(type->Range.Left);
    type->RightNumber = ToNumber(type->Range.Right);
    return type;
}

// The mode as a PinMode; I/O where none is written.
std::int32_t TVHDLParser::ReadMode() {
    std::int32_t mode = 1;
    switch (Peek()) {
    case VHDLToken::In:
        mode = 0;
        break;
    case VHDLToken::Inout:
    case VHDLToken::Linkage:
        break;
    case VHDLToken::Out:
        mode = 2;
        break;
    case VHDLToken::Buffer:
        mode = 3;
        break;
    default:
        return mode;
    }
    Next();
    return mode;
}

TVHDLRange TVHDLParser::ReadParenthesisedRange() {
    TVHDLRange range;
    Expect(VHDLToken::OpenParenthesis);
    range.Left = ReadUntil3(VHDLToken::To, VHDLToken::Downto, VHDLToken::CloseParenthesis);
    const std::int32_t direction = Peek();
    range.Direction = direction == VHDLToken::Downto ? VHDLToken::Downto : VHDLToken::To;
    if (direction == VHDLToken::Downto || direction == VHDLToken::To) {
        Next();
        range.Right = ReadUntil(VHDLToken::CloseParenthesis, VHDLToken::CloseParenthesis);
    } else {
        range.Right = range.Left;
    }
    Expect(VHDLToken::CloseParenthesis);
    return range;
}

// "range left to right": the word "range" itself stays at the front of the left bound.
void TVHDLParser::ReadRangeClause(TVHDLRange& range) {
    range.Left = ReadUntil(VHDLToken::To, VHDLToken::Downto);
    const std::int32_t direction = Peek();
    if (direction == VHDLToken::Downto || direction == VHDLToken::To) {
        Next();
        range.Direction = direction;
        range.Right = ReadUntil(VHDLToken::Semicolon, VHDLToken::CloseParenthesis);
    } else {
        range.Right = range.Left;
    }
}

std::unique_ptr<TVHDLAttribute> TVHDLParser::AttributeRule() {
    Expect(VHDLToken::Attribute);
    auto attribute = Make<TVHDLAttribute>();
    attribute->Name = ReadIdentifier();
    if (TakeIf(VHDLToken::Of)) {
        attribute->AttributeKind = TAttributeKind::Specified;
        ReadEntityNames(*attribute);
        Expect(VHDLToken::Colon);
        attribute->EntityClass = ReadEntityClass();
        Expect(VHDLToken::Is);
        attribute->Value = ReadUntil(VHDLToken::Semicolon, VHDLToken::Semicolon);
    } else {
        attribute->AttributeKind = TAttributeKind::Declared;
        attribute->Value = ReadUntil(VHDLToken::Semicolon, VHDLToken::Semicolon);
        Expect(VHDLToken::Semicolon);
    }
    Unquote(attribute->Value);
    return attribute;
}

void TVHDLParser::ReadEntityNames(TVHDLAttribute& attribute) {
    if (TakeIf(VHDLToken::All)) {
        attribute.EntityListKind = TEntityListKind::All;
        return;
    }
    if (TakeIf(VHDLToken::Others)) {
        attribute.EntityListKind = TEntityListKind::Others;
        return;
    }
    attribute.EntityListKind = TEntityListKind::Named;
    do {
        ClaimObjects(1);
        attribute.EntityNames.emplace_back(ReadValue());
    } while (TakeIf(VHDLToken::Comma));
}

std::int32_t TVHDLParser::ReadEntityClass() {
    constexpr std::array classes{
        TokenNumber("architecture"), TokenNumber("component"), TokenNumber("configuration"),
        TokenNumber("constant"),     TokenNumber("entity"),    TokenNumber("function"),
        TokenNumber("label"),        TokenNumber("literal"),   TokenNumber("package"),
        TokenNumber("procedure"),    TokenNumber("signal"),    TokenNumber("subtype"),
        TokenNumber("type"),         TokenNumber("units"),     TokenNumber("variable")};
    Next();
    if (std::find(classes.begin(), classes.end(), State.Number) == classes.end()) {
        Raise("Entity Class Expected (Entity..Units)");
    }
    return State.Number;
}

std::unique_ptr<TVHDLConstant> TVHDLParser::ConstantRule() {
    Expect(VHDLToken::Constant);
    auto constant = Make<TVHDLConstant>();
    do {
        ClaimObjects(1);
        constant->Names.emplace_back(ReadIdentifier());
    } while (TakeIf(VHDLToken::Comma));
    Expect(VHDLToken::Colon);
    constant->TypeName = ReadUntil(VHDLToken::Assign, VHDLToken::Semicolon);
    if (TakeIf(VHDLToken::Assign)) {
        constant->Value = ReadUntil(VHDLToken::Semicolon, VHDLToken::Semicolon);
    }
    Expect(VHDLToken::Semicolon);
    Unquote(constant->Value);
    return constant;
}

} // namespace vorel
