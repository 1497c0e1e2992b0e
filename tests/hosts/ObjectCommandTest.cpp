// Object code files as a user meets them: vorelctl object, and load into the virtual board.
#include "hosts/RunProgram.h"
#include "knowledge/TempFolder.h"
#include "objectcode/ElfImage.h"
#include "objectcode/HexLine.h"

#include <gmock/gmock.h>

#include <map>

namespace vorel::host {
namespace {

using testing::AllOf;
using testing::HasSubstr;
using testing::StartsWith;

struct ObjectFiles : testing::Test {
    TRun Run(const std::string& arguments) const {
        return RunProgram(VOREL_TREE "/System/vorelctl", Folder / "home", arguments);
    }
    // Runs the command; its output with the status in front of it.
    std::string Told(const std::string& arguments) const {
        const TRun run = Run(arguments);
        return std::to_string(run.ExitStatus) + " " + run.Output;
    }

    TTempFolder Folder;
};

const std::vector<TElfPart> Sections = {{".text", 1, 6, 0x100, "codecode"},
                                        {".rodata", 1, 2, 0x108, "data"}};
const std::string SymbolNames("\0start\0main\0", 12);
constexpr const char* Remedy =
    "Strip the file (strip), or convert it to Intel Hex (objcopy -O ihex).";

TEST_F(ObjectFiles, ArePrintedForPeopleAndForPrograms) {
    const std::string file = Folder.Write("a.elf", TElfImage(Sections).Bytes);
    const std::string code = "24be0c1830dc073b7d4f8c6738f1dda0803599c11760eefeb9ba7ec6b289033e";
    const std::string data = "3a6eb0790f39ac87c94f3856b2dd2c5d110e6811602261a9a923d3bb23adc8b7";
    EXPECT_EQ(Told("object " + file), "0 Format:  ELF\nBlocks:  2\nBytes:   12\n\n"
                                      "Address     Length  SHA-256\n"
                                      "0x00000100  8       " +
                                          code + "\n0x00000108  4       " + data + "\n");
    EXPECT_EQ(Told("object --json " + file),
              "0 {\n  \"format\": \"elf\",\n  \"ok\": true,\n  \"messages\": [],\n  \"blocks\": [\n"
              "    {\n      \"address\": 256,\n      \"length\": 8,\n      \"sha256\": \"" +
                  code +
                  "\"\n    },\n"
                  "    {\n      \"address\": 264,\n      \"length\": 4,\n      \"sha256\": \"" +
                  data + "\"\n    }\n  ]\n}\n");
    EXPECT_EQ(Told("object --json " + Folder.Write("bad.hex", ":00\n")),
              "1 {\n  \"format\": \"hex\",\n  \"ok\": false,\n  \"messages\": [\n"
              "    \"Hex File Error : Line 1\",\n"
              "    \"Errors Found When Loading Hex File: bad.hex\\r\\r     Lines With Errors: 1\"\n"
              "  ],\n  \"blocks\": []\n}\n");
}

TEST_F(ObjectFiles, ShowTheirSectionsUnderTheNamesThatAreRead) {
    const std::string file = Folder.Write("a.elf", TElfImage(Sections, SymbolNames).Bytes);
    EXPECT_THAT(Told("object --dump " + file),
                AllOf(HasSubstr("0 Name=\"start\"\r\n  Type    =SHT_PROGBITS\r\n"),
                      HasSubstr("00000108: 00000064 00000061 00000074 00000061 \r\n")));
    const std::string hex = Folder.Write("a.hex", ":00000001FF\n");
    EXPECT_EQ(Told("object --dump " + hex),
              "1 Error: a.hex is not an ELF file\nvorelctl: " + hex + " gives no sections.\n");
    EXPECT_EQ(Run("object --dump " + (Folder / "none")).ExitStatus, 3);
}

TEST_F(ObjectFiles, WithSymbolsTellWhyTheyDeliverNothing) {
    const std::string file = Folder.Write("a.elf", TElfImage(Sections, SymbolNames).Bytes);
    for (const char* command : {"load 0 ", "load 0 --address 40 --verify ", "object "}) {
        EXPECT_THAT(Told(command + file),
                    AllOf(StartsWith("1 "),
                          HasSubstr(file + " delivers nothing. The file's section names"),
                          HasSubstr(Remedy)));
    }
    EXPECT_THAT(Told("object --json " + file), HasSubstr(Remedy));
    const std::string stripped = Folder.Write("stripped", TElfImage(Sections).Bytes);
    EXPECT_EQ(Told("load 0 --verify " + stripped), "0 Loaded 12 bytes in 1 block.\nVerified.\n");
}

TEST_F(ObjectFiles, ThatCannotBeTakenSayWhy) {
    Folder.Write("foreign.elf", "\177ELF\2\1");
    Folder.Write("empty.elf", "");
    std::filesystem::create_symlink("/dev/zero", Folder / "zero");
    Folder.Write("bad.hex", ":00000001FF\n:00\nx\n");
    const std::string folder = Folder / "";
    const std::map<std::string, std::string> cases = {
        {"none", "3 vorelctl: " + folder + "none: The file does not exist.\n"},
        {"none.hex", "3 Error: File " + folder +
                         "none.hex Not Found\n"
                         "Error: Errors Found When Loading Hex File: none.hex\n"
                         "     Lines With Errors: 0\n"
                         "vorelctl: " +
                         folder + "none.hex: The file does not exist.\n"},
        {"", "3 vorelctl: " + folder + ": This is a folder.\n"},
        {"zero", "3 vorelctl: " + folder + "zero: This is no regular file.\n"},
        {"empty.elf",
         "1 vorelctl: " + folder + "empty.elf delivers nothing. The file holds no data.\n"},
        {"bad.hex", "1 Error: Hex File Error : Line 2\n"
                    "Error: Errors Found When Loading Hex File: bad.hex\n"
                    "     Lines With Errors: 2\n"
                    "vorelctl: " +
                        folder + "bad.hex was not loaded.\n"},
        {"foreign.elf",
         "1 Error: foreign.elf is not an valid ELF file\n"
         "Error: Errors Found When Loading Elf File: foreign.elf\n"
         "vorelctl: " +
             folder +
             "foreign.elf"
             " was not loaded. Only 32-bit big-endian ELF files are read, and this one is "
             "64-bit little-endian. Convert it to Intel Hex (objcopy -O ihex).\n"}};
    for (const auto& [name, told] : cases) {
        const std::string file = Folder / name;
        EXPECT_EQ(Told("object " + file), told);
        EXPECT_EQ(Told("load 0 " + file), told);
    }
    EXPECT_EQ(Told("load 0"), "2 vorelctl: Something is missing.\nusage: vorelctl load DEVICE FILE "
                              "[--address A] [--verify]\n");
    EXPECT_EQ(Run("object").ExitStatus, 2);
    EXPECT_EQ(Run("object a b").ExitStatus, 2);
}

// As GNU objcopy writes images above 64 KiB.
TEST_F(ObjectFiles, WithSegmentAddressesAreNotLoadedToWrongPlaces) {
    const std::string first = HexLine(2, 0, {0, 0}) + HexLine(0, 0, {1, 2, 3, 4});
    const std::string file =
        Folder.Write("far.hex", first + HexLine(2, 0, {0x10, 0}) + HexLine(0, 0, {5, 6, 7, 8}));
    EXPECT_THAT(Told("load 0 --verify " + file),
                AllOf(StartsWith("1 "),
                      HasSubstr("was not loaded. The file has extended segment addresses")));
    EXPECT_THAT(
        Told("object " + file),
        AllOf(StartsWith("0 "), HasSubstr("Warning: The file has extended segment addresses")));
    EXPECT_EQ(Told("load 0 --verify " + Folder.Write("near.hex", first)),
              "0 Loaded 4 bytes in 1 block.\nVerified.\n");
}

TEST_F(ObjectFiles, AreLoadedAsAWholeOrNotAtAll) {
    const auto debug = [&](const std::string& file, const std::string& words) {
        return Run("debug 1 2>&1 <<'END'\nload " + file + words + "\nmem 0 4\nEND\n:").Output;
    };
    // The memory has words of four bytes, and 16 KiB.
    const std::string first = HexLine(0, 0, {0x11, 0x22, 0x33, 0x44}) + HexLine(4, 0, {0, 0});
    const std::string good = Folder.Write("good.hex", first + HexLine(0, 8, {1, 2, 3, 4}));
    EXPECT_THAT(debug(good, " --verify"), AllOf(HasSubstr("8 bytes in 2 blocks.\nVerified."),
                                                HasSubstr("00000000  11 22 33 44")));
    EXPECT_THAT(
        debug(good, " --address 3FF8"),
        AllOf(HasSubstr("The block of 4 bytes at 00004000 does not fit in the memory, which "
                        "ends at 00004000."),
              HasSubstr("00000000  00 00 00 00")));
    const std::string half = Folder.Write("half.hex", first + HexLine(0, 8, {1, 2}));
    EXPECT_THAT(debug(half, ""),
                AllOf(HasSubstr("have to be multiples of 4"), HasSubstr("00000000  00 00 00 00")));
}

} // namespace
} // namespace vorel::host
