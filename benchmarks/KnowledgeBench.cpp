// The driver cache and the driver manager with 100 modules of 100 devices, made for the run.
#include "tests/knowledge/KnowledgeFixture.h"

#include "knowledge/Manage_VorelDrivers.h"

#include <benchmark/benchmark.h>

namespace vorel {
namespace {

constexpr int ModuleCount = 100;
constexpr int DevicesPerModule = 100;

std::string ModuleName(int number) {
    return "BENCH" + std::to_string(number) + ".VOR";
}

// Ids differ by module, so that a look-up by id leads to one of them.
std::uint32_t IdOf(int module, int device) {
    return (static_cast<std::uint32_t>(module * DevicesPerModule + device) << 12U) | 0x093U;
}

struct TBenchInstallation : TInstallation {
    TBenchInstallation() {
        for (int module = 0; module < ModuleCount; ++module) {
            std::string lines;
            for (int device = 0; device < DevicesPerModule; ++device) {
                lines += "PART" + std::to_string(module) + "-" + std::to_string(device) + "|Maker" +
                         std::to_string(module % 10) + "|Family" + std::to_string(module) + "|" +
                         ToHex(IdOf(module, device), 8) + "|FPGA\n";
            }
            AddModule(ModuleName(module), lines);
        }
        const TModulePathLookupCache cache(FastSettings());
    }

    TKnowledgeSettings FastSettings() {
        TKnowledgeSettings settings = Settings();
        settings.FileTimes = &SystemTimes;
        settings.Progress = nullptr;
        return settings;
    }

    TSystemFileTimes SystemTimes;
};

TBenchInstallation& Installation() {
    static TBenchInstallation installation;
    return installation;
}

void StartUnchanged(benchmark::State& state) {
    TBenchInstallation& installation = Installation();
    TCacheWork work;
    for (auto _ : state) {
        work = TModulePathLookupCache(installation.FastSettings()).GetWork();
    }
    state.counters["read"] = work.ModulesRead;
    state.counters["checksums"] = work.ChecksumsComputed;
}
BENCHMARK(StartUnchanged)->Unit(benchmark::kMillisecond);

void StartWithOneModuleChanged(benchmark::State& state) {
    TBenchInstallation& installation = Installation();
    const std::string file = installation.Folder / ("System/" + ModuleName(7));
    static auto time = std::filesystem::last_write_time(file);
    TCacheWork work;
    for (auto _ : state) {
        state.PauseTiming();
        installation.ChangeBytes(ModuleName(7));
        time += std::chrono::seconds(2);
        std::filesystem::last_write_time(file, time);
        state.ResumeTiming();
        work = TModulePathLookupCache(installation.FastSettings()).GetWork();
    }
    state.counters["read"] = work.ModulesRead;
    state.counters["checksums"] = work.ChecksumsComputed;
}
BENCHMARK(StartWithOneModuleChanged)->Unit(benchmark::kMillisecond);

void FullRebuild(benchmark::State& state) {
    TBenchInstallation& installation = Installation();
    for (auto _ : state) {
        state.PauseTiming();
        std::filesystem::remove_all(installation.Folder / "User");
        state.ResumeTiming();
        TModulePathLookupCache cache(installation.FastSettings());
    }
    state.counters["rows"] = ModuleCount * DevicesPerModule;
}
BENCHMARK(FullRebuild)->Unit(benchmark::kMillisecond);

TVorelDriverManager& Manager() {
    static TVorelDriverManager manager(Installation().FastSettings());
    return manager;
}

void LookUpByName(benchmark::State& state) {
    TVorelDriverManager& manager = Manager();
    int module = 0;
    for (auto _ : state) {
        module = (module + 7) % ModuleCount;
        benchmark::DoNotOptimize(
            manager.GetDriverForDevice("PART" + std::to_string(module) + "-50"));
    }
}
BENCHMARK(LookUpByName)->Unit(benchmark::kMicrosecond);

void LookUpById(benchmark::State& state) {
    TVorelDriverManager& manager = Manager();
    int module = 0;
    for (auto _ : state) {
        module = (module + 7) % ModuleCount;
        benchmark::DoNotOptimize(manager.DevicesForJtagId(IdOf(module, 50)));
    }
}
BENCHMARK(LookUpById)->Unit(benchmark::kMicrosecond);

void DeviceRow(benchmark::State& state) {
    TVorelDriverManager& manager = Manager();
    for (auto _ : state) {
        benchmark::DoNotOptimize(manager.GetDeviceInfo("PART42-42"));
    }
}
BENCHMARK(DeviceRow)->Unit(benchmark::kMicrosecond);

} // namespace
} // namespace vorel
