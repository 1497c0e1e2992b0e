// vorelctl as a user runs it: the program of the build tree on shipped scenes, its output compared
// with golden files, and its exit statuses.
#include "hosts/RunProgram.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <memory>
#include <string>

namespace {

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

TEST(Vorelctl, PrintsWhatTheScenesHold) {
    struct Case {
        const char* Scene;
        int ExitStatus;
    };
    for (const Case& c : {Case{"default", 0}, Case{"three_devices", 0}, Case{"empty_chain", 1},
                          Case{"broken_chain", 1}, Case{"stuck_low", 1}, Case{"loop", 1}}) {
        const TRun run = RunVorelctl(std::string("scan --scene ") + c.Scene + ".ini");
        const std::string golden =
            std::string(VOREL_SOURCE_DIR "/tests/hosts/golden/scan_") + c.Scene + ".txt";
        EXPECT_EQ(run.Output, ReadFile(golden)) << "golden file: " << golden;
        EXPECT_EQ(run.ExitStatus, c.ExitStatus) << c.Scene;
    }
}

TEST(Vorelctl, PrintsTheSameAsJson) {
    const TRun run = RunVorelctl("scan --json --scene broken_chain.ini");
    EXPECT_EQ(run.Output, ReadFile(VOREL_SOURCE_DIR "/tests/hosts/golden/scan_broken_chain.json"));
    EXPECT_EQ(run.ExitStatus, 1);
}

TEST(Vorelctl, SaysWhatBsdlFilesHold) {
    const std::string folder = VOREL_SOURCE_DIR "/tests/data/bsdl";
    const std::string golden = VOREL_SOURCE_DIR "/tests/hosts/golden/bsdl";
    struct Case {
        const char* Arguments;
        const char* Golden;
        int ExitStatus;
    };
    for (const Case& c : {Case{"latch.bsd broken.bsd", ".txt", 0},
                          Case{"--json latch.bsd broken.bsd none.bsd", ".json", 1}}) {
        const TRun run = RunVorelctl("bsdl " + std::string(c.Arguments), folder);
        EXPECT_EQ(run.Output, ReadFile(golden + c.Golden)) << "golden file: " << golden << c.Golden;
        EXPECT_EQ(run.ExitStatus, c.ExitStatus);
    }
}

TEST(Vorelctl, SamplesPinsAndMarksChanges) {
    const std::string folder = VOREL_SOURCE_DIR "/tests/data/bsdl/";
    const std::string scene =
        (std::filesystem::temp_directory_path() / "vorelctl-test-pins.ini").string();
    std::ofstream(scene) << "[pod]\n[hard]\ndevice = A id=0BA00477 ir=4\ndevice = L bsdl=" << folder
                         << "latch.bsd pin.D=flip pin.4=1\n";
    const std::string pins = "pins --scene " + scene + " --chain hard ";
    const TRun run = RunVorelctl(pins + "--index 1 --watch --samples 2 --interval 1 --bsdl " +
                                 folder + "latch.bsd");
    const std::string golden = VOREL_SOURCE_DIR "/tests/hosts/golden/pins.txt";
    EXPECT_EQ(run.Output, ReadFile(golden)) << "golden file: " << golden;
    EXPECT_EQ(run.ExitStatus, 0);
    for (const auto& [arguments, says] : std::map<std::string, std::string>{
             {"--index 1",
              "The library has no BSDL file for \"GenericDevice\". Name one with --bsdl"},
             {"--index 2", "There is no device 2 on the hard chain, which has 2."},
             {"--index 1 --port 0", "Port 0 finds no chain. vorelctl scan tells why."},
             {"--index 0 --bsdl " + folder + "port.bsd",
              "an instruction register of 8 bits, but"}}) {
        const TRun wrong = RunVorelctl(pins + arguments);
        EXPECT_EQ(wrong.ExitStatus, 1) << arguments;
        EXPECT_NE(wrong.Output.find(says), std::string::npos) << wrong.Output;
    }
    std::filesystem::remove(scene);
}

TEST(Vorelctl, SaysWhyAChainIsTooLongOrOutOfStep) {
    const std::string scene =
        (std::filesystem::temp_directory_path() / "vorelctl-test-scene.ini").string();
    std::ofstream(scene) << "[pod]\n[hard]\ndevice = A id=0BA00477 ir=4 x1000\n";
    EXPECT_NE(RunVorelctl("scan --scene " + scene)
                  .Output.find("Too long: 1000 devices answer, and 910 are the most"),
              std::string::npos);
    std::ofstream(scene) << "[pod]\n[hard]\ndevice = A id=0BA00477 ir=4\ndevice = B id=none ir=5\n"
                            "device = C id=3BA00477 ir=4\n";
    const std::string output = RunVorelctl("scan --scene " + scene).Output;
    EXPECT_NE(output.find("      0  0x0BA00477\n      1  no id register\n      2  0x3BA00477\n"),
              std::string::npos)
        << output;
    std::filesystem::remove(scene);
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
        {"scan --scene /nowhere.ini", 3, "/nowhere.ini"},
        {"scan --bitbang 127.0.0.1:1", 3, "127.0.0.1:1: Connection refused"},
        {"scan --bitbang nonsense", 3, "HOST:PORT"},
    };
    for (const Case& c : cases) {
        const TRun run = RunVorelctl(c.Arguments);
        EXPECT_EQ(run.ExitStatus, c.ExitStatus) << c.Arguments;
        EXPECT_NE(run.Output.find(c.Says), std::string::npos) << c.Arguments << ": " << run.Output;
    }
}

} // namespace
