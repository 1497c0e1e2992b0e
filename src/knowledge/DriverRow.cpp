#include "knowledge/DriverRow.h"

#include "knowledge/JtagId.h"
#include "support/Errors.h"
#include "support/Text.h"
#include "vorel/Driver.h"

#include <array>
#include <span>

namespace vorel {

namespace {

// The maker of our own parts, whose drivers are no parts to choose from.
constexpr std::string_view OwnVendor = "Tarvex";

constexpr std::array<const char16_t*, 3> ProcessorWords{u"PROC", u"SPROC", u"GPROC"};
constexpr std::array<const char16_t*, 3> PartWords{u"FPGA", u"CPLD", u"PROM"};

std::string TextOf(IVorelDriver& driver, Status (IVorelDriver::*getter)(WideText&) noexcept,
                   const char* what) {
    WideText text;
    Check((driver.*getter)(text), what);
    return ToUtf8(text);
}

std::optional<std::string> FirstAttribute(IVorelDriver& driver,
                                          std::span<const char16_t* const> words) {
    for (const char16_t* word : words) {
        Bool32 has = False32;
        Check(driver.HasAttribute(word, has), "HasAttribute");
        if (has != False32) {
            return ToUtf8(word);
        }
    }
    return std::nullopt;
}

std::string TypeOf(IVorelDriver& driver, const std::string& vendor) {
    std::optional<std::string> type = FirstAttribute(driver, ProcessorWords);
    if (!type && !SameText(vendor, OwnVendor)) {
        type = FirstAttribute(driver, PartWords);
    }
    return type.value_or("Other");
}

} // namespace

std::optional<TDriverRow> ReadDriverRow(IVorelDriver& driver) noexcept {
    try {
        TDriverRow row;
        row.Vendor = TextOf(driver, &IVorelDriver::GetVendor, "GetVendor");
        row.Family = TextOf(driver, &IVorelDriver::GetFamily, "GetFamily");
        row.Device = DeviceNameOf(driver);
        row.Display = TextOf(driver, &IVorelDriver::GetDisplayName, "GetDisplayName");
        row.Type = TypeOf(driver, row.Vendor);
        Check(driver.GetIdCode(row.IdCode), "GetIdCode");
        row.MaskedIdCode = MaskedIdCode(row.IdCode);
        return row;
    } catch (...) {
        return std::nullopt;
    }
}

std::string DeviceNameOf(IVorelDriver& driver) {
    return TextOf(driver, &IVorelDriver::GetDeviceName, "GetDeviceName");
}

} // namespace vorel
