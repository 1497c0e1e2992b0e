#include "TapDriver.h"
#include "simulator/Chain.h"
#include "support/Errors.h"

#include <gtest/gtest.h>

#include <string>

namespace vorel::sim {
namespace {

// One clock for each TMS level, left to right.
void Clock(TTapDevice& tap, std::string_view levels) {
    for (const char level : levels) {
        tap.Rise(level == '1', true);
        tap.Fall();
    }
}

TEST(TapDevice, FollowsTheStateDiagram) {
    using enum TapState;
    // The diagram once more, as the standard draws it.
    struct Case {
        const char* Path; // TMS levels from Test-Logic-Reset to the state
        TapState State;
        TapState Zero; // what follows with TMS 0 and 1
        TapState One;
    };
    const Case cases[] = {{"", TestLogicReset, RunTestIdle, TestLogicReset},
                          {"0", RunTestIdle, RunTestIdle, SelectDrScan},
                          {"01", SelectDrScan, CaptureDr, SelectIrScan},
                          {"010", CaptureDr, ShiftDr, Exit1Dr},
                          {"0100", ShiftDr, ShiftDr, Exit1Dr},
                          {"0101", Exit1Dr, PauseDr, UpdateDr},
                          {"01010", PauseDr, PauseDr, Exit2Dr},
                          {"010101", Exit2Dr, ShiftDr, UpdateDr},
                          {"01011", UpdateDr, RunTestIdle, SelectDrScan},
                          {"011", SelectIrScan, CaptureIr, TestLogicReset},
                          {"0110", CaptureIr, ShiftIr, Exit1Ir},
                          {"01100", ShiftIr, ShiftIr, Exit1Ir},
                          {"01101", Exit1Ir, PauseIr, UpdateIr},
                          {"011010", PauseIr, PauseIr, Exit2Ir},
                          {"0110101", Exit2Ir, ShiftIr, UpdateIr},
                          {"011011", UpdateIr, RunTestIdle, SelectDrScan}};
    for (const Case& c : cases) {
        for (const bool tms : {false, true}) {
            SCOPED_TRACE(std::string(c.Path) + (tms ? ", 1" : ", 0"));
            TTapDevice tap(Part(0x1));
            Clock(tap, c.Path);
            EXPECT_EQ(tap.State(), c.State);
            Clock(tap, tms ? "1" : "0");
            const TapState next = tms ? c.One : c.Zero;
            EXPECT_EQ(tap.State(), next);
            EXPECT_EQ(tap.Tdo() != Level::Released, next == ShiftDr || next == ShiftIr);
            Clock(tap, "11111");
            EXPECT_EQ(tap.State(), TestLogicReset);
        }
    }
}

TEST(TapDevice, SamplesAtTheRisingEdgeAndDrivesAtTheFallingEdge) {
    TTapDevice tap(Part(0x3));
    Clock(tap, "010");
    ASSERT_EQ(tap.State(), TapState::CaptureDr);
    tap.Rise(false, true);
    EXPECT_EQ(tap.Tdo(), Level::Released) << "TDO is not driven before the falling edge";
    tap.Fall();
    EXPECT_EQ(tap.Tdo(), Level::High);
    tap.Rise(false, false);
    tap.Fall();
    EXPECT_EQ(tap.Tdo(), Level::High);
    tap.Rise(false, false);
    EXPECT_EQ(tap.Tdo(), Level::High) << "the second bit stays until TCK falls";
    tap.Fall();
    EXPECT_EQ(tap.Tdo(), Level::Low);
    EXPECT_EQ(tap.ClockCount(), 6U);
}

TEST(TapDevice, SelectsIdcodeOrBypassAfterReset) {
    struct Case {
        TapSettings Settings;
        BitText Capture;     // what Capture-IR gives
        BitText Instruction; // after reset
        BitText Dr;          // 40 bits after reset, ones behind
    };
    const BitText id = TapDriver::Bits(0x1140D093, 32);
    for (const Case& c :
         {Case{Part(0x1140D093, 6), "000001", "000001", "11111111" + id},
          {Part(std::nullopt, 6), "000001", "111111", BitText(39, '1') + "0"},
          {{"c", 0x1140D093, 5, "11001", "10110"}, "11001", "10110", "11111111" + id},
          {Part(0x1140D093, 1), "1", "0", "11111111" + id},
          {Part(std::nullopt, 70), BitText(69, '0') + "1", BitText(70, '1'),
           BitText(39, '1') + "0"}}) {
        TChain chain;
        const TTapDevice& tap = chain.Add(std::make_unique<TTapDevice>(c.Settings));
        TapDriver driver(chain);
        driver.Tms("0");
        EXPECT_EQ(tap.Instruction(), c.Instruction);
        EXPECT_EQ(driver.Dr(BitText(40, '1')), c.Dr);
        EXPECT_EQ(driver.Ir(BitText(c.Capture.size(), '1')), c.Capture);
        EXPECT_EQ(driver.Dr("1101"), "1010");
        EXPECT_EQ(tap.Instruction(), BitText(c.Capture.size(), '1'));
        driver.ResetToIdle();
        EXPECT_EQ(tap.Instruction(), c.Instruction);
        EXPECT_EQ(driver.Dr(BitText(40, '1')), c.Dr);
        driver.Ir(BitText(c.Capture.size(), '1'));
        chain.SetTrst(true);
        EXPECT_EQ(tap.State(), TapState::TestLogicReset);
        EXPECT_EQ(tap.Instruction(), c.Instruction);
    }
}

TEST(TapDevice, RefusesSettingsThatNoDeviceHas) {
    for (const TapSettings& settings : {Part(1, 0),
                                        Part(1, TTapDevice::MaxIrLength + 1),
                                        {"x", 1, 4, "0010", {}},
                                        {"x", 1, 4, "001", {}},
                                        {"x", 1, 4, "0x01", {}},
                                        {"x", 1, 4, {}, "11"}}) {
        EXPECT_THROW(TTapDevice{settings}, EVorelError);
    }
}

} // namespace
} // namespace vorel::sim
