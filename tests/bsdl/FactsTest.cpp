// Reads real files of many makers and compares every fact that independent readers agreed on. This
// system reads some things otherwise; each such difference is told here as a rule, and only by a
// rule may a file differ.
#include "bsdl/BSDLReport.h"
#include "bsdl/BsdlTestSupport.h"

#include <nettle/sha2.h>
#include <nlohmann/json.hpp>

#include <map>
#include <regex>
#include <set>

namespace vorel {
namespace {

using TJson = nlohmann::ordered_json;
using TFields = std::vector<std::string>;

std::filesystem::path DataFolder() {
    const char* given = std::getenv("VOREL_TEST_DATA");
    return std::filesystem::path(given != nullptr ? given : VOREL_SOURCE_DIR "/../shared/data") /
           "bsdl";
}

std::string Sha256(const std::vector<std::string>& lines) {
    std::string text = JoinLines(lines);
    text.resize(text.empty() ? 0 : text.size() - 1);
    sha256_ctx context;
    sha256_init(&context);
    sha256_update(&context, text.size(), reinterpret_cast<const std::uint8_t*>(text.data()));
    std::array<std::uint8_t, SHA256_DIGEST_SIZE> digest{};
    sha256_digest(&context, digest.size(), digest.data());
    std::string hex;
    for (const std::uint8_t byte : digest) {
        hex += LowerCase(ToHex(byte, 2));
    }
    return hex;
}

std::string Join(const TFields& items, char separator) {
    std::string text;
    for (const std::string& item : items) {
        text += (text.empty() ? "" : std::string(1, separator)) + item;
    }
    return text;
}

std::string Without(std::string text, std::string_view characters) {
    std::erase_if(text, [&](char c) { return characters.find(c) != std::string_view::npos; });
    return text;
}

// The pieces between separators that stand outside parentheses, without blanks.
TFields SplitOutside(std::string_view text, char separator) {
    TFields pieces(1);
    int depth = 0;
    for (const char c : text) {
        depth += c == '(' ? 1 : c == ')' ? -1 : 0;
        if (c == separator && depth == 0) {
            pieces.emplace_back();
        } else if (static_cast<unsigned char>(c) > ' ') {
            pieces.back().push_back(c);
        }
    }
    return pieces;
}

// "head(inner)" taken apart; a piece without parentheses is all head.
std::pair<std::string, std::string> Parenthesised(const std::string& piece) {
    const std::size_t open = piece.find('(');
    return open == std::string::npos
               ? std::pair(piece, std::string())
               : std::pair(piece.substr(0, open),
                           piece.substr(open + 1, piece.rfind(')') - open - 1));
}

const TVHDLAttribute* Attribute(const TBSDLEntity& entity, std::string_view name) {
    for (const auto& [key, attribute] : entity.Attributes) {
        if (SameText(attribute->Name, name)) {
            return attribute.get();
        }
    }
    return nullptr;
}

// The cells as the file has them: number and seven fields.
std::vector<TFields> CellsOf(const TBSDLEntity& entity) {
    std::vector<TFields> cells;
    const TVHDLAttribute* attribute = Attribute(entity, "BOUNDARY_REGISTER");
    for (const std::string& piece :
         SplitOutside(attribute != nullptr ? attribute->Value : "", ',')) {
        if (piece.find('(') != std::string::npos) {
            const auto [number, inner] = Parenthesised(piece);
            TFields fields = SplitOutside(inner, ',');
            fields.insert(fields.begin(), number);
            fields.resize(8);
            cells.push_back(fields);
        }
    }
    return cells;
}

std::string CellLine(TFields fields) {
    for (const std::size_t upper : {1U, 4U, 7U}) {
        fields[upper] = UpperCase(fields[upper]);
    }
    fields[3] = LowerCase(fields[3]);
    return Join(fields, '|');
}

std::int64_t Width(const TVHDLPort& port) {
    const std::int64_t left = port.Type->LeftNumber.value_or(0);
    return std::abs(left - port.Type->RightNumber.value_or(0)) + 1;
}

// One file with its facts; each operation checks some of them.
class TComparison {
public:
    TComparison(TBSDLEntity& entity, const TJson& facts) : Entity(entity), Facts(facts) {}

    void All() {
        Names();
        Instructions();
        IdCodes();
        Ports();
        PinMaps();
        TapPort();
        Cells();
    }

private:
    std::string Text(const char* fact) const {
        return Facts[fact].is_null() ? "" : Facts[fact].get<std::string>();
    }

    void Names() {
        EXPECT_EQ(Entity.Name, Text("entity"));
        // Rule: a generic's default stays as written, with its quotes and what is in them.
        const TVHDLGeneric* map = Entity.Generics.Find("PHYSICAL_PIN_MAP");
        const std::string given = map != nullptr ? std::string(map->DefaultValue()) : "";
        EXPECT_EQ(Without(given, "\" "), Text("physical_pin_map_default"));
    }

    void Instructions() {
        EXPECT_EQ(Entity.InstructionLength, Facts["instruction_length"].get<int>());
        EXPECT_EQ(Without(Entity.InstructionCapture, " "), Text("instruction_capture"));
        EXPECT_EQ(TFields(Entity.InstructionPrivate.begin(), Entity.InstructionPrivate.end()),
                  Facts["instruction_private"].get<TFields>());
        std::map<std::string, std::string> expected;
        for (const auto& [name, patterns] : Facts["opcodes"].items()) {
            // Rule: of several patterns the first one counts. Rule: leading X are dropped.
            expected[name] = patterns[0].get<std::string>();
            expected[name].erase(
                0, std::min(expected[name].find_first_not_of("xX"), expected[name].size()));
        }
        std::map<std::string, std::string> actual;
        for (const auto& opCode : Entity.OpCodes) {
            actual.emplace(opCode->Name, opCode->Pattern);
        }
        EXPECT_EQ(actual, expected);
    }

    void IdCodes() {
        const TFields patterns = Facts["idcode_patterns"].get<TFields>();
        // Rule: of several id codes the first one counts. Rule: X gives 0.
        EXPECT_EQ(Without(Entity.IdCodePattern, " "), patterns.empty() ? "" : patterns[0]);
        const std::string value =
            patterns.empty() ? "0x00000000" : Facts["idcodes"][0]["value"].get<std::string>();
        EXPECT_EQ("0x" + ToHex(Entity.IdCode, 8), value);
        EXPECT_EQ(Without(Entity.UserCodePattern, " "),
                  Join(Facts["usercode_patterns"].get<TFields>(), ','));
    }

    void Ports() {
        EXPECT_EQ(Entity.Ports.Count(), Facts["port_names"].get<std::size_t>());
        std::int64_t bits = 0;
        std::int64_t pins = 0;
        std::map<int, int> modes;
        for (const TVHDLPort* port : Entity.PortsByIndex) {
            // Rule: a port whose two bounds are the same text gives no pin.
            const bool lost = port->Direction() != VHDLToken::None &&
                              Trim(port->RangeLeft()) == Trim(port->RangeRight());
            bits += Width(*port);
            pins += lost ? 0 : Width(*port);
            ++modes[port->Mode()];
        }
        EXPECT_EQ(bits, Facts["port_bits"].get<std::int64_t>());
        // Rule: without a pin map there are no pins.
        EXPECT_EQ(static_cast<std::int64_t>(Entity.Pins.size()),
                  Facts["pin_maps"].empty() ? 0 : pins);
        std::map<int, int> expected;
        const std::map<std::string, int> modeOf{
            {"in", 0}, {"inout", 1}, {"linkage", 1}, {"out", 2}, {"buffer", 3}};
        for (const auto& [name, count] : Facts["port_directions"].items()) {
            expected[modeOf.at(name)] += count.get<int>();
        }
        EXPECT_EQ(modes, expected);
        PortLines();
    }

    // Rule: "linkage" is read as I/O, so the lines can only be made where a file has not both.
    void PortLines() {
        const TJson& directions = Facts["port_directions"];
        if (directions.contains("linkage") && directions.contains("inout")) {
            return;
        }
        const char* inout = directions.contains("linkage") ? "linkage" : "inout";
        const std::array<const char*, 4> names{"in", inout, "out", "buffer"};
        std::vector<std::string> lines;
        for (const TVHDLPort* port : Entity.PortsByIndex) {
            lines.push_back(port->Name + "|" + names[static_cast<std::size_t>(port->Mode())] + "|" +
                            std::to_string(Width(*port)));
        }
        EXPECT_EQ(Sha256(lines), Text("ports_sha256"));
    }

    void PinMaps() {
        std::size_t count = 0;
        // Constants stand in reverse order of declaration.
        for (const auto& [key, constant] : Entity.Constants) {
            if (SameText(constant->TypeName, "PIN_MAP_STRING")) {
                CheckPinMap(*constant, count++ == 0);
            }
        }
        EXPECT_EQ(count, Facts["pin_maps"].size());
    }

    void CheckPinMap(const TVHDLConstant& constant, bool counts) {
        std::vector<std::string> lines;
        std::multiset<std::string> pins;
        for (const std::string& piece : SplitOutside(constant.Value, ',')) {
            const std::size_t colon = piece.find(':');
            if (colon != std::string::npos) {
                const std::string name = piece.substr(0, colon);
                const std::string numbers = Without(piece.substr(colon + 1), "()");
                lines.push_back(Join({name, numbers}, '|'));
                for (const std::string& number : SplitOutside(numbers, ',')) {
                    pins.insert(Join({name, number}, ':'));
                }
            }
        }
        const std::string& map = constant.Names.at(0);
        EXPECT_EQ(Sha256(lines), Facts["pin_maps_sha256"][map].get<std::string>()) << map;
        if (!counts) {
            return; // Rule: of several pin maps the one declared last counts.
        }
        const bool commaStandsApart = std::regex_search(constant.Value, std::regex("\\)[ \t]+,"));
        std::multiset<std::string> actual;
        for (const auto& mapping : Entity.PinMappings) {
            std::string name(mapping->PinName);
            // Rule: the comma behind a list of pins is dropped only where it follows at once, else
            // it stays with the next name, which then is no port's.
            if (name.starts_with(',')) {
                EXPECT_TRUE(commaStandsApart);
                EXPECT_EQ(mapping->Pin, nullptr);
                name = Without(name, ", ");
            }
            actual.insert(name + ":" + std::string(mapping->PinNumber));
        }
        EXPECT_EQ(actual, pins) << map;
    }

    void TapPort() {
        std::map<std::string, std::string> actual;
        for (const auto& [name, pin] : {std::pair{"TDI", Entity.TdiPin},
                                        {"TDO", Entity.TdoPin},
                                        {"TMS", Entity.TmsPin},
                                        {"TCK", Entity.TckPin},
                                        {"TRST", Entity.TrstPin}}) {
            if (pin != nullptr) {
                actual[name] = UpperCase(pin->Name);
            }
        }
        std::map<std::string, std::string> expected;
        for (const auto& [name, pin] : Facts["tap"].items()) {
            expected[name] = UpperCase(pin.get<std::string>());
        }
        // Rule: a TAP pin is the port that its attribute names without regard to case, with the
        // port's spelling; an attribute that names no port gives none.
        std::erase_if(expected, [this](const auto& entry) {
            return Entity.Ports.Find(entry.second) == nullptr;
        });
        EXPECT_EQ(actual, expected);
        EXPECT_EQ(Entity.ScanClockFrequency,
                  Facts["tck_hz"].is_null() ? 0.0 : Facts["tck_hz"].get<double>());
        EXPECT_EQ(UpperCase(ScanClockModeNames.at(static_cast<std::size_t>(Entity.ScanClockMode))),
                  Facts["tck_edge"].is_null() ? "NONE" : UpperCase(Text("tck_edge")));
    }

    void Cells() {
        const std::vector<TFields> cells = CellsOf(Entity);
        std::vector<std::string> lines;
        std::set<std::int64_t> numbers;
        for (const TFields& cell : cells) {
            lines.push_back(CellLine(cell));
            numbers.insert(std::stoll(cell[0]));
        }
        EXPECT_EQ(Sha256(lines), Text("cells_sha256"));
        CheckRecords(cells, numbers);
    }

    void CheckRecords(const std::vector<TFields>& cells, const std::set<std::int64_t>& numbers) {
        std::int32_t count = 0;
        const Status status = Entity.GetBoundaryCellCount(count);
        EXPECT_EQ(Entity.BoundaryLength,
                  Facts["boundary_length"].is_null() ? 0 : Facts["boundary_length"].get<int>());
        // Rule: the cells must be numbered 0 to n-1, each number once.
        const bool complete =
            numbers.size() == cells.size() &&
            (cells.empty() || *numbers.rbegin() + 1 == static_cast<std::int64_t>(cells.size()));
        EXPECT_EQ(Succeeded(status), complete);
        if (!complete) {
            return;
        }
        EXPECT_EQ(static_cast<std::size_t>(count), cells.size());
        for (const TFields& fields : cells) {
            CheckCell(*Entity.GetBoundaryCells().at(std::stoul(fields[0])), fields);
        }
    }

    // Rule: a word that is not in its table gives index 0.
    template<std::size_t Size>
    static std::int32_t Index(const std::array<const char*, Size>& table, const std::string& word) {
        for (std::size_t i = 1; i < Size; ++i) {
            if (SameText(table.at(i), word)) {
                return static_cast<std::int32_t>(i);
            }
        }
        return 0;
    }

    void CheckCell(const TBoundaryCell& cell, const TFields& fields) {
        SCOPED_TRACE(CellLine(fields));
        EXPECT_EQ(cell.CellType, Index(BoundaryCellTypeNames, fields[1]));
        EXPECT_EQ(cell.PortName, fields[2]);
        EXPECT_EQ(cell.CellFunction, Index(BoundaryCellFunctionNames, fields[3]));
        EXPECT_EQ(cell.SafeBit, Index(BoundaryCellValueNames, fields[4]));
        EXPECT_EQ(cell.ControlCell, fields[5].empty() ? -1 : std::stoi(fields[5]));
        if (!fields[5].empty()) {
            EXPECT_EQ(cell.DisableValue, Index(BoundaryCellValueNames, fields[6]));
            EXPECT_EQ(cell.DisableResult, Index(BoundaryCellDisableNames, fields[7]));
            EXPECT_EQ(cell.ControlCellObject->Number, cell.ControlCell);
        }
        // Rule: a cell finds its pin by the whole text, so one bit of a vector finds none.
        const TVHDLPort* port = Entity.Ports.Find(fields[2]);
        EXPECT_EQ(cell.Pin != nullptr, port != nullptr && !Entity.Pins.empty());
    }

    TBSDLEntity& Entity;
    const TJson& Facts;
};

TEST(BsdlFacts, HoldForFilesOfManyMakers) {
    std::ifstream file(DataFolder() / "facts.json");
    if (!file) {
        GTEST_SKIP() << "no BSDL files in " << DataFolder();
    }
    const TJson facts = TJson::parse(file);
    TRecordingHost host;
    const TIdMap idMap;
    EXPECT_GT(facts.size(), 100U);
    for (const auto& [name, entry] : facts.items()) {
        if (name == "_about") {
            continue;
        }
        SCOPED_TRACE(name);
        TReaderBSDL reader(host, idMap, "", (DataFolder() / name).string());
        reader.Read();
        const bool altered = name.starts_with("altered/");
        EXPECT_TRUE(altered || !reader.GetHadErrors())
            << (host.Messages.empty() ? "" : host.Messages.back());
        const std::unique_ptr<TBSDLEntity> entity = reader.TakeEntity();
        ASSERT_NE(entity, nullptr);
        TComparison(*entity, entry["facts"]).All();
    }
}

} // namespace
} // namespace vorel
