// JTAG lines whose hardware stands behind a remote_bitbang server (see RemoteBitbangServer.h for
// the protocol).
//
// Operations are collected and go out together in Finish, which then reads all samples: a batch
// costs one turn however many clocks it holds. A released TDO reads as the server reports it.
#pragma once

#include "simulator/JtagLines.h"
#include "simulator/Socket.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <string>

namespace vorel::sim {

class TRemoteBitbangLines final : public IJtagLines {
public:
    // How long connecting and each wait for the server may take.
    static constexpr int TimeoutMs = 5000;

    // Connects. EVorelError "HOST:PORT: reason" when that fails.
    TRemoteBitbangLines(const std::string& host, std::uint16_t port);
    // Takes over a connection; `name` stands in error texts.
    TRemoteBitbangLines(TSocket connection, std::string name);
    // Says goodbye to the server.
    ~TRemoteBitbangLines() override;

    // "HOST:PORT" in its parts, the port 1 to 65535; EVorelError says what is expected.
    static std::unique_ptr<TRemoteBitbangLines> Connect(const std::string& address);

    void Clock(bool tms, bool tdi) override;
    void ClockSampled(bool tms, bool tdi) override;
    void SetTms(bool level) override;
    void SetTdi(bool level) override;
    void Sample() override;
    bool Finish(std::vector<std::uint8_t>& samples) override;
    std::string ErrorText() const override { return Error; }

    // Batches that were sent, and their characters.
    std::uint64_t BatchCount() const noexcept { return Batches; }
    std::uint64_t CharacterCount() const noexcept { return Characters; }

private:
    void Drive(bool tck);
    bool Exchange(std::vector<std::uint8_t>& samples);
    bool SendSome(std::size_t& sent);
    bool ReceiveSome(std::size_t& received, std::vector<std::uint8_t>& samples);
    bool Fail(const std::string& reason);

    TSocket Connection;
    std::string Name;
    std::string Error;
    std::string Queue;
    std::size_t SampleCount = 0; // samples that the queue asks for
    bool Tck = false;
    bool Tms = true;
    bool Tdi = true;
    char LastDriven = 0; // the character that made the present levels; 0 when not known
    std::uint64_t Batches = 0;
    std::uint64_t Characters = 0;
};

} // namespace vorel::sim
