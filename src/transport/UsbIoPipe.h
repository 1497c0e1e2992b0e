// A USB device bound to one endpoint, with bulk reads and writes.
#pragma once

#include "transport/UsbIo.h"
#include "transport/UsbIoBuf.h"

namespace vorel {

class TUsbIoPipe : public TUsbIo {
public:
    // A time-out that never runs out, in milliseconds.
    static constexpr std::uint32_t NoLimit = 0xFFFFFFFFU;

    using TUsbIo::TUsbIo;

    // Opens the device if need be, then sends reads and writes to this endpoint from now on.
    std::uint32_t Bind(std::int32_t deviceNumber, std::uint8_t endpointAddress, UsbList* deviceList,
                       const Guid* interfaceGuid) noexcept;
    // Undoes the binding; the device stays open.
    std::uint32_t Unbind() noexcept;

    // Each starts a transfer of buf.NumberOfBytesToTransfer bytes (at most buf.Size): true when it
    // has finished or is under way. buf.Status says which, or why not.
    bool Read(TUsbIoBuf& buf) noexcept;
    bool Write(TUsbIoBuf& buf) noexcept;

    // Waits for the transfer of `buf` and gives how it ended. StatusTimeout leaves it under way.
    std::uint32_t WaitForCompletion(TUsbIoBuf& buf, std::uint32_t timeoutMs) noexcept;

    // A whole transfer. `byteCount` gives the bytes moved. A transfer that runs out of time is
    // cancelled and waited for without limit; the status is then that of the cancelled transfer.
    std::uint32_t ReadSync(void* buffer, std::uint32_t& byteCount,
                           std::uint32_t timeoutMs) noexcept;
    std::uint32_t WriteSync(const void* buffer, std::uint32_t& byteCount,
                            std::uint32_t timeoutMs) noexcept;

private:
    bool Started(TUsbIoBuf& buf, std::uint32_t error) noexcept;
    std::uint32_t Finish(TUsbIoBuf& buf, std::uint32_t& byteCount,
                         std::uint32_t timeoutMs) noexcept;
};

} // namespace vorel
