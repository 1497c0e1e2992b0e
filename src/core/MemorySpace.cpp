#include "core/MemorySpace.h"

#include "core/VorelDevice.h"

namespace vorel {

Status TMemorySpace::GetDevice(IVorelDevice*& device) noexcept {
    device = &Device;
    return StatusOk;
}

Status TMemorySpace::GetIndex(std::int32_t& index) noexcept {
    index = Index;
    return StatusOk;
}

Status TMemorySpace::GetName(WideText& name) noexcept {
    return Device.GetLink().Ask(&IVorelDriver::GetMemoryName, name, u"", Index);
}

Status TMemorySpace::GetAttributeText(WideText& text) noexcept {
    return Device.GetLink().Ask(&IVorelDriver::GetMemoryAttributeText, text, u"", Index);
}

Status TMemorySpace::GetWidth(std::int32_t& bits) noexcept {
    return Device.GetLink().Ask(&IVorelDriver::GetMemoryWidth, bits, 0, Index);
}

Status TMemorySpace::GetSize(std::int64_t& locations) noexcept {
    return Device.GetLink().Ask(&IVorelDriver::GetMemorySize, locations, 0, Index);
}

Status TMemorySpace::GetAttributeNumber75(std::int32_t& value) noexcept {
    return Device.GetLink().Ask(&IVorelDriver::GetMemoryAttributeNumber75, value, 0, Index);
}

Status TMemorySpace::GetAttributeNumber76(std::int32_t& value) noexcept {
    return Device.GetLink().Ask(&IVorelDriver::GetMemoryAttributeNumber76, value, 0, Index);
}

Status TMemorySpace::ReadBlock(std::uint32_t* buffer, std::int64_t address,
                               std::int32_t count) noexcept {
    return Guard([&] {
        IVorelDriver* const driver = Device.GetLink().GetDriver();
        if (driver == nullptr) {
            return;
        }
        const Ref<IJTagChannel> channel(Device.GetLink().GetChannel());
        if (channel) {
            Bool32 locked = False32;
            Check(channel->Lock(locked), "Locking the channel");
        }
        // Callers rely on both: a good read ends a halt, a failed one leaves halt and lock as they
        // are.
        std::int32_t dropped = 0;
        Check(driver->ReadMemory(Index, buffer, address, count, dropped), "Reading memory");
        Check(Device.EndHalt(), "Ending the halt");
        if (channel) {
            Check(channel->Unlock(), "Unlocking the channel");
        }
    });
}

Status TMemorySpace::WriteBlock(const std::uint32_t* buffer, std::int64_t address,
                                std::int32_t count) noexcept {
    std::int32_t dropped = 0;
    return Device.GetLink().AskLocked(&IVorelDriver::WriteMemory, dropped, 0, Index, buffer,
                                      address, count);
}

Status TMemorySpace::MemoryAction83(std::int32_t) noexcept {
    std::int32_t dropped = 0;
    return Device.GetLink().AskLocked(&IVorelDriver::MemoryAction83, dropped, 0, Index);
}

Status TMemorySpace::MemoryAction84(std::int32_t) noexcept {
    std::int32_t dropped = 0;
    return Device.GetLink().AskLocked(&IVorelDriver::MemoryAction84, dropped, 0, Index);
}

} // namespace vorel
