// A USB device of one interface class, and its control requests.
#pragma once

#include "transport/UsbStatus.h"
#include "vorel/UsbServices.h"

#include <array>
#include <memory>
#include <mutex>

namespace vorel {

// What the driver says about itself.
struct TUsbDriverInfo {
    std::uint16_t InterfaceVersion = 0;
    std::uint32_t Flags = 0;
};

// A configuration to select: its index and the interfaces to use in it.
struct TUsbConfiguration {
    static constexpr std::size_t MaxInterfaces = 32;

    struct TInterface {
        std::uint16_t Index = 0;
        std::uint16_t AlternateSetting = 0;
        std::uint32_t MaximumTransferSize = 0; // bytes
    };
    std::uint16_t ConfigurationIndex = 0;
    std::uint16_t InterfaceCount = 0; // at most MaxInterfaces
    std::array<TInterface, MaxInterfaces> Interfaces{};
};

// Closed after construction. Owns the open device, its request block and the block that holds its
// path. No operation raises; all results are statuses of UsbStatus.h.
class TUsbIo {
public:
    // `services` must outlive the object.
    explicit TUsbIo(IUsbServices& services) noexcept : Services(services) {}
    TUsbIo(const TUsbIo&) = delete;
    TUsbIo& operator=(const TUsbIo&) = delete;
    ~TUsbIo() { Close(); }

    // The devices present that offer this interface class; null when there is no list to be had.
    UsbList* CreateDeviceList(const Guid& interfaceGuid) noexcept;
    // A null list is left alone.
    void DestroyDeviceList(UsbList* list) noexcept;

    // Opens device `deviceNumber` (from 0) of the list, or without a list the device of that number
    // that is there now. An open object stays as it is, whatever the arguments; a failure leaves it
    // closed. Only drivers of interface version UsbDriverVersion are accepted.
    std::uint32_t Open(std::int32_t deviceNumber, UsbList* deviceList,
                       const Guid* interfaceGuid) noexcept;
    // May be repeated.
    void Close() noexcept;
    bool IsOpen() const noexcept { return FileHandle != nullptr; }

    // Looks up the path of a device of the list.
    std::uint32_t AcquireDevicePath(std::int32_t deviceNumber, UsbList* deviceList,
                                    const Guid* interfaceGuid) noexcept;
    // The path of the last look-up, null when there is none. Valid until Close or the next look-up.
    const char* DevicePathName() const noexcept;

    std::uint32_t GetDriverInfo(TUsbDriverInfo& info) noexcept;
    // The descriptor comes into `buffer`, at most `byteCount` bytes; `byteCount` gives how many
    // came. Types and recipients are those of the USB standard's GET_DESCRIPTOR request.
    std::uint32_t GetDescriptor(void* buffer, std::uint32_t& byteCount, std::uint16_t languageId,
                                std::uint8_t descriptorIndex, std::uint8_t descriptorType,
                                std::uint32_t recipient) noexcept;
    std::uint32_t GetDeviceDescriptor(std::array<std::uint8_t, 18>& descriptor) noexcept;
    std::uint32_t GetStringDescriptor(void* buffer, std::uint32_t& byteCount,
                                      std::uint16_t languageId,
                                      std::uint8_t descriptorIndex) noexcept;
    // Takes the first MaxInterfaces interfaces at most.
    std::uint32_t SetConfiguration(const TUsbConfiguration& configuration) noexcept;

    // One control request (UsbControl), performed to its end. `bytesReturned` (may be null) gives
    // the bytes that came into the output, never more than `outputSize`.
    std::uint32_t IoctlSync(std::uint32_t code, const void* input, std::uint32_t inputSize,
                            void* output, std::uint32_t outputSize,
                            std::uint32_t* bytesReturned) noexcept;

    // Cancels the requests under way on the open device.
    void CancelIo() noexcept;

    // Two bits of the driver's flags word as found by Open.
    bool HasDriverFlag10() const noexcept { return DriverFlag10; }
    bool HasDriverFlag20() const noexcept { return DriverFlag20; }

protected:
    IUsbServices& Services;
    UsbDevice* FileHandle = nullptr;

private:
    std::uint32_t OpenPath(const char* path) noexcept;
    std::uint32_t CheckDriver() noexcept;

    UsbRequest* Overlapped = nullptr; // the one block of all control requests
    std::mutex CritSect;              // serialises the control requests, which share that block
    bool DriverFlag10 = false;
    bool DriverFlag20 = false;
    std::unique_ptr<char[]> DeviceDetail;
};

} // namespace vorel
