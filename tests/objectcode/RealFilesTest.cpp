// Files made by stock tool chains, against what stock tools say of them.
#include "ObjectCodeFixture.h"
#include "objectcode/Rt_ObjectFileLoader.h"

#include <nettle/sha2.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <cstdlib>
#include <iterator>
#include <map>

namespace vorel {
namespace {

using nlohmann::json;
using TMemory = std::map<std::int64_t, std::uint8_t>;

std::string Digest(const TBytes& bytes) {
    sha256_ctx context;
    std::array<std::uint8_t, SHA256_DIGEST_SIZE> digest{};
    sha256_init(&context);
    sha256_update(&context, bytes.size(), bytes.data());
    sha256_digest(&context, digest.size(), digest.data());
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += LowerCase(ToHex(byte, 2));
    }
    return text;
}

std::int64_t Number(const json& text) {
    return std::stoll(text.get<std::string>(), nullptr, 16);
}

class RealFilesTest : public ObjectCodeTest {
protected:
    void SetUp() override {
        const char* data = std::getenv("VOREL_TEST_DATA");
        Data = std::filesystem::path(data != nullptr ? data : VOREL_SOURCE_DIR "/../shared/data") /
               "objectcode";
        std::ifstream file(Data / "expected.json");
        if (!file) {
            GTEST_SKIP() << "no object code files in " << Data;
        }
        Expected = json::parse(file);
    }

    std::string Contents(const std::string& name) const {
        std::ifstream file(Data / name, std::ios::binary);
        return {std::istreambuf_iterator<char>(file), {}};
    }
    bool Load(const std::string& name) {
        return LoadObjectFile(Host, (Data / name).string(), Collect(), &Report);
    }
    TMemory Delivered() const {
        TMemory memory;
        for (const TBlock& block : Blocks) {
            for (std::size_t i = 0; i < block.Words.size(); ++i) {
                memory[block.Address + static_cast<std::int64_t>(i)] =
                    static_cast<std::uint8_t>(block.Words[i]);
            }
        }
        return memory;
    }
    std::string DigestOfBlock(std::size_t index) const {
        return Digest({Blocks.at(index).Words.begin(), Blocks.at(index).Words.end()});
    }

    std::filesystem::path Data;
    json Expected;
    TObjectFileReport Report;
};

// Takes the ranges out of `memory`, comparing each. What is left must be gaps between them.
void CompareRanges(TMemory memory, const json& ranges, const std::string& file) {
    for (const json& range : ranges) {
        TBytes bytes;
        for (std::int64_t at = Number(range["start"]); at <= Number(range["end"]); ++at) {
            const auto found = memory.find(at);
            ASSERT_TRUE(found != memory.end()) << file << ": nothing at " << at;
            bytes.push_back(found->second);
            memory.erase(found);
        }
        EXPECT_EQ(Digest(bytes), range["sha256"]) << file << " from " << range["start"];
    }
    for (const auto& [address, byte] : memory) {
        ASSERT_EQ(byte, 0) << file << ": a gap at " << address << " is not zero";
    }
}

TEST_F(RealFilesTest, IntelHexGivesTheRangesOfOtherReaders) {
    const std::map<std::string, std::string> refused = {{"hex/bad_checksum.hex", "Line 14"},
                                                        {"hex/bad_digit.hex", "Line 14"},
                                                        {"hex/bad_short_line.hex", "Line 14"},
                                                        {"hex/no_colon.hex", "Line 1"},
                                                        {"hex/blank_lines.hex", "Line 2"}};
    for (const auto& [name, expected] : Expected["hex"].items()) {
        const bool good = Load(name);
        if (const auto refusal = refused.find(name); refusal != refused.end()) {
            EXPECT_FALSE(good) << name;
            EXPECT_EQ(Host.Messages.front(), "Hex File Error : " + refusal->second) << name;
            continue;
        }
        EXPECT_TRUE(good) << name;
        const json& types = expected["record_types"];
        // Segment addresses are not followed, and an end record does not end the file.
        if (types.is_object() && !types.contains("02") && name != "hex/after_end_record.hex") {
            CompareRanges(Delivered(), expected["ranges"], name);
        }
    }
}

TEST_F(RealFilesTest, IntelHexGoesItsOwnWayWhereReadersDiffer) {
    const auto ranges = [&](const char* name) { return Expected["hex"][name]["ranges"]; };
    ASSERT_TRUE(Load("hex/after_end_record.hex"));
    EXPECT_EQ(Delivered()[0], 0) << "the line behind the end record is read";
    ASSERT_TRUE(Load("hex/ppc_rom_ram.hex"));
    ASSERT_EQ(Blocks.size(), 1U);
    EXPECT_EQ(Blocks[0].Address, 0);
    EXPECT_EQ(DigestOfBlock(0), ranges("hex/ppc_rom_ram.hex")[1]["sha256"]);
    ASSERT_TRUE(Load("hex/page_over_segment.hex"));
    EXPECT_EQ(Blocks, (std::vector<TBlock>{{0xFFFE, 4, {0xAA, 0xBB, 0xCC, 0xDD}}}));

    TBytes segment(65536);
    const std::string data = Contents("bin/data_140000.bin");
    for (std::size_t i = 0; i < 70000; ++i) {
        segment[(0xFFF0 + i) % segment.size()] = static_cast<std::uint8_t>(data.at(i));
    }
    ASSERT_TRUE(Load("hex/cross64k_segment.hex"));
    EXPECT_EQ(DigestOfBlock(0), Digest(segment));
}

TEST_F(RealFilesTest, BinaryFilesComeAsOneBlock) {
    for (const auto& [name, expected] : Expected["bin"].items()) {
        ASSERT_TRUE(Load(name));
        ASSERT_EQ(Blocks.size(), 1U);
        EXPECT_EQ(DigestOfBlock(0), expected["sha256"]) << name;
    }
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

json SectionsToDeliver(const json& sections) {
    json wanted = json::array();
    for (const json& section : sections) {
        const auto name = section["name"].get<std::string>();
        if ((name.starts_with(".text") || name.starts_with(".rodata")) && section["size"] > 0) {
            wanted.push_back(section);
        }
    }
    std::stable_sort(wanted.begin(), wanted.end(), [](const json& a, const json& b) {
        return Number(a["address"]) < Number(b["address"]);
    });
    return wanted;
}

TEST_F(RealFilesTest, ElfDeliversItsCodeSectionsUnlessItHasSymbols) {
    for (const auto& [name, expected] : Expected["elf"].items()) {
        if (expected["expect"] == "refuse") {
            EXPECT_FALSE(Load(name)) << name;
            EXPECT_EQ(Host.Messages.size(), 2U) << name;
            continue;
        }
        ASSERT_TRUE(Load(name)) << name;
        const bool stripped = name == "elf/ppc_stripped.elf" || name == "elf/ppc_libc_static.elf";
        EXPECT_EQ(Blocks.empty(), !stripped) << name;
        EXPECT_EQ(Report.Remark.find("Strip the file") != std::string::npos, !stripped) << name;

        ASSERT_TRUE(
            LoadObjectFile(Host, Write("a.elf", WithNamesFirst(Contents(name))), Collect()));
        const json sections = SectionsToDeliver(expected["alloc_sections"]);
        ASSERT_EQ(Blocks.size(), sections.size()) << name;
        for (std::size_t i = 0; i < Blocks.size(); ++i) {
            EXPECT_EQ(Blocks[i].Address, Number(sections[i]["address"])) << name;
            EXPECT_EQ(DigestOfBlock(i), sections[i]["sha256"])
                << name << " " << sections[i]["name"];
        }
    }
}

} // namespace
} // namespace vorel
