// A list of pointers that tells one listener about every item that comes and goes. It does not own
// the items; null is an item like any other.
#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <vector>

namespace vorel {

enum class ListAction : std::int32_t {
    Added = 0,
    Extracted = 1, // taken out to live on elsewhere
    Deleted = 2,
};

template<class Item>
class TListWithNotification {
public:
    using Handler = std::function<void(const TListWithNotification&, Item*, ListAction)>;

    // Called after the list has changed; may be empty. What it raises passes to the caller.
    Handler OnNotify;

    void Add(Item* item) {
        Items.push_back(item);
        Notify(item, ListAction::Added);
    }
    // Both take out the first entry that is `item`; false when there is none.
    bool Extract(Item* item) { return TakeOut(item, ListAction::Extracted); }
    bool Delete(Item* item) { return TakeOut(item, ListAction::Deleted); }
    // Deletes all items, the last one first.
    void Clear() {
        while (!Items.empty()) {
            Item* const item = Items.back();
            Items.pop_back();
            Notify(item, ListAction::Deleted);
        }
    }

    std::size_t Count() const noexcept { return Items.size(); }
    auto begin() const noexcept { return Items.begin(); }
    auto end() const noexcept { return Items.end(); }

private:
    bool TakeOut(Item* item, ListAction action) {
        const auto found = std::find(Items.begin(), Items.end(), item);
        if (found == Items.end()) {
            return false;
        }
        Items.erase(found);
        Notify(item, action);
        return true;
    }
    void Notify(Item* item, ListAction action) {
        if (OnNotify) {
            OnNotify(*this, item, action);
        }
    }

    std::vector<Item*> Items;
};

} // namespace vorel
