// One register of a processor, as a handle.
//
// It stores no value: each read and write is a call of the driver, with the device's channel locked
// around it. Its device makes it, owns it and outlives it. Without a driver it gives empty texts, 0
// and, as the text of its value, "0"; writes do nothing. Failures are the driver's.
#pragma once

#include "support/Objects.h"
#include "vorel/VorelDevice.h"

namespace vorel {

class TVorelDevice;

class TProcessorRegister final : public TNonRefCountedInterfacedObject<IProcessorRegister> {
public:
    // `index` is the place in the device's list and the register's number for the driver.
    TProcessorRegister(std::int32_t index, TVorelDevice& device) : Index(index), Device(device) {}

    Status GetDevice(IVorelDevice*& device) noexcept override;
    Status Reserved1() noexcept override { return StatusOk; }
    Status Reserved2() noexcept override { return StatusOk; }
    Status GetIndex(std::int32_t& index) noexcept override;
    Status GetName(WideText& name) noexcept override;
    Status GetAttributeText(WideText& text) noexcept override;
    Status GetAttributeNumber(std::int32_t& value) noexcept override;
    // 0 on failure, whatever the driver left behind.
    Status ReadValue(std::uint32_t& value) noexcept override;
    // Each reads the register anew; for bytes that belong together use ReadValue.
    Status GetByte0(std::uint8_t& value) noexcept override { return ReadByte(0, value); }
    Status GetByte1(std::uint8_t& value) noexcept override { return ReadByte(1, value); }
    Status GetByte2(std::uint8_t& value) noexcept override { return ReadByte(2, value); }
    Status GetByte3(std::uint8_t& value) noexcept override { return ReadByte(3, value); }
    Status WriteValue(std::uint32_t value) noexcept override;
    Status ReadText(WideText& text) noexcept override;
    Status WriteText(const WideText& text) noexcept override;

private:
    Status ReadByte(unsigned number, std::uint8_t& value) noexcept;

    std::int32_t Index;
    TVorelDevice& Device;
};

} // namespace vorel
