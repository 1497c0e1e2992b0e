// Run control of the ZRC3000: going on from breakpoints and BREAKs, and why it stopped.
#pragma once

#include "drivers/ProcessorMemory.h"
#include "drivers/ProcessorUnit.h"

#include <cstdint>
#include <string>

namespace vorel {

// Failures of the chain raise EVorelError.
class TProcessorRun final {
public:
    // Both outlive this.
    TProcessorRun(const TProcessorUnit& unit, TProcessorMemory& memory)
        : Unit(unit), Memory(memory) {}

    void Continue();
    // Executes up to `count` instructions; breakpoints and traps end it earlier. Less than 1: none.
    void Step(std::int32_t count);

    // Why the processor does not run: "Breakpoint at 00000040", "Trap: system call at ..."; empty
    // while it runs and in reset.
    std::string StopText() const;

private:
    // What stood in the way at the program counter.
    enum class TLeft {
        Nothing,     // nothing
        Instruction, // a BREAK; one instruction is done
        Stopped      // a planted BREAK, and its instruction stopped the processor
    };
    TLeft Leave();
    TLeft LeavePlanted(std::uint32_t address, std::uint32_t keptWord, bool atBreak);
    std::string TrapText(unsigned cause, std::uint32_t address) const;

    const TProcessorUnit& Unit;
    TProcessorMemory& Memory;
};

} // namespace vorel
