// The breakpoints of the ZRC3000: comparators of its debug unit, and when they are used up, BREAKs
// planted in the memory.
#pragma once

#include "drivers/ProcessorMemory.h"
#include "drivers/ProcessorUnit.h"
#include "support/Objects.h"
#include "vorel/Driver.h"

#include <memory>
#include <vector>

namespace vorel {

class TProcessorBreakpoint final : public TNonRefCountedInterfacedObject<IVorelBreakpoint> {
public:
    static constexpr std::int32_t Planted = -1;

    TProcessorBreakpoint(std::uint32_t address, std::int32_t number)
        : Address(address), Number(number) {}

    const std::uint32_t Address;
    const std::int32_t Number; // of the unit's comparator, or Planted

    // The number of the comparator that holds it; -1 for one that is planted in the memory.
    Status GetNumber10(std::int32_t& value) noexcept override {
        value = Number;
        return StatusOk;
    }
};

// All breakpoints are list A; list B is empty. They are of memory space 0, at byte addresses that
// are multiples of 4. A breakpoint keeps its kind while others leave, and the indices of GetA are
// those of the last CountA: an index whose breakpoint has left gives null. Those that the unit
// holds when the device comes on its chain, armed by an earlier user, are in the list as well.
class TProcessorBreakpoints {
public:
    // Both outlive this.
    TProcessorBreakpoints(const TProcessorUnit& unit, TProcessorMemory& memory)
        : Unit(unit), Memory(memory) {}

    // Null when no instruction can be at that place. A breakpoint that is there already is given
    // again.
    IVorelBreakpoint* Add(std::int32_t space, std::int64_t address);
    IVorelBreakpoint* Find(std::int32_t space, std::int64_t address);
    // StatusBadArgument (raised) for what is none of these.
    void Remove(IVorelBreakpoint* breakpoint);
    std::int32_t Count();
    IVorelBreakpoint* Get(std::int32_t index) const;

    // For a device that has left its chain already: takes the planted ones out of its memory, and
    // forgets those of the unit, which stay armed.
    void Release();

private:
    using TItem = std::unique_ptr<TProcessorBreakpoint>;

    void Adopt();
    std::int32_t FreeComparator() const;
    bool Place(const TProcessorBreakpoint& breakpoint);
    void Displace(const TProcessorBreakpoint& breakpoint);
    void RemovePlanted();

    const TProcessorUnit& Unit;
    TProcessorMemory& Memory;
    TRegisterPort::TPlace Home{}; // where the device was when the last one was planted
    bool Adopted = false;         // the unit was asked what it holds
    std::vector<TItem> Items;
    std::vector<TProcessorBreakpoint*> Listed;
};

} // namespace vorel
