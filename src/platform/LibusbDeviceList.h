// The pods that are on USB at one moment.
#pragma once

#include "platform/LibusbHandles.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vorel {

// A pod that is there but may not be opened, for a host that tells its user.
struct TRefusedUsbDevice {
    std::uint8_t Bus = 0;
    std::uint8_t Address = 0;
    std::string Node; // such as "/dev/bus/usb/001/004"
    std::uint16_t ProductId = 0;
    std::string Reason; // what is missing, in words
};

// Fixed once made. Pods that may be opened come first, so that others do not hide them; in both
// groups the order is that of bus and port, which stays when a pod is plugged in again.
class TLibusbDeviceList {
public:
    // Opens each pod for a moment to see whether that is permitted. May throw std::bad_alloc.
    explicit TLibusbDeviceList(libusb_context* context);

    std::uint32_t GetCount() const noexcept { return static_cast<std::uint32_t>(Paths.size()); }
    // The path that OpenLibusbPath takes.
    const std::string& GetPath(std::uint32_t index) const noexcept { return Paths[index]; }
    const std::vector<TRefusedUsbDevice>& GetRefused() const noexcept { return Refused; }

private:
    std::vector<std::string> Paths;
    std::vector<TRefusedUsbDevice> Refused;
};

// Opens the pod of this path if it is there still: 0 or a libusb error.
int OpenLibusbPath(libusb_context* context, const std::string& path, TLibusbHandle& handle);

} // namespace vorel
