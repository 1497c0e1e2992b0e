#include "core/InterfaceList.h"

#include <utility>

namespace vorel {

Status TInterfaceList::GetCount(std::int32_t& count) noexcept {
    count = static_cast<std::int32_t>(Items.size());
    return StatusOk;
}

Status TInterfaceList::GetItem(std::int32_t index, IInterface*& item) noexcept {
    item = nullptr;
    if (index >= 0 && std::cmp_less(index, Items.size())) {
        item = Ref<IInterface>(Items[static_cast<std::size_t>(index)]).Detach();
    }
    return StatusOk;
}

} // namespace vorel
