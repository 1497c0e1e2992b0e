#include "simulator/Chain.h"
#include "TapDriver.h"
#include "simulator/Board.h"
#include "simulator/SpiMemory.h"
#include "simulator/Target.h"
#include "support/Errors.h"

#include <gtest/gtest.h>

#include <algorithm>

namespace vorel::sim {
namespace {

constexpr std::uint32_t IdA = 0x1140D093;
constexpr std::uint32_t IdB = 0x59608093;

void Fill(TChain& chain) {
    chain.Add(std::make_unique<TTapDevice>(Part(IdA, 6)));
    chain.Add(std::make_unique<TTapDevice>(Part(std::nullopt, 8)));
    chain.Add(std::make_unique<TTapDevice>(Part(IdB, 3)));
}

TEST(Chain, RunsFromTdiThroughAllDevicesToTdo) {
    TChain chain;
    Fill(chain);
    TapDriver driver(chain);
    driver.ResetToIdle();
    EXPECT_EQ(driver.Dr("101" + BitText(65, '0')),
              "000" + TapDriver::Bits(IdA, 32) + "0" + TapDriver::Bits(IdB, 32));
    EXPECT_EQ(driver.Ir("00000111111111101"), "00000100000001001");
    EXPECT_EQ(chain.Device(0).Instruction(), "000001");
    EXPECT_EQ(chain.Device(1).Instruction(), "11111111");
    EXPECT_EQ(chain.Device(2).Instruction(), "101");
    EXPECT_THROW(chain.Device(3), EVorelError);
}

TEST(Chain, EdgesOneByOneDoTheSameAsWholeClocks) {
    TChain whole;
    TChain edges;
    Fill(whole);
    Fill(edges);
    std::uint32_t random = 1;
    for (int i = 0; i < 5000; ++i) {
        random = random * 1664525 + 1013904223;
        const bool tms = (random >> 30) == 0;
        const bool tdi = (random >> 20 & 1) != 0;
        whole.Clock(tms, tdi);
        edges.SetLines(false, tms, tdi);
        edges.SetLines(true, tms, tdi);
        edges.SetLines(false, tms, tdi);
        ASSERT_EQ(whole.Tdo(), edges.Tdo()) << i;
        ASSERT_EQ(whole.Device(2).State(), edges.Device(2).State()) << i;
    }
    EXPECT_EQ(whole.ClockCount(), edges.ClockCount());
}

TEST(Chain, ShowsItsFaults) {
    struct Case {
        const char* Name;
        WireFault Tdo;
        WireFault BehindFirst;
        WireFault BehindLast;
        BitText Expected; // 8 bits through three devices in BYPASS, sent "10110100"
    };
    constexpr WireFault None = WireFault::None;
    for (const Case& c : {Case{"sound", None, None, None, "10100000"},
                          {"open", WireFault::Open, None, None, "11111111"},
                          {"low", WireFault::StuckLow, None, None, "00000000"},
                          {"high", WireFault::StuckHigh, None, None, "11111111"},
                          {"loop", WireFault::Loop, None, None, "10110100"},
                          {"broken", None, WireFault::Open, None, "11111100"},
                          {"short", None, WireFault::StuckLow, None, "00000000"},
                          {"passes first", None, WireFault::Loop, None, "11010000"},
                          {"passes last", None, None, WireFault::Loop, "11010000"}}) {
        TChain chain;
        Fill(chain);
        TapDriver driver(chain);
        driver.ResetToIdle();
        driver.Ir(BitText(17, '1'));
        chain.SetTdoFault(c.Tdo);
        chain.SetWireFault(0, c.BehindFirst);
        chain.SetWireFault(2, c.BehindLast);
        EXPECT_EQ(driver.Dr("10110100"), c.Expected) << c.Name;
    }
    TChain empty;
    EXPECT_EQ(empty.Tdo(), Level::Released);
    EXPECT_EQ(TapDriver(empty).Dr("1010"), "1111");
    EXPECT_THROW(empty.SetWireFault(0, None), EVorelError);
}

struct BoardFixture : testing::Test {
    BoardFixture() {
        Board.AddController({"Lumaplate", 0x1B8C0B01, 8, {}, {}});
        auto memory = std::make_unique<TSpiMemory>("flash", 0xEF4014);
        Memory = memory.get();
        Board.SetSpiDevice(5, std::move(memory));
        Driver.ResetToIdle();
    }
    // Bytes through the SPI bus in one selection.
    std::vector<unsigned> Spi(const std::vector<unsigned>& bytes) {
        IWireTarget& bus = Board.MultiplexedLines();
        std::vector<unsigned> answers;
        bus.SetLines(false, true, false);
        bus.SetLines(false, false, false);
        for (const unsigned byte : bytes) {
            unsigned answer = 0;
            for (int bit = 7; bit >= 0; --bit) {
                const bool mosi = (byte >> bit & 1) != 0;
                bus.SetLines(false, false, mosi);
                answer = answer << 1 | (IsHigh(bus.Tdo()) ? 1U : 0U);
                bus.Clock(false, mosi);
            }
            answers.push_back(answer);
        }
        bus.SetLines(false, true, false);
        return answers;
    }

    TTarget Target;
    TBoard& Board = Target.AddBoard();
    TSpiMemory* Memory = nullptr;
    TapDriver Driver{Board.ControllerChain()};
};

TEST_F(BoardFixture, ReachesTheSelectedSpiDevice) {
    using Bytes = std::vector<unsigned>;
    Driver.BoardRegister(true, 5 * 4 + 2);
    EXPECT_EQ(Spi({0x9F, 0, 0, 0}), (Bytes{0, 0xEF, 0x40, 0x14}));
    EXPECT_EQ(Spi({0xA5, 0x12, 0x34}), (Bytes{0, 0xA5, 0x12})) << "other commands echo";
    Spi({0x02, 0, 1, 0xFF, 0x55}); // writing is not enabled
    Spi({0x06});
    EXPECT_EQ(Spi({0x05, 0}), (Bytes{0, 2}));
    Spi({0x02, 0, 1, 0xFF, 0x5A, 0xA5}); // wraps within the page
    EXPECT_EQ(Spi({0x05, 0}), (Bytes{0, 0}));
    EXPECT_EQ(Spi({0x03, 0, 1, 0xFF, 0, 0}), (Bytes{0, 0, 0, 0, 0x5A, 0xFF}));
    EXPECT_EQ(Memory->Contents()[0x100], 0xA5);
    Spi({0x06});
    Spi({0xC7});
    EXPECT_EQ(std::ranges::count(Memory->Contents(), 0xFF), 65536);
    Board.MultiplexedLines().SetLines(false, false, false);
    EXPECT_NE(Memory->Tdo(), Level::Released);
    Driver.BoardRegister(true, 0);
    EXPECT_EQ(Memory->Tdo(), Level::Released) << "what is no longer connected is deselected";
    Driver.BoardRegister(true, 3);
    EXPECT_EQ(Driver.BoardRegister(false, 0xFF), 3);
    EXPECT_EQ(Board.Selection(), 3U) << "a read changes nothing";
    EXPECT_EQ(Board.MultiplexedLines().Tdo(), Level::Released) << "3 connects nothing";
    EXPECT_THROW(Board.SetSpiDevice(5, nullptr), EVorelError);
    EXPECT_THROW(Board.SetSpiDevice(32, nullptr), EVorelError);
}

} // namespace
} // namespace vorel::sim
