// Statuses of the USB objects: 0 is success, the values below are their own, and every other value
// is an error number of the USB services (UsbError), passed on as it stands.
#pragma once

#include "vorel/Status.h"

#include <cstdint>

namespace vorel {

inline constexpr std::uint32_t StatusSuccess = 0;
// The request block of an opening device or the block of its path could not be had.
inline constexpr std::uint32_t StatusNoMemory = 0xE0000100;
// A device path has no length; also a write to a pod that cannot be opened or bound.
inline constexpr std::uint32_t StatusFailed = 0xE0001000;
// A wait for a transfer ran out of time.
inline constexpr std::uint32_t StatusTimeout = 0xE000100C;
// The driver's interface version is not UsbDriverVersion.
inline constexpr std::uint32_t StatusVersionMismatch = 0xE000101C;
// The device path could not be opened.
inline constexpr std::uint32_t StatusDeviceNotFound = 0xE0001100;
// A control request or transfer was asked of a closed device.
inline constexpr std::uint32_t StatusNotOpen = 0xE0001102;
// The device index lies past the last interface.
inline constexpr std::uint32_t StatusNoSuchInstance = 0xE0001104;
// The device list or the interface class is missing.
inline constexpr std::uint32_t StatusInvalidArgument = 0xE0001105;

// The same failure as an interface operation reports it: own statuses keep their value, error
// numbers become 0x8007.....
constexpr Status StatusFromUsb(std::uint32_t status) noexcept {
    if (status == StatusSuccess) {
        return StatusOk;
    }
    return (status & 0x80000000U) != 0 ? detail::Code(status) : StatusFromOsError(status);
}

} // namespace vorel
