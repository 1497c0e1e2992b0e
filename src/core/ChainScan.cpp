#include "core/ChainScan.h"

#include "core/BitVector.h"
#include "core/JTagPort.h"
#include "knowledge/JtagId.h"

#include <algorithm>

namespace vorel {

namespace {

// Ones that fill the instruction registers, and zeros that flush the bypass bits, whatever the
// chain.
constexpr int BypassFill = 4097;
constexpr int FlushFill = 1000;

// No shift of it by a few places looks like itself among zeros and ones.
constexpr std::string_view Marker = "111110100101001000010011";
// The marker is looked for after these first bits behind it, and after each further step.
constexpr std::int32_t FirstStep = 10;
constexpr std::int32_t FurtherStep = 100;
constexpr int SearchRounds = 10;

constexpr std::int32_t IdBits = 32;

} // namespace

void TChainScan::SetAllBypass() {
    Channel.DoTapMove(TTapState::IDLE, TTapState::IRSHIFT);
    Channel.StoreTdi(true);
    Channel.DoWritePins();
    for (int i = 0; i < BypassFill; ++i) {
        Channel.DoClock(false);
    }
    Channel.DoClock(true);
    Channel.DoTapMove(TTapState::IREXIT1, TTapState::IDLE);
}

bool TChainScan::TdoIsHigh() {
    Channel.DoReadTdo();
    return Channel.TdoLevel() != 0;
}

// The number of bits between TDI and TDO, in Shift-DR: how far the marker comes back late.
std::int32_t TChainScan::MeasureDelay() {
    BitText seen =
        Channel.DoShiftBits(Marker, static_cast<std::int32_t>(Marker.size()), true, false);
    const auto readOn = [&](std::int32_t bits) {
        seen.insert(0, Channel.DoShiftBits("1", bits, true, false));
    };
    readOn(FirstStep);
    for (int round = 0; round < SearchRounds; ++round) {
        const std::size_t place = seen.find(Marker);
        if (place != BitText::npos) {
            return static_cast<std::int32_t>(seen.size() - place - Marker.size());
        }
        readOn(FurtherStep);
    }
    return 0;
}

std::int32_t TChainScan::GetChainLength() {
    SetAllBypass();
    Channel.DoTapMove(TTapState::IDLE, TTapState::DRSHIFT);
    Channel.StoreTdi(false);
    for (int i = 0; i < FlushFill; ++i) {
        Channel.DoClock(false);
    }
    bool usable = !TdoIsHigh();
    if (usable) {
        Channel.StoreTdi(true);
        Channel.DoWritePins();
        usable = !TdoIsHigh(); // else TDI is wired straight to TDO
    }
    if (!usable) {
        Channel.DoClock(true);
        Channel.DoTapMove(TTapState::DREXIT1, TTapState::IDLE);
        return 0;
    }
    const std::int32_t length = MeasureDelay();
    if (length != 0) {
        Channel.DoResetToIdle();
    } else {
        Channel.DoTapMove(TTapState::DRSHIFT, TTapState::IDLE);
    }
    return length;
}

std::vector<std::uint32_t> TChainScan::ReadIds() {
    std::vector<std::uint32_t> ids;
    TChannelLock lock(Channel);
    Channel.DoResetToIdle();
    const std::int32_t length = GetChainLength();
    Channel.DoResetToIdle();
    if (length > 0) {
        Channel.DoTapMove(TTapState::IDLE, TTapState::DRSHIFT);
    }
    const BitText zeros = NumberToBits(0, IdBits);
    ids.reserve(static_cast<std::size_t>(length));
    for (std::int32_t i = 0; i < length; ++i) {
        ids.push_back(MaskedIdCode(BitsToNumber(Channel.DoShiftBits(zeros, IdBits, true, false))));
    }
    lock.Release();
    // The first id out is that of the device nearest TDO.
    std::reverse(ids.begin(), ids.end());
    return ids;
}

void TChainScan::Scan() {
    Channel.OwningPort().SetSelectedChain(TJtagPort::NoChain);
    TDeviceList old = Channel.RemoveDevices();
    try {
        for (const std::uint32_t id : ReadIds()) {
            AddDevice(id, old);
        }
    } catch (...) {
        Channel.Retire(old);
        Channel.RetireDevices();
        throw;
    }
    Channel.Retire(old);
}

void TChainScan::AddDevice(std::uint32_t id, TDeviceList& old) {
    std::unique_ptr<TJTagDevice> device = TJTagChannel::TakeById(old, id);
    if (device == nullptr) {
        device = Channel.TakeRetired(id);
    }
    if (device == nullptr) {
        device = Channel.NewDevice();
        device->Identify(id);
    }
    device->SetJTagId(id);
    Channel.Add(std::move(device));
}

} // namespace vorel
