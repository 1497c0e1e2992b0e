#include "ElfImage.h"
#include "ObjectCodeFixture.h"
#include "objectcode/Rt_BinaryFileLoader.h"
#include "objectcode/Rt_ElfFileLoader.h"
#include "objectcode/Rt_ObjectFileLoader.h"

namespace vorel {
namespace {

class ElfTest : public ObjectCodeTest {
protected:
    bool Load(const std::string& bytes) {
        return LoadObjectFile(Host, Write("a.elf", bytes), Collect(), &Report);
    }
    TObjectFileReport Report;
};

const std::vector<std::string> InvalidMessages = {"a.elf is not an valid ELF file",
                                                  "Errors Found When Loading Elf File: a.elf\r\r"};

TEST_F(ElfTest, DeliversCodeAndConstantsInOrderOfAddress) {
    const TElfImage elf({{".text.startup", 1, 6, 0x80000000, "cd"},
                         {".TEXT", 1, 2, 0x30, "U"},
                         {".text", 1, 2, 0x20, "ab"},
                         {".rodata.x", 7, 2, 0x10, "r"},
                         {".text1", 8, 2, 0x40, "", 3},
                         {".text", 1, 4, 0, "not allocated"},
                         {".text", 2, 2, 0, "no bit of the type"},
                         {".text", 1, 2, 0, ""},
                         {".data", 1, 3, 0, "data"}});
    ASSERT_TRUE(Load(elf.Bytes));
    EXPECT_EQ(Blocks, (std::vector<TBlock>{{0x10, 1, {'r'}},
                                           {0x20, 2, {'a', 'b'}},
                                           {0x40, 3, {0, 0, 0}},
                                           {0x80000000, 2, {'c', 'd'}}}));
    EXPECT_EQ(Report.BlockCount, 4);
    EXPECT_EQ(Report.ByteCount, 8);
    EXPECT_EQ(Report.Remark, "");

    Image->fill(0xDEAD);
    EXPECT_TRUE(
        LoadObjectFileToImage(Host, Write("a.o", elf.Bytes), *Image, 4, ErrorCount, MaxAddress));
    EXPECT_EQ((*Image)[0x21], TMemoryWord{'b'});
    EXPECT_EQ((*Image)[0x30], TMemoryWord{'U'});
    EXPECT_EQ((*Image)[0x10], 0U) << "constants do not go into an image";
    EXPECT_EQ((*Image)[0x40], 0U);
    EXPECT_EQ(MaxAddress, 0x31);
    EXPECT_EQ(ErrorCount, 0);
}

TEST_F(ElfTest, ASectionBeyondTheFileIsZerosWithinReason) {
    TElfImage elf({{".text", 1, 2, 0xFFFE, "abc", 60000}});
    ASSERT_TRUE(Load(elf.Bytes));
    ASSERT_EQ(Blocks.size(), 1U);
    EXPECT_EQ(Blocks[0].Count, 60000);
    EXPECT_EQ(Blocks[0].Words[2], TMemoryWord{'c'});
    EXPECT_EQ(Blocks[0].Words.back(), 0U);
    EXPECT_TRUE(LoadElfToImage(Host, Write("a", elf.Bytes), *Image, ErrorCount, MaxAddress));
    EXPECT_EQ((*Image)[0xFFFF], TMemoryWord{'b'});
    EXPECT_EQ(MaxAddress, 0xFFFE + 60000);

    ASSERT_TRUE(Load(TElfImage({{".text", 1, 2, 0, "abc", 0xFFFFFFFF}}).Bytes));
    EXPECT_EQ(Report.ByteCount, 3 + 80) << "what the file holds: the data and two headers";
    EXPECT_NE(Report.Remark, "");

    elf = TElfImage({{".text", 1, 2, 0x20, "abc"}});
    elf.Set(elf.Bytes.size() - 40 + 16, 0xFFFFFFF0, 4); // where its data begin
    ASSERT_TRUE(Load(elf.Bytes));
    EXPECT_EQ(Blocks, (std::vector<TBlock>{{0x20, 3, {0, 0, 0}}}));
}

TEST_F(ElfTest, DumpsItsLoadableSections) {
    const TElfImage elf({{".data", 1, 0x7F7, 0xFFFFFFFC, "\1\2\3\xFF\5"},
                         {"odd", 13, 2, 0x10, "a"},
                         {".bss", 8, 3, 0x20, "", 4},
                         {"none", 2, 2, 0, "not loadable"}});
    std::string text;
    TElfFile file(Host, Write("a.elf", elf.Bytes));
    ASSERT_TRUE(file.Read());
    file.Dump([&](const std::string& part) { text += part; });
    EXPECT_EQ(text, "Name=\"odd\"\r\n"
                    "  Type    =UNKNOWN     \r\n"
                    "  Flags   =SHF_ALLOC, \r\n"
                    "  VA_Start=00000010\r\n"
                    "  Size    =00000001\r\n\r\n"
                    "00000010: 00000061 00000000 00000000 00000000 \r\n\r\n\r\n"
                    "Name=\".bss\"\r\n"
                    "  Type    =SHT_NOBITS  \r\n"
                    "  Flags   =SHF_WRITE, SHF_ALLOC, \r\n"
                    "  VA_Start=00000020\r\n"
                    "  Size    =00000004\r\n\r\n"
                    "00000020: 00000000 00000000 00000000 00000000 \r\n\r\n\r\n"
                    "Name=\".data\"\r\n"
                    "  Type    =SHT_PROGBITS\r\n"
                    "  Flags   =SHF_WRITE, SHF_ALLOC, SHF_EXECINSTR, SHF_MERGE, SHF_STRINGS, "
                    "SHF_INFO_LINK, SHF_LINK_ORDER, SHF_OS_NONCONFORMING, SHF_GROUP, SHF_TLS, \r\n"
                    "  VA_Start=FFFFFFFC\r\n"
                    "  Size    =00000005\r\n\r\n"
                    "FFFFFFFC: 00000001 00000002 00000003 000000FF \r\n"
                    "00000000: 00000005 00000000 00000000 00000000 \r\n\r\n\r\n");
}

// Three ways of claiming more than a file can hold.
TEST_F(ElfTest, AbsurdHeadersTakeNeitherMemoryNorTime) {
    const std::string names(".text\0", 6);
    TElfImage same({}); // 65535 times one header, whose section is named by its own data
    same.Bytes = TElfImage({{"", 3, 2, 0, names}}).Bytes;
    const std::size_t headers = same.Bytes.size() - 80;
    same.Set(32, headers + 40, 4);
    same.Set(46, 0, 2);
    same.Set(48, 0xFFFF, 2);
    TElfImage large = same;
    large.Set(headers + 40 + 20, 0xFFFFFFFF, 4);
    TElfImage beyond({{".text", 1, 2, 0, "abc", 0xFFFFFFFF}, {".text", 8, 2, 0, "", 0xFFFFFFFF}});
    for (const TElfImage* elf : {&same, &large, &beyond}) {
        const std::string file = Write("a.elf", elf->Bytes);
        std::int64_t delivered = 0;
        const TMemoryPeak peak;
        EXPECT_TRUE(LoadElfToConsumer(
            Host, file,
            [&](const TMemoryWord*, std::int64_t count, std::int64_t) { delivered += count; }));
        EXPECT_LE(peak.Bytes(), 0x10000 * (5U + 32U)) << "a section's words, lists of headers";
        EXPECT_GT(delivered, 0);
        EXPECT_LE(delivered, 4 * 0x10000);
        std::string remark;
        EXPECT_TRUE(LoadElfToImage(Host, file, *Image, ErrorCount, MaxAddress, &remark));
        EXPECT_EQ(remark.empty(), elf == &beyond) << "what overlaps too often is dropped";
    }
}

TEST_F(ElfTest, RefusesWhatIsNoSectionTable) {
    const std::vector<TElfPart> parts = {{".text", 1, 2, 0, "ab"}};
    struct Case {
        std::size_t Offset, Value, Width;
    };
    for (const Case& c : {Case{48, 0, 2}, Case{48, 0xFFFF, 2}, Case{32, 0xFFFFFFFF, 4}}) {
        TElfImage elf(parts);
        elf.Set(c.Offset, c.Value, c.Width);
        EXPECT_FALSE(Load(elf.Bytes));
        EXPECT_EQ(Host.Messages, InvalidMessages);
        EXPECT_TRUE(Blocks.empty());
    }
    EXPECT_FALSE(LoadElfToConsumer(Host, Write("a.elf", "\177ELG"), Collect()));
    EXPECT_EQ(Host.Messages.front(), "a.elf is not an ELF file");
    EXPECT_FALSE(LoadElfToConsumer(Host, Folder / "none/a.elf", Collect()));
    EXPECT_EQ(Host.Messages, std::vector{InvalidMessages.back()});
}

TEST_F(ElfTest, AFileCutAnywhereGivesItsMessagesOrWhatTheHeadersSay) {
    const std::string whole = TElfImage({{".text", 1, 2, 0x100, "0123456789"}}).Bytes;
    for (std::size_t size = 4; size < whole.size(); ++size) {
        const bool good = Load(whole.substr(0, size));
        EXPECT_EQ(good, size > whole.size() - 40) << "the last header starts beyond the file";
        EXPECT_EQ(Host.Messages, good ? std::vector<std::string>{} : InvalidMessages) << size;
    }
}

class BinaryTest : public ElfTest {};

TEST_F(BinaryTest, TheFrontEndsChooseByExtensionThenByContent) {
    const std::string elf = TElfImage({{".text", 1, 2, 0, "ab"}}).Bytes;
    using enum TObjectFileFormat;
    EXPECT_EQ(GetObjectFileFormat(Write("x.HeX", elf)), IntelHex);
    EXPECT_EQ(GetObjectFileFormat(Write("x.hexa", elf)), Elf);
    EXPECT_EQ(GetObjectFileFormat(Write("x.ihx", ":00000001FF")), Binary);
    EXPECT_EQ(GetObjectFileFormat(Folder / "y.hex/none"), Binary);
    EXPECT_FALSE(LoadObjectFile(Host, Write("elf.hex", elf), Collect()));
    EXPECT_EQ(Host.Messages.front(), "Hex File Error : Line 1");
    EXPECT_FALSE(LoadObjectFile(Host, Folder / "none", Collect(), &Report));
    EXPECT_TRUE(Host.Messages.empty());
    EXPECT_EQ(Report.Remark, "The file does not exist.");
}

TEST_F(BinaryTest, LoadsBytesAsOneBlock) {
    EXPECT_TRUE(Load("\x01\xFF"));
    EXPECT_EQ(Blocks, (std::vector<TBlock>{{0, 2, {1, 0xFF}}}));
    EXPECT_TRUE(Load("a" + std::string(140000, '\xC3')));
    ASSERT_EQ(Blocks.size(), 1U);
    EXPECT_EQ(std::count(Blocks[0].Words.begin(), Blocks[0].Words.end(), 0xC3U), 140000);
    EXPECT_TRUE(Load(""));
    EXPECT_EQ(Blocks, (std::vector<TBlock>{{0, 0, {}}}));
    EXPECT_NE(Report.Remark, "");
}

TEST_F(BinaryTest, AFileThatEndsBeforeItsSizeIsAnError) {
    // The kernel gives its settings a size that they do not fill.
    const std::string file = "/sys/kernel/mm/transparent_hugepage/enabled";
    if (GetFileSize64(file) < 64) {
        GTEST_SKIP() << "there is no " << file;
    }
    const std::vector<std::string> messages = {
        "Errors Found When Loading Bin File: enabled\r\r    Number of Errors: 1"};
    EXPECT_FALSE(LoadBinToConsumer(Host, file, Collect()));
    EXPECT_TRUE(Blocks.empty());
    EXPECT_EQ(Host.Messages, messages);
    Host.Messages.clear();
    EXPECT_FALSE(LoadBinToImage(Host, file, *Image, 4, ErrorCount, MaxAddress));
    EXPECT_EQ(Host.Messages, messages);
    EXPECT_EQ(ErrorCount, 1);
    EXPECT_GT(MaxAddress, 0) << "the words that came";
}

TEST_F(BinaryTest, PutsWordsOfEachSizeIntoAnImage) {
    const std::string file = Write("a.bin", "\x01\x02\x03\x04\x05\x06\x07\x08\x09\x0A\x0B\x0C");
    struct Case {
        std::uint32_t WordSize;
        TMemoryWord First, Last;
        std::int64_t Count;
    };
    for (const Case& c :
         {Case{1, 1, 12, 12}, Case{2, 0x201, 0xC0B, 6}, Case{3, 0x30201, 0xC0B0A, 4},
          Case{4, 0x4030201, 0xC0B0A09, 3}, Case{6, 0, 0, 2}}) {
        EXPECT_TRUE(LoadBinToImage(Host, file, *Image, c.WordSize, ErrorCount, MaxAddress));
        EXPECT_EQ(MaxAddress, c.Count);
        EXPECT_EQ((*Image)[0], c.First);
        EXPECT_EQ((*Image)[static_cast<std::size_t>(c.Count) - 1], c.Last);
    }
    EXPECT_TRUE(Host.Messages.empty());
    for (const std::uint32_t wordSize : {5U, 0U}) {
        EXPECT_TRUE(LoadBinToImage(Host, file, *Image, wordSize, ErrorCount, MaxAddress));
        EXPECT_EQ(MaxAddress, 0);
        EXPECT_EQ(Host.Messages.back(), "Errors Found When Loading Bin File: a.bin\r\r    "
                                        "Filelength : 12 not a divisor of " +
                                            std::to_string(wordSize));
    }
    EXPECT_TRUE(LoadBinToImage(Host, Write("b", std::string(70000, 'x')), *Image, 1, ErrorCount,
                               MaxAddress));
    EXPECT_EQ(MaxAddress, 70000) << "words beyond the image are dropped, and counted";
}

} // namespace
} // namespace vorel
