#include "bsdl/VHDLObjects.h"

#include "vorel/Bsdl.h"

namespace vorel {

std::string TVHDLObject::GetText() const {
    TTextSink sink;
    WriteText(sink);
    return sink.Get();
}

void TVHDLObject::WriteText(TTextSink&) const {}

void TVHDLRange::WriteText(TTextSink& sink) const {
    if (Direction == VHDLToken::None) {
        return;
    }
    sink << "(" << Left;
    if (Left != Right) {
        sink << " " << VHDLTokens[static_cast<std::size_t>(Direction)] << " " << Right;
    }
    sink << ")";
}

void TInterfaceElement::WriteText(TTextSink& sink) const {
    sink << Name << " " << PinModeNames[static_cast<std::size_t>(Mode())] << " : " << TypeName();
    Type->Range.WriteText(sink);
    if (!DefaultValue().empty()) {
        sink << " := " << DefaultValue();
    }
}

std::string TInterfaceElement::GetFullName() const {
    if (Direction() == VHDLToken::None) {
        return Name;
    }
    const std::string_view left = Trim(RangeLeft());
    const std::string_view right = Trim(RangeRight());
    TTextSink sink;
    if (left != right) {
        sink << Name << "[" << left << ".." << right << "]";
    } else if (Type->LeftNumber.value_or(-999) == -999) {
        sink << Name << "(" << left << ")";
    } else {
        sink << Name << std::to_string(*Type->LeftNumber);
    }
    return sink.Get();
}

void TVHDLGeneric::WriteText(TTextSink& sink) const {
    sink << "Generic ";
    TInterfaceElement::WriteText(sink);
}

void TVHDLPort::WriteText(TTextSink& sink) const {
    sink << "Port ";
    TInterfaceElement::WriteText(sink);
}

void TVHDLSignal::WriteText(TTextSink& sink) const {
    sink << "Signal ";
    TInterfaceElement::WriteText(sink);
}

void TAssociationElement::WriteText(TTextSink& sink) const {
    sink << VHDLElementKindNames[static_cast<std::size_t>(Kind)] << " ";
    if (Instance != nullptr) {
        sink << Instance->InstanceName;
    }
    sink << "-";
    if (FormalElement != nullptr) {
        sink << FormalElement->Name;
    }
    sink << " => ";
    if (Connection != nullptr) {
        sink << Connection->Name << "("
             << VHDLElementKindNames[static_cast<std::size_t>(Connection->Kind)] << ")";
    }
    ActualRange.WriteText(sink);
}

void TVHDLAttribute::WriteText(TTextSink& sink) const {
    sink << "Attribute ";
}

void TVHDLConstant::WriteText(TTextSink& sink) const {
    sink << "Constant ";
}

TEntity::TEntity() = default;
TEntity::~TEntity() = default;

} // namespace vorel
