// What a scan found, as plain data: taken from the library's objects once, then printed in one form
// or another.
#pragma once

#include "hosts/kit/ChainDiagnosis.h"
#include "hosts/kit/LibraryLoader.h"

#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vorel::host {

struct TDeviceReport {
    std::int32_t Index = 0; // 0 is nearest TDI
    std::uint32_t Id = 0;   // as the library identifies it, version bits cleared for most makers
    std::int32_t IrLength = 0;
    std::string Name;
    std::string Family; // empty when no driver knows the device
};

struct TChainReport {
    std::string Role; // "board", "hard", "soft"
    std::string Name; // "Lumaplate", "Hard-Devices", "Soft-Devices"
    std::vector<TDeviceReport> Devices;
    // Set when the chain has no devices or its ids are out of step.
    std::optional<TChainDiagnosis> Diagnosis;
    // Ids decoded from the raw bits, when they differ from what the library could make of the
    // chain.
    std::vector<std::optional<std::uint32_t>> IdsSeen;
};

struct TPortReport {
    std::int32_t Index = 0;
    std::string Name;
    std::string Description;
    std::string PortId;
    bool Present = false;
    bool Detected = false;
    bool BoardMode = false; // a board's controller answered
    std::string Problem;    // the operation that failed and its status; empty when all went well
    std::vector<TChainReport> Chains;
};

struct TScanReport {
    std::string Hardware; // what was scanned, for people
    std::vector<TPortReport> Ports;
    std::vector<std::string> Notes; // e.g. pods that may not be opened

    bool FoundChain() const;
};

// Scans all ports of the loaded library. `progress` is told what is being done ("Scanning port 1")
// and may be empty.
TScanReport CollectScan(TVorelLibrary& library,
                        const std::function<void(const std::string&)>& progress);

// A failing status in words a user can act on.
std::string DescribeStatus(Status status);

} // namespace vorel::host
