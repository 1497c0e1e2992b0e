#include "drivers/ProcessorRun.h"

#include "support/Text.h"

#include <algorithm>

namespace vorel {

namespace {

constexpr std::int32_t MaxSteps = TProcessorUnit::MaxSteps;

constexpr unsigned ReasonStep = 2;
constexpr unsigned ReasonBreakpoint = 3;
constexpr unsigned ReasonTrap = 4;
constexpr unsigned CauseSyscall = 8;
constexpr unsigned CauseBreak = 9;

const char* CauseText(unsigned cause) {
    switch (cause) {
    case 4:
        return "misaligned load or fetch";
    case 5:
        return "misaligned store";
    case 6:
        return "fetch from where there is no memory";
    case 7:
        return "access to where there is no memory";
    case CauseSyscall:
        return "system call";
    case CauseBreak:
        return "break instruction";
    case 10:
        return "unknown instruction";
    case 11:
        return "coprocessor instruction";
    case 12:
        return "arithmetic overflow";
    default:
        return "unknown cause";
    }
}

constexpr bool IsBreak(std::uint32_t instruction) noexcept {
    return instruction >> 26 == 0 && (instruction & 63) == 13;
}

bool EndedByStep(const TProcessorUnit::TStatus& status) noexcept {
    return status.IsPaused() && status.Reason() == ReasonStep;
}

} // namespace

// A BREAK at which the processor stopped would stop it again at once, be it planted or the
// program's own. Without either, the program counter need not be read.
TProcessorRun::TLeft TProcessorRun::Leave() {
    Memory.PlantLifted();
    const TProcessorUnit::TStatus status = Unit.Status();
    const bool atBreak = status.IsPaused() && status.Cause() == CauseBreak;
    if (status.IsRunning() || (!atBreak && !Memory.HasPlanted())) {
        return TLeft::Nothing;
    }
    const std::uint32_t address = Unit.ProgramCounter();
    if (const auto kept = Memory.KeptWord(address)) {
        return LeavePlanted(address, *kept, atBreak);
    }
    if (!atBreak || !IsBreak(Unit.ReadWord(address))) {
        return TLeft::Nothing;
    }
    Unit.SetProgramCounter(address + 4);
    return TLeft::Instruction;
}

// The kept instruction is stepped in its own place, so that a branch before it stays pending.
TProcessorRun::TLeft TProcessorRun::LeavePlanted(std::uint32_t address, std::uint32_t keptWord,
                                                 bool atBreak) {
    if (atBreak && IsBreak(keptWord)) {
        Unit.SetProgramCounter(address + 4);
        return TLeft::Instruction;
    }
    Memory.Lift(address);
    Unit.Step(1);
    const bool stepped = EndedByStep(Unit.Status());
    Memory.PlantLifted();
    return stepped ? TLeft::Instruction : TLeft::Stopped;
}

void TProcessorRun::Continue() {
    if (Leave() != TLeft::Stopped) {
        Unit.Run();
    }
}

void TProcessorRun::Step(std::int32_t count) {
    if (count < 1) {
        return;
    }
    const TLeft left = Leave();
    if (left == TLeft::Stopped) {
        return;
    }
    count -= left == TLeft::Instruction ? 1 : 0;
    while (count > 0) {
        const std::int32_t part = std::min(count, MaxSteps);
        Unit.Step(part);
        if (!EndedByStep(Unit.Status())) {
            return;
        }
        count -= part;
    }
}

// A BREAK that is not the program's is or was planted.
std::string TProcessorRun::TrapText(unsigned cause, std::uint32_t address) const {
    if (cause == CauseBreak &&
        (Memory.KeptWord(address).has_value() || !IsBreak(Unit.ReadWord(address)))) {
        return "Breakpoint";
    }
    return std::string("Trap: ") + CauseText(cause) + (cause == CauseSyscall ? ", goes on" : "");
}

std::string TProcessorRun::StopText() const {
    const TProcessorUnit::TStatus status = Unit.Status();
    if (!status.IsPaused()) {
        return {};
    }
    const std::uint32_t address = Unit.ProgramCounter();
    const std::string place = " at " + ToHex(address, 8);
    switch (status.Reason()) {
    case ReasonStep:
        return "Step" + place;
    case ReasonBreakpoint:
        return "Breakpoint" + place;
    case ReasonTrap:
        return TrapText(status.Cause(), address) + place;
    default:
        return "Paused" + place;
    }
}

} // namespace vorel
