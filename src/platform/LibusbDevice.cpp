#include "platform/LibusbDevice.h"

#include "platform/LibusbErrors.h"
#include "vorel/UsbServices.h"

#include <algorithm>

namespace vorel {

namespace {

constexpr std::size_t DescriptorRecordSize = 8;
constexpr std::size_t DriverInfoSize = 12;
constexpr std::size_t ConfigurationHeaderSize = 4;
constexpr std::size_t InterfaceRecordSize = 8;

std::uint16_t Get16(std::span<const std::uint8_t> record, std::size_t at) noexcept {
    return static_cast<std::uint16_t>(record[at] | (record[at + 1] << 8));
}

// The interface's descriptor with this number and setting, null when the configuration has none.
const libusb_interface_descriptor* FindSetting(const libusb_config_descriptor& configuration,
                                               std::uint16_t index, std::uint16_t alternate) {
    for (const libusb_interface& one :
         std::span(configuration.interface, configuration.bNumInterfaces)) {
        for (const libusb_interface_descriptor& setting :
             std::span(one.altsetting, static_cast<std::size_t>(one.num_altsetting))) {
            if (setting.bInterfaceNumber == index && setting.bAlternateSetting == alternate) {
                return &setting;
            }
        }
    }
    return nullptr;
}

} // namespace

TLibusbDevice::TLibusbDevice(libusb_context* context, TLibusbHandle handle) noexcept
    : Context(context), Handle(std::move(handle)) {
    // Where the system cannot do that, claiming tells.
    libusb_set_auto_detach_kernel_driver(Handle.get(), 1);
}

std::uint32_t TLibusbDevice::Control(const TLibusbControl& control, TLibusbRequest& request) {
    struct TEntry {
        std::uint32_t Code;
        std::uint32_t (TLibusbDevice::*Action)(const TLibusbControl&, TLibusbRequest&);
    };
    static constexpr TEntry entries[] = {
        {UsbControl::GetDescriptor, &TLibusbDevice::GetDescriptor},
        {UsbControl::SetConfiguration, &TLibusbDevice::SetConfiguration},
        {UsbControl::GetDriverInfo, &TLibusbDevice::GetDriverInfo},
        {UsbControl::BindPipe, &TLibusbDevice::BindPipe},
        {UsbControl::UnbindPipe, &TLibusbDevice::UnbindPipe},
    };
    for (const TEntry& entry : entries) {
        if (entry.Code == control.Code) {
            return (this->*entry.Action)(control, request);
        }
    }
    return request.End(UsbError::InvalidParameter);
}

std::uint32_t TLibusbDevice::GetDescriptor(const TLibusbControl& control, TLibusbRequest& request) {
    if (control.Input.size() < DescriptorRecordSize) {
        return request.End(UsbError::InvalidParameter);
    }
    TDescriptorQuery query;
    query.Recipient = control.Input[0];
    query.Type = control.Input[4];
    query.Index = control.Input[5];
    query.Language = Get16(control.Input, 6);
    return request.StartDescriptor(Context, Handle.get(), query, control.Output.data(),
                                   static_cast<std::uint32_t>(control.Output.size()));
}

std::uint32_t TLibusbDevice::GetDriverInfo(const TLibusbControl& control, TLibusbRequest& request) {
    if (control.Output.size() < DriverInfoSize) {
        return request.End(UsbError::InsufficientBuffer);
    }
    std::fill_n(control.Output.begin(), DriverInfoSize, std::uint8_t{0});
    control.Output[0] = static_cast<std::uint8_t>(UsbDriverVersion);
    control.Output[1] = static_cast<std::uint8_t>(UsbDriverVersion >> 8);
    return request.End(UsbError::None, DriverInfoSize);
}

std::uint32_t TLibusbDevice::SetConfiguration(const TLibusbControl& control,
                                              TLibusbRequest& request) {
    if (control.Input.size() < ConfigurationHeaderSize) {
        return request.End(UsbError::InvalidParameter);
    }
    const std::size_t count = Get16(control.Input, 2);
    if (control.Input.size() < ConfigurationHeaderSize + count * InterfaceRecordSize) {
        return request.End(UsbError::InvalidParameter);
    }
    libusb_config_descriptor* descriptor = nullptr;
    const int result = libusb_get_config_descriptor(libusb_get_device(Handle.get()),
                                                    control.Input[0], &descriptor);
    if (result != LIBUSB_SUCCESS) {
        return request.End(UsbErrorOfCall(result));
    }
    const TLibusbConfiguration configuration(descriptor);
    std::uint32_t error = SelectConfiguration(*configuration);
    for (std::size_t i = 0; i < count && error == UsbError::None; ++i) {
        const std::size_t at = ConfigurationHeaderSize + i * InterfaceRecordSize;
        error =
            UseInterface(*configuration, Get16(control.Input, at), Get16(control.Input, at + 2));
    }
    if (error != UsbError::None) {
        ReleaseInterfaces();
    }
    return request.End(error);
}

std::uint32_t TLibusbDevice::SelectConfiguration(const libusb_config_descriptor& configuration) {
    ReleaseInterfaces();
    int current = 0;
    const int known = libusb_get_configuration(Handle.get(), &current);
    if (known == LIBUSB_SUCCESS && current == configuration.bConfigurationValue) {
        return UsbError::None;
    }
    return UsbErrorOfCall(
        libusb_set_configuration(Handle.get(), configuration.bConfigurationValue));
}

std::uint32_t TLibusbDevice::UseInterface(const libusb_config_descriptor& configuration,
                                          std::uint16_t index, std::uint16_t alternate) {
    const libusb_interface_descriptor* setting = FindSetting(configuration, index, alternate);
    if (setting == nullptr) {
        return UsbError::InvalidParameter;
    }
    int result = libusb_claim_interface(Handle.get(), index);
    if (result != LIBUSB_SUCCESS) {
        return UsbErrorOfCall(result);
    }
    Claimed.push_back(index);
    if (alternate != 0) {
        result = libusb_set_interface_alt_setting(Handle.get(), index, alternate);
    }
    for (const libusb_endpoint_descriptor& endpoint :
         std::span(setting->endpoint, setting->bNumEndpoints)) {
        if ((endpoint.bmAttributes & LIBUSB_TRANSFER_TYPE_MASK) ==
            LIBUSB_ENDPOINT_TRANSFER_TYPE_BULK) {
            Endpoints.push_back(endpoint.bEndpointAddress);
        }
    }
    return UsbErrorOfCall(result);
}

void TLibusbDevice::ReleaseInterfaces() noexcept {
    for (const int index : Claimed) {
        libusb_release_interface(Handle.get(), index);
    }
    Claimed.clear();
    Endpoints.clear();
    Bound = 0;
}

std::uint32_t TLibusbDevice::BindPipe(const TLibusbControl& control, TLibusbRequest& request) {
    if (control.Input.empty() ||
        std::find(Endpoints.begin(), Endpoints.end(), control.Input[0]) == Endpoints.end()) {
        return request.End(UsbError::InvalidParameter);
    }
    Bound = control.Input[0];
    return request.End(UsbError::None);
}

std::uint32_t TLibusbDevice::UnbindPipe(const TLibusbControl&, TLibusbRequest& request) {
    Bound = 0;
    return request.End(UsbError::None);
}

std::uint32_t TLibusbDevice::Read(void* buffer, std::uint32_t size, TLibusbRequest& request) {
    return Transfer(buffer, size, LIBUSB_ENDPOINT_IN, request);
}

std::uint32_t TLibusbDevice::Write(const void* buffer, std::uint32_t size,
                                   TLibusbRequest& request) {
    return Transfer(const_cast<void*>(buffer), size, LIBUSB_ENDPOINT_OUT, request);
}

std::uint32_t TLibusbDevice::Transfer(void* buffer, std::uint32_t size, std::uint8_t direction,
                                      TLibusbRequest& request) {
    if (Bound == 0 || (Bound & LIBUSB_ENDPOINT_DIR_MASK) != direction) {
        return request.End(UsbError::InvalidParameter);
    }
    return request.StartBulk(Context, Handle.get(), Bound, buffer, size);
}

} // namespace vorel
