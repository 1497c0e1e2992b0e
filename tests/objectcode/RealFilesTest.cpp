// Files made by stock tool chains, against what stock tools say of them.
#include "ExpectedFiles.h"
#include "ObjectCodeFixture.h"
#include "objectcode/Rt_ObjectFileLoader.h"

#include <nlohmann/json.hpp>

#include <map>

namespace vorel {
namespace {

using nlohmann::json;
using TMemory = std::map<std::int64_t, char>;

std::int64_t Number(const json& text) {
    return std::stoll(text.get<std::string>(), nullptr, 16);
}

class RealFilesTest : public ObjectCodeTest {
protected:
    void SetUp() override {
        if (Expected.empty()) {
            GTEST_SKIP() << "no object code files in " << Data;
        }
        HexFacts = json::parse(ReadWhole(Data / "expected.json"))["hex"];
    }

    bool Load(const std::string& name) {
        return LoadObjectFile(Host, (Data / name).string(), Collect(), &Report);
    }
    TMemory Delivered() const {
        TMemory memory;
        for (const TBlock& block : Blocks) {
            for (std::size_t i = 0; i < block.Words.size(); ++i) {
                memory[block.Address + static_cast<std::int64_t>(i)] =
                    static_cast<char>(block.Words[i]);
            }
        }
        return memory;
    }
    TExpectedBlocks Digests() const {
        TExpectedBlocks digests;
        for (const TBlock& block : Blocks) {
            if (block.Count > 0) {
                const std::string bytes(block.Words.begin(), block.Words.end());
                digests.push_back({block.Address, block.Count, Sha256Of(bytes)});
            }
        }
        return digests;
    }

    std::filesystem::path Data = ObjectCodeData();
    const std::vector<TExpectedFile>& Expected = AllFiles();
    json HexFacts;
    TObjectFileReport Report;

private:
    static const std::vector<TExpectedFile>& AllFiles() {
        static const std::vector<TExpectedFile> files = ReadExpectedFiles(ObjectCodeData());
        return files;
    }
};

TEST_F(RealFilesTest, EveryFileGivesItsBlocksAndMessages) {
    for (const TExpectedFile& file : Expected) {
        EXPECT_EQ(Load(file.Name), file.Loaded) << file.Name;
        EXPECT_EQ(Host.Messages, file.Messages) << file.Name;
        EXPECT_TRUE(Digests() == file.Blocks) << file.Name;
        const bool namesElsewhere = file.Blocks.empty() && !file.Code.empty();
        EXPECT_EQ(Report.Remark.find("Strip the file") != std::string::npos, namesElsewhere)
            << file.Name;
    }
}

// Takes the ranges out of `memory`, comparing each. What is left must be gaps between them.
void CompareRanges(TMemory memory, const json& ranges, const std::string& file) {
    for (const json& range : ranges) {
        std::string bytes;
        for (std::int64_t at = Number(range["start"]); at <= Number(range["end"]); ++at) {
            const auto found = memory.find(at);
            ASSERT_TRUE(found != memory.end()) << file << ": nothing at " << at;
            bytes.push_back(found->second);
            memory.erase(found);
        }
        EXPECT_EQ(Sha256Of(bytes), range["sha256"]) << file << " from " << range["start"];
    }
    for (const auto& [address, byte] : memory) {
        ASSERT_EQ(byte, 0) << file << ": a gap at " << address << " is not zero";
    }
}

TEST_F(RealFilesTest, IntelHexGivesTheRangesOfOtherReaders) {
    for (const auto& [name, expected] : HexFacts.items()) {
        const json& types = expected["record_types"];
        // Segment addresses are not followed, and an end record does not end the file.
        if (types.is_object() && !types.contains("02") && name != "hex/after_end_record.hex" &&
            Load(name)) {
            CompareRanges(Delivered(), expected["ranges"], name);
        }
    }
}

TEST_F(RealFilesTest, IntelHexGoesItsOwnWayWhereReadersDiffer) {
    ASSERT_TRUE(Load("hex/after_end_record.hex"));
    EXPECT_EQ(Delivered()[0], 0) << "the line behind the end record is read";
    ASSERT_TRUE(Load("hex/ppc_rom_ram.hex"));
    ASSERT_EQ(Blocks.size(), 1U);
    EXPECT_EQ(Blocks[0].Address, 0);
    EXPECT_EQ(Digests()[0].Sha256, HexFacts["hex/ppc_rom_ram.hex"]["ranges"][1]["sha256"]);
    ASSERT_TRUE(Load("hex/page_over_segment.hex"));
    EXPECT_EQ(Blocks, (std::vector<TBlock>{{0xFFFE, 4, {0xAA, 0xBB, 0xCC, 0xDD}}}));

    std::string segment(65536, '\0');
    const std::string data = ReadWhole(Data / "bin/data_140000.bin");
    for (std::size_t i = 0; i < 70000; ++i) {
        segment[(0xFFF0 + i) % segment.size()] = data.at(i);
    }
    ASSERT_TRUE(Load("hex/cross64k_segment.hex"));
    EXPECT_EQ(Digests()[0].Sha256, Sha256Of(segment));
}

// Takes the type from each string table before that of the section names: as if stripped.
std::string WithNamesFirst(std::string elf) {
    const auto number = [&](std::size_t offset, std::size_t width) {
        std::size_t value = 0;
        for (std::size_t i = 0; i < width; ++i) {
            value = value << 8U | static_cast<std::uint8_t>(elf.at(offset + i));
        }
        return value;
    };
    for (std::size_t i = 0; i < number(50, 2); ++i) {
        const std::size_t type = number(32, 4) + number(46, 2) * i + 4;
        if (number(type, 4) == 3) {
            elf.replace(type, 4, 4, '\0');
        }
    }
    return elf;
}

TEST_F(RealFilesTest, ElfDeliversItsCodeSectionsOnceTheirNamesAreFound) {
    for (const TExpectedFile& file : Expected) {
        if (file.Code.empty()) {
            continue;
        }
        const std::string elf = WithNamesFirst(ReadWhole(Data / file.Name));
        ASSERT_TRUE(LoadObjectFile(Host, Write("a.elf", elf), Collect()));
        EXPECT_TRUE(Digests() == file.Code) << file.Name;
    }
}

} // namespace
} // namespace vorel
