// Everything that lives as long as the library is loaded, made and destroyed in a fixed order.
//
// At load: the parallel-port board types, the USB manager, the ports, and last, if the process has
// a host client, the root object. Unloading goes the other way round: the root object first, the
// ports next, the USB manager after that.
#pragma once

#include "bsdl/BSDLLibrary.h"
#include "core/BsdlSource.h"
#include "core/Manage_VorelDevices.h"
#include "core/PortList.h"
#include "core/UserDialogs.h"
#include "knowledge/DeviceKnowledge.h"
#include "support/NeutralHost.h"
#include "transport/JTagParallelPortMap.h"
#include "transport/Manage_UsbJtag.h"

#include <memory>

namespace vorel {

class TLibrary {
public:
    // `client` is the host's, null in a process without a host; it outlives the library.
    explicit TLibrary(IHostClient* client);
    ~TLibrary();
    TLibrary(const TLibrary&) = delete;
    TLibrary& operator=(const TLibrary&) = delete;

    TPortList& Ports() noexcept { return *PortList; }
    // Null in a process without a host client.
    IDeviceManager* Manager() noexcept { return RootObject.get(); }

private:
    IUsbServices& ChooseUsb();

    TNeutralHost NoHost;
    IHostClient& Host;
    std::unique_ptr<IUsbServices, void (*)(IUsbServices*)> MachineUsb; // unless the host gave its own
    TJTagParallelPort_InstalledBoardTypes Boards;
    TUsbJtagManager Pods;
    std::unique_ptr<IDeviceKnowledge> Knowledge;
    TBSDLLibrary BsdlFiles;
    TBsdlSource BsdlSource;
    TCoreContext Context;
    std::unique_ptr<TPortList> PortList;
    TNoUserDialogs Dialogs;
    std::unique_ptr<TDeviceManager> RootObject;
};

} // namespace vorel
