#include "vorel/Exports.h"
#include "library/Library.h"

using vorel::IDeviceManager;
using vorel::IJTagPort;
using vorel::Status;
using vorel::TheLibrary;

// The functions that a host finds by name. The linker exports these six and nothing else.
extern "C" {

Status GetDeviceManager(IDeviceManager** manager) {
    if (manager == nullptr) {
        return vorel::StatusOk;
    }
    *manager = TheLibrary() != nullptr ? TheLibrary()->GetManager() : nullptr;
    return vorel::StatusOk;
}

Status ScanJTagPorts() {
    return TheLibrary() != nullptr ? TheLibrary()->GetPorts().ScanJTagPorts() : vorel::StatusError;
}

Status GetJTagPortCount(std::int32_t* count) {
    if (count == nullptr) {
        return vorel::StatusBadArgument;
    }
    *count = 0;
    return TheLibrary() != nullptr ? TheLibrary()->GetPorts().GetJTagPortCount(*count)
                                   : vorel::StatusError;
}

Status GetJTagPort(std::int32_t index, IJTagPort** port) {
    if (port == nullptr) {
        return vorel::StatusBadArgument;
    }
    *port = nullptr;
    return TheLibrary() != nullptr ? TheLibrary()->GetPorts().GetJTagPort(index, *port)
                                   : vorel::StatusError;
}

Status ReleaseJTagPorts() {
    return TheLibrary() != nullptr ? TheLibrary()->GetPorts().ReleaseJTagPorts()
                                   : vorel::StatusError;
}

Status SetJTagTicks(std::int32_t ticks) {
    return TheLibrary() != nullptr ? TheLibrary()->GetPorts().SetJTagTicks(ticks)
                                   : vorel::StatusError;
}
}
