// The soft device that the debugging commands work on.
#pragma once

#include "hosts/vorelctl/Session.h"
#include "vorel/Ports.h"
#include "vorel/VorelDevice.h"

#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace vorel::host {

// A soft device on its chain, found on the ports of a session and kept for the session's life. All
// operations raise: ECommandFailure for what the user asked wrongly, EVorelError when the target
// fails.
class TDebugTarget {
public:
    // `device` is a name (without case) or a place on the chain; without one, the first device with
    // registers or a memory. Soft chains are looked at before hard ones, which may carry such
    // devices behind a cable with a single chain. ECommandFailure when there is none.
    TDebugTarget(TSession& session, const std::string& device);
    ~TDebugTarget();
    TDebugTarget(const TDebugTarget&) = delete;
    TDebugTarget& operator=(const TDebugTarget&) = delete;

    IVorelDevice& Device() const noexcept { return *Chosen; }
    std::string Name() const;
    // "place 0 of the soft chain"
    std::string Place() const {
        return "place " + std::to_string(ChainIndex) + " of the " + ChainName;
    }
    // "Running", "Paused" or "Reset", with the reason of the stop where the driver tells one.
    std::string StatusText() const;
    bool IsRunning() const;
    bool IsProcessor() const;
    // A text that the driver gives under a number; the console's is 0, the reason of a stop 1.
    std::string DriverText(std::int32_t number) const;

    struct TRegister {
        std::string Name;
        std::string Alias; // the driver's second name for it
        IProcessorRegister* Handle;
    };
    std::vector<TRegister> Registers() const;

    // The main memory in bytes, whatever the width of its locations. Addresses and counts have to
    // be multiples of a location's bytes.
    std::vector<std::uint8_t> ReadBytes(std::int64_t address, std::size_t count) const;
    void WriteBytes(std::int64_t address, std::span<const std::uint8_t> bytes) const;
    // ECommandFailure when `count` bytes at `address` are outside the memory or not its locations.
    void CheckBlock(std::int64_t address, std::size_t count) const;
    // Bytes of a location: 1, 2 or 4.
    std::size_t LocationBytes() const;
    std::int64_t MemoryBytes() const;
    IMemorySpace& Memory() const;
    bool IsBigEndian() const;

    // A failure of the target as people need it: which device, what failed, and whether the port
    // still answers.
    std::string Explain(const std::string& failure) const;
    // Finds port and chain again after the port was away. ECommandFailure when it is not back, or
    // another device stands in the device's place.
    void Reconnect() const;

private:
    bool ChooseOnPort(IJTagPort& port, const std::string& device);
    bool Choose(IJTagChannel& chain, const std::string& device);

    TSession& Session;
    IJTagPort* Port = nullptr;
    std::string PortName; // from when it was there
    IJTagChannel* Chain = nullptr;
    IVorelDevice* Chosen = nullptr;
    std::int32_t ChainIndex = -1;
    std::string ChainName;
};

} // namespace vorel::host
