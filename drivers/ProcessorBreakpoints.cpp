#include "drivers/ProcessorBreakpoints.h"

#include "support/Errors.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace vorel {

void TProcessorBreakpoints::Adopt() {
    if (Adopted || !Unit.Port.IsOnChain()) {
        return;
    }
    std::vector<TItem> held;
    for (std::int32_t number = 0; std::cmp_less(number, TProcessorUnit::BreakpointCount);
         ++number) {
        if (const auto address = Unit.Breakpoint(static_cast<std::size_t>(number))) {
            held.push_back(std::make_unique<TProcessorBreakpoint>(*address, number));
        }
    }
    std::move(held.begin(), held.end(), std::back_inserter(Items));
    Adopted = true;
}

// A comparator, or Planted when all are in use.
std::int32_t TProcessorBreakpoints::FreeComparator() const {
    for (std::int32_t number = 0; std::cmp_less(number, TProcessorUnit::BreakpointCount);
         ++number) {
        if (std::none_of(Items.begin(), Items.end(),
                         [&](const TItem& item) { return item->Number == number; })) {
            return number;
        }
    }
    return TProcessorBreakpoint::Planted;
}

bool TProcessorBreakpoints::Place(const TProcessorBreakpoint& breakpoint) {
    if (breakpoint.Number != TProcessorBreakpoint::Planted) {
        Unit.SetBreakpoint(static_cast<std::size_t>(breakpoint.Number), breakpoint.Address);
        return true;
    }
    Home = Unit.Port.Place();
    return Memory.Plant(breakpoint.Address);
}

void TProcessorBreakpoints::Displace(const TProcessorBreakpoint& breakpoint) {
    if (breakpoint.Number != TProcessorBreakpoint::Planted) {
        Unit.ClearBreakpoint(static_cast<std::size_t>(breakpoint.Number));
    } else {
        Memory.Remove(breakpoint.Address);
    }
}

IVorelBreakpoint* TProcessorBreakpoints::Add(std::int32_t space, std::int64_t address) {
    if (IVorelBreakpoint* const present = Find(space, address)) {
        return present;
    }
    if (space != 0 || address < 0 || address >= TProcessorUnit::RamSize || address % 4 != 0) {
        return nullptr;
    }
    auto made = std::make_unique<TProcessorBreakpoint>(static_cast<std::uint32_t>(address),
                                                       FreeComparator());
    return Place(*made) ? Items.emplace_back(std::move(made)).get() : nullptr;
}

IVorelBreakpoint* TProcessorBreakpoints::Find(std::int32_t space, std::int64_t address) {
    Adopt();
    const auto item = std::find_if(Items.begin(), Items.end(),
                                   [&](const TItem& i) { return i->Address == address; });
    return space == 0 && item != Items.end() ? item->get() : nullptr;
}

void TProcessorBreakpoints::Remove(IVorelBreakpoint* breakpoint) {
    const auto item = std::find_if(Items.begin(), Items.end(),
                                   [&](const TItem& i) { return i.get() == breakpoint; });
    if (item == Items.end()) {
        throw EVorelError(StatusBadArgument, "This is no breakpoint of the processor");
    }
    Displace(**item);
    std::replace(Listed.begin(), Listed.end(), item->get(),
                 static_cast<TProcessorBreakpoint*>(nullptr));
    Items.erase(item);
}

std::int32_t TProcessorBreakpoints::Count() {
    Adopt();
    Listed.clear();
    for (const TItem& item : Items) {
        Listed.push_back(item.get());
    }
    return static_cast<std::int32_t>(Listed.size());
}

IVorelBreakpoint* TProcessorBreakpoints::Get(std::int32_t index) const {
    const bool inside = index >= 0 && std::cmp_less(index, Listed.size());
    return inside ? Listed[static_cast<std::size_t>(index)] : nullptr;
}

void TProcessorBreakpoints::Release() {
    if (Memory.HasPlanted()) {
        const TRegisterPort::TVisit visit(Unit.Port, Home);
        RemovePlanted();
    }
    Listed.clear();
    Items.clear();
    Adopted = false;
}

// One that cannot be taken out stays listed.
void TProcessorBreakpoints::RemovePlanted() {
    std::vector<IVorelBreakpoint*> planted;
    for (const TItem& item : Items) {
        if (item->Number == TProcessorBreakpoint::Planted) {
            planted.push_back(item.get());
        }
    }
    for (IVorelBreakpoint* const breakpoint : planted) {
        Remove(breakpoint);
    }
}

} // namespace vorel
