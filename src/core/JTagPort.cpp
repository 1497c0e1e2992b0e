#include "core/JTagPort.h"

#include "core/JTagChannel.h"
#include "support/Text.h"

namespace vorel {

bool TJtagPort::CheckPresence() {
    Connected = false;
    Connected = DoIsPresent();
    return Connected;
}

// A port that is not detected has no devices, however the search ended.
bool TJtagPort::SearchChains(bool force) {
    bool found = false;
    const auto retireAll = [this]() noexcept {
        for (TJTagChannel* chain : {&DoGetHardChain(), &DoGetSoftChain(), &DoGetBoardChain()}) {
            chain->RetireDevices();
        }
    };
    try {
        found = DoDetect(force);
    } catch (...) {
        retireAll();
        throw;
    }
    if (!found) {
        retireAll();
    }
    return found;
}

template<class Interface>
Status TJtagPortOf<Interface>::GetName(WideText& name) noexcept {
    name.clear();
    return Guard([&] { name = ToWide(this->DoGetName()); });
}

template<class Interface>
Status TJtagPortOf<Interface>::GetDescription(WideText& description) noexcept {
    description.clear();
    return Guard([&] { description = ToWide(this->DoGetDescription()); });
}

template<class Interface>
Status TJtagPortOf<Interface>::IsPresent(Bool32& present) noexcept {
    present = False32;
    return Guard([&] { present = ToBool32(this->CheckPresence()); });
}

template<class Interface>
Status TJtagPortOf<Interface>::IsConnected(Bool32& connected) noexcept {
    connected = ToBool32(this->IsConnectedNow());
    return StatusOk;
}

template<class Interface>
Status TJtagPortOf<Interface>::Detect(Bool32 force, Bool32& found) noexcept {
    found = False32;
    return Guard([&] { found = ToBool32(this->SearchChains(force != False32)); });
}

template<class Interface>
Status TJtagPortOf<Interface>::GetHardChain(IJTagChannel*& channel) noexcept {
    channel = &this->DoGetHardChain();
    return StatusOk;
}

template<class Interface>
Status TJtagPortOf<Interface>::GetSoftChain(IJTagChannel*& channel) noexcept {
    channel = &this->DoGetSoftChain();
    return StatusOk;
}

template<class Interface>
Status TJtagPortOf<Interface>::GetBoardChain(IJTagChannel*& channel) noexcept {
    channel = &this->DoGetBoardChain();
    return StatusOk;
}

template<class Interface>
Status TJtagPortOf<Interface>::GetSpiChain(IJTagBitBus*& bus) noexcept {
    bus = &this->DoGetSpiChain();
    return StatusOk;
}

template<class Interface>
Status TJtagPortOf<Interface>::GetBoardInfo(int index, std::int32_t& value) noexcept {
    value = 0;
    return Guard([&] { value = this->DoGetBoardInfo(index); });
}

template<class Interface>
Status TJtagPortOf<Interface>::GetPortId(WideText& id) noexcept {
    id.clear();
    return Guard([&] { id = ToWide(this->DoGetPortId()); });
}

template class TJtagPortOf<IJTagUsbPort>;
template class TJtagPortOf<IJTagParallelPort>;

} // namespace vorel
