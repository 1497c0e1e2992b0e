// One asynchronous request on libusb: a bulk transfer or the reading of a descriptor.
#pragma once

#include "platform/LibusbHandles.h"
#include "vorel/UsbServices.h"

#include <cstdint>
#include <memory>
#include <vector>

namespace vorel {

// A standard GET_DESCRIPTOR request.
struct TDescriptorQuery {
    std::uint8_t Recipient = 0; // 0 device, 1 interface, 2 endpoint, 3 other
    std::uint8_t Type = 0;
    std::uint8_t Index = 0;
    std::uint16_t Language = 0;
};

// May be used for one request after the other. Data go through a buffer of the request, and the
// caller's memory is touched by the starting call and by the ending of the request only. Nothing
// here runs by itself: a request goes on while Wait or Drain handle libusb's events. Statuses are
// UsbError numbers. The starting operations may throw std::bad_alloc.
class TLibusbRequest {
public:
    static constexpr std::uint32_t NoLimit = 0xFFFFFFFFU;
    static constexpr std::uint32_t MaxBytes = 0x1000000; // of one transfer

    TLibusbRequest() = default;
    TLibusbRequest(const TLibusbRequest&) = delete;
    TLibusbRequest& operator=(const TLibusbRequest&) = delete;
    ~TLibusbRequest() { Drain(); }

    // Each gives Pending, or the error for which nothing was started. No request may be under way.
    // The direction is that of the endpoint's top bit.
    std::uint32_t StartBulk(libusb_context* context, libusb_device_handle* device,
                            std::uint8_t endpoint, void* buffer, std::uint32_t size);
    // A device that stalls at a string without a language is asked again in its first language.
    std::uint32_t StartDescriptor(libusb_context* context, libusb_device_handle* device,
                                  const TDescriptorQuery& query, void* buffer, std::uint32_t size);
    // For requests that needed no transfer, or could not be started; gives `error`.
    std::uint32_t End(std::uint32_t error, std::uint32_t byteCount = 0) noexcept;

    bool IsUnderWay() const noexcept { return Ended == 0; }
    bool IsUnderWayOn(const libusb_device_handle* device) const noexcept {
        return IsUnderWay() && Device == device;
    }

    // 0 when the request has ended, WaitTimeout when `timeoutMs` went by first.
    std::uint32_t Wait(std::uint32_t timeoutMs) noexcept;
    // How it ended; Pending while it is under way.
    std::uint32_t GetResult(std::uint32_t& byteCount) const noexcept;

    // Asks for an early end, which comes while events are handled.
    void Cancel() noexcept;
    // Cancels, and returns when the request has ended. One that libusb does not give back in five
    // seconds is given up: it counts as cancelled, and its memory stays libusb's.
    void Drain() noexcept;

private:
    enum class TStage { Plain, FirstTry, Languages };

    // What libusb uses while a transfer is under way. `Owner` is null once it was given up.
    struct TFlight {
        TLibusbTransfer Transfer;
        std::vector<std::uint8_t> Data;
        TLibusbRequest* Owner = nullptr;
    };

    std::uint32_t Prepare(libusb_context* context, libusb_device_handle* device, void* buffer,
                          std::uint32_t size, std::size_t headerSize);
    void FillDescriptor(const TDescriptorQuery& query);
    std::uint32_t Submit() noexcept;
    int HandleEvents(std::uint32_t milliseconds) noexcept;
    void OnEnd();
    void AskForLanguages();
    void AskInItsLanguage();
    void Deliver() noexcept;
    static void LIBUSB_CALL OnTransferEnd(libusb_transfer* transfer) noexcept;

    libusb_context* Context = nullptr;
    libusb_device_handle* Device = nullptr;
    std::unique_ptr<TFlight> Flight;
    TDescriptorQuery Query;
    TStage Stage = TStage::Plain;
    void* Target = nullptr; // the caller's buffer, of Size bytes
    std::uint32_t Size = 0;
    std::size_t HeaderSize = 0; // bytes in front of the data: a control transfer's setup packet
    int Ended = 1;
    std::uint32_t Error = UsbError::InvalidParameter; // a block that was never used
    std::uint32_t ByteCount = 0;
};

} // namespace vorel
