// The operations of a channel's three interfaces: statuses outside, Do... inside.
#include "core/BitVector.h"
#include "core/ChainScan.h"
#include "core/JTagChannel.h"
#include "core/JTagPort.h"
#include "support/Errors.h"
#include "support/Text.h"

namespace vorel {

namespace {

// Numeric instructions go in as that many digits; a longer instruction register repeats them.
constexpr std::int32_t NumberWidth = 32;

constexpr std::string_view FillText(std::uint8_t bit) noexcept {
    return bit != 0 ? "1" : "0";
}

std::int32_t LengthOf(const BitText& bits) {
    if (bits.size() > INT32_MAX) {
        throw EVorelError(StatusBadArgument, "bit vector of more than 2^31 - 1 bits");
    }
    return static_cast<std::int32_t>(bits.size());
}

// The caller may pass one text for both directions.
BitText TakeSent(const BitText& bits, BitText& captured) {
    BitText sent = bits;
    captured.clear();
    return sent;
}

TTapState ToTapState(std::int32_t state) noexcept {
    return static_cast<TTapState>(state);
}

} // namespace

Status TJTagChannel::Lock(Bool32& locked) noexcept {
    locked = False32;
    return Guard([&] {
        DoLock();
        locked = True32;
    });
}

Status TJTagChannel::Unlock() noexcept {
    return Guard([&] { DoUnlock(); });
}

Status TJTagChannel::SetTckValue(std::uint8_t level) noexcept {
    Tck = level != 0 ? 1 : 0;
    return StatusOk;
}

Status TJTagChannel::SetTdoValue(std::uint8_t level) noexcept {
    Tdo = level != 0 ? 1 : 0;
    return StatusOk;
}

Status TJTagChannel::SetTdiValue(std::uint8_t level) noexcept {
    Tdi = level != 0 ? 1 : 0;
    return StatusOk;
}

Status TJTagChannel::SetTmsValue(std::uint8_t level) noexcept {
    Tms = level != 0 ? 1 : 0;
    return StatusOk;
}

Status TJTagChannel::GetTckValue(std::uint8_t& level) noexcept {
    level = Tck;
    return StatusOk;
}

Status TJTagChannel::GetTdoValue(std::uint8_t& level) noexcept {
    level = Tdo;
    return StatusOk;
}

Status TJTagChannel::GetTdiValue(std::uint8_t& level) noexcept {
    level = Tdi;
    return StatusOk;
}

Status TJTagChannel::GetTmsValue(std::uint8_t& level) noexcept {
    level = Tms;
    return StatusOk;
}

Status TJTagChannel::WritePins() noexcept {
    return Guard([&] { DoWritePins(); });
}

Status TJTagChannel::ReadTdo() noexcept {
    return Guard([&] { DoReadTdo(); });
}

Status TJTagChannel::StoreAndWrite(std::uint8_t& pin, std::uint8_t level) noexcept {
    pin = level != 0 ? 1 : 0;
    return Guard([&] { DoWritePins(); });
}

Status TJTagChannel::SetTdi(std::uint8_t level) noexcept {
    return StoreAndWrite(Tdi, level);
}

Status TJTagChannel::SetTck(std::uint8_t level) noexcept {
    return StoreAndWrite(Tck, level);
}

Status TJTagChannel::SetTms(std::uint8_t level) noexcept {
    return StoreAndWrite(Tms, level);
}

Status TJTagChannel::GetTdo(std::uint8_t& level) noexcept {
    level = 0;
    return Guard([&] {
        DoReadTdo();
        level = Tdo;
    });
}

Status TJTagChannel::SpiWriteByte(std::uint8_t value) noexcept {
    return Guard([&] { DoSpiWriteByte(value); });
}

Status TJTagChannel::SpiExchangeByte(std::uint8_t value, std::uint8_t& received) noexcept {
    received = 0;
    return Guard([&] { received = DoSpiExchangeByte(value); });
}

Status TJTagChannel::SpiExchangeBlock(std::uint8_t* buffer, std::int32_t count) noexcept {
    if (count < 1) {
        return StatusOk;
    }
    if (buffer == nullptr) {
        return StatusBadArgument;
    }
    return Guard([&] { DoSpiExchangeBlock(buffer, count); });
}

Status TJTagChannel::SpiWrite24(std::uint32_t value) noexcept {
    return Guard([&] { DoSpiWriteNumber(value, 3); });
}

Status TJTagChannel::SpiWrite32(std::uint32_t value) noexcept {
    return Guard([&] { DoSpiWriteNumber(value, 4); });
}

Status TJTagChannel::SpiDelay() noexcept {
    return Guard([&] { DoDelay(SpiTicks); });
}

Status TJTagChannel::SelectSpiUnit(std::uint8_t unit, std::uint8_t device, Bool32& ready) noexcept {
    ready = False32;
    return Guard([&] { ready = ToBool32(DoSelectSpiUnit(unit, device)); });
}

Status TJTagChannel::SetAllBypass() noexcept {
    return Guard([&] { TChainScan(*this).SetAllBypass(); });
}

Status TJTagChannel::GetChainLength(std::int32_t& count) noexcept {
    count = 0;
    return Guard([&] { count = TChainScan(*this).GetChainLength(); });
}

Status TJTagChannel::Scan() noexcept {
    return Guard([&] { TChainScan(*this).Scan(); });
}

Status TJTagChannel::GetIdText(WideText& text) noexcept {
    text.clear();
    return Guard([&] {
        for (const std::uint32_t id : TChainScan(*this).ReadIds()) {
            text += ToWide(ToHex(id, 8));
        }
    });
}

Status TJTagChannel::GetDeviceCount(std::int32_t& count) noexcept {
    count = DeviceCount();
    return StatusOk;
}

Status TJTagChannel::GetDevice(std::int32_t index, IJTagDevice*& device) noexcept {
    device = HasDevice(index) ? Devices[static_cast<std::size_t>(index)].get() : nullptr;
    return StatusOk;
}

Status TJTagChannel::IsValidDevice(std::int32_t index, Bool32& valid) noexcept {
    valid = ToBool32(HasDevice(index));
    return StatusOk;
}

Status TJTagChannel::Refresh() noexcept {
    return Guard([&] { DoRefresh(); });
}

Status TJTagChannel::ShiftOutNumber(std::uint32_t value, std::int32_t bitCount,
                                    Bool32 exitShift) noexcept {
    return Guard(
        [&] { DoShiftBits(NumberToBits(value, bitCount), bitCount, false, exitShift != False32); });
}

Status TJTagChannel::ExchangeNumber(std::uint32_t value, std::int32_t bitCount, Bool32 exitShift,
                                    std::uint32_t& captured) noexcept {
    captured = 0;
    return Guard([&] {
        captured = BitsToNumber(
            DoShiftBits(NumberToBits(value, bitCount), bitCount, true, exitShift != False32));
    });
}

Status TJTagChannel::ShiftOutText(const BitText& bits, Bool32 exitShift) noexcept {
    return Guard([&] { DoShiftBits(bits, LengthOf(bits), false, exitShift != False32); });
}

Status TJTagChannel::ExchangeText(const BitText& bits, Bool32 exitShift,
                                  BitText& captured) noexcept {
    return Guard([&] {
        const BitText sent = TakeSent(bits, captured);
        captured = DoShiftBits(sent, LengthOf(sent), true, exitShift != False32);
    });
}

Status TJTagChannel::ExchangeFill(std::uint8_t bit, std::int32_t count, Bool32 exitShift,
                                  BitText& captured) noexcept {
    captured.clear();
    return Guard([&] { captured = DoShiftBits(FillText(bit), count, true, exitShift != False32); });
}

Status TJTagChannel::WriteDr(std::uint32_t value, std::int32_t bitCount,
                             std::int32_t device) noexcept {
    return Guard(
        [&] { DoShiftDataRegister(NumberToBits(value, bitCount), bitCount, false, true, device); });
}

Status TJTagChannel::ExchangeDr(std::uint32_t value, std::int32_t bitCount, std::int32_t device,
                                std::uint32_t& captured) noexcept {
    captured = 0;
    return Guard([&] {
        captured = BitsToNumber(
            DoShiftDataRegister(NumberToBits(value, bitCount), bitCount, true, true, device));
    });
}

Status TJTagChannel::WriteDrText(const BitText& bits, std::int32_t device) noexcept {
    return Guard([&] { DoShiftDataRegister(bits, LengthOf(bits), false, true, device); });
}

Status TJTagChannel::ExchangeDrText(const BitText& bits, std::int32_t device,
                                    BitText& captured) noexcept {
    return Guard([&] {
        const BitText sent = TakeSent(bits, captured);
        captured = DoShiftDataRegister(sent, LengthOf(sent), true, true, device);
    });
}

Status TJTagChannel::ExchangeDrFill(std::uint8_t bit, std::int32_t count, std::int32_t device,
                                    BitText& captured) noexcept {
    captured.clear();
    return Guard([&] { captured = DoShiftDataRegister(FillText(bit), count, true, true, device); });
}

Status TJTagChannel::WriteIr(std::uint32_t value, std::int32_t device) noexcept {
    return Guard(
        [&] { DoShiftInstructionRegister(NumberToBits(value, NumberWidth), device, false, true); });
}

Status TJTagChannel::ExchangeIr(std::uint32_t value, std::int32_t device,
                                std::uint32_t& captured) noexcept {
    captured = 0;
    return Guard([&] {
        captured = BitsToNumber(
            DoShiftInstructionRegister(NumberToBits(value, NumberWidth), device, true, true));
    });
}

Status TJTagChannel::WriteIrText(const BitText& bits, std::int32_t device) noexcept {
    return Guard([&] { DoShiftInstructionRegister(bits, device, false, true); });
}

Status TJTagChannel::ExchangeIrText(const BitText& bits, std::int32_t device,
                                    BitText& captured) noexcept {
    return Guard([&] {
        const BitText sent = TakeSent(bits, captured);
        captured = DoShiftInstructionRegister(sent, device, true, true);
    });
}

Status TJTagChannel::ExchangeIrFill(std::uint8_t bit, std::int32_t device,
                                    BitText& captured) noexcept {
    captured.clear();
    return Guard([&] { captured = DoShiftInstructionRegister(FillText(bit), device, true, true); });
}

Status TJTagChannel::ScanDrWrite(std::uint32_t value, std::int32_t bitCount,
                                 std::int32_t device) noexcept {
    return Guard([&] { DoScanDrWrite(value, bitCount, device); });
}

Status TJTagChannel::ScanDrExchange(std::uint32_t value, std::int32_t bitCount, std::int32_t device,
                                    std::uint32_t& captured) noexcept {
    captured = 0;
    return Guard([&] { captured = DoScanDrExchange(value, bitCount, device); });
}

Status TJTagChannel::ScanDrFill(std::uint8_t bit, std::int32_t count, std::int32_t device,
                                BitText& captured) noexcept {
    captured.clear();
    return Guard([&] { captured = DoScanDrFill(bit != 0, count, device); });
}

Status TJTagChannel::ScanIrWrite(std::uint32_t value, std::int32_t device) noexcept {
    return Guard([&] { DoScanIrWrite(value, device); });
}

Status TJTagChannel::ScanIrExchange(std::uint32_t value, std::int32_t device,
                                    std::uint32_t& captured) noexcept {
    captured = 0;
    return Guard(
        [&] { captured = BitsToNumber(DoScanIr(NumberToBits(value, NumberWidth), true, device)); });
}

Status TJTagChannel::ScanIrFill(std::uint8_t bit, std::int32_t device, BitText& captured) noexcept {
    captured.clear();
    return Guard([&] { captured = DoScanIr(FillText(bit), true, device); });
}

Status TJTagChannel::GetTapState(std::int32_t& state) noexcept {
    state = static_cast<std::int32_t>(Tap.GetState());
    return StatusOk;
}

Status TJTagChannel::TapMove(std::int32_t fromState, std::int32_t toState) noexcept {
    return Guard([&] { DoTapMove(ToTapState(fromState), ToTapState(toState)); });
}

Status TJTagChannel::TapMoveTo(std::int32_t toState) noexcept {
    return Guard([&] { DoTapMove(Tap.GetState(), ToTapState(toState)); });
}

Status TJTagChannel::ResetToIdle(std::int32_t /*toState*/) noexcept {
    return Guard([&] { DoResetToIdle(); });
}

Status TJTagChannel::Clock(std::uint8_t tms) noexcept {
    return Guard([&] { DoClock(tms != 0); });
}

Status TJTagChannel::ResetTap() noexcept {
    return Guard([&] { DoResetTap(); });
}

Status TJTagChannel::Delay(std::uint8_t ticks) noexcept {
    return Guard([&] { DoDelay(ticks); });
}

Status TJTagChannel::GetPort(IJTagPort*& port) noexcept {
    port = &Port.GetInterface();
    return StatusOk;
}

} // namespace vorel
