// The root object of the library and the catalogues that hang from it.
//
// Exactly one device manager exists while the library is loaded into a host; GetDeviceManager gives
// it. It is not counted. Lists of names are texts with one name per line.
#pragma once

#include "vorel/Interface.h"

namespace vorel {

class IVorelDevice;
class IVorelDriver;

// A list of interfaces, counted by its references; it holds one reference of each item.
class IInterfaceList : public IInterface {
public:
    static constexpr Guid Id{
        0xA90899CA, 0x9CB3, 0x421B, {0x95, 0x73, 0x0C, 0xDE, 0x34, 0x8F, 0x0D, 0x08}};

    virtual Status GetCount(std::int32_t& count) noexcept = 0;
    // Adds a reference for the caller; null when out of range.
    virtual Status GetItem(std::int32_t index, IInterface*& item) noexcept = 0;

protected:
    ~IInterfaceList() = default;
};

// One named bag of typed values about a group of devices.
class IDeviceFamilyInfo : public IInterface {
public:
    static constexpr Guid Id{
        0x51491978, 0x68EF, 0x4ACF, {0x80, 0x53, 0x65, 0x52, 0x9B, 0x96, 0x29, 0x99}};

    virtual Status GetName(WideText& name) noexcept = 0;
    // Unknown keys give empty text, false and -1.
    virtual Status GetString(const WideText& key, WideText& value) noexcept = 0;
    virtual Status GetBoolean(const WideText& key, Bool32& value) noexcept = 0;
    virtual Status GetInteger(const WideText& key, std::int32_t& value) noexcept = 0;
    virtual Status GetIntegerCount(std::int32_t& count) noexcept = 0;
    virtual Status GetBooleanCount(std::int32_t& count) noexcept = 0;
    virtual Status GetStringCount(std::int32_t& count) noexcept = 0;
    virtual Status GetIntegerKey(std::int32_t index, WideText& key) noexcept = 0;
    virtual Status GetBooleanKey(std::int32_t index, WideText& key) noexcept = 0;
    virtual Status GetStringKey(std::int32_t index, WideText& key) noexcept = 0;
    virtual Status HasString(const WideText& key, Bool32& present) noexcept = 0;
    virtual Status HasBoolean(const WideText& key, Bool32& present) noexcept = 0;
    virtual Status HasInteger(const WideText& key, Bool32& present) noexcept = 0;
    // Append at the end; the key may not be found before the next SortValues.
    virtual Status SetString(const WideText& key, const WideText& value) noexcept = 0;
    virtual Status SetBoolean(const WideText& key, Bool32 value) noexcept = 0;
    virtual Status SetInteger(const WideText& key, std::int32_t value) noexcept = 0;
    virtual Status SortValues() noexcept = 0;

protected:
    ~IDeviceFamilyInfo() = default;
};

// The families of the installation. Counted; information objects carry a reference for the caller.
class IDeviceFamilyManager : public IInterface {
public:
    static constexpr Guid Id{
        0x71967780, 0xE767, 0x4716, {0x9F, 0xEB, 0x59, 0xAD, 0xCA, 0xEF, 0xD5, 0x85}};

    virtual Status GetCount(std::int32_t& count) noexcept = 0;
    virtual Status GetFamilyByName(const WideText& name, IDeviceFamilyInfo*& family) noexcept = 0;
    virtual Status GetFamilyByIndex(std::int32_t index, IDeviceFamilyInfo*& family) noexcept = 0;
    virtual Status GetNames(WideText& names) noexcept = 0;

protected:
    ~IDeviceFamilyManager() = default;
};

// What the user said about JTAG ids that no driver knows. An id asked about for the first time gets
// an empty entry.
class IGenericDeviceManager : public IInterface {
public:
    static constexpr Guid Id{
        0xBADBEA07, 0x539A, 0x4892, {0x87, 0x51, 0xBC, 0x61, 0xB8, 0x54, 0xB5, 0x3F}};

    virtual Status SetBSDLFile(std::uint32_t idCode, std::int32_t jtagIndex,
                               const WideText& path) noexcept = 0;
    virtual Status SetInstructionLength(std::uint32_t idCode, std::int32_t bits) noexcept = 0;
    virtual Status GetBSDLFile(std::uint32_t idCode, std::int32_t jtagIndex,
                               WideText& path) noexcept = 0;
    virtual Status GetLibraryReference(std::uint32_t idCode, std::int32_t jtagIndex,
                                       WideText& text) noexcept = 0;
    virtual Status GetLibrary(std::uint32_t idCode, std::int32_t jtagIndex,
                              WideText& text) noexcept = 0;
    virtual Status GetInstructionLength(std::uint32_t idCode,
                                        std::int32_t& bits) noexcept = 0; // 0: not set
    virtual Status GetOtherBSDLFiles(std::uint32_t idCode, std::int32_t jtagIndex,
                                     WideText& files) noexcept = 0;
    virtual Status GetDisplayText(std::uint32_t idCode, std::int32_t jtagIndex,
                                  WideText& text) noexcept = 0;
    virtual Status EditMapping(std::uint32_t idCode) noexcept = 0;

protected:
    ~IGenericDeviceManager() = default;
};

class IDeviceManager : public IInterface {
public:
    static constexpr Guid Id{
        0x09ACDAA3, 0xC4E9, 0x471B, {0x92, 0x0F, 0xCB, 0xAC, 0x4F, 0xB9, 0x1A, 0xB5}};

    // Reads the default device from the host's options.
    virtual Status LoadOptions() noexcept = 0;
    // Frees every soft device, in use or released. Pointers to them are void from then on.
    virtual Status ReleaseAllDevices() noexcept = 0;
    // Lets the user choose; `name` goes in as the present selection and comes out as the choice,
    // empty on cancel. `parameters` is "name=value|name=value" with "Action" and "Mode".
    virtual Status ChooseDevice(const WideText& parameters, WideText& name) noexcept = 0;
    // The shared driver that describes this device; null for an unknown or empty name. Not the
    // caller's.
    virtual Status GetDriverForDevice(const WideText& name, IVorelDriver*& driver) noexcept = 0;
    // The soft device in use with this unique id (with case); null when there is none.
    virtual Status FindDeviceById(const WideText& uniqueId, IVorelDevice*& device) noexcept = 0;
    // A soft device of this name: a released one (without case) or a new one.
    virtual Status AcquireDevice(const WideText& name, IVorelDevice*& device) noexcept = 0;
    virtual Status DevicesForJtagId(std::uint32_t idCode, WideText& names) noexcept = 0;
    // True when both are known and agree in the two attributes that make devices interchangeable.
    virtual Status AreDevicesCompatible(const WideText& nameA, const WideText& nameB,
                                        Bool32& compatible) noexcept = 0;
    virtual Status GetDefaultDevice(WideText& name) noexcept = 0;
    // Stores the option at once.
    virtual Status SetDefaultDevice(const WideText& name) noexcept = 0;
    // Takes the device off its chain and keeps it for reuse. Null or an unknown device does
    // nothing.
    virtual Status ReleaseDevice(IVorelDevice* device) noexcept = 0;
    virtual Status GetVendors(WideText& names) noexcept = 0;
    virtual Status GetFamiliesForVendor(const WideText& vendor, WideText& names) noexcept = 0;
    virtual Status GetDevicesOfFamily(const WideText& family, WideText& names) noexcept = 0;
    // Both stay the manager's: no reference is added.
    virtual Status GetFamilyManager(IDeviceFamilyManager*& manager) noexcept = 0;
    virtual Status GetGenericManager(IGenericDeviceManager*& manager) noexcept = 0;
    virtual Status GetFamiliesForType(const WideText& type, WideText& names) noexcept = 0;
    // One row of the device table; false and cleared values when the device is not in it.
    virtual Status GetDeviceInfo(const WideText& device, Bool32& found, WideText& path,
                                 WideText& vendor, WideText& family, WideText& display,
                                 WideText& type, std::uint32_t& idCode,
                                 std::uint32_t& maskedIdCode) noexcept = 0;
    // True when both ids stand for the same part: equal without version bits (except for
    // manufacturer 110).
    virtual Status JtagIdsMatch(std::uint32_t idA, std::uint32_t idB, Bool32& match) noexcept = 0;

protected:
    ~IDeviceManager() = default;
};

class IDeviceCatalog : public IInterface {
public:
    static constexpr Guid Id{
        0xB392B5D1, 0x03A4, 0x45D6, {0x95, 0xA0, 0x02, 0x86, 0xE0, 0x5D, 0xE6, 0xCA}};

    // A new list, the caller's, with the shared driver of every known device. Loads every driver
    // module.
    virtual Status GetAllDrivers(IInterfaceList*& drivers) noexcept = 0;
    // A new soft device that is on no list and belongs to the caller; it has no driver when the
    // name is unknown.
    virtual Status CreateDevice(const WideText& name, IVorelDevice*& device) noexcept = 0;

protected:
    ~IDeviceCatalog() = default;
};

} // namespace vorel
