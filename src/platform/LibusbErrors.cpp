#include "platform/LibusbErrors.h"

#include "vorel/UsbServices.h"

namespace vorel {

namespace {

// Error numbers of that kind which only this implementation gives.
constexpr std::uint32_t NotSupported = 50;
constexpr std::uint32_t Busy = 170;

struct TMapping {
    int Libusb;
    std::uint32_t Error;
};

constexpr TMapping CallErrors[] = {
    {LIBUSB_ERROR_INVALID_PARAM, UsbError::InvalidParameter},
    {LIBUSB_ERROR_ACCESS, UsbError::AccessDenied},
    {LIBUSB_ERROR_NO_DEVICE, UsbError::DeviceRemoved},
    {LIBUSB_ERROR_NOT_FOUND, UsbError::FileNotFound},
    {LIBUSB_ERROR_BUSY, Busy},
    {LIBUSB_ERROR_TIMEOUT, UsbError::TimedOut},
    {LIBUSB_ERROR_INTERRUPTED, UsbError::Aborted},
    {LIBUSB_ERROR_NO_MEM, UsbError::NotEnoughMemory},
    {LIBUSB_ERROR_NOT_SUPPORTED, NotSupported},
};

constexpr TMapping TransferErrors[] = {
    {LIBUSB_TRANSFER_COMPLETED, UsbError::None},
    {LIBUSB_TRANSFER_TIMED_OUT, UsbError::TimedOut},
    {LIBUSB_TRANSFER_CANCELLED, UsbError::Aborted},
    {LIBUSB_TRANSFER_NO_DEVICE, UsbError::DeviceRemoved},
};

// What is in no table (stalls, overflows, line errors) says that the device does not function.
template<std::size_t N>
std::uint32_t Find(const TMapping (&table)[N], int libusb) noexcept {
    for (const TMapping& mapping : table) {
        if (mapping.Libusb == libusb) {
            return mapping.Error;
        }
    }
    return UsbError::DeviceFailed;
}

} // namespace

std::uint32_t UsbErrorOfCall(int result) noexcept {
    return result >= 0 ? UsbError::None : Find(CallErrors, result);
}

std::uint32_t UsbErrorOfTransfer(libusb_transfer_status status) noexcept {
    return Find(TransferErrors, status);
}

} // namespace vorel
