#include "simulator/SimUsbServices.h"

#include "support/Errors.h"
#include "support/Text.h"

#include <algorithm>
#include <cstring>
#include <new>
#include <utility>

namespace vorel::sim {

namespace {

constexpr std::uint8_t OutEndpoint = 0x02;
constexpr std::uint8_t InEndpoint = 0x86;
constexpr std::uint32_t DetailHeader = 4;    // the record's size field
constexpr std::uint32_t DetailSizeField = 5; // what the caller has to have set it to
constexpr std::uint32_t SetConfigurationSize = 260;
constexpr std::uint32_t DriverInfoSize = 12;
constexpr std::uint32_t DescriptorRequestSize = 8;
constexpr std::string_view ListPath = R"(\\.\VirtualPod)";
constexpr std::string_view NumberPath = R"(\\.\USBIO_Device)";

// The services hand out pointers to their own records as opaque handles.
template<class Record, class Opaque>
Record* Resolve(const std::vector<std::unique_ptr<Record>>& records, Opaque* handle) noexcept {
    for (const auto& record : records) {
        if (static_cast<void*>(record.get()) == static_cast<void*>(handle)) {
            return record.get();
        }
    }
    return nullptr;
}

template<class Opaque, class Record>
Opaque* HandOut(std::vector<std::unique_ptr<Record>>& records, std::unique_ptr<Record> record) {
    records.push_back(std::move(record));
    return reinterpret_cast<Opaque*>(records.back().get());
}

template<class Record>
void Drop(std::vector<std::unique_ptr<Record>>& records, const Record* record) noexcept {
    std::erase_if(records, [record](const auto& item) { return item.get() == record; });
}

// Carries out a fault that takes the pod away; false for any other.
bool PullsOut(const UsbFault& fault, TSimPod& pod) {
    const bool comesBack = fault.What == UsbFault::Effect::Replug;
    if (!comesBack && fault.What != UsbFault::Effect::Unplug) {
        return false;
    }
    pod.Unplug();
    if (comesBack) {
        pod.Plug();
    }
    return true;
}

// The number behind `prefix`, or nothing.
std::optional<std::size_t> NumberBehind(std::string_view path, std::string_view prefix) noexcept {
    if (!path.starts_with(prefix)) {
        return std::nullopt;
    }
    const auto number = ParseDecimal(path.substr(prefix.size()));
    return number && *number >= 0 ? std::optional<std::size_t>(*number) : std::nullopt;
}

} // namespace

struct TSimUsbServices::TList {
    Guid InterfaceClass;
    std::vector<std::size_t> PodNumbers;
};

struct TSimUsbServices::THandle {
    TSimPod* Pod = nullptr;
    std::uint32_t Generation = 0;
    bool Configured = false;
    std::uint8_t Endpoint = 0; // 0: not bound

    bool IsAlive() const noexcept { return Pod->IsPlugged() && Pod->Generation() == Generation; }
};

struct TSimUsbServices::TRequest {
    enum class Phase : std::uint8_t { Idle, UnderWay, Ended };

    Phase State = Phase::Idle;
    std::uint32_t Error = UsbError::None;
    std::uint32_t ByteCount = 0;
    // While under way: whose it is, and where a read that waits for answers puts them.
    const THandle* Owner = nullptr;
    std::uint8_t* ReadBuffer = nullptr;
    std::uint32_t ReadCapacity = 0;

    void Begin(const THandle& owner) noexcept {
        *this = TRequest{};
        State = Phase::UnderWay;
        Owner = &owner;
    }
    std::uint32_t End(std::uint32_t error) noexcept {
        State = Phase::Ended;
        Error = error;
        Owner = nullptr;
        ReadBuffer = nullptr;
        return error;
    }
    void EndIfGone() noexcept {
        if (State == Phase::UnderWay && !Owner->IsAlive()) {
            End(UsbError::DeviceRemoved);
        }
    }
};

TSimUsbServices::TSimUsbServices() = default;
TSimUsbServices::~TSimUsbServices() = default;

TSimPod& TSimUsbServices::Add(std::unique_ptr<TSimPod> pod) {
    Pods.push_back(std::move(pod));
    return *Pods.back();
}

TSimPod& TSimUsbServices::Pod(std::size_t index) const {
    if (index >= Pods.size()) {
        throw EVorelError(StatusIndexOutOfRange, "There is no pod " + std::to_string(index));
    }
    return *Pods[index];
}

std::size_t TSimUsbServices::OpenHandleCount() const noexcept {
    return Lists.size() + Handles.size() + Requests.size();
}

UsbList* TSimUsbServices::CreateInterfaceList(const Guid& interfaceClass) noexcept {
    try {
        auto list = std::make_unique<TList>();
        list->InterfaceClass = interfaceClass;
        for (std::size_t i = 0; i < Pods.size(); ++i) {
            if (Pods[i]->IsPlugged() && interfaceClass == UsbIoInterfaceClass) {
                list->PodNumbers.push_back(i);
            }
        }
        return HandOut<UsbList>(Lists, std::move(list));
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void TSimUsbServices::DestroyInterfaceList(UsbList* list) noexcept {
    Drop(Lists, Resolve(Lists, list));
}

std::uint32_t TSimUsbServices::EnumInterface(UsbList* list, const Guid& interfaceClass,
                                             std::uint32_t index) noexcept {
    const TList* const known = Resolve(Lists, list);
    if (known == nullptr) {
        return UsbError::InvalidHandle;
    }
    const bool found = interfaceClass == known->InterfaceClass && index < known->PodNumbers.size();
    return found ? UsbError::None : UsbError::NoMoreItems;
}

std::uint32_t TSimUsbServices::GetInterfaceDetail(UsbList* list, const Guid& interfaceClass,
                                                  std::uint32_t index, void* record,
                                                  std::uint32_t capacity,
                                                  std::uint32_t& needed) noexcept {
    needed = 0;
    if (const std::uint32_t error = EnumInterface(list, interfaceClass, index)) {
        return error;
    }
    try {
        const std::size_t number = Resolve(Lists, list)->PodNumbers[index];
        const std::string path = std::string(ListPath) + std::to_string(number);
        needed = DetailHeader + static_cast<std::uint32_t>(path.size()) + 1;
        if (record == nullptr || capacity < needed) {
            return UsbError::InsufficientBuffer;
        }
        std::uint32_t sizeField = 0;
        std::memcpy(&sizeField, record, sizeof sizeField);
        if (sizeField != DetailSizeField) {
            return UsbError::InvalidParameter;
        }
        std::memcpy(static_cast<char*>(record) + DetailHeader, path.c_str(), path.size() + 1);
        return UsbError::None;
    } catch (const std::bad_alloc&) {
        return UsbError::NotEnoughMemory;
    }
}

std::uint32_t TSimUsbServices::OpenDevice(const char* path, UsbDevice*& device) noexcept {
    device = nullptr;
    if (path == nullptr) {
        return UsbError::InvalidParameter;
    }
    auto number = NumberBehind(path, ListPath);
    if (!number) {
        number = NumberBehind(path, NumberPath);
    }
    if (!number || *number >= Pods.size() || !Pods[*number]->IsPlugged()) {
        return UsbError::FileNotFound;
    }
    try {
        auto handle = std::make_unique<THandle>();
        handle->Pod = Pods[*number].get();
        handle->Generation = handle->Pod->Generation();
        device = HandOut<UsbDevice>(Handles, std::move(handle));
        ++Pods[*number]->Counters().Opens;
        return UsbError::None;
    } catch (const std::bad_alloc&) {
        return UsbError::NotEnoughMemory;
    }
}

void TSimUsbServices::CloseDevice(UsbDevice* device) noexcept {
    if (const THandle* const handle = Resolve(Handles, device)) {
        EndRequests(*handle, UsbError::Aborted);
        Drop(Handles, handle);
    }
}

UsbRequest* TSimUsbServices::CreateRequest() noexcept {
    try {
        return HandOut<UsbRequest>(Requests, std::make_unique<TRequest>());
    } catch (const std::bad_alloc&) {
        return nullptr;
    }
}

void TSimUsbServices::DestroyRequest(UsbRequest* request) noexcept {
    Drop(Requests, Resolve(Requests, request));
}

// Finds both records and marks the request as under way.
std::uint32_t TSimUsbServices::Start(UsbDevice* device, UsbRequest* request, THandle*& handle,
                                     TRequest*& block) const noexcept {
    handle = Resolve(Handles, device);
    block = Resolve(Requests, request);
    if (handle == nullptr || block == nullptr || block->State == TRequest::Phase::UnderWay) {
        return UsbError::InvalidHandle;
    }
    block->Begin(*handle);
    return handle->IsAlive() ? UsbError::None : block->End(UsbError::DeviceRemoved);
}

std::uint32_t TSimUsbServices::Control(UsbDevice* device, std::uint32_t code, const void* input,
                                       std::uint32_t inputSize, void* output,
                                       std::uint32_t outputSize, UsbRequest* request) noexcept {
    THandle* handle = nullptr;
    TRequest* block = nullptr;
    if (const std::uint32_t error = Start(device, request, handle, block)) {
        return error;
    }
    TSimPod& pod = *handle->Pod;
    const UsbFault* const fault =
        pod.Faults().Find(UsbTransfer::Control, ++pod.Counters().Controls);
    if (fault != nullptr && PullsOut(*fault, pod)) {
        return block->End(UsbError::DeviceRemoved);
    }
    if (fault != nullptr && fault->What == UsbFault::Effect::TimeOut) {
        return UsbError::Pending;
    }
    if (fault != nullptr && fault->What == UsbFault::Effect::Fail) {
        return block->End(fault->Value != 0 ? fault->Value : UsbError::DeviceFailed);
    }
    if (fault != nullptr) {
        outputSize = std::min(outputSize, fault->Value);
    }
    try {
        return block->End(DoControl(*handle, code, static_cast<const std::uint8_t*>(input),
                                    input != nullptr ? inputSize : 0,
                                    static_cast<std::uint8_t*>(output),
                                    output != nullptr ? outputSize : 0, block->ByteCount));
    } catch (const std::bad_alloc&) {
        return block->End(UsbError::NotEnoughMemory);
    }
}

std::uint32_t TSimUsbServices::DoControl(THandle& handle, std::uint32_t code,
                                         const std::uint8_t* input, std::uint32_t inputSize,
                                         std::uint8_t* output, std::uint32_t outputSize,
                                         std::uint32_t& byteCount) const {
    std::vector<std::uint8_t> answer;
    switch (code) {
    case UsbControl::GetDescriptor:
        if (inputSize < DescriptorRequestSize) {
            return UsbError::InvalidParameter;
        }
        answer = handle.Pod->Descriptor(input[4], input[5]);
        if (answer.empty()) {
            return UsbError::DeviceFailed;
        }
        break;
    case UsbControl::SetConfiguration: {
        // Configuration 0 with its one interface 0, alternate setting 0.
        static constexpr std::array<std::uint8_t, 8> Expected{0, 0, 1, 0, 0, 0, 0, 0};
        if (inputSize < SetConfigurationSize ||
            !std::equal(Expected.begin(), Expected.end(), input)) {
            return UsbError::InvalidParameter;
        }
        handle.Configured = true;
        break;
    }
    case UsbControl::GetDriverInfo:
        answer.resize(DriverInfoSize);
        answer[0] = static_cast<std::uint8_t>(UsbDriverVersion & 0xFF);
        answer[1] = static_cast<std::uint8_t>(UsbDriverVersion >> 8);
        break;
    case UsbControl::BindPipe:
        if (inputSize < 1 || !handle.Configured || handle.Endpoint != 0 ||
            handle.Pod->Firmware() == nullptr ||
            (input[0] != OutEndpoint && input[0] != InEndpoint)) {
            return UsbError::InvalidParameter;
        }
        handle.Endpoint = input[0];
        break;
    case UsbControl::UnbindPipe:
        if (std::exchange(handle.Endpoint, std::uint8_t{0}) == 0) {
            return UsbError::InvalidParameter;
        }
        break;
    default:
        return UsbError::InvalidParameter;
    }
    byteCount = std::min(outputSize, static_cast<std::uint32_t>(answer.size()));
    std::copy_n(answer.begin(), byteCount, output);
    return UsbError::None;
}

std::uint32_t TSimUsbServices::Read(UsbDevice* device, void* buffer, std::uint32_t byteCount,
                                    UsbRequest* request) noexcept {
    THandle* handle = nullptr;
    TRequest* block = nullptr;
    if (const std::uint32_t error = Start(device, request, handle, block)) {
        return error;
    }
    if (handle->Endpoint != InEndpoint || buffer == nullptr) {
        return block->End(UsbError::InvalidParameter);
    }
    block->ReadBuffer = static_cast<std::uint8_t*>(buffer);
    block->ReadCapacity = byteCount;
    return DoRead(*handle, *block);
}

std::uint32_t TSimUsbServices::DoRead(THandle& handle, TRequest& request) {
    TSimPod& pod = *handle.Pod;
    TPodFirmware& firmware = *pod.Firmware();
    const UsbFault* const fault = pod.Faults().Find(UsbTransfer::Read, ++pod.Counters().Reads);
    bool drop = false;
    if (fault != nullptr && PullsOut(*fault, pod)) {
        return request.End(UsbError::DeviceRemoved);
    }
    if (fault != nullptr) {
        switch (fault->What) {
        case UsbFault::Effect::Fail:
            return request.End(fault->Value != 0 ? fault->Value : UsbError::DeviceFailed);
        case UsbFault::Effect::TimeOut:
            request.ReadBuffer = nullptr; // nothing that comes later ends it
            return UsbError::Pending;
        case UsbFault::Effect::Drop:
            drop = true;
            [[fallthrough]];
        case UsbFault::Effect::Short:
            request.ReadCapacity = std::min(request.ReadCapacity, fault->Value);
            break;
        default:
            break;
        }
    }
    if (firmware.AnswerBytes() == 0) {
        return UsbError::Pending;
    }
    const std::size_t count = firmware.Read(request.ReadBuffer, request.ReadCapacity);
    request.ByteCount = static_cast<std::uint32_t>(count);
    pod.Counters().BytesRead += count;
    if (drop) {
        firmware.DropAnswers();
    }
    return request.End(UsbError::None);
}

std::uint32_t TSimUsbServices::Write(UsbDevice* device, const void* buffer, std::uint32_t byteCount,
                                     UsbRequest* request) noexcept {
    THandle* handle = nullptr;
    TRequest* block = nullptr;
    if (const std::uint32_t error = Start(device, request, handle, block)) {
        return error;
    }
    if (handle->Endpoint != OutEndpoint || buffer == nullptr) {
        return block->End(UsbError::InvalidParameter);
    }
    try {
        return DoWrite(*handle, *block, static_cast<const std::uint8_t*>(buffer), byteCount);
    } catch (const std::bad_alloc&) {
        return block->End(UsbError::NotEnoughMemory);
    } catch (...) {
        return block->End(UsbError::DeviceFailed);
    }
}

std::uint32_t TSimUsbServices::DoWrite(THandle& handle, TRequest& request, const std::uint8_t* data,
                                       std::uint32_t count) {
    TSimPod& pod = *handle.Pod;
    const UsbFault* const fault = pod.Faults().Find(UsbTransfer::Write, ++pod.Counters().Writes);
    if (fault != nullptr && PullsOut(*fault, pod)) {
        return request.End(UsbError::DeviceRemoved);
    }
    if (fault != nullptr) {
        switch (fault->What) {
        case UsbFault::Effect::Fail:
            return request.End(fault->Value != 0 ? fault->Value : UsbError::DeviceFailed);
        case UsbFault::Effect::TimeOut:
            return UsbError::Pending;
        case UsbFault::Effect::Drop:
        case UsbFault::Effect::Short:
            count = std::min(count, fault->Value);
            break;
        default:
            break;
        }
    }
    if (!pod.Firmware()->Write(data, count)) {
        ErrorText = pod.Firmware()->ErrorText();
        return request.End(UsbError::DeviceFailed);
    }
    request.ByteCount = count;
    pod.Counters().BytesWritten += count;
    request.End(UsbError::None);
    ServeWaitingReads(pod);
    return UsbError::None;
}

void TSimUsbServices::ServeWaitingReads(const TSimPod& pod) noexcept {
    for (const auto& request : Requests) {
        if (request->State != TRequest::Phase::UnderWay || request->ReadBuffer == nullptr ||
            request->Owner->Pod != &pod || pod.Firmware()->AnswerBytes() == 0) {
            continue;
        }
        const std::size_t count = pod.Firmware()->Read(request->ReadBuffer, request->ReadCapacity);
        request->ByteCount = static_cast<std::uint32_t>(count);
        request->Owner->Pod->Counters().BytesRead += count;
        request->End(UsbError::None);
    }
}

std::uint32_t TSimUsbServices::WaitForRequest(UsbRequest* request, std::uint32_t) noexcept {
    TRequest* const block = Resolve(Requests, request);
    if (block == nullptr) {
        return UsbError::InvalidHandle;
    }
    block->EndIfGone();
    return block->State == TRequest::Phase::Ended ? UsbError::None : UsbError::WaitTimeout;
}

std::uint32_t TSimUsbServices::GetResult(UsbDevice* device, UsbRequest* request,
                                         std::uint32_t& byteCount, bool wait) noexcept {
    byteCount = 0;
    TRequest* const block = Resolve(Requests, request);
    if (block == nullptr || Resolve(Handles, device) == nullptr) {
        return UsbError::InvalidHandle;
    }
    if (block->State == TRequest::Phase::Idle) {
        return UsbError::InvalidParameter;
    }
    block->EndIfGone();
    if (block->State == TRequest::Phase::UnderWay) {
        return wait ? block->End(UsbError::TimedOut) : UsbError::Pending;
    }
    byteCount = block->ByteCount;
    return block->Error;
}

void TSimUsbServices::CancelIo(UsbDevice* device) noexcept {
    if (const THandle* const handle = Resolve(Handles, device)) {
        EndRequests(*handle, UsbError::Aborted);
    }
}

void TSimUsbServices::EndRequests(const THandle& handle, std::uint32_t error) noexcept {
    for (const auto& request : Requests) {
        if (request->State == TRequest::Phase::UnderWay && request->Owner == &handle) {
            request->End(error);
        }
    }
}

} // namespace vorel::sim
