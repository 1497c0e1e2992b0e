#include "simulator/SimPod.h"

#include "simulator/LocalLines.h"
#include "support/Text.h"

#include <algorithm>
#include <utility>

namespace vorel::sim {

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t DeviceType = 1;
constexpr std::uint8_t ConfigurationType = 2;
constexpr std::uint8_t StringType = 3;
constexpr std::uint8_t ProductString = 2;
constexpr std::uint8_t SerialString = 3;
constexpr std::size_t MaxStringUnits = 126;

constexpr std::uint8_t Low(unsigned value) noexcept {
    return static_cast<std::uint8_t>(value & 0xFF);
}
constexpr std::uint8_t High(unsigned value) noexcept {
    return static_cast<std::uint8_t>(value >> 8 & 0xFF);
}

Bytes StringDescriptor(const WideText& text) {
    const std::size_t units = std::min(text.size(), MaxStringUnits);
    Bytes result{static_cast<std::uint8_t>(2 + 2 * units), StringType};
    for (std::size_t i = 0; i < units; ++i) {
        result.push_back(Low(text[i]));
        result.push_back(High(text[i]));
    }
    return result;
}

// USB 2.0 at full speed, endpoint 0 of 64 bytes, release 1.0, one configuration.
Bytes DeviceDescriptor(const UsbIdentity& id) {
    return {18,
            DeviceType,
            0x00,
            0x02,
            0xFF,
            0,
            0xFF,
            64,
            Low(id.Vendor),
            High(id.Vendor),
            Low(id.Product),
            High(id.Product),
            0x00,
            0x01,
            0,
            ProductString,
            SerialString,
            1};
}

// One interface; a pod has the bulk endpoints 0x02 and 0x86 of 64 bytes.
Bytes ConfigurationDescriptor(bool isPod) {
    const std::uint8_t endpoints = isPod ? 2 : 0;
    const auto total = static_cast<std::uint8_t>(18 + 7 * endpoints);
    Bytes result{9, ConfigurationType, total, 0,    1,    1, 0, 0x80, 100, 9, 4, 0,
                 0, endpoints,         0xFF,  0xFF, 0xFF, 0};
    if (isPod) {
        const Bytes bulk{7, 5, 0x02, 2, 64, 0, 0, 7, 5, 0x86, 2, 64, 0, 0};
        result.insert(result.end(), bulk.begin(), bulk.end());
    }
    return result;
}

} // namespace

TSimPod::TSimPod(UsbIdentity identity, std::unique_ptr<TTarget> target)
    : Id(std::move(identity)), Hardware(std::move(target)) {
    PodLines lines;
    if (TBoard* const board = Hardware->Board()) {
        lines.ByModeAndSelect[0] = {AddLines(board->ControllerChain()),
                                    AddLines(board->MultiplexedLines())};
    }
    lines.ByModeAndSelect[1] = {AddLines(Hardware->HardChain()), AddLines(Hardware->SoftChain())};
    Program = std::make_unique<TPodFirmware>(lines);
}

TSimPod::TSimPod(UsbIdentity identity, std::unique_ptr<IJtagLines> lines)
    : Id(std::move(identity)) {
    PodLines connected;
    connected.ByModeAndSelect[1][0] = lines.get();
    OwnLines.push_back(std::move(lines));
    Program = std::make_unique<TPodFirmware>(connected);
}

TSimPod::TSimPod(UsbIdentity identity) : Id(std::move(identity)) {}

TSimPod::~TSimPod() = default;

IJtagLines* TSimPod::AddLines(IWireTarget& target) {
    OwnLines.push_back(std::make_unique<TLocalLines>(target));
    return OwnLines.back().get();
}

void TSimPod::Unplug() noexcept {
    if (Plugged) {
        Plugged = false;
        ++Unplugged;
    }
}

void TSimPod::Plug() {
    if (!Plugged && Program != nullptr) {
        Program->Reset();
    }
    Plugged = true;
}

Bytes TSimPod::Descriptor(std::uint8_t type, std::uint8_t index) const {
    if (type == DeviceType && index == 0) {
        return DeviceDescriptor(Id);
    }
    if (type == ConfigurationType && index == 0) {
        return ConfigurationDescriptor(Program != nullptr);
    }
    if (type != StringType) {
        return {};
    }
    switch (index) {
    case 0: // the languages: English (United States)
        return {4, StringType, 0x09, 0x04};
    case ProductString:
        return StringDescriptor(ToWide(Id.ProductName));
    case SerialString:
        return StringDescriptor(ToWide(Id.SerialNumber));
    default:
        return {};
    }
}

} // namespace vorel::sim
