#include "simulator/RemoteBitbangLines.h"

#include "support/Errors.h"
#include "support/Text.h"

#include <algorithm>
#include <array>
#include <utility>

namespace vorel::sim {

namespace {

constexpr int TckWeight = 4;
constexpr int TmsWeight = 2;

} // namespace

TRemoteBitbangLines::TRemoteBitbangLines(const std::string& host, std::uint16_t port)
    : TRemoteBitbangLines(TSocket::Connect(host, port, TimeoutMs),
                          host + ":" + std::to_string(port)) {}

TRemoteBitbangLines::TRemoteBitbangLines(TSocket connection, std::string name)
    : Connection(std::move(connection)), Name(std::move(name)) {}

TRemoteBitbangLines::~TRemoteBitbangLines() {
    std::size_t count = 0;
    if (Connection.IsOpen() && Error.empty()) {
        Connection.Send("Q", 1, count);
    }
}

std::unique_ptr<TRemoteBitbangLines> TRemoteBitbangLines::Connect(const std::string& address) {
    const std::size_t colon = address.rfind(':');
    const auto port =
        colon == std::string::npos ? std::nullopt : ParseDecimal(address.substr(colon + 1));
    if (!port || *port < 1 || *port > 65535 || colon == 0) {
        throw EVorelError(StatusBadArgument,
                          "\"" + address + "\": HOST:PORT is expected, PORT from 1 to 65535");
    }
    return std::make_unique<TRemoteBitbangLines>(address.substr(0, colon),
                                                 static_cast<std::uint16_t>(*port));
}

// Queues the present TMS and TDI with this level of TCK, unless the wires have just that.
void TRemoteBitbangLines::Drive(bool tck) {
    const auto levels =
        static_cast<char>('0' + (tck ? TckWeight : 0) + (Tms ? TmsWeight : 0) + (Tdi ? 1 : 0));
    Tck = tck;
    if (levels != LastDriven) {
        Queue.push_back(levels);
        LastDriven = levels;
    }
}

// The falling edge of a clock goes out with the next levels, so that a clock costs two characters.
void TRemoteBitbangLines::Clock(bool tms, bool tdi) {
    Tms = tms;
    Tdi = tdi;
    Drive(false);
    Drive(true);
}

void TRemoteBitbangLines::ClockSampled(bool tms, bool tdi) {
    Tms = tms;
    Tdi = tdi;
    Sample();
    Drive(true);
}

void TRemoteBitbangLines::SetTms(bool level) {
    if (Tck) {
        Drive(false);
    }
    Tms = level;
    Drive(false);
}

void TRemoteBitbangLines::SetTdi(bool level) {
    if (Tck) {
        Drive(false);
    }
    Tdi = level;
    Drive(false);
}

void TRemoteBitbangLines::Sample() {
    Drive(false);
    Queue.push_back('R');
    ++SampleCount;
}

bool TRemoteBitbangLines::Finish(std::vector<std::uint8_t>& samples) {
    if (Tck) {
        Drive(false);
    }
    if (Queue.empty() || !Error.empty()) {
        Queue.clear();
        SampleCount = 0;
        return Error.empty();
    }
    ++Batches;
    Characters += Queue.size();
    const bool done = Exchange(samples);
    Queue.clear();
    SampleCount = 0;
    return done;
}

// Sends and receives in turn, as either end may have to make room for the other.
bool TRemoteBitbangLines::Exchange(std::vector<std::uint8_t>& samples) {
    std::size_t sent = 0;
    std::size_t received = 0;
    while (sent < Queue.size() || received < SampleCount) {
        if (!Connection.Wait(received < SampleCount, sent < Queue.size(), TimeoutMs)) {
            return Fail("no answer within " + std::to_string(TimeoutMs / 1000) + " seconds");
        }
        if ((sent < Queue.size() && !SendSome(sent)) ||
            (received < SampleCount && !ReceiveSome(received, samples))) {
            return false;
        }
    }
    return true;
}

bool TRemoteBitbangLines::SendSome(std::size_t& sent) {
    std::size_t count = 0;
    if (Connection.Send(Queue.data() + sent, Queue.size() - sent, count) ==
        TSocket::Result::Finished) {
        return Fail(Connection.Reason());
    }
    sent += count;
    return true;
}

bool TRemoteBitbangLines::ReceiveSome(std::size_t& received, std::vector<std::uint8_t>& samples) {
    std::array<char, 4096> block;
    std::size_t count = 0;
    const std::size_t wanted = std::min(block.size(), SampleCount - received);
    if (Connection.Receive(block.data(), wanted, count) == TSocket::Result::Finished) {
        return Fail(Connection.Reason());
    }
    for (std::size_t i = 0; i < count; ++i) {
        if (block[i] != '0' && block[i] != '1') {
            return Fail("the answer to R is neither 0 nor 1; the server does not speak "
                        "remote_bitbang");
        }
        samples.push_back(block[i] == '1' ? 1 : 0);
    }
    received += count;
    return true;
}

bool TRemoteBitbangLines::Fail(const std::string& reason) {
    Error = Name + ": " + reason;
    Connection.Close();
    return false;
}

} // namespace vorel::sim
