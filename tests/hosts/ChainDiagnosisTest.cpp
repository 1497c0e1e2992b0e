#include "hosts/kit/ChainDiagnosis.h"

#include <gtest/gtest.h>

namespace vorel::host {
namespace {

constexpr auto Width = static_cast<std::size_t>(LookBits);

// A stream of LookBits bits whose first bits are `first` (rightmost first) and whose rest is
// `level`.
BitText Stream(const BitText& first, char level) {
    return BitText(Width - first.size(), level) + first;
}

BitText IdBits(std::uint32_t id) {
    BitText bits;
    for (int bit = 31; bit >= 0; --bit) {
        bits.push_back((id >> static_cast<unsigned>(bit) & 1U) != 0 ? '1' : '0');
    }
    return bits;
}

TEST(ChainDiagnosis, NamesTheFault) {
    const BitText ids = IdBits(0x0BA00477) + IdBits(0x01414093);
    struct Case {
        const char* What;
        TChainBits Bits;
        TChainFault Fault;
        std::size_t Delay;
        std::size_t Answers;
    };
    const Case cases[] = {
        {"two devices",
         {Stream(ids, '1'), Stream("11", '0'), Stream("00", '1')},
         TChainFault::None,
         2,
         0},
        {"shorted to ground",
         {Stream("", '0'), Stream("", '0'), Stream("", '0')},
         TChainFault::StuckLow,
         0,
         0},
        {"nothing connected",
         {Stream("", '1'), Stream("", '1'), Stream("", '1')},
         TChainFault::StuckHigh,
         0,
         0},
        {"wired through",
         {Stream("", '1'), Stream("", '0'), Stream("", '1')},
         TChainFault::Loop,
         0,
         0},
        {"open behind two",
         {Stream(ids, '1'), Stream("", '1'), Stream("", '1')},
         TChainFault::Broken,
         0,
         2},
        {"grounded behind one without id",
         {Stream(IdBits(0x0BA00477) + "0", '0'), Stream("", '0'), Stream("", '0')},
         TChainFault::Broken,
         0,
         2},
        {"911 devices",
         {Stream(ids, '1'), Stream("", '0'), Stream(BitText(911, '0'), '1')},
         TChainFault::TooLong,
         911,
         0},
        {"noise",
         {Stream(ids, '1'), Stream("", '0'), Stream("0100", '1')},
         TChainFault::Unreliable,
         2,
         0},
        {"no bits at all", {"", "", ""}, TChainFault::Unreliable, 0, 0},
    };
    for (const Case& c : cases) {
        const TChainDiagnosis diagnosis = Diagnose(c.Bits);
        EXPECT_EQ(diagnosis.Fault, c.Fault) << c.What;
        EXPECT_EQ(diagnosis.Delay, c.Delay) << c.What;
        EXPECT_EQ(diagnosis.AnswersAtEnd, c.Answers) << c.What;
        EXPECT_EQ(diagnosis.Advice().empty(), c.Fault == TChainFault::None) << c.What;
    }
}

TEST(ChainDiagnosis, DecodesIdsAndGapsNearestTdiFirst) {
    const BitText stream = Stream(IdBits(0x0BA00477) + "0" + IdBits(0x01414093), '1');
    const std::vector<std::optional<std::uint32_t>> expected{0x0BA00477, std::nullopt, 0x01414093};
    EXPECT_EQ(DecodeIds(stream, 3), expected);
    EXPECT_EQ(DecodeIds("01", 3).size(), 0U) << "an id that the bits cut off is not an id";
}

} // namespace
} // namespace vorel::host
