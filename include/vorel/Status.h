// Status values that the library itself gives. Lower layers may hand on further ones: the USB
// layer's 0xE000.... codes and operating-system errors, the latter as 0x8007.... with the error
// number in the low 16 bits.
#pragma once

#include "vorel/Types.h"

namespace vorel {

inline constexpr Status StatusOk = 0;

namespace detail {
constexpr Status Code(std::uint32_t value) noexcept {
    return static_cast<Status>(value);
}
} // namespace detail

// The operation failed for a reason that has no code of its own.
inline constexpr Status StatusError = detail::Code(0x80004005U);
// The object does not offer the interface asked for.
inline constexpr Status StatusNoInterface = detail::Code(0x80004002U);
// A null reference where an object was needed, or a value outside the stated range.
inline constexpr Status StatusBadArgument = detail::Code(0x80070057U);
// An index outside a list.
inline constexpr Status StatusIndexOutOfRange = detail::Code(0x8002000BU);
// Memory ran out.
inline constexpr Status StatusOutOfMemory = detail::Code(0x8007000EU);
// The operation exists in the table, and this object does not offer it.
inline constexpr Status StatusNotSupported = detail::Code(0x80004001U);

constexpr bool Succeeded(Status status) noexcept {
    return status >= 0;
}
constexpr bool Failed(Status status) noexcept {
    return status < 0;
}

// An operating-system error number (0x0000 to 0xFFFF) as a failing status.
constexpr Status StatusFromOsError(std::uint32_t error) noexcept {
    return detail::Code(0x80070000U | (error & 0xFFFFU));
}

} // namespace vorel
