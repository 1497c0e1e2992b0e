// The machine's own USB: pods reached through libusb 1.0.
#pragma once

#include "platform/LibusbDeviceList.h"
#include "vorel/UsbServices.h"

#include <memory>
#include <vector>

namespace vorel {

class TLibusbDevice;
class TLibusbRequest;

// Devices of UsbIoInterfaceClass are those with the pods' vendor and product ids; other classes
// have none. libusb is started by the first list or device. It starts no thread of its own here:
// transfers go on while somebody waits. Whatever was not given back goes with the object.
class TLibusbServices final : public IUsbServices {
public:
    TLibusbServices() noexcept;
    TLibusbServices(const TLibusbServices&) = delete;
    TLibusbServices& operator=(const TLibusbServices&) = delete;
    virtual ~TLibusbServices();

    // The pods of the last list that this user may not open; they stand at that list's end.
    const std::vector<TRefusedUsbDevice>& GetRefusedDevices() const noexcept { return Refused; }

    UsbList* CreateInterfaceList(const Guid& interfaceClass) noexcept override;
    void DestroyInterfaceList(UsbList* list) noexcept override;
    std::uint32_t EnumInterface(UsbList* list, const Guid& interfaceClass,
                                std::uint32_t index) noexcept override;
    std::uint32_t GetInterfaceDetail(UsbList* list, const Guid& interfaceClass, std::uint32_t index,
                                     void* record, std::uint32_t capacity,
                                     std::uint32_t& needed) noexcept override;
    std::uint32_t OpenDevice(const char* path, UsbDevice*& device) noexcept override;
    void CloseDevice(UsbDevice* device) noexcept override;
    UsbRequest* CreateRequest() noexcept override;
    void DestroyRequest(UsbRequest* request) noexcept override;
    std::uint32_t Control(UsbDevice* device, std::uint32_t code, const void* input,
                          std::uint32_t inputSize, void* output, std::uint32_t outputSize,
                          UsbRequest* request) noexcept override;
    std::uint32_t Read(UsbDevice* device, void* buffer, std::uint32_t byteCount,
                       UsbRequest* request) noexcept override;
    std::uint32_t Write(UsbDevice* device, const void* buffer, std::uint32_t byteCount,
                        UsbRequest* request) noexcept override;
    std::uint32_t WaitForRequest(UsbRequest* request, std::uint32_t timeoutMs) noexcept override;
    std::uint32_t GetResult(UsbDevice* device, UsbRequest* request, std::uint32_t& byteCount,
                            bool wait) noexcept override;
    void CancelIo(UsbDevice* device) noexcept override;

private:
    libusb_context* StartLibusb() noexcept;
    std::uint32_t ResolvePath(std::string& path);
    std::uint32_t OpenPath(std::string path, UsbDevice*& device);
    // Runs `body` with the two objects when the request is free to be used.
    template<class Body>
    std::uint32_t Start(UsbDevice* device, UsbRequest* request, Body&& body) noexcept;

    TLibusbContext Context;
    std::vector<TRefusedUsbDevice> Refused;
    std::vector<std::unique_ptr<TLibusbDeviceList>> Lists;
    std::vector<std::unique_ptr<TLibusbDevice>> Devices;
    std::vector<std::unique_ptr<TLibusbRequest>> Requests; // end before the devices do
};

} // namespace vorel
