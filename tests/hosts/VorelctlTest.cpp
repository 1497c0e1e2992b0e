// vorelctl as a user runs it: the program of the build tree on shipped scenes, its output compared
// with golden files, and its exit statuses.
#include "hosts/RunProgram.h"
#include "knowledge/TempFolder.h"

#include <gmock/gmock.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <string>

namespace {

using testing::HasSubstr;
using testing::StartsWith;
using vorel::host::TRun;

TRun RunVorelctl(const std::string& arguments, const std::string& folder = "/") {
    const std::filesystem::path home =
        std::filesystem::temp_directory_path() / "vorelctl-test-home";
    return vorel::host::RunProgram(VOREL_TREE "/System/vorelctl", home.string(), arguments, folder);
}

std::string ReadFile(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

// The output of the program, of which the golden file is a copy.
void ExpectGolden(const TRun& run, const std::string& name, int exitStatus) {
    const std::string golden = VOREL_SOURCE_DIR "/tests/hosts/golden/" + name;
    EXPECT_EQ(run.Output, ReadFile(golden)) << "golden file: " << golden;
    EXPECT_EQ(run.ExitStatus, exitStatus) << name;
}

// The scripts are those of the shipped programs; each ends with its number of wrong results, 0.
TEST(Vorelctl, PrintsWhatScenesAndFilesHoldAndScriptsDo) {
    struct Case {
        const char* Arguments;
        const char* Golden;
        int ExitStatus;
    };
    const Case cases[] = {
        {"scan --scene default.ini", "scan_default.txt", 0},
        {"scan --scene three_devices.ini", "scan_three_devices.txt", 0},
        {"scan --scene empty_chain.ini", "scan_empty_chain.txt", 1},
        {"scan --scene broken_chain.ini", "scan_broken_chain.txt", 1},
        {"scan --json --scene broken_chain.ini", "scan_broken_chain.json", 1},
        {"scan --scene stuck_low.ini", "scan_stuck_low.txt", 1},
        {"scan --scene loop.ini", "scan_loop.txt", 1},
        {"scan --scene cable.ini", "scan_cable.txt", 0},
        {"scan --scene cable_board.ini", "scan_cable_board.txt", 0},
        {"bsdl latch.bsd broken.bsd", "bsdl.txt", 0},
        {"bsdl --json latch.bsd broken.bsd none.bsd", "bsdl.json", 1},
        {"debug --script " VOREL_TREE "/programs/algorithms.debug", "debug_algorithms.txt", 0},
        {"debug --script " VOREL_TREE "/programs/numbers.debug", "debug_numbers.txt", 0},
        {"debug --script " VOREL_TREE "/programs/tour.debug", "debug_tour.txt", 0},
    };
    for (const Case& c : cases) {
        ExpectGolden(RunVorelctl(c.Arguments, VOREL_SOURCE_DIR "/tests/data/bsdl"), c.Golden,
                     c.ExitStatus);
    }
}

TEST(Vorelctl, SamplesPinsAndMarksChanges) {
    const std::string folder = VOREL_SOURCE_DIR "/tests/data/bsdl/";
    const vorel::TTempFolder temporary;
    const std::string scene = temporary.Write(
        "pins.ini", "[pod]\n[hard]\ndevice = A id=0BA00477 ir=4\ndevice = L bsdl=" + folder +
                        "latch.bsd pin.D=flip pin.4=1\n");
    const std::string pins = "pins --scene " + scene + " --chain hard ";
    ExpectGolden(RunVorelctl(pins + "--index 1 --watch --samples 2 --interval 1 --bsdl " + folder +
                             "latch.bsd"),
                 "pins.txt", 0);
    for (const auto& [arguments, says] : std::map<std::string, std::string>{
             {"--index 1",
              "The library has no BSDL file for \"GenericDevice\". Name one with --bsdl"},
             {"--index 2", "There is no device 2 on the hard chain, which has 2."},
             {"--index 1 --port 0", "Port 0 finds no chain. vorelctl scan tells why."},
             {"--index 0 --bsdl " + folder + "port.bsd",
              "an instruction register of 8 bits, but"}}) {
        const TRun wrong = RunVorelctl(pins + arguments);
        EXPECT_EQ(wrong.ExitStatus, 1) << arguments;
        EXPECT_THAT(wrong.Output, HasSubstr(says));
    }
}

// From the first line that tells of chains to the empty line behind the port.
std::string ChainsOf(const std::string& output, const std::string& port) {
    const std::size_t start = output.find("was detected", output.find(port));
    const std::string chains = output.substr(start, output.find("\n\n", start) - start);
    return chains.substr(0, chains.find_last_not_of('\n') + 1);
}

TEST(Vorelctl, FindsTheSameBehindACableAndBehindAPod) {
    const std::string cable =
        ChainsOf(RunVorelctl("scan --scene cable_board.ini").Output, "Port 0");
    const std::string pod = ChainsOf(RunVorelctl("scan --scene default.ini").Output, "Port 1");
    EXPECT_EQ(cable, pod);
    EXPECT_THAT(cable, HasSubstr("XC3S50"));
}

TEST(Vorelctl, RecordsTheTrafficOfAScan) {
    const vorel::TTempFolder folder;
    const TRun run = RunVorelctl("scan --scene cable.ini --record " + folder / "a");
    EXPECT_EQ(run.ExitStatus, 0);
    EXPECT_THAT(run.Output, HasSubstr("The traffic was recorded: "));
    EXPECT_THAT(folder.Read("a_JTAG.txt"), StartsWith("0: Mode:1 TMS:0 TDI:0 TCK:0\n"));
    EXPECT_THAT(folder.Read("a_JTAGOut.txt"), StartsWith("0: -\n"));
    EXPECT_THAT(folder.Read("a.vcd"), HasSubstr("$enddefinitions"));
    const TRun early = RunVorelctl("scan --record /no/such/folder/a");
    EXPECT_EQ(early.ExitStatus, 3);
    EXPECT_EQ(early.Output,
              "vorelctl: --record /no/such/folder/a: there is no folder /no/such/folder.\n");
    EXPECT_EQ(RunVorelctl("scan --record /tmp/").ExitStatus, 2);
}

// One line of a session on the board's devices, and what it says.
TEST(Vorelctl, DebuggingCommandsAnswer) {
    const vorel::TTempFolder folder;
    folder.Write("bad.bin", "");
    struct Case {
        const char* Device;
        std::string Lines;
        const char* Says;
    };
    const Case cases[] = {
        {"ZRC3000", "regs r29=0xFFFC0\nregs sp", "sp   000FFFC0"},
        {"0", "regs SP=xyz", "\"xyz\" is no value for sp.\nusage: regs [NAME[=VALUE]]\n"},
        {"0", "regs r77", "There is no register \"r77\"; regs shows them all."},
        {"0", "mem 0 --width 32 --write 1000FFFF 0\nrun\nregs a0=1", "The processor runs;"},
        {"0", "BREAK add", "usage: break add ADDRESS | remove ADDRESS | list | clear\n"},
        {"0", "mem FFFFE --write 12 34\nmem FFFFC 1 --width 32", "000FFFFC  00001234"},
        {"0", "mem FFFFF 2", "The memory ends at 00100000."},
        {"0", "mem 0 --write 100", "\"100\" does not fit in 8 bits."},
        {"0", "mem 0 --width 12", "--width is 8, 16 or 32."},
        {"0", "load " + folder / "none.hex", "none.hex: The file does not exist."},
        {"0", "load " + folder / "bad.bin", "bad.bin delivers nothing."},
        {"0", "break add 10\nbreak add 0\nbreak list", "00000000\n00000010\n"},
        {"0", "break remove 10", "There is no breakpoint at 00000010."},
        {"0", "break add 2", "ZRC3000 can have no breakpoint at 00000002."},
        {"0", "mem 0 --width 32 --write 1000FFFF 0\nrun\nwait 3", "still runs after 3"},
        {"0", "step 2 3", "\"3\" is too much"},
        {"0", "step 0", "\"0\" is no number from 1"},
        {"0", "# nothing\n\nquit\nnonsense", "ZRC3000 at place 0"},
        {"0", "nonsense", "There is no command \"nonsense\""},
        {"0", "reconnect", "Reset"},
        {"1", "mem 3FFC --width 32 --write DEADBEEF\nmem 3FFC 4", "DE AD BE EF"},
        {"1", "mem 1 4", "multiples of 4"},
        {"SOFTMEM4K", "run", "SOFTMEM4K is no processor."},
    };
    for (const Case& c : cases) {
        const TRun run = RunVorelctl("debug " + std::string(c.Device) + " 2>&1 <<'END'\n" +
                                     c.Lines + "\nEND\n:");
        EXPECT_THAT(run.Output, HasSubstr(c.Says)) << c.Lines;
    }
}

// Debugging sessions on the default scene, its pod pulled out at one transfer.
class VorelctlUnplugged : public testing::Test {
protected:
    // `how` says how the lines get to the program.
    TRun Debug(const std::string& unplug, const std::string& lines, const char* how) {
        std::string scene = ReadFile(VOREL_TREE "/scenes/default.ini");
        scene.insert(scene.find("serial ="), "unplug = " + unplug + "\n");
        Folder.Write("s.ini", scene);
        Folder.Write("s.debug", lines);
        Folder.Write("x.bin", std::string(50000, 'x'));
        return RunVorelctl(std::string("debug --scene s.ini ") + how, Folder.Path());
    }

    static constexpr const char* Load = "load x.bin --verify\n";
    const vorel::TTempFolder Folder;
};

TEST_F(VorelctlUnplugged, AScriptEndsWithWhatFailedOnWhichDevice) {
    struct Case {
        const char* Unplug;
        std::string Lines;
        int ExitStatus;
        std::vector<const char*> Says;
    };
    const char* const gone = "Lumaplate pod (ID: 10.0.1) does not answer any more. Check that it "
                             "is plugged in";
    const Case cases[] = {
        {"write 1", "status", 3, {"Looking for chains behind port 1 failed with status 0x"}},
        {"write 300",
         std::string("status\n") + Load,
         1,
         {"ZRC3000: Writing the memory at 000", " failed with status 0x", gone,
          "The script ends at its line 2."}},
        {"read 200",
         Load,
         1,
         {"ZRC3000: Reading the memory at 000", gone, "The script ends at its line 1."}},
        {"write 300 back", Load, 1, {"ZRC3000: Writing the memory at 000", "ends at its line 1"}},
        {"write 999999",
         "break add 0\nbreak add 4\nbreak add 8\nbreak add C\nbreak add 10\nbreak add 100000",
         1,
         {"Error: A request for a hardware breakpoint could not be satisfied!",
          "ZRC3000 can have no breakpoint at 00100000.", "The script ends at its line 6."}},
    };
    for (const Case& c : cases) {
        const TRun run = Debug(c.Unplug, c.Lines, "--script s.debug");
        EXPECT_EQ(run.ExitStatus, c.ExitStatus) << c.Unplug;
        for (const char* text : c.Says) {
            EXPECT_THAT(run.Output, HasSubstr(text)) << c.Unplug;
        }
    }
}

TEST_F(VorelctlUnplugged, ASessionGoesOnWhenThePodIsBack) {
    for (const char* unplug : {"write 300 back", "read 200 back"}) {
        const std::string lines = std::string(Load) + "reconnect\n" + Load;
        const TRun run = Debug(unplug, lines, "< s.debug");
        EXPECT_THAT(run.Output, HasSubstr("the memory at 000"));
        EXPECT_THAT(run.Output, HasSubstr("Reset\nLoaded 50000 bytes in 1 block.\nVerified.\n"));
        EXPECT_EQ(run.ExitStatus, 0);
    }
    const TRun run = Debug("write 300", std::string(Load) + "reconnect\n", "< s.debug");
    EXPECT_THAT(run.Output, HasSubstr("Lumaplate pod (ID: 10.0.1) is not back"));
}

TEST(Vorelctl, SavesAndLoadsMemoryAcrossABorderOf64KiB) {
    const vorel::TTempFolder folder;
    const std::string script = folder / "a.debug";
    for (const auto& [file, words] : {std::pair{folder / "a.hex", " --verify"},
                                      {folder / "a.bin", " --address FFFC --verify"}}) {
        std::ofstream(script) << "mem FFF8 --width 32 --write 1 2 3 4 5 6\nsave FFFC 12 " << file
                              << "\nmem FFF8 --width 32 --write 0 0 0 0 0 0\nload " << file << words
                              << "\nmem FFF8 6 --width 32\n";
        const TRun run = RunVorelctl("debug --script " + script);
        EXPECT_EQ(run.ExitStatus, 0) << run.Output;
        EXPECT_THAT(run.Output, HasSubstr("00000000 00000002 00000003 00000004"));
    }
}

// The last has a foreign device in front of its pod.
TEST(Vorelctl, TellsWhatIsOddAboutAScene) {
    struct Case {
        const char* Scene;
        int ExitStatus;
        const char* Says;
    };
    const vorel::TTempFolder folder;
    for (const Case& c :
         {Case{"[pod]\n[hard]\ndevice = A id=0BA00477 ir=4 x1000\n", 1,
               "Too long: 1000 devices answer, and 910 are the most"},
          Case{"[pod]\n[hard]\ndevice = A id=0BA00477 ir=4\ndevice = B id=none ir=5\n"
               "device = C id=3BA00477 ir=4\n",
               0, "      0  0x0BA00477\n      1  no id register\n      2  0x3BA00477\n"},
          Case{"[pod]\nvendor = 1234\n[pod]\n[hard]\ndevice = A id=0BA00477 ir=4\n", 1,
               "The pod does not answer."}}) {
        const TRun run = RunVorelctl("scan --scene " + folder.Write("odd.ini", c.Scene));
        EXPECT_EQ(run.ExitStatus, c.ExitStatus) << c.Scene;
        EXPECT_THAT(run.Output, HasSubstr(c.Says));
    }
}

TEST(Vorelctl, ExitStatusTellsWhatIsWrong) {
    struct Case {
        const char* Arguments;
        int ExitStatus;
        const char* Says;
    };
    const Case cases[] = {
        {"--version", 0, "vorelctl "},
        {"--help", 0, "usage:"},
        {"scan --help", 0, "--bitbang HOST:PORT"},
        {"", 2, "usage:"},
        {"nonsense", 2, "There is no command \"nonsense\""},
        {"scan --nonsense", 2, "--nonsense"},
        {"scan --usb --scene x", 2, "Choose one of"},
        {"serve --scene default.ini", 2, "--chain"},
        {"serve --scene default.ini --chain x --port 0", 2, "hard, soft and board"},
        {"bsdl", 2, "bsdl needs a file"},
        {"pins --chain hard", 2, "pins needs --chain and --index"},
        {"pins --chain x --index 0", 2, "hard, soft and board"},
        {"debug nix", 1, "There is no soft device \"nix\""},
        {"debug --script /nowhere", 3, "/nowhere cannot be read"},
        {"debug 0 1", 2, "debug takes no \"1\""},
        {"debug --scene three_devices.ini", 1, "No soft device"},
        {"status zrc3000", 0, "Reset"},
        {"mem 1 0 --width 32 --write 1 2", 0, ""},
        {"regs", 2, "needs a device"},
        {"step 0 x", 2, "\"x\" is no number from 1 to 100000000.\nusage: vorelctl step DEVICE [N]"},
        {"scan --scene /nowhere.ini", 3, "/nowhere.ini"},
        {"scan --bitbang 127.0.0.1:1", 3, "127.0.0.1:1: Connection refused"},
        {"scan --bitbang nonsense", 3, "HOST:PORT"},
    };
    for (const Case& c : cases) {
        const TRun run = RunVorelctl(c.Arguments);
        EXPECT_EQ(run.ExitStatus, c.ExitStatus) << c.Arguments;
        EXPECT_THAT(run.Output, HasSubstr(c.Says)) << c.Arguments;
    }
}

} // namespace
