// What a soft device says about itself beyond a plain question to its driver.
#include "core/UserDialogs.h"
#include "core/VorelDevice.h"
#include "vorel/Bsdl.h"
#include "vorel/Device.h"

namespace vorel {

namespace {

// The name of the boundary-scan entity at this place of the chain; empty without one.
WideText EntityNameAt(IJTagChannel& channel, std::int32_t chainIndex) {
    WideText name;
    IJTagDevice* hard = nullptr;
    Check(channel.GetDevice(chainIndex, hard), "Looking up the device on the chain");
    IBSDLEntity* entity = nullptr;
    if (hard != nullptr) {
        Check(hard->GetBsdlEntity(entity), "Reading the device's entity");
    }
    if (entity != nullptr) {
        Check(entity->GetName(name), "Reading the entity's name");
    }
    return name;
}

} // namespace

Status TVorelDevice::GetDescription(WideText& text) noexcept {
    return Guard([&] {
        Check(Link.Ask(&Entry::GetDescription, text, u""), "Asking the driver for a description");
        if (text.empty() && Link.GetChannel() != nullptr && ChainIndex >= 0) {
            text = EntityNameAt(*Link.GetChannel(), ChainIndex);
        }
    });
}

Status TVorelDevice::GetDisplayName(WideText& text) noexcept {
    return Guard([&]() -> Status {
        text.clear();
        WideText name;
        Check(GetDeviceName(name), "Asking the driver for the device's name");
        return Link.Ask(&Entry::GetDisplayName, text, name);
    });
}

Status TVorelDevice::SetChannel(IJTagChannel* channel) noexcept {
    Link.SetChannel(channel);
    return StatusOk;
}

WideText TVorelDevice::GetKind() {
    WideText kind;
    Check(Link.Ask(&Entry::GetKind, kind, u"Unknown"), "Asking the driver for the kind of device");
    return kind;
}

Status TVorelDevice::HasAboutInfo(Bool32& value) noexcept {
    return Guard([&] {
        value = False32;
        Check(Link.Tell(&Entry::PrepareAboutInfo), "Preparing the driver's about information");
        Ref<IInterface> item;
        Check(Link.Ask(&Entry::GetAboutInfo, item.Receive(), nullptr),
              "Reading the driver's about information");
        value = ToBool32(static_cast<bool>(item));
    });
}

Status TVorelDevice::ShowAbout() noexcept {
    return Guard([&] {
        if (IVorelDriver* const driver = Link.GetDriver()) {
            Dialogs.ShowAbout(*driver);
        }
    });
}

} // namespace vorel
