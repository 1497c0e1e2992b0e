// Gives each name a small number, the same for names that differ in case only, so that objects of
// one name find each other without comparing texts.
#pragma once

#include <cstdint>
#include <string_view>
#include <vector>

namespace vorel {

class TNameTable {
public:
    static constexpr std::int32_t None = -1;

    // The number of `name`, a new one for a new name. The text must stay as long as the table.
    std::int32_t Intern(std::string_view name);
    // The number of `name`, or None.
    std::int32_t Find(std::string_view name) const noexcept;
    // Numbers run from 0 to Count() - 1.
    std::size_t Count() const noexcept { return Names.size(); }

private:
    struct TName {
        std::string_view Text;
        std::uint64_t Hash;
    };

    std::uint64_t HashOf(std::string_view name) const noexcept;
    std::size_t SlotOf(std::string_view name, std::uint64_t hash) const noexcept;
    void Grow();

    std::vector<TName> Names;
    std::vector<std::int32_t> Slots; // open addressing; the size is a power of two
};

} // namespace vorel
