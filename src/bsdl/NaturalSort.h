// Sorts owned objects by a name in natural order (support/Text.h, CompareNatural), keeping the
// order of equal names.
#pragma once

#include "support/Text.h"

#include <algorithm>
#include <memory>

namespace vorel {

// The front of a name in a form whose order as two numbers is the natural order; names with equal
// fronts must be compared in full.
struct TNaturalFront {
    std::uint64_t High = 0;
    std::uint64_t Low = 0;

    friend auto operator<=>(const TNaturalFront&, const TNaturalFront&) = default;
};
TNaturalFront NaturalFrontOf(std::string_view name) noexcept;

template<class Object, class NameOf>
void SortNatural(std::vector<std::unique_ptr<Object>>& objects, NameOf nameOf) {
    struct TEntry {
        TNaturalFront Front;
        std::unique_ptr<Object> Item;
    };
    std::vector<TEntry> entries;
    entries.reserve(objects.size());
    for (std::unique_ptr<Object>& object : objects) {
        const TNaturalFront front = NaturalFrontOf(nameOf(*object));
        entries.push_back({front, std::move(object)});
    }
    std::stable_sort(entries.begin(), entries.end(), [&](const TEntry& a, const TEntry& b) {
        if (a.Front != b.Front) {
            return a.Front < b.Front;
        }
        const std::string_view x = nameOf(*a.Item);
        const std::string_view y = nameOf(*b.Item);
        // Bits of a vector port share one text, which may be long.
        return (x.data() != y.data() || x.size() != y.size()) && CompareNatural(x, y) < 0;
    });
    std::transform(entries.begin(), entries.end(), objects.begin(),
                   [](TEntry& entry) { return std::move(entry.Item); });
}

} // namespace vorel
