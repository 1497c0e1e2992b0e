#include "support/Text.h"

#include <gtest/gtest.h>

namespace vorel {
namespace {

using List = std::vector<std::string>;

TEST(Text, ConvertsBothWaysAndMarksIllFormedInput) {
    const std::string text = "a\xC3\xA4\xE2\x82\xAC\xF0\x9F\x98\x80z";
    EXPECT_EQ(ToWide(text), u"a\u00E4\u20AC\U0001F600z");
    EXPECT_EQ(ToUtf8(ToWide(text)), text);
    EXPECT_EQ(ToWide("a\xFFz"), u"a\uFFFDz");
    EXPECT_EQ(ToWide("a\xE2\x82"), u"a\uFFFD\uFFFD");
    EXPECT_EQ(ToWide("\xC0\x80"), u"\uFFFD\uFFFD") << "overlong forms are not characters";
    const char16_t loneSurrogate[] = {u'x', 0xD800, u'y'};
    EXPECT_EQ(ToUtf8({loneSurrogate, 3}), "x\xEF\xBF\xBDy");
}

TEST(Text, ComparesWithoutAsciiCaseOnly) {
    EXPECT_TRUE(SameText("LumaPlate", "LUMAPLATE"));
    EXPECT_FALSE(SameText("\xC3\xA4", "\xC3\x84"));
    EXPECT_LT(CompareText("abc", "ABD"), 0);
    EXPECT_LT(CompareText("ab", "ABC"), 0);
}

TEST(Text, NaturalOrderComparesDigitRunsByValue) {
    const List ordered{"",
                       "A",
                       "a1",
                       "A2",
                       "A02x",
                       "A10",
                       "A10B",
                       "A99999999999999999999998",
                       "A99999999999999999999999",
                       "B1"};
    for (std::size_t i = 0; i < ordered.size(); ++i) {
        for (std::size_t j = 0; j < ordered.size(); ++j) {
            const int order = CompareNatural(ordered[i], ordered[j]);
            EXPECT_EQ(order < 0, i < j) << ordered[i] << " ~ " << ordered[j];
            EXPECT_EQ(order == 0, i == j) << ordered[i] << " ~ " << ordered[j];
        }
    }
    EXPECT_EQ(CompareNatural("pin7", "PIN7"), 0);
    EXPECT_NE(CompareNatural("A1", "A01"), 0) << "only equal texts compare equal";
}

TEST(Text, SplitsLinesOfAnyKind) {
    EXPECT_EQ(SplitLines("a\nb\r\nc\rd"), (List{"a", "b", "c", "d"}));
    EXPECT_EQ(SplitLines("a\n\nb\n"), (List{"a", "", "b"}));
    EXPECT_TRUE(SplitLines("").empty());
}

TEST(Text, CommaTextSplitsAtCommasAndBlanks) {
    struct Case {
        const char* Text;
        List Items;
    };
    const Case cases[] = {
        {"", {}},
        {"a", {"a"}},
        {"a, b,c", {"a", "b", "c"}},
        {"a b\r\nc", {"a", "b", "c"}},
        {"a,,b", {"a", "", "b"}},
        {"a,", {"a", ""}},
        {"\"a, b\",c", {"a, b", "c"}},
        {"\"say \"\"x\"\"\" y", {"say \"x\"", "y"}},
        {"\"open", {"open"}},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(SplitCommaText(c.Text), c.Items) << c.Text;
    }
    for (const List& items : {List{"a", "b c", "d,e", "f\"g", ""}, List{""}, List{"x"}}) {
        EXPECT_EQ(SplitCommaText(JoinCommaText(items)), items);
    }
}

TEST(Text, ParametersAreFoundWithoutCase) {
    EXPECT_EQ(FindParameter("Action=Search|mode=Choose", "Mode"), "Choose");
    EXPECT_EQ(FindParameter("A=1|A=2", "a"), "1");
    EXPECT_EQ(FindParameter("A=b=c", "A"), "b=c");
    EXPECT_EQ(FindParameter("A|=x|", "A"), std::nullopt);
}

TEST(Text, NumbersAreReadWholeOrNotAtAll) {
    EXPECT_EQ(ParseDecimal(" -12 "), -12);
    EXPECT_EQ(ParseDecimal("+5"), 5);
    for (const char* bad : {"", " ", "1 2", "12x", "+-1", "99999999999999999999"}) {
        EXPECT_EQ(ParseDecimal(bad), std::nullopt) << bad;
    }
    EXPECT_EQ(ParseHex("0aBc"), 0xABCU);
    EXPECT_EQ(ParseHex("0x1"), std::nullopt);
    EXPECT_EQ(ParseHex("-1"), std::nullopt);
    EXPECT_EQ(ParseFloat("1.0e+07"), 1e7);
    EXPECT_EQ(ParseFloat("1.0e+07 Hz"), std::nullopt);
    EXPECT_EQ(ToHex(0xABC, 8), "00000ABC");
    EXPECT_EQ(ToHex(0x12345, 3), "12345");
}

TEST(Text, PathsAreCutAtEitherSeparator) {
    EXPECT_EQ(FileNameOf("a/b\\c.bsd"), "c.bsd");
    EXPECT_EQ(StemOf("/x/y.tar.gz"), "y.tar");
    EXPECT_EQ(StemOf("plain"), "plain");
}

} // namespace
} // namespace vorel
