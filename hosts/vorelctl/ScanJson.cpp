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

} // namespace

std::string ScanAsJson(const TScanReport& report) {
    Json json{{"hardware", report.Hardware},
              {"found", report.FoundChain()},
              {"notes", report.Notes},
              {"ports", Json::array()}};
    for (const TPortReport& port : report.Ports) {
        json["ports"].push_back(PortAsJson(port));
    }
    // Names come from devices and files: bytes that are no UTF-8 are replaced rather than refused.
    return json.dump(2, ' ', false, Json::error_handler_t::replace) + "\n";
}

} // namespace vorel::host
