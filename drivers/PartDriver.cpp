#include "drivers/PartDriver.h"

#include "support/Errors.h"
#include "support/Text.h"

namespace vorel {

namespace {

Status Give(std::string_view source, WideText& text) noexcept {
    return Guard([&] {
        text.clear();
        text = ToWide(source);
    });
}

Status Give(std::int32_t source, std::int32_t& value) noexcept {
    value = source;
    return StatusOk;
}

} // namespace

TPartDriver::TPartDriver(const TPartTable& table, const TPartVariant& variant)
    : Table(table), Variant(variant), Part(table.GetParts()[variant.Part]) {}

Status TPartDriver::GetIdCode(std::uint32_t& idCode) noexcept {
    idCode = Part.IdCode;
    return StatusOk;
}

Status TPartDriver::GetDeviceName(WideText& text) noexcept {
    return Guard([&] {
        text.clear();
        text = ToWide(Table.NameOf(Variant));
    });
}

Status TPartDriver::GetDescription(WideText& text) noexcept {
    return Guard([&] {
        text.clear();
        text = ToWide(std::string(Family().Name) + " " + std::string(Family().Type) + ", " +
                      std::to_string(Part.Pins) + " pins");
    });
}

Status TPartDriver::GetFamily(WideText& text) noexcept {
    return Give(Family().Name, text);
}

Status TPartDriver::GetAttributeText7(WideText& text) noexcept {
    return Give(Part.Base, text);
}

Status TPartDriver::GetAttributeText10(WideText& text) noexcept {
    return Give(Part.Base, text);
}

Status TPartDriver::GetAttributeText17(WideText& text) noexcept {
    return Give(Part.Package, text);
}

Status TPartDriver::GetPackage(WideText& text) noexcept {
    return Give(Part.Package, text);
}

Status TPartDriver::GetTemperatureGrade(WideText& text) noexcept {
    return Give(Variant.Temperature, text);
}

Status TPartDriver::GetSpeedGrade(WideText& text) noexcept {
    return Give(Variant.Speed, text);
}

Status TPartDriver::GetBsdlFile(WideText& text) noexcept {
    return Guard([&] {
        text.clear();
        text = ToWide(Table.BsdlFileOf(Variant));
    });
}

Status TPartDriver::GetVendor(WideText& text) noexcept {
    return Give(Table.GetVendor(), text);
}

Status TPartDriver::GetAttributeText36(WideText& text) noexcept {
    return Give(Part.Standards, text);
}

Status TPartDriver::GetDisplayName(WideText& text) noexcept {
    return Guard([&] {
        text.clear();
        text = ToWide(Table.NameOf(Variant));
    });
}

Status TPartDriver::GetCapacity(std::int32_t& value) noexcept {
    return Give(Part.Capacity, value);
}

Status TPartDriver::GetIrLength(std::int32_t& value) noexcept {
    return Give(Part.IrLength, value);
}

Status TPartDriver::GetPinCount(std::int32_t& value) noexcept {
    return Give(Part.Pins, value);
}

Status TPartDriver::GetIoPinCount(std::int32_t& value) noexcept {
    return Give(Part.Ios, value);
}

Status TPartDriver::GetDspMultipliers(std::int32_t& value) noexcept {
    return Give(Part.Multipliers, value);
}

Status TPartDriver::GetClockManagers(std::int32_t& value) noexcept {
    return Give(Part.ClockManagers, value);
}

Status TPartDriver::GetEmbeddedRam(std::int32_t& value) noexcept {
    return Give(Part.RamKilobits, value);
}

Status TPartDriver::GetGlobalClocks(std::int32_t& value) noexcept {
    return Give(Part.GlobalClocks, value);
}

Status TPartDriver::GetConfigMemory(std::int32_t& value) noexcept {
    return Give(Part.ConfigBits, value);
}

Status TPartDriver::GetDifferentialPairs(std::int32_t& value) noexcept {
    return Give(Part.DifferentialPairs, value);
}

Status TPartDriver::GetHighSpeedPairs(std::int32_t& value) noexcept {
    return Give(Part.HighSpeedPairs, value);
}

Status TPartDriver::GetOnChipTermination(Bool32& value) noexcept {
    value = ToBool32(Part.OnChipTermination);
    return StatusOk;
}

Status TPartDriver::HasAttribute(const WideText& word, Bool32& value) noexcept {
    value = False32;
    return Guard([&] { value = ToBool32(SameText(ToUtf8(word), Family().Type)); });
}

} // namespace vorel
