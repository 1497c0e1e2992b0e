// Finds the USB JTAG pods and reaches all of them through one pipe.
#pragma once

#include "platform/ProcessorVendor.h"
#include "transport/UsbIoPipe.h"
#include "transport/UsbPort.h"

#include <memory>
#include <string>
#include <vector>

namespace vorel {

// What went over USB since the last reset: bulk transfers tried, and the bytes they moved.
struct TUsbTraffic {
    std::uint64_t Writes = 0;
    std::uint64_t Reads = 0;
    std::uint64_t BytesWritten = 0;
    std::uint64_t BytesRead = 0;
};

// Owns the ports it hands out; they live as long as the manager. Pods are opened by the first
// transfer that needs them; one is open at a time.
class TUsbJtagManager {
public:
    using TVendorReader = std::string (*)();
    // A scan looks at this many devices at most.
    static constexpr std::int32_t MaxDevices = 4096;

    // `services` must outlive the manager. `vendor` gives the processor's vendor string.
    explicit TUsbJtagManager(IUsbServices& services, TVendorReader vendor = &ProcessorVendor);
    TUsbJtagManager(const TUsbJtagManager&) = delete;
    TUsbJtagManager& operator=(const TUsbJtagManager&) = delete;
    ~TUsbJtagManager();

    // Looks for pods and gives their number. No pod is open afterwards. The number counts pods and
    // is no list of indices: a device of another kind before a pod shifts the pods' indices. A
    // device that cannot be opened ends the scan.
    std::int32_t CountPods() noexcept;
    // A manager that is not enabled finds none.
    void SetEnabled(bool enabled) noexcept { Enabled = enabled; }

    // The pod of this index, made when there is none yet, whether or not it is there.
    TUsbPort& GetPort(std::int32_t index);

    // Closes the open pod and gives the device list back.
    void Release() noexcept;

    // One bulk transfer of the pod's answers or commands; `byteCount` gives the bytes moved. A pod
    // that cannot be opened or bound gives StatusFailed from Write, but 0 with `byteCount`
    // untouched from Read.
    std::uint32_t Read(std::int32_t deviceIndex, void* buffer, std::uint32_t& byteCount) noexcept;
    std::uint32_t Write(std::int32_t deviceIndex, const void* buffer,
                        std::uint32_t& byteCount) noexcept;

    // The texts of the pod's device descriptor; empty when they cannot be read. Where the processor
    // calls itself "AuthenticAMD" they end before the first character that is not usual in them.
    WideText ProductName(std::int32_t deviceIndex);
    WideText SerialNumber(std::int32_t deviceIndex);

    // For every port, also those made later, and for the bytes that go over USB. Not owned, null
    // for nobody.
    void SetAnalyser(IJTagAnalyser* analyser) noexcept;

    const TUsbTraffic& GetTraffic() const noexcept { return Traffic; }
    void ResetTraffic() noexcept { Traffic = {}; }

private:
    using TPermitted = bool (*)(std::uint8_t);

    bool EnsureOpen(std::int32_t index) noexcept;
    bool BindEndpoint(std::int32_t deviceIndex, std::uint8_t endpoint) noexcept;
    bool IsPod() noexcept;
    WideText DescriptorText(std::int32_t deviceIndex, std::size_t indexOffset,
                            TPermitted permitted);

    TVendorReader Vendor;
    std::vector<std::unique_ptr<TUsbPort>> Ports;
    TUsbIoPipe Pipe;
    UsbList* DeviceList = nullptr; // of the last scan
    std::int32_t OpenIndex = -1;   // the pod that Pipe is open for, -1 none
    bool Enabled = true;
    TUsbTraffic Traffic;
    IJTagAnalyser* Analyser = nullptr;
};

} // namespace vorel
