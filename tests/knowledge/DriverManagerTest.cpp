#include "knowledge/KnowledgeFixture.h"
#include "knowledge/Manage_VorelDrivers.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vorel {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;
using testing::UnorderedElementsAre;

std::string NameOf(IVorelDriver* driver) {
    WideText name;
    return driver != nullptr && Succeeded(driver->GetDeviceName(name)) ? ToUtf8(name) : "no driver";
}

struct Drivers : testing::Test, TInstallation {
    TVorelDriverManager& Manager() {
        if (Made == nullptr) {
            Made = std::make_unique<TVorelDriverManager>(Settings());
            Loader.Loaded.clear();
        }
        return *Made;
    }
    std::unique_ptr<TVorelDriverManager> Made;
};

TEST_F(Drivers, ALookUpLoadsExactlyTheModulesThatTheCacheNames) {
    AddModule("A.VOR", "Zeta|V|F|11234093|FPGA\nalpha|V|F|21234093|FPGA\nOther|V|F|1|FPGA");
    AddModule("B.VOR", "Beta|V|G|31234093|FPGA\nZETA|V|G|31234093|FPGA");
    AddModule("C.VOR", "C|V|H|21234095|FPGA");
    EXPECT_EQ(NameOf(Manager().GetDriverForDevice("C")), "C");
    EXPECT_THAT(Loader.Loaded, ElementsAre("C.VOR"));
    EXPECT_THAT(Manager().DevicesForJtagId(0xF1234093), SizeIs(3));
    EXPECT_THAT(Loader.Loaded, UnorderedElementsAre("C.VOR", "A.VOR", "B.VOR"));
    const std::vector<std::string> names = Manager().DevicesForJtagId(0x01234093);
    ASSERT_THAT(names, SizeIs(3));
    EXPECT_TRUE(names[0] == "alpha" && names[1] == "Beta" && SameText(names[2], "zeta"));
    EXPECT_EQ(Manager().GetDriverForDevice(""), nullptr);
    EXPECT_EQ(Manager().GetDriverForDevice("Nobody"), nullptr);
    EXPECT_EQ(Manager().CreateDriverForDevice("Nobody"), nullptr);
    EXPECT_THAT(Loader.Loaded, SizeIs(3));
}

TEST_F(Drivers, VersionBitsCountForOneManufacturerOnly) {
    AddModule("A.VOR", "V1|V|F|120230DD|CPLD\nV2|V|F|220230DD|CPLD\nX|V|F|11234093|FPGA");
    EXPECT_THAT(Manager().DevicesForJtagId(0x120230DD), ElementsAre("V1"));
    EXPECT_THAT(Manager().DevicesForJtagId(0x320230DD), IsEmpty());
    EXPECT_FALSE(Manager().JtagIdsMatch(0x120230DD, 0x220230DD));
    EXPECT_TRUE(Manager().JtagIdsMatch(0x11234093, 0xF1234093));
}

TEST_F(Drivers, AliasesLeadToOtherDevices) {
    AddModule("A.VOR", "Left|V|F|0000A001|FPGA\nRight|V|F|0000B001|FPGA");
    Folder.Write("System/JTAG_ALIAS.txt", "C001=B001\nA001=B001;A001=D001\n");
    EXPECT_THAT(Manager().DevicesForJtagId(0xC001), ElementsAre("Left", "Right"))
        << "Left has the same alias";
    EXPECT_THAT(Manager().DevicesForJtagId(0xB001), SizeIs(2));
    EXPECT_TRUE(Manager().JtagIdsMatch(0xC001, 0xA001));
}

TEST_F(Drivers, UnknownIdsGiveTheGenericFamily) {
    AddModule("G.VOR", "GenericDevice|Tarvex|Generic|0|\nGenericTwo|Tarvex|Generic|77|");
    AddModule("N.VOR", "NoId|V|F|0|FPGA");
    EXPECT_THAT(Manager().DevicesForJtagId(0x01234093), ElementsAre("GenericDevice", "GenericTwo"));
    EXPECT_THAT(Loader.Loaded, ElementsAre("G.VOR"));
    EXPECT_THAT(Manager().DevicesForJtagId(0x77), ElementsAre("GenericTwo"));
    EXPECT_THAT(Manager().DevicesForJtagId(0), ElementsAre("GenericDevice", "GenericTwo"))
        << "no id is nobody's id";
}

TEST_F(Drivers, ListsLeaveOutOurOwnVendorAndEmbeddedProcessors) {
    AddModule("A.VOR", "a|Tarvex|F|1|PROC\nb|Maker|nios2|1|PROC\nc|Maker|Good|1|PROC\n"
                       "d|Maker|MicroBlaze|1|PROC\ne|Other|H|11234093|PROC\n|Maker|I|1|FPGA\n"
                       "f|Other|h|1|proc");
    EXPECT_THAT(Manager().GetVendors(), ElementsAre("Maker", "Other"));
    EXPECT_THAT(Manager().GetFamiliesForVendor("maker"), ElementsAre("Good", "I"));
    EXPECT_THAT(Manager().GetFamiliesForType("proc"), SizeIs(5))
        << "names that differ in case are one";
    EXPECT_THAT(Manager().GetDriversOfFamily("Good"), SizeIs(1));
    EXPECT_THAT(Manager().GetDriversOfFamily("good"), IsEmpty()) << "compared with case";
    EXPECT_THAT(Manager().GetAllDrivers(), SizeIs(6)) << "a driver without a name is no device";
    const std::optional<TDeviceRow> row = Manager().GetDeviceInfo("E");
    ASSERT_TRUE(row);
    EXPECT_EQ(row->Path + row->Vendor + row->Family + row->Display + row->Type,
              "A.VOROtherHThe ePROC");
    EXPECT_EQ(row->IdCode, 0x11234093U);
    EXPECT_EQ(row->MaskedIdCode, 0x01234093U);
    EXPECT_FALSE(Manager().GetDeviceInfo("Nobody"));
    EXPECT_THAT(Manager().GetFamiliesForVendor("Vendor"), IsEmpty()) << "no column, but a name";
}

TEST_F(Drivers, NewDriversAreOfTheirOwnEvenBehindBadEntries) {
    AddModule("A.VOR", "!null\n!throw\n!fail\n!nameless\nGood|V|F|1234093|FPGA\nNext|V|F|2|FPGA");
    IVorelDriver* shared = Manager().GetDriverForDevice("good");
    IVorelDriver* first = Manager().CreateDriverForDevice("GOOD");
    IVorelDriver* second = Manager().CreateDriverForDevice("Good");
    EXPECT_EQ(NameOf(shared) + NameOf(first) + NameOf(second), "GoodGoodGood");
    EXPECT_TRUE(shared != first && first != second);
    EXPECT_EQ(NameOf(Manager().CreateDriverForDevice("Next")), "Next");
    EXPECT_THAT(Manager().DevicesForJtagId(0x1234093), ElementsAre("Good"));
}

TEST_F(Drivers, ADeviceOfTwoModulesIsServedByTheOneInTheTable) {
    AddModule("A.VOR", "Both|VA|F|1|FPGA\nOnlyA|V|F|1|FPGA");
    AddModule("B.VOR", "Both|VB|F|1|FPGA\nOnlyB|V|F|1|FPGA");
    AddFile("BAD.VOR", VOREL_UNRESOLVED_MODULE);
    EXPECT_THAT(Manager().GetAllDrivers(), SizeIs(4));
    Manager().LoadAllModules();
    EXPECT_THAT(Loader.Loaded, SizeIs(3)) << "all are loaded once only";
    EXPECT_EQ(Manager().ModuleCount(), 2U);
    WideText vendor;
    ASSERT_EQ(Manager().GetDriverForDevice("Both")->GetVendor(vendor), StatusOk);
    EXPECT_EQ(ToUtf8(vendor), Manager().GetDeviceInfo("Both")->Vendor);
}

TEST_F(Drivers, AModuleInTheProcessIsNotLoadedAgain) {
    AddModule("INPROCESS.VOR", "D|V|F|1|FPGA");
    TSystemModuleLoader system;
    TVorelDriverManager& manager = Manager();
    IModuleLoader::Handle handle = system.Load(Folder / "System/INPROCESS.VOR");
    ASSERT_NE(handle, nullptr);
    EXPECT_EQ(NameOf(manager.GetDriverForDevice("D")), "D");
    EXPECT_THAT(Loader.Loaded, IsEmpty());
    system.Unload(handle);
    EXPECT_EQ(NameOf(manager.GetDriverForDevice("D")), "D") << "the manager holds it by itself";
    Made.reset();
    EXPECT_EQ(system.FindLoaded("INPROCESS.VOR"), nullptr) << "modules can be unloaded";
}

} // namespace
} // namespace vorel
