// The debug unit of the virtual processor: accesses to its registers and clocks of any kind. In
// between, the unit stays in order: an id, one state, a reason only while it is paused.
#include "FuzzInput.h"
#include "simulator/Chain.h"
#include "simulator/DebugUnit.h"

#include <cstdlib>
#include <memory>
#include <string_view>

namespace {

using namespace vorel;

constexpr int MaxAccesses = 200;
constexpr unsigned Control = 1;
constexpr unsigned Status = 2;

class THost {
public:
    THost() {
        sim::TapSettings settings;
        settings.Name = "Processor";
        settings.Id = 0x1B8C0101;
        Chain.Add(std::make_unique<sim::TDebugUnit>(settings));
    }

    // Ends in Run-Test/Idle with the port open.
    void OpenPort() {
        Tms("1111101100");
        Shift(11, 4);
        Tms("10");
    }
    std::uint32_t Read(unsigned number) {
        Data(number * 2 + 1, 8);
        return Data(0, 32);
    }
    void Write(unsigned number, std::uint32_t value, int words) {
        Data(number * 2, 8);
        Tms("100");
        for (int i = 0; i < words; ++i) {
            Bit(true, false);
            Shift(value, 32, i + 1 == words);
        }
        Tms("10");
    }
    void Bit(bool tdi, bool tms) { Chain.Clock(tms, tdi); }

private:
    void Tms(std::string_view levels) {
        for (const char level : levels) {
            Chain.Clock(level == '1', false);
        }
    }
    std::uint32_t Shift(std::uint32_t value, int count, bool exit = true) {
        std::uint32_t seen = 0;
        for (int i = 0; i < count; ++i) {
            const bool tdi = (value >> i & 1) != 0;
            const bool tms = exit && i + 1 == count;
            Chain.SetLines(false, tms, tdi);
            seen |= (sim::IsHigh(Chain.Tdo()) ? 1U : 0U) << i;
            Chain.Clock(tms, tdi);
        }
        return seen;
    }
    std::uint32_t Data(std::uint32_t value, int count) {
        Tms("100");
        const std::uint32_t seen = Shift(value, count);
        Tms("10");
        return seen;
    }

    sim::TChain Chain;
};

void CheckOrder(THost& host) {
    host.OpenPort();
    const std::uint32_t status = host.Read(Status);
    const std::uint32_t state = status & 7;
    const bool oneState = state == 1 || state == 2 || state == 4;
    if (host.Read(0) != sim::TDebugUnit::UnitId || !oneState ||
        (state != 2 && (status & 0xFFF0) != 0)) {
        std::abort();
    }
}

void Access(THost& host, fuzz::TInput& input) {
    const std::uint8_t kind = input.Byte();
    if (kind >= 0xE0) {
        for (std::uint8_t bits = input.Byte(), i = 0; i < 4; ++i, bits >>= 2) {
            host.Bit((bits & 1) != 0, (bits & 2) != 0);
        }
        return;
    }
    const unsigned number = kind % 20;
    if (kind >= 0x70) {
        host.Read(number);
        return;
    }
    // A million steps many times over would only take time.
    const std::uint32_t value = input.Word() & (number == Control ? 0xFFFFF : 0xFFFFFFFF);
    host.Write(number, value, 1 + input.Byte() % 3);
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    fuzz::TInput input(data, size);
    THost host;
    CheckOrder(host);
    for (int i = 0; i < MaxAccesses && !input.AtEnd(); ++i) {
        Access(host, input);
    }
    CheckOrder(host);
    return 0;
}
