#include "DeviceRig.h"
#include "core/Manage_VorelDevices.h"
#include "vorel/DriverBase.h"

#include <map>

namespace vorel::test {
namespace {

class TPart : public TDriverBase {
public:
    explicit TPart(const std::string& name) : Name(ToWide(name)) {}

    Status GetDeviceName(WideText& text) noexcept override { return Give(text, Name); }
    Status GetAttributeText10(WideText& text) noexcept override { return Give(text, Text10); }
    Status GetAttributeText17(WideText& text) noexcept override { return Give(text, Text17); }
    Status NotifyReleased() noexcept override { return Record("released"), Released; }
    Status GetRegisterCount(std::int32_t& value) noexcept override {
        return Give(value, 0), Counted;
    }

    WideText Name;
    WideText Text10 = u"fg676";
    WideText Text17 = u"s3";
    Status Released = StatusOk;
    static inline Status Counted = StatusOk;
};

// Knows the parts that a test puts in, by their upper-case names; drivers live as long as it.
class TKnowledge : public IDeviceKnowledge {
public:
    using Names = std::vector<std::string>;

    Names DevicesForJtagId(std::uint32_t id) override { return {"id" + std::to_string(id), "x"}; }
    bool JtagIdsMatch(std::uint32_t idA, std::uint32_t idB) override { return idA + 1 == idB; }
    Names GetVendors() override { return {}; }
    Names GetFamiliesForVendor(std::string_view) override { return {}; }
    Names GetFamiliesForType(std::string_view) override { return {}; }
    Names GetDevicesOfFamily(std::string_view) override { return {}; }
    std::optional<TDeviceRow> GetDeviceInfo(std::string_view device) override {
        if (device == "bad") {
            throw EVorelError(StatusOutOfMemory, "no row");
        }
        return device == "A" ? std::optional(TDeviceRow{"p", "v", "f", "d", "PROC", 7, 8})
                             : std::nullopt;
    }
    IVorelDriver* GetDriverForDevice(std::string_view device) override {
        const auto found = Parts.find(UpperCase(device));
        return found == Parts.end() ? nullptr : found->second.get();
    }
    IVorelDriver* CreateDriverForDevice(std::string_view device) override {
        if (GetDriverForDevice(device) == nullptr) {
            return nullptr;
        }
        Instances.push_back(std::make_unique<TPart>(UpperCase(device)));
        return Instances.back().get();
    }
    std::vector<IVorelDriver*> GetAllDrivers() override { return {Parts.at("A").get()}; }

    TPart& Add(const std::string& name) { return *(Parts[name] = std::make_unique<TPart>(name)); }
    std::map<std::string, std::unique_ptr<TPart>> Parts;
    std::vector<std::unique_ptr<TPart>> Instances;
};

class TPanels : public IPanelManager {
public:
    void AddDevice(IVorelDevice* device) override { Tell("add", device); }
    void RemoveDevice(IVorelDevice* device) override { Tell("remove", device); }

private:
    static void Tell(const std::string& what, IVorelDevice* device) {
        WideText id;
        EXPECT_EQ(device->GetUniqueId(id), StatusOk);
        Record(what + " " + ToUtf8(id));
    }
};

class Manager : public testing::Test {
protected:
    Manager() {
        Knowledge.Add("A");
        TakeCalls();
    }

    IVorelDevice* Acquire(const WideText& name) {
        IVorelDevice* device = nullptr;
        EXPECT_EQ(Root.AcquireDevice(name, device), StatusOk);
        return device;
    }

    THost Host;
    TDialogs Dialogs;
    TKnowledge Knowledge;
    TDeviceManager Root{{Host, Knowledge, Dialogs, std::make_unique<TPanels>(), {}, {}}};
};

TEST_F(Manager, ReusesAReleasedDeviceOfTheSameName) {
    TTableDouble<IJTagChannel> channel("c");
    IVorelDevice* const first = Acquire(u"A");
    ASSERT_NE(first, nullptr);
    EXPECT_EQ(first->SetChannel(channel.Get()), StatusOk);
    EXPECT_EQ(first->SetChainIndex(4), StatusOk);
    EXPECT_EQ(Root.ReleaseDevice(first), StatusOk);
    IJTagChannel* left = nullptr;
    std::int32_t index = 0;
    EXPECT_EQ(first->GetChannel(left), StatusOk);
    EXPECT_EQ(first->GetChainIndex(index), StatusOk);
    EXPECT_EQ(left, nullptr);
    EXPECT_EQ(index, -1);
    IVorelDevice* found = first;
    EXPECT_EQ(Root.FindDeviceById(u"id1", found), StatusOk);
    EXPECT_EQ(found, nullptr) << "a released device is not in use";
    EXPECT_EQ(Acquire(u"a"), first);
    EXPECT_EQ(TakeCalls(), "add id1 remove id1 released add id1");
    EXPECT_NE(Acquire(u"a"), first);
    EXPECT_EQ(Root.FindDeviceById(u"id2", found), StatusOk);
    EXPECT_NE(found, nullptr);
    EXPECT_EQ(Root.FindDeviceById(u"ID2", found), StatusOk);
    EXPECT_EQ(found, nullptr);
}

TEST_F(Manager, ADriverThatFailsLeavesTheListsInOrder) {
    constexpr Status failure = StatusFromOsError(31);
    IVorelDevice* device = nullptr;
    TPart::Counted = failure;
    EXPECT_EQ(Root.AcquireDevice(u"A", device), failure);
    EXPECT_EQ(device, nullptr);
    EXPECT_EQ(Root.CreateDevice(u"A", device), failure);
    EXPECT_EQ(device, nullptr);
    EXPECT_EQ(TakeCalls(), "") << "no panel has seen a device";
    TPart::Counted = StatusOk;
    device = Acquire(u"A");
    Knowledge.Instances.back()->Released = failure;
    EXPECT_EQ(Root.ReleaseDevice(device), failure);
    EXPECT_EQ(Acquire(u"a"), device) << "it was released all the same";
}

TEST_F(Manager, ADeviceReleasedTwiceWaitsTwiceAndIsFreedOnce) {
    IVorelDevice* const device = Acquire(u"A");
    TakeCalls();
    EXPECT_EQ(Root.ReleaseDevice(device), StatusOk);
    EXPECT_EQ(Root.ReleaseDevice(device), StatusOk);
    EXPECT_EQ(Root.ReleaseDevice(nullptr), StatusOk);
    EXPECT_EQ(TakeCalls(), "remove id1 released released");
    EXPECT_EQ(Acquire(u"A"), device);
    EXPECT_EQ(Acquire(u"A"), device);
    EXPECT_NE(Acquire(u"A"), device);
    EXPECT_EQ(Root.ReleaseDevice(device), StatusOk);
    TakeCalls();
    EXPECT_EQ(Root.ReleaseAllDevices(), StatusOk);
    EXPECT_EQ(Root.ReleaseAllDevices(), StatusOk);
    EXPECT_EQ(TakeCalls(), "") << "nobody is told at the end";
    EXPECT_NE(Acquire(u"A"), nullptr);
}

TEST_F(Manager, DriversHearNothingOfAReleaseWhileTheHostCloses) {
    IVorelDevice* const device = Acquire(u"A");
    Host.Closing = true;
    TakeCalls();
    EXPECT_EQ(Root.ReleaseDevice(device), StatusOk);
    EXPECT_EQ(TakeCalls(), "remove id1");
}

TEST_F(Manager, FreesDevicesWithoutTouchingTheirDrivers) {
    const IVorelDevice* const device = Acquire(u"A");
    EXPECT_NE(device, nullptr);
    Knowledge.Instances.clear(); // as if the driver's module were gone
    EXPECT_EQ(Root.ReleaseAllDevices(), StatusOk);
}

TEST_F(Manager, AnUnknownNameGivesADeviceWithoutDriver) {
    IVorelDevice* const device = Acquire(u"nobody");
    WideText name;
    IVorelDriver* driver = nullptr;
    EXPECT_EQ(device->GetDeviceName(name), StatusOk);
    EXPECT_EQ(device->GetDriver(driver), StatusOk);
    EXPECT_EQ(name, u"Unknown Device");
    EXPECT_EQ(driver, nullptr);
    EXPECT_EQ(Root.GetDriverForDevice(u"nobody", driver), StatusOk);
    EXPECT_EQ(driver, nullptr);
    EXPECT_EQ(Root.GetDriverForDevice(u"a", driver), StatusOk);
    EXPECT_EQ(driver, Knowledge.Parts.at("A").get());
}

TEST_F(Manager, ACreatedDeviceBelongsToItsCaller) {
    Ref<IVorelDevice> device;
    EXPECT_EQ(Root.CreateDevice(u"A", device.Receive()), StatusOk);
    WideText id;
    EXPECT_EQ(device->GetUniqueId(id), StatusOk);
    IVorelDevice* found = nullptr;
    EXPECT_EQ(Root.FindDeviceById(id, found), StatusOk);
    EXPECT_EQ(found, nullptr);
    EXPECT_EQ(Root.ReleaseDevice(device.Get()), StatusOk);
    EXPECT_EQ(Root.ReleaseAllDevices(), StatusOk);
    EXPECT_EQ(device->GetUniqueId(id), StatusOk) << "still there";
    EXPECT_EQ(device->AddRef(), 2);
    EXPECT_EQ(device->Release(), 1);
    EXPECT_EQ(Root.CreateDevice(u"nobody", device.Receive()), StatusOk);
    EXPECT_TRUE(device);

    Ref<IInterfaceList> drivers;
    std::int32_t count = 0;
    Ref<IInterface> item;
    EXPECT_EQ(Root.GetAllDrivers(drivers.Receive()), StatusOk);
    EXPECT_EQ(drivers->GetCount(count), StatusOk);
    EXPECT_EQ(count, 1);
    EXPECT_EQ(drivers->GetItem(0, item.Receive()), StatusOk);
    EXPECT_EQ(item.Get(), Knowledge.Parts.at("A").get());
    EXPECT_EQ(drivers->GetItem(1, item.Receive()), StatusOk);
    EXPECT_FALSE(item);
}

TEST_F(Manager, TheDefaultDeviceIsStoredAtOnceAndAnEmptyOneIsTaken) {
    WideText name;
    EXPECT_EQ(Root.GetDefaultDevice(name), StatusOk);
    EXPECT_EQ(name, u"XC3S1500-4FG676C");
    EXPECT_EQ(Root.SetDefaultDevice(u"B"), StatusOk);
    EXPECT_EQ(TakeCalls(), "write Device Manager/Default Device");
    EXPECT_EQ(Host.Stored, u"B");
    Host.Stored = u"";
    EXPECT_EQ(Root.LoadOptions(), StatusOk);
    EXPECT_EQ(Root.GetDefaultDevice(name), StatusOk);
    EXPECT_EQ(name, u"");
}

TEST_F(Manager, ChoosesThroughTheFormThatTheParametersName) {
    struct Case {
        const char16_t* Parameters;
        std::optional<std::string> Chosen;
        const char16_t* Result;
        const char* Calls;
    };
    Dialogs.Found = "found";
    const Case cases[] = {
        {u"action=SEARCH|Mode=Add", "x", u"found", ""},
        {u"", "x", u"x", "choose 0 now"},
        {u"Mode=change", "x", u"x", "choose 2 now"},
        {u"Mode=ChooseCompatible", std::nullopt, u"", "choose 5 now"},
        {u"Action=other|MODE=BrowseAdd", "", u"", "choose 4 now"},
        {u"Mode=Unheard", "x", u"x", "choose 0 now"},
    };
    for (const Case& c : cases) {
        WideText name = u"now";
        Dialogs.Chosen = c.Chosen;
        EXPECT_EQ(Root.ChooseDevice(c.Parameters, name), StatusOk);
        EXPECT_EQ(name, c.Result) << ToUtf8(c.Parameters);
        EXPECT_EQ(TakeCalls(), c.Calls);
    }
}

TEST_F(Manager, DevicesAreCompatibleWhenBothAttributesAgree) {
    Knowledge.Add("SAME").Text10 = u"FG676";
    Knowledge.Add("OTHER10").Text10 = u"fg900";
    Knowledge.Add("OTHER17").Text17 = u"s6";
    const auto compatible = [&](const WideText& a, const WideText& b) {
        Bool32 result = 77;
        EXPECT_EQ(Root.AreDevicesCompatible(a, b, result), StatusOk);
        return result;
    };
    EXPECT_EQ(compatible(u"A", u"same"), True32);
    EXPECT_EQ(compatible(u"A", u"other10"), False32);
    EXPECT_EQ(compatible(u"A", u"other17"), False32);
    EXPECT_EQ(compatible(u"A", u"nobody"), False32);
    EXPECT_EQ(compatible(u"nobody", u"A"), False32);
}

// The other questions about names are checked where the command line asks them.
TEST_F(Manager, GivesNamesAsLinesAndComparesIdsInOrder) {
    WideText names;
    EXPECT_EQ(Root.DevicesForJtagId(5, names), StatusOk);
    EXPECT_EQ(names, u"id5\nx\n");
    Bool32 match = False32;
    EXPECT_EQ(Root.JtagIdsMatch(1, 2, match), StatusOk);
    EXPECT_EQ(match, True32);
}

TEST_F(Manager, GivesADeviceRowOrClearsEverything) {
    for (const char16_t* device : {u"A", u"other", u"bad"}) {
        Bool32 found = 77;
        std::array<WideText, 5> texts{u"?", u"?", u"?", u"?", u"?"};
        std::uint32_t id = 77;
        std::uint32_t masked = 77;
        const Status status = Root.GetDeviceInfo(device, found, texts[0], texts[1], texts[2],
                                                 texts[3], texts[4], id, masked);
        const bool known = device[0] == u'A';
        EXPECT_EQ(status, device[0] == u'b' ? StatusOutOfMemory : StatusOk);
        EXPECT_EQ(found, ToBool32(known));
        EXPECT_EQ(texts, known ? (std::array<WideText, 5>{u"p", u"v", u"f", u"d", u"PROC"})
                               : (std::array<WideText, 5>{}));
        EXPECT_EQ(id, known ? 7U : 0U);
        EXPECT_EQ(masked, known ? 8U : 0U);
    }
}

TEST(DriverModule, MakesItsDriversAndFreesThemByTheirObject) {
    class TSecond : public TDriverBase {
        Status GetDeviceName(WideText& text) noexcept override { return Give(text, u"second"); }
    };
    using TModule = TDriverModule<TDriverBase, TSecond>;
    std::int32_t count = 0;
    EXPECT_EQ(TModule::GetCount(&count), StatusOk);
    EXPECT_EQ(count, 2);
    EXPECT_EQ(TModule::GetCount(nullptr), StatusBadArgument);
    IVorelDriver* driver = nullptr;
    EXPECT_EQ(TModule::MakeDriver(2, &driver), StatusIndexOutOfRange);
    EXPECT_EQ(TModule::MakeDriver(-1, &driver), StatusIndexOutOfRange);
    EXPECT_EQ(driver, nullptr);
    ASSERT_EQ(TModule::MakeDriver(1, &driver), StatusOk);
    WideText name;
    EXPECT_EQ(driver->GetDisplayName(name), StatusOk);
    EXPECT_EQ(name, u"second");
    IDriverObject* object = nullptr;
    ASSERT_EQ(driver->GetImplementingObject(object), StatusOk);
    object->Free();
}

} // namespace
} // namespace vorel::test
