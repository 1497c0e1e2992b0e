#include "transport/UsbIoPipe.h"

#include <algorithm>

namespace vorel {

std::uint32_t TUsbIoPipe::Bind(std::int32_t deviceNumber, std::uint8_t endpointAddress,
                               UsbList* deviceList, const Guid* interfaceGuid) noexcept {
    const std::uint32_t status = Open(deviceNumber, deviceList, interfaceGuid);
    if (status != StatusSuccess) {
        return status;
    }
    return IoctlSync(UsbControl::BindPipe, &endpointAddress, 1, nullptr, 0, nullptr);
}

std::uint32_t TUsbIoPipe::Unbind() noexcept {
    return IoctlSync(UsbControl::UnbindPipe, nullptr, 0, nullptr, 0, nullptr);
}

bool TUsbIoPipe::Read(TUsbIoBuf& buf) noexcept {
    if (!IsOpen() || buf.Overlapped == nullptr) {
        return Started(buf, IsOpen() ? UsbError::NotEnoughMemory : UsbError::InvalidHandle);
    }
    const std::uint32_t size = std::min(buf.NumberOfBytesToTransfer, buf.Size);
    return Started(buf, Services.Read(FileHandle, buf.Buffer, size, buf.Overlapped));
}

bool TUsbIoPipe::Write(TUsbIoBuf& buf) noexcept {
    if (!IsOpen() || buf.Overlapped == nullptr) {
        return Started(buf, IsOpen() ? UsbError::NotEnoughMemory : UsbError::InvalidHandle);
    }
    const std::uint32_t size = std::min(buf.NumberOfBytesToTransfer, buf.Size);
    return Started(buf, Services.Write(FileHandle, buf.Buffer, size, buf.Overlapped));
}

bool TUsbIoPipe::Started(TUsbIoBuf& buf, std::uint32_t error) noexcept {
    buf.Status = error;
    if (error == UsbError::None) {
        buf.Status = Services.GetResult(FileHandle, buf.Overlapped, buf.BytesTransferred, false);
    }
    return buf.Status == UsbError::None || buf.Status == UsbError::Pending;
}

std::uint32_t TUsbIoPipe::WaitForCompletion(TUsbIoBuf& buf, std::uint32_t timeoutMs) noexcept {
    if (buf.Status == StatusSuccess || buf.Overlapped == nullptr || !IsOpen()) {
        return buf.Status;
    }
    if (buf.Status == UsbError::Pending &&
        Services.WaitForRequest(buf.Overlapped, timeoutMs) == UsbError::WaitTimeout) {
        return StatusTimeout;
    }
    buf.Status = Services.GetResult(FileHandle, buf.Overlapped, buf.BytesTransferred, false);
    return buf.Status;
}

std::uint32_t TUsbIoPipe::ReadSync(void* buffer, std::uint32_t& byteCount,
                                   std::uint32_t timeoutMs) noexcept {
    TUsbIoBuf buf(Services, buffer, byteCount);
    buf.NumberOfBytesToTransfer = byteCount;
    Read(buf);
    return Finish(buf, byteCount, timeoutMs);
}

std::uint32_t TUsbIoPipe::WriteSync(const void* buffer, std::uint32_t& byteCount,
                                    std::uint32_t timeoutMs) noexcept {
    // A write does not change the buffer; the request block serves both directions.
    TUsbIoBuf buf(Services, const_cast<void*>(buffer), byteCount);
    buf.NumberOfBytesToTransfer = byteCount;
    Write(buf);
    return Finish(buf, byteCount, timeoutMs);
}

std::uint32_t TUsbIoPipe::Finish(TUsbIoBuf& buf, std::uint32_t& byteCount,
                                 std::uint32_t timeoutMs) noexcept {
    std::uint32_t status = WaitForCompletion(buf, timeoutMs);
    if (status == StatusTimeout) {
        CancelIo();
        status = WaitForCompletion(buf, NoLimit);
    }
    byteCount = buf.BytesTransferred;
    return status;
}

} // namespace vorel
