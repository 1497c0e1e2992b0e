#include "platform/LibusbServices.h"

#include "platform/LibusbDevice.h"
#include "platform/LibusbErrors.h"
#include "platform/LibusbRequest.h"

#include <algorithm>
#include <charconv>
#include <cstring>
#include <string_view>

namespace vorel {

namespace {

constexpr std::string_view NumberedPath = "\\\\.\\USBIO_Device";
constexpr std::size_t DetailPathOffset = 4; // behind the record's size field

// The handles that cross the interface are the addresses of the objects held here; what is not
// among them is no handle.
template<class T, class Handle>
T* Find(const std::vector<std::unique_ptr<T>>& objects, Handle* handle) noexcept {
    for (const std::unique_ptr<T>& object : objects) {
        if (reinterpret_cast<Handle*>(object.get()) == handle) {
            return object.get();
        }
    }
    return nullptr;
}

template<class Handle, class T>
Handle* Keep(std::vector<std::unique_ptr<T>>& objects, std::unique_ptr<T> object) {
    objects.push_back(std::move(object));
    return reinterpret_cast<Handle*>(objects.back().get());
}

template<class T, class Handle>
void Drop(std::vector<std::unique_ptr<T>>& objects, Handle* handle) noexcept {
    const auto found = std::find_if(objects.begin(), objects.end(), [handle](const auto& object) {
        return reinterpret_cast<Handle*>(object.get()) == handle;
    });
    if (found != objects.end()) {
        objects.erase(found);
    }
}

} // namespace

TLibusbServices::TLibusbServices() noexcept = default;
TLibusbServices::~TLibusbServices() = default;

libusb_context* TLibusbServices::StartLibusb() noexcept {
    if (Context == nullptr) {
        libusb_context* context = nullptr;
        if (libusb_init(&context) == LIBUSB_SUCCESS) {
            Context.reset(context);
        }
    }
    return Context.get();
}

UsbList* TLibusbServices::CreateInterfaceList(const Guid& interfaceClass) noexcept {
    try {
        if (StartLibusb() == nullptr || interfaceClass != UsbIoInterfaceClass) {
            return nullptr;
        }
        auto list = std::make_unique<TLibusbDeviceList>(Context.get());
        Refused = list->GetRefused();
        return Keep<UsbList>(Lists, std::move(list));
    } catch (...) {
        return nullptr;
    }
}

void TLibusbServices::DestroyInterfaceList(UsbList* list) noexcept {
    Drop(Lists, list);
}

std::uint32_t TLibusbServices::EnumInterface(UsbList* list, const Guid& interfaceClass,
                                             std::uint32_t index) noexcept {
    const TLibusbDeviceList* known = Find(Lists, list);
    if (known == nullptr) {
        return UsbError::InvalidHandle;
    }
    const bool exists = interfaceClass == UsbIoInterfaceClass && index < known->GetCount();
    return exists ? UsbError::None : UsbError::NoMoreItems;
}

std::uint32_t TLibusbServices::GetInterfaceDetail(UsbList* list, const Guid& interfaceClass,
                                                  std::uint32_t index, void* record,
                                                  std::uint32_t capacity,
                                                  std::uint32_t& needed) noexcept {
    needed = 0;
    const std::uint32_t error = EnumInterface(list, interfaceClass, index);
    if (error != UsbError::None) {
        return error;
    }
    const std::string& path = Find(Lists, list)->GetPath(index);
    needed = static_cast<std::uint32_t>(DetailPathOffset + path.size() + 1);
    if (record == nullptr || capacity < needed) {
        return UsbError::InsufficientBuffer;
    }
    std::memcpy(static_cast<char*>(record) + DetailPathOffset, path.c_str(), path.size() + 1);
    return UsbError::None;
}

std::uint32_t TLibusbServices::ResolvePath(std::string& path) {
    if (path.compare(0, NumberedPath.size(), NumberedPath) != 0) {
        return UsbError::None;
    }
    std::uint32_t index = 0;
    const char* end = path.data() + path.size();
    const auto [stop, error] = std::from_chars(path.data() + NumberedPath.size(), end, index);
    const TLibusbDeviceList present(Context.get());
    if (error != std::errc() || stop != end || index >= present.GetCount()) {
        return UsbError::FileNotFound;
    }
    path = present.GetPath(index);
    return UsbError::None;
}

std::uint32_t TLibusbServices::OpenPath(std::string path, UsbDevice*& device) {
    const std::uint32_t error = ResolvePath(path);
    if (error != UsbError::None) {
        return error;
    }
    TLibusbHandle handle;
    const int result = OpenLibusbPath(Context.get(), path, handle);
    if (result != LIBUSB_SUCCESS) {
        return UsbErrorOfCall(result);
    }
    device =
        Keep<UsbDevice>(Devices, std::make_unique<TLibusbDevice>(Context.get(), std::move(handle)));
    return UsbError::None;
}

std::uint32_t TLibusbServices::OpenDevice(const char* path, UsbDevice*& device) noexcept {
    device = nullptr;
    if (path == nullptr || StartLibusb() == nullptr) {
        return UsbError::FileNotFound;
    }
    try {
        return OpenPath(path, device);
    } catch (...) {
        return UsbError::NotEnoughMemory;
    }
}

void TLibusbServices::CloseDevice(UsbDevice* device) noexcept {
    const TLibusbDevice* known = Find(Devices, device);
    if (known == nullptr) {
        return;
    }
    CancelIo(device);
    for (const auto& request : Requests) {
        if (request->IsUnderWayOn(known->GetHandle())) {
            request->Drain();
        }
    }
    Drop(Devices, device);
}

UsbRequest* TLibusbServices::CreateRequest() noexcept {
    try {
        return Keep<UsbRequest>(Requests, std::make_unique<TLibusbRequest>());
    } catch (...) {
        return nullptr;
    }
}

void TLibusbServices::DestroyRequest(UsbRequest* request) noexcept {
    Drop(Requests, request);
}

template<class Body>
std::uint32_t TLibusbServices::Start(UsbDevice* device, UsbRequest* request, Body&& body) noexcept {
    TLibusbDevice* knownDevice = Find(Devices, device);
    TLibusbRequest* knownRequest = Find(Requests, request);
    if (knownDevice == nullptr || knownRequest == nullptr) {
        return UsbError::InvalidHandle;
    }
    if (knownRequest->IsUnderWay()) {
        return UsbError::InvalidParameter;
    }
    try {
        return body(*knownDevice, *knownRequest);
    } catch (...) {
        return knownRequest->End(UsbError::NotEnoughMemory);
    }
}

std::uint32_t TLibusbServices::Control(UsbDevice* device, std::uint32_t code, const void* input,
                                       std::uint32_t inputSize, void* output,
                                       std::uint32_t outputSize, UsbRequest* request) noexcept {
    TLibusbControl control;
    control.Code = code;
    control.Input = {static_cast<const std::uint8_t*>(input), input == nullptr ? 0 : inputSize};
    control.Output = {static_cast<std::uint8_t*>(output), output == nullptr ? 0 : outputSize};
    return Start(device, request, [&](TLibusbDevice& target, TLibusbRequest& block) {
        return target.Control(control, block);
    });
}

std::uint32_t TLibusbServices::Read(UsbDevice* device, void* buffer, std::uint32_t byteCount,
                                    UsbRequest* request) noexcept {
    return Start(device, request, [&](TLibusbDevice& target, TLibusbRequest& block) {
        return target.Read(buffer, byteCount, block);
    });
}

std::uint32_t TLibusbServices::Write(UsbDevice* device, const void* buffer, std::uint32_t byteCount,
                                     UsbRequest* request) noexcept {
    return Start(device, request, [&](TLibusbDevice& target, TLibusbRequest& block) {
        return target.Write(buffer, byteCount, block);
    });
}

std::uint32_t TLibusbServices::WaitForRequest(UsbRequest* request,
                                              std::uint32_t timeoutMs) noexcept {
    TLibusbRequest* known = Find(Requests, request);
    return known == nullptr ? UsbError::InvalidHandle : known->Wait(timeoutMs);
}

std::uint32_t TLibusbServices::GetResult(UsbDevice* device, UsbRequest* request,
                                         std::uint32_t& byteCount, bool wait) noexcept {
    byteCount = 0;
    TLibusbRequest* known = Find(Requests, request);
    if (known == nullptr || Find(Devices, device) == nullptr) {
        return UsbError::InvalidHandle;
    }
    if (wait) {
        known->Wait(TLibusbRequest::NoLimit);
    }
    return known->GetResult(byteCount);
}

void TLibusbServices::CancelIo(UsbDevice* device) noexcept {
    const TLibusbDevice* known = Find(Devices, device);
    for (const auto& request : Requests) {
        if (known != nullptr && request->IsUnderWayOn(known->GetHandle())) {
            request->Cancel();
        }
    }
}

} // namespace vorel
