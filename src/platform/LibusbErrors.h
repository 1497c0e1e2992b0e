// Error numbers of the USB services for what libusb reports.
#pragma once

#include <libusb-1.0/libusb.h>

#include <cstdint>

namespace vorel {

// For a return value of libusb; 0 and above is success and gives UsbError::None.
std::uint32_t UsbErrorOfCall(int result) noexcept;

// For the way in which a transfer ended.
std::uint32_t UsbErrorOfTransfer(libusb_transfer_status status) noexcept;

} // namespace vorel
