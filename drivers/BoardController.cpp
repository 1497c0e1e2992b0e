// The controller of the development board: the one device of its board chain, by whose name the
// board is recognised. It is of our own make, so lists of parts leave it out.
#include "drivers/ModuleExport.h"
#include "vorel/DriverBase.h"

namespace {

class TBoardController final : public vorel::TDriverBase {
public:
    vorel::Status GetIdCode(std::uint32_t& idCode) noexcept override {
        return Give(idCode, 0x1B8C0B01U);
    }
    vorel::Status GetDeviceName(vorel::WideText& text) noexcept override {
        return Give(text, u"LUMAPLATE");
    }
    vorel::Status GetDescription(vorel::WideText& text) noexcept override {
        return Give(text, u"Controller of the Lumaplate development board");
    }
    vorel::Status GetFamily(vorel::WideText& text) noexcept override {
        return Give(text, u"Board Controllers");
    }
    vorel::Status GetVendor(vorel::WideText& text) noexcept override {
        return Give(text, u"Tarvex");
    }
    vorel::Status GetIrLength(std::int32_t& value) noexcept override { return Give(value, 8); }
};

using TModule = vorel::TDriverModule<TBoardController>;

} // namespace

VOREL_MODULE_EXPORT vorel::Status GetVorelDriverCount(std::int32_t* count) {
    return TModule::GetCount(count);
}

VOREL_MODULE_EXPORT vorel::Status GetVorelDriver(std::int32_t index, vorel::IVorelDriver** driver) {
    return TModule::MakeDriver(index, driver);
}
