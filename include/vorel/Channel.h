// A channel is one JTAG chain behind a port, from a single pin up to a complete scan aimed at one
// device.
//
// Bit vectors are texts of '0' and '1', most significant bit at the left; the rightmost character
// is shifted first, and captured TDO comes back the same way. Numbers carry up to 32 bits, bit 0
// shifted first; a number shifted further than 32 bits is followed by zeros, and of a longer
// capture the last 32 bits count. TAP states are numbered 0 (undefined), 1 Test-Logic-Reset, 2
// Run-Test/Idle, 3 to 9 the DR column and 10 to 16 the IR column from Select to Update.
//
// Device indices count from 0, the device nearest TDI. Every operation that reaches hardware
// expects its caller to hold Lock. Channels live as long as their port and are not counted.
// Failures of the port come back as failing statuses.
#pragma once

#include "vorel/Interface.h"

namespace vorel {

class IJTagDevice;
class IJTagPort;

// The raw pin image.
class IJTagPins : public IInterface {
public:
    static constexpr Guid Id{
        0x01B0B7A8, 0x35E2, 0x41C3, {0x84, 0x8E, 0xA5, 0xCB, 0x5E, 0xFE, 0xF2, 0x83}};

    // Lock and Unlock nest; the first Lock opens the hardware, the last Unlock closes it. `locked`
    // is false when opening failed. An Unlock too many does nothing.
    virtual Status Lock(Bool32& locked) noexcept = 0;
    virtual Status Unlock() noexcept = 0;
    // Store a level, 0 or 1; no pin moves.
    virtual Status SetTckValue(std::uint8_t level) noexcept = 0;
    virtual Status SetTdoValue(std::uint8_t level) noexcept = 0;
    virtual Status SetTdiValue(std::uint8_t level) noexcept = 0;
    virtual Status SetTmsValue(std::uint8_t level) noexcept = 0;
    virtual Status GetTckValue(std::uint8_t& level) noexcept = 0;
    virtual Status GetTdoValue(std::uint8_t& level) noexcept = 0;
    virtual Status GetTdiValue(std::uint8_t& level) noexcept = 0;
    virtual Status GetTmsValue(std::uint8_t& level) noexcept = 0;
    // Brings the stored TCK, TMS and TDI to the pins. On a pod a falling TCK sends the whole clock.
    virtual Status WritePins() noexcept = 0;
    // Samples TDO into the stored level.
    virtual Status ReadTdo() noexcept = 0;

protected:
    ~IJTagPins() = default;
};

// The pins as a serial bus, for the SPI chain: TCK is the clock, TDI data out, TDO data in, TMS
// select.
class IJTagBitBus : public IInterface {
public:
    static constexpr Guid Id{
        0xDCC581E0, 0x3B30, 0x4A9E, {0xAC, 0x76, 0x60, 0x39, 0x1F, 0x94, 0xE3, 0xBC}};

    virtual Status Lock(Bool32& locked) noexcept = 0;
    virtual Status Unlock() noexcept = 0;
    // Store a level and bring it to the pin.
    virtual Status SetTdi(std::uint8_t level) noexcept = 0;
    virtual Status SetTck(std::uint8_t level) noexcept = 0;
    virtual Status SetTms(std::uint8_t level) noexcept = 0;
    virtual Status GetTdo(std::uint8_t& level) noexcept = 0;
    // Bytes go most significant bit first.
    virtual Status SpiWriteByte(std::uint8_t value) noexcept = 0;
    virtual Status SpiExchangeByte(std::uint8_t value, std::uint8_t& received) noexcept = 0;
    // Replaces each of the `count` bytes by the one received for it. A count below 1 does nothing.
    virtual Status SpiExchangeBlock(std::uint8_t* buffer, std::int32_t count) noexcept = 0;
    // The low 24 or all 32 bits, high byte first.
    virtual Status SpiWrite24(std::uint32_t value) noexcept = 0;
    virtual Status SpiWrite32(std::uint32_t value) noexcept = 0;
    // One tick of the port's delay.
    virtual Status SpiDelay() noexcept = 0;
    // Points the board's multiplexer at SPI device `device` (0 to 31) of board unit `unit`. False
    // when the unit was still busy after 100 polls.
    virtual Status SelectSpiUnit(std::uint8_t unit, std::uint8_t device,
                                 Bool32& ready) noexcept = 0;

protected:
    ~IJTagBitBus() = default;
};

class IJTagChannel : public IInterface {
public:
    static constexpr Guid Id{
        0xEA29E3D3, 0xA438, 0x4AEF, {0xBE, 0x17, 0xC7, 0xDF, 0x75, 0x0E, 0x7F, 0x27}};

    virtual Status Lock(Bool32& locked) noexcept = 0;
    virtual Status Unlock() noexcept = 0;

    // The chain as a whole. SetAllBypass fills every instruction register with ones (up to 4,098
    // bits in all) and starts and ends in Run-Test/Idle.
    virtual Status SetAllBypass() noexcept = 0;
    // Number of devices, counted by the delay of their bypass bits: 0 when none can be made out,
    // 910 at most.
    virtual Status GetChainLength(std::int32_t& count) noexcept = 0;
    // Finds the devices anew. Locks by itself. Devices known before keep their objects.
    virtual Status Scan() noexcept = 0;
    // Reads all ids: eight hexadecimal digits each, device 0 first, nothing between. Locks by
    // itself.
    virtual Status GetIdText(WideText& text) noexcept = 0;
    virtual Status GetDeviceCount(std::int32_t& count) noexcept = 0;
    virtual Status GetDevice(std::int32_t index,
                             IJTagDevice*& device) noexcept = 0; // null when out of range
    virtual Status IsValidDevice(std::int32_t index, Bool32& valid) noexcept = 0;
    // Sends what is still collected for the port.
    virtual Status Refresh() noexcept = 0;

    // Shifts in the present shift state, through the whole chain. `exitShift`: the last bit leaves
    // the state.
    virtual Status ShiftOutNumber(std::uint32_t value, std::int32_t bitCount,
                                  Bool32 exitShift) noexcept = 0;
    virtual Status ExchangeNumber(std::uint32_t value, std::int32_t bitCount, Bool32 exitShift,
                                  std::uint32_t& captured) noexcept = 0;
    virtual Status ShiftOutText(const BitText& bits, Bool32 exitShift) noexcept = 0;
    virtual Status ExchangeText(const BitText& bits, Bool32 exitShift,
                                BitText& captured) noexcept = 0;
    virtual Status ExchangeFill(std::uint8_t bit, std::int32_t count, Bool32 exitShift,
                                BitText& captured) noexcept = 0;

    // Data shifts at one device, from Shift-DR to Exit1-DR; all other devices stand in BYPASS. An
    // invalid device does nothing.
    virtual Status WriteDr(std::uint32_t value, std::int32_t bitCount,
                           std::int32_t device) noexcept = 0;
    virtual Status ExchangeDr(std::uint32_t value, std::int32_t bitCount, std::int32_t device,
                              std::uint32_t& captured) noexcept = 0;
    virtual Status WriteDrText(const BitText& bits, std::int32_t device) noexcept = 0;
    virtual Status ExchangeDrText(const BitText& bits, std::int32_t device,
                                  BitText& captured) noexcept = 0;
    virtual Status ExchangeDrFill(std::uint8_t bit, std::int32_t count, std::int32_t device,
                                  BitText& captured) noexcept = 0;

    // Instruction shifts at one device, from Shift-IR to Exit1-IR; all others get BYPASS. The
    // device's instruction register length decides how many bits go in, from the right.
    virtual Status WriteIr(std::uint32_t value, std::int32_t device) noexcept = 0;
    virtual Status ExchangeIr(std::uint32_t value, std::int32_t device,
                              std::uint32_t& captured) noexcept = 0;
    virtual Status WriteIrText(const BitText& bits, std::int32_t device) noexcept = 0;
    virtual Status ExchangeIrText(const BitText& bits, std::int32_t device,
                                  BitText& captured) noexcept = 0;
    virtual Status ExchangeIrFill(std::uint8_t bit, std::int32_t device,
                                  BitText& captured) noexcept = 0;

    // Whole scans: they start in Run-Test/Idle and return there. An invalid device does nothing and
    // gives 0 or "".
    virtual Status ScanDrWrite(std::uint32_t value, std::int32_t bitCount,
                               std::int32_t device) noexcept = 0;
    virtual Status ScanDrExchange(std::uint32_t value, std::int32_t bitCount, std::int32_t device,
                                  std::uint32_t& captured) noexcept = 0;
    virtual Status ScanDrFill(std::uint8_t bit, std::int32_t count, std::int32_t device,
                              BitText& captured) noexcept = 0;
    virtual Status ScanIrWrite(std::uint32_t value, std::int32_t device) noexcept = 0;
    virtual Status ScanIrExchange(std::uint32_t value, std::int32_t device,
                                  std::uint32_t& captured) noexcept = 0;
    virtual Status ScanIrFill(std::uint8_t bit, std::int32_t device,
                              BitText& captured) noexcept = 0;

    // The state that the chain's TAPs must be in. TapMove clocks the shortest way between two
    // states and believes the caller that the TAPs stand in the first.
    virtual Status GetTapState(std::int32_t& state) noexcept = 0;
    virtual Status TapMove(std::int32_t fromState, std::int32_t toState) noexcept = 0;
    virtual Status TapMoveTo(std::int32_t toState) noexcept = 0;
    // Resets the TAPs by five clocks and goes to Run-Test/Idle; the argument plays no part.
    virtual Status ResetToIdle(std::int32_t toState) noexcept = 0;
    // One TCK with this TMS.
    virtual Status Clock(std::uint8_t tms) noexcept = 0;
    virtual Status ResetTap() noexcept = 0;
    // The port's delay, in its own ticks.
    virtual Status Delay(std::uint8_t ticks) noexcept = 0;
    virtual Status GetPort(IJTagPort*& port) noexcept = 0;

protected:
    ~IJTagChannel() = default;
};

} // namespace vorel
