#include "drivers/ProcessorBreakpoints.h"

#include "support/Errors.h"

#include <algorithm>
#include <utility>

namespace vorel {

TProcessorBreakpoints::TProcessorBreakpoints(const TProcessorUnit& unit) : Unit(unit) {
    for (std::size_t i = 0; i < Places.size(); ++i) {
        Places[i].Number = static_cast<std::int32_t>(i);
    }
}

IVorelBreakpoint* TProcessorBreakpoints::Add(std::int32_t space, std::int64_t address) {
    if (IVorelBreakpoint* const present = Find(space, address)) {
        return present;
    }
    const bool possible =
        space == 0 && address >= 0 && address < TProcessorUnit::RamSize && address % 4 == 0;
    const auto place = std::find_if(Places.begin(), Places.end(),
                                    [](const TProcessorBreakpoint& p) { return !p.Used; });
    if (!possible || place == Places.end()) {
        return nullptr;
    }
    Unit.SetBreakpoint(static_cast<std::size_t>(place->Number),
                       static_cast<std::uint32_t>(address));
    place->Used = true;
    place->Address = address;
    return &*place;
}

IVorelBreakpoint* TProcessorBreakpoints::Find(std::int32_t space, std::int64_t address) {
    const auto place =
        std::find_if(Places.begin(), Places.end(),
                     [&](const TProcessorBreakpoint& p) { return p.Used && p.Address == address; });
    return space == 0 && place != Places.end() ? &*place : nullptr;
}

void TProcessorBreakpoints::Remove(IVorelBreakpoint* breakpoint) {
    const auto place =
        std::find_if(Places.begin(), Places.end(), [&](const TProcessorBreakpoint& p) {
            return p.Used && static_cast<const IVorelBreakpoint*>(&p) == breakpoint;
        });
    if (place == Places.end()) {
        throw EVorelError(StatusBadArgument, "This is no breakpoint of the processor");
    }
    Unit.ClearBreakpoint(static_cast<std::size_t>(place->Number));
    place->Used = false;
}

std::int32_t TProcessorBreakpoints::Count() {
    Listed.fill(nullptr);
    std::size_t count = 0;
    for (TProcessorBreakpoint& place : Places) {
        if (place.Used) {
            Listed[count++] = &place;
        }
    }
    return static_cast<std::int32_t>(count);
}

IVorelBreakpoint* TProcessorBreakpoints::Get(std::int32_t index) const {
    const bool inside = index >= 0 && std::cmp_less(index, Listed.size());
    TProcessorBreakpoint* const place = inside ? Listed[static_cast<std::size_t>(index)] : nullptr;
    return place != nullptr && place->Used ? place : nullptr;
}

} // namespace vorel
