// The TAP controller's states and its state diagram (IEEE 1149.1, figure of the TAP controller).
#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

namespace vorel::sim {

enum class TapState : std::uint8_t {
    TestLogicReset,
    RunTestIdle,
    SelectDrScan,
    CaptureDr,
    ShiftDr,
    Exit1Dr,
    PauseDr,
    Exit2Dr,
    UpdateDr,
    SelectIrScan,
    CaptureIr,
    ShiftIr,
    Exit1Ir,
    PauseIr,
    Exit2Ir,
    UpdateIr
};

inline constexpr std::size_t TapStateCount = 16;

// Row: the state; column: TMS at the rising edge of TCK; entry: the state that follows.
inline constexpr std::array<std::array<TapState, 2>, TapStateCount> TapDiagram{{
    {TapState::RunTestIdle, TapState::TestLogicReset}, // TestLogicReset
    {TapState::RunTestIdle, TapState::SelectDrScan},   // RunTestIdle
    {TapState::CaptureDr, TapState::SelectIrScan},     // SelectDrScan
    {TapState::ShiftDr, TapState::Exit1Dr},            // CaptureDr
    {TapState::ShiftDr, TapState::Exit1Dr},            // ShiftDr
    {TapState::PauseDr, TapState::UpdateDr},           // Exit1Dr
    {TapState::PauseDr, TapState::Exit2Dr},            // PauseDr
    {TapState::ShiftDr, TapState::UpdateDr},           // Exit2Dr
    {TapState::RunTestIdle, TapState::SelectDrScan},   // UpdateDr
    {TapState::CaptureIr, TapState::TestLogicReset},   // SelectIrScan
    {TapState::ShiftIr, TapState::Exit1Ir},            // CaptureIr
    {TapState::ShiftIr, TapState::Exit1Ir},            // ShiftIr
    {TapState::PauseIr, TapState::UpdateIr},           // Exit1Ir
    {TapState::PauseIr, TapState::Exit2Ir},            // PauseIr
    {TapState::ShiftIr, TapState::UpdateIr},           // Exit2Ir
    {TapState::RunTestIdle, TapState::SelectDrScan},   // UpdateIr
}};

constexpr TapState NextState(TapState state, bool tms) noexcept {
    return TapDiagram[static_cast<std::size_t>(state)][tms ? 1 : 0];
}

} // namespace vorel::sim
