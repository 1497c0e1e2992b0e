// The driver cache: a database of what every driver module declares, so that modules are loaded
// only for what they alone know.
#pragma once

#include "knowledge/DeviceKnowledge.h"
#include "knowledge/KnowledgeSettings.h"
#include "knowledge/SQLiteTable.h"

#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vorel {

// What bringing the cache up to date took.
struct TCacheWork {
    int ModulesFound = 0;
    int ModulesRead = 0;
    int ChecksumsComputed = 0;
};

// Opens the database, creates what is missing, and reads the modules that are new or changed since
// the last time; this happens in the constructor and only there. The file is VorelCache.db in the
// host's folder of user data, or in the current folder of a process without a host.
//
// A module counts as changed when its last-write time differs from the stored one by anything but
// one step of the hour field (daylight saving) and its MD5 differs as well. All changed modules are
// read in one transaction: whatever interrupts it, the former rows stay.
//
// A database that is damaged or has other tables than ours is reported, renamed to *.damaged, and
// made anew. Raises ESQLiteException for all other troubles with the database.
//
// Names and types compare without case. A module path is the System folder and the file name.
class TModulePathLookupCache {
public:
    explicit TModulePathLookupCache(const TKnowledgeSettings& settings);
    TModulePathLookupCache(const TModulePathLookupCache&) = delete;
    TModulePathLookupCache& operator=(const TModulePathLookupCache&) = delete;
    ~TModulePathLookupCache();

    // Empty when no module declares the device.
    std::string ModulePathForDevice(std::string_view device);
    // Modules that declare this id, once version bits are masked as MaskedIdCode does.
    int ModuleCountForId(std::uint32_t idCode);
    // `index` from 0 to ModuleCountForId - 1; empty for any other.
    std::string ModulePathForId(std::uint32_t idCode, int index);
    // Each value once, in the order of the rows.
    std::vector<std::string> Vendors();
    std::vector<std::string> FamiliesOfVendor(std::string_view vendor);
    std::vector<std::string> FamiliesOfType(std::string_view type);
    std::vector<std::string> DevicesOfFamily(std::string_view family);
    // The module of the family's first row; empty when the family is unknown.
    std::string ModulePathForFamily(std::string_view family);
    std::optional<TDeviceRow> DeviceInfo(std::string_view device);

    const std::string& GetFileName() const noexcept { return FileName; }
    const std::string& GetSystemDirectory() const noexcept { return SystemDirectory; }
    const TCacheWork& GetWork() const noexcept { return Work; }
    // Version text of the host at the last reading of a module.
    std::string GetVersion();
    // Forgets every module and reads all of them again.
    void RebuildAll();

private:
    void FindDirectories();
    void Open(bool mayTakeInstalled);
    void TakeInstalledDatabase(const std::string& installed);
    void CheckDatabase();
    void SetDamagedAside(const std::string& reason);

    void Update();
    void CreateMissingTables();
    void Rebuild(const std::vector<std::string>& names);
    void ReadModules(const std::vector<std::string>& names);
    void Vacuum();
    std::vector<std::string> ListModuleNames() const;
    std::vector<std::string> ListChangedModules();
    bool HasChanged(const std::string& name, std::vector<std::string>& onlyTouched);
    void DeleteVanishedModules();
    void WriteFileTimes(const std::vector<std::string>& names);
    std::optional<std::string> ChecksumOf(const std::string& name);

    TSQLiteTable Select(std::string_view statement, std::string_view value);
    std::vector<std::string> ListOf(const std::string& statement);
    std::string ModulePath(std::string_view fileName) const;
    std::string FirstModulePath(std::string_view statement, std::string_view value);

    TKnowledgeSettings Settings;
    TSilentProgress Silent;
    std::string SystemDirectory;
    std::string ModuleDirectory;
    std::string FileName;
    std::unique_ptr<TSQLiteDatabase> Database;
    TCacheWork Work;
    bool Updated = false;
};

} // namespace vorel
