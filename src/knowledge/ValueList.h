// Values under keys that are sorted on demand: look-ups are binary searches without case, so a
// value that was added since the last sorting may not be found. Of several values under one key the
// last one counts.
#pragma once

#include "support/Text.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vorel {

template<class T>
class TValueList {
public:
    void Add(std::string key, T value) { Items.emplace_back(std::move(key), std::move(value)); }

    void Sort() {
        std::stable_sort(Items.begin(), Items.end(), [](const TItem& a, const TItem& b) {
            return CompareText(a.first, b.first) < 0;
        });
    }

    const T* Find(std::string_view key) const {
        std::size_t low = 0;
        std::size_t high = Items.size();
        while (low < high) {
            const std::size_t middle = low + (high - low) / 2;
            if (CompareText(Items[middle].first, key) <= 0) {
                low = middle + 1;
            } else {
                high = middle;
            }
        }
        const bool found = low > 0 && SameText(Items[low - 1].first, key);
        return found ? &Items[low - 1].second : nullptr;
    }

    std::size_t Count() const noexcept { return Items.size(); }
    // Raises std::out_of_range for an index outside the list.
    const std::string& KeyAt(std::size_t index) const { return Items.at(index).first; }

private:
    using TItem = std::pair<std::string, T>;
    std::vector<TItem> Items;
};

} // namespace vorel
