// The hardware breakpoints of the ZRC3000.
#pragma once

#include "drivers/ProcessorUnit.h"
#include "support/Objects.h"
#include "vorel/Driver.h"

#include <array>

namespace vorel {

class TProcessorBreakpoint final : public TNonRefCountedInterfacedObject<IVorelBreakpoint> {
public:
    bool Used = false;
    std::int64_t Address = 0;
    std::int32_t Number = 0; // of the unit's comparator

    // The number of the comparator that holds it.
    Status GetNumber10(std::int32_t& value) noexcept override {
        value = Number;
        return StatusOk;
    }
};

// All breakpoints are list A; list B is empty. They are of memory space 0, at byte addresses that
// are multiples of 4. A breakpoint stays where it is while others leave, and the indices of GetA
// are those of the last CountA: an index whose breakpoint has left gives null.
class TProcessorBreakpoints {
public:
    explicit TProcessorBreakpoints(const TProcessorUnit& unit);

    // Null when there is no comparator left, or no instruction can be at that place. A breakpoint
    // that is there already is given again.
    IVorelBreakpoint* Add(std::int32_t space, std::int64_t address);
    IVorelBreakpoint* Find(std::int32_t space, std::int64_t address);
    // StatusBadArgument (raised) for what is none of these.
    void Remove(IVorelBreakpoint* breakpoint);
    std::int32_t Count();
    IVorelBreakpoint* Get(std::int32_t index) const;

private:
    const TProcessorUnit& Unit;
    std::array<TProcessorBreakpoint, TProcessorUnit::BreakpointCount> Places;
    std::array<TProcessorBreakpoint*, TProcessorUnit::BreakpointCount> Listed{};
};

} // namespace vorel
