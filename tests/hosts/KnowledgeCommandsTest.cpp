// What vorelctl tells about devices, and what it makes of damaged installations. Each test runs the
// program in an installation of its own, which it may change.
#include "hosts/RunProgram.h"
#include "knowledge/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <random>

namespace vorel::host {
namespace {

namespace fs = std::filesystem;

using testing::HasSubstr;
using testing::Not;
using testing::StartsWith;

constexpr const char* MappingFile = "Library/BSDL/Generic/BSDL_FileMap.txt";

struct KnowledgeCommands : testing::Test {
    KnowledgeCommands() {
        const fs::path tree = VOREL_TREE;
        fs::create_directories(fs::path(Folder / MappingFile).parent_path());
        fs::create_directories(Folder / "System");
        fs::create_directory_symlink(tree / "scenes", Folder / "scenes");
        for (const char* file : {"vorelctl", "VorelManager.so", "XILINX.VOR", "ALTERA.VOR",
                                 "GENERIC.VOR", "LUMAPLATE.VOR", "JTAG_ALIAS.txt"}) {
            fs::copy_file(tree / "System" / file, Folder / ("System/" + std::string(file)));
        }
    }
    TRun Run(const std::string& arguments) {
        return RunProgram(Folder / "System/vorelctl", Folder / "home", arguments);
    }
    // The output of a command that has to succeed.
    std::string Output(const std::string& arguments) {
        const TRun run = Run(arguments);
        EXPECT_EQ(run.ExitStatus, 0) << arguments << ": " << run.Output;
        return run.Output;
    }

    TTempFolder Folder;
};

TEST_F(KnowledgeCommands, ListWhatTheModulesDeclare) {
    EXPECT_THAT(Output("vendors"), testing::AnyOf("Altera\nXilinx\n", "Xilinx\nAltera\n"));
    const std::string proms = Output("families --type prom");
    EXPECT_THAT(proms, HasSubstr("XC18V00           Xilinx  PROM  20\n"));
    EXPECT_THAT(proms, Not(HasSubstr("FPGA")));
    EXPECT_THAT(Output("families"), Not(HasSubstr("Generic"))) << "our own parts are not listed";
    EXPECT_THAT(Output("families --vendor ALTERA --json"),
                HasSubstr("\"family\": \"Cyclone\",\n      \"vendor\": \"Altera\",\n"
                          "      \"type\": \"FPGA\",\n"));
    EXPECT_THAT(Output("devices --family spartan-3"),
                HasSubstr("XC3S50-5VQ100C     FPGA  0x0140D093\n"));
    EXPECT_THAT(
        Output("devices --family generic --json"),
        HasSubstr(
            "\"device\": \"GenericDevice\",\n      \"type\": \"Other\",\n      \"id\": null"));
}

TEST_F(KnowledgeCommands, DeviceShowsTheRowsOfItsType) {
    EXPECT_THAT(Output("device xc3s50-5vq100c"),
                StartsWith("Device Name:                         XC3S50-5VQ100C\n"
                           "Vendor:                              Xilinx\n"
                           "Family:                              Spartan-3\n"
                           "Package:                             VQ100\n"
                           "Speed Grade:                         5\n"
                           "Temperature Grade:                   C\n"
                           "Pin Count:                           100\n"
                           "I/O Pin Count:                       63\n"
                           "Xilinx Logic Cells:                  1728\n"
                           "Differential Pair Count:             29\n"
                           "High Speed Differential Pair Count:  0\n"
                           "Embedded RAM (K):                    72\n"
                           "DSP Multipliers (18x18):             4\n"
                           "Clock Managers:                      2\n"
                           "Global Clock Resources:              8\n"
                           "Configuration Memory Required:       439264\n"
                           "On Chip Termination Support:         Yes\n"
                           "Supported I/O Standards:             LVTTL, LVCMOS33, "));
    EXPECT_THAT(Output("device EP1C12Q240I8"),
                HasSubstr("173\nAltera Logic Elements:               12060\nDiff"));
    EXPECT_THAT(Output("device XC95144XL-7TQ144I"),
                HasSubstr("\nMacrocells:                          144\nDiff"));
    EXPECT_THAT(Output("device LUMAPLATE --json"),
                HasSubstr("\"i_o_pin_count\": null,\n  \"differential_pair_count\": 0,"));
}

TEST_F(KnowledgeCommands, IdShowsMaskAliasAndNames) {
    const std::string aliased = Output("id '$05034093'");
    EXPECT_THAT(aliased, HasSubstr("Alias of:      0x05024093\n"));
    EXPECT_THAT(aliased, HasSubstr("XC18V01"));
    EXPECT_THAT(Output("id 9140D093"), HasSubstr("Mask:          0x0FFFFFFF\n"
                                                 "Masked id:     0x0140D093\n"));
    EXPECT_THAT(Output("id 0x020830DD --json"), HasSubstr("\"mask\": \"0xFFFFFFFF\""));
    const TRun unknown = Run("id 12345679");
    EXPECT_EQ(unknown.ExitStatus, 1);
    EXPECT_THAT(unknown.Output, HasSubstr("Known:         No\n"));
    EXPECT_THAT(unknown.Output, HasSubstr("GenericDevice  Generic  Tarvex\n"));
}

TEST_F(KnowledgeCommands, SayWhatIsWrong) {
    struct TCase {
        const char* Arguments;
        int ExitStatus;
        const char* Says;
    };
    for (const TCase& c :
         {TCase{"families --vendor Nobody", 1, "\"Nobody\". vorelctl vendors"},
          TCase{"families --type x", 1, "FPGA, CPLD, PROM, PROC, SPROC, GPROC, Other"},
          TCase{"families --type x --vendor y", 2, "Choose one of"},
          TCase{"devices --family Nobody", 1, "\"Nobody\". vorelctl families"},
          TCase{"devices", 2, "--family"},
          TCase{"device Nobody", 1, "\"Nobody\". vorelctl families"},
          TCase{"device", 2, "usage: vorelctl device NAME"},
          TCase{"id 123456789", 2, "8 hexadecimal digits"},
          TCase{"cache burn", 2, "status or rebuild"},
          TCase{"mapping set-length 12345679", 2, "usage: vorelctl mapping"},
          TCase{"mapping set-length 12345679 65536", 2, "0 (none) to 65535"},
          TCase{"mapping set-length F0000000 8", 2, "0 is no id"},
          TCase{"mapping set-bsdl 12345679 nowhere.bsd", 3, "no file /nowhere.bsd"}}) {
        const TRun run = Run(c.Arguments);
        EXPECT_EQ(run.ExitStatus, c.ExitStatus) << c.Arguments;
        EXPECT_THAT(run.Output, HasSubstr(c.Says)) << c.Arguments;
    }
}

TEST_F(KnowledgeCommands, CacheReadsModulesOnce) {
    EXPECT_THAT(Output("cache status --json"), HasSubstr("\"modules_read\": 4,"));
    EXPECT_THAT(Output("cache status --json"),
                HasSubstr("\"modules_read\": 0,\n  \"checksums_computed\": 0,\n  \"vendors\": 3,"));
    EXPECT_THAT(Output("cache rebuild --json"), HasSubstr("\"modules_read\": 4,"));
}

TEST_F(KnowledgeCommands, MappingsChangeHowAnUnknownDeviceIsDriven) {
    const std::string scene =
        Folder.Write("unknown.ini",
                     "[pod]\n[hard]\ndevice = U id=F2345679 ir=10\ndevice = A id=1140D093 ir=6\n");
    const auto scanned = [&] { return Output("scan --json --scene " + scene); };
    const std::string unknown = "\"manufacturer\": 828,\n              \"maker\": \"\",\n"
                                "              \"part\": 9029,\n              \"ir_length\": ";
    EXPECT_THAT(scanned(), HasSubstr(unknown + "4,"));

    const std::string path = Folder / MappingFile;
    EXPECT_EQ(Output("mapping set-length 0xF2345679 10"),
              "0x02345679: instruction length 10, no BSDL file\nWritten to " + path + "\n");
    EXPECT_THAT(scanned(), HasSubstr(unknown + "10,"));
    EXPECT_THAT(Output("mapping list --json"),
                HasSubstr("\"id\": \"0x02345679\",\n      \"instruction_length\": 10,\n"
                          "      \"length_only\": true,\n      \"bsdl_file\": null"));

    const std::string bsdl = Folder.Write(
        "u.bsd", "entity U is\ngeneric (PHYSICAL_PIN_MAP : string := \"P\");\n"
                 "port (TDI, TMS, TCK : in bit; TDO : out bit);\nuse STD_1149_1_1994.all;\n"
                 "attribute PIN_MAP of U : entity is PHYSICAL_PIN_MAP;\n"
                 "constant P : PIN_MAP_STRING := \"TDI:1, TMS:2, TCK:3, TDO:4\";\n"
                 "attribute INSTRUCTION_LENGTH of U : entity is 12;\n"
                 "attribute INSTRUCTION_OPCODE of U : entity is \"BYPASS (111111111111)\";\n"
                 "end U;\n");
    EXPECT_THAT(Output("mapping set-bsdl 2345679 " + bsdl), HasSubstr("BSDL file " + bsdl));
    EXPECT_THAT(scanned(), HasSubstr(unknown + "12,"));
    EXPECT_THAT(Output("mapping list"),
                HasSubstr("0x02345679  10                  No           " + bsdl));

    EXPECT_EQ(Run("mapping set-length 2345679 0").ExitStatus, 0);
    fs::remove_all(Folder / "Library/BSDL");
    Folder.Write("Library/BSDL", "a file where the folder should be");
    const TRun readOnly = Run("mapping set-length 2345679 10");
    EXPECT_EQ(readOnly.ExitStatus, 3);
    EXPECT_THAT(readOnly.Output, HasSubstr("Cannot write the mapping file " + path));
}

TEST_F(KnowledgeCommands, ADamagedInstallationStillScans) {
    const std::string before = Output("scan");
    EXPECT_THAT(before, HasSubstr("GenericDevice  Generic\n"));
    for (const char* module : {"EMPTY", "UNRESOLVED", "TEST"}) {
        fs::copy_file(VOREL_TEST_MODULES "/" + std::string(module) + ".VOR",
                      Folder / ("System/" + std::string(module) + ".VOR"));
    }
    Folder.Write("System/TEST.VOR.txt", "!throw\n!null\n!fail\n!nameless\nTwice|V|F|1|FPGA\n"
                                        "Twice|V|F|1|FPGA\n");
    Folder.Write("System/CUT.VOR", Folder.Read("System/ALTERA.VOR").substr(0, 10000));
    std::string noise(200'000, '\0');
    std::generate(noise.begin(), noise.end(), [generator = std::mt19937(7)]() mutable {
        return static_cast<char>(generator());
    });
    for (const char* file : {"System/FamilyMappings.txt", "System/JTAG_ALIAS.txt", MappingFile}) {
        Folder.Write(file, noise);
    }
    EXPECT_EQ(Output("scan"), before);

    fs::remove(Folder / "System/GENERIC.VOR");
    const std::string withoutGeneric = Output("scan");
    EXPECT_THAT(withoutGeneric, HasSubstr("0x0B8C0101  0x080         0xB8C0  4   Unknown\n"));
    EXPECT_THAT(withoutGeneric, HasSubstr("XC3S50-5VQ100C     Spartan-3\n"));
}

} // namespace
} // namespace vorel::host
