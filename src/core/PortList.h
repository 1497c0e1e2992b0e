// All ports of the machine, and what the library exports about them.
#pragma once

#include "core/CoreContext.h"
#include "core/JTagPort.h"

#include <memory>
#include <vector>

namespace vorel {

class IParallelPortManager;
class TJTagParallelPort_InstalledBoardTypes;
class TUsbJtagManager;

// Owns the port objects: item 0 is the parallel port, the pods follow. Ports are added, never
// removed, so that a pod that comes back keeps its object.
class TPortList {
public:
    // Everything handed in is not owned and outlives the list. `parallelPorts` may be null.
    TPortList(TUsbJtagManager& pods, IParallelPortManager* parallelPorts,
              TJTagParallelPort_InstalledBoardTypes& boards, TCoreContext& context);

    // The exported functions of these names (vorel/Exports.h).
    Status ScanJTagPorts() noexcept;
    Status GetJTagPortCount(std::int32_t& count) const noexcept;
    Status GetJTagPort(std::int32_t index, IJTagPort*& port) const noexcept;
    Status ReleaseJTagPorts() noexcept;
    Status SetJTagTicks(std::int32_t ticks) noexcept;

private:
    TUsbJtagManager& Pods;
    TCoreContext& Context;
    std::vector<std::unique_ptr<TJtagPort>> Ports;
    std::int32_t PortCount = 0;
};

} // namespace vorel
