// libusb's objects, each freed by the one that holds it.
#pragma once

#include <libusb-1.0/libusb.h>

#include <memory>

namespace vorel {

template<class T, void (*Free)(T*)>
struct TLibusbFree {
    void operator()(T* object) const noexcept { Free(object); }
};

using TLibusbContext = std::unique_ptr<libusb_context, TLibusbFree<libusb_context, libusb_exit>>;
using TLibusbDeviceRef =
    std::unique_ptr<libusb_device, TLibusbFree<libusb_device, libusb_unref_device>>;
using TLibusbHandle =
    std::unique_ptr<libusb_device_handle, TLibusbFree<libusb_device_handle, libusb_close>>;
using TLibusbTransfer =
    std::unique_ptr<libusb_transfer, TLibusbFree<libusb_transfer, libusb_free_transfer>>;
using TLibusbConfiguration =
    std::unique_ptr<libusb_config_descriptor,
                    TLibusbFree<libusb_config_descriptor, libusb_free_config_descriptor>>;

} // namespace vorel
