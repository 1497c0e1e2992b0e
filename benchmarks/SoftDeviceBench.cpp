// Blocks to and from the soft processor's memory over the virtual pod: TCK against the bits
// themselves, USB transfers for a kiloword, and words a second of the whole stack.
#include "hosts/SoftRig.h"

#include <benchmark/benchmark.h>

#include <filesystem>

namespace {

using vorel::host::TSoftRig;

constexpr std::int32_t ImageBytes = 1'048'576;
constexpr double Words = ImageBytes / 4;

TSoftRig& Rig() {
    static const std::filesystem::path folder = [] {
        auto path = std::filesystem::temp_directory_path() / "vorel-soft-bench";
        std::filesystem::create_directories(path);
        return path;
    }();
    static TSoftRig rig(folder);
    return rig;
}

template<class Work>
void Measure(benchmark::State& state, double words, Work work) {
    TSoftRig& rig = Rig();
    const std::uint64_t clocks = rig.Clocks();
    const auto& counters = rig.Pod().Counters();
    const std::uint64_t transfers = counters.Writes + counters.Reads;
    for (auto _ : state) {
        work(rig);
    }
    const double moved = words * static_cast<double>(state.iterations());
    state.counters["tck_per_bit"] = static_cast<double>(rig.Clocks() - clocks) / (32 * moved);
    state.counters["usb_per_kiloword"] =
        static_cast<double>(counters.Writes + counters.Reads - transfers) * 1000 / moved;
    state.counters["words"] = benchmark::Counter(moved, benchmark::Counter::kIsRate);
}

void WriteImage(benchmark::State& state) {
    std::vector<std::uint32_t> image(ImageBytes, 0xA5);
    Measure(state, Words, [&](TSoftRig& rig) {
        vorel::Check(rig.Ram->WriteBlock(image.data(), 0, ImageBytes), "Writing");
    });
}

void ReadImage(benchmark::State& state) {
    std::vector<std::uint32_t> image(ImageBytes);
    Measure(state, Words, [&](TSoftRig& rig) {
        vorel::Check(rig.Ram->ReadBlock(image.data(), 0, ImageBytes), "Reading");
    });
}

void DumpRegisters(benchmark::State& state) {
    Measure(state, 35, [](TSoftRig& rig) {
        for (std::int32_t i = 0; i < 35; ++i) {
            benchmark::DoNotOptimize(rig.Register(i));
        }
    });
}

BENCHMARK(WriteImage)->Unit(benchmark::kMillisecond);
BENCHMARK(ReadImage)->Unit(benchmark::kMillisecond);
BENCHMARK(DumpRegisters)->Unit(benchmark::kMillisecond);

} // namespace
