// Why a chain cannot be read, told from bits: a raw look at a chain through its channel, and what
// the bits mean.
#pragma once

#include "vorel/Channel.h"

#include <optional>
#include <string>
#include <vector>

namespace vorel::host {

// What a raw look at a chain brought. Bits in the order of BitText: the first bit seen stands
// rightmost.
struct TChainBits {
    BitText AfterReset; // Shift-DR after a reset while TDI is 1: ids, and a 0 for each device
                        // without one
    BitText ZeroFill;   // all devices in BYPASS, TDI 0
    BitText OneFill;    // right behind it, TDI 1: as many zeros as there are devices, then ones
};

enum class TChainFault {
    None,       // the chain can be read
    StuckLow,   // TDO is 0 whatever is shifted
    StuckHigh,  // TDO is 1 whatever is shifted: nothing is there, or TDO is held at 1
    Loop,       // TDO follows TDI with no device between
    Broken,     // devices near TDO answer, but what enters at TDI never comes out
    TooLong,    // bits come through, behind more devices than can be counted
    Unreliable, // something answers, but not twice the same
};

struct TChainDiagnosis {
    TChainFault Fault = TChainFault::None;
    std::size_t Delay = 0;        // devices that the bits passed; Loop, TooLong, None
    std::size_t AnswersAtEnd = 0; // Broken: devices next to TDO whose id was seen
    BitText BitsSeen;             // the first 64 of AfterReset

    // One sentence for people: what is wrong.
    std::string Describe() const;
    // What to check, first things first. Empty for None. A soft chain lives in an FPGA's user
    // logic.
    std::vector<std::string> Advice(bool softChain = false) const;
    // "ok", "stuck-low", "empty", "loop", "broken", "too-long", "unreliable"
    std::string Keyword() const;
};

// The largest number of devices that the library's count can make out.
inline constexpr std::size_t CountableDevices = 910;
// Bits that Look shifts through in each of its three parts.
inline constexpr std::int32_t LookBits = 8192;

// Shifts test bits through the chain; takes the channel's lock. Leaves the TAPs in Run-Test/Idle.
// The status is that of the first operation that failed.
Status Look(IJTagChannel& channel, TChainBits& bits) noexcept;

TChainDiagnosis Diagnose(const TChainBits& bits);

// The ids of `count` devices in bits shifted out after a reset, device 0 (nearest TDI) first; a
// device without an id register gives nothing there. Fewer entries when the bits end first.
std::vector<std::optional<std::uint32_t>> DecodeIds(const BitText& afterReset, std::size_t count);

} // namespace vorel::host
