#include "transport/UsbJtagManager.h"

#include "vorel/Analyser.h"

#include <algorithm>
#include <string_view>

namespace vorel {

namespace {

// Offsets in the USB device descriptor.
constexpr std::size_t VendorOffset = 8;
constexpr std::size_t ProductOffset = 10;
constexpr std::size_t ProductStringOffset = 15;
constexpr std::size_t SerialStringOffset = 16;

constexpr std::string_view CuttingVendor = "AuthenticAMD";

unsigned Get16(const std::uint8_t* at) noexcept {
    return at[0] | (static_cast<unsigned>(at[1]) << 8);
}

bool IsDigit(std::uint8_t c) noexcept {
    return c >= '0' && c <= '9';
}

bool IsNameCharacter(std::uint8_t c) noexcept {
    return c == ' ' || c == '-' || c == '.' || IsDigit(c) || (c >= 'A' && c <= 'Z') ||
           (c >= 'a' && c <= 'z');
}

bool IsSerialCharacter(std::uint8_t c) noexcept {
    return c == '.' || IsDigit(c);
}

// The text of a string descriptor: UTF-16 from byte 2 to a zero character.
WideText StringOf(const std::array<std::uint8_t, 256>& descriptor) {
    WideText text;
    for (std::size_t at = 2; at + 1 < descriptor.size(); at += 2) {
        const auto c = static_cast<char16_t>(Get16(descriptor.data() + at));
        if (c == 0) {
            break;
        }
        text.push_back(c);
    }
    return text;
}

} // namespace

TUsbJtagManager::TUsbJtagManager(IUsbServices& services, TVendorReader vendor)
    : Vendor(vendor), Pipe(services) {}

TUsbJtagManager::~TUsbJtagManager() {
    Release();
}

std::int32_t TUsbJtagManager::CountPods() noexcept {
    OpenIndex = -1;
    if (!Enabled) {
        return 0;
    }
    Release();
    DeviceList = Pipe.CreateDeviceList(UsbIoInterfaceClass);
    if (DeviceList == nullptr) {
        return 0;
    }
    std::int32_t count = 0;
    for (std::int32_t index = 0; index < MaxDevices; ++index) {
        if (Pipe.Open(index, DeviceList, &UsbIoInterfaceClass) != StatusSuccess) {
            break;
        }
        count += IsPod() ? 1 : 0;
        Pipe.Close();
    }
    return count;
}

bool TUsbJtagManager::IsPod() noexcept {
    std::array<std::uint8_t, 18> descriptor{};
    if (Pipe.GetDeviceDescriptor(descriptor) != StatusSuccess) {
        return false;
    }
    const unsigned product = Get16(descriptor.data() + ProductOffset);
    return Get16(descriptor.data() + VendorOffset) == UsbPod::VendorId &&
           (product == UsbPod::FirstProductId || product == UsbPod::SecondProductId);
}

TUsbPort& TUsbJtagManager::GetPort(std::int32_t index) {
    const auto found = std::find_if(Ports.begin(), Ports.end(), [index](const auto& port) {
        return port->GetDeviceIndex() == index;
    });
    if (found != Ports.end()) {
        return **found;
    }
    Ports.push_back(std::make_unique<TUsbPort>(*this, index));
    Ports.back()->SetAnalyser(Analyser);
    return *Ports.back();
}

void TUsbJtagManager::SetAnalyser(IJTagAnalyser* analyser) noexcept {
    Analyser = analyser;
    for (const auto& port : Ports) {
        port->SetAnalyser(analyser);
    }
}

void TUsbJtagManager::Release() noexcept {
    Pipe.Close();
    Pipe.DestroyDeviceList(DeviceList);
    DeviceList = nullptr;
}

bool TUsbJtagManager::EnsureOpen(std::int32_t index) noexcept {
    if (OpenIndex != index) {
        Pipe.Close();
        OpenIndex = index;
    }
    if (Pipe.IsOpen()) {
        return true;
    }
    if (Pipe.Open(index, DeviceList, &UsbIoInterfaceClass) != StatusSuccess) {
        return false;
    }
    TUsbConfiguration configuration;
    configuration.InterfaceCount = 1;
    configuration.Interfaces[0].MaximumTransferSize = UsbPod::MaximumTransferSize;
    if (Pipe.SetConfiguration(configuration) != StatusSuccess) {
        Pipe.Close();
        OpenIndex = -1;
        return false;
    }
    return true;
}

bool TUsbJtagManager::BindEndpoint(std::int32_t deviceIndex, std::uint8_t endpoint) noexcept {
    return EnsureOpen(deviceIndex) &&
           Pipe.Bind(deviceIndex, endpoint, DeviceList, &UsbIoInterfaceClass) == StatusSuccess;
}

std::uint32_t TUsbJtagManager::Read(std::int32_t deviceIndex, void* buffer,
                                    std::uint32_t& byteCount) noexcept {
    if (!BindEndpoint(deviceIndex, UsbPod::AnswerEndpoint)) {
        return StatusSuccess;
    }
    const std::uint32_t status = Pipe.ReadSync(buffer, byteCount, UsbPod::TransferTimeoutMs);
    Pipe.Unbind();
    ++Traffic.Reads;
    Traffic.BytesRead += byteCount;
    if (Analyser != nullptr && status == StatusSuccess) {
        Analyser->AddBytesIn(static_cast<std::int32_t>(byteCount));
    }
    return status;
}

std::uint32_t TUsbJtagManager::Write(std::int32_t deviceIndex, const void* buffer,
                                     std::uint32_t& byteCount) noexcept {
    if (!BindEndpoint(deviceIndex, UsbPod::CommandEndpoint)) {
        return StatusFailed;
    }
    const std::uint32_t status = Pipe.WriteSync(buffer, byteCount, UsbPod::TransferTimeoutMs);
    Pipe.Unbind();
    ++Traffic.Writes;
    Traffic.BytesWritten += byteCount;
    if (Analyser != nullptr && status == StatusSuccess) {
        Analyser->AddBytesOut(static_cast<std::int32_t>(byteCount));
    }
    return status;
}

WideText TUsbJtagManager::ProductName(std::int32_t deviceIndex) {
    return DescriptorText(deviceIndex, ProductStringOffset, IsNameCharacter);
}

WideText TUsbJtagManager::SerialNumber(std::int32_t deviceIndex) {
    return DescriptorText(deviceIndex, SerialStringOffset, IsSerialCharacter);
}

WideText TUsbJtagManager::DescriptorText(std::int32_t deviceIndex, std::size_t indexOffset,
                                         TPermitted permitted) {
    std::array<std::uint8_t, 18> device{};
    if (!EnsureOpen(deviceIndex) || Pipe.GetDeviceDescriptor(device) != StatusSuccess) {
        return {};
    }
    std::array<std::uint8_t, 256> descriptor{};
    auto byteCount = static_cast<std::uint32_t>(descriptor.size());
    Pipe.GetStringDescriptor(descriptor.data(), byteCount, 0, device[indexOffset]);
    WideText text = StringOf(descriptor);
    if (Vendor() == CuttingVendor) {
        // Beside these processors a text is trusted only as far as its characters are usual ones.
        const std::size_t tested = std::min<std::size_t>(text.size(), byteCount / 2);
        for (std::size_t i = 0; i < tested; ++i) {
            if (!permitted(static_cast<std::uint8_t>(text[i]))) {
                text.resize(i);
                break;
            }
        }
    }
    return text;
}

} // namespace vorel
