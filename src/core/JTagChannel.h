// A JTAG chain behind a port: pins, TAP tracking, shifts and scans, and the devices found on it.
// What its operations mean to a caller is told with the three interfaces (vorel/Channel.h); the
// two derived classes carry the bits to the hardware.
//
// A channel is owned by its port and owns its devices: those on the chain, nearest TDI first, and
// those that are gone and may come back. The functions named Do... are the operations as the
// library itself uses them: without status, failures raised as EVorelError.
#pragma once

#include "core/CoreContext.h"
#include "core/JTagDevice.h"
#include "objectcode/Rt_TAP.h"
#include "support/Objects.h"
#include "vorel/Channel.h"

#include <memory>
#include <string>
#include <string_view>
#include <vector>

namespace vorel {

class TJtagPort;

class TJTagChannel : public TNonRefCountedInterfacedObject<IJTagChannel, IJTagPins, IJTagBitBus> {
public:
    using TDeviceList = std::vector<std::unique_ptr<TJTagDevice>>;

    // Every unit of a board chain.
    static constexpr std::uint8_t AllUnits = 255;

    ~TJTagChannel() override;

    // IJTagPins, IJTagBitBus and IJTagChannel share these two.
    Status Lock(Bool32& locked) noexcept final;
    Status Unlock() noexcept final;

    // IJTagPins
    Status SetTckValue(std::uint8_t level) noexcept final;
    Status SetTdoValue(std::uint8_t level) noexcept final;
    Status SetTdiValue(std::uint8_t level) noexcept final;
    Status SetTmsValue(std::uint8_t level) noexcept final;
    Status GetTckValue(std::uint8_t& level) noexcept final;
    Status GetTdoValue(std::uint8_t& level) noexcept final;
    Status GetTdiValue(std::uint8_t& level) noexcept final;
    Status GetTmsValue(std::uint8_t& level) noexcept final;
    Status WritePins() noexcept final;
    Status ReadTdo() noexcept final;

    // IJTagBitBus
    Status SetTdi(std::uint8_t level) noexcept final;
    Status SetTck(std::uint8_t level) noexcept final;
    Status SetTms(std::uint8_t level) noexcept final;
    Status GetTdo(std::uint8_t& level) noexcept final;
    Status SpiWriteByte(std::uint8_t value) noexcept final;
    Status SpiExchangeByte(std::uint8_t value, std::uint8_t& received) noexcept final;
    Status SpiExchangeBlock(std::uint8_t* buffer, std::int32_t count) noexcept final;
    Status SpiWrite24(std::uint32_t value) noexcept final;
    Status SpiWrite32(std::uint32_t value) noexcept final;
    Status SpiDelay() noexcept final;
    Status SelectSpiUnit(std::uint8_t unit, std::uint8_t device, Bool32& ready) noexcept final;

    // IJTagChannel
    Status SetAllBypass() noexcept final;
    Status GetChainLength(std::int32_t& count) noexcept final;
    Status Scan() noexcept final;
    Status GetIdText(WideText& text) noexcept final;
    Status GetDeviceCount(std::int32_t& count) noexcept final;
    Status GetDevice(std::int32_t index, IJTagDevice*& device) noexcept final;
    Status IsValidDevice(std::int32_t index, Bool32& valid) noexcept final;
    Status Refresh() noexcept final;
    Status ShiftOutNumber(std::uint32_t value, std::int32_t bitCount,
                          Bool32 exitShift) noexcept final;
    Status ExchangeNumber(std::uint32_t value, std::int32_t bitCount, Bool32 exitShift,
                          std::uint32_t& captured) noexcept final;
    Status ShiftOutText(const BitText& bits, Bool32 exitShift) noexcept final;
    Status ExchangeText(const BitText& bits, Bool32 exitShift, BitText& captured) noexcept final;
    Status ExchangeFill(std::uint8_t bit, std::int32_t count, Bool32 exitShift,
                        BitText& captured) noexcept final;
    Status WriteDr(std::uint32_t value, std::int32_t bitCount, std::int32_t device) noexcept final;
    Status ExchangeDr(std::uint32_t value, std::int32_t bitCount, std::int32_t device,
                      std::uint32_t& captured) noexcept final;
    Status WriteDrText(const BitText& bits, std::int32_t device) noexcept final;
    Status ExchangeDrText(const BitText& bits, std::int32_t device,
                          BitText& captured) noexcept final;
    Status ExchangeDrFill(std::uint8_t bit, std::int32_t count, std::int32_t device,
                          BitText& captured) noexcept final;
    Status WriteIr(std::uint32_t value, std::int32_t device) noexcept final;
    Status ExchangeIr(std::uint32_t value, std::int32_t device,
                      std::uint32_t& captured) noexcept final;
    Status WriteIrText(const BitText& bits, std::int32_t device) noexcept final;
    Status ExchangeIrText(const BitText& bits, std::int32_t device,
                          BitText& captured) noexcept final;
    Status ExchangeIrFill(std::uint8_t bit, std::int32_t device, BitText& captured) noexcept final;
    Status ScanDrWrite(std::uint32_t value, std::int32_t bitCount,
                       std::int32_t device) noexcept final;
    Status ScanDrExchange(std::uint32_t value, std::int32_t bitCount, std::int32_t device,
                          std::uint32_t& captured) noexcept final;
    Status ScanDrFill(std::uint8_t bit, std::int32_t count, std::int32_t device,
                      BitText& captured) noexcept final;
    Status ScanIrWrite(std::uint32_t value, std::int32_t device) noexcept final;
    Status ScanIrExchange(std::uint32_t value, std::int32_t device,
                          std::uint32_t& captured) noexcept final;
    Status ScanIrFill(std::uint8_t bit, std::int32_t device, BitText& captured) noexcept final;
    Status GetTapState(std::int32_t& state) noexcept final;
    Status TapMove(std::int32_t fromState, std::int32_t toState) noexcept final;
    Status TapMoveTo(std::int32_t toState) noexcept final;
    Status ResetToIdle(std::int32_t toState) noexcept final;
    Status Clock(std::uint8_t tms) noexcept final;
    Status ResetTap() noexcept final;
    Status Delay(std::uint8_t ticks) noexcept final;
    Status GetPort(IJTagPort*& port) noexcept final;

    const std::string& GetName() const noexcept { return Name; }
    TJtagPort& OwningPort() noexcept { return Port; }

    // The devices on the chain, and what a scan does with them. Retired devices are kept for reuse.
    const TDeviceList& ChainDevices() const noexcept { return Devices; }
    const TDeviceList& RetiredChainDevices() const noexcept { return RetiredDevices; }
    std::int32_t DeviceCount() const noexcept { return static_cast<std::int32_t>(Devices.size()); }
    bool HasDevice(std::int32_t index) const noexcept;
    std::int32_t IndexOf(const TJTagDevice& device) const noexcept; // -1: not on the chain now
    std::unique_ptr<TJTagDevice> NewDevice();
    void Add(std::unique_ptr<TJTagDevice> device) { Devices.push_back(std::move(device)); }
    TDeviceList RemoveDevices() noexcept { return std::exchange(Devices, {}); }
    // Takes the first device of this id, unless it is 0, off the list; null when there is none.
    static std::unique_ptr<TJTagDevice> TakeById(TDeviceList& list, std::uint32_t id);
    std::unique_ptr<TJTagDevice> TakeRetired(std::uint32_t id);
    // Empties the list.
    void Retire(TDeviceList& devices) noexcept;
    // Leaves the chain without devices.
    void RetireDevices() noexcept { Retire(Devices); }

    void DoLock();
    // The count goes down even when closing fails.
    void DoUnlock();
    std::uint8_t TdoLevel() const noexcept { return Tdo; }
    void StoreTdi(bool level) noexcept { Tdi = level ? 1 : 0; }
    void DoClock(bool tms);
    void DoResetTap();
    void DoResetToIdle();
    void DoTapMove(TTapState from, TTapState to);
    // Whole scans from Run-Test/Idle and back. An invalid device does nothing.
    void DoScanDrWrite(std::uint32_t value, std::int32_t bitCount, std::int32_t device);
    std::uint32_t DoScanDrExchange(std::uint32_t value, std::int32_t bitCount, std::int32_t device);
    BitText DoScanDrFill(bool bit, std::int32_t count, std::int32_t device);
    BitText DoScanIr(std::string_view bits, bool capture, std::int32_t device);
    void DoScanIrWrite(std::uint32_t value, std::int32_t device);
    bool DoSelectSpiUnit(std::uint8_t unit, std::uint8_t device);

    // The one register of a board's controllers, reached through the board channel; `unit` is an
    // index on it or AllUnits, which reads as 0. A unit that is not there is passed over.
    void DoWriteBoardRegister(std::uint8_t unit, std::uint8_t value);
    std::uint8_t DoReadBoardRegister(std::uint8_t unit);

    // Shifts give what was captured, empty without capture. At one device of the chain: all others
    // stand in BYPASS, or get it.
    virtual BitText DoShiftDataRegister(std::string_view bits, std::int32_t count, bool capture,
                                        bool exitShift, std::int32_t device);
    virtual BitText DoShiftInstructionRegister(std::string_view bits, std::int32_t device,
                                               bool capture, bool exitShift);
    // Through the whole chain: `count` bits from the right end of `bits`, again from the right when
    // they run out. Empty `bits` do nothing.
    virtual BitText DoShiftBits(std::string_view bits, std::int32_t count, bool capture,
                                bool exitShift);

    virtual void DoRefresh() {}
    virtual void DoDelay(std::uint8_t /*ticks*/) {}
    virtual void DoSpiWriteByte(std::uint8_t value);
    virtual std::uint8_t DoSpiExchangeByte(std::uint8_t value);
    virtual void DoSpiExchangeBlock(std::uint8_t* buffer, std::int32_t count);
    virtual void DoWritePins() = 0;
    virtual void DoReadTdo() = 0;

protected:
    // `parent` is the board channel, null for the board channel itself.
    TJTagChannel(std::string name, TJtagPort& port, TJTagChannel* parent,
                 const TCoreContext& context);

    virtual void DoBeginCapture() = 0;
    virtual BitText DoEndCapture() = 0;
    // Drops a capture that failed halfway.
    virtual void DoAbandonCapture() noexcept = 0;
    // A DoOpen that fails has closed again whatever it had opened.
    virtual void DoOpen() = 0;
    virtual void DoClose() = 0;

    // Runs `body` with TDO captured and gives the capture; ends it also when `body` fails.
    template<class Body>
    BitText WithCapture(Body&& body) {
        DoBeginCapture();
        try {
            body();
        } catch (...) {
            DoAbandonCapture();
            throw;
        }
        return DoEndCapture();
    }

    // One SPI byte, high bit first: `sample` runs between a bit's set-up and its clock.
    template<class Sample>
    void ClockSpiByte(std::uint8_t value, Sample&& sample) {
        for (unsigned bit = 8; bit-- > 0;) {
            Tdi = value >> bit & 1U;
            DoWritePins();
            DoDelay(SpiTicks);
            sample();
            Tck = 1;
            DoWritePins();
            DoDelay(SpiTicks);
            Tck = 0;
            DoWritePins();
        }
        DoDelay(SpiTicks);
        DoDelay(SpiTicks);
    }

    // Points the board's multiplexer at a chain.
    void SelectChain(std::uint8_t chain);

    const TCoreContext& GetContext() const noexcept { return Context; }

    std::uint8_t Tck = 0;
    std::uint8_t Tdo = 0;
    std::uint8_t Tdi = 0;
    std::uint8_t Tms = 0;

private:
    static constexpr std::uint8_t SpiTicks = 1;

    std::uint8_t AccessBoardRegisters(std::uint8_t unit, std::uint8_t access, std::uint8_t value);
    std::uint8_t AccessBoardUnit(std::uint8_t unit, std::uint8_t access, std::uint8_t value);
    void DoSpiWriteNumber(std::uint32_t value, int bytes);
    Status StoreAndWrite(std::uint8_t& pin, std::uint8_t level) noexcept;
    template<class Shift>
    auto FromIdle(TTapState shiftState, TTapState exitState, Shift&& shift);

    TDeviceList Devices;
    TDeviceList RetiredDevices;
    std::size_t DevicesMade = 0;
    TTapSimulator Tap;
    std::int32_t AccessCount = 0;
    std::string Name;
    TJtagPort& Port;
    TJTagChannel* Parent;
    const TCoreContext& Context;
};

// Holds a channel's Lock. Release ends it and reports a failure to close; otherwise it ends
// silently with the scope.
class TChannelLock {
public:
    explicit TChannelLock(TJTagChannel& channel) : Channel(&channel) { channel.DoLock(); }
    TChannelLock(const TChannelLock&) = delete;
    TChannelLock& operator=(const TChannelLock&) = delete;
    ~TChannelLock() {
        if (Channel != nullptr) {
            Channel->Unlock();
        }
    }

    void Release() { std::exchange(Channel, nullptr)->DoUnlock(); }

private:
    TJTagChannel* Channel;
};

} // namespace vorel
