#include "transport/TrafficRecording.h"
#include "ParallelTestTools.h"
#include "support/Errors.h"
#include "support/Text.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <map>
#include <sstream>

namespace vorel {
namespace {

using testing::ElementsAre;

std::string FileText(const std::string& path) {
    std::ifstream file(path, std::ios::binary);
    std::ostringstream text;
    text << file.rdbuf();
    return file ? text.str() : "missing";
}

TEST(Recorder, WritesTicksWithTheBitsOfAShiftAtItsEnd) {
    TJTagAnalyserRecorder recorder("x", "");
    for (const int tms : {0, 1, 0, 0, 0}) {
        recorder.RecordTick(0, tms, 1);
    }
    recorder.RecordTick(1, 1, 0);
    recorder.RecordTdoString("ignored outside of a transfer");
    recorder.BeginRead();
    recorder.RecordTdoString("01");
    recorder.EndRead();
    recorder.RecordTick(0, 1, 0);
    EXPECT_THAT(recorder.Lines(), ElementsAre("0: Mode:0 TMS:0 TDI:1 TCK:Tick ->IDLE",
                                              "1: Mode:0 TMS:1 TDI:1 TCK:Tick ->DRSELECT",
                                              "2: Mode:0 TMS:0 TDI:1 TCK:Tick ->DRCAPTURE",
                                              "3: Mode:0 TMS:0 TDI:1 TCK:Tick ->DRSHIFT",
                                              "4: Mode:0 TMS:0 TDI:1 TCK:Tick ->DRSHIFT",
                                              "5: Mode:1 TMS:1 TDI:0 TCK:Tick ->DREXIT1 (01)",
                                              "6: Mode:0 TMS:1 TDI:0 TCK:Tick ->DRUPDATE"));
    EXPECT_THAT(recorder.ReadLines(),
                ElementsAre("0: -", "1: -", "2: -", "3: -", "4: Read TDO:1", "5: Read TDO:0"));
    EXPECT_EQ(recorder.Totals().ReadCount, 1);
}

TEST(Recorder, WritesLevelsAndTakesOnlyARisingEdgeForAClock) {
    const std::string folder = testing::TempDir();
    TJTagAnalyserRecorder recorder("levels", folder);
    recorder.RecordSignals(0, 0, 1, 0);
    recorder.RecordSignals(0, 0, 1, 1);
    recorder.RecordSignals(1, 1, 1, 1);
    recorder.RecordTdo(1);
    recorder.Save();
    EXPECT_EQ(FileText(folder + "/levels_JTAG.txt"), "0: Mode:0 TMS:0 TDI:1 TCK:0\n"
                                                     "1: Mode:0 TMS:0 TDI:1 TCK:1 ->IDLE\n"
                                                     "2: Mode:1 TMS:1 TDI:1 TCK:1\n"
                                                     "17\n");
    EXPECT_EQ(FileText(folder + "/levels_JTAGOut.txt"), "0: -\n1: -\n2: Read TDO:1\n");
    EXPECT_TRUE(recorder.Lines().empty() && recorder.ReadLines().empty());
    recorder.RecordEnabled = false;
    recorder.RecordTick(0, 0, 0);
    EXPECT_TRUE(recorder.Lines().empty());
}

TEST(Recorder, AnAdaptorWithoutRecorderSucceedsAndOneReportsFailures) {
    TJTagAnalyserAdaptor adaptor;
    EXPECT_EQ(adaptor.RecordTick(0, 1, 1), StatusOk);
    EXPECT_EQ(adaptor.Save(), StatusOk);
    TTrafficRecording recording("x", "/no/such/folder");
    adaptor.Form = &recording;
    EXPECT_EQ(adaptor.RecordTick(0, 1, 1), StatusOk);
    EXPECT_TRUE(Failed(adaptor.Save()));
    EXPECT_EQ(recording.TextRecorder().Lines().size(), 1U) << "a failed save loses nothing";
}

// Reads a dump as any viewer does, knowing only the format, and samples at the rising edges of TCK.
class VcdReader {
public:
    explicit VcdReader(const std::string& text) {
        for (const std::string& line : SplitLines(text)) {
            Take(line);
        }
        Sample();
    }

    std::string States; // after each clock, blank between
    BitText Tdo;        // sampled at each clock in Shift-DR, the first rightmost
    std::string Scopes;

private:
    void Take(const std::string& line) {
        std::istringstream items(line);
        std::string first, kind, size, id, name;
        items >> first;
        if (first == "$scope") {
            items >> kind >> name;
            Scopes += name + " ";
        } else if (first == "$var") {
            items >> kind >> size >> id >> name;
            Names[id] = name;
        } else if (line.front() == '#') {
            Sample();
        } else if (line.front() == 's') {
            items >> id;
            Now[Names[id]] = first.substr(1);
        } else if (line.front() != '$') {
            Now[Names[line.substr(1)]] = line.substr(0, 1);
        }
    }

    void Sample() {
        if (Before["TCK"] != "1" && Now["TCK"] == "1") {
            States += Now["STATE"] + " ";
            if (Before["STATE"] == "DRSHIFT") {
                Tdo.insert(0, Before["TDO"]);
            }
        }
        Before = Now;
    }

    std::map<std::string, std::string> Names, Now, Before;
};

TEST(Vcd, ShowsStatesAndTheIdThatWasReadThroughACable) {
    sim::TChain chain;
    AddDevice(chain, 0x8765'4321);
    sim::TParallelCable cable;
    cable.Connect(PlainWiring(), chain);
    auto mapping = PlainMapping(cable);
    TVcdWriter writer("");
    TJTagAnalyserAdaptor adaptor;
    adaptor.Form = &writer;
    mapping.SetAnalyser(&adaptor, 1);
    mapping.Activate();
    ASSERT_EQ(ReadId(mapping), 0x8765'4321U);
    const VcdReader waves(writer.ToText());
    EXPECT_EQ(waves.Scopes, "jtag1 ");
    EXPECT_EQ(waves.Tdo, "10000111011001010100001100100001");
    EXPECT_THAT(waves.States, testing::StartsWith("RESET RESET RESET RESET RESET IDLE DRSELECT "
                                                  "DRCAPTURE DRSHIFT DRSHIFT "));
    EXPECT_THAT(waves.States, testing::EndsWith("DRSHIFT DREXIT1 "));
}

TEST(Vcd, GivesBitsThatCameLateToTheirClocks) {
    TVcdWriter writer("");
    for (const int tms : {0, 1, 0, 0}) {
        writer.RecordTick(0, tms, 0);
    }
    for (int i = 0; i < 3; ++i) {
        writer.RecordTick(0, 0, 1);
    }
    writer.RecordTdoString("110");
    writer.RecordTick(0, 1, 1);
    EXPECT_EQ(VcdReader(writer.ToText()).Tdo, "x110");
    writer.RecordTdoString(BitText(20, '1'));
    EXPECT_EQ(VcdReader(writer.ToText()).Tdo, "1111") << "more bits than clocks: the rest is lost";
}

} // namespace
} // namespace vorel
