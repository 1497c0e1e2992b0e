// The driver manager: finds driver modules, loads the ones that a question needs, and hands out
// their drivers by device name, family and JTAG id.
#pragma once

#include "knowledge/DeviceKnowledge.h"
#include "knowledge/DriverModule.h"
#include "knowledge/JtagAliases.h"
#include "knowledge/VorelCache.h"

#include <map>
#include <memory>
#include <optional>

namespace vorel {

// A shared driver and the module file that it came from.
struct TVorelDriverWrapper {
    IVorelDriver* Driver = nullptr;
    std::string ModuleFile;
};

// Making one opens the driver cache, which may read modules and take long (TModulePathLookupCache).
// Modules stay loaded, and all drivers valid, until the manager goes. A module that cannot be
// loaded is passed over without a message; so is a driver that fails to tell its name or id.
class TVorelDriverManager final : public IDeviceKnowledge {
public:
    explicit TVorelDriverManager(const TKnowledgeSettings& settings);

    std::vector<std::string> DevicesForJtagId(std::uint32_t idCode) override;
    // Compares what the ids stand for (JTAG_ALIAS.txt), without version bits.
    bool JtagIdsMatch(std::uint32_t idA, std::uint32_t idB) override;

    // Without the vendor of our own parts.
    std::vector<std::string> GetVendors() override;
    // Without the first entry of each family of embedded processors.
    std::vector<std::string> GetFamiliesForVendor(std::string_view vendor) override;
    std::vector<std::string> GetFamiliesForType(std::string_view type) override;
    std::vector<std::string> GetDevicesOfFamily(std::string_view family) override;
    std::optional<TDeviceRow> GetDeviceInfo(std::string_view device) override;

    IVorelDriver* GetDriverForDevice(std::string_view device) override;
    IVorelDriver* CreateDriverForDevice(std::string_view device) override;
    std::vector<IVorelDriver*> GetAllDrivers() override;
    // The shared drivers of this family, compared with case, in the family's module.
    std::vector<IVorelDriver*> GetDriversOfFamily(std::string_view family);

    // Loads every module, the first time it is called.
    void LoadAllModules();
    // Null for a module that cannot be used.
    TVorelDriverModule* FindOrLoadModule(const std::string& path);
    std::size_t ModuleCount() const noexcept { return Modules.size(); }
    TModulePathLookupCache& GetCache() noexcept { return Cache; }

private:
    struct TNoCase {
        using is_transparent = void;
        bool operator()(std::string_view a, std::string_view b) const noexcept;
    };

    TVorelDriverModule* FindModule(const std::string& path);
    TVorelDriverModule* LoadModule(const std::string& path);
    std::uint32_t ResolveAlias(std::uint32_t idCode);
    void CollectDevices(std::uint32_t idCode, std::vector<std::string>& names);
    void CollectFromModule(const TVorelDriverModule& module, std::uint32_t idCode,
                           std::vector<std::string>& names);

    TKnowledgeSettings Settings;
    TModulePathLookupCache Cache;
    // By module name in upper case; two folders may hold modules of one name.
    std::multimap<std::string, std::unique_ptr<TVorelDriverModule>> Modules;
    // By device name; modules may declare the same device.
    std::multimap<std::string, TVorelDriverWrapper, TNoCase> DriverWrappers;
    std::optional<TJtagAliases> Aliases; // read at first need
    bool AllLoaded = false;
};

} // namespace vorel
