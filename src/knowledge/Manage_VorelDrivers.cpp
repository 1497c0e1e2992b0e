#include "knowledge/Manage_VorelDrivers.h"

#include "knowledge/DriverRow.h"
#include "knowledge/JtagId.h"
#include "knowledge/ModuleFiles.h"
#include "knowledge/StatusLine.h"
#include "knowledge/TextFile.h"
#include "support/Text.h"

#include <algorithm>
#include <array>

namespace vorel {

namespace {

constexpr std::string_view OwnVendor = "Tarvex";
constexpr std::string_view GenericFamily = "Generic";
constexpr std::string_view GenericDevice = "GenericDevice";
// Processors inside other parts, which are no parts to choose.
constexpr std::array<std::string_view, 4> EmbeddedFamilies{"PPC405A", "MICROBLAZE", "NIOS2",
                                                           "COREMP7"};

void RemoveFirst(std::vector<std::string>& list, std::string_view text) {
    const auto entry = std::find_if(list.begin(), list.end(), [&](const std::string& candidate) {
        return SameText(candidate, text);
    });
    if (entry != list.end()) {
        list.erase(entry);
    }
}

void SortAndDropRepeats(std::vector<std::string>& list) {
    std::stable_sort(list.begin(), list.end(), [](const std::string& a, const std::string& b) {
        return CompareText(a, b) < 0;
    });
    list.erase(
        std::unique(list.begin(), list.end(),
                    [](const std::string& a, const std::string& b) { return SameText(a, b); }),
        list.end());
}

} // namespace

bool TVorelDriverManager::TNoCase::operator()(std::string_view a,
                                              std::string_view b) const noexcept {
    return CompareText(a, b) < 0;
}

TVorelDriverManager::TVorelDriverManager(const TKnowledgeSettings& settings)
    : Settings(settings), Cache(settings) {
    if (Settings.ModuleDirectory.empty()) {
        Settings.ModuleDirectory = Cache.GetSystemDirectory();
    }
}

TVorelDriverModule* TVorelDriverManager::FindModule(const std::string& path) {
    for (const auto& [name, module] : Modules) {
        if (SameText(module->GetFileName(), path)) {
            return module.get();
        }
    }
    return nullptr;
}

TVorelDriverModule* TVorelDriverManager::LoadModule(const std::string& path) {
    auto module = std::make_unique<TVorelDriverModule>(path, *Settings.Loader, Settings.Host);
    if (!module->Load()) {
        return nullptr;
    }
    module->MakeDrivers();
    for (const TVorelDriverModule::TEntry& entry : module->GetDrivers()) {
        DriverWrappers.emplace(entry.DeviceName,
                               TVorelDriverWrapper{entry.Driver.get(), module->GetFileName()});
    }
    return Modules.emplace(UpperCase(module->ModuleName()), std::move(module))->second.get();
}

TVorelDriverModule* TVorelDriverManager::FindOrLoadModule(const std::string& path) {
    if (path.empty()) {
        return nullptr;
    }
    TVorelDriverModule* module = FindModule(path);
    return module != nullptr ? module : LoadModule(path);
}

void TVorelDriverManager::LoadAllModules() {
    if (AllLoaded) {
        return;
    }
    for (const std::string& file : ListModuleFiles(Settings.ModuleDirectory)) {
        ShowStatusLine(Settings.Host, "Device Family " + std::string(StemOf(file)));
        FindOrLoadModule(Cache.GetSystemDirectory() + "/" + std::string(FileNameOf(file)));
    }
    AllLoaded = true;
    ShowStatusLine(Settings.Host, "");
}

// A device that several modules declare is served by the one that the cache names.
IVorelDriver* TVorelDriverManager::GetDriverForDevice(std::string_view device) {
    if (device.empty()) {
        return nullptr;
    }
    const std::string path = Cache.ModulePathForDevice(device);
    if (path.empty() || FindOrLoadModule(path) == nullptr) {
        return nullptr;
    }
    const auto [first, last] = DriverWrappers.equal_range(device);
    const auto own = std::find_if(first, last, [&](const auto& wrapper) {
        return SameText(wrapper.second.ModuleFile, path);
    });
    if (own != last) {
        return own->second.Driver;
    }
    return first != last ? first->second.Driver : nullptr;
}

IVorelDriver* TVorelDriverManager::CreateDriverForDevice(std::string_view device) {
    if (device.empty()) {
        return nullptr;
    }
    TVorelDriverModule* module = FindOrLoadModule(Cache.ModulePathForDevice(device));
    return module == nullptr ? nullptr : module->CreateDriver(device);
}

std::vector<IVorelDriver*> TVorelDriverManager::GetDriversOfFamily(std::string_view family) {
    std::vector<IVorelDriver*> drivers;
    if (TVorelDriverModule* module = FindOrLoadModule(Cache.ModulePathForFamily(family))) {
        const WideText wanted = ToWide(family);
        for (const TVorelDriverModule::TEntry& entry : module->GetDrivers()) {
            WideText text;
            Check(entry.Driver->GetFamily(text), "GetFamily");
            if (text == wanted) {
                drivers.push_back(entry.Driver.get());
            }
        }
    }
    return drivers;
}

std::vector<IVorelDriver*> TVorelDriverManager::GetAllDrivers() {
    LoadAllModules();
    std::vector<IVorelDriver*> drivers;
    for (const auto& [name, module] : Modules) {
        for (const TVorelDriverModule::TEntry& entry : module->GetDrivers()) {
            if (!entry.DeviceName.empty()) {
                drivers.push_back(entry.Driver.get());
            }
        }
    }
    return drivers;
}

std::vector<std::string> TVorelDriverManager::GetVendors() {
    std::vector<std::string> vendors = Cache.Vendors();
    RemoveFirst(vendors, OwnVendor);
    return vendors;
}

std::vector<std::string> TVorelDriverManager::GetFamiliesForVendor(std::string_view vendor) {
    std::vector<std::string> families = Cache.FamiliesOfVendor(vendor);
    for (const std::string_view embedded : EmbeddedFamilies) {
        RemoveFirst(families, embedded);
    }
    return families;
}

std::vector<std::string> TVorelDriverManager::GetFamiliesForType(std::string_view type) {
    return Cache.FamiliesOfType(type);
}

std::vector<std::string> TVorelDriverManager::GetDevicesOfFamily(std::string_view family) {
    return Cache.DevicesOfFamily(family);
}

std::optional<TDeviceRow> TVorelDriverManager::GetDeviceInfo(std::string_view device) {
    return Cache.DeviceInfo(device);
}

std::uint32_t TVorelDriverManager::ResolveAlias(std::uint32_t idCode) {
    if (!Aliases) {
        Aliases.emplace(ReadTextFile(Cache.GetSystemDirectory() + "/JTAG_ALIAS.txt").value_or(""));
    }
    return Aliases->Resolve(idCode);
}

bool TVorelDriverManager::JtagIdsMatch(std::uint32_t idA, std::uint32_t idB) {
    return MaskedIdCode(ResolveAlias(idA)) == MaskedIdCode(ResolveAlias(idB));
}

void TVorelDriverManager::CollectFromModule(const TVorelDriverModule& module, std::uint32_t idCode,
                                            std::vector<std::string>& names) {
    for (const TVorelDriverModule::TEntry& entry : module.GetDrivers()) {
        std::uint32_t driverId = 0;
        if (!entry.DeviceName.empty() && !SameText(entry.DeviceName, GenericDevice) &&
            Succeeded(entry.Driver->GetIdCode(driverId)) && JtagIdsMatch(driverId, idCode)) {
            names.push_back(entry.DeviceName);
        }
    }
}

// An id of 0 says that a part has none, so it leads to no part.
void TVorelDriverManager::CollectDevices(std::uint32_t idCode, std::vector<std::string>& names) {
    if (idCode == 0) {
        return;
    }
    for (int index = Cache.ModuleCountForId(idCode) - 1; index >= 0; --index) {
        if (const TVorelDriverModule* module =
                FindOrLoadModule(Cache.ModulePathForId(idCode, index))) {
            CollectFromModule(*module, idCode, names);
        }
    }
}

std::vector<std::string> TVorelDriverManager::DevicesForJtagId(std::uint32_t idCode) {
    std::vector<std::string> names;
    CollectDevices(idCode, names);
    const std::uint32_t alias = ResolveAlias(idCode);
    if (alias != idCode) {
        CollectDevices(alias, names);
    }
    if (names.empty()) {
        if (const TVorelDriverModule* module =
                FindOrLoadModule(Cache.ModulePathForFamily(GenericFamily))) {
            for (const TVorelDriverModule::TEntry& entry : module->GetDrivers()) {
                names.push_back(entry.DeviceName);
            }
        }
    }
    SortAndDropRepeats(names);
    return names;
}

} // namespace vorel
