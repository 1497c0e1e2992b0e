// cache: the database of what driver modules declare.
//
// It works on the cache itself rather than through the library, whose interfaces keep it behind the
// questions that it answers.
#include "hosts/kit/PlainHost.h"
#include "hosts/vorelctl/Commands.h"
#include "hosts/vorelctl/Knowledge.h"
#include "hosts/vorelctl/Listing.h"
#include "hosts/vorelctl/Progress.h"
#include "knowledge/VorelCache.h"

#include <cstdio>

namespace vorel::host {

namespace {

class TConsoleProgress final : public IRebuildProgress {
public:
    void Begin(int moduleCount) override {
        Count = moduleCount;
        Done = 0;
    }
    void Step() override { ++Done; }
    void ShowImage(const std::string&) override {}
    void ShowLabel(const std::string& text) override {
        ShowProgress("Reading driver modules " + std::to_string(Done) + "/" +
                     std::to_string(Count) + ": " + text);
    }
    void ProcessPendingEvents() override {}
    void End() override { ShowProgress(""); }
    void Report(const std::string& message) override {
        std::fprintf(stderr, "%s\n", message.c_str());
    }

private:
    int Count = 0;
    int Done = 0;
};

std::int64_t CountDevices(TModulePathLookupCache& cache) {
    std::size_t count = 0;
    for (const std::string& vendor : cache.Vendors()) {
        for (const std::string& family : cache.FamiliesOfVendor(vendor)) {
            count += cache.DevicesOfFamily(family).size();
        }
    }
    return static_cast<std::int64_t>(count);
}

TListing Describe(TModulePathLookupCache& cache) {
    const TCacheWork& work = cache.GetWork();
    return {{{"File", "file", cache.GetFileName()},
             {"Modules in", "modules_in", cache.GetSystemDirectory()},
             {"Host version", "host_version", cache.GetVersion()},
             {"Modules found", "modules_found", std::int64_t{work.ModulesFound}},
             {"Modules read now", "modules_read", std::int64_t{work.ModulesRead}},
             {"Checksums computed now", "checksums_computed", std::int64_t{work.ChecksumsComputed}},
             {"Vendors", "vendors", static_cast<std::int64_t>(cache.Vendors().size())},
             {"Devices", "devices", CountDevices(cache)}},
            "",
            {},
            {}};
}

class TCacheCommand final : public ICommand {
public:
    std::string_view Name() const override { return "cache"; }
    std::string_view Usage() const override { return "status|rebuild [--json]"; }
    std::string_view Summary() const override {
        return "show or rebuild the cache of what driver modules declare";
    }
    std::string_view Details() const override {
        return "Either brings the cache up to date first: modules that are new or have changed\n"
               "are read. rebuild reads all of them again.";
    }
    std::vector<TOption> Options() const override { return {JsonOption}; }
    ExitStatus Run(const TArguments& arguments) const override;
};

ExitStatus TCacheCommand::Run(const TArguments& arguments) const {
    const std::string& action = NeedWords(arguments, 1, "cache status|rebuild [--json]").front();
    if (action != "status" && action != "rebuild") {
        throw ECommandFailure(ExitStatus::WrongUsage,
                              "cache does status or rebuild, not \"" + action + "\".");
    }
    const TInstallation installation = TInstallation::OfThisProgram();
    TPlainHost host(installation, TUserFolders::OfThisUser());
    TSystemModuleLoader loader;
    TSystemFileTimes times;
    TConsoleProgress progress;
    TKnowledgeSettings settings;
    settings.Host = &host;
    settings.ModuleDirectory = installation.System().string();
    settings.Loader = &loader;
    settings.FileTimes = &times;
    settings.Progress = &progress;
    TModulePathLookupCache cache(settings);
    if (action == "rebuild") {
        cache.RebuildAll();
    }
    PrintListing(Describe(cache), arguments.Has("--json"));
    return ExitStatus::Ok;
}

} // namespace

const ICommand& CacheCommand() {
    static const TCacheCommand command;
    return command;
}

} // namespace vorel::host
