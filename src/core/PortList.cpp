#include "core/PortList.h"

#include "core/JTagParallelPort.h"
#include "core/JTagUsbPort.h"
#include "support/Errors.h"
#include "transport/Manage_UsbJtag.h"

namespace vorel {

TPortList::TPortList(TUsbJtagManager& pods, IParallelPortManager* parallelPorts,
                     TJTagParallelPort_InstalledBoardTypes& boards, TCoreContext& context)
    : Pods(pods), Context(context) {
    Ports.push_back(std::make_unique<TJtagParallelPort>(parallelPorts, boards, context));
}

Status TPortList::ScanJTagPorts() noexcept {
    return Guard([&] {
        const auto podCount = static_cast<std::size_t>(Pods.CountPods());
        for (std::size_t i = Ports.size(); i <= podCount; ++i) {
            TUsbPort& pod = Pods.GetPort(static_cast<std::int32_t>(i - 1));
            Ports.push_back(std::make_unique<TJtagUsbPort>(pod, Context));
        }
        PortCount = static_cast<std::int32_t>(podCount) + 1;
    });
}

Status TPortList::GetJTagPortCount(std::int32_t& count) const noexcept {
    count = PortCount;
    return StatusOk;
}

// Asked against the list: a port whose pod is gone can still be had.
Status TPortList::GetJTagPort(std::int32_t index, IJTagPort*& port) const noexcept {
    port = nullptr;
    if (index < 0) {
        return StatusIndexOutOfRange;
    }
    if (static_cast<std::size_t>(index) < Ports.size()) {
        port = &Ports[static_cast<std::size_t>(index)]->GetInterface();
    }
    return StatusOk;
}

Status TPortList::ReleaseJTagPorts() noexcept {
    return Guard([&] { Pods.Release(); });
}

Status TPortList::SetJTagTicks(std::int32_t ticks) noexcept {
    if (ticks >= 1 && ticks < 256) {
        Context.TicksPerClock = ticks;
    }
    return StatusOk;
}

} // namespace vorel
