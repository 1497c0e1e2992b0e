// What stands in for a device that no other module knows. Its instruction length and BSDL file are
// what the user says about its id; a length of 0 makes callers ask there.
#include "drivers/ModuleExport.h"
#include "vorel/DriverBase.h"

namespace {

class TGenericDevice final : public vorel::TDriverBase {
public:
    vorel::Status GetDeviceName(vorel::WideText& text) noexcept override {
        return Give(text, u"GenericDevice");
    }
    vorel::Status GetDescription(vorel::WideText& text) noexcept override {
        return Give(text, u"Device that no driver knows");
    }
    vorel::Status GetFamily(vorel::WideText& text) noexcept override {
        return Give(text, u"Generic");
    }
    vorel::Status GetVendor(vorel::WideText& text) noexcept override {
        return Give(text, u"Tarvex");
    }
    vorel::Status GetIrLength(std::int32_t& value) noexcept override { return Give(value, 0); }
};

using TModule = vorel::TDriverModule<TGenericDevice>;

} // namespace

VOREL_MODULE_EXPORT vorel::Status GetVorelDriverCount(std::int32_t* count) {
    return TModule::GetCount(count);
}

VOREL_MODULE_EXPORT vorel::Status GetVorelDriver(std::int32_t index, vorel::IVorelDriver** driver) {
    return TModule::MakeDriver(index, driver);
}
