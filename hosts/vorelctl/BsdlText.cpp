#include "hosts/vorelctl/BsdlText.h"

#include "bsdl/BSDLReport.h"
#include "bsdl/FileText.h"
#include "support/Text.h"

#include <nlohmann/json.hpp>

#include <array>
#include <set>

namespace vorel::host {

namespace {

using Json = nlohmann::ordered_json;

// Bytes of a file as UTF-8.
std::string Utf8(std::string_view bytes) {
    return ToUtf8(FileTextToWide(bytes));
}

constexpr const char* CellsError = "the boundary cells are not numbered 0 to n-1, each once";

// The number of boundary cells; nothing when they are out of order.
std::optional<std::int32_t> CountCells(TBSDLEntity& entity) {
    std::int32_t count = 0;
    return Succeeded(entity.GetBoundaryCellCount(count)) ? std::optional(count) : std::nullopt;
}

// Of several opcodes with one name the first counts.
Json OpCodesAsJson(const TBSDLEntity& entity) {
    Json json = Json::object();
    auto& members = json.get_ref<Json::object_t&>();
    std::set<std::string_view> seen;
    for (const auto& opCode : entity.OpCodes) {
        if (seen.insert(opCode->Name).second) {
            members.push_back({Utf8(opCode->Name), opCode->Pattern});
        }
    }
    return json;
}

Json TapAsJson(const TBSDLEntity& entity) {
    const std::array<std::pair<const char*, const TScanPin*>, 5> pins{{{"TDI", entity.TdiPin},
                                                                       {"TDO", entity.TdoPin},
                                                                       {"TMS", entity.TmsPin},
                                                                       {"TCK", entity.TckPin},
                                                                       {"TRST", entity.TrstPin}}};
    Json json = Json::object();
    for (const auto& [name, pin] : pins) {
        if (pin != nullptr) {
            json[name] = Utf8(pin->Name);
        }
    }
    return json;
}

void AddEntity(Json& json, TBSDLEntity& entity) {
    const std::optional<std::int32_t> cells = CountCells(entity);
    json["entity"] = Utf8(entity.Name);
    json["instruction_length"] = entity.InstructionLength;
    json["instruction_capture"] = Utf8(entity.InstructionCapture);
    json["idcode_pattern"] = Utf8(entity.IdCodePattern);
    json["idcode"] = "0x" + ToHex(entity.IdCode, 8);
    json["usercode_pattern"] = Utf8(entity.UserCodePattern);
    json["boundary_length"] = entity.BoundaryLength;
    json["boundary_cells"] = cells ? Json(*cells) : Json();
    json["cells_error"] = cells ? Json() : Json(CellsError);
    json["opcodes"] = OpCodesAsJson(entity);
    json["pins"] = entity.Pins.size();
    json["pin_mappings"] = entity.PinMappings.size();
    json["tap"] = TapAsJson(entity);
    json["tck_hz"] = entity.ScanClockFrequency;
    json["tck_mode"] = ScanClockModeNames.at(static_cast<std::size_t>(entity.ScanClockMode));
}

void AddNoEntity(Json& json) {
    for (const char* key :
         {"entity", "instruction_length", "instruction_capture", "idcode_pattern", "idcode",
          "usercode_pattern", "boundary_length", "boundary_cells", "cells_error", "opcodes", "pins",
          "pin_mappings", "tap", "tck_hz", "tck_mode"}) {
        json[key] = nullptr;
    }
}

} // namespace

std::string BsdlAsText(const std::string& fileName, const TBSDLFile& file) {
    std::string text = "File: " + fileName + "\n";
    if (!file.Readable) {
        return text + "Error: the file cannot be read\n\n";
    }
    if (file.HadErrors()) {
        text += "Error: " + file.DescribeError() + "\n";
    }
    if (file.Entity == nullptr) {
        return text + "There is no entity in the file.\n\n";
    }
    if (!CountCells(*file.Entity)) {
        text += std::string("Error: ") + CellsError + "\n";
    }
    std::vector<std::string> lines;
    DumpEntity(*file.Entity, lines);
    return text + Utf8(JoinLines(lines));
}

std::string BsdlAsJson(const std::string& fileName, const TBSDLFile& file) {
    Json json;
    json["file"] = fileName;
    json["errors"] = file.HadErrors() || file.Entity == nullptr;
    json["error_line"] = file.HadErrors() ? Json(file.ErrorLine) : Json();
    json["error_column"] = file.HadErrors() ? Json(file.ErrorColumn) : Json();
    if (file.Entity != nullptr) {
        AddEntity(json, *file.Entity);
    } else {
        AddNoEntity(json);
    }
    return json.dump(-1, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace vorel::host
