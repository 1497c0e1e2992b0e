#include "platform/ppdev/PpdevManager.h"

#include "support/Errors.h"

#include <dirent.h>

#include <algorithm>
#include <charconv>
#include <filesystem>
#include <optional>
#include <string>
#include <string_view>

namespace vorel {

namespace {

constexpr std::string_view DevicePrefix = "parport";

std::optional<unsigned> PortNumber(std::string_view fileName) {
    if (!fileName.starts_with(DevicePrefix)) {
        return std::nullopt;
    }
    fileName.remove_prefix(DevicePrefix.size());
    unsigned number = 0;
    const char* end = fileName.data() + fileName.size();
    const auto [stop, error] = std::from_chars(fileName.data(), end, number);
    return error == std::errc{} && stop == end ? std::optional(number) : std::nullopt;
}

// A device file may stand there for a port that the machine does not have. The kernel's list tells,
// once ppdev is loaded; opening a file may be what loads it.
bool MayExist(unsigned number) {
    const std::filesystem::path list = "/sys/class/ppdev";
    std::error_code error;
    return !std::filesystem::exists(list, error) ||
           std::filesystem::exists(list / (std::string(DevicePrefix) + std::to_string(number)),
                                   error);
}

} // namespace

void TPpdevManager::ListPorts() {
    std::vector<unsigned> found;
    const std::unique_ptr<DIR, int (*)(DIR*)> folder(opendir("/dev"), &closedir);
    while (const dirent* entry = folder != nullptr ? readdir(folder.get()) : nullptr) {
        const auto number = PortNumber(entry->d_name);
        if (number && MayExist(*number)) {
            found.push_back(*number);
        }
    }
    std::sort(found.begin(), found.end());
    Numbers = std::move(found);
    Listed = true;
}

Status TPpdevManager::GetPortCount(std::int32_t& count) noexcept {
    count = 0;
    return Guard([&] {
        ListPorts();
        count = static_cast<std::int32_t>(Numbers.size());
    });
}

Status TPpdevManager::GetPort(std::int32_t index, IParallelPort*& port) noexcept {
    port = nullptr;
    return Guard([&] {
        if (!Listed) {
            ListPorts();
        }
        if (index < 0 || static_cast<std::size_t>(index) >= Numbers.size()) {
            return;
        }
        const unsigned number = Numbers[static_cast<std::size_t>(index)];
        auto& place = Ports[number];
        if (place == nullptr) {
            place = std::make_unique<TPpdevPort>(number);
        }
        port = place.get();
    });
}

} // namespace vorel
