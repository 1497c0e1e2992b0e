// The root object of the library: the soft devices in use, those that wait to be used again, the
// default device, and the front for everything that is known about device names and JTAG ids.
#pragma once

#include "core/ListWithNotification.h"
#include "core/PanelManager.h"
#include "core/VorelDevice.h"
#include "knowledge/DeviceKnowledge.h"
#include "vorel/DeviceManager.h"

#include <memory>
#include <string>
#include <vector>

namespace vorel {

class IHostClient;
class IUserDialogs;

// What a device manager works with. The references outlive it; the rest it keeps.
struct TDeviceManagerParts {
    IHostClient& Host;
    IDeviceKnowledge& Knowledge;
    IUserDialogs& Dialogs;
    std::unique_ptr<IPanelManager> Panels; // null: nobody is told about devices
    Ref<IDeviceFamilyManager> Families;    // null: GetFamilyManager gives null
    Ref<IGenericDeviceManager> Generics;   // null: GetGenericManager gives null
};

// Owned by the library, which makes one; not counted.
//
// The manager owns the devices that it hands out through AcquireDevice; they stay until
// ReleaseAllDevices, and one that was released is handed out again. A device of CreateDevice is
// its caller's instead: it is counted and goes with its last reference, it is on no list, and
// FindDeviceById, ReleaseDevice and ReleaseAllDevices do not touch it.
class TDeviceManager final : public TNonRefCountedInterfacedObject<IDeviceCatalog, IDeviceManager> {
public:
    explicit TDeviceManager(TDeviceManagerParts parts);
    ~TDeviceManager() override;

    // IDeviceManager
    // Section "Device Manager", key "Default Device"; without it the name stays as it is.
    Status LoadOptions() noexcept override;
    // Drivers are not touched: their modules may be gone. The panel manager hears nothing, neither
    // of this nor of any device that is acquired later.
    Status ReleaseAllDevices() noexcept override;
    Status ChooseDevice(const WideText& parameters, WideText& name) noexcept override;
    Status GetDriverForDevice(const WideText& name, IVorelDriver*& driver) noexcept override;
    Status FindDeviceById(const WideText& uniqueId, IVorelDevice*& device) noexcept override;
    Status AcquireDevice(const WideText& name, IVorelDevice*& device) noexcept override;
    Status DevicesForJtagId(std::uint32_t idCode, WideText& names) noexcept override;
    Status AreDevicesCompatible(const WideText& nameA, const WideText& nameB,
                                Bool32& compatible) noexcept override;
    Status GetDefaultDevice(WideText& name) noexcept override;
    Status SetDefaultDevice(const WideText& name) noexcept override;
    // A device that is released twice waits twice, and can be acquired twice. The driver is told
    // unless the host is closing.
    Status ReleaseDevice(IVorelDevice* device) noexcept override;
    Status GetVendors(WideText& names) noexcept override;
    Status GetFamiliesForVendor(const WideText& vendor, WideText& names) noexcept override;
    Status GetDevicesOfFamily(const WideText& family, WideText& names) noexcept override;
    Status GetFamilyManager(IDeviceFamilyManager*& manager) noexcept override;
    Status GetGenericManager(IGenericDeviceManager*& manager) noexcept override;
    Status GetFamiliesForType(const WideText& type, WideText& names) noexcept override;
    Status GetDeviceInfo(const WideText& device, Bool32& found, WideText& path, WideText& vendor,
                         WideText& family, WideText& display, WideText& type, std::uint32_t& idCode,
                         std::uint32_t& maskedIdCode) noexcept override;
    Status JtagIdsMatch(std::uint32_t idA, std::uint32_t idB, Bool32& match) noexcept override;

    // IDeviceCatalog
    Status GetAllDrivers(IInterfaceList*& drivers) noexcept override;
    Status CreateDevice(const WideText& name, IVorelDevice*& device) noexcept override;

private:
    using TDeviceList = TListWithNotification<TVorelDevice>;

    void Notify(const TDeviceList& list, TVorelDevice* device, ListAction action);
    // Takes the first released device of this name off its list; null without one.
    TVorelDevice* TakeRetired(const WideText& name);
    TVorelDevice* MakeDevice(const WideText& name);
    Ref<IVorelDevice> MakeOwnedDevice(const WideText& name);
    // The own object with the unique id of `device`, in use or released; null without one.
    TVorelDevice* FindObject(IVorelDevice& device) const;
    std::string AskUser(const WideText& parameters, const std::string& current);

    TDeviceManagerParts Parts;
    WideText DefaultDevice;
    std::vector<std::unique_ptr<TVorelDevice>> Pool; // owns what the two lists name
    TDeviceList Devices;
    std::vector<TVorelDevice*> RetiredDevices; // may name a device twice
};

} // namespace vorel
