// Any device with a BSDL description (IEEE 1149.1) on a simulated chain.
//
// Its TAP is the description's: length and capture value of the instruction register, instructions,
// identification and user code, and the boundary register with the pins around it. A register of
// the device's own with a known length is a plain shift register. X bits of the description are 0.
#pragma once

#include "simulator/BoundaryRegister.h"
#include "simulator/BsdlInstructions.h"
#include "simulator/TapDevice.h"

#include <map>
#include <memory>
#include <string>

namespace vorel::sim {

class TBsdlDevice final : public TTapDevice {
public:
    // What the description says of the TAP. A device of which it tells no instruction IDCODE or no
    // id of 32 bits has no id.
    static TapSettings SettingsOf(const TBSDLEntity& entity, std::string name);

    // The settings may differ from the description in name, id and capture value. EVorelError for
    // settings out of range. The entity is not kept.
    TBsdlDevice(TBSDLEntity& entity, TapSettings settings);

    // Pins as in BoundaryRegister.h; EVorelError for one that no boundary cell names.
    void SetPin(std::string_view pin, PinInput input);
    void SetPin(std::string_view pin, bool high) {
        SetPin(pin, high ? PinInput::High : PinInput::Low);
    }
    // What EXTEST, INTEST or CLAMP drives onto the pin; Released with any other instruction.
    Level PinDriven(std::string_view pin) const;
    // Bits of the boundary register; 0 for a device without one.
    std::size_t BoundaryLength() const noexcept;

protected:
    TDataRegister& SelectRegister(const BitText& instruction) override;
    void OnReset() override;

private:
    TBoundaryRegister& PinsOrFail() const;
    TDataRegister& OwnRegister(const BsdlInstruction& instruction);

    TBsdlInstructions Instructions;
    TBypassRegister Bypass;
    std::unique_ptr<TBoundaryRegister> Boundary;
    std::unique_ptr<TConstantRegister> UserCode;
    std::map<std::string, TBitRegister, std::less<>> OwnRegisters;
};

} // namespace vorel::sim
