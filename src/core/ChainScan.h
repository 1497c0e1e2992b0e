// Finds out what is on a chain without knowing anything about its devices: counts them by the delay
// of their bypass bits, reads their ids and matches these with the device objects of earlier scans
// (IEEE 1149.1: a reset selects the id register, all ones select BYPASS).
#pragma once

#include "core/JTagChannel.h"

#include <vector>

namespace vorel {

// Works on one channel, for the length of one operation. Failures raise EVorelError.
class TChainScan {
public:
    explicit TChainScan(TJTagChannel& channel) : Channel(channel) {}

    // From Run-Test/Idle and back, TDI left at 1. Good for 4,098 bits of instruction registers.
    void SetAllBypass();
    // 0 when no number can be made out, because nothing is there, TDO is stuck, TDI is wired to
    // TDO, or there are more than 910 devices. Starts and ends in Run-Test/Idle.
    std::int32_t GetChainLength();
    // Ids as they identify parts, without version bits where these do not count; the device nearest
    // TDI first. Empty when no device answers. Takes the channel's lock.
    std::vector<std::uint32_t> ReadIds();
    // Fills the channel's devices. A device whose id was on the chain before, or long ago, gets its
    // object back; objects that are not needed are retired. When it fails, the chain has no
    // devices.
    void Scan();

private:
    using TDeviceList = TJTagChannel::TDeviceList;

    bool TdoIsHigh();
    std::int32_t MeasureDelay();
    void AddDevice(std::uint32_t id, TDeviceList& old);

    TJTagChannel& Channel;
};

} // namespace vorel
