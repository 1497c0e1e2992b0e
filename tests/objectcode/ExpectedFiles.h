// What object code files made by stock tool chains deliver. The files come with what stock tools
// say of them (expected.json); this translates it by the rules of our readers.
#pragma once

#include <cstdint>
#include <filesystem>
#include <string>
#include <vector>

namespace vorel {

struct TExpectedBlock {
    std::int64_t Address;
    std::int64_t Length;
    std::string Sha256;

    friend bool operator==(const TExpectedBlock&, const TExpectedBlock&) = default;
};

using TExpectedBlocks = std::vector<TExpectedBlock>;

struct TExpectedFile {
    std::string Name;   // below the folder: "hex/big_1200007.hex"
    std::string Format; // "hex", "elf", "bin"
    bool Loaded = true; // the loader's result
    std::vector<std::string> Messages;
    TExpectedBlocks Blocks; // those with at least one byte
    TExpectedBlocks Code;   // of a good ELF file: the sections that count, should names be found
};

// The folder of the files: objectcode in $VOREL_TEST_DATA, or in a folder beside the source tree.
std::filesystem::path ObjectCodeData();

// All files of the folder; none when it is not there.
std::vector<TExpectedFile> ReadExpectedFiles(const std::filesystem::path& folder);

std::string ReadWhole(const std::filesystem::path& file);
std::string Sha256Of(const std::string& bytes);

} // namespace vorel
