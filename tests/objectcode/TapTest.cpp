#include "objectcode/Rt_TAP.h"

#include <gtest/gtest.h>

#include <string>

namespace vorel {
namespace {

using enum TTapState;

// Defines the results: of all sequences that lead there, the first in order of length, then value.
std::string SearchAllSequences(TTapState from, TTapState to) {
    for (unsigned length = 0; length <= 8; ++length) {
        for (unsigned value = 0; value < 1U << length; ++value) {
            TTapState state = from;
            std::string path;
            for (unsigned bit = length; bit-- > 0;) {
                const int tms = static_cast<int>(value >> bit & 1U);
                state = TapStateAfter(state, tms);
                path.push_back(static_cast<char>('0' + tms));
            }
            if (state == to) {
                return path;
            }
        }
    }
    return {};
}

TEST(FindTmsPath, AgreesWithTheSearchOfAllSequences) {
    for (std::size_t from = 0; from < TapStateCount; ++from) {
        for (std::size_t to = 1; to < TapStateCount; ++to) {
            const auto a = static_cast<TTapState>(from);
            const auto b = static_cast<TTapState>(to);
            EXPECT_EQ(FindTmsPath(a, b), SearchAllSequences(a, b))
                << TapStateNames[from] << " to " << TapStateNames[to];
        }
    }
}

TEST(FindTmsPath, GivesTheKnownWays) {
    struct Case {
        TTapState From;
        TTapState To;
        const char* Path;
    };
    const Case cases[] = {
        {RESET, IDLE, "0"},           {RESET, IRSHIFT, "01100"},   {IDLE, DRSHIFT, "100"},
        {IDLE, IRSHIFT, "1100"},      {DRSHIFT, IDLE, "110"},      {IRSHIFT, IDLE, "110"},
        {DRPAUSE, IDLE, "110"},       {IRPAUSE, DRSHIFT, "11100"}, {IDLE, RESET, "111"},
        {DRSHIFT, IRSHIFT, "111100"}, {IRSHIFT, DRSHIFT, "11100"}, {DRCAPTURE, IREXIT2, "11110101"},
        {IRSELECT, IDLE, "10"},       {UNDEFINED, RESET, ""},      {IDLE, UNDEFINED, ""},
        {UNDEFINED, UNDEFINED, ""},
    };
    for (const Case& c : cases) {
        EXPECT_EQ(FindTmsPath(c.From, c.To), c.Path);
    }
    EXPECT_EQ(FindTmsPath(static_cast<TTapState>(99), IDLE), "");
    EXPECT_EQ(FindTmsPath(static_cast<TTapState>(99), UNDEFINED), "0") << "any clock leads there";
    EXPECT_EQ(FindTmsPath(IDLE, static_cast<TTapState>(17)), "");
    EXPECT_EQ(FindTmsPath(static_cast<TTapState>(-1), IDLE), "");
}

TEST(TapSimulator, FollowsTheDiagramAndNeverLeavesUndefined) {
    TTapSimulator tap;
    EXPECT_EQ(tap.GetState(), RESET);
    EXPECT_EQ(tap.Step(1), RESET);
    for (const char tms : FindTmsPath(RESET, IRPAUSE)) {
        tap.Step(tms - '0');
    }
    EXPECT_EQ(tap.GetState(), IRPAUSE);
    EXPECT_EQ(tap.Step(2), IREXIT2) << "any TMS but 0 is 1";
    for (int clock = 0; clock < 5; ++clock) {
        tap.Step(1);
    }
    EXPECT_EQ(tap.GetState(), RESET) << "five clocks with TMS 1 reset from anywhere";
    tap.SetState(static_cast<TTapState>(17));
    EXPECT_EQ(tap.Step(0), UNDEFINED);
    EXPECT_EQ(tap.Step(1), UNDEFINED);
    tap.Reset();
    EXPECT_EQ(tap.GetState(), RESET);
}

} // namespace
} // namespace vorel
