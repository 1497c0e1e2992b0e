// The six functions that the library exports. A host loads the library by name and asks for them
// under these names. All other access goes through the interfaces that they hand out. Call them on
// the host's main thread.
#pragma once

#include "vorel/Types.h"

namespace vorel {

class IDeviceManager;
class IJTagPort;

// File name of the library without the platform's suffix.
inline constexpr const char* LibraryName = "VorelManager";

extern "C" {
// The one device manager, or null in a process without a host client. A null argument succeeds and
// does nothing.
using GetDeviceManagerProc = Status (*)(IDeviceManager** manager);
// Looks for pods. New ones get port objects at the end of the list; objects are never removed.
using ScanJTagPortsProc = Status (*)();
// Ports found by the last scan, the parallel port included; 0 before the first.
using GetJTagPortCountProc = Status (*)(std::int32_t* count);
// Port `index`, 0 the parallel port, then the pods. Null past the end of the list; a negative index
// fails.
using GetJTagPortProc = Status (*)(std::int32_t index, IJTagPort** port);
// Closes the pods. Port objects stay.
using ReleaseJTagPortsProc = Status (*)();
// Clock period of the pods in their own ticks, 1 to 255; anything else is ignored. Counts from the
// next opening of a channel on.
using SetJTagTicksProc = Status (*)(std::int32_t ticks);
}

inline constexpr const char* GetDeviceManagerName = "GetDeviceManager";
inline constexpr const char* ScanJTagPortsName = "ScanJTagPorts";
inline constexpr const char* GetJTagPortCountName = "GetJTagPortCount";
inline constexpr const char* GetJTagPortName = "GetJTagPort";
inline constexpr const char* ReleaseJTagPortsName = "ReleaseJTagPorts";
inline constexpr const char* SetJTagTicksName = "SetJTagTicks";

} // namespace vorel
