// USB services over virtual pods: every request is carried out within the call.
//
// A read for which the pod has no answer, and a transfer that a fault holds back, stay under way:
// waiting for them reports WaitTimeout at once, without waiting, and CancelIo ends them with
// Aborted. A later write whose answers fit a waiting read ends that read. Where a wait without
// limit would never end, GetResult ends the request with TimedOut.
//
// A handle has to be configured before an endpoint can be bound, and binds one endpoint at a time:
// 0x02 for writes, 0x86 for reads. A transfer on a handle that is bound to no or the other endpoint
// gives InvalidParameter. Unknown handles give InvalidHandle.
#pragma once

#include "simulator/SimPod.h"
#include "vorel/UsbServices.h"

#include <cstddef>
#include <memory>
#include <string>
#include <vector>

namespace vorel::sim {

class TSimUsbServices final : public IUsbServices {
public:
    TSimUsbServices();
    TSimUsbServices(const TSimUsbServices&) = delete;
    TSimUsbServices& operator=(const TSimUsbServices&) = delete;
    virtual ~TSimUsbServices();

    // Puts a device behind those that are there; it is owned from now on.
    TSimPod& Add(std::unique_ptr<TSimPod> pod);
    std::size_t PodCount() const noexcept { return Pods.size(); }
    // EVorelError outside the list.
    TSimPod& Pod(std::size_t index) const;
    // Handles of all kinds that the caller has not given back.
    std::size_t OpenHandleCount() const noexcept;
    // Why the latest transfer that a pod could not carry out failed (a lost connection to remote
    // hardware); empty while none has.
    const std::string& LastError() const noexcept { return ErrorText; }

    UsbList* CreateInterfaceList(const Guid& interfaceClass) noexcept override;
    void DestroyInterfaceList(UsbList* list) noexcept override;
    std::uint32_t EnumInterface(UsbList* list, const Guid& interfaceClass,
                                std::uint32_t index) noexcept override;
    std::uint32_t GetInterfaceDetail(UsbList* list, const Guid& interfaceClass, std::uint32_t index,
                                     void* record, std::uint32_t capacity,
                                     std::uint32_t& needed) noexcept override;
    std::uint32_t OpenDevice(const char* path, UsbDevice*& device) noexcept override;
    void CloseDevice(UsbDevice* device) noexcept override;
    UsbRequest* CreateRequest() noexcept override;
    void DestroyRequest(UsbRequest* request) noexcept override;
    std::uint32_t Control(UsbDevice* device, std::uint32_t code, const void* input,
                          std::uint32_t inputSize, void* output, std::uint32_t outputSize,
                          UsbRequest* request) noexcept override;
    std::uint32_t Read(UsbDevice* device, void* buffer, std::uint32_t byteCount,
                       UsbRequest* request) noexcept override;
    std::uint32_t Write(UsbDevice* device, const void* buffer, std::uint32_t byteCount,
                        UsbRequest* request) noexcept override;
    std::uint32_t WaitForRequest(UsbRequest* request, std::uint32_t timeoutMs) noexcept override;
    std::uint32_t GetResult(UsbDevice* device, UsbRequest* request, std::uint32_t& byteCount,
                            bool wait) noexcept override;
    void CancelIo(UsbDevice* device) noexcept override;

private:
    struct TList;
    struct THandle;
    struct TRequest;

    std::uint32_t Start(UsbDevice* device, UsbRequest* request, THandle*& handle,
                        TRequest*& block) const noexcept;
    std::uint32_t DoControl(THandle& handle, std::uint32_t code, const std::uint8_t* input,
                            std::uint32_t inputSize, std::uint8_t* output, std::uint32_t outputSize,
                            std::uint32_t& byteCount) const;
    std::uint32_t DoRead(THandle& handle, TRequest& request);
    std::uint32_t DoWrite(THandle& handle, TRequest& request, const std::uint8_t* data,
                          std::uint32_t count);
    void ServeWaitingReads(const TSimPod& pod) noexcept;
    void EndRequests(const THandle& handle, std::uint32_t error) noexcept;

    std::vector<std::unique_ptr<TSimPod>> Pods;
    std::vector<std::unique_ptr<TList>> Lists;
    std::vector<std::unique_ptr<THandle>> Handles;
    std::vector<std::unique_ptr<TRequest>> Requests;
    std::string ErrorText;
};

} // namespace vorel::sim
