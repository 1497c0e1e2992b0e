// Device knowledge that opens its driver cache at the first question, not at load: opening may read
// all driver modules and take long.
#pragma once

#include "knowledge/DeviceKnowledge.h"
#include "knowledge/KnowledgeSettings.h"

#include <memory>

namespace vorel {

class TVorelDriverManager;

class TKnowledgeOnDemand final : public IDeviceKnowledge {
public:
    explicit TKnowledgeOnDemand(const TKnowledgeSettings& settings);
    ~TKnowledgeOnDemand() override;

    std::vector<std::string> DevicesForJtagId(std::uint32_t idCode) override;
    bool JtagIdsMatch(std::uint32_t idA, std::uint32_t idB) override;
    std::vector<std::string> GetVendors() override;
    std::vector<std::string> GetFamiliesForVendor(std::string_view vendor) override;
    std::vector<std::string> GetFamiliesForType(std::string_view type) override;
    std::vector<std::string> GetDevicesOfFamily(std::string_view family) override;
    std::optional<TDeviceRow> GetDeviceInfo(std::string_view device) override;
    IVorelDriver* GetDriverForDevice(std::string_view device) override;
    IVorelDriver* CreateDriverForDevice(std::string_view device) override;
    std::vector<IVorelDriver*> GetAllDrivers() override;

private:
    TVorelDriverManager& Drivers();

    TKnowledgeSettings Settings;
    std::unique_ptr<TVorelDriverManager> Made;
};

} // namespace vorel
