// Object code files as a user meets them: vorelctl object, and load into the virtual board.
#include "hosts/RunProgram.h"
#include "knowledge/TempFolder.h"
#include "objectcode/ElfImage.h"
#include "objectcode/ExpectedFiles.h"
#include "objectcode/HexLine.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

#include <algorithm>

namespace vorel::host {
namespace {

using nlohmann::json;
using testing::AllOf;
using testing::HasSubstr;

struct ObjectFiles : testing::Test {
    std::string Write(const std::string& name, const std::string& contents) const {
        return Folder.Write(name, contents);
    }
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

TExpectedBlocks BlocksOf(const json& object) {
    TExpectedBlocks blocks;
    for (const json& block : object["blocks"]) {
        blocks.push_back({block["address"], block["length"], block["sha256"]});
    }
    return blocks;
}

TEST_F(ObjectFiles, AreShownAsTheyAreDelivered) {
    const std::filesystem::path data = ObjectCodeData();
    const std::vector<TExpectedFile> files = ReadExpectedFiles(data);
    if (files.empty()) {
        GTEST_SKIP() << "no object code files in " << data;
    }
    for (const TExpectedFile& file : files) {
        const TRun run = Run("object --json " + (data / file.Name).string());
        EXPECT_EQ(run.ExitStatus, file.Blocks.empty() ? 1 : 0) << file.Name;
        const json object = json::parse(run.Output, nullptr, false);
        ASSERT_TRUE(object.is_object()) << file.Name << ": " << run.Output;
        EXPECT_EQ(object["format"], file.Format) << file.Name;
        EXPECT_EQ(object["ok"], !file.Blocks.empty()) << file.Name;
        EXPECT_TRUE(BlocksOf(object) == file.Blocks) << file.Name << ": " << run.Output;
        // The loader's messages come first; a file that delivers nothing has a reason.
        const auto messages = object["messages"].get<std::vector<std::string>>();
        EXPECT_GE(messages.size(), file.Blocks.empty() ? 1U : 0U) << file.Name;
        EXPECT_EQ(std::mismatch(file.Messages.begin(), file.Messages.end(), messages.begin(),
                                messages.end())
                      .first,
                  file.Messages.end())
            << file.Name;
    }
}

TEST_F(ObjectFiles, ArePrintedForPeople) {
    const std::string file = Write("a.elf", TElfImage(Sections).Bytes);
    EXPECT_EQ(Told("object " + file), "0 Format:  ELF\nBlocks:  2\nBytes:   12\n\n"
                                      "Address     Length  SHA-256\n"
                                      "0x00000100  8       " +
                                          Sha256Of("codecode") +
                                          "\n"
                                          "0x00000108  4       " +
                                          Sha256Of("data") + "\n");
}

TEST_F(ObjectFiles, ShowTheirSectionsUnderTheNamesThatAreRead) {
    const std::string file = Write("a.elf", TElfImage(Sections, SymbolNames).Bytes);
    EXPECT_THAT(Told("object --dump " + file),
                AllOf(HasSubstr("0 Name=\"start\"\r\n  Type    =SHT_PROGBITS\r\n"),
                      HasSubstr("00000108: 00000064 00000061 00000074 00000061 \r\n")));
    const std::string hex = Write("a.hex", ":00000001FF\n");
    EXPECT_EQ(Told("object --dump " + hex),
              "1 Error: a.hex is not an ELF file\nvorelctl: " + hex + " gives no sections.\n");
    EXPECT_EQ(Run("object --dump " + (Folder / "none")).ExitStatus, 3);
}

TEST_F(ObjectFiles, WithSymbolsTellWhyTheyDeliverNothing) {
    const std::string elf = TElfImage(Sections, SymbolNames).Bytes;
    std::vector<std::string> files{Write("a.elf", elf), Write("b.o", elf)};
    const std::filesystem::path real = ObjectCodeData() / "elf/ppc_plain.elf";
    if (std::filesystem::exists(real)) {
        files.push_back(real.string());
    }
    for (const std::string& file : files) {
        for (const char* command : {"load 0 ", "load 0 --address 40 --verify ", "object "}) {
            const TRun run = Run(command + file);
            EXPECT_EQ(run.ExitStatus, 1) << command << file;
            EXPECT_THAT(run.Output,
                        HasSubstr(file + " delivers nothing. The file's section names"));
            EXPECT_THAT(run.Output, HasSubstr(Remedy));
        }
        EXPECT_THAT(Run("object --json " + file).Output, HasSubstr(Remedy));
    }
    const std::string stripped = Write("stripped", TElfImage(Sections).Bytes);
    EXPECT_EQ(Told("load 0 --verify " + stripped), "0 Loaded 12 bytes in 1 block.\nVerified.\n");
}

TEST_F(ObjectFiles, ThatCannotBeTakenSayWhy) {
    const std::string foreign = Write("foreign.elf", "\177ELF\2\1");
    std::filesystem::create_directories(Folder / "folder.hex");
    struct TCase {
        std::string File;
        std::string Told;
    };
    const std::vector<TCase> cases = {
        {Folder / "none", "3 vorelctl: " + (Folder / "none") + ": The file does not exist.\n"},
        {Folder / "none.hex", "3 Error: File " + (Folder / "none.hex") +
                                  " Not Found\n"
                                  "Error: Errors Found When Loading Hex File: none.hex\n"
                                  "     Lines With Errors: 0\n"
                                  "vorelctl: " +
                                  (Folder / "none.hex") + ": The file does not exist.\n"},
        {Folder / "", "3 vorelctl: " + (Folder / "") + ": This is a folder.\n"},
        {"/dev/zero", "3 vorelctl: /dev/zero: This is no regular file.\n"},
        {Write("empty.elf", ""),
         "1 vorelctl: " + (Folder / "empty.elf") + " delivers nothing. The file holds no data.\n"},
        {Write("bad.hex", ":00000001FF\n:00\nx\n"),
         "1 Error: Hex File Error : Line 2\n"
         "Error: Errors Found When Loading Hex File: bad.hex\n"
         "     Lines With Errors: 2\n"
         "vorelctl: " +
             (Folder / "bad.hex") + " was not loaded.\n"},
        {foreign, "1 Error: foreign.elf is not an valid ELF file\n"
                  "Error: Errors Found When Loading Elf File: foreign.elf\n"
                  "vorelctl: " +
                      foreign +
                      " was not loaded. Only 32-bit big-endian ELF files are read, and this one is "
                      "64-bit little-endian. Convert it to Intel Hex (objcopy -O ihex).\n"}};
    for (const TCase& c : cases) {
        EXPECT_EQ(Told("object " + c.File), c.Told);
        EXPECT_EQ(Told("load 0 " + c.File), c.Told);
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
        Write("far.hex", first + HexLine(2, 0, {0x10, 0}) + HexLine(0, 0, {5, 6, 7, 8}));
    const TRun load = Run("load 0 --verify " + file);
    EXPECT_EQ(load.ExitStatus, 1);
    EXPECT_THAT(load.Output, HasSubstr("was not loaded. The file has extended segment addresses"));
    const TRun object = Run("object " + file);
    EXPECT_EQ(object.ExitStatus, 0);
    EXPECT_THAT(object.Output, HasSubstr("Warning: The file has extended segment addresses"));
    EXPECT_EQ(Told("load 0 --verify " + Write("near.hex", first)),
              "0 Loaded 4 bytes in 1 block.\nVerified.\n");
}

TEST_F(ObjectFiles, AreLoadedAsAWholeOrNotAtAll) {
    const auto debug = [&](const std::string& file, const std::string& words) {
        return Run("debug 1 2>&1 <<'END'\nload " + file + words + "\nmem 0 4\nEND\n:").Output;
    };
    // The memory has words of four bytes, and 16 KiB.
    const std::string first = HexLine(0, 0, {0x11, 0x22, 0x33, 0x44}) + HexLine(4, 0, {0, 0});
    const std::string good = Write("good.hex", first + HexLine(0, 8, {1, 2, 3, 4}));
    EXPECT_THAT(debug(good, " --verify"), AllOf(HasSubstr("8 bytes in 2 blocks.\nVerified."),
                                                HasSubstr("00000000  11 22 33 44")));
    EXPECT_THAT(
        debug(good, " --address 3FF8"),
        AllOf(HasSubstr("The block of 4 bytes at 00004000 does not fit in the memory, which "
                        "ends at 00004000."),
              HasSubstr("00000000  00 00 00 00")));
    const std::string half = Write("half.hex", first + HexLine(0, 8, {1, 2}));
    EXPECT_THAT(debug(half, ""),
                AllOf(HasSubstr("have to be multiples of 4"), HasSubstr("00000000  00 00 00 00")));
}

} // namespace
} // namespace vorel::host
