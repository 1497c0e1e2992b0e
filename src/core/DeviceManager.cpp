#include "core/DeviceManager.h"

#include "core/InterfaceList.h"
#include "core/UserDialogs.h"
#include "support/Text.h"
#include "vorel/Host.h"

#include <algorithm>
#include <array>

namespace vorel {

namespace {

constexpr const char16_t* OptionSection = u"Device Manager";
constexpr const char16_t* OptionKey = u"Default Device";
constexpr const char16_t* BuiltInDefaultDevice = u"XC3S1500-4FG676C";

// By the number of the mode.
constexpr std::array<const char*, 6> ChooserModeNames{"Choose", "Add",       "Change",
                                                      "Browse", "BrowseAdd", "ChooseCompatible"};

ChooserMode ChooserModeOf(const WideText& parameters) {
    const std::string name = FindParameter(ToUtf8(parameters), "Mode").value_or("");
    for (std::size_t mode = 0; mode < ChooserModeNames.size(); ++mode) {
        if (SameText(name, ChooserModeNames.at(mode))) {
            return static_cast<ChooserMode>(mode);
        }
    }
    return ChooserMode::Choose;
}

bool SameName(const WideText& a, const WideText& b) {
    return SameText(ToUtf8(a), ToUtf8(b));
}

// The two texts that interchangeable devices share.
struct TCompatibility {
    WideText Text10;
    WideText Text17;

    explicit TCompatibility(IVorelDriver& description) {
        Check(description.GetAttributeText10(Text10), "Reading a device's description");
        Check(description.GetAttributeText17(Text17), "Reading a device's description");
    }
};

Ref<IInterfaceList> ListOf(const std::vector<IVorelDriver*>& drivers) {
    Ref<TInterfaceList> list(new TInterfaceList);
    for (IVorelDriver* driver : drivers) {
        list->Add(driver);
    }
    return Ref<IInterfaceList>(list.Get());
}

template<class Query>
Status GiveLines(WideText& names, Query query) noexcept {
    return Guard([&] {
        names.clear();
        names = ToWide(JoinLines(query()));
    });
}

} // namespace

TDeviceManager::TDeviceManager(TDeviceManagerParts parts)
    : Parts(std::move(parts)), DefaultDevice(BuiltInDefaultDevice) {
    Devices.OnNotify = [this](const TDeviceList& list, TVorelDevice* device, ListAction action) {
        Notify(list, device, action);
    };
    // An options store that cannot be read leaves the built-in name.
    static_cast<void>(LoadOptions());
}

TDeviceManager::~TDeviceManager() {
    static_cast<void>(ReleaseAllDevices());
}

void TDeviceManager::Notify(const TDeviceList& list, TVorelDevice* device, ListAction action) {
    if (&list != &Devices || !Parts.Panels) {
        return;
    }
    if (action == ListAction::Added) {
        Parts.Panels->AddDevice(device);
    } else {
        Parts.Panels->RemoveDevice(device);
    }
}

Status TDeviceManager::LoadOptions() noexcept {
    return Guard([&] {
        WideText stored;
        Check(Parts.Host.ReadOption(OptionSection, OptionKey, DefaultDevice, stored),
              "Reading the default device");
        DefaultDevice = std::move(stored);
    });
}

Status TDeviceManager::ReleaseAllDevices() noexcept {
    return Guard([&] {
        Devices.OnNotify = nullptr;
        Devices.Clear();
        RetiredDevices.clear();
        for (const auto& device : Pool) {
            device->GetLink().ForgetDriver();
        }
        Pool.clear();
    });
}

Status TDeviceManager::ChooseDevice(const WideText& parameters, WideText& name) noexcept {
    return Guard([&] {
        const std::string current = ToUtf8(name);
        name.clear();
        name = ToWide(AskUser(parameters, current));
    });
}

std::string TDeviceManager::AskUser(const WideText& parameters, const std::string& current) {
    const std::string action = FindParameter(ToUtf8(parameters), "Action").value_or("");
    if (SameText(action, "Search")) {
        return Parts.Dialogs.FindDevice();
    }
    return Parts.Dialogs.ChooseDevice(ChooserModeOf(parameters), current).value_or("");
}

Status TDeviceManager::GetDriverForDevice(const WideText& name, IVorelDriver*& driver) noexcept {
    return Guard([&] {
        driver = nullptr;
        driver = Parts.Knowledge.GetDriverForDevice(ToUtf8(name));
    });
}

Status TDeviceManager::FindDeviceById(const WideText& uniqueId, IVorelDevice*& device) noexcept {
    return Guard([&] {
        const auto found =
            std::find_if(Devices.begin(), Devices.end(), [&](const TVorelDevice* candidate) {
                return candidate->GetIdentity() == uniqueId;
            });
        device = found == Devices.end() ? nullptr : *found;
    });
}

Status TDeviceManager::AcquireDevice(const WideText& name, IVorelDevice*& device) noexcept {
    return Guard([&] {
        device = nullptr;
        TVorelDevice* acquired = TakeRetired(name);
        if (acquired == nullptr) {
            acquired = MakeDevice(name);
        }
        Devices.Add(acquired);
        device = acquired;
    });
}

TVorelDevice* TDeviceManager::TakeRetired(const WideText& name) {
    const auto found =
        std::find_if(RetiredDevices.begin(), RetiredDevices.end(), [&](TVorelDevice* candidate) {
            WideText candidateName;
            Check(candidate->GetDeviceName(candidateName), "Reading a device's name");
            return SameName(candidateName, name);
        });
    if (found == RetiredDevices.end()) {
        return nullptr;
    }
    TVorelDevice* const device = *found;
    RetiredDevices.erase(found);
    return device;
}

TVorelDevice* TDeviceManager::MakeDevice(const WideText& name) {
    IVorelDriver* const driver = Parts.Knowledge.CreateDriverForDevice(ToUtf8(name));
    Pool.push_back(std::make_unique<TVorelDevice>(Parts.Host, Parts.Dialogs, driver));
    return Pool.back().get();
}

Status TDeviceManager::ReleaseDevice(IVorelDevice* device) noexcept {
    return Guard([&] {
        TVorelDevice* const found = device != nullptr ? FindObject(*device) : nullptr;
        if (found == nullptr) {
            return;
        }
        Check(found->SetChannel(nullptr), "Taking the device off its channel");
        Check(found->SetChainIndex(-1), "Taking the device off its chain");
        RetiredDevices.push_back(found);
        Devices.Delete(found);
        Bool32 closing = False32;
        Check(Parts.Host.IsClosing(closing), "Asking whether the host is closing");
        if (closing == False32) {
            Check(found->NotifyReleased(), "Telling the driver of the release");
        }
    });
}

TVorelDevice* TDeviceManager::FindObject(IVorelDevice& device) const {
    WideText uniqueId;
    Check(device.GetUniqueId(uniqueId), "Reading a device's unique id");
    const auto matches = [&](const TVorelDevice* candidate) {
        return candidate->GetIdentity() == uniqueId;
    };
    if (const auto used = std::find_if(Devices.begin(), Devices.end(), matches);
        used != Devices.end()) {
        return *used;
    }
    const auto retired = std::find_if(RetiredDevices.begin(), RetiredDevices.end(), matches);
    return retired == RetiredDevices.end() ? nullptr : *retired;
}

Status TDeviceManager::DevicesForJtagId(std::uint32_t idCode, WideText& names) noexcept {
    return GiveLines(names, [&] { return Parts.Knowledge.DevicesForJtagId(idCode); });
}

Status TDeviceManager::AreDevicesCompatible(const WideText& nameA, const WideText& nameB,
                                            Bool32& compatible) noexcept {
    return Guard([&] {
        compatible = False32;
        IVorelDriver* const first = Parts.Knowledge.GetDriverForDevice(ToUtf8(nameA));
        if (first == nullptr) {
            return;
        }
        const TCompatibility a(*first);
        IVorelDriver* const second = Parts.Knowledge.GetDriverForDevice(ToUtf8(nameB));
        if (second == nullptr) {
            return;
        }
        const TCompatibility b(*second);
        compatible = ToBool32(SameName(a.Text10, b.Text10) && SameName(a.Text17, b.Text17));
    });
}

Status TDeviceManager::GetDefaultDevice(WideText& name) noexcept {
    return Guard([&] { name = DefaultDevice; });
}

Status TDeviceManager::SetDefaultDevice(const WideText& name) noexcept {
    return Guard([&] {
        DefaultDevice = name;
        Check(Parts.Host.WriteOption(OptionSection, OptionKey, DefaultDevice),
              "Storing the default device");
    });
}

Status TDeviceManager::GetVendors(WideText& names) noexcept {
    return GiveLines(names, [&] { return Parts.Knowledge.GetVendors(); });
}

Status TDeviceManager::GetFamiliesForVendor(const WideText& vendor, WideText& names) noexcept {
    return GiveLines(names, [&] { return Parts.Knowledge.GetFamiliesForVendor(ToUtf8(vendor)); });
}

Status TDeviceManager::GetDevicesOfFamily(const WideText& family, WideText& names) noexcept {
    return GiveLines(names, [&] { return Parts.Knowledge.GetDevicesOfFamily(ToUtf8(family)); });
}

Status TDeviceManager::GetFamiliesForType(const WideText& type, WideText& names) noexcept {
    return GiveLines(names, [&] { return Parts.Knowledge.GetFamiliesForType(ToUtf8(type)); });
}

Status TDeviceManager::GetFamilyManager(IDeviceFamilyManager*& manager) noexcept {
    manager = Parts.Families.Get();
    return StatusOk;
}

Status TDeviceManager::GetGenericManager(IGenericDeviceManager*& manager) noexcept {
    manager = Parts.Generics.Get();
    return StatusOk;
}

Status TDeviceManager::GetDeviceInfo(const WideText& device, Bool32& found, WideText& path,
                                     WideText& vendor, WideText& family, WideText& display,
                                     WideText& type, std::uint32_t& idCode,
                                     std::uint32_t& maskedIdCode) noexcept {
    return Guard([&] {
        const std::string name = ToUtf8(device); // may be one of the texts that are cleared
        found = False32;
        for (WideText* text : {&path, &vendor, &family, &display, &type}) {
            text->clear();
        }
        idCode = 0;
        maskedIdCode = 0;
        if (const auto row = Parts.Knowledge.GetDeviceInfo(name)) {
            path = ToWide(row->Path);
            vendor = ToWide(row->Vendor);
            family = ToWide(row->Family);
            display = ToWide(row->Display);
            type = ToWide(row->Type);
            idCode = row->IdCode;
            maskedIdCode = row->MaskedIdCode;
            found = True32;
        }
    });
}

Status TDeviceManager::JtagIdsMatch(std::uint32_t idA, std::uint32_t idB, Bool32& match) noexcept {
    return Guard([&] {
        match = False32;
        match = ToBool32(Parts.Knowledge.JtagIdsMatch(idA, idB));
    });
}

Status TDeviceManager::GetAllDrivers(IInterfaceList*& drivers) noexcept {
    return Guard([&] {
        drivers = nullptr;
        drivers = ListOf(Parts.Knowledge.GetAllDrivers()).Detach();
    });
}

Status TDeviceManager::CreateDevice(const WideText& name, IVorelDevice*& device) noexcept {
    return Guard([&] {
        device = nullptr;
        device = MakeOwnedDevice(name).Detach();
    });
}

Ref<IVorelDevice> TDeviceManager::MakeOwnedDevice(const WideText& name) {
    IVorelDriver* const driver = Parts.Knowledge.CreateDriverForDevice(ToUtf8(name));
    return Ref<IVorelDevice>(new TOwnedVorelDevice(Parts.Host, Parts.Dialogs, driver));
}

} // namespace vorel
