// What a clock costs on the way from a channel to a pod, without the pod: the USB services below
// take every batch and answer with zeros at once. The last benchmark counts transfers of a scan.
#include "core/JTagObjects.h"
#include "simulator/SimUsbServices.h"
#include "support/NeutralHost.h"
#include "transport/JTagParallelPortMap.h"
#include "transport/Manage_UsbJtag.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <cstring>

namespace vorel {
namespace {

// One pod that does nothing.
class TNullUsb final : public IUsbServices {
public:
    UsbList* CreateInterfaceList(const Guid&) noexcept override { return Handle<UsbList>(); }
    void DestroyInterfaceList(UsbList*) noexcept override {}
    std::uint32_t EnumInterface(UsbList*, const Guid&, std::uint32_t index) noexcept override {
        return index == 0 ? UsbError::None : UsbError::NoMoreItems;
    }
    std::uint32_t GetInterfaceDetail(UsbList*, const Guid&, std::uint32_t, void* record,
                                     std::uint32_t capacity,
                                     std::uint32_t& needed) noexcept override {
        needed = 8;
        if (record == nullptr || capacity < needed) {
            return UsbError::InsufficientBuffer;
        }
        std::memcpy(static_cast<char*>(record) + 4, "pod", 4);
        return UsbError::None;
    }
    std::uint32_t OpenDevice(const char*, UsbDevice*& device) noexcept override {
        device = Handle<UsbDevice>();
        return UsbError::None;
    }
    void CloseDevice(UsbDevice*) noexcept override {}
    UsbRequest* CreateRequest() noexcept override { return Handle<UsbRequest>(); }
    void DestroyRequest(UsbRequest*) noexcept override {}
    std::uint32_t Control(UsbDevice*, std::uint32_t code, const void*, std::uint32_t, void* output,
                          std::uint32_t outputSize, UsbRequest*) noexcept override {
        constexpr std::uint8_t info[] = {0x30, 0x02, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0};
        constexpr std::uint8_t device[] = {18, 1, 0, 2, 0, 0, 0, 64, 0x8C, 0x1B, 0, 1};
        const auto give = [&](const auto& record) {
            Moved = std::min<std::uint32_t>(outputSize, sizeof record);
            std::memcpy(output, record, Moved);
        };
        Moved = 0;
        if (code == UsbControl::GetDriverInfo) {
            give(info);
        } else if (code == UsbControl::GetDescriptor) {
            give(device);
        }
        return UsbError::None;
    }
    std::uint32_t Read(UsbDevice*, void*, std::uint32_t byteCount, UsbRequest*) noexcept override {
        Moved = byteCount;
        return UsbError::None;
    }
    std::uint32_t Write(UsbDevice*, const void*, std::uint32_t byteCount,
                        UsbRequest*) noexcept override {
        Moved = byteCount;
        return UsbError::None;
    }
    std::uint32_t WaitForRequest(UsbRequest*, std::uint32_t) noexcept override {
        return UsbError::None;
    }
    std::uint32_t GetResult(UsbDevice*, UsbRequest*, std::uint32_t& byteCount,
                            bool) noexcept override {
        byteCount = Moved;
        return UsbError::None;
    }
    void CancelIo(UsbDevice*) noexcept override {}

private:
    template<class T>
    T* Handle() noexcept {
        return reinterpret_cast<T*>(&Anything);
    }
    char Anything = 0;
    std::uint32_t Moved = 0;
};

struct TBenchRig {
    explicit TBenchRig(IUsbServices& usb) : Pods(usb) {
        Ports.ScanJTagPorts();
        IJTagPort* port = nullptr;
        Ports.GetJTagPort(1, port);
        port->GetHardChain(Channel);
        Pods.ResetTraffic();
    }

    TNeutralHost Host;
    TEmptyKnowledge Knowledge;
    TCoreContext Context{Host, &Knowledge, nullptr, nullptr, 4};
    TUsbJtagManager Pods;
    TJTagParallelPort_InstalledBoardTypes NoBoards;
    TPortList Ports{Pods, nullptr, NoBoards, Context};
    IJTagChannel* Channel = nullptr;
};

// A locked channel in Shift-DR before the null pod.
struct TShiftRig {
    TShiftRig() {
        Bool32 locked = False32;
        Rig.Channel->Lock(locked);
        Rig.Channel->TapMove(2, 5);
        Rig.Pods.ResetTraffic();
    }
    ~TShiftRig() { Rig.Channel->Unlock(); }

    void Report(benchmark::State& state, double clocks) const {
        state.counters["per_TCK"] =
            benchmark::Counter(clocks, benchmark::Counter::kIsRate | benchmark::Counter::kInvert);
        state.counters["TCK_per_write"] =
            clocks / static_cast<double>(Rig.Pods.GetTraffic().Writes);
    }

    TNullUsb Usb;
    TBenchRig Rig{Usb};
};

void Exchange(benchmark::State& state) {
    TShiftRig shift;
    const BitText bits(static_cast<std::size_t>(state.range(0)), '1');
    BitText captured;
    for (auto _ : state) {
        shift.Rig.Channel->ExchangeText(bits, False32, captured);
        benchmark::DoNotOptimize(captured.data());
    }
    shift.Report(state, static_cast<double>(state.iterations() * state.range(0)));
}
BENCHMARK(Exchange)->Arg(1'000)->Arg(100'000)->Arg(200'000)->Arg(1'000'000);

void ShiftOut(benchmark::State& state) {
    TShiftRig shift;
    const BitText bits(static_cast<std::size_t>(state.range(0)), '1');
    for (auto _ : state) {
        shift.Rig.Channel->ShiftOutText(bits, False32);
    }
    shift.Report(state, static_cast<double>(state.iterations() * state.range(0)));
}
BENCHMARK(ShiftOut)->Arg(100'000)->Arg(200'000);

// From Shift-DR to Run-Test/Idle and back: six clocks.
void TapMoves(benchmark::State& state) {
    TShiftRig shift;
    for (auto _ : state) {
        shift.Rig.Channel->TapMove(5, 2);
        shift.Rig.Channel->TapMove(2, 5);
    }
    shift.Report(state, static_cast<double>(state.iterations()) * 6);
}
BENCHMARK(TapMoves);

void TmsPath(benchmark::State& state) {
    for (auto _ : state) {
        benchmark::DoNotOptimize(FindTmsPath(TTapState::DRCAPTURE, TTapState::IREXIT2));
    }
}
BENCHMARK(TmsPath);

// A scan of a chain of so many simulated devices, the simulator's own work included.
void ScanChain(benchmark::State& state) {
    sim::TSimUsbServices usb;
    auto target = std::make_unique<sim::TTarget>();
    for (std::int64_t i = 0; i < state.range(0); ++i) {
        target->HardChain().Add(std::make_unique<sim::TTapDevice>(
            sim::TapSettings{"tap", 0x01111093, 4, BitText(), BitText()}));
    }
    usb.Add(std::make_unique<sim::TSimPod>(sim::UsbIdentity(), std::move(target)));
    TBenchRig rig(usb);
    IJTagPort* port = nullptr;
    rig.Ports.GetJTagPort(1, port);
    Bool32 found = False32;
    port->Detect(True32, found);
    rig.Pods.ResetTraffic();
    for (auto _ : state) {
        rig.Channel->Scan();
    }
    const auto scans = static_cast<double>(state.iterations());
    state.counters["writes"] = static_cast<double>(rig.Pods.GetTraffic().Writes) / scans;
    state.counters["reads"] = static_cast<double>(rig.Pods.GetTraffic().Reads) / scans;
}
BENCHMARK(ScanChain)->Arg(1)->Arg(3)->Arg(40);

} // namespace
} // namespace vorel
