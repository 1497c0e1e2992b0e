#include "ParallelTestTools.h"
#include "knowledge/TempFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>
#include <random>

namespace vorel {
namespace {

using testing::ElementsAre;

constexpr const char* Head = "[FileVersion]\nVersion=jtag board FILE V1.0\n";

class BoardFiles : public testing::Test {
protected:
    TJTagParallelPort_BoardType Load(const std::string& rest) {
        TJTagParallelPort_BoardType board;
        EXPECT_TRUE(board.LoadFromFile(Folder.Write("x.JTGBRD", Head + rest)));
        return board;
    }

    TTempFolder Folder;
};

TEST_F(BoardFiles, NumbersEndAtTheFirstForeignCharacterAndAreCutToTheirFields) {
    const auto board = Load("[HardChannel]\nMask_TCK=1aG7\nMask_TMS=\nMask_TDI=0x5\n"
                            "Mask_TDO=FFFFFFFFFFFF00001000\nChannelAddress=123\nNextChannel=100\n"
                            "Multiplexed=1\nIsJTag=0\n[SPIChannel]\n");
    ASSERT_TRUE(board.HardChannel);
    EXPECT_EQ(board.HardChannel->GetMask_TCK(), 0x1AU);
    EXPECT_EQ(board.HardChannel->GetMask_TMS(), 0U);
    EXPECT_EQ(board.HardChannel->GetMask_TDI(), 0U);
    EXPECT_EQ(board.HardChannel->GetMask_TDO(), 0x1000U);
    EXPECT_EQ(board.HardChannel->ChannelAddress, 0x23);
    EXPECT_EQ(board.HardChannel->NextChannel, 0xFF);
    EXPECT_TRUE(board.HardChannel->Multiplexed);
    EXPECT_FALSE(board.HardChannel->IsJTag);
    ASSERT_TRUE(board.SPIChannel);
    EXPECT_EQ(board.SPIChannel->DataBackground, 0xFFU);
    EXPECT_EQ(board.SPIChannel->NextChannel, 0xFF);
    EXPECT_TRUE(board.SPIChannel->IsJTag);
    EXPECT_FALSE(board.BoardChannel || board.SoftChannel);
}

TEST_F(BoardFiles, IdsEndAtAGapAndABoardWithoutIdsMatchesAll) {
    const auto board = Load("[BoardDetails]\nBoardId0=0ABC1234\nBoardId1=1\nBoardId3=3\n");
    EXPECT_THAT(board.BoardIds, ElementsAre(0x0ABC1234U, 1U));
    EXPECT_TRUE(board.MatchesBoardId(1));
    EXPECT_FALSE(board.MatchesBoardId(3));
    EXPECT_TRUE(Load("[HardChannel]\n").MatchesBoardId(3));
}

TEST_F(BoardFiles, ABoardNeedsAHardChainAPortAndTheCableItAsksFor) {
    sim::TParallelCable cable;
    auto noHard = Load("[BoardChannel]\n");
    noHard.SetPort(&cable);
    EXPECT_FALSE(noHard.PortIsUsable());
    auto picky = Load("[BoardDetails]\nXilinx=1\n[HardChannel]\n");
    EXPECT_FALSE(picky.PortIsUsable());
    picky.SetPort(&cable);
    EXPECT_FALSE(picky.PortIsUsable());
    cable.SetIdentificationLoop(true);
    EXPECT_TRUE(picky.PortIsUsable());
}

TEST_F(BoardFiles, BoardsWithIdsComeFirstAndBrokenFilesAreDropped) {
    Folder.Write("a.jtgbrd", std::string(Head) + "[BoardDetails]\nName=A\n");
    Folder.Write("b.JTGBRD", std::string(Head) + "[BoardDetails]\nName=B\nBoardId0=1\n");
    Folder.Write("c.JTGBRD", "[FileVersion]\nVersion=JTag Board File v1.1\n[HardChannel]\n");
    Folder.Write("d.JTGBRD", std::string(Head) + "[BoardDetails]\nName=D\nBoardId0=\n");
    Folder.Write("e.JTGBRD", "");
    Folder.Write("f.JTGBRD", std::string(Head) + std::string(std::size_t{2} * 1024 * 1024, ';'));
    Folder.Write("g.txt", std::string(Head) + "[BoardDetails]\nName=G\n");
    std::filesystem::create_directory(Folder / "h.JTGBRD");
    std::mt19937 random(1);
    std::string noise(5000, '\0');
    for (char& c : noise) {
        c = static_cast<char>(random());
    }
    Folder.Write("i.JTGBRD", noise);
    TJTagParallelPort_InstalledBoardTypes boards(Folder.Path());
    std::string names;
    for (std::size_t i = 0; i < boards.Count(); ++i) {
        names += boards.BoardAt(i).Name;
    }
    EXPECT_EQ(names, "BDA");
    EXPECT_EQ(TJTagParallelPort_InstalledBoardTypes(Folder / "missing").Count(), 0U);
}

TEST(ShippedBoards, AreUsableAndTheProvableOneComesFirst) {
    TJTagParallelPort_InstalledBoardTypes boards(VOREL_SOURCE_DIR "/data/System");
    sim::TParallelCable cable;
    ASSERT_EQ(boards.Count(), 3U);
    EXPECT_THAT(boards.BoardAt(0).BoardIds, ElementsAre(0x0B8C0B01U));
    EXPECT_TRUE(boards.BoardAt(0).SPIChannel && !boards.BoardAt(0).SPIChannel->IsJTag);
    for (std::size_t i = 0; i < boards.Count(); ++i) {
        boards.BoardAt(i).SetPort(&cable);
        EXPECT_TRUE(boards.BoardAt(i).PortIsUsable()) << boards.BoardAt(i).Name;
    }
}

} // namespace
} // namespace vorel
