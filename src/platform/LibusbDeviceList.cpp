#include "platform/LibusbDeviceList.h"

#include <algorithm>
#include <array>
#include <cstdio>
#include <tuple>

namespace vorel {

namespace {

// The pods' ids; devices with others do not belong to the class.
constexpr std::uint16_t PodVendor = 0x1B8C;
constexpr std::array<std::uint16_t, 2> PodProducts{0x0100, 0x0200};

constexpr std::size_t MaxPortDepth = 7; // tiers of a USB tree

struct TFoundPod {
    TLibusbDeviceRef Device;
    std::uint8_t Bus = 0;
    std::uint8_t Address = 0;
    std::uint16_t Product = 0;
    std::vector<std::uint8_t> Ports; // from the root hub to the pod
    bool Refused = false;
};

std::string NumberedText(const char* format, const TFoundPod& pod) {
    std::array<char, 40> text{};
    std::snprintf(text.data(), text.size(), format, pod.Bus, pod.Address);
    return text.data();
}

std::string PathOf(const TFoundPod& pod) {
    return NumberedText("usb-%03u-%03u", pod);
}

bool IsPod(libusb_device* device, std::uint16_t& product) {
    libusb_device_descriptor descriptor{};
    if (libusb_get_device_descriptor(device, &descriptor) != LIBUSB_SUCCESS) {
        return false;
    }
    product = descriptor.idProduct;
    return descriptor.idVendor == PodVendor &&
           std::find(PodProducts.begin(), PodProducts.end(), product) != PodProducts.end();
}

TFoundPod Describe(libusb_device* device, std::uint16_t product) {
    TFoundPod pod;
    pod.Device.reset(libusb_ref_device(device));
    pod.Bus = libusb_get_bus_number(device);
    pod.Address = libusb_get_device_address(device);
    pod.Product = product;
    pod.Ports.resize(MaxPortDepth);
    const int depth = libusb_get_port_numbers(device, pod.Ports.data(), MaxPortDepth);
    pod.Ports.resize(static_cast<std::size_t>(std::max(depth, 0)));
    return pod;
}

std::vector<TFoundPod> FindPods(libusb_context* context) {
    libusb_device** devices = nullptr;
    const ssize_t count = libusb_get_device_list(context, &devices);
    const auto freeList = [](libusb_device** list) { libusb_free_device_list(list, 1); };
    const std::unique_ptr<libusb_device*, decltype(freeList)> owner(devices, freeList);
    std::vector<TFoundPod> pods;
    for (ssize_t i = 0; i < count; ++i) {
        std::uint16_t product = 0;
        if (IsPod(devices[i], product)) {
            pods.push_back(Describe(devices[i], product));
        }
    }
    return pods;
}

int Open(const TFoundPod& pod, TLibusbHandle& handle) {
    libusb_device_handle* opened = nullptr;
    const int result = libusb_open(pod.Device.get(), &opened);
    handle.reset(result == LIBUSB_SUCCESS ? opened : nullptr);
    return result;
}

bool MayNotBeOpened(const TFoundPod& pod) {
    TLibusbHandle handle;
    return Open(pod, handle) == LIBUSB_ERROR_ACCESS;
}

TRefusedUsbDevice Refusal(const TFoundPod& pod) {
    TRefusedUsbDevice refusal;
    refusal.Bus = pod.Bus;
    refusal.Address = pod.Address;
    refusal.Node = NumberedText("/dev/bus/usb/%03u/%03u", pod);
    refusal.ProductId = pod.Product;
    refusal.Reason = "No permission to read and write " + refusal.Node +
                     ". Install the udev rule 60-vorel-pods.rules and plug the pod in again, or "
                     "join the group plugdev.";
    return refusal;
}

} // namespace

TLibusbDeviceList::TLibusbDeviceList(libusb_context* context) {
    std::vector<TFoundPod> pods = FindPods(context);
    for (TFoundPod& pod : pods) {
        pod.Refused = MayNotBeOpened(pod);
    }
    const auto key = [](const TFoundPod& pod) {
        return std::tie(pod.Refused, pod.Bus, pod.Ports, pod.Address);
    };
    std::sort(pods.begin(), pods.end(),
              [key](const TFoundPod& a, const TFoundPod& b) { return key(a) < key(b); });
    for (const TFoundPod& pod : pods) {
        Paths.push_back(PathOf(pod));
        if (pod.Refused) {
            Refused.push_back(Refusal(pod));
        }
    }
}

int OpenLibusbPath(libusb_context* context, const std::string& path, TLibusbHandle& handle) {
    for (const TFoundPod& pod : FindPods(context)) {
        if (PathOf(pod) == path) {
            return Open(pod, handle);
        }
    }
    return LIBUSB_ERROR_NOT_FOUND;
}

} // namespace vorel
