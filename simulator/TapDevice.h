// One device with a TAP, at the level of its pins (IEEE 1149.1).
//
// TMS and TDI are sampled at the rising edge of TCK; the instruction, the updates and TDO change at
// the falling edge. TDO is driven in Shift-DR and Shift-IR and released in all other states. In
// Test-Logic-Reset the instruction is IDCODE for a device with an id and BYPASS for one without.
// An instruction that nothing claims selects BYPASS.
//
// A device with registers of its own derives from this class, holds them as members and overrides
// SelectRegister; what a register does on capture and update is the register's (DataRegister.h).
#pragma once

#include "simulator/DataRegister.h"
#include "simulator/TapState.h"
#include "simulator/Wires.h"

#include <cstdint>
#include <optional>
#include <string>

namespace vorel::sim {

struct TapSettings {
    // Label for people and for tests.
    std::string Name;
    // The 32-bit IDCODE; nothing for a device without an identification register.
    std::optional<std::uint32_t> Id;
    // Bits of the instruction register, 1 to MaxIrLength.
    unsigned IrLength = 4;
    // What Capture-IR loads, IrLength characters that end in "01" ("1" when IrLength is 1). Empty:
    // zeros before the 01.
    BitText IrCapture;
    // The instruction IDCODE, IrLength characters. Empty: the number 1, or 0 when IrLength is 1.
    BitText IdcodeInstruction;
};

class TTapDevice {
public:
    static constexpr unsigned MaxIrLength = 1024;

    // Starts in Test-Logic-Reset, as after power-up. EVorelError for settings out of range.
    explicit TTapDevice(TapSettings settings);
    TTapDevice(const TTapDevice&) = delete;
    TTapDevice& operator=(const TTapDevice&) = delete;
    virtual ~TTapDevice() = default;

    // The edges of TCK, in turn. TDO between them is Tdo().
    void Rise(bool tms, bool tdi);
    void Fall();
    Level Tdo() const noexcept { return TdoLevel; }
    // The reset pin: Test-Logic-Reset at once, without a clock.
    void Reset();

    const TapSettings& Settings() const noexcept { return Config; }
    TapState State() const noexcept { return Current; }
    // The instruction in effect (not the one being shifted), IrLength characters.
    const BitText& Instruction() const noexcept { return ActiveInstruction; }
    // Rising edges seen so far.
    std::uint64_t ClockCount() const noexcept { return Clocks; }
    // Times that Test-Logic-Reset was entered, or Reset() called.
    std::uint64_t ResetCount() const noexcept { return Resets; }

protected:
    // The register for an instruction of IrLength characters; called when Update-IR puts it in
    // effect. A register has to live as long as the device. The base knows IDCODE and takes BYPASS
    // for all others, so an override handles its own and calls the base for the rest.
    virtual TDataRegister& SelectRegister(const BitText& instruction);
    // What Capture-IR loads now; the base gives Settings().IrCapture.
    virtual BitText CaptureInstruction() { return Config.IrCapture; }
    // After the instruction was reset by Test-Logic-Reset or the reset pin.
    virtual void OnReset() {}
    // Each rising edge in Run-Test/Idle.
    virtual void OnRunTestIdle() {}

private:
    void ResetInstruction();
    void UpdateInstruction();

    TapState Current = TapState::TestLogicReset;
    Level TdoLevel = Level::Released;
    bool ResetPending = false;
    TDataRegister* Selected = nullptr;
    std::uint64_t Clocks = 0;
    std::uint64_t Resets = 0;
    TBitRegister InstructionRegister;
    TBypassRegister Bypass;
    TConstantRegister IdRegister;
    TapSettings Config;
    BitText ActiveInstruction;
};

inline void TTapDevice::Rise(bool tms, bool tdi) {
    ++Clocks;
    switch (Current) {
    case TapState::ShiftDr:
        Selected->Shift(tdi);
        break;
    case TapState::ShiftIr:
        InstructionRegister.TBitRegister::Shift(tdi);
        break;
    case TapState::CaptureDr:
        Selected->Capture();
        break;
    case TapState::CaptureIr:
        InstructionRegister.Load(CaptureInstruction());
        break;
    case TapState::RunTestIdle:
        OnRunTestIdle();
        break;
    default:
        break;
    }
    const TapState next = NextState(Current, tms);
    if (next == TapState::TestLogicReset && Current != TapState::TestLogicReset) {
        ResetPending = true;
    }
    Current = next;
}

inline void TTapDevice::Fall() {
    switch (Current) {
    case TapState::ShiftDr:
        TdoLevel = ToLevel(Selected->Out());
        return;
    case TapState::ShiftIr:
        TdoLevel = ToLevel(InstructionRegister.Out());
        return;
    case TapState::UpdateDr:
        Selected->Update();
        break;
    case TapState::UpdateIr:
        UpdateInstruction();
        break;
    case TapState::TestLogicReset:
        if (ResetPending) {
            ResetInstruction();
        }
        break;
    default:
        break;
    }
    TdoLevel = Level::Released;
}

} // namespace vorel::sim
