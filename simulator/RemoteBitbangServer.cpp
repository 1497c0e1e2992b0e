#include "simulator/RemoteBitbangServer.h"

#include <algorithm>
#include <array>

namespace vorel::sim {

namespace {

constexpr std::size_t BlockSize = 65536;
constexpr int StopPollMs = 100;

} // namespace

TRemoteBitbangServer::TRemoteBitbangServer(IWireTarget& target, std::uint16_t port)
    : Target(target), Listener(TSocket::Listen(port)), ListenPort(Listener.LocalPort()) {}

bool TRemoteBitbangServer::Poll(int timeoutMs) {
    if (!Client.IsOpen()) {
        if (!Listener.Wait(true, false, timeoutMs)) {
            return false;
        }
        Accept();
        return true;
    }
    const bool toSend = !Answers.empty();
    if (!Client.Wait(!toSend, toSend, timeoutMs)) {
        return false;
    }
    if (toSend) {
        SendAnswers();
    } else {
        ReadBlock();
    }
    return true;
}

void TRemoteBitbangServer::Run(const std::atomic<bool>& stop) {
    while (!stop) {
        Poll(StopPollMs);
    }
}

void TRemoteBitbangServer::Accept() {
    Client = Listener.Accept();
    Clients += Client.IsOpen() ? 1 : 0;
}

void TRemoteBitbangServer::ReadBlock() {
    std::array<char, BlockSize> block;
    std::size_t count = 0;
    const TSocket::Result result = Client.Receive(block.data(), block.size(), count);
    if (result == TSocket::Result::Finished) {
        DropClient();
    }
    if (result != TSocket::Result::Done) {
        return;
    }
    ++Reads;
    const bool stays =
        std::all_of(block.begin(), block.begin() + static_cast<std::ptrdiff_t>(count),
                    [this](char c) { return Interpret(c); });
    if (!Answers.empty()) {
        SendAnswers();
    }
    if (!stays) {
        DropClient();
    }
}

void TRemoteBitbangServer::SendAnswers() {
    std::size_t count = 0;
    const TSocket::Result result = Client.Send(Answers.data(), Answers.size(), count);
    if (result == TSocket::Result::Finished) {
        DropClient();
    } else if (result == TSocket::Result::Done) {
        ++Writes;
        Answers.erase(0, count);
    }
}

bool TRemoteBitbangServer::Interpret(char c) {
    if (c >= '0' && c <= '7') {
        const unsigned levels = static_cast<unsigned>(c - '0');
        Target.SetLines((levels & 4) != 0, (levels & 2) != 0, (levels & 1) != 0);
    } else if (c == 'R') {
        Answers.push_back(IsHigh(Target.Tdo()) ? '1' : '0');
    } else if (c >= 'r' && c <= 'u') {
        Target.SetTrst(c >= 't');
    } else if (c == 'B' || c == 'b') {
        Lamp = c == 'B';
    } else if (c == 'Q') {
        return false;
    } else {
        ++Ignored;
    }
    return true;
}

// The wires keep their levels; a reset that the client held is released.
void TRemoteBitbangServer::DropClient() {
    Client.Close();
    Answers.clear();
    Target.SetTrst(false);
}

} // namespace vorel::sim
