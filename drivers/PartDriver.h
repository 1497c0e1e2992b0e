// A driver that describes one physical part, from the facts of a part table. It drives nothing:
// the entries for soft devices keep their neutral answers.
//
// Beyond the entries whose meaning is fixed:
//   GetAttributeText7    base device, the ordering name without package and grades
//   GetAttributeText10   base device, and
//   GetAttributeText17   package: parts that agree in both can take each other's place
//   GetAttributeText36   comma list of the I/O standards
#pragma once

#include "drivers/PartTable.h"
#include "vorel/DriverBase.h"

namespace vorel {

// The table outlives the driver.
class TPartDriver final : public TDriverBase {
public:
    TPartDriver(const TPartTable& table, const TPartVariant& variant);

    Status GetIdCode(std::uint32_t& idCode) noexcept override;
    Status GetDeviceName(WideText& text) noexcept override;
    // "Spartan-3 FPGA, 676 pins".
    Status GetDescription(WideText& text) noexcept override;
    Status GetFamily(WideText& text) noexcept override;
    Status GetAttributeText7(WideText& text) noexcept override;
    Status GetAttributeText10(WideText& text) noexcept override;
    Status GetCapacity(std::int32_t& value) noexcept override;
    Status GetAttributeText17(WideText& text) noexcept override;
    Status GetPackage(WideText& text) noexcept override;
    Status GetTemperatureGrade(WideText& text) noexcept override;
    Status GetSpeedGrade(WideText& text) noexcept override;
    // A bare file name, whether or not there is such a file.
    Status GetBsdlFile(WideText& text) noexcept override;
    Status GetVendor(WideText& text) noexcept override;
    Status GetIrLength(std::int32_t& value) noexcept override;
    Status GetPinCount(std::int32_t& value) noexcept override;
    Status GetIoPinCount(std::int32_t& value) noexcept override;
    Status GetAttributeText36(WideText& text) noexcept override;
    Status GetDspMultipliers(std::int32_t& value) noexcept override;
    Status GetClockManagers(std::int32_t& value) noexcept override;
    Status GetEmbeddedRam(std::int32_t& value) noexcept override;
    Status GetOnChipTermination(Bool32& value) noexcept override;
    Status GetGlobalClocks(std::int32_t& value) noexcept override;
    Status GetConfigMemory(std::int32_t& value) noexcept override;
    Status GetDifferentialPairs(std::int32_t& value) noexcept override;
    Status GetHighSpeedPairs(std::int32_t& value) noexcept override;
    Status GetDisplayName(WideText& text) noexcept override;
    // True for the family's type word, without case.
    Status HasAttribute(const WideText& word, Bool32& value) noexcept override;

private:
    const TPartFamily& Family() const { return Table.GetFamilies()[Part.Family]; }

    const TPartTable& Table;
    const TPartVariant& Variant;
    const TPart& Part;
};

} // namespace vorel
