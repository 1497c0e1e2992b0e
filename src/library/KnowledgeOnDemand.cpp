#include "library/KnowledgeOnDemand.h"

#include "knowledge/Manage_VorelDrivers.h"

namespace vorel {

TKnowledgeOnDemand::TKnowledgeOnDemand(const TKnowledgeSettings& settings) : Settings(settings) {}

TKnowledgeOnDemand::~TKnowledgeOnDemand() = default;

TVorelDriverManager& TKnowledgeOnDemand::Drivers() {
    if (Made == nullptr) {
        Made = std::make_unique<TVorelDriverManager>(Settings);
    }
    return *Made;
}

std::vector<std::string> TKnowledgeOnDemand::DevicesForJtagId(std::uint32_t idCode) {
    return Drivers().DevicesForJtagId(idCode);
}

bool TKnowledgeOnDemand::JtagIdsMatch(std::uint32_t idA, std::uint32_t idB) {
    return Drivers().JtagIdsMatch(idA, idB);
}

std::vector<std::string> TKnowledgeOnDemand::GetVendors() {
    return Drivers().GetVendors();
}

std::vector<std::string> TKnowledgeOnDemand::GetFamiliesForVendor(std::string_view vendor) {
    return Drivers().GetFamiliesForVendor(vendor);
}

std::vector<std::string> TKnowledgeOnDemand::GetFamiliesForType(std::string_view type) {
    return Drivers().GetFamiliesForType(type);
}

std::vector<std::string> TKnowledgeOnDemand::GetDevicesOfFamily(std::string_view family) {
    return Drivers().GetDevicesOfFamily(family);
}

std::optional<TDeviceRow> TKnowledgeOnDemand::GetDeviceInfo(std::string_view device) {
    return Drivers().GetDeviceInfo(device);
}

IVorelDriver* TKnowledgeOnDemand::GetDriverForDevice(std::string_view device) {
    return Drivers().GetDriverForDevice(device);
}

IVorelDriver* TKnowledgeOnDemand::CreateDriverForDevice(std::string_view device) {
    return Drivers().CreateDriverForDevice(device);
}

std::vector<IVorelDriver*> TKnowledgeOnDemand::GetAllDrivers() {
    return Drivers().GetAllDrivers();
}

} // namespace vorel
