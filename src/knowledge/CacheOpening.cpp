// Where the database lies, the database that came with the installation, and damaged files.
#include "knowledge/CacheSchema.h"
#include "knowledge/VorelCache.h"
#include "support/Text.h"
#include "vorel/Host.h"

#include <filesystem>
#include <sqlite3.h>

namespace vorel {

namespace {

namespace fs = std::filesystem;

constexpr const char* DatabaseName = "VorelCache.db";
constexpr std::array<const char*, 2> CompanionSuffixes{"", "-journal"};

std::string DirectoryOf(IHostClient& host, HostDirectory which) {
    WideText path;
    Check(host.GetDirectory(which, path), "Asking the host for a directory");
    return ToUtf8(path);
}

std::string VersionOf(TSQLiteDatabase& database) {
    if (!database.TableExists("tblSystemInfo")) {
        return {};
    }
    const TSQLiteTable table = database.GetTable("SELECT Version FROM tblsystemInfo WHERE ID = 1");
    return table.Eof() ? std::string() : table.FieldAsString(std::size_t{0});
}

[[noreturn]] void RaiseDamage(const std::string& reason) {
    throw ESQLiteException(reason, SQLITE_CORRUPT);
}

} // namespace

TModulePathLookupCache::TModulePathLookupCache(const TKnowledgeSettings& settings)
    : Settings(settings) {
    if (Settings.Progress == nullptr) {
        Settings.Progress = &Silent;
    }
    FindDirectories();
    try {
        Open(true);
        Update();
    } catch (const ESQLiteException& error) {
        if (!error.MeansDamage()) {
            throw;
        }
        SetDamagedAside(error.what());
        Open(false);
        Update();
    }
}

TModulePathLookupCache::~TModulePathLookupCache() = default;

void TModulePathLookupCache::FindDirectories() {
    SystemDirectory = Settings.ModuleDirectory;
    ModuleDirectory = Settings.ModuleDirectory;
    FileName = DatabaseName;
    if (Settings.Host == nullptr) {
        return;
    }
    SystemDirectory = DirectoryOf(*Settings.Host, HostDirectory::System);
    if (ModuleDirectory.empty()) {
        ModuleDirectory = SystemDirectory;
    }
    const std::string userData = DirectoryOf(*Settings.Host, HostDirectory::UserData);
    std::error_code ignored;
    fs::create_directories(userData, ignored);
    FileName = (fs::path(userData) / DatabaseName).string();
}

void TModulePathLookupCache::Open(bool mayTakeInstalled) {
    Database = std::make_unique<TSQLiteDatabase>(FileName, TSQLiteDatabase::Access::ReadWrite,
                                                 Settings.OnBusy);
    const std::string installed = SystemDirectory + "/" + DatabaseName;
    std::error_code error;
    if (mayTakeInstalled && Settings.Host != nullptr && fs::exists(installed, error)) {
        TakeInstalledDatabase(installed);
    }
    CheckDatabase();
}

// The contents are copied through SQLite, so that a process that has the database open sees either
// the old or the new ones. Versions are compared as plain texts.
void TModulePathLookupCache::TakeInstalledDatabase(const std::string& installed) {
    const bool isNew = Database->GetTable("SELECT name FROM sqlite_master").RowCount() == 0;
    const std::string version = VersionOf(*Database);
    try {
        TSQLiteDatabase source(installed, TSQLiteDatabase::Access::ReadOnly, Settings.OnBusy);
        if (isNew || VersionOf(source) > version) {
            Database->CopyFrom(source);
        }
    } catch (const ESQLiteException&) {
        // Without the installed database the modules are read one by one.
        return;
    }
}

void TModulePathLookupCache::CheckDatabase() {
    const TSQLiteTable verdict = Database->GetTable("PRAGMA quick_check(1);");
    if (verdict.Eof() || verdict.FieldAsString(std::size_t{0}) != "ok") {
        RaiseDamage(verdict.Eof() ? "no verdict" : verdict.FieldAsString(std::size_t{0}));
    }
    for (const TCacheTable& table : CacheTables) {
        const TSQLiteTable found = Database->GetTable(
            std::string("SELECT sql || ';' FROM sqlite_master WHERE type = 'table' AND name = '") +
            table.Name + "'");
        if (!found.Eof() && found.FieldAsString(std::size_t{0}) != table.Schema) {
            RaiseDamage(std::string("table ") + table.Name + " has another shape");
        }
    }
}

void TModulePathLookupCache::SetDamagedAside(const std::string& reason) {
    Database.reset();
    const std::string aside = FileName + ".damaged";
    Settings.Progress->Report("The driver cache \"" + FileName + "\" is damaged (" + reason +
                              "). It is kept as \"" + aside + "\" and made anew.");
    for (const char* suffix : CompanionSuffixes) {
        std::error_code error;
        fs::rename(FileName + suffix, aside + suffix, error);
        if (error && fs::exists(FileName + suffix)) {
            throw ESQLiteException("Cannot set the damaged driver cache \"" + FileName +
                                   "\" aside: " + error.message());
        }
    }
}

} // namespace vorel
