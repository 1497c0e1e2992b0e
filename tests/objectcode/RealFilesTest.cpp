// Files made by stock tool chains, against what stock tools say of them (expected.json). They are
// in objectcode in $VOREL_TEST_DATA, or in a folder beside the source tree.
#include "ObjectCodeFixture.h"
#include "objectcode/Rt_ObjectFileLoader.h"

#include <nettle/sha2.h>
#include <nlohmann/json.hpp>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <map>

namespace vorel {
namespace {

using nlohmann::json;
using TMemory = std::map<std::int64_t, char>;
using TDigests = std::multimap<std::int64_t, std::string>; // SHA-256 of blocks by their addresses

std::int64_t Number(const json& text) {
    return std::stoll(text.get<std::string>(), nullptr, 16);
}

std::string ReadWhole(const std::filesystem::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::string Sha256Of(const std::string& bytes) {
    sha256_ctx context;
    std::array<std::uint8_t, SHA256_DIGEST_SIZE> digest{};
    sha256_init(&context);
    sha256_update(&context, bytes.size(), reinterpret_cast<const std::uint8_t*>(bytes.data()));
    sha256_digest(&context, digest.size(), digest.data());
    std::string text;
    for (const std::uint8_t byte : digest) {
        text += LowerCase(ToHex(byte, 2));
    }
    return text;
}

class RealFilesTest : public ObjectCodeTest {
protected:
    void SetUp() override {
        std::ifstream stream(Data / "expected.json");
        if (!stream) {
            GTEST_SKIP() << "no object code files in " << Data;
        }
        Expected = json::parse(stream);
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
    TDigests Digests() const {
        TDigests digests;
        for (const TBlock& block : Blocks) {
            if (block.Count > 0) {
                digests.emplace(block.Address, Sha256Of({block.Words.begin(), block.Words.end()}));
            }
        }
        return digests;
    }

    const char* const Given = std::getenv("VOREL_TEST_DATA");
    const std::filesystem::path Data =
        std::filesystem::path(Given != nullptr ? Given : VOREL_SOURCE_DIR "/../shared/data") /
        "objectcode";
    json Expected;
    TObjectFileReport Report;
};

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
    struct TBad {
        int First;
        int Count;
    };
    // Other readers take blank lines; they refuse wrong types and wrong lengths of addresses.
    const std::map<std::string, TBad> badLines = {{"blank_lines.hex", {2, 26}},
                                                  {"no_colon.hex", {1, 26}},
                                                  {"bad_checksum.hex", {14, 1}},
                                                  {"bad_digit.hex", {14, 1}},
                                                  {"bad_short_line.hex", {14, 1}}};
    for (const auto& [path, expected] : Expected["hex"].items()) {
        const std::string name(FileNameOf(path));
        std::vector<std::string> messages;
        if (const auto bad = badLines.find(name); bad != badLines.end()) {
            messages = {"Hex File Error : Line " + std::to_string(bad->second.First),
                        "Errors Found When Loading Hex File: " + name +
                            "\r\r     Lines With Errors: " + std::to_string(bad->second.Count)};
        }
        EXPECT_EQ(Load(path), messages.empty()) << name;
        EXPECT_EQ(Host.Messages, messages) << name;
        const json& types = expected["record_types"];
        // Segment addresses are not followed, and an end record does not end the file.
        if (messages.empty() && types.is_object() && !types.contains("02") &&
            name != "after_end_record.hex") {
            CompareRanges(Delivered(), expected["ranges"], name);
        }
    }
}

TEST_F(RealFilesTest, IntelHexGoesItsOwnWayWhereReadersDiffer) {
    ASSERT_TRUE(Load("hex/after_end_record.hex"));
    EXPECT_EQ(Delivered()[0], 0) << "the line behind the end record is read";
    ASSERT_TRUE(Load("hex/ppc_rom_ram.hex"));
    EXPECT_EQ(Digests(),
              (TDigests{{0, Expected["hex"]["hex/ppc_rom_ram.hex"]["ranges"][1]["sha256"]}}));
    ASSERT_TRUE(Load("hex/page_over_segment.hex"));
    EXPECT_EQ(Blocks, (std::vector<TBlock>{{0xFFFE, 4, {0xAA, 0xBB, 0xCC, 0xDD}}}));

    std::string segment(65536, '\0');
    const std::string data = ReadWhole(Data / "bin/data_140000.bin");
    for (std::size_t i = 0; i < 70000; ++i) {
        segment[(0xFFF0 + i) % segment.size()] = data.at(i);
    }
    ASSERT_TRUE(Load("hex/cross64k_segment.hex"));
    EXPECT_EQ(Digests(), (TDigests{{0, Sha256Of(segment)}}));
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

TDigests CodeOf(const json& sections) {
    TDigests code;
    for (const json& section : sections) {
        const auto name = section["name"].get<std::string>();
        if ((name.starts_with(".text") || name.starts_with(".rodata")) && section["size"] > 0) {
            code.emplace(Number(section["address"]), section["sha256"]);
        }
    }
    return code;
}

TEST_F(RealFilesTest, ElfDeliversItsCodeSectionsOnceTheirNamesAreFound) {
    for (const auto& [path, expected] : Expected["elf"].items()) {
        const std::string name(FileNameOf(path));
        const bool good = expected["expect"] != "refuse";
        EXPECT_EQ(Load(path), good) << name;
        if (!good) {
            EXPECT_EQ(Host.Messages, (std::vector<std::string>{
                                         name + " is not an valid ELF file",
                                         "Errors Found When Loading Elf File: " + name + "\r\r"}));
            EXPECT_TRUE(Blocks.empty());
            continue;
        }
        const TDigests code = CodeOf(expected["alloc_sections"]);
        // Where there are symbols, their names stand in the first string table.
        const bool stripped = name == "ppc_stripped.elf" || name == "ppc_libc_static.elf";
        EXPECT_EQ(Digests(), stripped ? code : TDigests()) << name;
        EXPECT_EQ(Report.Remark.find("Strip the file") == std::string::npos, stripped) << name;
        const std::string elf = WithNamesFirst(ReadWhole(Data / path));
        ASSERT_TRUE(LoadObjectFile(Host, Write("a.elf", elf), Collect()));
        EXPECT_EQ(Digests(), code) << name;
        EXPECT_TRUE(std::is_sorted(Blocks.begin(), Blocks.end(), [](const auto& a, const auto& b) {
            return a.Address < b.Address;
        })) << name;
    }
}

} // namespace
} // namespace vorel
