// One buffer with its own asynchronous request block, for one bulk transfer at a time.
#pragma once

#include "vorel/UsbServices.h"

namespace vorel {

// The data belong to the caller and have to stay until the transfer has ended, unless OwnsBuffer
// says that they were taken with std::malloc and go with this object.
class TUsbIoBuf {
public:
    TUsbIoBuf(IUsbServices& services, void* buffer, std::uint32_t size) noexcept;
    TUsbIoBuf(const TUsbIoBuf&) = delete;
    TUsbIoBuf& operator=(const TUsbIoBuf&) = delete;
    ~TUsbIoBuf();

    void* Buffer;
    std::uint32_t Size;                        // bytes at Buffer
    UsbRequest* Overlapped;                    // null when there was no memory for it
    bool OwnsBuffer = false;                   // free Buffer in the end
    std::uint32_t NumberOfBytesToTransfer = 0; // of the next read or write
    std::uint32_t BytesTransferred = 0;
    std::uint32_t Status = 0; // UsbStatus.h; UsbError::Pending while the transfer is under way

private:
    IUsbServices& Services;
};

} // namespace vorel
