#include "ParallelTestTools.h"
#include "support/Errors.h"

#include <gtest/gtest.h>

namespace vorel {
namespace {

TEST(ParallelMapping, AppliesSignalsToTheRightRegisterInTheRightSense) {
    struct Case {
        std::uint32_t Mask;
        std::uint8_t DataHigh, ControlHigh, DataLow, ControlLow;
    };
    // Before each: data register 81, control register 0C.
    for (const Case& c : {Case{0x000002, 0x83, 0x0C, 0x81, 0x0C},    // data
                          Case{0x010000, 0x81, 0x0C, 0x81, 0x0D},    // control bit 0: inverted
                          Case{0x040000, 0x81, 0x0C, 0x81, 0x08},    // control bit 2: not
                          Case{0x060000, 0x81, 0x08, 0x81, 0x0E},    // 1 and 2: the mask inverts
                          Case{0x010001, 0x81, 0x0C, 0x80, 0x0C},    // data wins
                          Case{0x001000, 0x81, 0x0C, 0x81, 0x0C}}) { // status drives nothing
        for (const bool level : {true, false}) {
            sim::TParallelCable cable;
            cable.WriteData(0x81);
            TJTagParallelPort_ChannelMapping mapping;
            mapping.Mask_TDI = c.Mask;
            mapping.SetPort(&cable);
            mapping.SetSignals(0, 0, level ? 1 : 0);
            EXPECT_EQ(cable.DataRegister(), level ? c.DataHigh : c.DataLow) << std::hex << c.Mask;
            EXPECT_EQ(cable.ControlRegister(), level ? c.ControlHigh : c.ControlLow)
                << std::hex << c.Mask;
        }
    }
}

TEST(ParallelMapping, ActiveChannelsStartFromTheBackgroundAndLeaveTheFinalBits) {
    sim::TParallelCable cable;
    cable.WriteData(0x35);
    auto mapping = PlainMapping(cable);
    mapping.Activate();
    EXPECT_EQ(cable.Accesses().Prepares, 1U);
    EXPECT_EQ(cable.DataRegister(), 0xF8);
    mapping.Deactivate();
    EXPECT_EQ(cable.DataRegister(), 0xF8) << "no final bits: the port stays as it is";
    mapping.Mask_DataFinal = 0x0F;
    mapping.DataFinal = 0xF2;
    cable.WriteData(0x35);
    mapping.Activate();
    mapping.Deactivate();
    EXPECT_EQ(cable.DataRegister(), 0x32);
}

TEST(ParallelMapping, WithoutAPortNothingHappensAndAFailingPortRaises) {
    TJTagParallelPort_ChannelMapping none;
    std::uint8_t level = 7;
    none.Activate();
    none.SetSignals(1, 1, 1);
    none.ReadTdo(level);
    none.Deactivate();
    EXPECT_EQ(level, 7);
    sim::TParallelCable cable;
    auto mapping = PlainMapping(cable);
    cable.SetFailure(StatusFromOsError(16));
    EXPECT_THROW(mapping.Activate(), EVorelError);
    EXPECT_THROW(mapping.SetSignals(1, 0, 0), EVorelError);
    EXPECT_THROW(mapping.ReadTdo(level), EVorelError);
}

// Wired by the connector's levels, so the masks' inversions have to be right to get through.
TEST(ParallelMapping, ReadsAnIdOverTheControlRegisterAndTheInvertedStatusLine) {
    using enum sim::PortRegister;
    sim::TChain chain;
    AddDevice(chain, 0xBEEF'0001);
    sim::TParallelCable cable;
    cable.Connect({{Control, 0}, {Control, 2}, {Data, 7}, {Status, 7}}, chain);
    TJTagParallelPort_BoardType board;
    ASSERT_TRUE(board.LoadFromFile(VOREL_SOURCE_DIR "/data/System/ControlSignals.JTGBRD"));
    board.SetPort(&cable);
    board.HardChannel->Activate();
    EXPECT_EQ(ReadId(*board.HardChannel), 0xBEEF'0001U);
    const sim::PortAccesses before = cable.Accesses();
    board.HardChannel->SetSignals(1, 1, 1);
    EXPECT_EQ(cable.Accesses().Total() - before.Total(), 3U) << "one read, at most two writes";
}

} // namespace
} // namespace vorel
