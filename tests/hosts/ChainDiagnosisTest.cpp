#include "hosts/kit/ChainDiagnosis.h"

#include <gtest/gtest.h>

namespace vorel::host {
namespace {

// LookBits bits that begin with `first` (rightmost first) and go on at `level`.
BitText Stream(const BitText& first, char level) {
    return BitText(static_cast<std::size_t>(LookBits) - first.size(), level) + first;
}

// The plain faults are in the golden scans of virtual chains.
TEST(ChainDiagnosis, NamesTheRareFaults) {
    const BitText id = "00001011101000000000010001110111";
    struct Case {
        const char* What;
        TChainBits Bits;
        const char* Keyword;
        std::size_t Delay, Answers;
    };
    const BitText zeros = Stream("", '0');
    const BitText answers = Stream(id, '1');
    const Case cases[] = {
        {"one without id, then ground", {Stream(id + "0", '0'), zeros, zeros}, "broken", 0, 2},
        {"910 devices", {answers, zeros, Stream(BitText(910, '0'), '1')}, "ok", 910, 0},
        {"911 devices", {answers, zeros, Stream(BitText(911, '0'), '1')}, "too-long", 911, 0},
        {"noise", {answers, zeros, Stream("0100", '1')}, "unreliable", 2, 0},
        {"no bits at all", {"", "", ""}, "unreliable", 0, 0},
    };
    for (const Case& c : cases) {
        const TChainDiagnosis diagnosis = Diagnose(c.Bits);
        EXPECT_EQ(diagnosis.Keyword(), c.Keyword) << c.What;
        EXPECT_EQ(diagnosis.Delay, c.Delay) << c.What;
        EXPECT_EQ(diagnosis.AnswersAtEnd, c.Answers) << c.What;
        EXPECT_EQ(diagnosis.Advice().empty(), c.Keyword == std::string("ok")) << c.What;
    }
    EXPECT_EQ(DecodeIds("01", 3).size(), 0U) << "an id that the bits cut off is not an id";
}

} // namespace
} // namespace vorel::host
