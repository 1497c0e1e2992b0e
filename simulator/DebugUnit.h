// A soft processor on the soft chain: core, bus and the debug unit behind its register port.
//
// The processor's clock runs only with TCK: each TCK in Run-Test/Idle gives it CyclesPerTck cycles
// while it runs. So each access over the port, and each clock that a host sends in between, lets it
// go on by a known amount, and what a program does depends on no time. During a data scan it
// stands.
//
// The processor is held in reset at first and after a reset command; a run, pause or step command
// releases it. Registers may be written while it does not run. The memory is reached at any time
// and survives a reset, as breakpoints do.
//
// Registers of the port (drivers/ZRC3000.md tells their use); all others read 0:
//    0 ID            read: 5A523033
//    1 CONTROL       write: bits 3-0 command (1 run, 2 pause, 3 step, 4 reset), bits 31-8 argument
//    2 STATUS        bit 0 running, 1 paused, 2 reset; 7-4 stop reason; 15-8 trap cause; 16 memory
//                    access failed; 31-28 hardware breakpoints there are. A 1 written to bit 16
//                    clears it.
//    3 PC
//    4 REGISTER      number for 5: 0-31, 32 HI, 33 LO
//    5 REGISTERDATA  stream; word n is register REGISTER + n
//    6 ADDRESS       byte address for 7; the two lowest bits are dropped
//    7 MEMORYDATA    stream; word n lies at ADDRESS + 4 n
//    8 CYCLES        read: two words, the low one first
//    9 CONSOLE       read: characters waiting; write: drops so many, the oldest first
//   10 CONSOLEDATA   read: word n is the n-th waiting character
//   11 TRAPADDRESS   read: what the last address or bus trap was about
//   12 SCRATCH       keeps what is written
//   16-19 BREAKPOINT bit 0 enables it, bits 31-2 are the address
#pragma once

#include "simulator/MipsCore.h"
#include "simulator/SoftDevice.h"

#include <array>

namespace vorel::sim {

enum class StopReason : std::uint8_t { None = 0, Command = 1, Step = 2, Breakpoint = 3, Trap = 4 };

class TDebugUnit final : public TSoftDevice {
public:
    static constexpr std::uint32_t UnitId = 0x5A523033; // "ZR03"
    static constexpr unsigned CyclesPerTck = 1000;
    static constexpr std::uint32_t MaxSteps = 1'000'000; // of one step command
    static constexpr std::size_t BreakpointCount = 4;

    explicit TDebugUnit(TapSettings settings) : TSoftDevice(std::move(settings)) {}

    // What a test looks at behind the wires.
    TMipsCore& Core() noexcept { return Processor; }
    TProcessorBus& Bus() noexcept { return Memory; }

protected:
    std::uint32_t ReadWord(unsigned number, std::uint32_t word) override;
    void WriteWord(unsigned number, std::uint32_t word, std::uint32_t value) override;
    bool IsStream(unsigned number) const override;
    void OnRunTestIdle() override {
        if (State == RunState::Running) {
            Run(CyclesPerTck, false);
        }
    }

private:
    enum class RunState : std::uint8_t { Running, Paused, Reset };

    void Run(std::uint32_t cycles, bool stepping);
    void Stop(StopReason reason, Trap trap);
    void Command(std::uint32_t value);
    bool IsBreakpoint(std::uint32_t address) const noexcept;
    std::uint32_t Status() const;
    std::uint32_t ReadMemory(std::uint32_t address);

    TProcessorBus Memory;
    TMipsCore Processor{Memory};
    RunState State = RunState::Reset;
    StopReason Reason = StopReason::None;
    Trap Cause = Trap::None;
    bool PassBreakpoint = false; // the next instruction is executed whatever stands at it
    bool AccessFailed = false;
    std::uint32_t RegisterNumber = 0;
    std::uint32_t Address = 0;
    std::uint32_t Scratch = 0;
    std::array<std::uint32_t, BreakpointCount> Breakpoints{};
};

} // namespace vorel::sim
