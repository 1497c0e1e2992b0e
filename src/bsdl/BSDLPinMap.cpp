// The stages that make pins of ports and give them their package numbers.
#include "bsdl/BSDLEntity.h"
#include "bsdl/BSDLParser.h"
#include "bsdl/NaturalSort.h"

namespace vorel {

namespace {

constexpr std::size_t NotFound = std::string_view::npos;

PinFunction FunctionByName(std::string_view name) {
    const std::string upper = UpperCase(name);
    return upper.find("VCC") != NotFound   ? PinFunction::Power
           : upper.find("GND") != NotFound ? PinFunction::Ground
                                           : PinFunction::Normal;
}

// The number of pins that a port brings. A vector port has one for each bit, unless its bounds are
// equal texts or no numbers.
std::size_t CountPins(const TVHDLPort& port, TBSDLParser& parser) {
    if (port.Direction() == VHDLToken::None) {
        return 1;
    }
    const std::optional<std::int32_t> left = port.Type->LeftNumber;
    const std::optional<std::int32_t> right = port.Type->RightNumber;
    if (Trim(port.RangeLeft()) == Trim(port.RangeRight()) || !left || !right || *left < 0) {
        return 0;
    }
    const auto [low, high] = std::minmax(*left, *right);
    TTextSink line(TParserLog::LineLimit);
    line << "  Exanding Port:" << port.Name << "[" << std::to_string(low) << ".."
         << std::to_string(high) << "]";
    parser.Log(line.Get());
    return static_cast<std::size_t>(std::int64_t{high} - low + 1);
}

} // namespace

void TBSDLEntity::ReadPinMap(TBSDLParser& parser) {
    const TVHDLAttribute* pinMap = FindAttribute(BSDLKeyword("Pin_Map"));
    // By its type, not by the name that the attribute gives: of several packages in a file the one
    // declared last counts.
    const TVHDLConstant* mappings = FindConstant(BSDLKeyword("Pin_Map_String"));
    if (pinMap == nullptr) {
        return parser.Log("Missing Pin Map");
    }
    if (mappings == nullptr) {
        return parser.Log("Missing Pin Map TDynamicString");
    }
    constexpr std::size_t limit = TParserLog::LineLimit;
    parser.Log((TTextSink(limit) << "Device Pin Map: " << pinMap->Value).Get());
    parser.Log((TTextSink(limit) << "Device Pin Mappings: " << mappings->Value).Get());
    ReadPinMappings(mappings->Value);
    MakePins(parser);
    SortNatural(PinMappings, [](const auto& mapping) { return mapping->PinNumber; });
    FindFirstPins();
}

// "port: number, port: (number, number)"
void TBSDLEntity::ReadPinMappings(std::string_view text) {
    std::size_t close = 0; // of the whole text; searched again only when passed
    std::size_t start = 0;
    for (;;) {
        const std::size_t colon = text.find(':', start);
        if (colon == NotFound) {
            return;
        }
        const std::string_view name = Trim(text.substr(start, colon - start));
        std::size_t rest = colon + 1;
        while (rest < text.size() && static_cast<unsigned char>(text[rest]) <= ' ') {
            ++rest;
        }
        if (close != NotFound && close < rest) {
            close = text.find(')', rest);
        }
        if (rest < text.size() && text[rest] == '(') {
            if (close != NotFound) {
                AddPinMappings(name, text.substr(rest + 1, close - rest - 1));
                rest = close + 1;
                rest += rest < text.size() && text[rest] == ',' ? 1 : 0;
            }
            start = rest;
            continue;
        }
        const std::size_t comma = std::min(text.find(',', rest), text.size());
        AddPinMapping(name, Names.Intern(name), Trim(text.substr(rest, comma - rest)));
        start = std::min(comma + 1, text.size());
    }
}

void TBSDLEntity::AddPinMappings(std::string_view name, std::string_view numbers) {
    const std::int32_t nameId = Names.Intern(name);
    TCommaText items(numbers, Texts);
    std::string_view number;
    while (items.Next(number)) {
        AddPinMapping(name, nameId, Trim(number));
    }
}

void TBSDLEntity::AddPinMapping(std::string_view name, std::int32_t nameId,
                                std::string_view number) {
    if (PinMappings.size() >= MaximumRecords) {
        return;
    }
    auto mapping = std::make_unique<TPinMapping>(*this);
    mapping->PinName = name;
    mapping->NameId = nameId;
    mapping->PinNumber = number;
    PinMappings.push_back(std::move(mapping));
}

// Makes the pins in natural order of their names. Sorting the ports is enough for that, and the
// bits of a vector need not be compared with each other.
void TBSDLEntity::MakePins(TBSDLParser& parser) {
    struct TPortPins {
        const TVHDLPort* Port;
        std::size_t Count;
    };
    std::vector<TPortPins> ports;
    ports.reserve(Ports.Count());
    std::size_t total = 0;
    for (const auto& [key, port] : Ports) {
        const std::size_t count = CountPins(*port, parser);
        if (count <= MaximumRecords - total) {
            ports.push_back({port.get(), count});
            total += count;
        }
    }
    SortNatural(ports, [](const TPortPins& item) { return std::string_view(item.Port->Name); });
    Pins.reserve(total);
    for (const TPortPins& item : ports) {
        AddPins(*item.Port, item.Count);
    }
}

void TBSDLEntity::AddPins(const TVHDLPort& port, std::size_t count) {
    const std::int32_t nameId = Names.Intern(port.Name);
    const PinFunction function = FunctionByName(port.Name);
    for (std::size_t i = 0; i < count; ++i) {
        auto pin = std::make_unique<TScanPin>(*this);
        pin->Name = port.Name;
        pin->NameId = nameId;
        pin->Mode = static_cast<PinMode>(port.Mode());
        pin->Function = function;
        Pins.push_back(std::move(pin));
    }
}

void TBSDLEntity::FindFirstPins() {
    FirstPins.assign(Names.Count(), nullptr);
    for (const auto& pin : Pins) {
        TScanPin*& first = FirstPins[static_cast<std::size_t>(pin->NameId)];
        if (first == nullptr) {
            first = pin.get();
        }
    }
}

TScanPin* TBSDLEntity::FindPin(std::string_view name) const noexcept {
    const std::int32_t id = Names.Find(name);
    return id == TNameTable::None ? nullptr : FirstPins[static_cast<std::size_t>(id)];
}

// In order of the package numbers, each mapping takes the first pin of its name without a number.
void TBSDLEntity::LinkPins() {
    // Pins stand by name here: those of one name follow each other, and this is the first free one.
    std::vector<std::size_t> nextFree(Names.Count(), Pins.size());
    for (std::size_t i = Pins.size(); i-- > 0;) {
        nextFree[static_cast<std::size_t>(Pins[i]->NameId)] = i;
    }
    for (const auto& mapping : PinMappings) {
        std::size_t& free = nextFree[static_cast<std::size_t>(mapping->NameId)];
        if (free >= Pins.size() || Pins[free]->NameId != mapping->NameId) {
            continue;
        }
        TScanPin& pin = *Pins[free];
        pin.Mapping = mapping.get();
        pin.Number = mapping->PinNumber;
        mapping->Pin = &pin;
        free += pin.Number.empty() ? 0 : 1;
    }
    SortNatural(Pins, [](const auto& pin) { return pin->Number; });
    FindFirstPins();
}

} // namespace vorel
