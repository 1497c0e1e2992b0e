// What the core asks about device names and JTAG ids, without knowing where the answers come from:
// driver modules and their cache, or a stand-in of a test.
#pragma once

#include "vorel/Driver.h"

#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vorel {

// One row of the device table.
struct TDeviceRow {
    std::string Path; // the driver module
    std::string Vendor;
    std::string Family;
    std::string Display;
    std::string Type; // "FPGA", "CPLD", "PROM", "PROC", "SPROC", "GPROC" or "Other"
    std::uint32_t IdCode = 0;
    std::uint32_t MaskedIdCode = 0;
};

// Names compare without case. Drivers stay the property of their module: nothing here hands out a
// reference that the caller has to give back. Failures raise EVorelError.
class IDeviceKnowledge {
public:
    virtual ~IDeviceKnowledge() = default;

    // Sorted, no name twice. Empty only when not even the family of generic devices is known.
    virtual std::vector<std::string> DevicesForJtagId(std::uint32_t idCode) = 0;
    virtual bool JtagIdsMatch(std::uint32_t idA, std::uint32_t idB) = 0;

    // Lists in the order of the table.
    virtual std::vector<std::string> GetVendors() = 0;
    virtual std::vector<std::string> GetFamiliesForVendor(std::string_view vendor) = 0;
    virtual std::vector<std::string> GetFamiliesForType(std::string_view type) = 0;
    virtual std::vector<std::string> GetDevicesOfFamily(std::string_view family) = 0;
    virtual std::optional<TDeviceRow> GetDeviceInfo(std::string_view device) = 0;

    // The shared driver of that name; null for an empty or unknown name.
    virtual IVorelDriver* GetDriverForDevice(std::string_view device) = 0;
    // A new driver instance, to be tied to one device; null for an unknown name.
    virtual IVorelDriver* CreateDriverForDevice(std::string_view device) = 0;
    // The shared driver of every known device. Loads every module.
    virtual std::vector<IVorelDriver*> GetAllDrivers() = 0;
};

// Knows nothing: every list is empty, every driver null, ids match when they are equal once masked.
class TEmptyKnowledge final : public IDeviceKnowledge {
public:
    std::vector<std::string> DevicesForJtagId(std::uint32_t idCode) override;
    bool JtagIdsMatch(std::uint32_t idA, std::uint32_t idB) override;
    std::vector<std::string> GetVendors() override;
    std::vector<std::string> GetFamiliesForVendor(std::string_view vendor) override;
    std::vector<std::string> GetFamiliesForType(std::string_view type) override;
    std::vector<std::string> GetDevicesOfFamily(std::string_view family) override;
    std::optional<TDeviceRow> GetDeviceInfo(std::string_view device) override;
    IVorelDriver* GetDriverForDevice(std::string_view device) override;
    IVorelDriver* CreateDriverForDevice(std::string_view device) override;
    std::vector<IVorelDriver*> GetAllDrivers() override;
};

} // namespace vorel
