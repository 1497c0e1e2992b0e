#include "bsdl/BSDLLibrary.h"
#include "bsdl/BsdlTestSupport.h"

#include <gmock/gmock.h>
#include <zip.h>

namespace vorel {
namespace {

using testing::ElementsAre;
using testing::StartsWith;
using testing::UnorderedElementsAre;

// Writes an archive with these entries. libzip refuses equal names, so entries may be given a
// place-holder name of the same length, which `patches` replace in the finished bytes.
std::string WriteZip(const TTempFolder& folder, const std::string& name,
                     const std::vector<std::pair<std::string, std::string>>& entries,
                     const std::vector<std::pair<std::string, std::string>>& patches = {}) {
    const std::string path = folder / name;
    zip_t* archive = zip_open(path.c_str(), ZIP_CREATE | ZIP_TRUNCATE, nullptr);
    for (const auto& [entry, contents] : entries) {
        zip_source_t* source = zip_source_buffer(archive, contents.data(), contents.size(), 0);
        EXPECT_GE(zip_file_add(archive, entry.c_str(), source, 0), 0) << entry;
    }
    EXPECT_EQ(zip_close(archive), 0);
    std::string bytes = ReadWholeFile(path).value_or("");
    for (const auto& [from, to] : patches) {
        for (std::size_t at = 0; (at = bytes.find(from, at)) != std::string::npos;) {
            bytes.replace(at, to.size(), to);
        }
    }
    return folder.Write(name, bytes);
}

std::vector<std::string> Names(const std::string& folder) {
    std::vector<std::string> names;
    for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
        names.push_back(entry.path().lexically_relative(folder).string());
    }
    return names;
}

class TLibraryTest : public testing::Test {
protected:
    TTempFolder Folder;
    std::string Temporary = std::filesystem::path(Folder.Write("temp/x/keep", "")).parent_path();
    std::string Root = Folder / "Library";
    TRecordingHost Host;
    TZipExtractor Zip;
    TBSDLLibrary Library{Host, Zip, Root, Temporary};
};

TEST_F(TLibraryTest, LoadsTheFirstEntityOfAFile) {
    bool hadError = true;
    EXPECT_EQ(Library.LoadBsdlFile(Folder / "none.bsd", hadError), nullptr);
    EXPECT_FALSE(hadError);
    EXPECT_EQ(Library.LoadBsdlFile(Folder.Path(), hadError), nullptr) << "a folder";
    const std::string path = Folder.Write("two.bsd", "entity B is end;\nentity A is end;");
    const std::unique_ptr<TBSDLEntity> entity = Library.LoadBsdlFile(path, hadError);
    ASSERT_NE(entity, nullptr);
    EXPECT_EQ(entity->Name, "A");
    EXPECT_EQ(entity->FileName, path);
    EXPECT_FALSE(hadError);
    EXPECT_EQ(ReadWholeFile(Temporary + "/BSDL Parser.log"), "New Entity:B\nNew Entity:A\n");
}

TEST_F(TLibraryTest, KeepsWhatStoodBeforeAnError) {
    bool hadError = false;
    const std::string path = Folder.Write(
        "bad.bsd", EntityText("attribute INSTRUCTION_LENGTH of E : entity is 5; port (a;);"));
    const std::unique_ptr<TBSDLEntity> entity = Library.LoadBsdlFile(path, hadError);
    EXPECT_TRUE(hadError);
    ASSERT_NE(entity, nullptr);
    EXPECT_EQ(entity->InstructionLength, 5);
    EXPECT_THAT(Host.Messages,
                ElementsAre(StartsWith("VHDL|bad.bsd|[Error]|Expected : at Line: 2")));
    EXPECT_EQ(Library.LoadBsdlFile(Folder.Write("p.bsd", "package P is end;"), hadError), nullptr);
    EXPECT_FALSE(hadError);
}

TEST_F(TLibraryTest, ResolvesPathsBelowTheLibrary) {
    EXPECT_EQ(Library.ResolveBsdlPath("a.bsd", "V", "", "F"), Root + "/BSDL/V/F/a.bsd");
    EXPECT_EQ(Library.ResolveBsdlPath("a.bsd", "V", "/base", "F"), "/base/BSDL/V/F/a.bsd");
    for (const std::string path : {"/dir/a.bsd", "C:\\dir\\a.bsd", "\\\\host\\a.bsd"}) {
        EXPECT_EQ(Library.ResolveBsdlPath(path, "V", "/base", "F"), path);
    }
}

TEST_F(TLibraryTest, FindsFilesLooseUnpackedOrPacked) {
    EXPECT_EQ(Library.FindBsdlFile(Folder / "dir/"), "");
    const std::string path = Folder / "x.bsd";
    EXPECT_EQ(Library.FindBsdlFile(path), "");
    WriteZip(Folder, "x.Zip", {{"other.bsd", "other"}});
    EXPECT_EQ(Library.FindBsdlFile(path), "") << "the archive does not hold the file";
    EXPECT_EQ(ReadWholeFile(Temporary + "/other.bsd"), "other");
    WriteZip(Folder, "x.Zip", {{"deep/x.bsd", "packed"}});
    EXPECT_EQ(Library.FindBsdlFile(path), Temporary + "/x.bsd");
    WriteZip(Folder, "x.Zip", {{"deep/x.bsd", "changed"}});
    EXPECT_EQ(ReadWholeFile(Library.FindBsdlFile(path)), "packed") << "the copy stays";
    Folder.Write("x.bsd", "loose");
    EXPECT_EQ(Library.FindBsdlFile(path), path);
    WriteZip(Folder, "y.zip", {{"Y.bsd", ""}, {"y.bsd", "lower"}});
    EXPECT_EQ(Library.FindBsdlFile(Folder / "y.bsd"), Temporary + "/y.bsd");
}

TEST_F(TLibraryTest, ReadsTheIdMapOnce) {
    const std::string map = "BSDL/Generic/BSDL_IdMap.Txt";
    Folder.Write("Library/" + map, "; 1=11\n XX1 = 0111 \nno equals sign\r\nX0 = 1\nX0 = X10=\n");
    const std::vector<std::tuple<std::string, std::uint32_t, std::string>> cases{
        {"X X1", 7, "X X1"}, // mapped after its blanks are gone
        {"X0", 0, "X0"},     // the later line counts, and "10=" is no number
        {"1", 1, "1"},       // the line is a comment
        {"1X1X,0000", 10, "1X1X"},
        {"xx11", 3, "xx11"},
        {"11x1", 0, "11x1"},
        {"B 101\r", 5, "B 101\r"},
        {std::string(32, 'X'), 0, std::string(32, 'X')},
        {"", 0, ""},
    };
    for (const auto& [given, value, left] : cases) {
        std::string pattern = given;
        EXPECT_EQ(Library.BsdlIdPatternToValue(pattern), value) << given;
        EXPECT_EQ(pattern, left);
    }
    Folder.Write("Library/" + map, "1 = 0\n");
    std::string pattern = "1";
    EXPECT_EQ(Library.BsdlIdPatternToValue(pattern), 1U);
}

class TZipTest : public testing::Test {
protected:
    bool Extract(const std::string& archive, const TZipLimits& limits = {}) {
        return TZipExtractor(limits).ExtractAll(archive, Target.Path());
    }

    TTempFolder Source;
    TTempFolder Target;
};

TEST_F(TZipTest, FlattensAndReplaces) {
    Target.Write("a.bsd", "old");
    const std::string archive = WriteZip(Source, "a.zip",
                                         {{"d1/a.bsd", "first"},
                                          {"d2/a.bsd", "last"},
                                          {"../../up.bsd", "up"},
                                          {"/abs.bsd", "abs"},
                                          {"C:drive.bsd", "drive"},
                                          {"w\\back.bsd", "back"},
                                          {"folder/", ""}});
    EXPECT_TRUE(Extract(archive));
    EXPECT_THAT(Names(Target.Path()),
                UnorderedElementsAre("a.bsd", "abs.bsd", "back.bsd", "drive.bsd", "up.bsd"));
    EXPECT_EQ(Target.Read("a.bsd"), "last");
}

TEST_F(TZipTest, RefusesNamesThatAreNoFiles) {
    const std::string archive =
        WriteZip(Source, "a.zip",
                 {{"d/..", "1"}, {"e/.", "2"}, {"x:", "3"}, {"nul?.bsd", "4"}, {"good", "5"}},
                 {{"nul?", std::string("nul\0", 4)}});
    EXPECT_FALSE(Extract(archive));
    EXPECT_THAT(Names(Target.Path()), UnorderedElementsAre("good"));
}

TEST_F(TZipTest, DoesNotFollowALinkThatIsThere) {
    const std::string outside = Source.Write("outside", "untouched");
    std::filesystem::create_symlink(outside, Target / "a.bsd");
    std::filesystem::create_directory(Target / "b.bsd");
    const std::string archive = WriteZip(Source, "a.zip", {{"a.bsd", "new"}, {"b.bsd", "new"}});
    EXPECT_FALSE(Extract(archive)) << "a folder is in the way of b.bsd";
    EXPECT_EQ(ReadWholeFile(outside), "untouched");
    EXPECT_EQ(Target.Read("a.bsd"), "new");
    EXPECT_THAT(Names(Target.Path()), UnorderedElementsAre("a.bsd", "b.bsd"));
}

TEST_F(TZipTest, CountsWhatComesOut) {
    const std::string zeros(300'000, '\0');
    const std::string archive =
        WriteZip(Source, "a.zip", {{"1", "small"}, {"2", zeros}, {"3", "small"}, {"4", zeros}});
    EXPECT_FALSE(Extract(archive, {.BytesPerFile = 200'000}));
    EXPECT_THAT(Names(Target.Path()), UnorderedElementsAre("1", "3"));
    EXPECT_FALSE(Extract(archive, {.BytesPerArchive = 400'000}));
    EXPECT_THAT(Names(Target.Path()), UnorderedElementsAre("1", "2", "3"));
    EXPECT_FALSE(Extract(archive, {.Entries = 1}));
}

// The size that the headers state, 300,000, becomes 5; what comes out is counted all the same.
TEST_F(TZipTest, DoesNotTrustStatedSizes) {
    const std::string zeros(300'000, '\0');
    const std::string size("\xE0\x93\x04\x00", 4);
    const std::string archive =
        WriteZip(Source, "a.zip", {{"lying.bsd", zeros}}, {{size, std::string("\x05\0\0\0", 4)}});
    EXPECT_FALSE(Extract(archive, {.BytesPerFile = 200'000}));
    EXPECT_EQ(Target.FileCount(), 0);
}

TEST_F(TZipTest, LeavesNothingOfDamagedEntries) {
    Target.Write("a.bsd", "old");
    const std::string text = "stored as it stands";
    EXPECT_FALSE(Extract(WriteZip(Source, "crc.zip", {{"a.bsd", text}}, {{"stored", "st0red"}})));
    EXPECT_EQ(Target.Read("a.bsd"), "old");
    EXPECT_EQ(Target.FileCount(), 1);
    const std::string whole = ReadWholeFile(WriteZip(Source, "b.zip", {{"b", text}})).value_or("");
    for (std::size_t length = 0; length < whole.size(); length += 7) {
        EXPECT_FALSE(Extract(Source.Write("cut.zip", whole.substr(0, length))));
    }
    EXPECT_FALSE(Extract(Source / "none.zip"));
    EXPECT_EQ(Target.FileCount(), 1);
}

} // namespace
} // namespace vorel
