#include "hosts/vorelctl/ScanText.h"

#include "hosts/vorelctl/Listing.h"
#include "hosts/vorelctl/Makers.h"
#include "support/Text.h"

#include <algorithm>

namespace vorel::host {

namespace {

// The fields of an id, IEEE 1149.1.
struct IdFields {
    std::uint32_t Manufacturer;
    std::uint32_t Part;
    std::uint32_t Version;
};

IdFields FieldsOf(std::uint32_t id) {
    return {(id >> 1U) & 0x7FFU, (id >> 12U) & 0xFFFFU, id >> 28U};
}

TRow DeviceRow(const TDeviceReport& device) {
    const IdFields fields = FieldsOf(device.Id);
    const std::string maker = MakerName(fields.Manufacturer);
    return {std::to_string(device.Index),
            "0x" + ToHex(device.Id, 8),
            "0x" + ToHex(fields.Manufacturer, 3) + (maker.empty() ? "" : " " + maker),
            "0x" + ToHex(fields.Part, 4),
            std::to_string(device.IrLength),
            device.Name,
            device.Family};
}

std::string DiagnosisText(const TChainReport& chain, const std::string& indent) {
    const TChainDiagnosis& diagnosis = *chain.Diagnosis;
    std::string text;
    if (diagnosis.Fault != TChainFault::None) {
        text += indent + diagnosis.Describe() + "\n";
        text += indent + "Bits seen after a reset, first bit at the right: " + diagnosis.BitsSeen +
                "\n";
        for (const std::string& advice : diagnosis.Advice(chain.Role == "soft")) {
            text.append(indent).append("- ").append(advice).push_back('\n');
        }
    }
    if (!chain.IdsSeen.empty()) {
        text += indent + "Some devices have no id register, so the ids above are out of step. By "
                         "the raw bits:\n";
        for (std::size_t i = 0; i < chain.IdsSeen.size(); ++i) {
            const auto& id = chain.IdsSeen[i];
            text.append(indent).append("  ").append(std::to_string(i)).append("  ");
            text.append(id ? "0x" + ToHex(*id, 8) : "no id register").push_back('\n');
        }
    }
    return text;
}

std::string ChainText(const TChainReport& chain) {
    const std::size_t count = chain.Devices.size();
    std::string text = "  " + chain.Name + " (" + chain.Role + " chain): " + std::to_string(count) +
                       (count == 1 ? " device\n" : " devices\n");
    if (count > 0) {
        std::vector<TRow> rows{{"#", "Id", "Manufacturer", "Part", "IR", "Name", "Family"}};
        std::transform(chain.Devices.begin(), chain.Devices.end(), std::back_inserter(rows),
                       DeviceRow);
        text += AlignColumns(rows, "    ");
    }
    if (chain.Diagnosis) {
        text += DiagnosisText(chain, "    ");
    }
    return text;
}

std::string PortText(const TPortReport& port) {
    std::string text = "Port " + std::to_string(port.Index) + ": " + port.Name + "\n";
    if (!port.Description.empty()) {
        text += "  " + port.Description + "\n";
    }
    if (!port.Problem.empty()) {
        text += "  Failed. " + port.Problem + "\n";
    } else if (!port.Present) {
        text += port.Index == 0 ? "  There is no parallel port on this machine.\n"
                                : "  The pod does not answer.\n";
    } else if (!port.Detected) {
        text += "  Nothing was detected behind this port.\n";
        text += port.Index != 0 ? ""
                                : "    - Check that cable and target have power, and that a board "
                                  "file (System/*.JTGBRD)\n      names the cable's signals.\n";
    } else {
        text += port.BoardMode ? "  A board was detected.\n" : "  Bare chains were detected.\n";
    }
    for (const TChainReport& chain : port.Chains) {
        text += ChainText(chain);
    }
    return text;
}

} // namespace

std::string ScanAsText(const TScanReport& report) {
    std::string text = "Hardware: " + report.Hardware + "\n";
    for (const TPortReport& port : report.Ports) {
        text += "\n" + PortText(port);
    }
    if (report.Ports.size() < 2 && !report.FoundChain()) {
        text += "\nNo pod was found.\n";
    }
    if (!report.Notes.empty()) {
        text += "\n";
    }
    for (const std::string& note : report.Notes) {
        text += "Note: " + note + "\n";
    }
    return text;
}

} // namespace vorel::host
