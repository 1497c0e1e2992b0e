#include "knowledge/CacheSchema.h"
#include "knowledge/HostVersion.h"
#include "knowledge/KnowledgeFixture.h"
#include "knowledge/Md5.h"
#include "knowledge/VorelCache.h"

#include <csignal>
#include <functional>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <sqlite3.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace vorel {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

struct Cache : testing::Test, TInstallation {
    // Looks into the file as any other program would.
    std::vector<std::string> Rows(const std::string& sql, const char* file = "User/VorelCache.db") {
        std::vector<std::string> rows;
        sqlite3* database = nullptr;
        EXPECT_EQ(sqlite3_open((Folder / file).c_str(), &database), SQLITE_OK);
        const auto collect = [](void* list, int count, char** values, char**) {
            std::string row;
            for (int i = 0; i < count; ++i) {
                row += (i > 0 ? "|" : "") + std::string(values[i] == nullptr ? "" : values[i]);
            }
            static_cast<std::vector<std::string>*>(list)->push_back(row);
            return 0;
        };
        EXPECT_EQ(sqlite3_exec(database, sql.c_str(), collect, &rows, nullptr), SQLITE_OK) << sql;
        sqlite3_close(database);
        return rows;
    }
    std::vector<std::string> Devices() {
        return Rows("SELECT Device FROM tblVorelCache ORDER BY Device");
    }
    TCacheWork Start() { return TModulePathLookupCache(Settings()).GetWork(); }

    // Runs `body` in a process of its own, which ends without any clearing up.
    static pid_t InChild(const std::function<void()>& body) {
        const pid_t child = fork();
        if (child == 0) {
            body();
            _exit(0);
        }
        return child;
    }
};

TEST_F(Cache, TheFileHoldsSchemaRowsTimesAndVersion) {
    AddModule("A.VOR", "Dev1|Maker|Fam|41234093|FPGA\nDev2|TARVEX|Fam|F00000DD|FPGA,SPROC\n"
                       "Dev3|tarvex|Own|0|CPLD\nDe\"v4|M|F|1|PROM PROC");
    Start();
    const auto schema = Rows("SELECT sql || ';' FROM sqlite_master WHERE type = 'table'");
    EXPECT_THAT(schema,
                ElementsAre(CacheTables[0].Schema, CacheTables[1].Schema, CacheTables[2].Schema));
    EXPECT_THAT(Rows("SELECT * FROM tblVorelCache"),
                ElementsAre("A.VOR|Maker|Fam|Dev1|The Dev1|FPGA|1092829331|19087507",
                            "A.VOR|TARVEX|Fam|Dev2|The Dev2|SPROC|4026532061|4026532061",
                            "A.VOR|tarvex|Own|Dev3|The Dev3|Other|0|0",
                            "A.VOR|M|F|De\"v4|The De\"v4|PROC|1|1"));
    EXPECT_THAT(Rows("SELECT Path, FileTime, Checksum = upper(Checksum) AND length(Checksum) = 32 "
                     "FROM tblModuleFileTime"),
                ElementsAre("A.VOR|" + std::to_string(0x5A6B4321) + "|1"));
    EXPECT_THAT(Rows("SELECT * FROM tblSystemInfo"), ElementsAre("1|7.5.1"));
    EXPECT_EQ(Progress.Log, "begin 1;step;image ;File: A.VOR;image Fam;end;");
}

TEST_F(Cache, QueriesAnswerFromTheRows) {
    AddModule("A.VOR", "Device|Vendor|Family|41234093|FPGA\nX|Maker|G|11234093|CPLD");
    AddModule("B.VOR", "Y|Maker|family|21234093|FPGA");
    TModulePathLookupCache cache(Settings());
    const std::string a = Folder / "System/A.VOR";
    EXPECT_EQ(cache.ModulePathForDevice("DEVICE"), a);
    EXPECT_EQ(cache.ModulePathForDevice("Path"), "") << "no column, a name nobody has";
    EXPECT_EQ(cache.ModulePathForFamily("g"), a);
    EXPECT_EQ(cache.ModuleCountForId(0xF1234093), 2);
    EXPECT_NE(cache.ModulePathForId(0x01234093, 0), cache.ModulePathForId(0x01234093, 1));
    EXPECT_EQ(cache.ModulePathForId(0x01234093, 2) + cache.ModulePathForId(0x01234093, -1), "");
    EXPECT_THAT(cache.FamiliesOfVendor("Vendor"), ElementsAre("Family"));
    EXPECT_THAT(cache.FamiliesOfType("fpga"), SizeIs(1)) << "names that differ in case are one";
    EXPECT_THAT(cache.DevicesOfFamily("FAMILY"), SizeIs(2));
    EXPECT_THAT(cache.Vendors(), SizeIs(2));
    const std::optional<TDeviceRow> row = cache.DeviceInfo("x");
    ASSERT_TRUE(row);
    EXPECT_EQ(row->Path + row->Vendor + row->Family + row->Display + row->Type,
              "A.VORMakerGThe XCPLD");
    EXPECT_EQ(row->IdCode, 0x11234093U);
    EXPECT_EQ(row->MaskedIdCode, 0x01234093U);
    EXPECT_FALSE(cache.DeviceInfo("Vendor"));
}

TEST_F(Cache, OneHundredUnchangedModulesAreNeitherLoadedNorSummed) {
    for (int i = 0; i < 100; ++i) {
        const std::string name = "M" + std::to_string(i);
        AddModule(name + ".VOR", name + "|V|F|1|FPGA");
    }
    EXPECT_EQ(Start().ModulesRead, 100);
    EXPECT_THAT(Loader.Loaded, SizeIs(100));
    Loader.Loaded.clear();
    const TCacheWork work = Start();
    EXPECT_THAT(Loader.Loaded, IsEmpty());
    EXPECT_EQ(work.ModulesFound, 100);
    EXPECT_EQ(work.ModulesRead + work.ChecksumsComputed, 0);
    EXPECT_THAT(Devices(), SizeIs(100));
}

TEST_F(Cache, ChangedModulesAreToldByTimeHourAndChecksum) {
    struct TCase {
        const char* Name;
        std::int32_t Time;
        bool NewBytes;
        int Checksums; // while looking; a rebuild computes that of every module once more
        int Read;
        std::int32_t StoredTime;
    };
    constexpr std::int32_t start = 0x5A6B4321;
    for (const TCase& c : {TCase{"nothing", start, false, 0, 0, start},
                           TCase{"bytes only", start, true, 0, 0, start},
                           TCase{"an hour later", start + 0x800, true, 0, 0, start},
                           TCase{"an hour earlier", start - 0x800, true, 0, 0, start},
                           TCase{"touched", start + 1, false, 2, 0, start + 1},
                           TCase{"new bytes", start + 0x1000, true, 2, 1, start + 0x1000}}) {
        AddModule("A.VOR", "Old|V|F|1|FPGA");
        Start();
        Folder.Write("System/A.VOR.txt", "New|V|F|1|FPGA");
        if (c.NewBytes) {
            ChangeBytes("A.VOR");
        }
        Times.Times["A.VOR"] = c.Time;
        Loader.Loaded.clear();
        const TCacheWork work = Start();
        EXPECT_EQ(work.ModulesFound, 1) << c.Name;
        EXPECT_THAT(Loader.Loaded, SizeIs(c.Read)) << c.Name;
        EXPECT_EQ(work.ChecksumsComputed, c.Checksums) << c.Name;
        EXPECT_EQ(work.ModulesRead, c.Read) << c.Name;
        EXPECT_THAT(Devices(), ElementsAre(c.Read > 0 ? "New" : "Old")) << c.Name;
        EXPECT_THAT(Rows("SELECT FileTime FROM tblModuleFileTime"),
                    ElementsAre(std::to_string(c.StoredTime)))
            << c.Name;
        Times.Times.clear();
        std::filesystem::remove_all(Folder / "System");
        std::filesystem::create_directories(Folder / "System");
        std::filesystem::remove_all(Folder / "User");
    }
}

TEST_F(Cache, AChangedModuleReplacesItsRowsAndAVanishedOneLosesThem) {
    AddModule("A.VOR", "A1|V|F|1|FPGA\nShared|A|F|1|FPGA");
    AddModule("B.VOR", "B1|V|F|1|FPGA");
    Start();
    std::filesystem::remove(Folder / "System/B.VOR");
    Folder.Write("System/A.VOR.txt", "A2|V|F|1|FPGA");
    ChangeBytes("A.VOR");
    Times.Times["A.VOR"] = 5;
    Loader.Loaded.clear();
    Start();
    EXPECT_THAT(Loader.Loaded, ElementsAre("A.VOR"));
    EXPECT_THAT(Devices(), ElementsAre("A2"));
    EXPECT_THAT(Rows("SELECT Path FROM tblModuleFileTime"), ElementsAre("A.VOR"));
}

TEST_F(Cache, BadModulesLeaveTheRestIntact) {
    AddModule("GOOD.VOR", "Good|V|F|1|FPGA");
    AddModule("MIXED.VOR", "!null\nFirst|V|F|1|FPGA\n!throw\n!fail\n!nameless\nFirst|W|F|2|FPGA\n"
                           "Last|V|F|3|FPGA");
    AddModule("NONE.VOR", "");
    AddFile("EMPTY.VOR", VOREL_EMPTY_MODULE);
    AddFile("UNRESOLVED.VOR", VOREL_UNRESOLVED_MODULE);
    Folder.Write("System/TEXT.VOR", "no library");
    std::filesystem::create_directories(Folder / "System/FOLDER.VOR");
    std::filesystem::create_symlink("nowhere", Folder / "System/DANGLING.VOR");
    Start();
    EXPECT_THAT(Rows("SELECT Device, Vendor FROM tblVorelCache ORDER BY Device"),
                ElementsAre("First|W", "Good|V", "Last|V"));
    EXPECT_EQ(Start().ModulesRead, 1) << "only what cannot be read is tried again";
}

TEST_F(Cache, ACrashInTheMiddleLeavesTheOldRows) {
    AddModule("A.VOR", "A1|V|F|1|FPGA");
    AddModule("B.VOR", "B1|V|F|1|FPGA");
    Start();
    for (const char* name : {"A.VOR", "B.VOR"}) {
        Folder.Write(std::string("System/") + name + ".txt", "X" + std::string(name) + "|V|F|1|");
        ChangeBytes(name);
        Times.Times[name] = 7;
    }
    struct TDyingProgress : TRecordingProgress {
        void Step() override {
            if (++Steps == 2) {
                _exit(3);
            }
        }
        int Steps = 0;
    };
    int status = 0;
    const pid_t child = InChild([&] {
        TDyingProgress dying;
        TKnowledgeSettings settings = Settings();
        settings.Progress = &dying;
        TModulePathLookupCache cache(settings);
    });
    ASSERT_EQ(waitpid(child, &status, 0), child);
    ASSERT_EQ(WEXITSTATUS(status), 3);
    EXPECT_THAT(Devices(), ElementsAre("A1", "B1"));
    EXPECT_EQ(Start().ModulesRead, 2);
    EXPECT_THAT(Devices(), ElementsAre("XA.VOR", "XB.VOR"));
}

TEST_F(Cache, AFullDiskLeavesTheOldRows) {
    AddModule("A.VOR", "A1|V|F|1|FPGA");
    Start();
    std::string lines;
    for (int i = 0; i < 2000; ++i) {
        lines += "Device" + std::to_string(i) + "|V|F|1|FPGA\n";
    }
    Folder.Write("System/A.VOR.txt", lines);
    ChangeBytes("A.VOR");
    Times.Times["A.VOR"] = 7;
    // No file may grow beyond 64 KB for the time of one start.
    rlimit former{};
    getrlimit(RLIMIT_FSIZE, &former);
    rlimit tight = former;
    tight.rlim_cur = 65536;
    const auto formerHandler = std::signal(SIGXFSZ, SIG_IGN);
    setrlimit(RLIMIT_FSIZE, &tight);
    EXPECT_THROW(Start(), ESQLiteException);
    setrlimit(RLIMIT_FSIZE, &former);
    std::signal(SIGXFSZ, formerHandler);
    EXPECT_THAT(Devices(), ElementsAre("A1"));
    EXPECT_EQ(Start().ModulesRead, 1);
    EXPECT_THAT(Devices(), SizeIs(2000));
}

TEST_F(Cache, ProcessesThatStartTogetherShareTheCache) {
    for (int i = 0; i < 20; ++i) {
        const std::string name = "M" + std::to_string(i);
        AddModule(name + ".VOR", name + "a|V|F|1|FPGA\n" + name + "b|V|F|1|FPGA");
    }
    std::vector<pid_t> children;
    for (int i = 0; i < 3; ++i) {
        children.push_back(InChild([&] {
            try {
                TModulePathLookupCache cache(Settings());
                _exit(cache.DevicesOfFamily("F").size() == 40 ? 0 : 1);
            } catch (const std::exception&) {
                _exit(2);
            }
        }));
    }
    for (const pid_t child : children) {
        int status = 0;
        ASSERT_EQ(waitpid(child, &status, 0), child);
        EXPECT_EQ(WEXITSTATUS(status), 0);
    }
    EXPECT_THAT(Devices(), SizeIs(40));
    EXPECT_THAT(Rows("PRAGMA integrity_check"), ElementsAre("ok"));
    EXPECT_EQ(Start().ModulesRead, 0);
}

TEST_F(Cache, ADamagedFileIsReportedKeptAndMadeAnew) {
    AddModule("A.VOR", "A1|V|F|1|FPGA");
    Start();
    const std::string whole = Folder.Read("User/VorelCache.db");
    std::string torn = whole;
    torn.replace(4096, 4096, std::string(4096, '\x5A'));
    int number = 0;
    for (const std::string& contents :
         {std::string(5000, 'x'), whole.substr(0, whole.size() / 2), torn}) {
        Folder.Write("User/VorelCache.db", contents);
        Progress.Reports.clear();
        EXPECT_EQ(Start().ModulesRead, 1) << number;
        EXPECT_THAT(Progress.Reports, ElementsAre(HasSubstr("VorelCache.db"))) << number;
        EXPECT_EQ(Folder.Read("User/VorelCache.db.damaged"), contents) << number;
        EXPECT_THAT(Devices(), ElementsAre("A1")) << number;
        ++number;
    }
    std::filesystem::remove(Folder / "User/VorelCache.db");
    Rows("CREATE TABLE tblVorelCache (Path TEXT)");
    EXPECT_EQ(Start().ModulesRead, 1) << "a table of another shape";
}

TEST_F(Cache, TheInstalledDatabaseIsTakenWhenItsVersionIsGreaterAsText) {
    AddModule("A.VOR", "A1|V|F|1|FPGA");
    const auto makeInstalled = [&](const WideText& version) {
        std::filesystem::remove_all(Folder / "User");
        Host.Version = version;
        Start();
        Rows("UPDATE tblVorelCache SET Device = 'installed'");
        std::filesystem::copy_file(Folder / "User/VorelCache.db", Folder / "System/VorelCache.db",
                                   std::filesystem::copy_options::overwrite_existing);
        std::filesystem::remove_all(Folder / "User");
    };
    makeInstalled(u"Version 9.0");
    EXPECT_EQ(Start().ModulesRead, 0) << "the user had none";
    EXPECT_THAT(Devices(), ElementsAre("installed"));
    for (const auto& [user, expected] :
         {std::pair{"10.0", "installed"}, {"9.0", "own"}, {"9.1", "own"}}) {
        Rows("UPDATE tblVorelCache SET Device = 'own'");
        Rows(std::string("UPDATE tblSystemInfo SET Version = '") + user + "'");
        Start();
        EXPECT_THAT(Devices(), ElementsAre(expected)) << user;
    }
    Folder.Write("System/VorelCache.db", "rubbish");
    std::filesystem::remove_all(Folder / "User");
    EXPECT_EQ(Start().ModulesRead, 1) << "an installed file that cannot be used";
    EXPECT_THAT(Progress.Reports, IsEmpty());
}

TEST_F(Cache, WithoutAHostTheDatabaseGoesToTheCurrentFolder) {
    AddModule("A.VOR", "A1|V|F|1|FPGA");
    Folder.Write("System/qmx.ins", "Product\nVersion 7.2.85.1234\n");
    const std::filesystem::path former = std::filesystem::current_path();
    std::filesystem::current_path(Folder.Path());
    TKnowledgeSettings settings = Settings();
    settings.Host = nullptr;
    settings.ModuleDirectory = Folder / "System";
    const std::string file = TModulePathLookupCache(settings).GetFileName();
    std::filesystem::current_path(former);
    EXPECT_EQ(file, "VorelCache.db");
    EXPECT_THAT(Rows("SELECT Version FROM tblSystemInfo", "VorelCache.db"),
                ElementsAre("7.2.85.1234"));
}

TEST(HostVersion, ANumberInFrontOfTheWordGivesNone) {
    EXPECT_EQ(VersionInText("x Version 7.2.85.1 y"), "7.2.85.1");
    EXPECT_EQ(VersionInText("1.2.3.4 Version 7.2.85.1"), "");
    EXPECT_EQ(VersionInText("Version7.2.85.1"), "");
    EXPECT_EQ(VersionInText("Version 1234.2.85.1"), "");
    EXPECT_EQ(VersionInText("version 7.2.85.1"), "");
}

TEST(Md5, GivesTheKnownSums) {
    TTempFolder folder;
    EXPECT_EQ(Md5OfFile(folder.Write("a", "abc")), "900150983CD24FB0D6963F7D28E17F72");
    EXPECT_EQ(Md5OfFile(folder.Write("b", "")), "D41D8CD98F00B204E9800998ECF8427E");
    EXPECT_EQ(Md5OfFile(folder.Write("c", std::string(8193, 'a'))),
              "B7652D9BCA37038C342CC0C492DD70F9");
    EXPECT_THROW(Md5OfFile(folder / "none"), EVorelError);
}

TEST(FileTimes, MomentsArePackedAsDateAndTime) {
    EXPECT_EQ(PackFatTime(315532800), 0x00210000);  // 1980-01-01 00:00:00
    EXPECT_EQ(PackFatTime(1000000000), 0x2B290DD4); // 2001-09-09 01:46:40
    EXPECT_EQ(PackFatTime(1000003600) - PackFatTime(1000000000), 0x800);
    EXPECT_EQ(PackFatTime(-5), 0x00210000);
    TTempFolder folder;
    EXPECT_GT(TSystemFileTimes().LastWrite(folder.Write("a", "")), 0x5A000000);
    EXPECT_EQ(TSystemFileTimes().LastWrite(folder / "none"), -1);
}

} // namespace
} // namespace vorel
