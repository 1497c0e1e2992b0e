#include "core/ProcessorRegister.h"

#include "core/VorelDevice.h"

namespace vorel {

Status TProcessorRegister::GetDevice(IVorelDevice*& device) noexcept {
    device = &Device;
    return StatusOk;
}

Status TProcessorRegister::GetIndex(std::int32_t& index) noexcept {
    index = Index;
    return StatusOk;
}

Status TProcessorRegister::GetName(WideText& name) noexcept {
    return Device.GetLink().Ask(&IVorelDriver::GetRegisterName, name, u"", Index);
}

Status TProcessorRegister::GetAttributeText(WideText& text) noexcept {
    return Device.GetLink().Ask(&IVorelDriver::GetRegisterAttributeText, text, u"", Index);
}

Status TProcessorRegister::GetAttributeNumber(std::int32_t& value) noexcept {
    return Device.GetLink().Ask(&IVorelDriver::GetRegisterAttributeNumber, value, 0, Index);
}

Status TProcessorRegister::ReadValue(std::uint32_t& value) noexcept {
    std::uint32_t read = 0;
    const Status status = Device.GetLink().AskLocked(&IVorelDriver::ReadRegister, read, 0U, Index);
    value = Succeeded(status) ? read : 0U;
    return status;
}

Status TProcessorRegister::WriteValue(std::uint32_t value) noexcept {
    std::int32_t dropped = 0;
    return Device.GetLink().AskLocked(&IVorelDriver::WriteRegister, dropped, 0, Index, value);
}

Status TProcessorRegister::ReadText(WideText& text) noexcept {
    return Device.GetLink().AskLocked(&IVorelDriver::ReadRegisterText, text, u"0", Index);
}

Status TProcessorRegister::WriteText(const WideText& text) noexcept {
    std::int32_t dropped = 0;
    return Device.GetLink().AskLocked(&IVorelDriver::WriteRegisterText, dropped, 0, Index, text);
}

Status TProcessorRegister::ReadByte(unsigned number, std::uint8_t& value) noexcept {
    std::uint32_t whole = 0;
    const Status status = ReadValue(whole);
    value = static_cast<std::uint8_t>((whole >> (number * 8U)) & 0xFFU);
    return status;
}

} // namespace vorel
