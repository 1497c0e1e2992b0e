// The 32-bit JTAG id of IEEE 1149.1: bit 0 is 1, bits 1 to 11 the manufacturer, 12 to 27 the part,
// 28 to 31 the version.
#pragma once

#include <cstdint>

namespace vorel {

// The manufacturer whose parts differ in the version bits.
inline constexpr std::uint32_t VersionedManufacturer = 110;

constexpr std::uint32_t ManufacturerOf(std::uint32_t idCode) noexcept {
    return (idCode >> 1U) & 0x7FFU;
}

// The id as it identifies a part: without the version bits, except for the one manufacturer.
constexpr std::uint32_t MaskedIdCode(std::uint32_t idCode) noexcept {
    return ManufacturerOf(idCode) == VersionedManufacturer ? idCode : idCode & 0x0FFFFFFFU;
}

} // namespace vorel
