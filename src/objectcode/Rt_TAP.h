// Tracking the TAP controllers of a JTAG chain, whose state cannot be read: a model that is clocked
// along with them, and the shortest way from one state to another. The state diagram is that of
// IEEE 1149.1.
#pragma once

#include "vorel/Types.h"

#include <array>
#include <string>

namespace vorel {

// The numbers are fixed: interfaces pass them as integers. UNDEFINED is a sink that no clock
// leaves.
enum class TTapState : std::int32_t {
    UNDEFINED = 0,
    RESET = 1, // Test-Logic-Reset
    IDLE = 2,  // Run-Test/Idle
    DRSELECT = 3,
    DRCAPTURE = 4,
    DRSHIFT = 5,
    DREXIT1 = 6,
    DRPAUSE = 7,
    DREXIT2 = 8,
    DRUPDATE = 9,
    IRSELECT = 10,
    IRCAPTURE = 11,
    IRSHIFT = 12,
    IREXIT1 = 13,
    IRPAUSE = 14,
    IREXIT2 = 15,
    IRUPDATE = 16,
};

inline constexpr std::size_t TapStateCount = 17;

inline constexpr std::array<const char*, TapStateCount> TapStateNames{
    "UNDEFINED", "RESET",   "IDLE",    "DRSELECT", "DRCAPTURE", "DRSHIFT",
    "DREXIT1",   "DRPAUSE", "DREXIT2", "DRUPDATE", "IRSELECT",  "IRCAPTURE",
    "IRSHIFT",   "IREXIT1", "IRPAUSE", "IREXIT2",  "IRUPDATE"};

// Command words of the Serial Vector Format, behind a first entry for "none". Vocabulary only.
inline constexpr std::array<const char*, 15> SvfCommandNames{
    "UndefinedCommand", "ENDDR", "ENDIR", "FREQUENCY", "HDR", "HIR", "PIO", "PIOMAP",
    "RUNTEST",          "SDR",   "SIR",   "STATE",     "TDR", "TIR", "TRST"};

namespace detail {
// The state after a clock with TMS 0 and TMS 1.
inline constexpr std::array<std::array<TTapState, 2>, TapStateCount> TapTransitions{{
    {TTapState::UNDEFINED, TTapState::UNDEFINED},
    {TTapState::IDLE, TTapState::RESET},
    {TTapState::IDLE, TTapState::DRSELECT},
    {TTapState::DRCAPTURE, TTapState::IRSELECT},
    {TTapState::DRSHIFT, TTapState::DREXIT1},
    {TTapState::DRSHIFT, TTapState::DREXIT1},
    {TTapState::DRPAUSE, TTapState::DRUPDATE},
    {TTapState::DRPAUSE, TTapState::DREXIT2},
    {TTapState::DRSHIFT, TTapState::DRUPDATE},
    {TTapState::IDLE, TTapState::DRSELECT},
    {TTapState::IRCAPTURE, TTapState::RESET},
    {TTapState::IRSHIFT, TTapState::IREXIT1},
    {TTapState::IRSHIFT, TTapState::IREXIT1},
    {TTapState::IRPAUSE, TTapState::IRUPDATE},
    {TTapState::IRPAUSE, TTapState::IREXIT2},
    {TTapState::IRSHIFT, TTapState::IRUPDATE},
    {TTapState::IDLE, TTapState::DRSELECT},
}};
} // namespace detail

// One clock. Any TMS but 0 counts as 1; a number that is no state gives UNDEFINED.
constexpr TTapState TapStateAfter(TTapState state, int tms) noexcept {
    const auto index = static_cast<std::size_t>(state);
    return index < TapStateCount ? detail::TapTransitions[index][tms != 0 ? 1 : 0]
                                 : TTapState::UNDEFINED;
}

// The TMS bits of the shortest way, first bit first; among equally short ones the text that sorts
// first. Empty when both states are the same or there is no way. At most 8 bits between real
// states.
std::string FindTmsPath(TTapState fromState, TTapState toState);

// The model of one chain's TAP controllers. It stands in RESET at first; Step goes along with every
// TCK.
class TTapSimulator {
public:
    TTapState Step(int tms) noexcept { return CurrentState = TapStateAfter(CurrentState, tms); }
    void SetState(TTapState state) noexcept { CurrentState = state; }
    void Reset() noexcept { SetState(TTapState::RESET); }
    TTapState GetState() const noexcept { return CurrentState; }

private:
    TTapState CurrentState = TTapState::RESET;
};

} // namespace vorel
