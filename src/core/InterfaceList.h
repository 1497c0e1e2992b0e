// The list of interfaces that is handed to callers. It starts with no reference and goes with its
// last one; each item is held by one reference.
#pragma once

#include "support/Objects.h"
#include "vorel/DeviceManager.h"

#include <vector>

namespace vorel {

class TInterfaceList final : public TInterfacedObject<IInterfaceList> {
public:
    // Appends `item`, which may be null.
    void Add(IInterface* item) { Items.emplace_back(item); }

    Status GetCount(std::int32_t& count) noexcept override;
    Status GetItem(std::int32_t index, IInterface*& item) noexcept override;

private:
    std::vector<Ref<IInterface>> Items;
};

} // namespace vorel
