#include "simulator/BsdlDevice.h"

#include "bsdl/BSDLText.h"
#include "support/Errors.h"
#include "support/Text.h"

#include <algorithm>
#include <optional>

namespace vorel::sim {

namespace {

constexpr std::size_t CodeBits = 32;

// The first of several patterns, without blanks and with X as 0.
BitText FirstPattern(std::string_view text) {
    BitText bits = UpperCase(WithoutBlanks(Trim(text.substr(0, text.find(',')))));
    std::replace(bits.begin(), bits.end(), 'X', '0');
    return bits;
}

std::optional<std::uint32_t> ReadCode(std::string_view text) {
    const BitText bits = FirstPattern(text);
    if (bits.size() != CodeBits || bits.find_first_not_of("01") != BitText::npos) {
        return std::nullopt;
    }
    return BinaryToNumber(bits);
}

} // namespace

TapSettings TBsdlDevice::SettingsOf(const TBSDLEntity& entity, std::string name) {
    TapSettings settings;
    settings.Name = std::move(name);
    settings.IrLength = static_cast<unsigned>(std::max(entity.InstructionLength, 0));
    settings.IrCapture = FirstPattern(entity.InstructionCapture);
    settings.IdcodeInstruction = TBsdlInstructions(entity).CodeOf("IDCODE");
    if (!settings.IdcodeInstruction.empty()) {
        settings.Id = ReadCode(AttributeValue(entity, "IDCODE_REGISTER"));
    }
    return settings;
}

TBsdlDevice::TBsdlDevice(TBSDLEntity& entity, TapSettings settings)
    : TTapDevice(std::move(settings)),
      Instructions(entity),
      Boundary(TBoundaryRegister::Create(entity)) {
    if (const auto code = ReadCode(entity.UserCodePattern)) {
        UserCode = std::make_unique<TConstantRegister>(CodeBits, *code);
    }
}

TBoundaryRegister& TBsdlDevice::PinsOrFail() const {
    if (Boundary == nullptr) {
        throw EVorelError(StatusBadArgument,
                          "The device \"" + Settings().Name + "\" has no boundary register");
    }
    return *Boundary;
}

void TBsdlDevice::SetPin(std::string_view pin, PinInput input) {
    PinsOrFail().SetPin(pin, input);
}

Level TBsdlDevice::PinDriven(std::string_view pin) const {
    return PinsOrFail().PinDriven(pin);
}

std::size_t TBsdlDevice::BoundaryLength() const noexcept {
    return Boundary != nullptr ? Boundary->BitCount() : 0;
}

TDataRegister& TBsdlDevice::SelectRegister(const BitText& instruction) {
    const BsdlInstruction& selected = Instructions.Decode(instruction);
    if (Boundary != nullptr) {
        Boundary->SetDriving(selected.Is("EXTEST") || selected.Is("INTEST") ||
                             selected.Is("CLAMP"));
    }
    switch (selected.Register) {
    case BsdlRegister::Boundary:
        return Boundary != nullptr ? static_cast<TDataRegister&>(*Boundary) : Bypass;
    case BsdlRegister::DeviceId:
        return Settings().Id ? TTapDevice::SelectRegister(Settings().IdcodeInstruction) : Bypass;
    case BsdlRegister::UserCode:
        return UserCode != nullptr ? static_cast<TDataRegister&>(*UserCode) : Bypass;
    case BsdlRegister::Own:
        return OwnRegister(selected);
    case BsdlRegister::Bypass:
        break;
    }
    return Bypass;
}

// Made when it is first selected: a description may name many.
TDataRegister& TBsdlDevice::OwnRegister(const BsdlInstruction& instruction) {
    return OwnRegisters.try_emplace(instruction.RegisterName, instruction.RegisterLength)
        .first->second;
}

void TBsdlDevice::OnReset() {
    if (Boundary != nullptr) {
        Boundary->SetDriving(false);
        Boundary->Reset();
    }
}

} // namespace vorel::sim
