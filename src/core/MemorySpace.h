// One addressable memory of a device, as a handle.
//
// It stores nothing: shape and contents are asked of the driver. Addresses and counts are in
// locations; a buffer has one 32-bit slot for each, whatever its width. The driver decides what is
// out of range. Its device makes it, owns it and outlives it. Without a driver it gives empty texts
// and 0, and block transfers do nothing. Failures are the driver's.
#pragma once

#include "support/Objects.h"
#include "vorel/VorelDevice.h"

namespace vorel {

class TVorelDevice;

class TMemorySpace final : public TNonRefCountedInterfacedObject<IMemorySpace> {
public:
    // `index` is the place in the device's list and the memory's number for the driver.
    TMemorySpace(std::int32_t index, TVorelDevice& device) : Index(index), Device(device) {}

    Status GetDevice(IVorelDevice*& device) noexcept override;
    Status GetIndex(std::int32_t& index) noexcept override;
    Status GetName(WideText& name) noexcept override;
    Status GetAttributeText(WideText& text) noexcept override;
    Status GetWidth(std::int32_t& bits) noexcept override;
    Status GetSize(std::int64_t& locations) noexcept override;
    Status GetAttributeNumber75(std::int32_t& value) noexcept override;
    Status GetAttributeNumber76(std::int32_t& value) noexcept override;
    // Each read also ends one level of the device's BeginHalt: of a series of reads within one
    // level, the processor runs on during all but the first. When the driver fails, the halt stays
    // and the channel stays locked one level up.
    Status ReadBlock(std::uint32_t* buffer, std::int64_t address,
                     std::int32_t count) noexcept override;
    Status WriteBlock(const std::uint32_t* buffer, std::int64_t address,
                      std::int32_t count) noexcept override;
    // The driver gets the memory's number only; the argument reaches nobody.
    Status MemoryAction83(std::int32_t argument) noexcept override;
    Status MemoryAction84(std::int32_t argument) noexcept override;

private:
    std::int32_t Index;
    TVorelDevice& Device;
};

} // namespace vorel
