// The two printed forms of a scan.
#pragma once

#include "hosts/kit/ScanReport.h"

namespace vorel::host {

// For people. Each line ends with LF.
std::string ScanAsText(const TScanReport& report);

// One JSON object: "hardware", "found", "notes" and "ports", each port with "index", "name",
// "description", "id", "present", "detected", "mode" ("board", "bare" or "none"), "problem" and
// "chains"; each chain with "role", "name", "state" ("ok", or the diagnosis keyword), "message",
// "advice", "bits_seen" and "devices"; each device with "index", "id" ("0x" and 8 digits),
// "manufacturer" (the 11-bit number), "maker", "part", "ir_length", "name" and "family".
// "ids_seen", where present, are ids decoded from raw bits, null for a device without id register.
std::string ScanAsJson(const TScanReport& report);

} // namespace vorel::host
