// One chain behind a parallel-port cable: levels of TCK, TMS and TDI become register writes, and a
// status bit becomes TDO.
#pragma once

#include "support/Objects.h"
#include "vorel/ParallelPort.h"

namespace vorel {

class IJTagAnalyser;

// A signal mask is one word that names the register and the bits: bits 0 to 7 are bits of the data
// register, 8 to 15 of the status register, 16 to 23 of the control register. An output uses its
// data part or, without one, its control part; TDO uses the status part.
//
// Owned by its board type. Failures of the port raise EVorelError; without a port nothing happens.
class TJTagParallelPort_ChannelMapping {
public:
    std::uint32_t Mask_TCK = 0;
    std::uint32_t Mask_TMS = 0;
    std::uint32_t Mask_TDO = 0;
    std::uint32_t Mask_TDI = 0;
    // The data register while the channel is active, before the signals are applied.
    std::uint32_t DataBackground = 0xFF;
    // What to leave in the data register at the end, and in which bits; no bits: leave it alone.
    std::uint32_t DataFinal = 0;
    std::uint32_t Mask_DataFinal = 0;
    // The board has a channel multiplexer, which leads here at ChannelAddress and is set to
    // NextChannel at the end, 0xFF for staying.
    bool Multiplexed = false;
    std::uint8_t ChannelAddress = 0;
    std::uint8_t NextChannel = 0xFF;
    // The TAPs are driven to Run-Test/Idle at the start.
    bool IsJTag = true;

    // Not owned; null takes the port away.
    void SetPort(IParallelPort* port) noexcept { Port = port; }
    IParallelPort* GetPort() const noexcept { return Port; }

    // Who is told of every change of the lines and every read of TDO, and under which number of a
    // set of lines. Not owned; null for nobody.
    void SetAnalyser(IJTagAnalyser* analyser, std::int32_t mode) noexcept {
        Analyser = analyser;
        AnalyserMode = mode;
    }

    std::uint32_t GetMask_TCK() const noexcept { return Mask_TCK; }
    std::uint32_t GetMask_TDO() const noexcept { return Mask_TDO; }
    std::uint32_t GetMask_TDI() const noexcept { return Mask_TDI; }
    std::uint32_t GetMask_TMS() const noexcept { return Mask_TMS; }

    // Claims the port and brings the background and all signals at 0 to it.
    void Activate();
    // Leaves DataFinal behind.
    void Deactivate();
    // Brings the levels, 0 or 1, to the pins: one read of the data register, at most two writes.
    void SetSignals(std::uint8_t tck, std::uint8_t tms, std::uint8_t tdi);
    // Leaves `level` alone without a port.
    void ReadTdo(std::uint8_t& level);

private:
    void ApplySignals(std::uint8_t startData, std::uint8_t tck, std::uint8_t tdi, std::uint8_t tms);

    void Tell(std::uint8_t tck, std::uint8_t tms, std::uint8_t tdi);

    IParallelPort* Port = nullptr;
    IJTagAnalyser* Analyser = nullptr;
    std::int32_t AnalyserMode = 0;
    std::uint8_t SavedData = 0; // as found when the channel became active
};

} // namespace vorel
