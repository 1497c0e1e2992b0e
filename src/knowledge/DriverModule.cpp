#include "knowledge/DriverModule.h"

#include "knowledge/DriverRow.h"
#include "knowledge/StatusLine.h"
#include "support/Text.h"

#include <algorithm>

namespace vorel {

TVorelDriverModule::TVorelDriverModule(std::string path, IModuleLoader& loader, IHostClient* host)
    : FileName(std::move(path)), Host(host), Library(loader) {}

std::string TVorelDriverModule::ModuleName() const {
    return std::string(StemOf(FileName));
}

bool TVorelDriverModule::Load() {
    if (!Library.IsLoaded() && !Library.TakeLoaded(FileName)) {
        ShowStatusLine(Host, "Loading Vorel Driver: " + ModuleName());
        Library.LoadFile(FileName);
    }
    if (!Library.HasEntryPoints()) {
        return false;
    }
    try {
        EntryCount = Library.GetDriverCount();
    } catch (...) {
        EntryCount = 0;
    }
    return EntryCount > 0;
}

void TVorelDriverModule::MakeDrivers() {
    for (std::int32_t index = 0; index < EntryCount; ++index) {
        try {
            MakeDriver(index);
        } catch (const std::bad_alloc&) {
            throw;
        } catch (...) {
            // The other entries of the module are as good as before.
            continue;
        }
    }
}

void TVorelDriverModule::MakeDriver(std::int32_t index) {
    TOwnedDriver driver(Library.GetDriver(index));
    if (driver != nullptr) {
        std::string name = DeviceNameOf(*driver);
        Drivers.push_back({std::move(name), index, std::move(driver)});
    }
}

IVorelDriver* TVorelDriverModule::DriverAt(int index) const noexcept {
    return index < 0 || index >= DriverCount()
               ? nullptr
               : Drivers[static_cast<std::size_t>(index)].Driver.get();
}

IVorelDriver* TVorelDriverModule::CreateDriver(std::string_view deviceName) {
    const auto entry = std::find_if(Drivers.begin(), Drivers.end(), [&](const TEntry& candidate) {
        return SameText(candidate.DeviceName, deviceName);
    });
    if (entry == Drivers.end()) {
        return nullptr;
    }
    TOwnedDriver driver(Library.GetDriver(entry->Index));
    if (driver != nullptr) {
        Created.push_back(std::move(driver));
        return Created.back().get();
    }
    return nullptr;
}

} // namespace vorel
