// What the virtual hardware costs per TCK cycle, so that chains of a thousand devices stay usable.
#include "simulator/Chain.h"
#include "simulator/PodFirmware.h"
#include "simulator/SimPod.h"

#include <benchmark/benchmark.h>

#include <string_view>

namespace vorel::sim {
namespace {

void Fill(TChain& chain, std::int64_t count) {
    for (std::int64_t i = 0; i < count; ++i) {
        chain.Add(std::make_unique<TTapDevice>(TapSettings{"part", 0x1140D093, 6, {}, {}}));
    }
}

// Clocks in the shift state at the end of a TMS path; items are clocks of one device each.
void ShiftClocks(benchmark::State& state, std::string_view path) {
    TChain chain;
    Fill(chain, state.range(0));
    for (const char tms : path) {
        chain.Clock(tms == '1', true);
    }
    for (auto _ : state) {
        chain.Clock(false, true);
    }
    state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK_CAPTURE(ShiftClocks, InstructionRegisters, "01100")->Arg(3)->Arg(1000);
BENCHMARK_CAPTURE(ShiftClocks, IdRegisters, "0100")->Arg(3)->Arg(1000);
BENCHMARK_CAPTURE(ShiftClocks, Idle, "0")->Arg(3)->Arg(1000);

// A full batch of 255 items with four sampled clocks each, on one device.
void SampledBatch(benchmark::State& state) {
    auto target = std::make_unique<TTarget>();
    Fill(target->HardChain(), 1);
    const TSimPod pod(UsbIdentity{}, std::move(target));
    std::vector<std::uint8_t> stream{1, 0x55};
    for (int i = 0; i < 255; ++i) {
        stream.insert(stream.end(), {0, 0xE4});
    }
    std::vector<std::uint8_t> answers(512);
    for (auto _ : state) {
        pod.Firmware()->Write(stream.data(), stream.size());
        benchmark::DoNotOptimize(pod.Firmware()->Read(answers.data(), answers.size()));
    }
    state.SetItemsProcessed(state.iterations() * 255 * 4);
}
BENCHMARK(SampledBatch);

} // namespace
} // namespace vorel::sim
