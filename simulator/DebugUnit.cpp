#include "simulator/DebugUnit.h"

#include <algorithm>

namespace vorel::sim {

namespace {

enum Register : unsigned {
    Id = 0,
    Control = 1,
    StatusRegister = 2,
    ProgramCounter = 3,
    RegisterIndex = 4,
    RegisterData = 5,
    MemoryAddress = 6,
    MemoryData = 7,
    Cycles = 8,
    ConsoleCount = 9,
    ConsoleData = 10,
    TrapAddress = 11,
    ScratchRegister = 12,
    FirstBreakpoint = 16
};

enum Command : unsigned { CommandRun = 1, CommandPause = 2, CommandStep = 3, CommandReset = 4 };

constexpr std::uint32_t AccessFailedBit = 1U << 16;

} // namespace

bool TDebugUnit::IsStream(unsigned number) const {
    return number == RegisterData || number == MemoryData;
}

std::uint32_t TDebugUnit::ReadWord(unsigned number, std::uint32_t word) {
    switch (number) {
    case RegisterData:
        return Processor.Register(RegisterNumber + word);
    case MemoryData:
        return ReadMemory(Address + 4 * word);
    case Cycles:
        return word < 2 ? static_cast<std::uint32_t>(Memory.Cycles >> (32 * word)) : 0;
    case ConsoleData:
        return word < Memory.Console().size() ? Memory.Console()[word] : 0;
    default:
        break;
    }
    if (word > 0) {
        return 0;
    }
    switch (number) {
    case Id:
        return UnitId;
    case StatusRegister:
        return Status();
    case ProgramCounter:
        return Processor.ProgramCounter();
    case RegisterIndex:
        return RegisterNumber;
    case MemoryAddress:
        return Address;
    case ConsoleCount:
        return static_cast<std::uint32_t>(Memory.Console().size());
    case TrapAddress:
        return Processor.TrapAddress();
    case ScratchRegister:
        return Scratch;
    default:
        return number - FirstBreakpoint < BreakpointCount ? Breakpoints[number - FirstBreakpoint]
                                                          : 0;
    }
}

void TDebugUnit::WriteWord(unsigned number, std::uint32_t word, std::uint32_t value) {
    const bool halted = State != RunState::Running;
    switch (number) {
    case Control:
        Command(value);
        break;
    case StatusRegister:
        AccessFailed = AccessFailed && (value & AccessFailedBit) == 0;
        break;
    case ProgramCounter:
        if (halted) {
            Processor.SetProgramCounter(value);
        }
        break;
    case RegisterIndex:
        RegisterNumber = std::min(value, std::uint32_t{TMipsCore::RegisterCount});
        break;
    case RegisterData:
        if (halted && word < TMipsCore::RegisterCount) {
            Processor.SetRegister(RegisterNumber + word, value);
        }
        break;
    case MemoryAddress:
        Address = value & ~3U;
        break;
    case MemoryData:
        if (Memory.Store(Address + 4 * word, 4, value) != TProcessorBus::Outcome::Done) {
            AccessFailed = true;
        }
        break;
    case ConsoleCount:
        Memory.DropConsole(value);
        break;
    case ScratchRegister:
        Scratch = value;
        break;
    default:
        if (number - FirstBreakpoint < BreakpointCount) {
            Breakpoints[number - FirstBreakpoint] = value & ~2U;
        }
        break;
    }
}

// A scan that shifts further than was asked for must not count as a failed access, so reading past
// the end gives 0 and no failure.
std::uint32_t TDebugUnit::ReadMemory(std::uint32_t address) {
    return Memory.Load(address, 4).value_or(0);
}

std::uint32_t TDebugUnit::Status() const {
    const std::uint32_t state = State == RunState::Running ? 1 : State == RunState::Paused ? 2 : 4;
    return state | static_cast<std::uint32_t>(Reason) << 4 |
           static_cast<std::uint32_t>(Cause) << 8 | (AccessFailed ? AccessFailedBit : 0) |
           static_cast<std::uint32_t>(BreakpointCount) << 28;
}

void TDebugUnit::Command(std::uint32_t value) {
    const std::uint32_t argument = value >> 8;
    switch (value & 15) {
    case CommandRun:
        if (State != RunState::Running) {
            State = RunState::Running;
            Reason = StopReason::None;
            Cause = Trap::None;
            PassBreakpoint = true;
        }
        break;
    case CommandPause:
        if (State != RunState::Paused) {
            Stop(StopReason::Command, Trap::None);
        }
        break;
    case CommandStep:
        if (State != RunState::Running) {
            PassBreakpoint = true;
            Run(std::clamp(argument, std::uint32_t{1}, MaxSteps), true);
            if (State != RunState::Paused) {
                Stop(StopReason::Step, Trap::None);
            }
        }
        break;
    case CommandReset:
        Processor.Reset();
        State = RunState::Reset;
        Reason = StopReason::None;
        Cause = Trap::None;
        break;
    default:
        break;
    }
}

void TDebugUnit::Stop(StopReason reason, Trap trap) {
    State = RunState::Paused;
    Reason = reason;
    Cause = trap;
}

bool TDebugUnit::IsBreakpoint(std::uint32_t address) const noexcept {
    return std::find(Breakpoints.begin(), Breakpoints.end(), address | 1) != Breakpoints.end();
}

void TDebugUnit::Run(std::uint32_t cycles, bool stepping) {
    if (stepping) {
        State = RunState::Running;
    }
    for (; cycles > 0; --cycles) {
        if (!PassBreakpoint && IsBreakpoint(Processor.ProgramCounter())) {
            Stop(StopReason::Breakpoint, Trap::None);
            return;
        }
        PassBreakpoint = false;
        const Trap trap = Processor.Step();
        if (trap != Trap::None) {
            Stop(StopReason::Trap, trap);
            return;
        }
    }
}

} // namespace vorel::sim
