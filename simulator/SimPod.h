// A USB device as the simulated USB services list it: a pod with its firmware and what it is
// connected to, or a device of another maker.
#pragma once

#include "simulator/PodFirmware.h"
#include "simulator/Target.h"
#include "simulator/UsbFaults.h"

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

namespace vorel::sim {

// The texts are UTF-8; at most 126 UTF-16 units of each fit a string descriptor.
struct UsbIdentity {
    std::uint16_t Vendor = 0x1B8C;
    std::uint16_t Product = 0x0100;
    std::string ProductName = "Virtual pod";
    std::string SerialNumber = "1";
};

class TSimPod final {
public:
    // A pod in front of a virtual target. Pod mode 0: select 0 is the board's controller chain,
    // select 1 the board's multiplexer; on a bare target both are unconnected. Pod mode 1: select 0
    // is the hard chain, select 1 the soft chain.
    TSimPod(UsbIdentity identity, std::unique_ptr<TTarget> target);
    // A pod whose mode 1, select 0 is `lines` (hardware elsewhere) and nothing else is connected.
    TSimPod(UsbIdentity identity, std::unique_ptr<IJtagLines> lines);
    // A device that is no pod: it has descriptors and no endpoints.
    explicit TSimPod(UsbIdentity identity);
    TSimPod(const TSimPod&) = delete;
    TSimPod& operator=(const TSimPod&) = delete;
    ~TSimPod();

    const UsbIdentity& Identity() const noexcept { return Id; }
    // Null for a device that is no pod.
    TPodFirmware* Firmware() const noexcept { return Program.get(); }
    // Null when the pod's target is not virtual.
    TTarget* Target() const noexcept { return Hardware.get(); }

    TUsbFaults& Faults() noexcept { return FaultList; }
    UsbCounters& Counters() noexcept { return Counts; }

    // Pulls the pod out or puts it in. A pod that is put in again has lost its state; handles that
    // were open stay dead.
    void Unplug() noexcept;
    void Plug();
    bool IsPlugged() const noexcept { return Plugged; }
    // Number of times the pod was pulled out.
    std::uint32_t Generation() const noexcept { return Unplugged; }

    // A standard descriptor (USB 2.0, 9.6): type 1 device, 2 configuration, 3 string. Empty when
    // there is no such descriptor.
    std::vector<std::uint8_t> Descriptor(std::uint8_t type, std::uint8_t index) const;

private:
    IJtagLines* AddLines(IWireTarget& target);

    UsbIdentity Id;
    std::unique_ptr<TTarget> Hardware;
    std::vector<std::unique_ptr<IJtagLines>> OwnLines;
    std::unique_ptr<TPodFirmware> Program;
    TUsbFaults FaultList;
    UsbCounters Counts;
    bool Plugged = true;
    std::uint32_t Unplugged = 0;
};

} // namespace vorel::sim
