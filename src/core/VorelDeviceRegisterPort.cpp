// The register port that soft devices have on the chain.
//
// Instruction 11 opens it. An access is two data scans under that instruction: the address byte
// (register number times 2, plus 1 for a read), then the data.
#include "core/VorelDevice.h"

#include <algorithm>

namespace vorel {

namespace {

constexpr std::uint32_t RegisterPortInstruction = 11;
constexpr std::int32_t AddressBits = 8;

// TAP states by their channel numbers.
constexpr std::int32_t TapIdle = 2;
constexpr std::int32_t TapDrShift = 5;
constexpr std::int32_t TapDrExit1 = 6;

constexpr std::uint32_t ReadAddress(std::uint8_t registerNumber) noexcept {
    return (registerNumber * 2U + 1U) & 0xFFU;
}
constexpr std::uint32_t WriteAddress(std::uint8_t registerNumber) noexcept {
    return (registerNumber * 2U) & 0xFFU;
}

bool IsOnChain(IJTagChannel& channel, std::int32_t chainIndex) {
    std::int32_t count = 0;
    Check(channel.GetDeviceCount(count), "Counting the devices of the chain");
    return chainIndex >= 0 && chainIndex < count;
}

void Move(IJTagChannel& channel, std::int32_t from, std::int32_t to) {
    Check(channel.TapMove(from, to), "Moving the TAP");
}

// Opens the port of the device, sends the address and lets `shiftData` move the data from Shift-DR
// to Exit1-DR.
template<class Shift>
void Access(IJTagChannel& channel, std::int32_t chainIndex, std::uint32_t address,
            Shift shiftData) {
    Check(channel.ScanIrWrite(RegisterPortInstruction, chainIndex), "Opening the register port");
    Move(channel, TapIdle, TapDrShift);
    Check(channel.WriteDr(address, AddressBits, chainIndex), "Sending the register's address");
    Move(channel, TapDrExit1, TapIdle);
    Move(channel, TapIdle, TapDrShift);
    Check(shiftData(), "Moving the register's data");
    Move(channel, TapDrExit1, TapIdle);
}

// Runs `access` on the locked channel; nothing without one.
template<class Body>
Status OnLockedChannel(TDriverLink& link, Body access) noexcept {
    IJTagChannel* const channel = link.GetChannel();
    if (channel == nullptr) {
        return StatusOk;
    }
    return link.WithChannelLocked([&] { return Guard([&] { access(*channel); }); });
}

} // namespace

Status TVorelDevice::ReadRegisterNumber(std::uint8_t registerNumber, std::int32_t bitCount,
                                        std::uint32_t& value) noexcept {
    value = 0;
    return OnLockedChannel(Link, [&](IJTagChannel& channel) {
        if (IsOnChain(channel, ChainIndex)) {
            Access(channel, ChainIndex, ReadAddress(registerNumber),
                   [&] { return channel.ExchangeDr(0, bitCount, ChainIndex, value); });
        }
    });
}

Status TVorelDevice::WriteRegisterNumber(std::uint8_t registerNumber, std::int32_t bitCount,
                                         std::uint32_t value) noexcept {
    return OnLockedChannel(Link, [&](IJTagChannel& channel) {
        if (IsOnChain(channel, ChainIndex)) {
            Access(channel, ChainIndex, WriteAddress(registerNumber),
                   [&] { return channel.WriteDr(value, bitCount, ChainIndex); });
        }
    });
}

Status TVorelDevice::ReadRegisterText(std::uint8_t registerNumber, std::int32_t bitCount,
                                      BitText& bits) noexcept {
    bits.clear();
    return OnLockedChannel(Link, [&](IJTagChannel& channel) {
        if (IsOnChain(channel, ChainIndex)) {
            const BitText zeros(static_cast<std::size_t>(std::max(bitCount, 0)), '0');
            Access(channel, ChainIndex, ReadAddress(registerNumber),
                   [&] { return channel.ExchangeDrText(zeros, ChainIndex, bits); });
        }
    });
}

Status TVorelDevice::WriteRegisterText(std::uint8_t registerNumber, const BitText& bits) noexcept {
    return OnLockedChannel(Link, [&](IJTagChannel& channel) {
        Access(channel, ChainIndex, WriteAddress(registerNumber),
               [&] { return channel.WriteDrText(bits, ChainIndex); });
    });
}

} // namespace vorel
