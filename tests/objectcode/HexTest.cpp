#include "HexLine.h"
#include "ObjectCodeFixture.h"
#include "core/TableDouble.h"
#include "objectcode/Rt_IntelHexFileLoader.h"
#include "objectcode/Rt_IntelHexFileSaver.h"
#include "support/Errors.h"

namespace vorel {
namespace {

constexpr std::int64_t NoOffset = 0x7FFFFFFF;
const std::string End = ":00000001FF\n";

class HexTest : public ObjectCodeTest {
protected:
    bool Load(const std::string& text) {
        return LoadHexToConsumer(Host, Write("a.hex", text), Collect());
    }
    bool LoadImage(const std::string& text, std::uint32_t wordSize) {
        Image->fill(0xDEAD);
        Host.Messages.clear();
        return LoadHexToImage(Host, Write("a.hex", text), *Image, wordSize, ErrorCount, MaxAddress);
    }
};

TEST(HexRecord, TakesALineByColumns) {
    struct Case {
        std::string Text;
        bool Good;
        TBytes Data;
    };
    const Case cases[] = {
        {":0300300002337A1E and more", true, {0x02, 0x33, 0x7A}},
        {":0300300002337a1e", true, {0x02, 0x33, 0x7A}},
        {":0300300002337A1F", false, {}},
        {"0300300002337A1E", false, {}},
        {"", false, {}},
        {":0000000", false, {}},
        {":00000000", true, {}},              // a missing checksum reads as 0
        {":020000001GFD00", true, {1, 0xFD}}, // what is no digit ends a number
        {":02000000G1FE00", true, {0, 0xFE}},
        {":03000000FD", true, {0xFD, 0, 0}}, // what the line does not hold is 0
        {":F1000000F", true, {0xF, 0}},
        {":D400002C" + std::string(246, '0') + "FFFF", true, {}}, // behind column 255
    };
    for (const Case& c : cases) {
        TBytes line(c.Text.begin(), c.Text.end());
        THexRecord record;
        ASSERT_EQ(record.Parse(line), c.Good) << c.Text;
        for (std::size_t i = 0; i < c.Data.size(); ++i) {
            EXPECT_EQ(record.DataAt(i), c.Data[i]) << c.Text << " byte " << i;
        }
    }
}

TEST_F(HexTest, DeliversOneBlockForEachRunOfDataRecords) {
    const std::string base = HexLine(4, 0, {0x90, 0x01});
    EXPECT_TRUE(Load(HexLine(0, 0x104, {7, 8}) + HexLine(3, 0, {9, 9, 9, 9}) +
                     HexLine(0, 0x100, {1}) + base + HexLine(2, 0, {0x10, 0}) + HexLine(0, 2, {5}) +
                     base + HexLine(4, 0, {}) + HexLine(0, 0, {}) + End +
                     HexLine(0, 0xFFFF, TBytes(16, 3))));
    ASSERT_EQ(Blocks.size(), 3U);
    EXPECT_EQ(Blocks[0], (TBlock{0x100, 6, {1, 0, 0, 0, 7, 8}}));
    EXPECT_EQ(Blocks[1], (TBlock{0x90010002, 1, {5}}));
    ASSERT_EQ(Blocks[2].Address, 0);
    ASSERT_EQ(Blocks[2].Count, 0x1000F) << "the last line runs over the segment's end";
    EXPECT_EQ(Blocks[2].Words[0xFFFE], 0U);
    EXPECT_EQ(Blocks[2].Words[0x1000E], 3U);
    EXPECT_TRUE(Host.Messages.empty());

    EXPECT_TRUE(Load(HexLine(0, 0, TBytes(64, 0xAA)) + HexLine(4, 0, {0, 1}) +
                     HexLine(0, 0, {1, 2, 3, 4}) + HexLine(0, 1, {9}) + HexLine(0, 6, {7}) + End));
    ASSERT_EQ(Blocks.size(), 2U);
    EXPECT_EQ(Blocks[1], (TBlock{0x10000, 7, {1, 9, 3, 4, 0, 0, 7}}))
        << "from zeros, and later records win";
}

TEST_F(HexTest, TheLastBlockComesWhateverItHolds) {
    EXPECT_TRUE(Load(End));
    EXPECT_EQ(Blocks, (std::vector<TBlock>{{NoOffset, -NoOffset, {}}}));
    EXPECT_TRUE(Load(""));
    EXPECT_EQ(Blocks.size(), 1U);
    EXPECT_FALSE(LoadHexToConsumer(Host, Write("a.hex", End), nullptr));
}

TEST_F(HexTest, LinesEndWithAnyLineEnd) {
    const std::string a = HexLine(0, 0, {1});
    const std::string b = HexLine(0, 1, {2});
    for (const char* end : {"\n", "\r\n", "\r"}) {
        std::string text = a.substr(0, a.size() - 1) + end + b.substr(0, b.size() - 1) + end;
        EXPECT_TRUE(Load(text)) << int{*end};
        ASSERT_EQ(Blocks.size(), 1U);
        EXPECT_EQ(Blocks[0].Words, (TMemoryWords{1, 2}));
        EXPECT_FALSE(Load(text + end)) << "a blank line is an error";
        EXPECT_EQ(Host.Messages.front(), "Hex File Error : Line 3");
    }
}

TEST_F(HexTest, TellsTheFirstBadLineAndDeliversNothing) {
    std::string text;
    for (unsigned i = 1; i <= 8; ++i) {
        text +=
            i == 3 || i == 7 ? ":0100000000FE\n" : HexLine(0, i, {static_cast<std::uint8_t>(i)});
    }
    const std::vector<std::string> messages = {
        "Hex File Error : Line 3",
        "Errors Found When Loading Hex File: a.hex\r\r     Lines With Errors: 2"};
    EXPECT_FALSE(Load(text));
    EXPECT_TRUE(Blocks.empty());
    EXPECT_EQ(Host.Messages, messages);
    EXPECT_FALSE(LoadImage(text, 1));
    EXPECT_EQ(Host.Messages, messages);
    EXPECT_EQ(ErrorCount, 2);
    EXPECT_EQ(MaxAddress, 9);
    EXPECT_EQ((*Image)[8], 8U) << "the good lines of an image are used";

    const std::string missing = Folder / "none.hex";
    EXPECT_FALSE(LoadHexToConsumer(Host, missing, Collect()));
    EXPECT_EQ(Host.Messages, (std::vector<std::string>{
                                 "File " + missing + " Not Found",
                                 "Errors Found When Loading Hex File: none.hex\r\r     Lines With "
                                 "Errors: 0"}));
}

TEST_F(HexTest, PutsWordsOfEachSizeIntoAnImage) {
    struct Case {
        std::uint32_t WordSize;
        std::size_t Index;
        TMemoryWords Words;
        std::int64_t MaxAddress;
    };
    const std::string text = HexLine(4, 0, {0, 1}) + HexLine(0, 0x41, {1, 2, 3, 4, 5, 6, 7}) + End;
    const Case cases[] = {
        {1, 0x41, {1, 2, 3, 4, 5, 6, 7, 0}, 0x48},
        {2, 0x41, {0x201, 0x403, 0x605, 0}, 0x44},
        {3, 0x41, {0x30201, 0x60504, 0}, 0x43},
        {4, 0x10, {0x4030201, 0}, 0x42},
        {0, 0x41, {0}, 0},
        {5, 0x41, {0}, 0},
    };
    for (const Case& c : cases) {
        EXPECT_TRUE(LoadImage(text, c.WordSize));
        for (std::size_t i = 0; i < c.Words.size(); ++i) {
            EXPECT_EQ((*Image)[c.Index + i], c.Words[i]) << c.WordSize << ", " << i;
        }
        EXPECT_EQ(MaxAddress, c.MaxAddress) << c.WordSize;
        EXPECT_EQ((*Image)[0], 0U) << "not zeroed";
    }
    EXPECT_TRUE(LoadImage(HexLine(0, 0xFFFE, {1, 2, 3, 4}), 1)) << "beyond the image";
    EXPECT_EQ((*Image)[0xFFFF], 2U);
    EXPECT_EQ(MaxAddress, 0x10002);
}

TEST_F(HexTest, AFileCutAnywhereHasOneBadLineAtMost) {
    const std::string text = HexLine(4, 0, {1, 2}) + HexLine(0, 0x10, TBytes(32, 7)) + End;
    for (std::size_t size = 0; size < text.size(); ++size) {
        const std::string cut = text.substr(0, size);
        const bool atLineEnd = size == 0 || text[size] == '\n' || cut.back() == '\n';
        const auto line = 1 + std::count(cut.begin(), cut.end(), '\n');
        const std::vector<std::string> messages = {
            "Hex File Error : Line " + std::to_string(line),
            "Errors Found When Loading Hex File: a.hex\r\r     Lines With Errors: 1"};
        EXPECT_EQ(Load(cut), atLineEnd) << size;
        EXPECT_EQ(Blocks.size(), atLineEnd ? 1U : 0U) << size;
        EXPECT_EQ(Host.Messages, atLineEnd ? std::vector<std::string>{} : messages) << size;
    }
}

// Records refer to the text; there is one buffer of a segment, and one of its words.
TEST_F(HexTest, MemoryStaysInProportionToTheFile) {
    std::string shortest;
    std::string bad;
    std::string segments;
    for (int i = 0; i < 100000; ++i) {
        shortest += ":00000000\n";
        bad += "\n";
        segments += i < 1000 ? HexLine(4, 0, {1, 2}) + HexLine(0, 0xFFFF, TBytes(255, 1)) : "";
    }
    const TBlockConsumer ignore = [](const TMemoryWord*, std::int64_t, std::int64_t) {};
    for (const std::string& text : {shortest, bad, segments}) {
        const std::string file = Write("a.hex", text);
        const TMemoryPeak peak;
        LoadHexToConsumer(Host, file, ignore);
        EXPECT_LE(peak.Bytes(), 6 * (text.size() + 66048)) << text.substr(0, 10);
    }
}

// The reading of a memory whose location A holds A * 3 + 0xABCD00, and whose end fails.
constexpr std::int64_t Failing = 0x100000;
Status ReadCounting(IMemorySpace* /*memory*/, std::uint32_t* buffer, std::int64_t address,
                    std::int32_t count) {
    for (std::int32_t i = 0; i < count; ++i) {
        buffer[i] = static_cast<std::uint32_t>((address + i) * 3 + 0xABCD00);
    }
    return address >= Failing ? StatusFromOsError(31) : StatusOk;
}

class HexSaverTest : public HexTest {
protected:
    HexSaverTest() { Memory.Replace(&IMemorySpace::ReadBlock, &ReadCounting); }

    test::TTableDouble<IMemorySpace> Memory;
};

TEST_F(HexSaverTest, WritesRecords) {
    struct Case {
        std::int32_t PerLine;
        std::int64_t ReadAddress, Size, FileAddress;
        std::string Text;
    };
    const Case cases[] = {
        {32, 0, 0, 0, ""},
        {32, 0, -5, 0, ""},
        {4, 1, 6, 0xFFFE, ":04FFFE000306090CE1\r\n:020000040001F9\r\n:020002000F12DB\r\n"},
        {2, 1, 3, 0x10000, ":020000040001F9\r\n:020000000306F5\r\n:0100020009F4\r\n"},
        {2, 0, 4, 0x1FFFE,
         ":020000040001F9\r\n:02FFFE000003FE\r\n:020000040002F8\r\n:020000000609EF\r\n"},
        {1, 0, 1, 0x5FFFF0000, ":02000004FFFFFC\r\n:0100000000FF\r\n"},
    };
    for (const Case& c : cases) {
        EXPECT_TRUE(SaveMemoryAsHex(Host, Memory.Get(), "out.hex", c.PerLine, c.ReadAddress, c.Size,
                                    c.FileAddress));
        EXPECT_EQ(Host.Saved, c.Text + ":00000001FF\r\n");
        EXPECT_EQ(Host.SavedAs, "out.hex");
    }
    EXPECT_FALSE(SaveMemoryAsHex(Host, nullptr, "out.hex", 32, 0, 1, 0));
    EXPECT_FALSE(SaveMemoryAsHex(Host, Memory.Get(), "out.hex", 0, 0, 1, 0));
}

TEST_F(HexSaverTest, AFailedReadOrSaveEndsTheWritingAsAnException) {
    EXPECT_THROW(SaveMemoryAsHex(Host, Memory.Get(), "out.hex", 32, Failing - 64, 100, 0),
                 EVorelError);
    EXPECT_EQ(Host.SavedAs, "");
    Host.SaveStatus = StatusError;
    EXPECT_THROW(SaveMemoryAsHex(Host, Memory.Get(), "out.hex", 32, 0, 32, 0), EVorelError);
    EXPECT_EQ(Host.WaitCursors, 0);
}

TEST_F(HexSaverTest, ReadsBackWhatItWrote) {
    ASSERT_TRUE(SaveMemoryAsHex(Host, Memory.Get(), "out.hex", 32, 0x1234, 150000, 0xFFF0));
    ASSERT_TRUE(Load(Host.Saved));
    std::int64_t next = 0xFFF0;
    for (const TBlock& block : Blocks) {
        ASSERT_EQ(block.Address, next);
        for (const TMemoryWord word : block.Words) {
            ASSERT_EQ(word, static_cast<std::uint8_t>((next - 0xFFF0 + 0x1234) * 3));
            ++next;
        }
    }
    EXPECT_EQ(next, 0xFFF0 + 150000);
    EXPECT_EQ(Blocks.size(), 4U);
}

} // namespace
} // namespace vorel
