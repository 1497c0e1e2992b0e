#include "transport/UsbIo.h"

#include <algorithm>
#include <cstdio>
#include <cstring>
#include <new>
#include <utility>

namespace vorel {

namespace {

// The detail record: a 32-bit size field, then the path. The size field tells the layout, and 5 is
// that of a record without padding whose path is still empty.
constexpr std::uint32_t DetailSizeField = 5;
constexpr std::size_t DetailPathOffset = 4;
constexpr std::uint32_t MaxDetailSize = 0x20000; // no path is longer

constexpr std::uint8_t DeviceDescriptorType = 1;
constexpr std::uint8_t StringDescriptorType = 3;
constexpr std::uint32_t DeviceRecipient = 0;

constexpr std::size_t DriverInfoSize = 12;
constexpr std::size_t DriverFlagsOffset = 8;
constexpr std::size_t ConfigurationSize = 4 + 8 * TUsbConfiguration::MaxInterfaces;

void Put16(std::uint8_t* at, std::uint32_t value) noexcept {
    at[0] = static_cast<std::uint8_t>(value);
    at[1] = static_cast<std::uint8_t>(value >> 8);
}

void Put32(std::uint8_t* at, std::uint32_t value) noexcept {
    Put16(at, value);
    Put16(at + 2, value >> 16);
}

std::uint16_t Get16(const std::uint8_t* at) noexcept {
    return static_cast<std::uint16_t>(at[0] | (at[1] << 8));
}

std::uint32_t Get32(const std::uint8_t* at) noexcept {
    return Get16(at) | (static_cast<std::uint32_t>(Get16(at + 2)) << 16);
}

} // namespace

UsbList* TUsbIo::CreateDeviceList(const Guid& interfaceGuid) noexcept {
    return Services.CreateInterfaceList(interfaceGuid);
}

void TUsbIo::DestroyDeviceList(UsbList* list) noexcept {
    if (list != nullptr) {
        Services.DestroyInterfaceList(list);
    }
}

std::uint32_t TUsbIo::Open(std::int32_t deviceNumber, UsbList* deviceList,
                           const Guid* interfaceGuid) noexcept {
    if (IsOpen()) {
        return StatusSuccess;
    }
    std::uint32_t status = StatusSuccess;
    if (deviceList != nullptr) {
        status = AcquireDevicePath(deviceNumber, deviceList, interfaceGuid);
        if (status == StatusSuccess) {
            status = OpenPath(DevicePathName());
        }
    } else {
        std::array<char, 32> path{};
        std::snprintf(path.data(), path.size(), "\\\\.\\USBIO_Device%d", deviceNumber);
        status = OpenPath(path.data());
    }
    if (status != StatusSuccess) {
        Close();
    }
    return status;
}

std::uint32_t TUsbIo::OpenPath(const char* path) noexcept {
    if (Services.OpenDevice(path, FileHandle) != UsbError::None || FileHandle == nullptr) {
        FileHandle = nullptr;
        return StatusDeviceNotFound;
    }
    Overlapped = Services.CreateRequest();
    if (Overlapped == nullptr) {
        return StatusNoMemory;
    }
    return CheckDriver();
}

std::uint32_t TUsbIo::CheckDriver() noexcept {
    TUsbDriverInfo info;
    const std::uint32_t status = GetDriverInfo(info);
    if (status != StatusSuccess) {
        return status;
    }
    DriverFlag10 = (info.Flags & 0x10U) != 0;
    DriverFlag20 = (info.Flags & 0x20U) != 0;
    return info.InterfaceVersion == UsbDriverVersion ? StatusSuccess : StatusVersionMismatch;
}

void TUsbIo::Close() noexcept {
    if (FileHandle != nullptr) {
        Services.CloseDevice(std::exchange(FileHandle, nullptr));
    }
    if (Overlapped != nullptr) {
        Services.DestroyRequest(std::exchange(Overlapped, nullptr));
    }
    DeviceDetail.reset();
}

std::uint32_t TUsbIo::AcquireDevicePath(std::int32_t deviceNumber, UsbList* deviceList,
                                        const Guid* interfaceGuid) noexcept {
    if (deviceList == nullptr || interfaceGuid == nullptr) {
        return StatusInvalidArgument;
    }
    DeviceDetail.reset();
    const auto index = static_cast<std::uint32_t>(deviceNumber);
    std::uint32_t error = Services.EnumInterface(deviceList, *interfaceGuid, index);
    if (error != UsbError::None) {
        return error == UsbError::NoMoreItems ? StatusNoSuchInstance : error;
    }
    std::uint32_t needed = 0;
    Services.GetInterfaceDetail(deviceList, *interfaceGuid, index, nullptr, 0, needed);
    if (needed == 0) {
        return StatusFailed;
    }
    if (needed > MaxDetailSize) {
        return StatusNoMemory;
    }
    // Room for the size field even in a record that claims less, and a zero behind the path.
    const std::size_t size = std::max<std::size_t>(needed, DetailPathOffset) + 1;
    DeviceDetail.reset(new (std::nothrow) char[size]());
    if (DeviceDetail == nullptr) {
        return StatusNoMemory;
    }
    Put32(reinterpret_cast<std::uint8_t*>(DeviceDetail.get()), DetailSizeField);
    return Services.GetInterfaceDetail(deviceList, *interfaceGuid, index, DeviceDetail.get(),
                                       needed, needed);
}

const char* TUsbIo::DevicePathName() const noexcept {
    return DeviceDetail == nullptr ? nullptr : DeviceDetail.get() + DetailPathOffset;
}

std::uint32_t TUsbIo::GetDriverInfo(TUsbDriverInfo& info) noexcept {
    std::array<std::uint8_t, DriverInfoSize> record{};
    const std::uint32_t status =
        IoctlSync(UsbControl::GetDriverInfo, nullptr, 0, record.data(), record.size(), nullptr);
    info.InterfaceVersion = Get16(record.data());
    info.Flags = Get32(record.data() + DriverFlagsOffset);
    return status;
}

std::uint32_t TUsbIo::GetDescriptor(void* buffer, std::uint32_t& byteCount,
                                    std::uint16_t languageId, std::uint8_t descriptorIndex,
                                    std::uint8_t descriptorType, std::uint32_t recipient) noexcept {
    std::array<std::uint8_t, 8> record{};
    Put32(record.data(), recipient);
    record[4] = descriptorType;
    record[5] = descriptorIndex;
    Put16(record.data() + 6, languageId);
    return IoctlSync(UsbControl::GetDescriptor, record.data(), record.size(), buffer, byteCount,
                     &byteCount);
}

std::uint32_t TUsbIo::GetDeviceDescriptor(std::array<std::uint8_t, 18>& descriptor) noexcept {
    auto byteCount = static_cast<std::uint32_t>(descriptor.size());
    return GetDescriptor(descriptor.data(), byteCount, 0, 0, DeviceDescriptorType, DeviceRecipient);
}

std::uint32_t TUsbIo::GetStringDescriptor(void* buffer, std::uint32_t& byteCount,
                                          std::uint16_t languageId,
                                          std::uint8_t descriptorIndex) noexcept {
    return GetDescriptor(buffer, byteCount, languageId, descriptorIndex, StringDescriptorType,
                         DeviceRecipient);
}

std::uint32_t TUsbIo::SetConfiguration(const TUsbConfiguration& configuration) noexcept {
    std::array<std::uint8_t, ConfigurationSize> record{};
    const std::size_t count =
        std::min<std::size_t>(configuration.InterfaceCount, TUsbConfiguration::MaxInterfaces);
    Put16(record.data(), configuration.ConfigurationIndex);
    Put16(record.data() + 2, static_cast<std::uint32_t>(count));
    for (std::size_t i = 0; i < count; ++i) {
        std::uint8_t* at = record.data() + 4 + 8 * i;
        Put16(at, configuration.Interfaces[i].Index);
        Put16(at + 2, configuration.Interfaces[i].AlternateSetting);
        Put32(at + 4, configuration.Interfaces[i].MaximumTransferSize);
    }
    return IoctlSync(UsbControl::SetConfiguration, record.data(), record.size(), nullptr, 0,
                     nullptr);
}

std::uint32_t TUsbIo::IoctlSync(std::uint32_t code, const void* input, std::uint32_t inputSize,
                                void* output, std::uint32_t outputSize,
                                std::uint32_t* bytesReturned) noexcept {
    if (!IsOpen()) {
        return StatusNotOpen;
    }
    const std::lock_guard<std::mutex> lock(CritSect);
    std::uint32_t count = 0;
    std::uint32_t error =
        Services.Control(FileHandle, code, input, inputSize, output, outputSize, Overlapped);
    if (error == UsbError::None || error == UsbError::Pending) {
        error = Services.GetResult(FileHandle, Overlapped, count, true);
    }
    if (bytesReturned != nullptr) {
        *bytesReturned = std::min(count, outputSize);
    }
    return error;
}

void TUsbIo::CancelIo() noexcept {
    if (IsOpen()) {
        Services.CancelIo(FileHandle);
    }
}

} // namespace vorel
