// String lists that stay sorted without regard to case and hold an object per key.
#pragma once

#include "support/Text.h"

#include <map>
#include <memory>
#include <string>

namespace vorel {

struct TTextLess {
    using is_transparent = void;
    bool operator()(std::string_view a, std::string_view b) const noexcept {
        return CompareText(a, b) < 0;
    }
};

// Accepts equal keys: a new entry goes in front of the present ones with its key, so a search finds
// the last one added. `Pointer` is a std::unique_ptr for a list that owns, else a plain pointer.
template<class Pointer>
class TSortedStringList {
public:
    using TItems = std::multimap<std::string, Pointer, TTextLess>;

    void Add(std::string key, Pointer item) {
        const auto place = Items.lower_bound(key);
        Items.emplace_hint(place, std::move(key), std::move(item));
    }
    // The first object with this key, or null.
    auto Find(std::string_view key) const {
        const auto found = Items.lower_bound(key);
        const bool hit = found != Items.end() && SameText(found->first, key);
        return hit ? std::to_address(found->second) : nullptr;
    }
    std::size_t Count() const noexcept { return Items.size(); }

    // Pairs of key and object, in order.
    auto begin() const noexcept { return Items.begin(); }
    auto end() const noexcept { return Items.end(); }

private:
    TItems Items;
};

// Ignores an object whose key is there already. Owns its objects.
template<class Object>
class TSortedUniqueStringList {
public:
    void Add(std::string key, std::unique_ptr<Object> item) {
        Items.try_emplace(std::move(key), std::move(item));
    }
    Object* Find(std::string_view key) const {
        const auto found = Items.find(key);
        return found == Items.end() ? nullptr : found->second.get();
    }
    // Gives the first object away; null when there is none.
    std::unique_ptr<Object> TakeFirst() {
        if (Items.empty()) {
            return nullptr;
        }
        return std::move(Items.extract(Items.begin()).mapped());
    }
    std::size_t Count() const noexcept { return Items.size(); }

    auto begin() const noexcept { return Items.begin(); }
    auto end() const noexcept { return Items.end(); }

private:
    std::map<std::string, std::unique_ptr<Object>, TTextLess> Items;
};

} // namespace vorel
