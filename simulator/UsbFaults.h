// Faults that tests and scenes put on the USB transfers of a pod.
#pragma once

#include <cstdint>
#include <vector>

namespace vorel::sim {

enum class UsbTransfer : std::uint8_t { Read, Write, Control };

struct UsbFault {
    enum class Effect : std::uint8_t {
        Fail,    // ends at once with the error Value, 0 meaning UsbError::DeviceFailed
        TimeOut, // stays under way until it is cancelled; a write is not taken by the pod
        Short,   // moves at most Value bytes; the rest of an answer comes with the next read
        Drop,    // a read: gives at most Value bytes, the rest of the waiting answers is lost
        Unplug,  // the pod is pulled out: this transfer and all later ones fail
        Replug   // it is pulled out and put in again at once: this transfer fails, and so do all
                 // later ones on handles that are open
    };

    Effect What = Effect::Fail;
    UsbTransfer On = UsbTransfer::Write;
    // The first transfer of that kind which is hit, counted from 1 since the counters were reset.
    std::uint64_t First = 1;
    // That one and all that follow, instead of that one only.
    bool Onwards = false;
    std::uint32_t Value = 0;
};

// What was asked of a pod, faults included.
struct UsbCounters {
    std::uint64_t Opens = 0;
    std::uint64_t Controls = 0;
    std::uint64_t Reads = 0;
    std::uint64_t Writes = 0;
    std::uint64_t BytesRead = 0;
    std::uint64_t BytesWritten = 0;
};

class TUsbFaults final {
public:
    void Add(const UsbFault& fault) { Faults.push_back(fault); }
    void Clear() noexcept { Faults.clear(); }
    // The first fault that hits transfer `number` of this kind; null when none does.
    const UsbFault* Find(UsbTransfer kind, std::uint64_t number) const noexcept {
        for (const UsbFault& fault : Faults) {
            if (fault.On == kind &&
                (fault.Onwards ? number >= fault.First : number == fault.First)) {
                return &fault;
            }
        }
        return nullptr;
    }

private:
    std::vector<UsbFault> Faults;
};

} // namespace vorel::sim
