// The port library's one export. Its ports live until the library is unloaded, which gives back
// all that are claimed.

#include "platform/ppdev/PpdevManager.h"
#include "support/Errors.h"

extern "C" __attribute__((visibility("default"))) vorel::Status
GetParallelPortManager(vorel::IParallelPortManager** manager) {
    return vorel::Guard([&]() -> vorel::Status {
        if (manager == nullptr) {
            return vorel::StatusBadArgument;
        }
        static vorel::TPpdevManager ports;
        *manager = &ports;
        return vorel::StatusOk;
    });
}
