// All that needs the JSON library: it is slow to compile.
#include "hosts/vorelctl/Listing.h"
#include "hosts/vorelctl/Makers.h"
#include "hosts/vorelctl/ScanText.h"
#include "support/Text.h"

#include <nlohmann/json.hpp>

namespace vorel::host {

namespace {

using Json = nlohmann::ordered_json;

std::string IdText(std::uint32_t id) {
    return "0x" + ToHex(id, 8);
}

// Texts come from devices and files: bytes that are no UTF-8 are replaced rather than refused.
std::string Dump(const Json& json) {
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

Json DeviceAsJson(const TDeviceReport& device) {
    const std::uint32_t manufacturer = (device.Id >> 1U) & 0x7FFU;
    return {{"index", device.Index},
            {"id", IdText(device.Id)},
            {"manufacturer", manufacturer},
            {"maker", MakerName(manufacturer)},
            {"part", (device.Id >> 12U) & 0xFFFFU},
            {"ir_length", device.IrLength},
            {"name", device.Name},
            {"family", device.Family}};
}

Json ChainAsJson(const TChainReport& chain) {
    Json json{
        {"role", chain.Role}, {"name", chain.Name}, {"state", "ok"}, {"devices", Json::array()}};
    for (const TDeviceReport& device : chain.Devices) {
        json["devices"].push_back(DeviceAsJson(device));
    }
    if (chain.Diagnosis) {
        json["state"] = chain.Diagnosis->Keyword();
        json["message"] = chain.Diagnosis->Describe();
        json["advice"] = chain.Diagnosis->Advice(chain.Role == "soft");
        json["bits_seen"] = chain.Diagnosis->BitsSeen;
    }
    for (const auto& id : chain.IdsSeen) {
        json["ids_seen"].push_back(id ? Json(IdText(*id)) : Json(nullptr));
    }
    return json;
}

Json PortAsJson(const TPortReport& port) {
    const char* const mode = !port.Detected ? "none" : port.BoardMode ? "board" : "bare";
    Json json{{"index", port.Index}, {"name", port.Name},       {"description", port.Description},
              {"id", port.PortId},   {"present", port.Present}, {"detected", port.Detected},
              {"mode", mode},        {"problem", port.Problem}, {"chains", Json::array()}};
    for (const TChainReport& chain : port.Chains) {
        json["chains"].push_back(ChainAsJson(chain));
    }
    return json;
}

Json ValueAsJson(const TValue& value) {
    return std::visit(
        [](const auto& held) {
            if constexpr (std::is_same_v<decltype(held), const std::monostate&>) {
                return Json(nullptr);
            } else {
                return Json(held);
            }
        },
        value);
}

} // namespace

std::string ListingAsJson(const TListing& listing) {
    Json json = Json::object();
    for (const TFact& fact : listing.Facts) {
        json[fact.Key] = ValueAsJson(fact.Value);
    }
    if (!listing.TableKey.empty()) {
        Json rows = Json::array();
        for (const std::vector<TValue>& values : listing.Rows) {
            Json row = Json::object();
            for (std::size_t i = 0; i < values.size(); ++i) {
                row[listing.Columns[i].Key] = ValueAsJson(values[i]);
            }
            rows.push_back(std::move(row));
        }
        json[listing.TableKey] = std::move(rows);
    }
    return Dump(json);
}

std::string ScanAsJson(const TScanReport& report) {
    Json json{{"hardware", report.Hardware},
              {"found", report.FoundChain()},
              {"notes", report.Notes},
              {"ports", Json::array()}};
    for (const TPortReport& port : report.Ports) {
        json["ports"].push_back(PortAsJson(port));
    }
    return Dump(json);
}

} // namespace vorel::host
