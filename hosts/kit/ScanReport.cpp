#include "hosts/kit/ScanReport.h"

#include "support/Text.h"
#include "vorel/Device.h"
#include "vorel/Driver.h"
#include "vorel/Ports.h"

#include <algorithm>
#include <array>

namespace vorel::host {

namespace {

// Calls an operation that gives a text.
template<class Object>
std::string TextOf(Object& object, Status (Object::*operation)(WideText&) noexcept) {
    WideText text;
    (object.*operation)(text);
    return ToUtf8(text);
}

std::string FamilyOf(IJTagDevice& device) {
    IVorelDriver* driver = nullptr;
    device.GetDriver(driver);
    return driver != nullptr ? TextOf(*driver, &IVorelDriver::GetFamily) : std::string();
}

TDeviceReport ReportDevice(IJTagDevice& device, std::int32_t index) {
    TDeviceReport report;
    report.Index = index;
    device.GetJTagId(report.Id);
    device.GetIrLength(report.IrLength);
    report.Name = TextOf(device, &IJTagDevice::GetName);
    report.Family = FamilyOf(device);
    return report;
}

// IEEE 1149.1: bit 0 of an id is 1, and the manufacturer field is never all ones.
bool IsPlausibleId(std::uint32_t id) {
    return (id & 1U) != 0 && ((id >> 1U) & 0x7FFU) != 0x7FFU;
}

void ExplainIds(TChainReport& report, const TChainBits& bits) {
    std::vector<std::optional<std::uint32_t>> seen =
        DecodeIds(bits.AfterReset, report.Devices.size());
    const bool complete = seen.size() == report.Devices.size();
    const bool withoutId =
        std::any_of(seen.begin(), seen.end(), [](const auto& id) { return !id; });
    if (complete && withoutId) {
        report.IdsSeen = std::move(seen);
    }
}

Status ReportChain(IJTagChannel& channel, TChainReport& report) {
    std::int32_t count = 0;
    channel.GetDeviceCount(count);
    for (std::int32_t i = 0; i < count; ++i) {
        IJTagDevice* device = nullptr;
        channel.GetDevice(i, device);
        if (device != nullptr) {
            report.Devices.push_back(ReportDevice(*device, i));
        }
    }
    const bool plausible = std::all_of(report.Devices.begin(), report.Devices.end(),
                                       [](const TDeviceReport& d) { return IsPlausibleId(d.Id); });
    if (!report.Devices.empty() && plausible) {
        return StatusOk;
    }
    TChainBits bits;
    const Status status = Look(channel, bits);
    if (Failed(status)) {
        return status;
    }
    if (bits.AfterReset.empty()) {
        return StatusOk; // the cable has no such chain
    }
    report.Diagnosis = Diagnose(bits);
    ExplainIds(report, bits);
    return StatusOk;
}

struct ChainAccess {
    const char* Role;
    const char* Name;
    Status (IJTagPort::*Get)(IJTagChannel*&) noexcept;
};

constexpr std::array Chains{
    ChainAccess{"board", "Lumaplate", &IJTagPort::GetBoardChain},
    ChainAccess{"hard", "Hard-Devices", &IJTagPort::GetHardChain},
    ChainAccess{"soft", "Soft-Devices", &IJTagPort::GetSoftChain},
};

void ReportChains(IJTagPort& port, TPortReport& report) {
    for (const ChainAccess& access : Chains) {
        IJTagChannel* channel = nullptr;
        (port.*access.Get)(channel);
        std::int32_t count = 0;
        if (channel != nullptr) {
            channel->GetDeviceCount(count);
        }
        const bool board = access.Get == &IJTagPort::GetBoardChain;
        report.BoardMode = report.BoardMode || (board && report.Detected && count > 0);
        if (channel == nullptr || (board && !report.BoardMode)) {
            continue;
        }
        TChainReport chain;
        chain.Role = access.Role;
        chain.Name = access.Name;
        const Status status = ReportChain(*channel, chain);
        if (Failed(status)) {
            report.Problem = "Looking at chain " + chain.Name + ": " + DescribeStatus(status);
        } else if (chain.Devices.empty() && !chain.Diagnosis) {
            continue;
        }
        report.Chains.push_back(std::move(chain));
    }
}

TPortReport ReportPort(IJTagPort& port, std::int32_t index) {
    TPortReport report;
    report.Index = index;
    Bool32 present = False32;
    const Status presence = port.IsPresent(present);
    report.Present = present != False32;
    Bool32 found = False32;
    const Status detection = report.Present ? port.Detect(True32, found) : StatusOk;
    report.Detected = found != False32;
    report.Name = TextOf(port, &IJTagPort::GetName);
    report.Description = TextOf(port, &IJTagPort::GetDescription);
    report.PortId = TextOf(port, &IJTagPort::GetPortId);
    if (Failed(presence) || Failed(detection)) {
        report.Problem = "Detecting: " + DescribeStatus(Failed(presence) ? presence : detection);
    } else if (report.Present) {
        ReportChains(port, report);
    }
    return report;
}

} // namespace

bool TScanReport::FoundChain() const {
    return std::any_of(Ports.begin(), Ports.end(),
                       [](const TPortReport& port) { return port.Detected; });
}

TScanReport CollectScan(TVorelLibrary& library,
                        const std::function<void(const std::string&)>& progress) {
    TScanReport report;
    const auto tell = [&](const std::string& text) {
        if (progress) {
            progress(text);
        }
    };
    tell("Looking for pods");
    if (const Status status = library.ScanJTagPorts(); Failed(status)) {
        report.Notes.push_back("Looking for pods failed: " + DescribeStatus(status));
    }
    std::int32_t count = 0;
    library.GetJTagPortCount(&count);
    for (std::int32_t i = 0; i < count; ++i) {
        IJTagPort* port = nullptr;
        library.GetJTagPort(i, &port);
        if (port != nullptr) {
            tell("Scanning port " + std::to_string(i));
            report.Ports.push_back(ReportPort(*port, i));
        }
    }
    return report;
}

std::string DescribeStatus(Status status) {
    struct Known {
        std::uint32_t Code;
        const char* Text;
    };
    static constexpr std::array known{
        Known{0xE0001000U, "the pod cannot be reached; is it still plugged in?"},
        Known{0xE000100CU, "the pod did not answer in time"},
        Known{0xE0001100U, "the pod could not be opened; was it unplugged, or is it in use?"},
        Known{0xE0001102U, "the pod is not open"},
        Known{0xE0001104U, "there is no such pod"},
        Known{0x80070002U, "the port's device file is gone"},
        Known{0x80070005U, "access was denied"},
        Known{0x80070006U, "the kernel has no parallel port behind the device file"},
        Known{0x8007000DU, "access was denied; is the user in the port's group, such as lp?"},
        Known{0x80070010U, "the port is in use, by another program or by a driver such as lp"},
        Known{0x80070013U, "the kernel has no parallel port behind the device file"},
        Known{0x8007001FU, "the pod reported a failed transfer"},
        Known{0x800703E3U, "the transfer was cancelled because the pod did not answer in time"},
        Known{0x8007048FU, "the pod was unplugged"},
        Known{0x8007000EU, "memory ran out"},
    };
    const auto code = static_cast<std::uint32_t>(status);
    const auto* const hit = std::find_if(known.begin(), known.end(),
                                         [&](const Known& entry) { return entry.Code == code; });
    const std::string text = hit != known.end() ? hit->Text : "the operation failed";
    return text + " (status 0x" + ToHex(code, 8) + ")";
}

} // namespace vorel::host
