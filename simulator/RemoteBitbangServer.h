// Serves wires to other programs by the remote_bitbang protocol: one ASCII character per operation
// over a TCP connection. '0' to '7' drive TCK * 4 + TMS * 2 + TDI, 'R' asks for TDO ('0' or '1'
// comes back), 'r' 's' 't' 'u' drive the resets (TRST * 2 + SRST, 1 is asserted), 'B' and 'b'
// switch a lamp, 'Q' ends the connection. Other characters are ignored.
//
// The server listens on 127.0.0.1 only and serves one client at a time; others wait until it has
// gone. It has no thread: the owner calls Poll or Run. Answers to one block of input go out in one
// write; a client that does not read them is not read from either, so memory stays bounded.
#pragma once

#include "simulator/Socket.h"
#include "simulator/Wires.h"

#include <atomic>
#include <cstdint>
#include <string>

namespace vorel::sim {

class TRemoteBitbangServer final {
public:
    // Starts to listen; port 0 picks a free one. The target is not owned and must outlive the
    // server. EVorelError names the port and the reason when it cannot listen.
    TRemoteBitbangServer(IWireTarget& target, std::uint16_t port);

    // The port that it listens on.
    std::uint16_t Port() const noexcept { return ListenPort; }
    // Waits up to `timeoutMs` (0: not at all) for something to do and does it. False when nothing
    // came.
    bool Poll(int timeoutMs);
    // Polls until `stop` is set; it is looked at ten times a second at least.
    void Run(const std::atomic<bool>& stop);

    bool HasClient() const noexcept { return Client.IsOpen(); }
    bool LampIsOn() const noexcept { return Lamp; }
    std::uint64_t ClientCount() const noexcept { return Clients; }
    // Blocks read and answer blocks written, over all clients.
    std::uint64_t BlocksRead() const noexcept { return Reads; }
    std::uint64_t BlocksWritten() const noexcept { return Writes; }
    std::uint64_t IgnoredCharacters() const noexcept { return Ignored; }

private:
    void Accept();
    void ReadBlock();
    void SendAnswers();
    // False when the client said goodbye.
    bool Interpret(char c);
    void DropClient();

    IWireTarget& Target;
    TSocket Listener;
    TSocket Client;
    std::uint16_t ListenPort = 0;
    std::string Answers; // not sent yet
    bool Lamp = false;
    std::uint64_t Clients = 0;
    std::uint64_t Reads = 0;
    std::uint64_t Writes = 0;
    std::uint64_t Ignored = 0;
};

} // namespace vorel::sim
