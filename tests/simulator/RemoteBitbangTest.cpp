#include "TapDriver.h"
#include "simulator/Chain.h"
#include "simulator/RemoteBitbangLines.h"
#include "simulator/RemoteBitbangServer.h"
#include "simulator/Scene.h"
#include "simulator/SimUsbServices.h"
#include "support/Errors.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>
#include <sys/socket.h>

namespace vorel::sim {
namespace {

using testing::HasSubstr;

void Send(TSocket& socket, const std::string& text) {
    std::size_t count = 0;
    socket.Send(text.data(), text.size(), count);
    EXPECT_EQ(count, text.size());
}

// What has come so far.
std::string Receive(TSocket& socket) {
    std::string text(1000, '\0');
    std::size_t count = 0;
    socket.Receive(text.data(), text.size(), count);
    text.resize(count);
    return text;
}

// A server for one device.
struct ServerFixture : testing::Test {
    ServerFixture() { Chain.Add(std::make_unique<TTapDevice>(Part(0x1140D093, 6))); }
    // Sends, lets the server work, and gives what came back.
    std::string Talk(TSocket& client, const std::string& text) {
        Send(client, text);
        const std::uint64_t clients = Server.ClientCount();
        Server.Poll(1000);
        if (Server.ClientCount() != clients) {
            Server.Poll(1000);
        }
        return Receive(client);
    }
    TSocket Connect() { return TSocket::Connect("127.0.0.1", Server.Port(), 5000); }

    TChain Chain;
    TRemoteBitbangServer Server{Chain, 0};
};

// TMS 0100 from Test-Logic-Reset to Shift-DR, then TDO before each of 4 clocks.
constexpr const char* ToShiftDr = "0402604040";

TEST_F(ServerFixture, InterpretsEachCharacter) {
    TSocket client = Connect();
    EXPECT_EQ(Talk(client, "R"), "1") << "a released TDO reads 1";
    EXPECT_EQ(Talk(client, std::string(ToShiftDr) + "R40R40R40R40"), "1100");
    EXPECT_EQ(Chain.Device(0).State(), TapState::ShiftDr);
    EXPECT_EQ(Talk(client, "B!x\n\xFE\x38"), "");
    EXPECT_TRUE(Server.LampIsOn());
    EXPECT_EQ(Server.IgnoredCharacters(), 5U);
    EXPECT_EQ(Talk(client, "btR"), "1");
    EXPECT_FALSE(Server.LampIsOn());
    EXPECT_EQ(Chain.Device(0).State(), TapState::TestLogicReset);
    EXPECT_EQ(Talk(client, "040R"), "1") << "held in reset";
    EXPECT_EQ(Chain.Device(0).State(), TapState::TestLogicReset);
    EXPECT_EQ(Talk(client, "r040"), "");
    EXPECT_EQ(Chain.Device(0).State(), TapState::RunTestIdle);
    EXPECT_EQ(Server.BlocksRead(), 6U);
    EXPECT_EQ(Server.BlocksWritten(), 4U) << "one write for each block with answers";
}

TEST_F(ServerFixture, ServesOneClientAfterAnother) {
    EXPECT_FALSE(Server.Poll(0));
    {
        TSocket client = Connect();
        EXPECT_EQ(Talk(client, "RuQR"), "1") << "nothing is read behind Q";
        EXPECT_FALSE(Server.HasClient());
    }
    {
        TSocket client = Connect();
        EXPECT_EQ(Talk(client, "040R"), "1");
        EXPECT_EQ(Chain.Device(0).State(), TapState::RunTestIdle) << "the reset was let go";
    }
    Server.Poll(1000); // notices that the client has gone without a word
    EXPECT_FALSE(Server.HasClient());
    TSocket client = Connect();
    EXPECT_EQ(Talk(client, "RR"), "11");
    EXPECT_EQ(Server.ClientCount(), 3U);
}

TEST_F(ServerFixture, KeepsAnswersBoundedForAClientThatDoesNotRead) {
    TSocket client = Connect();
    const std::string block(65536, 'R');
    std::size_t sent = 0;
    std::size_t count = 0;
    for (int i = 0; i < 1000; ++i) {
        sent += client.Send(block.data(), block.size(), count) == TSocket::Result::Done ? count : 0;
        Server.Poll(0);
    }
    EXPECT_EQ(count, 0U) << "the server goes on reading";
    std::string answer(1 << 20, '\0');
    std::size_t received = 0;
    for (int i = 0; i < 100000 && received < sent; ++i) {
        received += client.Receive(answer.data(), answer.size(), count) == TSocket::Result::Done
                        ? count
                        : 0;
        Server.Poll(0);
    }
    EXPECT_EQ(received, sent);
}

TEST(RemoteBitbangLines, SayWhyTheyCannotConnect) {
    std::uint16_t unused = 0;
    { unused = TSocket::Listen(0).LocalPort(); }
    const std::string closed = "127.0.0.1:" + std::to_string(unused);
    for (const auto& [address, error] :
         std::map<std::string, std::string>{{closed, closed + ": Connection refused"},
                                            {"127.0.0.1", "HOST:PORT is expected"},
                                            {"127.0.0.1:65536", "PORT from 1 to 65535"},
                                            {":1", "HOST:PORT is expected"}}) {
        EXPECT_THAT([&a = address] { TRemoteBitbangLines::Connect(a); },
                    testing::ThrowsMessage<EVorelError>(HasSubstr(error)));
    }
}

// The other end of the lines, held by the test.
struct PeerFixture : testing::Test {
    PeerFixture() {
        std::array<int, 2> ends{};
        EXPECT_EQ(socketpair(AF_UNIX, SOCK_STREAM, 0, ends.data()), 0);
        Peer = TSocket(ends[0]);
        Lines = std::make_unique<TRemoteBitbangLines>(TSocket(ends[1]), "there:7");
    }
    void Answer(const std::string& text) { Send(Peer, text); }
    std::string Sent() { return Receive(Peer); }

    TSocket Peer;
    std::unique_ptr<TRemoteBitbangLines> Lines;
    std::vector<std::uint8_t> Samples;
};

TEST_F(PeerFixture, SendsEachOperationAsItsCharacters) {
    Lines->Clock(false, true);
    Lines->Clock(true, true);
    Lines->ClockSampled(true, false);
    Answer("0");
    EXPECT_TRUE(Lines->Finish(Samples));
    EXPECT_EQ(Sent(), "15372R62") << "falling edges go out with the next levels";
    Lines->SetTdi(false);
    Lines->SetTms(false);
    Lines->Sample();
    Answer("1");
    EXPECT_TRUE(Lines->Finish(Samples));
    EXPECT_EQ(Sent(), "0R");
    EXPECT_EQ(Samples, (std::vector<std::uint8_t>{0, 1}));
    EXPECT_TRUE(Lines->Finish(Samples));
    EXPECT_EQ(Lines->BatchCount(), 2U) << "an empty batch costs nothing";
    Lines.reset();
    EXPECT_EQ(Sent(), "Q");
}

TEST_F(PeerFixture, FailsForGoodWhenTheConnectionIsLost) {
    Lines->Sample();
    Lines->Sample();
    Answer("1");
    Peer.Close();
    EXPECT_FALSE(Lines->Finish(Samples));
    EXPECT_THAT(Lines->ErrorText(), testing::StartsWith("there:7: "));
    Lines->Clock(true, true);
    EXPECT_FALSE(Lines->Finish(Samples));

    TSimUsbServices usb;
    TSimPod& pod = usb.Add(std::make_unique<TSimPod>(UsbIdentity{}, std::move(Lines)));
    const std::array<std::uint8_t, 4> stream{1, 0x55, 0, 0xE1};
    EXPECT_FALSE(pod.Firmware()->Write(stream.data(), stream.size()));
    EXPECT_EQ(pod.Firmware()->AnswerBytes(), 0U);
    EXPECT_THAT(pod.Firmware()->ErrorText(), testing::StartsWith("there:7: "));
}

TEST_F(PeerFixture, RefusesAServerThatSpeaksSomethingElse) {
    Lines->Sample();
    Answer("HTTP");
    EXPECT_FALSE(Lines->Finish(Samples));
    EXPECT_THAT(Lines->ErrorText(), HasSubstr("does not speak remote_bitbang"));
}

} // namespace
} // namespace vorel::sim
