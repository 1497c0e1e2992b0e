// A driver of our own that is no more than a name, an id and an instruction length.
#pragma once

#include "support/Errors.h"
#include "vorel/DriverBase.h"

namespace vorel {

struct TNamedDevice {
    const char16_t* Name;
    const char16_t* Family;
    const char16_t* Description;
    std::uint32_t IdCode;  // 0 for none
    std::int32_t IrLength; // bits; 0 when others have to say
};

class TNamedDriver final : public TDriverBase {
public:
    explicit TNamedDriver(const TNamedDevice& device) : Device(device) {}

    Status GetIdCode(std::uint32_t& idCode) noexcept override {
        idCode = Device.IdCode;
        return StatusOk;
    }
    Status GetIrLength(std::int32_t& value) noexcept override {
        value = Device.IrLength;
        return StatusOk;
    }
    Status GetDeviceName(WideText& text) noexcept override { return Give(Device.Name, text); }
    Status GetDisplayName(WideText& text) noexcept override { return Give(Device.Name, text); }
    Status GetFamily(WideText& text) noexcept override { return Give(Device.Family, text); }
    Status GetDescription(WideText& text) noexcept override {
        return Give(Device.Description, text);
    }
    // The vendor that lists of parts leave out.
    Status GetVendor(WideText& text) noexcept override { return Give(u"Tarvex", text); }

private:
    static Status Give(const char16_t* source, WideText& text) noexcept {
        return Guard([&] {
            text.clear();
            text = source;
        });
    }

    const TNamedDevice& Device;
};

} // namespace vorel
