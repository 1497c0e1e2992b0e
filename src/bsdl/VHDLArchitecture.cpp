// The rules of architectures: component declarations, instances and assignments. Errors in them are
// silent.
#include "bsdl/VHDLParser.h"

namespace vorel {

namespace {

constexpr std::int32_t ComponentWeight = 8;

TTextSink LogLine() {
    return TTextSink(TParserLog::LineLimit);
}

// An expression "name(slice)" taken apart.
struct TSlice {
    std::string_view Name;
    std::string_view Left;
    std::string_view Right;
};

std::size_t FindWord(std::string_view text, std::string_view upperWord) {
    for (std::size_t i = 0; i + upperWord.size() <= text.size(); ++i) {
        if (SameText(text.substr(i, upperWord.size()), upperWord)) {
            return i;
        }
    }
    return std::string_view::npos;
}

std::optional<TSlice> SplitSlice(std::string_view expression) {
    const std::size_t open = expression.find('(');
    const std::size_t close = expression.find(')');
    if (open == std::string_view::npos || close == std::string_view::npos) {
        return std::nullopt;
    }
    TSlice slice;
    slice.Name = Trim(expression.substr(0, open));
    const std::string_view bounds =
        close > open ? Trim(expression.substr(open + 1, close - open - 1)) : std::string_view();
    slice.Left = slice.Right = bounds;
    for (const std::string_view word : {std::string_view("DOWNTO"), std::string_view("TO")}) {
        const std::size_t at = FindWord(bounds, word);
        if (at != std::string_view::npos) {
            slice.Left = Trim(bounds.substr(0, at));
            slice.Right = Trim(bounds.substr(at + word.size()));
            break;
        }
    }
    return slice;
}

void WriteConnection(TTextSink& sink, std::string_view what, const TVHDLObject& from,
                     const TVHDLObject& to) {
    sink << what;
    from.WriteText(sink);
    sink << " To ";
    to.WriteText(sink);
}

void WriteBounds(TTextSink& sink, const TSlice& slice) {
    sink << "[" << slice.Left << ".." << slice.Right << "]";
}

} // namespace

void TVHDLParser::ArchitectureRule() {
    InArchitecture = true;
    const TState here = State;
    Expect(VHDLToken::Architecture);
    const std::string_view architecture = ReadIdentifier();
    Expect(VHDLToken::Of);
    const std::string_view name = ReadIdentifier();
    State = here;
    TEntity* entity = Entities.Find(name);
    if (entity == nullptr) {
        Raise("Entity : " + std::string(name) +
              " not found for Architecture : " + std::string(architecture));
    }
    Log((LogLine() << "New Architecture: " << name << " For Entity:" << architecture).Get());
    ArchitectureBody(*entity);
    InArchitecture = false;
}

void TVHDLParser::ArchitectureBody(TEntity& entity) {
    Expect(VHDLToken::Architecture);
    ReadIdentifier();
    Expect(VHDLToken::Of);
    ReadIdentifier();
    Expect(VHDLToken::Is);
    for (;;) {
        switch (Peek()) {
        case VHDLToken::Attribute:
            entity.Attributes.Add("", AttributeRule());
            break;
        case VHDLToken::Begin:
            Next();
            StatementPart(entity);
            break;
        case VHDLToken::Component:
            ComponentRule(entity);
            break;
        case VHDLToken::Signal:
            SignalDeclaration(entity);
            break;
        case VHDLToken::End:
            return EndClause(VHDLToken::Architecture);
        default:
            if (LookAhead().Kind == TTokenKind::Eof) {
                return;
            }
            Next();
        }
    }
}

void TVHDLParser::ComponentRule(TEntity& owner) {
    const TState here = State;
    Expect(VHDLToken::Component);
    const std::string_view name = ReadIdentifier();
    State = here;
    ShowStatus("Component Declaration:", name);
    if (owner.Components.Find(name) != nullptr) {
        Raise("Component " + std::string(name) + " Redeclared");
    }
    Log((LogLine() << "Component Declaration :" << name).Get());
    std::unique_ptr<TComponentDeclaration> created = Make<TComponentDeclaration>(ComponentWeight);
    TEntity& component = *created;
    owner.Components.Add(UpperCase(name), std::move(created));
    ComponentBody(component);
}

void TVHDLParser::ComponentBody(TEntity& component) {
    Expect(VHDLToken::Component);
    component.Name = ReadIdentifier();
    TakeIf(VHDLToken::Is);
    for (;;) {
        switch (Peek()) {
        case VHDLToken::Generic:
            GenericClause(component);
            break;
        case VHDLToken::Port:
            PortClause(component);
            break;
        case VHDLToken::End:
            Expect(VHDLToken::End);
            Expect(VHDLToken::Component);
            if (Peek() != VHDLToken::Semicolon) {
                ReadIdentifier();
            }
            return Expect(VHDLToken::Semicolon);
        default:
            if (LookAhead().Kind == TTokenKind::Eof) {
                return;
            }
            Next();
        }
    }
}

void TVHDLParser::StatementPart(TEntity& owner) {
    while (Peek() != VHDLToken::End && LookAhead().Kind != TTokenKind::Eof) {
        const std::int32_t token = Peek();
        const bool starts = token == VHDLToken::Attribute || token == VHDLToken::Block ||
                            token == VHDLToken::Component || token == VHDLToken::Configuration ||
                            token == VHDLToken::Entity || token == VHDLToken::Process;
        if (starts || PeekKind() == TTokenKind::Symbol) {
            Statement(owner);
        } else {
            Next();
        }
    }
}

void TVHDLParser::Statement(TEntity& owner) {
    std::string_view target;
    std::optional<std::string> label;
    std::string_view peeked;
    if (PeekKind() == TTokenKind::Symbol) {
        target = ReadIdentifier();
        if (TakeIf(VHDLToken::Colon)) {
            label = UpperCase(target);
            peeked = LookAhead().Kind == TTokenKind::Symbol ? LookAhead().Text : "";
        }
    }
    switch (Peek()) {
    case VHDLToken::Process:
        return SkipProcess();
    case VHDLToken::Block:
        return SkipBlock();
    case VHDLToken::Component:
        Raise("Component keyword not supported in component instances");
    case VHDLToken::Entity:
        Raise("Entity Instances Not Supported");
    case VHDLToken::Configuration:
        Raise("Configurations Not Supported");
    default:
        break;
    }
    if (label && !peeked.empty() && owner.Components.Find(peeked) != nullptr) {
        ReadIdentifier();
        return InstanceRule(owner, std::move(*label), peeked);
    }
    Assignment(owner, label ? ReadIdentifier() : target);
}

void TVHDLParser::Assignment(TEntity& owner, std::string_view target) {
    if (Peek() != VHDLToken::LessEqual) {
        Next();
    } else if (const TVHDLSignal* signal = owner.Signals.Find(target)) {
        SignalAssignment(owner, *signal);
    } else if (const TVHDLPort* port = owner.Ports.Find(target)) {
        PortAssignment(owner, *port);
    } else {
        Raise("Unrecognized Assignment " + std::string(target));
    }
}

void TVHDLParser::SkipProcess() {
    Expect(VHDLToken::Process);
    if (TakeIf(VHDLToken::OpenParenthesis)) {
        do {
            ReadIdentifier();
        } while (TakeIf(VHDLToken::Comma));
        Expect(VHDLToken::CloseParenthesis);
    }
    ReadUntil(VHDLToken::Process, VHDLToken::Process);
    Expect(VHDLToken::Process);
    if (Peek() != VHDLToken::Semicolon) {
        ReadIdentifier();
    }
    Expect(VHDLToken::Semicolon);
}

void TVHDLParser::SkipBlock() {
    Expect(VHDLToken::Block);
    ReadUntil(VHDLToken::Block, VHDLToken::Block);
    Expect(VHDLToken::Block);
    if (Peek() != VHDLToken::Semicolon) {
        ReadIdentifier();
    }
    Expect(VHDLToken::Semicolon);
}

void TVHDLParser::SignalAssignment(TEntity& owner, const TVHDLSignal& signal) {
    Expect(VHDLToken::LessEqual);
    const std::string expression = ReadUntil(VHDLToken::Semicolon, VHDLToken::Semicolon);
    TTextSink line = LogLine();
    if (const TVHDLPort* port = owner.Ports.Find(expression)) {
        WriteConnection(line, "SignalConnectedToPort:", signal, *port);
    } else if (const std::optional<TSlice> slice = SplitSlice(expression); !slice) {
        line << "Unrecognized expression " << expression << " assigned to signal " << signal.Name;
    } else if (const TVHDLPort* sliced = owner.Ports.Find(slice->Name)) {
        WriteConnection(line, "SignalConnectedToPortSlice:", signal, *sliced);
        WriteBounds(line, *slice);
    } else {
        return;
    }
    Log(line.Get());
}

void TVHDLParser::PortAssignment(TEntity& owner, const TVHDLPort& port) {
    Expect(VHDLToken::LessEqual);
    const std::string expression = ReadUntil(VHDLToken::Semicolon, VHDLToken::Semicolon);
    TTextSink found = LogLine();
    found << "Found PortAssignment:";
    port.WriteText(found);
    Log((found << " <= " << expression).Get());
    TTextSink line = LogLine();
    if (const TVHDLSignal* signal = owner.Signals.Find(expression)) {
        WriteConnection(line, "PortConnectedToSignal:", port, *signal);
    } else if (const std::optional<TSlice> slice = SplitSlice(expression); !slice) {
        line << "Unrecognized expression " << expression << " assigned to port " << port.Name;
    } else if (const TVHDLSignal* sliced = owner.Signals.Find(slice->Name)) {
        WriteConnection(line, "PortConnectedToSignalSlice:", port, *sliced);
        WriteBounds(line, *slice);
    } else {
        line << "Unrecognized slice " << expression << " assigned to port " << port.Name;
    }
    Log(line.Get());
}

void TVHDLParser::InstanceRule(TEntity& owner, std::string label, std::string_view component) {
    ShowStatus("Component Instance : ", label);
    auto instance = Make<TComponentInstance>();
    instance->InstanceName = label;
    instance->ComponentName = component;
    instance->Owner = &owner;
    instance->Component = owner.Components.Find(component);
    if (instance->Component == nullptr) {
        Raise("Component Type " + std::string(component) + " Not Found");
    }
    Log((LogLine() << "Component Instance:" << label << " Type:" << component).Get());
    // Ports and signals will refer to its associations, so an error below must not free it.
    owner.UnfinishedInstance = std::move(instance);
    TComponentInstance& added = *owner.UnfinishedInstance;
    if (Peek() == VHDLToken::Generic) {
        Next();
        AssociationList(added, TVHDLElementKind::GenericMap);
    }
    if (Peek() == VHDLToken::Port) {
        Next();
        AssociationList(added, TVHDLElementKind::PortMap);
    }
    Expect(VHDLToken::Semicolon);
    owner.Instances.Add(std::move(label), std::move(owner.UnfinishedInstance));
}

void TVHDLParser::AssociationList(TComponentInstance& instance, TVHDLElementKind kind) {
    Expect(VHDLToken::Map);
    Expect(VHDLToken::OpenParenthesis);
    TAssociationPlace place{instance, kind, 0};
    do {
        Association(place);
        ++place.Position;
    } while (TakeIf(VHDLToken::Comma));
    Expect(VHDLToken::CloseParenthesis);
}

void TVHDLParser::Association(const TAssociationPlace& place) {
    std::string formal(ReadIdentifier());
    TVHDLRange formalRange;
    if (Peek() == VHDLToken::OpenParenthesis) {
        formalRange = ReadParenthesisedRange();
    }
    std::string actual;
    TVHDLRange actualRange;
    if (Peek() == VHDLToken::CloseParenthesis || Peek() == VHDLToken::Comma) {
        std::swap(formal, actual);
        std::swap(formalRange, actualRange);
    } else if (TakeIf(VHDLToken::Arrow)) {
        actual = ReadValue();
        if (Peek() == VHDLToken::OpenParenthesis) {
            actualRange = ReadParenthesisedRange();
        }
    }
    TAssociationElement& element = AddAssociation(place, formal);
    element.Formal = std::move(formal);
    element.Actual = std::move(actual);
    element.FormalRange = std::move(formalRange);
    element.ActualRange = std::move(actualRange);
    element.Instance = &place.Instance;
    ResolveFormal(element, place);
    ResolveActual(element, *place.Instance.Owner);
    TTextSink line = LogLine();
    line << "Adding AssociationElement:";
    element.WriteText(line);
    Log(line.Get());
}

TAssociationElement& TVHDLParser::AddAssociation(const TAssociationPlace& place,
                                                 const std::string& formal) {
    const auto add = [&formal](auto& list, auto element) -> TAssociationElement& {
        TAssociationElement& added = *element;
        list.Add(UpperCase(formal), std::move(element));
        return added;
    };
    if (place.Kind == TVHDLElementKind::PortMap) {
        return add(place.Instance.PortMap, Make<TMappedPort>());
    }
    return add(place.Instance.GenericMap, Make<TMappedGeneric>());
}

void TVHDLParser::ResolveFormal(TAssociationElement& element, const TAssociationPlace& place) {
    const TComponentInstance& instance = place.Instance;
    const TEntity& component = *instance.Component;
    if (element.Formal.empty()) {
        if (place.Position >= component.PortsByIndex.size()) {
            Raise("Out of Range Port Map: " + element.Actual + " in Component Instance " +
                  instance.InstanceName + "(" + instance.ComponentName + ")");
        }
        element.FormalElement = component.PortsByIndex[place.Position];
        return;
    }
    element.FormalElement = component.Ports.Find(element.Formal);
    if (element.FormalElement == nullptr && place.Kind == TVHDLElementKind::PortMap) {
        Raise("Unrecognized Pin " + element.Formal + " in Component Instance " +
              instance.InstanceName + "(" + instance.ComponentName + ")");
    }
}

void TVHDLParser::ResolveActual(TAssociationElement& element, TEntity& owner) {
    TConnectedElement* connection = owner.Signals.Find(element.Actual);
    if (connection == nullptr) {
        connection = owner.Ports.Find(element.Actual);
    }
    if (connection != nullptr) {
        element.Connection = connection;
        connection->Connections.Add(UpperCase(element.Formal), &element);
    }
}

} // namespace vorel
