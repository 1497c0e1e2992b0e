#include "simulator/TapDevice.h"

#include "support/Errors.h"

#include <utility>

namespace vorel::sim {

namespace {

BitText DefaultBits(unsigned length, bool lowestBit) {
    BitText bits(length, '0');
    bits.back() = lowestBit ? '1' : '0';
    return bits;
}

void CheckBits(const TapSettings& settings, const BitText& bits, const char* what) {
    if (bits.size() != settings.IrLength || bits.find_first_not_of("01") != BitText::npos) {
        throw EVorelError(StatusBadArgument, std::string(what) + " \"" + bits + "\" of device \"" +
                                                 settings.Name + "\" has to be " +
                                                 std::to_string(settings.IrLength) +
                                                 " characters 0 or 1");
    }
}

// Fills in the defaults and checks the ranges.
TapSettings Complete(TapSettings settings) {
    if (settings.IrLength < 1 || settings.IrLength > TTapDevice::MaxIrLength) {
        throw EVorelError(StatusBadArgument, "The instruction register of device \"" +
                                                 settings.Name + "\" has to " + "have 1 to " +
                                                 std::to_string(TTapDevice::MaxIrLength) +
                                                 " bits, not " + std::to_string(settings.IrLength));
    }
    if (settings.IrCapture.empty()) {
        settings.IrCapture = DefaultBits(settings.IrLength, true);
    }
    if (settings.IdcodeInstruction.empty()) {
        settings.IdcodeInstruction = DefaultBits(settings.IrLength, settings.IrLength > 1);
    }
    CheckBits(settings, settings.IrCapture, "The instruction capture value");
    CheckBits(settings, settings.IdcodeInstruction, "The instruction IDCODE");
    if (!settings.IrCapture.ends_with(settings.IrLength > 1 ? "01" : "1")) {
        throw EVorelError(StatusBadArgument, "The instruction capture value \"" +
                                                 settings.IrCapture + "\" of device \"" +
                                                 settings.Name + "\" has to end in 01");
    }
    return settings;
}

} // namespace

TTapDevice::TTapDevice(TapSettings settings)
    : InstructionRegister(settings.IrLength > 0 ? settings.IrLength : 1),
      IdRegister(32, settings.Id.value_or(0)),
      Config(Complete(std::move(settings))) {
    Selected = Config.Id ? static_cast<TDataRegister*>(&IdRegister) : &Bypass;
    ActiveInstruction = Config.Id ? Config.IdcodeInstruction : BitText(Config.IrLength, '1');
}

void TTapDevice::Reset() {
    Current = TapState::TestLogicReset;
    TdoLevel = Level::Released;
    ResetInstruction();
}

TDataRegister& TTapDevice::SelectRegister(const BitText& instruction) {
    if (Config.Id && instruction == Config.IdcodeInstruction) {
        return IdRegister;
    }
    return Bypass;
}

void TTapDevice::ResetInstruction() {
    ResetPending = false;
    ++Resets;
    Selected = Config.Id ? static_cast<TDataRegister*>(&IdRegister) : &Bypass;
    ActiveInstruction = Config.Id ? Config.IdcodeInstruction : BitText(Config.IrLength, '1');
    OnReset();
}

void TTapDevice::UpdateInstruction() {
    ActiveInstruction = InstructionRegister.Text();
    Selected = &SelectRegister(ActiveInstruction);
}

} // namespace vorel::sim
