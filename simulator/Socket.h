// A TCP socket that never blocks; waiting is a call of its own. Owns its descriptor.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

namespace vorel::sim {

class TSocket final {
public:
    TSocket() noexcept = default;
    // Takes over an open socket and makes it non-blocking.
    explicit TSocket(int descriptor);
    TSocket(TSocket&& other) noexcept;
    TSocket& operator=(TSocket&& other) noexcept;
    ~TSocket();

    // Connects, with a limit on the time. EVorelError "HOST:PORT: reason".
    static TSocket Connect(const std::string& host, std::uint16_t port, int timeoutMs);
    // Listens on 127.0.0.1; port 0 picks a free one. EVorelError "127.0.0.1:PORT: reason".
    static TSocket Listen(std::uint16_t port);

    bool IsOpen() const noexcept { return Descriptor >= 0; }
    void Close() noexcept;
    // The port at this end.
    std::uint16_t LocalPort() const;
    // The next client that waits; a closed socket when there is none.
    TSocket Accept();

    enum class Result : std::uint8_t {
        Done,    // `count` bytes were moved
        NotNow,  // nothing can be moved at present
        Finished // the other end has closed, or the connection failed; Reason() tells
    };
    Result Send(const char* data, std::size_t size, std::size_t& count) noexcept;
    Result Receive(char* data, std::size_t size, std::size_t& count) noexcept;
    // Why the latest Send or Receive gave Finished.
    const std::string& Reason() const noexcept { return ReasonText; }

    // Waits until the socket can be read or, with `toSend`, written (`toRead` false leaves reading
    // out); false when `timeoutMs` went by first.
    bool Wait(bool toRead, bool toSend, int timeoutMs) const;

private:
    Result Conclude(long result, std::size_t& count) noexcept;

    int Descriptor = -1;
    std::string ReasonText;
};

} // namespace vorel::sim
