// What the library needs of the machine's USB: the calls by which a user program reaches devices of
// one device interface class, issues control requests by code and moves bulk data asynchronously.
//
// The shape is that of a kernel driver with overlapped I/O; errors are that platform's error
// numbers. Implementations: libusb for real pods, and the simulator's. A host may hand its own to
// the library (Host.h); it must then outlive the library. All calls come from one thread. No
// operation blocks except GetResult with `wait` and WaitForRequest.
#pragma once

#include "vorel/Interface.h"

namespace vorel {

// Error numbers of IUsbServices operations. 0 is success; other numbers may occur and are passed
// on.
namespace UsbError {
inline constexpr std::uint32_t None = 0;
inline constexpr std::uint32_t FileNotFound = 2;
inline constexpr std::uint32_t AccessDenied = 5;
inline constexpr std::uint32_t InvalidHandle = 6;
inline constexpr std::uint32_t NotEnoughMemory = 8;
inline constexpr std::uint32_t DeviceFailed =
    31; // a stall or a protocol error: the device does not function
inline constexpr std::uint32_t InvalidParameter = 87;
inline constexpr std::uint32_t TimedOut = 121;
inline constexpr std::uint32_t InsufficientBuffer = 122;
inline constexpr std::uint32_t WaitTimeout =
    258; // WaitForRequest only: the request is still under way
inline constexpr std::uint32_t NoMoreItems = 259; // past the last interface of a list
inline constexpr std::uint32_t Aborted = 995;     // the request was cancelled
inline constexpr std::uint32_t Pending = 997;     // the request was started and is under way
inline constexpr std::uint32_t DeviceRemoved = 1167;
} // namespace UsbError

// Device interface class of the pods' kernel driver: {0BAAF132-AF71-4C9B-8797-B6DC702CFEFE}.
inline constexpr Guid UsbIoInterfaceClass{
    0x0BAAF132, 0xAF71, 0x4C9B, {0x87, 0x97, 0xB6, 0xDC, 0x70, 0x2C, 0xFE, 0xFE}};

// Control codes of the driver. Integers in the records are little-endian.
namespace UsbControl {
// In: recipient 32 bits, type 8, index 8, language 16. Out: the descriptor, up to the caller's
// size.
inline constexpr std::uint32_t GetDescriptor = 0x80942006;
// In, 260 bytes: configuration index 16, interface count 16, then per interface: index 16,
// alternate setting 16, largest transfer 32; the rest zero.
inline constexpr std::uint32_t SetConfiguration = 0x80942024;
// Out, 12 bytes: interface version 16 bits at 0, a flags word 32 bits at 8.
inline constexpr std::uint32_t GetDriverInfo = 0x8094206C;
// In: the endpoint address, 8 bits. Reads and writes of the handle go to this endpoint from now on.
inline constexpr std::uint32_t BindPipe = 0x80942078;
inline constexpr std::uint32_t UnbindPipe = 0x8094207C;
} // namespace UsbControl

// The interface version that GetDriverInfo has to report.
inline constexpr std::uint16_t UsbDriverVersion = 0x0230;

// Handles are opaque; null means none. Lists, devices and requests live until they are given back.
struct UsbList;
struct UsbDevice;
struct UsbRequest;

class IUsbServices {
public:
    // The interfaces of this class that are present now, as a fixed list; null when that fails.
    virtual UsbList* CreateInterfaceList(const Guid& interfaceClass) noexcept = 0;
    virtual void DestroyInterfaceList(UsbList* list) noexcept = 0;

    // 0 when the list has an interface `index` (from 0), NoMoreItems past its end.
    virtual std::uint32_t EnumInterface(UsbList* list, const Guid& interfaceClass,
                                        std::uint32_t index) noexcept = 0;

    // The interface detail record: a 32-bit size field that the caller has set to 5, then the
    // device path with its zero. `needed` gives the whole record's size. A null record is the size
    // query: it gives InsufficientBuffer.
    virtual std::uint32_t GetInterfaceDetail(UsbList* list, const Guid& interfaceClass,
                                             std::uint32_t index, void* record,
                                             std::uint32_t capacity,
                                             std::uint32_t& needed) noexcept = 0;

    // Opens a path that GetInterfaceDetail gave, or "\\.\USBIO_Device<n>" for device n without a
    // list.
    virtual std::uint32_t OpenDevice(const char* path, UsbDevice*& device) noexcept = 0;
    // Ends requests that are under way. Their UsbRequest objects stay the caller's.
    virtual void CloseDevice(UsbDevice* device) noexcept = 0;

    // An asynchronous request block with its auto-reset event, not signalled; null when there is no
    // memory. One request is under way on it at a time.
    virtual UsbRequest* CreateRequest() noexcept = 0;
    virtual void DestroyRequest(UsbRequest* request) noexcept = 0;

    // Each starts a request: 0 when it is done already, Pending when it is under way, else the
    // error. The buffers must stay until the request has ended. A control request's byte count
    // comes with GetResult.
    virtual std::uint32_t Control(UsbDevice* device, std::uint32_t code, const void* input,
                                  std::uint32_t inputSize, void* output, std::uint32_t outputSize,
                                  UsbRequest* request) noexcept = 0;
    virtual std::uint32_t Read(UsbDevice* device, void* buffer, std::uint32_t byteCount,
                               UsbRequest* request) noexcept = 0;
    virtual std::uint32_t Write(UsbDevice* device, const void* buffer, std::uint32_t byteCount,
                                UsbRequest* request) noexcept = 0;

    // Waits until the request has ended: 0, or WaitTimeout when `timeoutMs` went by first.
    virtual std::uint32_t WaitForRequest(UsbRequest* request, std::uint32_t timeoutMs) noexcept = 0;
    // How the request ended, and its bytes. Still under way: Pending, or with `wait` the call
    // returns when it ends.
    virtual std::uint32_t GetResult(UsbDevice* device, UsbRequest* request,
                                    std::uint32_t& byteCount, bool wait) noexcept = 0;
    // Cancels all requests under way on the device; each ends with Aborted or, if it was faster, as
    // it would have.
    virtual void CancelIo(UsbDevice* device) noexcept = 0;

protected:
    IUsbServices() = default;
    IUsbServices(const IUsbServices&) = default;
    IUsbServices& operator=(const IUsbServices&) = default;
    ~IUsbServices() = default;
};

} // namespace vorel
