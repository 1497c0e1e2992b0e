// Sorts items by a name in natural order (support/Text.h, CompareNatural), keeping the
// order of equal names.
#pragma once

#include "support/Text.h"

#include <algorithm>
#include <vector>

namespace vorel {

// The front of a name in a form whose order as two numbers is the natural order; names with equal
// fronts must be compared in full.
struct TNaturalFront {
    std::uint64_t High = 0;
    std::uint64_t Low = 0;

    friend bool operator==(const TNaturalFront&, const TNaturalFront&) = default;
    friend bool operator<(const TNaturalFront& a, const TNaturalFront& b) noexcept {
        return a.High != b.High ? a.High < b.High : a.Low < b.Low;
    }
};
TNaturalFront NaturalFrontOf(std::string_view name) noexcept;

template<class Item, class NameOf>
void SortNatural(std::vector<Item>& items, NameOf nameOf) {
    struct TEntry {
        TNaturalFront Front;
        Item Value;
    };
    std::vector<TEntry> entries;
    entries.reserve(items.size());
    for (Item& item : items) {
        const TNaturalFront front = NaturalFrontOf(nameOf(item));
        entries.push_back({front, std::move(item)});
    }
    std::stable_sort(entries.begin(), entries.end(), [&](const TEntry& a, const TEntry& b) {
        return a.Front == b.Front ? CompareNatural(nameOf(a.Value), nameOf(b.Value)) < 0
                                  : a.Front < b.Front;
    });
    std::transform(entries.begin(), entries.end(), items.begin(),
                   [](TEntry& entry) { return std::move(entry.Value); });
}

} // namespace vorel
