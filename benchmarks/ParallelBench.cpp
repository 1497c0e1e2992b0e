// What a clock costs on a parallel-port cable: accesses to the port, counted, and CPU time without
// the port's own.

#include "simulator/Chain.h"
#include "simulator/ParallelCable.h"
#include "transport/JTagParallelPortMap.h"

#include <benchmark/benchmark.h>

namespace vorel {
namespace {

void LongShift(benchmark::State& state) {
    using enum sim::PortRegister;
    sim::TChain chain;
    sim::TapSettings settings;
    settings.Id = 0x12345679;
    chain.Add(std::make_unique<sim::TTapDevice>(settings));
    sim::TParallelCable cable;
    cable.Connect({{Data, 1}, {Data, 2}, {Data, 0}, {Status, 4}}, chain);
    TJTagParallelPort_ChannelMapping mapping;
    mapping.Mask_TCK = 2;
    mapping.Mask_TMS = 4;
    mapping.Mask_TDI = 1;
    mapping.Mask_TDO = 0x1000;
    mapping.SetPort(&cable);
    mapping.Activate();
    const bool capture = state.range(0) != 0;
    const auto before = cable.Accesses().Total();
    std::uint64_t clocks = 0;
    for (auto step : state) {
        for (int i = 0; i < 1000; ++i, ++clocks) {
            const auto tdi = static_cast<std::uint8_t>(i % 2);
            std::uint8_t tdo = 0;
            mapping.SetSignals(0, 0, tdi);
            if (capture) {
                mapping.ReadTdo(tdo);
            }
            mapping.SetSignals(1, 0, tdi);
            mapping.SetSignals(0, 0, tdi);
            benchmark::DoNotOptimize(tdo);
        }
    }
    state.counters["accesses/TCK"] =
        static_cast<double>(cable.Accesses().Total() - before) / static_cast<double>(clocks);
    state.SetItemsProcessed(static_cast<std::int64_t>(clocks));
}
BENCHMARK(LongShift)->ArgName("capture")->Arg(0)->Arg(1);

} // namespace
} // namespace vorel
