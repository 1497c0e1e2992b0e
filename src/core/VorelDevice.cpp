#include "core/VorelDevice.h"

#include "core/MemorySpace.h"
#include "core/ProcessorRegister.h"
#include "vorel/Host.h"

#include <algorithm>

namespace vorel {

namespace {

template<class Item>
std::vector<std::unique_ptr<Item>> MakeItems(std::int32_t count, TVorelDevice& device) {
    std::vector<std::unique_ptr<Item>> items;
    const std::int32_t believed = std::clamp(count, 0, TVorelDevice::MaxListLength);
    items.reserve(static_cast<std::size_t>(believed));
    for (std::int32_t index = 0; index < believed; ++index) {
        items.push_back(std::make_unique<Item>(index, device));
    }
    return items;
}

} // namespace

TVorelDevice::TVorelDevice(IHostClient& host, IUserDialogs& dialogs, IVorelDriver* driver)
    : Host(host), Dialogs(dialogs), Link(driver) {
    Check(Host.NewUniqueId(UniqueId), "Asking the host for a unique id");
    if (driver != nullptr) {
        Check(driver->SetDevice(this), "Telling the driver its device");
    }
    std::int32_t count = 0;
    Check(Link.Ask(&Entry::GetRegisterCount, count, 0), "Asking the driver for its registers");
    Registers = MakeItems<TProcessorRegister>(count, *this);
    Check(Link.Ask(&Entry::GetMemorySpaceCount, count, 0), "Asking the driver for its memories");
    Memories = MakeItems<TMemorySpace>(count, *this);
}

TVorelDevice::~TVorelDevice() = default;

std::int32_t TOwnedVorelDevice::Release() noexcept {
    const std::int32_t left = --References;
    if (left == 0) {
        delete this;
    }
    return left;
}

} // namespace vorel
