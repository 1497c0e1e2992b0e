// A port list in front of virtual pods, with a host that remembers and device knowledge made up by
// the test.
#pragma once

#include "core/JTagObjects.h"
#include "simulator/SimUsbServices.h"
#include "support/NeutralHost.h"
#include "support/Text.h"
#include "transport/JTagParallelPortMap.h"
#include "transport/Manage_UsbJtag.h"
#include "vorel/DriverBase.h"

#include <map>
#include <stdexcept>

namespace vorel::test {

// The value of an operation that has to succeed: Get<WideText>([&](auto& v) { return x.Op(v); }).
template<class T, class Op>
T Get(Op&& op) {
    T value{};
    Check(op(value), "an operation under test");
    return value;
}

inline std::string Utf8(const WideText& text) {
    return ToUtf8(text);
}

class TFakeDriver : public TDriverBase {
public:
    std::string Name;
    std::string Family = "Parts";
    std::int32_t IrBits = 0;
    std::string Bsdl;
    IBSDLEntity* Default = nullptr;

    Status GetDeviceName(WideText& text) noexcept override { return Give(text, ToWide(Name)); }
    Status GetFamily(WideText& text) noexcept override { return Give(text, ToWide(Family)); }
    Status GetVendor(WideText& text) noexcept override { return Give(text, u"Maker"); }
    Status GetBsdlFile(WideText& text) noexcept override { return Give(text, ToWide(Bsdl)); }
    Status GetDefaultEntity(IBSDLEntity*& entity) noexcept override {
        return Give(entity, Default);
    }
    Status GetIrLength(std::int32_t& value) noexcept override { return Give(value, IrBits); }
};

class TFakeKnowledge : public IDeviceKnowledge {
public:
    std::map<std::uint32_t, std::vector<std::string>> Names;
    std::map<std::string, TFakeDriver, std::less<>> Drivers;

    TFakeDriver& AddPart(std::uint32_t id, const std::string& name, std::int32_t irBits = 0) {
        Names[id].push_back(name);
        TFakeDriver& driver = Drivers[name];
        driver.Name = name;
        driver.IrBits = irBits;
        return driver;
    }
    std::vector<std::string> DevicesForJtagId(std::uint32_t id) override {
        const auto known = Names.find(id);
        return known == Names.end() ? std::vector<std::string>() : known->second;
    }
    IVorelDriver* GetDriverForDevice(std::string_view device) override {
        const auto known = Drivers.find(device);
        return known == Drivers.end() ? nullptr : &known->second;
    }
    bool JtagIdsMatch(std::uint32_t idA, std::uint32_t idB) override { return idA == idB; }
    std::vector<std::string> GetVendors() override { return {}; }
    std::vector<std::string> GetFamiliesForVendor(std::string_view) override { return {}; }
    std::vector<std::string> GetFamiliesForType(std::string_view) override { return {}; }
    std::vector<std::string> GetDevicesOfFamily(std::string_view) override { return {}; }
    std::optional<TDeviceRow> GetDeviceInfo(std::string_view) override { return {}; }
    IVorelDriver* CreateDriverForDevice(std::string_view) override { return nullptr; }
    std::vector<IVorelDriver*> GetAllDrivers() override { return {}; }
};

class TRecordingHost : public TNeutralHost {
public:
    std::vector<std::string> Boxes;
    std::string Library;

    Status ShowMessageBox(MessageBoxKind, const WideText&, const WideText& text,
                          MessageBoxAnswer&) noexcept override {
        Boxes.push_back(ToUtf8(text));
        return StatusOk;
    }
    Status GetDirectory(HostDirectory directory, WideText& path) noexcept override {
        path = ToWide(Library);
        return directory == HostDirectory::Library ? StatusOk
                                                   : TNeutralHost::GetDirectory(directory, path);
    }
};

inline void AddTap(sim::TChain& chain, std::uint32_t id, unsigned irBits = 4) {
    chain.Add(std::make_unique<sim::TTapDevice>(
        sim::TapSettings{"tap", id, irBits, BitText(), BitText()}));
}

// Ids as they come from a scan: bit 0 set, no version, an ordinary manufacturer.
constexpr std::uint32_t IdA = 0x01111093;
constexpr std::uint32_t IdB = 0x02222093;
constexpr std::uint32_t IdC = 0x03333093;

struct TRig {
    TRecordingHost Host;
    TFakeKnowledge Knowledge;
    TCoreContext Context{Host, &Knowledge, nullptr, nullptr, 4};
    sim::TSimUsbServices Usb;
    TUsbJtagManager Pods{Usb};
    TJTagParallelPort_InstalledBoardTypes NoBoards;
    TPortList Ports{Pods, nullptr, NoBoards, Context};

    // A pod with a bare target or an empty board; the list has to be scanned for it.
    sim::TSimPod& AddPod(const std::string& serial = "1", bool board = false) {
        sim::UsbIdentity identity;
        identity.SerialNumber = serial;
        auto target = std::make_unique<sim::TTarget>();
        if (board) {
            target->AddBoard();
        }
        return Usb.Add(std::make_unique<sim::TSimPod>(identity, std::move(target)));
    }
    IJTagPort& Port(std::int32_t index) {
        Check(Ports.ScanJTagPorts(), "scanning the ports");
        return *Get<IJTagPort*>([&](auto& port) { return Ports.GetJTagPort(index, port); });
    }
};

inline bool Detect(IJTagPort& port, bool force = false) {
    return Get<Bool32>([&](auto& found) { return port.Detect(ToBool32(force), found); }) != 0;
}
inline TJTagChannel& HardChain(IJTagPort& port) {
    return static_cast<TJTagChannel&>(
        *Get<IJTagChannel*>([&](auto& chain) { return port.GetHardChain(chain); }));
}
inline TJTagChannel& SoftChain(IJTagPort& port) {
    return static_cast<TJTagChannel&>(
        *Get<IJTagChannel*>([&](auto& chain) { return port.GetSoftChain(chain); }));
}
inline std::vector<std::uint32_t> IdsOn(const TJTagChannel& channel) {
    std::vector<std::uint32_t> ids;
    for (const auto& device : channel.ChainDevices()) {
        ids.push_back(device->JTagId());
    }
    return ids;
}

} // namespace vorel::test
