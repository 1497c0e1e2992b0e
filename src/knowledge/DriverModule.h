// A driver module that stays in the process, with one shared driver for each of its entries.
#pragma once

#include "knowledge/ModuleLibrary.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vorel {

class IHostClient;

struct TFreeDriver {
    void operator()(IVorelDriver* driver) const noexcept { FreeDriver(driver); }
};
using TOwnedDriver = std::unique_ptr<IVorelDriver, TFreeDriver>;

// Owns the library and all drivers that it gave; both go with this object, the drivers first.
class TVorelDriverModule {
public:
    // One entry of the module that has a driver and a name.
    struct TEntry {
        std::string DeviceName;
        std::int32_t Index = 0; // into the module
        TOwnedDriver Driver;    // the shared one
    };

    // `host` may be null.
    TVorelDriverModule(std::string path, IModuleLoader& loader, IHostClient* host);

    // Takes the file that is in the process under this name, or loads it. False for a file that
    // cannot be loaded, has not both entry points, or has no drivers.
    bool Load();
    // Makes the shared drivers. An entry that fails, gives null or cannot tell its name is left
    // out.
    void MakeDrivers();

    const std::vector<TEntry>& GetDrivers() const noexcept { return Drivers; }
    int DriverCount() const noexcept { return static_cast<int>(Drivers.size()); }
    // Null for an index out of range.
    IVorelDriver* DriverAt(int index) const noexcept;
    // A new driver of the first entry with this device name, without case; null when there is none.
    // It lives as long as the module.
    IVorelDriver* CreateDriver(std::string_view deviceName);

    const std::string& GetFileName() const noexcept { return FileName; }
    std::string ModuleName() const; // without folder and suffix

private:
    void MakeDriver(std::int32_t index);

    std::string FileName;
    IHostClient* Host;
    TModuleLibrary Library;
    std::int32_t EntryCount = 0;
    std::vector<TEntry> Drivers;
    std::vector<TOwnedDriver> Created;
};

} // namespace vorel
