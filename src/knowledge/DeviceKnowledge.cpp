#include "knowledge/DeviceKnowledge.h"

#include "knowledge/JtagId.h"

namespace vorel {

std::vector<std::string> TEmptyKnowledge::DevicesForJtagId(std::uint32_t) {
    return {};
}

bool TEmptyKnowledge::JtagIdsMatch(std::uint32_t idA, std::uint32_t idB) {
    return MaskedIdCode(idA) == MaskedIdCode(idB);
}

std::vector<std::string> TEmptyKnowledge::GetVendors() {
    return {};
}

std::vector<std::string> TEmptyKnowledge::GetFamiliesForVendor(std::string_view) {
    return {};
}

std::vector<std::string> TEmptyKnowledge::GetFamiliesForType(std::string_view) {
    return {};
}

std::vector<std::string> TEmptyKnowledge::GetDevicesOfFamily(std::string_view) {
    return {};
}

std::optional<TDeviceRow> TEmptyKnowledge::GetDeviceInfo(std::string_view) {
    return std::nullopt;
}

IVorelDriver* TEmptyKnowledge::GetDriverForDevice(std::string_view) {
    return nullptr;
}

IVorelDriver* TEmptyKnowledge::CreateDriverForDevice(std::string_view) {
    return nullptr;
}

std::vector<IVorelDriver*> TEmptyKnowledge::GetAllDrivers() {
    return {};
}

} // namespace vorel
