// Which modules are new or changed, and reading them into the database.
#include "knowledge/CacheSchema.h"
#include "knowledge/DriverRow.h"
#include "knowledge/HostVersion.h"
#include "knowledge/Md5.h"
#include "knowledge/ModuleFiles.h"
#include "knowledge/ModuleLibrary.h"
#include "knowledge/VorelCache.h"
#include "support/Text.h"

#include <algorithm>
#include <filesystem>

namespace vorel {

namespace {

// One step of the hour field of a packed time.
constexpr std::int64_t OneHour = 0x800;

// The window of one rebuild, which appears with the first module and goes in any case.
class TProgressWindow {
public:
    TProgressWindow(IRebuildProgress& progress, std::size_t moduleCount) : Progress(progress) {
        Progress.Begin(static_cast<int>(moduleCount));
    }
    TProgressWindow(const TProgressWindow&) = delete;
    TProgressWindow& operator=(const TProgressWindow&) = delete;
    ~TProgressWindow() {
        Progress.End();
        Progress.ProcessPendingEvents();
    }

private:
    IRebuildProgress& Progress;
};

// Reads the drivers of one module into the table.
class TModuleReader {
public:
    TModuleReader(TSQLiteStatement& statement, IRebuildProgress& progress)
        : Statement(statement), Progress(progress) {}

    void Read(const TModuleLibrary& module, const std::string& name) {
        Progress.ShowImage("");
        const std::int32_t count = CountOf(module);
        for (std::int32_t index = 0; index < count; ++index) {
            IVorelDriver* driver = DriverOf(module, index);
            if (driver != nullptr) {
                const std::optional<TDriverRow> row = ReadDriverRow(*driver);
                FreeDriver(driver);
                if (row) {
                    Store(*row, name, index == 0);
                }
            }
        }
    }

private:
    // What a module raises must be gone before the module is.
    static std::int32_t CountOf(const TModuleLibrary& module) {
        try {
            return module.GetDriverCount();
        } catch (...) {
            return 0;
        }
    }

    static IVorelDriver* DriverOf(const TModuleLibrary& module, std::int32_t index) {
        try {
            return module.GetDriver(index);
        } catch (...) {
            return nullptr;
        }
    }

    void Store(const TDriverRow& row, const std::string& name, bool isFirst) {
        Statement.BindText(1, name);
        Statement.BindText(2, row.Vendor);
        Statement.BindText(3, row.Family);
        Statement.BindText(4, row.Device);
        Statement.BindText(5, row.Display);
        Statement.BindText(6, row.Type);
        Statement.BindInteger(7, row.IdCode);
        Statement.BindInteger(8, row.MaskedIdCode);
        Statement.Run();
        if (isFirst) {
            Progress.ShowLabel("File: " + name);
            Progress.ShowImage(row.Family);
        }
        Progress.ProcessPendingEvents();
    }

    TSQLiteStatement& Statement;
    IRebuildProgress& Progress;
};

std::string DeleteRows(const std::string& module) {
    return "DELETE FROM tblVorelCache WHERE Path = " + QuoteText(module) + ";";
}

} // namespace

void TModulePathLookupCache::Update() {
    if (Updated) {
        return;
    }
    Updated = true;
    CreateMissingTables();
    const std::vector<std::string> changed = ListChangedModules();
    if (!changed.empty()) {
        Rebuild(changed);
    }
}

void TModulePathLookupCache::RebuildAll() {
    Database->ExecSQL("DELETE FROM tblModuleFileTime;");
    Updated = false;
    Update();
}

void TModulePathLookupCache::CreateMissingTables() {
    for (const TCacheTable& table : CacheTables) {
        if (Database->TableExists(table.Name)) {
            continue;
        }
        try {
            Database->ExecSQL(table.Schema);
        } catch (const ESQLiteException&) {
            // A process that started at the same time may have been quicker.
            if (!Database->TableExists(table.Name)) {
                throw;
            }
        }
    }
}

std::vector<std::string> TModulePathLookupCache::ListModuleNames() const {
    std::vector<std::string> names = ListModuleFiles(ModuleDirectory);
    for (std::string& name : names) {
        name = FileNameOf(name);
    }
    return names;
}

std::vector<std::string> TModulePathLookupCache::ListChangedModules() {
    std::vector<std::string> names = ListModuleNames();
    Work.ModulesFound = static_cast<int>(names.size());
    std::vector<std::string> onlyTouched;
    std::vector<std::string> changed;
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        if (HasChanged(*name, onlyTouched)) {
            changed.push_back(*name);
        }
    }
    std::reverse(changed.begin(), changed.end());
    if (!onlyTouched.empty()) {
        WriteFileTimes(onlyTouched);
    }
    DeleteVanishedModules();
    return changed;
}

bool TModulePathLookupCache::HasChanged(const std::string& name,
                                        std::vector<std::string>& onlyTouched) {
    const TSQLiteTable table = Database->GetTable(
        "SELECT FileTime, Checksum FROM tblModuleFileTime WHERE Path = " + QuoteText(name) + ";");
    if (table.Eof()) {
        return true;
    }
    const std::int64_t stored = table.FieldAsInteger(0);
    const std::int64_t difference = Settings.FileTimes->LastWrite(ModulePath(name)) - stored;
    if (difference == 0 || difference == OneHour || difference == -OneHour) {
        return false;
    }
    const std::optional<std::string> checksum = ChecksumOf(name);
    if (!checksum || !SameText(*checksum, table.FieldAsString(std::size_t{1}))) {
        return true;
    }
    onlyTouched.push_back(name);
    return false;
}

void TModulePathLookupCache::DeleteVanishedModules() {
    const std::vector<std::string> names = ListOf("SELECT DISTINCT Path FROM tblVorelCache");
    for (auto name = names.rbegin(); name != names.rend(); ++name) {
        std::error_code error;
        if (!std::filesystem::exists(ModulePath(*name), error)) {
            Database->ExecSQL(DeleteRows(*name));
        }
    }
}

void TModulePathLookupCache::Rebuild(const std::vector<std::string>& names) {
    {
        const TProgressWindow window(*Settings.Progress, names.size());
        TSQLiteTransaction transaction(*Database);
        ReadModules(names);
        transaction.Commit();
    }
    Database->ExecSQL("DELETE FROM tblModuleFileTime;");
    WriteFileTimes(ListModuleNames());
    Database->ExecSQL("REPLACE INTO tblSystemInfo(ID, Version) VALUES (1, " +
                      QuoteText(VersionOfHost(Settings.Host, SystemDirectory)) + ");");
    Vacuum();
}

void TModulePathLookupCache::ReadModules(const std::vector<std::string>& names) {
    TSQLiteStatement statement(
        *Database, "REPLACE  INTO tblVorelCache(Path, Vendor, Family, Device, Display, Type, "
                   "IdCode, MaskedIdCode) VALUES(?,?,?,?,?,?,?,?); ");
    for (const std::string& name : names) {
        Settings.Progress->Step();
        TModuleLibrary module(*Settings.Loader);
        module.LoadFile(ModulePath(name));
        ++Work.ModulesRead;
        Database->ExecSQL(DeleteRows(name));
        if (module.HasEntryPoints()) {
            TModuleReader(statement, *Settings.Progress).Read(module, name);
        }
    }
}

// Gives the room of replaced rows back. The cache is complete without it, so a database that
// another process is reading, or a disk too full for the copy, is no failure.
void TModulePathLookupCache::Vacuum() {
    try {
        Database->ExecSQL("VACUUM;");
    } catch (const ESQLiteException&) {
        return;
    }
}

// A module whose bytes cannot be read gets no time, so that the next start looks at it again.
void TModulePathLookupCache::WriteFileTimes(const std::vector<std::string>& names) {
    TSQLiteTransaction transaction(*Database);
    TSQLiteStatement statement(
        *Database, "REPLACE INTO tblModuleFileTime(Path, FileTime, Checksum) VALUES(?,?,?); ");
    for (const std::string& name : names) {
        const std::int32_t time = Settings.FileTimes->LastWrite(ModulePath(name));
        if (const std::optional<std::string> checksum = ChecksumOf(name)) {
            statement.BindText(1, name);
            statement.BindInteger(2, time);
            statement.BindText(3, *checksum);
            statement.Run();
        }
    }
    transaction.Commit();
}

std::optional<std::string> TModulePathLookupCache::ChecksumOf(const std::string& name) {
    ++Work.ChecksumsComputed;
    try {
        return Md5OfFile(ModulePath(name));
    } catch (const EVorelError&) {
        return std::nullopt;
    }
}

} // namespace vorel
