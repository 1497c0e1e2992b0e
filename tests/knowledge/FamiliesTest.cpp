#include "knowledge/Manage_DeviceFamilies.h"
#include "knowledge/TempFolder.h"
#include "support/Text.h"

#include <gtest/gtest.h>

namespace vorel {
namespace {

std::string StringOf(IDeviceFamilyInfo& family, const char16_t* key) {
    WideText value = u"old";
    EXPECT_EQ(family.GetString(key, value), StatusOk);
    return ToUtf8(value);
}

std::int32_t IntegerOf(IDeviceFamilyInfo& family, const char16_t* key) {
    std::int32_t value = 99;
    EXPECT_EQ(family.GetInteger(key, value), StatusOk);
    return value;
}

Bool32 BooleanOf(IDeviceFamilyInfo& family, const char16_t* key) {
    Bool32 value = 99;
    EXPECT_EQ(family.GetBoolean(key, value), StatusOk);
    return value;
}

TEST(Families, ValuesAreReadByTypeAndLeniently) {
    const std::string text = "ValueType=STR|Key=Outside|Value=x\n"
                             "END_DEVICE_FAMILY\n"
                             "device_family=Spartan3\r\n"
                             " VALUETYPE =str| key=Vendor|Value=Xil=inx\n"
                             "ValueType=INT|Key=Pins|Value=144\rValueType=INT|Key=Bad|Value=12x\n"
                             "ValueType=INT|Key=Huge|Value=4294967296|Key=Second\n"
                             "ValueType=BOOL|Key=A|Value=True\nValueType=BOOL|Key=B|Value=maybe\n"
                             "ValueType=BOOL|Key=C|Value=0\nValueType=DATE|Key=D|Value=1\n"
                             "ValueType=STR|Key=NoValue|Value\nno parameters at all\n"
                             "# DEVICE_FAMILY note\n"
                             "ValueType=STR|Key=Long|Value=" +
                             std::string(300, 'z') + "\n;END_DEVICE_FAMILY\n";
    const auto families = ReadFamilies(text);
    ASSERT_EQ(families.size(), 1U);
    TDeviceFamilyInfo& family = *families[0];
    EXPECT_EQ(family.NameText(), "Spartan3");
    EXPECT_EQ(StringOf(family, u"vendor"), "Xil=inx");
    EXPECT_EQ(StringOf(family, u"Long"), std::string(255, 'z'));
    EXPECT_EQ(StringOf(family, u"NoValue") + StringOf(family, u"Outside"), "");
    EXPECT_EQ(IntegerOf(family, u"Pins"), 144);
    EXPECT_EQ(IntegerOf(family, u"Bad"), 144) << "the last good number";
    EXPECT_EQ(IntegerOf(family, u"Huge"), 144);
    EXPECT_EQ(IntegerOf(family, u"Second"), -1);
    EXPECT_EQ(BooleanOf(family, u"A"), True32);
    EXPECT_EQ(BooleanOf(family, u"B"), True32) << "the last good boolean";
    EXPECT_EQ(BooleanOf(family, u"C"), False32);
    EXPECT_EQ(BooleanOf(family, u"D"), False32);
    std::int32_t strings = 0;
    EXPECT_EQ(family.GetStringCount(strings), StatusOk);
    EXPECT_EQ(strings, 2);
}

TEST(Families, OpenFamiliesAreReplacedOrClosedByTheEnd) {
    TTempFolder folder;
    Ref<TDeviceFamilyManager> manager(new TDeviceFamilyManager(
        folder.Write("FamilyMappings.txt", "DEVICE_FAMILY=Lost\nValueType=INT|Key=K|Value=5\n"
                                           "DEVICE_FAMILY=zeta\nValueType=INT|Key=K|Value=bad\n"
                                           "END_DEVICE_FAMILY\nDEVICE_FAMILY=Alpha\n")));
    WideText names;
    EXPECT_EQ(manager->GetNames(names), StatusOk);
    EXPECT_EQ(names, u"Alpha\nzeta\n");
    Ref<IDeviceFamilyInfo> family;
    EXPECT_EQ(manager->GetFamilyByIndex(0, family.Receive()), StatusOk);
    EXPECT_EQ(IntegerOf(*family, u"K"), 5) << "held from the family that was lost";
    EXPECT_EQ(manager->GetFamilyByName(u"ALPHA", family.Receive()), StatusOk);
    manager.Reset();
    WideText name;
    EXPECT_EQ(family->GetName(name), StatusOk) << "a family outlives its manager";
    EXPECT_EQ(name, u"Alpha");

    Ref<TDeviceFamilyManager> none(new TDeviceFamilyManager(folder / "missing.txt"));
    EXPECT_EQ(none->GetFamilyByName(u"Alpha", family.Receive()), StatusOk);
    EXPECT_FALSE(family);
    EXPECT_EQ(none->GetFamilyByIndex(-1, family.Receive()), StatusIndexOutOfRange);
}

TEST(Families, NewValuesAreFoundAfterSorting) {
    Ref<TDeviceFamilyInfo> family(new TDeviceFamilyInfo("F"));
    for (const char16_t* key : {u"c", u"b", u"a"}) {
        EXPECT_EQ(family->SetInteger(key, 1), StatusOk);
    }
    EXPECT_EQ(family->SetInteger(u"B", 2), StatusOk);
    WideText key;
    EXPECT_EQ(family->GetIntegerKey(0, key), StatusOk);
    EXPECT_EQ(key, u"c");
    EXPECT_EQ(family->SortValues(), StatusOk);
    EXPECT_EQ(family->GetIntegerKey(0, key), StatusOk);
    EXPECT_EQ(key, u"a");
    EXPECT_EQ(IntegerOf(*family, u"b"), 2) << "the later value counts";
    EXPECT_EQ(family->GetIntegerKey(4, key), StatusIndexOutOfRange);
    EXPECT_EQ(key, u"");
    Bool32 present = False32;
    EXPECT_EQ(family->HasInteger(u"C", present), StatusOk);
    EXPECT_EQ(present, True32);
}

} // namespace
} // namespace vorel
