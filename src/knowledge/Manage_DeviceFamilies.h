// The device families of the installation: the file FamilyMappings.txt.
//
// Lines of three kinds, told apart by a keyword anywhere in the line, without case:
//   a line with END_DEVICE_FAMILY closes the open family;
//   any other line with DEVICE_FAMILY opens one, which its parameter of that name names; without
//   it the line does nothing, and a family that is still open is lost to a new one;
//   all others are values of the open family: ValueType=STR|Key=Vendor|Value=Xilinx, with the
//   types STR, INT and BOOL. A number or boolean that cannot be read gets the last good one of its
//   type, at first 0 or false.
// What does not fit is passed over; the end of the file closes an open family.
#pragma once

#include "knowledge/DeviceFamilyInfo.h"

#include <string>
#include <string_view>
#include <vector>

namespace vorel {

// Reads the file once. Family names compare without case; the objects stand in the file's order.
class TDeviceFamilyManager final : public TInterfacedObject<IDeviceFamilyManager> {
public:
    // A missing file is an empty one.
    explicit TDeviceFamilyManager(const std::string& path);

    Status GetCount(std::int32_t& count) noexcept override;
    // Null for an unknown name. Adds a reference for the caller.
    Status GetFamilyByName(const WideText& name, IDeviceFamilyInfo*& family) noexcept override;
    // Null and StatusIndexOutOfRange for an index outside the list. Adds a reference for the
    // caller.
    Status GetFamilyByIndex(std::int32_t index, IDeviceFamilyInfo*& family) noexcept override;
    // Sorted, one per line.
    Status GetNames(WideText& names) noexcept override;

private:
    std::vector<Ref<TDeviceFamilyInfo>> Families;
    TValueList<std::size_t> FamilyNames; // to the index in Families
};

// Reads the text of such a file into objects, one for each family.
std::vector<Ref<TDeviceFamilyInfo>> ReadFamilies(std::string_view text);

} // namespace vorel
