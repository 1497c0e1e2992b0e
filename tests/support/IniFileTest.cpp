#include "support/IniFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace vorel {
namespace {

using testing::ElementsAre;

constexpr const char* Sample = "; heading\n"
                               "top=1\n"
                               "[First]\n"
                               " Key = a = b \n"
                               "empty=\n"
                               "garbage\n"
                               "KEY=later\n"
                               "\n"
                               "[ second ]\n"
                               "x=1\n"
                               "[FIRST]\n"
                               "more=2\n";

TEST(IniFile, ReadsWithoutCaseAndTakesTheFirstHit) {
    const TIniFile ini(Sample);
    struct Case {
        const char* Section;
        const char* Key;
        const char* Expected;
    };
    for (const Case& c : {Case{"first", "key", "a = b"},
                          {"FIRST", "EMPTY", ""},
                          {"First", "more", "2"},
                          {"Second", "X", "1"},
                          {"", "top", "1"},
                          {"First", "x", "default"},
                          {"none", "key", "default"},
                          {"First", "garbage", "default"},
                          {"First", "", "default"},
                          {"", "; heading", "default"}}) {
        EXPECT_EQ(ini.Read(c.Section, c.Key, "default"), c.Expected) << c.Section << "/" << c.Key;
    }
    EXPECT_TRUE(ini.HasKey("First", "empty"));
    EXPECT_TRUE(ini.HasSection("SECOND"));
    EXPECT_FALSE(ini.HasSection("third"));
    EXPECT_FALSE(TIniFile("[a]\n").HasSection(""));
}

TEST(IniFile, NumbersItsLines) {
    const TIniFile ini(Sample);
    std::string seen;
    for (const TIniFile::Section& section : ini.Sections()) {
        seen += "[" + section.Name + "]" + std::to_string(section.Line);
        for (const TIniFile::Entry& entry : section.Entries) {
            seen += " " + entry.Key + ":" + std::to_string(entry.Line);
        }
        seen += "\n";
    }
    EXPECT_EQ(seen, "[]1 top:2\n[First]3 Key:4 empty:5 KEY:7\n[second]9 x:10\n[FIRST]11 more:12\n");
    EXPECT_THAT(ini.ForeignLines(), ElementsAre(6));
}

TEST(IniFile, WritesBackWhatItDidNotChange) {
    for (const std::string& text :
         {std::string(Sample), std::string(), std::string("a=1\r\n[x]\r\n\xE9=\xFF\r\n"),
          std::string("\xEF\xBB\xBF[x]\ny=1\n"), std::string("[unclosed\n=novalue\n")}) {
        EXPECT_EQ(TIniFile(text).ToText(), text);
    }
    EXPECT_EQ(TIniFile("\xEF\xBB\xBF[x]\ny=1").Read("x", "y"), "1");
}

TEST(IniFile, ChangesOnlyTheLinesThatItIsAskedTo) {
    TIniFile ini("[a]\r\nk=1\r\n; tail\r\n");
    ini.Write("A", "K", "2");
    ini.Write("a", "new", " 3\n4 ");
    ini.Write("b", "x", "5");
    ini.Write("B", "y", "6");
    ini.Write("", "top", "0");
    EXPECT_EQ(ini.ToText(),
              "top=0\r\n[a]\r\nK=2\r\nnew=3 4\r\n; tail\r\n\r\n[b]\r\nx=5\r\ny=6\r\n");
    EXPECT_EQ(ini.Read("", "top"), "0");
    EXPECT_TRUE(ini.Erase("a", "k"));
    EXPECT_FALSE(ini.Erase("a", "k"));
    EXPECT_TRUE(ini.EraseSection("b"));
    EXPECT_FALSE(ini.EraseSection("b"));
    EXPECT_EQ(ini.ToText(), "top=0\r\n[a]\r\nnew=3 4\r\n; tail\r\n\r\n");

    TIniFile fresh;
    fresh.Write("s", "k", "v");
    EXPECT_EQ(fresh.ToText(), "[s]\nk=v\n");
}

// A look-up that walks the section would take minutes here.
TEST(IniFile, ManyKeysAreWrittenAndFound) {
    constexpr int Count = 100'000;
    TIniFile ini;
    for (int i = 0; i < Count; ++i) {
        ini.Write("ids", "Id" + std::to_string(i), std::to_string(i));
    }
    const TIniFile again(ini.ToText());
    for (int i = 0; i < Count; ++i) {
        ASSERT_EQ(again.Read("IDS", "id" + std::to_string(i)), std::to_string(i));
    }
    EXPECT_FALSE(again.HasKey("ids", "Id" + std::to_string(Count)));
}

} // namespace
} // namespace vorel
