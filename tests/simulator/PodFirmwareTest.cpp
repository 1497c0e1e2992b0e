#include "simulator/PodFirmware.h"
#include "TapDriver.h"
#include "simulator/SimPod.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace vorel::sim {
namespace {

using Bytes = std::vector<std::uint8_t>;

// Lines that write down what they are told and answer from a list of levels.
class RecordingLines : public IJtagLines {
public:
    void Clock(bool tms, bool tdi) override { Add('c', tms, tdi); }
    void ClockSampled(bool tms, bool tdi) override {
        Add('C', tms, tdi);
        ++Wanted;
    }
    void SetTms(bool level) override { Log += level ? "m1 " : "m0 "; }
    void SetTdi(bool level) override { Log += level ? "d1 " : "d0 "; }
    void Sample() override {
        Log += "S ";
        ++Wanted;
    }
    bool Finish(std::vector<std::uint8_t>& samples) override {
        ++Finishes;
        for (; Wanted > 0; --Wanted) {
            samples.push_back(Levels.empty() ? 0 : static_cast<std::uint8_t>(Levels[0] - '0'));
            Levels.erase(0, 1);
        }
        return true;
    }
    std::string ErrorText() const override { return {}; }

    std::string Log;
    std::string Levels;
    int Finishes = 0;

private:
    void Add(char kind, bool tms, bool tdi) {
        Log += kind;
        Log += tms ? '1' : '0';
        Log += tdi ? "1 " : "0 ";
    }
    int Wanted = 0;
};

struct FirmwareFixture : testing::Test {
    RecordingLines Lines[2][2];
    TPodFirmware Firmware{PodLines{{{{&Lines[0][0], &Lines[0][1]}, {&Lines[1][0], &Lines[1][1]}}}}};

    bool Write(const Bytes& bytes) { return Firmware.Write(bytes.data(), bytes.size()); }
    Bytes Answers() {
        Bytes bytes(Firmware.AnswerBytes());
        Firmware.Read(bytes.data(), bytes.size());
        return bytes;
    }
};

TEST_F(FirmwareFixture, InterpretsEachItem) {
    struct Case {
        const char* Name;
        Bytes Items;
        const char* Log0; // what select 0 was told
        const char* Log1;
        const char* Levels; // what TDO gives
        Bytes Answers;
    };
    const Bytes mixed{0, 0xE1, 0, 0x00, 0, 0xF1, 0, 0xE1};
    const Bytes unknown{0, 0x60, 0, 0x65, 0, 0xE0, 0, 0xD1, 0, 0x72, 0, 0x80, 0, 0x43};
    for (const Case& c : std::vector<Case>{
             {"identify", {0, 0x00}, "", "", "", {'1', '1'}},
             {"end, wait, session", {0, 0x10, 9, 0x20, 1, 0x50}, "", "", "", {}},
             {"four clocks", {0x1B, 0x64}, "c11 c10 c01 c00 ", "", "", {}},
             {"one clock, other select", {0x02, 0x69}, "", "c10 ", "", {}},
             {"two with capture", {0x04, 0xE2}, "C00 C01 ", "", "10", {0, 0x40}},
             {"three with capture", {0x00, 0xEB}, "", "C00 C00 C00 ", "101", {0, 0xA0}},
             {"four with capture", {0xFF, 0xE4}, "C11 C11 C11 C11 ", "", "0011", {0, 0xC0}},
             {"TMS goes to both", {1, 0x51, 0, 0x51}, "m1 m0 ", "m1 m0 ", "", {}},
             {"TDI", {1, 0x71, 0, 0x79}, "d1 ", "d0 ", "", {}},
             {"sample", {1, 0xF1}, "d1 S ", "", "1", {0, 0x80}},
             {"sample, other select", {0, 0xF9}, "", "d0 S ", "0", {0, 0}},
             {"in order", mixed, "C00 d0 S C00 ", "", "101", {0, 0x80, '1', '1', 0, 0, 0, 0x80}},
             {"no such items", unknown, "", "", "", {}}}) {
        for (int select = 0; select < 2; ++select) {
            Lines[0][select].Log.clear();
            Lines[0][select].Levels = c.Levels;
        }
        EXPECT_TRUE(Write(c.Items));
        EXPECT_EQ(Lines[0][0].Log, c.Log0) << c.Name;
        EXPECT_EQ(Lines[0][1].Log, c.Log1) << c.Name;
        EXPECT_EQ(Answers(), c.Answers) << c.Name;
    }
    EXPECT_EQ(Firmware.State().UnknownItems, 7U);
}

TEST_F(FirmwareFixture, KeepsItsSettings) {
    Write({7,    0x41, 8,    0x42, 9,    0x44, 0,    0x61, 1,    0x50, 0,
           0x62, 0,    0x69, 200,  0x20, 100,  0x20, 0,    0x10, 1,    0x55});
    const PodState& state = Firmware.State();
    EXPECT_EQ(state.TimingA, 7);
    EXPECT_EQ(state.TimingB, 8);
    EXPECT_EQ(state.TimingD, 9);
    EXPECT_TRUE(state.Session);
    EXPECT_EQ(state.DelayTicks, 300U);
    EXPECT_EQ(state.Batches, 1U);
    EXPECT_EQ(state.Clocks[0], 3U);
    EXPECT_EQ(state.Clocks[1], 1U);
    EXPECT_EQ(state.ClocksOutsideSession, 1U);
    EXPECT_EQ(state.Mode, 1);
    Lines[0][0].Log.clear();
    Write({0, 0x61, 0, 0x50});
    EXPECT_EQ(Lines[0][0].Log, "");
    EXPECT_EQ(Lines[1][0].Log, "c00 ");
    EXPECT_FALSE(state.Session);
    Firmware.Reset();
    EXPECT_EQ(state.Mode, 0);
}

TEST_F(FirmwareFixture, TakesAStreamInAnyPiecesAndCollectsOncePerWrite) {
    Write({0x1B});
    EXPECT_EQ(Lines[0][0].Log, "");
    Write({0x64, 0x00, 0x00, 0});
    EXPECT_EQ(Lines[0][0].Log, "c11 c10 c01 c00 ");
    EXPECT_EQ(Answers(), (Bytes{'1', '1'}));
    const int before = Lines[0][0].Finishes;
    Write(Bytes(509, 0xE1));
    EXPECT_EQ(Lines[0][0].Finishes, before + 1);
    EXPECT_EQ(Answers().size(), 510U);
    for (int i = 0; i < 200; ++i) {
        Write(Bytes(512, 0));
    }
    EXPECT_EQ(Firmware.AnswerBytes(), TPodFirmware::MaxAnswerBytes);
}

// The first four bits of an id behind a reset, over the pod's wire format.
int FirstBits(TPodFirmware& firmware, std::uint8_t mode, std::uint8_t select) {
    const auto clocks = [select](unsigned count) {
        return static_cast<std::uint8_t>(0x60 + 8 * select + count);
    };
    // Five clocks with TMS 1, then 0, 1, 0, 0 to Shift-DR.
    const Bytes stream{mode,      0x55, 0xAA,      clocks(4), 0x02,
                       clocks(1), 0x08, clocks(4), 0,         clocks(0x84)};
    EXPECT_TRUE(firmware.Write(stream.data(), stream.size()));
    Bytes answers(2);
    EXPECT_EQ(firmware.Read(answers.data(), 2), 2U);
    return answers[1] >> 4;
}

TEST(Pod, ConnectsItsLinesByModeAndSelect) {
    auto target = std::make_unique<TTarget>();
    target->HardChain().Add(std::make_unique<TTapDevice>(Part(0x3)));
    target->SoftChain().Add(std::make_unique<TTapDevice>(Part(0x5)));
    const TSimPod pod(UsbIdentity{}, std::move(target));
    EXPECT_EQ(FirstBits(*pod.Firmware(), 0, 0), 0xF) << "no board";
    EXPECT_EQ(FirstBits(*pod.Firmware(), 0, 1), 0xF);
    EXPECT_EQ(FirstBits(*pod.Firmware(), 1, 0), 0x3);
    EXPECT_EQ(FirstBits(*pod.Firmware(), 1, 1), 0x5);
}

} // namespace
} // namespace vorel::sim
