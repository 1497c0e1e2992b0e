// What the driver cache keeps of one driver.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vorel {

class IVorelDriver;

struct TDriverRow {
    std::string Vendor;
    std::string Family;
    std::string Device;
    std::string Display;
    std::string Type; // a type word, or "Other"
    std::uint32_t IdCode = 0;
    std::uint32_t MaskedIdCode = 0;
};

// Nothing for a driver that fails in one of its answers.
std::optional<TDriverRow> ReadDriverRow(IVorelDriver& driver) noexcept;

// The driver's device name. Raises EVorelError when the driver fails.
std::string DeviceNameOf(IVorelDriver& driver);

} // namespace vorel
