// What the commands about device knowledge share.
#pragma once

#include "hosts/vorelctl/CommandLine.h"
#include "vorel/DeviceManager.h"

#include <cstdint>
#include <functional>
#include <optional>
#include <string>
#include <vector>

namespace vorel::host {

inline const TOption JsonOption{"--json", "", "print one JSON object"};

// Ends a command that found nothing of that name.
[[noreturn]] void FailNotFound(const std::string& text);

// The words behind a command, `count` of them; WrongUsage with `usage` otherwise.
const std::vector<std::string>& NeedWords(const TArguments& arguments, std::size_t count,
                                          const std::string& usage);

// 1 to 8 hexadecimal digits, "0x" and "$" in front allowed; WrongUsage for anything else.
std::uint32_t ParseId(const std::string& text);
std::string IdText(std::uint32_t id); // "0x" and 8 digits

// The lines that a list operation of the device manager gives. EVorelError when it fails.
std::vector<std::string> NamesOf(const std::function<Status(WideText&)>& operation);

struct TDeviceEntry {
    std::string Module; // file name of the driver module
    std::string Vendor;
    std::string Family;
    std::string Type;
    std::uint32_t IdCode = 0; // 0: none
};

// The device's row of the device table; nothing for an unknown name.
std::optional<TDeviceEntry> FindDevice(IDeviceManager& manager, const std::string& name);

} // namespace vorel::host
