// What a TCK cycle costs on its way into a pod's batch, on a machine whose transfers take no time.
#include "transport/Manage_UsbJtag.h"

#include <benchmark/benchmark.h>

#include <cstring>

namespace vorel {
namespace {

// One pod that takes everything and answers at once with alternating bits.
class TNullUsb final : public IUsbServices {
public:
    virtual ~TNullUsb() = default;

    UsbList* CreateInterfaceList(const Guid&) noexcept override { return nullptr; }
    void DestroyInterfaceList(UsbList*) noexcept override {}
    std::uint32_t EnumInterface(UsbList*, const Guid&, std::uint32_t) noexcept override {
        return UsbError::NoMoreItems;
    }
    std::uint32_t GetInterfaceDetail(UsbList*, const Guid&, std::uint32_t, void*, std::uint32_t,
                                     std::uint32_t&) noexcept override {
        return UsbError::NoMoreItems;
    }
    std::uint32_t OpenDevice(const char*, UsbDevice*& device) noexcept override {
        device = reinterpret_cast<UsbDevice*>(this);
        return UsbError::None;
    }
    void CloseDevice(UsbDevice*) noexcept override {}
    UsbRequest* CreateRequest() noexcept override { return reinterpret_cast<UsbRequest*>(this); }
    void DestroyRequest(UsbRequest*) noexcept override {}
    std::uint32_t Control(UsbDevice*, std::uint32_t code, const void*, std::uint32_t, void* output,
                          std::uint32_t, UsbRequest*) noexcept override {
        if (code == UsbControl::GetDriverInfo) {
            std::memcpy(output, &UsbDriverVersion, sizeof UsbDriverVersion);
        }
        return UsbError::None;
    }
    std::uint32_t Read(UsbDevice*, void* buffer, std::uint32_t byteCount,
                       UsbRequest*) noexcept override {
        std::memset(buffer, 0xAA, byteCount);
        Count = byteCount;
        return UsbError::None;
    }
    std::uint32_t Write(UsbDevice*, const void*, std::uint32_t byteCount,
                        UsbRequest*) noexcept override {
        Count = byteCount;
        return UsbError::None;
    }
    std::uint32_t WaitForRequest(UsbRequest*, std::uint32_t) noexcept override {
        return UsbError::None;
    }
    std::uint32_t GetResult(UsbDevice*, UsbRequest*, std::uint32_t& byteCount,
                            bool) noexcept override {
        byteCount = Count;
        return UsbError::None;
    }
    void CancelIo(UsbDevice*) noexcept override {}

private:
    std::uint32_t Count = 0;
};

// An exchange of state.range(0) bits; range(1) says whether TDO is captured. The time is that of
// the whole exchange, "bit" the time of one.
void ClockBits(benchmark::State& state) {
    TNullUsb usb;
    TUsbJtagManager manager(usb);
    TUsbPort& port = manager.GetPort(0);
    const auto count = static_cast<std::int32_t>(state.range(0));
    const bool capture = state.range(1) != 0;
    std::string text;
    for (auto round : state) {
        static_cast<void>(round);
        if (capture) {
            port.BeginRead();
        }
        for (std::int32_t i = 0; i < count; ++i) {
            port.Clock(true, false, (i & 4) != 0, true);
        }
        if (capture) {
            port.EndRead(text);
            benchmark::DoNotOptimize(text.data());
        } else {
            port.Flush();
        }
    }
    state.counters["bit"] = benchmark::Counter(static_cast<double>(count),
                                               benchmark::Counter::kIsIterationInvariantRate |
                                                   benchmark::Counter::kInvert);
    state.counters["writes"] = benchmark::Counter(static_cast<double>(manager.GetTraffic().Writes),
                                                  benchmark::Counter::kAvgIterations);
}
BENCHMARK(ClockBits)->ArgNames({"bits", "capture"})->ArgsProduct({{1000, 100000, 1000000}, {0, 1}});

} // namespace
} // namespace vorel
