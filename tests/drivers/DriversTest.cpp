// The driver modules that ship with the project, as the driver manager sees them.
#include "drivers/PartTable.h"
#include "knowledge/KnowledgeFixture.h"
#include "knowledge/Manage_VorelDrivers.h"
#include "knowledge/ModuleFiles.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vorel {
namespace {

using testing::Contains;
using testing::SizeIs;

// The real modules; the cache of this test is its own.
struct ShippedDrivers : testing::Test, TInstallation {
    ShippedDrivers() {
        std::filesystem::remove_all(Folder / "System");
        std::filesystem::create_directory_symlink(VOREL_SYSTEM_DIR, Folder / "System");
        Made = std::make_unique<TVorelDriverManager>(Settings());
    }
    std::unique_ptr<TVorelDriverManager> Made;
};

template<class Value>
Value Ask(IVorelDriver* driver, Status (IVorelDriver::*getter)(Value&) noexcept) {
    Value value{};
    EXPECT_EQ((driver->*getter)(value), StatusOk);
    return value;
}

TEST_F(ShippedDrivers, SeveralThousandNamesAllDifferent) {
    const std::vector<IVorelDriver*> drivers = Made->GetAllDrivers();
    EXPECT_GT(drivers.size(), 7000U);
    std::size_t rows = 0;
    for (const std::string& vendor : Made->GetCache().Vendors()) {
        for (const std::string& family : Made->GetCache().FamiliesOfVendor(vendor)) {
            rows += Made->GetDevicesOfFamily(family).size();
        }
    }
    EXPECT_EQ(rows, drivers.size()) << "a name that stands twice loses a row";
    EXPECT_THAT(Made->GetVendors(), SizeIs(12));
}

// The facts that a user sees are checked where the command line shows them.
TEST_F(ShippedDrivers, APartTellsWhatTheLibraryAsks) {
    IVorelDriver* part = Made->GetDriverForDevice("xc3s1500-4fg676c");
    ASSERT_NE(part, nullptr);
    EXPECT_EQ(Ask(part, &IVorelDriver::GetBsdlFile), u"XC3S1500_FG676.bsd");
    EXPECT_EQ(Ask(part, &IVorelDriver::GetIdCode), 0x01434093U);
    EXPECT_EQ(Ask(part, &IVorelDriver::GetIrLength), 6);
    Bool32 has = False32;
    EXPECT_EQ(part->HasAttribute(u"FPGA", has), StatusOk);
    EXPECT_EQ(has, True32);
    EXPECT_EQ(part->HasAttribute(u"CPLD", has), StatusOk);
    EXPECT_EQ(has, False32);
    EXPECT_EQ(Made->GetDeviceInfo("XC3S1500-4FG676C")->Type, "FPGA");
}

TEST_F(ShippedDrivers, IdsLeadToTheirParts) {
    struct TCase {
        std::uint32_t Id;
        const char* Name;
    };
    for (const TCase& c : {TCase{0x1140D093, "XC3S50-4PQ208C"},
                           {0x020830DD, "EP1C12F324C8"},
                           {0x59608093, "XC95144XL-10TQ144C"},
                           {0x1B8C0B01, "LUMAPLATE"},
                           {0x0150303F, "ATF1502AS-JC44"},
                           {0x01234567, "GenericDevice"}}) {
        EXPECT_THAT(Made->DevicesForJtagId(c.Id), Contains(c.Name)) << std::hex << c.Id;
    }
    EXPECT_EQ(Ask(Made->GetDriverForDevice("GenericDevice"), &IVorelDriver::GetIrLength), 0)
        << "the user's mapping has to say";
    EXPECT_EQ(Ask(Made->GetDriverForDevice("LUMAPLATE"), &IVorelDriver::GetIrLength), 8);
}

TEST_F(ShippedDrivers, NamesFollowTheMakersOrderingRules) {
    for (const char* name :
         {"EP1C6Q240C8", "EPM7064AETC100-10", "EPM240T100C5", "10M16DCU324A7", "5CGXBC5CF23C7",
          "EPC2LC20", "XCF32PVO48C", "XC6SLX9-N3CSG324C", "XA3S500E-4CPG132Q", "A3P250-1FG144I",
          "A3P250-FG144", "LFE5U-45F-6BG554C", "LCMXO2-1200HC-4TG100C", "LC4064V-T48I",
          "LPC2114-LQFP64", "STM32F303_F334-LQFP64", "T55F324", "JTAG-DP"}) {
        EXPECT_NE(Made->GetDriverForDevice(name), nullptr) << name;
    }
    EXPECT_EQ(Made->GetDriverForDevice("XC3S1500-5FG676I"), nullptr) << "C only at this speed";
}

TEST(PartTable, LinesThatDoNotFitArePassedOver) {
    const char* lines[] = {"part\tEarly\tX1",
                           "# note",
                           "vendor\tV\t%p_%b",
                           "standards\tx\tA,B",
                           "standards\t9999999999\tA",
                           "standards\t2\tA,B",
                           "family\tF\tCPLD\t%b%",
                           "part",
                           "part\tB\tQ44=R44\tzz\t-\t44\t\t\t\t\t\t\t\t\t\t1\t/\t2"};
    const TPartTable table(lines);
    ASSERT_THAT(table.GetParts(), SizeIs(2));
    ASSERT_THAT(table.GetVariants(), SizeIs(2));
    const TPart& part = table.GetParts()[1];
    EXPECT_EQ(part.Package, "Q44");
    EXPECT_EQ(part.Pins, 44);
    EXPECT_EQ(part.IdCode, 0U);
    EXPECT_EQ(part.Standards, "A,B");
    EXPECT_TRUE(part.OnChipTermination);
    EXPECT_EQ(table.NameOf(table.GetVariants()[1]), "B");
    EXPECT_EQ(table.BsdlFileOf(table.GetVariants()[1]), "R44_B");
}

} // namespace
} // namespace vorel
