// An open pod: interprets the driver's control codes and starts bulk transfers.
#pragma once

#include "platform/LibusbHandles.h"
#include "platform/LibusbRequest.h"

#include <cstdint>
#include <span>
#include <vector>

namespace vorel {

// One control request with its data.
struct TLibusbControl {
    std::uint32_t Code = 0; // UsbControl
    std::span<const std::uint8_t> Input;
    std::span<std::uint8_t> Output;
};

// Statuses are UsbError numbers. Operations may throw std::bad_alloc. The requests must have ended
// before the device goes.
class TLibusbDevice {
public:
    TLibusbDevice(libusb_context* context, TLibusbHandle handle) noexcept;
    TLibusbDevice(const TLibusbDevice&) = delete;
    TLibusbDevice& operator=(const TLibusbDevice&) = delete;
    ~TLibusbDevice() { ReleaseInterfaces(); }

    libusb_device_handle* GetHandle() const noexcept { return Handle.get(); }

    // Descriptors are read asynchronously; the other codes end at once. Selecting a configuration
    // takes as long as the system takes for it.
    std::uint32_t Control(const TLibusbControl& control, TLibusbRequest& request);

    // On the bound endpoint, which must have that direction.
    std::uint32_t Read(void* buffer, std::uint32_t size, TLibusbRequest& request);
    std::uint32_t Write(const void* buffer, std::uint32_t size, TLibusbRequest& request);

private:
    std::uint32_t GetDescriptor(const TLibusbControl& control, TLibusbRequest& request);
    std::uint32_t SetConfiguration(const TLibusbControl& control, TLibusbRequest& request);
    std::uint32_t GetDriverInfo(const TLibusbControl& control, TLibusbRequest& request);
    std::uint32_t BindPipe(const TLibusbControl& control, TLibusbRequest& request);
    std::uint32_t UnbindPipe(const TLibusbControl& control, TLibusbRequest& request);

    std::uint32_t SelectConfiguration(const libusb_config_descriptor& configuration);
    std::uint32_t UseInterface(const libusb_config_descriptor& configuration, std::uint16_t index,
                               std::uint16_t alternate);
    void ReleaseInterfaces() noexcept;
    std::uint32_t Transfer(void* buffer, std::uint32_t size, std::uint8_t direction,
                           TLibusbRequest& request);

    libusb_context* Context;
    TLibusbHandle Handle;
    std::vector<int> Claimed;            // interface numbers
    std::vector<std::uint8_t> Endpoints; // bulk endpoints of the claimed interfaces
    std::uint8_t Bound = 0;              // endpoint address, 0 for none
};

} // namespace vorel
