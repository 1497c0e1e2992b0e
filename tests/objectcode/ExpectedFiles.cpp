#include "objectcode/ExpectedFiles.h"

#include "support/Text.h"

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

std::int64_t Number(const std::string& text) {
    return std::stoll(text, nullptr, 16);
}

std::string NameOf(const std::string& path) {
    return std::filesystem::path(path).filename().string();
}

// Lines behind an end record count, segment addresses do not, and a block goes from its lowest to
// its highest address with zeros in its gaps.
TExpectedBlocks BlocksOfHex(const std::vector<std::string>& lines) {
    TExpectedBlocks blocks;
    std::map<std::int64_t, char> segment;
    std::int64_t base = 0;
    const auto close = [&] {
        if (!segment.empty()) {
            const std::int64_t first = segment.begin()->first;
            const std::int64_t length = segment.rbegin()->first + 1 - first;
            std::string bytes(static_cast<std::size_t>(length), '\0');
            for (const auto& [address, byte] : segment) {
                bytes[static_cast<std::size_t>(address - first)] = byte;
            }
            blocks.push_back({base + first, length, Sha256Of(bytes)});
        }
        segment.clear();
    };
    for (const std::string& line : lines) {
        const std::string type = line.substr(7, 2);
        if (type == "04") {
            close();
            base = Number(line.substr(9, 4)) << 16;
        }
        for (std::int64_t i = 0; type == "00" && i < Number(line.substr(1, 2)); ++i) {
            const std::string pair = line.substr(static_cast<std::size_t>(9 + 2 * i), 2);
            segment[Number(line.substr(3, 4)) + i] = static_cast<char>(Number(pair));
        }
    }
    close();
    return blocks;
}

// The line with damage that other readers name; 0 for a file that is good, or good for us: types
// are not checked here, nor the length of an extended address.
std::size_t DamagedLine(const json& expected) {
    const std::string why = expected["own_reader"].value("why", "");
    for (const char* damage : {"checksum", "not hexadecimal"}) {
        if (why.ends_with(damage)) {
            return std::stoul(why.substr(std::string("line ").size()));
        }
    }
    return 0;
}

TExpectedFile HexFile(const std::string& name, const json& expected, const std::string& text) {
    TExpectedFile file{name, "hex", true, {}, {}, {}};
    const std::vector<std::string> lines = SplitLines(text);
    std::vector<std::size_t> bad;
    for (std::size_t number = 1; number <= lines.size(); ++number) {
        if (!lines[number - 1].starts_with(':') || number == DamagedLine(expected)) {
            bad.push_back(number);
        }
    }
    if (bad.empty()) {
        file.Blocks = BlocksOfHex(lines);
        return file;
    }
    file.Loaded = false;
    file.Messages = {"Hex File Error : Line " + std::to_string(bad.front()),
                     "Errors Found When Loading Hex File: " + NameOf(name) +
                         "\r\r     Lines With Errors: " + std::to_string(bad.size())};
    return file;
}

TExpectedBlocks CodeOf(const json& sections) {
    TExpectedBlocks code;
    for (const json& section : sections) {
        const auto name = section["name"].get<std::string>();
        if ((name.starts_with(".text") || name.starts_with(".rodata")) && section["size"] > 0) {
            code.push_back({Number(section["address"]), section["size"], section["sha256"]});
        }
    }
    std::stable_sort(
        code.begin(), code.end(),
        [](const TExpectedBlock& a, const TExpectedBlock& b) { return a.Address < b.Address; });
    return code;
}

TExpectedFile ElfFile(const std::string& name, const json& expected) {
    TExpectedFile file{name, "elf", true, {}, {}, {}};
    if (expected["expect"] == "refuse") {
        file.Loaded = false;
        file.Messages = {NameOf(name) + " is not an valid ELF file",
                         "Errors Found When Loading Elf File: " + NameOf(name) + "\r\r"};
        return file;
    }
    file.Code = CodeOf(expected["alloc_sections"]);
    // Where there are symbols, their names stand in the first string table.
    if (name == "elf/ppc_stripped.elf" || name == "elf/ppc_libc_static.elf") {
        file.Blocks = file.Code;
    }
    return file;
}

TExpectedFile BinFile(const std::string& name, const json& expected) {
    TExpectedFile file{name, "bin", true, {}, {}, {}};
    if (expected["bytes"] > 0) {
        file.Blocks = {{0, expected["bytes"], expected["sha256"]}};
    }
    return file;
}

} // namespace

std::filesystem::path ObjectCodeData() {
    const char* data = std::getenv("VOREL_TEST_DATA");
    return std::filesystem::path(data != nullptr ? data : VOREL_SOURCE_DIR "/../shared/data") /
           "objectcode";
}

std::vector<TExpectedFile> ReadExpectedFiles(const std::filesystem::path& folder) {
    std::ifstream stream(folder / "expected.json");
    if (!stream) {
        return {};
    }
    const json expected = json::parse(stream);
    std::vector<TExpectedFile> files;
    for (const auto& [name, facts] : expected["hex"].items()) {
        files.push_back(HexFile(name, facts, ReadWhole(folder / name)));
    }
    for (const auto& [name, facts] : expected["elf"].items()) {
        files.push_back(ElfFile(name, facts));
    }
    for (const auto& [name, facts] : expected["bin"].items()) {
        files.push_back(BinFile(name, facts));
    }
    return files;
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

} // namespace vorel
