#include "drivers/PartDriver.h"

#include "support/Errors.h"
#include "support/Text.h"

namespace vorel {

namespace {

Status GiveText(std::string_view source, WideText& text) noexcept {
    return Guard([&] {
        text.clear();
        text = ToWide(source);
    });
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
    return GiveText(Family().Name, text);
}

Status TPartDriver::GetAttributeText7(WideText& text) noexcept {
    return GiveText(Part.Base, text);
}

Status TPartDriver::GetAttributeText10(WideText& text) noexcept {
    return GiveText(Part.Base, text);
}

Status TPartDriver::GetAttributeText17(WideText& text) noexcept {
    return GiveText(Part.Package, text);
}

Status TPartDriver::GetPackage(WideText& text) noexcept {
    return GiveText(Part.Package, text);
}

Status TPartDriver::GetTemperatureGrade(WideText& text) noexcept {
    return GiveText(Variant.Temperature, text);
}

Status TPartDriver::GetSpeedGrade(WideText& text) noexcept {
    return GiveText(Variant.Speed, text);
}

Status TPartDriver::GetBsdlFile(WideText& text) noexcept {
    return Guard([&] {
        text.clear();
        text = ToWide(Table.BsdlFileOf(Variant));
    });
}

Status TPartDriver::GetVendor(WideText& text) noexcept {
    return GiveText(Table.GetVendor(), text);
}

Status TPartDriver::GetAttributeText36(WideText& text) noexcept {
    return GiveText(Part.Standards, text);
}

Status TPartDriver::GetDisplayName(WideText& text) noexcept {
    return Guard([&] {
        text.clear();
        text = ToWide(Table.NameOf(Variant));
    });
}

Status TPartDriver::GetCapacity(std::int32_t& value) noexcept {
    return Give(value, Part.Capacity);
}

Status TPartDriver::GetIrLength(std::int32_t& value) noexcept {
    return Give(value, Part.IrLength);
}

Status TPartDriver::GetPinCount(std::int32_t& value) noexcept {
    return Give(value, Part.Pins);
}

Status TPartDriver::GetIoPinCount(std::int32_t& value) noexcept {
    return Give(value, Part.Ios);
}

Status TPartDriver::GetDspMultipliers(std::int32_t& value) noexcept {
    return Give(value, Part.Multipliers);
}

Status TPartDriver::GetClockManagers(std::int32_t& value) noexcept {
    return Give(value, Part.ClockManagers);
}

Status TPartDriver::GetEmbeddedRam(std::int32_t& value) noexcept {
    return Give(value, Part.RamKilobits);
}

Status TPartDriver::GetGlobalClocks(std::int32_t& value) noexcept {
    return Give(value, Part.GlobalClocks);
}

Status TPartDriver::GetConfigMemory(std::int32_t& value) noexcept {
    return Give(value, Part.ConfigBits);
}

Status TPartDriver::GetDifferentialPairs(std::int32_t& value) noexcept {
    return Give(value, Part.DifferentialPairs);
}

Status TPartDriver::GetHighSpeedPairs(std::int32_t& value) noexcept {
    return Give(value, Part.HighSpeedPairs);
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
