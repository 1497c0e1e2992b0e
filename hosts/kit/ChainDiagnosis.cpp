#include "hosts/kit/ChainDiagnosis.h"

#include <algorithm>

namespace vorel::host {

namespace {

constexpr std::int32_t Idle = 2;
constexpr std::int32_t DrShift = 5;
constexpr std::size_t BitsShown = 64;
constexpr std::size_t IdBits = 32;

// A bit vector read in the order in which it was seen.
class BitReader {
public:
    explicit BitReader(const BitText& bits) : Bits(bits), Left(bits.size()) {}
    bool Has(std::size_t count) const { return Left >= count; }
    bool Next() { return Bits[--Left] == '1'; }

private:
    const BitText& Bits;
    std::size_t Left;
};

bool AllAre(const BitText& bits, char level) {
    return bits.find_first_not_of(level) == BitText::npos;
}

// How many bits of this level were seen first.
std::size_t LeadingRun(const BitText& bits, char level) {
    const std::size_t last = bits.find_last_not_of(level);
    return last == BitText::npos ? bits.size() : bits.size() - last - 1;
}

// Devices whose id came out before the stream turned constant.
std::size_t CountAnswers(const BitText& afterReset) {
    std::size_t changing = 0;
    if (!afterReset.empty()) {
        const std::size_t other = afterReset.find_first_not_of(afterReset.front());
        changing = other == BitText::npos ? 0 : afterReset.size() - other;
    }
    std::size_t answers = 0;
    std::size_t used = 0;
    for (BitReader reader(afterReset); used < changing && reader.Has(1); ++answers) {
        used += 1;
        if (!reader.Next()) {
            continue;
        }
        for (std::size_t i = 1; i < IdBits && reader.Has(1); ++i, ++used) {
            reader.Next();
        }
    }
    return answers;
}

// Keeps the lock for as long as it lives.
class LockedChannel {
public:
    explicit LockedChannel(IJTagChannel& channel) : Channel(channel) {
        Result = Channel.Lock(Locked);
    }
    ~LockedChannel() {
        if (Locked != False32) {
            Channel.Unlock();
        }
    }
    LockedChannel(const LockedChannel&) = delete;
    LockedChannel& operator=(const LockedChannel&) = delete;
    Status GetStatus() const { return Result; }

private:
    IJTagChannel& Channel;
    Bool32 Locked = False32;
    Status Result = StatusOk;
};

} // namespace

Status Look(IJTagChannel& channel, TChainBits& bits) noexcept {
    const LockedChannel lock(channel);
    Status status = lock.GetStatus();
    const auto then = [&status](auto&& step) {
        if (Succeeded(status)) {
            status = step();
        }
    };
    then([&] { return channel.ResetToIdle(Idle); });
    then([&] { return channel.TapMove(Idle, DrShift); });
    then([&] { return channel.ExchangeFill(1, LookBits, False32, bits.AfterReset); });
    then([&] { return channel.ResetToIdle(Idle); });
    then([&] { return channel.SetAllBypass(); });
    then([&] { return channel.TapMove(Idle, DrShift); });
    then([&] { return channel.ExchangeFill(0, LookBits, False32, bits.ZeroFill); });
    then([&] { return channel.ExchangeFill(1, LookBits, False32, bits.OneFill); });
    then([&] { return channel.ResetToIdle(Idle); });
    return status;
}

TChainDiagnosis Diagnose(const TChainBits& bits) {
    TChainDiagnosis result;
    const std::size_t shown = std::min(bits.AfterReset.size(), BitsShown);
    result.BitsSeen = bits.AfterReset.substr(bits.AfterReset.size() - shown);

    if (bits.AfterReset.empty() || bits.ZeroFill.empty() || bits.OneFill.empty()) {
        result.Fault = TChainFault::Unreliable;
        return result;
    }
    if (AllAre(bits.AfterReset, '0') && AllAre(bits.OneFill, '0')) {
        result.Fault = TChainFault::StuckLow;
        return result;
    }
    if (AllAre(bits.AfterReset, '1') && AllAre(bits.ZeroFill, '1')) {
        result.Fault = TChainFault::StuckHigh;
        return result;
    }
    if (AllAre(bits.ZeroFill, '0') && AllAre(bits.OneFill, '1') && AllAre(bits.AfterReset, '1')) {
        result.Fault = TChainFault::Loop;
        return result;
    }
    if (bits.ZeroFill.front() != '0' || bits.OneFill.front() != '1') {
        result.Fault = TChainFault::Broken;
        result.AnswersAtEnd = CountAnswers(bits.AfterReset);
        return result;
    }
    result.Delay = LeadingRun(bits.OneFill, '0');
    const bool clean = bits.OneFill.find('0') == bits.OneFill.size() - result.Delay;
    if (!clean || result.Delay == 0) {
        result.Fault = TChainFault::Unreliable;
    } else if (result.Delay > CountableDevices) {
        result.Fault = TChainFault::TooLong;
    }
    return result;
}

std::string TChainDiagnosis::Describe() const {
    switch (Fault) {
    case TChainFault::None:
        return "The chain answers.";
    case TChainFault::StuckLow:
        return "TDO stays at 0 whatever is shifted in.";
    case TChainFault::StuckHigh:
        return "Empty: TDO stays at 1 whatever is shifted in; no device answers.";
    case TChainFault::Loop:
        return "TDO follows TDI at once: TDI and TDO are connected with no device between them.";
    case TChainFault::Broken:
        return "Broken: " + std::to_string(AnswersAtEnd) +
               (AnswersAtEnd == 1 ? " device next to TDO answers" : " devices next to TDO answer") +
               ", but nothing that enters at TDI comes out.";
    case TChainFault::TooLong:
        return "Too long: " + std::to_string(Delay) + " devices answer, and " +
               std::to_string(CountableDevices) + " are the most that can be counted.";
    case TChainFault::Unreliable:
        return "Unreliable: something answers, but the bits shifted in do not come out as they "
               "went in.";
    }
    return {};
}

std::vector<std::string> TChainDiagnosis::Advice(bool softChain) const {
    switch (Fault) {
    case TChainFault::None:
        return {};
    case TChainFault::StuckLow:
        return {"Check that the target board is powered.", "Check TDO for a short to ground.",
                "Check that TRST is not held active."};
    case TChainFault::StuckHigh:
        if (softChain) {
            return {"If devices are expected here, check that the FPGA is configured with them."};
        }
        return {"Check that the target board is powered and the cable is plugged in.",
                "Check that TDO of the last device reaches the cable."};
    case TChainFault::Loop:
        return {"Check for a jumper or a bypassed socket between TDI and TDO."};
    case TChainFault::Broken:
        return {"Check the connection from TDI up to the devices that answer.",
                "Check that every device on the way is powered and not held in reset."};
    case TChainFault::TooLong:
        return {"Split the chain, or leave out boards."};
    case TChainFault::Unreliable:
        return {"Check the signal quality of TCK and the ground of the cable.",
                "Try a slower TCK."};
    }
    return {};
}

std::string TChainDiagnosis::Keyword() const {
    switch (Fault) {
    case TChainFault::None:
        return "ok";
    case TChainFault::StuckLow:
        return "stuck-low";
    case TChainFault::StuckHigh:
        return "empty";
    case TChainFault::Loop:
        return "loop";
    case TChainFault::Broken:
        return "broken";
    case TChainFault::TooLong:
        return "too-long";
    case TChainFault::Unreliable:
        return "unreliable";
    }
    return {};
}

std::vector<std::optional<std::uint32_t>> DecodeIds(const BitText& afterReset, std::size_t count) {
    std::vector<std::optional<std::uint32_t>> ids;
    BitReader reader(afterReset);
    while (ids.size() < count && reader.Has(1)) {
        if (!reader.Next()) {
            ids.emplace_back(std::nullopt);
            continue;
        }
        if (!reader.Has(IdBits - 1)) {
            break;
        }
        std::uint32_t id = 1;
        for (unsigned bit = 1; bit < IdBits; ++bit) {
            id |= static_cast<std::uint32_t>(reader.Next()) << bit;
        }
        ids.emplace_back(id);
    }
    std::reverse(ids.begin(), ids.end());
    return ids;
}

} // namespace vorel::host
