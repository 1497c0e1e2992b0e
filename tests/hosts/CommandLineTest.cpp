#include "hosts/vorelctl/CommandLine.h"

#include <gtest/gtest.h>

namespace vorel::host {
namespace {

const std::vector<TOption> Options{
    {"--scene", "FILE", "a file"}, {"--json", "", "as JSON"}, {"--port", "N", "a port"}};

TEST(CommandLine, ReadsOptionsInEitherForm) {
    const TArguments arguments({"a", "--scene=x=y", "--json", "--port", "7", "--", "--json"},
                               Options);
    EXPECT_EQ(arguments.Find("--scene"), "x=y");
    EXPECT_TRUE(arguments.Has("--json"));
    EXPECT_EQ(arguments.FindNumber("--port", 1, 65535), 7);
    EXPECT_EQ(arguments.Words(), (std::vector<std::string>{"a", "--json"}));
    EXPECT_EQ(TArguments({"--scene", "1", "--scene", "2"}, Options).Find("--scene"), "2");
}

TEST(CommandLine, RefusesWhatItDoesNotKnow) {
    const std::vector<std::vector<std::string>> wrong{{"--nope"}, {"--scene"}, {"--json=1"}};
    for (const auto& words : wrong) {
        try {
            const TArguments arguments(words, Options);
            ADD_FAILURE() << words.front() << " was accepted";
        } catch (const ECommandFailure& failure) {
            EXPECT_EQ(failure.GetExitStatus(), ExitStatus::WrongUsage);
        }
    }
    for (const char* value : {"", "0", "x", "65536", "7 8"}) {
        const TArguments arguments({"--port", value}, Options);
        EXPECT_THROW(arguments.FindNumber("--port", 1, 65535), ECommandFailure) << value;
    }
}

} // namespace
} // namespace vorel::host
