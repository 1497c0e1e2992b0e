// What a VHDL text declares: entities with their ports, attributes, constants and, from
// architectures, signals, components and instances.
//
// An object is owned by the list that holds it. References between objects stay inside one entity.
#pragma once

#include "bsdl/SortedList.h"
#include "bsdl/TextSink.h"
#include "bsdl/VHDLTokens.h"

#include <optional>
#include <vector>

namespace vorel {

class TEntity;
class TComponentDeclaration;
class TComponentInstance;
class TVHDLPort;

class TVHDLObject {
public:
    TVHDLObject() = default;
    TVHDLObject(const TVHDLObject&) = delete;
    TVHDLObject& operator=(const TVHDLObject&) = delete;
    virtual ~TVHDLObject() = default;

    // A text about the object for logs.
    std::string GetText() const;
    // The same into a sink, which may cut it.
    virtual void WriteText(TTextSink& sink) const;

    // Place in the source, counted from 1; 9999 for an object that no parser made.
    std::int32_t Line = 9999;
    std::int32_t Column = 9999;
};

enum class TVHDLElementKind : std::uint8_t {
    Abstract = 0,
    Port = 1,
    Generic = 2,
    PortMap = 3,
    GenericMap = 4,
    Signal = 5,
};
inline constexpr std::array<const char*, 6> VHDLElementKindNames{
    "Abstract Element", "Port", "Generic", "Port Map", "Generic Map", "Signal"};

// A pair of bounds. Direction is the token number of "downto" or "to", -1 without a range.
struct TVHDLRange {
    std::string Left;
    std::string Right;
    std::int32_t Direction = VHDLToken::None;

    void WriteText(TTextSink& sink) const;
};

// What one declaration says of all the names that it declares; they share it.
struct TDeclaredType {
    std::int32_t Mode = 1; // a PinMode
    std::string TypeName;
    std::string DefaultValue;
    TVHDLRange Range; // bounds as read; they may have blanks at both ends
    // The bounds as numbers, where they are.
    std::optional<std::int32_t> LeftNumber;
    std::optional<std::int32_t> RightNumber;
};

// What an actual can be wired to, and what declarations make.
class TInterfaceElement : public TVHDLObject {
public:
    explicit TInterfaceElement(TVHDLElementKind kind) : Kind(kind) {}

    void WriteText(TTextSink& sink) const override;
    // "Name", "Name[left..right]", "Name(bound)" or, with one number as bound, "Name3".
    virtual std::string GetFullName() const;

    std::int32_t Mode() const noexcept { return Type->Mode; }
    std::string_view TypeName() const noexcept { return Type->TypeName; }
    std::string_view DefaultValue() const noexcept { return Type->DefaultValue; }
    std::string_view RangeLeft() const noexcept { return Type->Range.Left; }
    std::string_view RangeRight() const noexcept { return Type->Range.Right; }
    std::int32_t Direction() const noexcept { return Type->Range.Direction; }

    const TVHDLElementKind Kind;
    std::int32_t ListIndex = 0; // place of declaration among its kind, from 0
    std::string Name;
    std::shared_ptr<const TDeclaredType> Type; // never null in a parsed entity
};

class TVHDLGeneric : public TInterfaceElement {
public:
    TVHDLGeneric() : TInterfaceElement(TVHDLElementKind::Generic) {}
    void WriteText(TTextSink& sink) const override;
};

// One association of a port map or generic map: formal => actual.
class TAssociationElement : public TVHDLObject {
public:
    explicit TAssociationElement(TVHDLElementKind kind) : Kind(kind) {}
    void WriteText(TTextSink& sink) const override;

    const TVHDLElementKind Kind;
    std::string Formal; // empty for a positional association
    std::string Actual;
    TVHDLRange FormalRange;
    TVHDLRange ActualRange;
    TInterfaceElement* Connection = nullptr; // signal or port of the owner that the actual names
    TVHDLPort* FormalElement = nullptr;      // port of the component
    TComponentInstance* Instance = nullptr;
};

class TMappedPort : public TAssociationElement {
public:
    TMappedPort() : TAssociationElement(TVHDLElementKind::PortMap) {}
};

class TMappedGeneric : public TAssociationElement {
public:
    TMappedGeneric() : TAssociationElement(TVHDLElementKind::GenericMap) {}
};

// A port or signal, and what is wired to it (not owned; key the upper-case formal).
class TConnectedElement : public TInterfaceElement {
public:
    using TInterfaceElement::TInterfaceElement;

    TSortedStringList<TAssociationElement*> Connections;
};

class TVHDLPort : public TConnectedElement {
public:
    TVHDLPort() : TConnectedElement(TVHDLElementKind::Port) {}
    void WriteText(TTextSink& sink) const override;
};

class TVHDLSignal : public TConnectedElement {
public:
    TVHDLSignal() : TConnectedElement(TVHDLElementKind::Signal) {}
    void WriteText(TTextSink& sink) const override;
};

enum class TAttributeKind : std::uint8_t { None = 0, Declared = 1, Specified = 2 };
enum class TEntityListKind : std::uint8_t { None = 0, All = 1, Others = 2, Named = 3 };

class TVHDLAttribute : public TVHDLObject {
public:
    void WriteText(TTextSink& sink) const override;

    std::string Name;
    TAttributeKind AttributeKind = TAttributeKind::None;
    std::string Value; // a string expression comes as one text without its quotes
    TEntityListKind EntityListKind = TEntityListKind::None;
    std::int32_t EntityClass = VHDLToken::None;
    std::vector<std::string> EntityNames; // in source order
};

class TVHDLConstant : public TVHDLObject {
public:
    void WriteText(TTextSink& sink) const override;

    std::vector<std::string> Names;
    std::string Value; // as in attributes
    std::string TypeName;
};

class TComponentInstance : public TVHDLObject {
public:
    std::string InstanceName; // upper case
    std::string ComponentName;
    TComponentDeclaration* Component = nullptr;
    TSortedStringList<std::unique_ptr<TMappedGeneric>> GenericMap; // key the upper-case formal
    TSortedStringList<std::unique_ptr<TMappedPort>> PortMap;
    TEntity* Owner = nullptr;
};

// Attributes and constants have the empty key, so their lists stand in reverse order of
// declaration; the key of all others is the upper-case name.
class TEntity : public TVHDLObject {
public:
    TEntity();
    ~TEntity() override;

    std::string Name;
    TSortedStringList<std::unique_ptr<TVHDLGeneric>> Generics;
    TSortedStringList<std::unique_ptr<TVHDLAttribute>> Attributes;
    TSortedStringList<std::unique_ptr<TVHDLConstant>> Constants;
    TSortedStringList<std::unique_ptr<TVHDLPort>> Ports;
    TSortedStringList<std::unique_ptr<TVHDLSignal>> Signals;
    TSortedStringList<std::unique_ptr<TComponentInstance>> Instances;
    TSortedStringList<std::unique_ptr<TComponentDeclaration>> Components;
    // The instance in which an error ended the parse; it is in no list.
    std::unique_ptr<TComponentInstance> UnfinishedInstance;
    std::vector<TVHDLPort*> PortsByIndex; // the members of Ports by their ListIndex
};

class TComponentDeclaration : public TEntity {};

using TEntityList = TSortedUniqueStringList<TEntity>;

} // namespace vorel
