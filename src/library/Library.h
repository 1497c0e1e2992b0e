// Everything that lives as long as the library is loaded, made and destroyed in a fixed order.
//
// At load: the parallel-port board types, the USB manager, the ports, and last, if the process has
// a host client, the root object; without a host the driver cache is brought up to date instead.
// Unloading goes the other way round: the root object first, the ports next, then the USB manager.
#pragma once

#include "bsdl/BSDLLibrary.h"
#include "core/BsdlSource.h"
#include "core/DeviceManager.h"
#include "core/PortList.h"
#include "core/UserDialogs.h"
#include "library/KnowledgeOnDemand.h"
#include "platform/ParallelPortLibrary.h"
#include "platform/ZipExtractor.h"
#include "support/NeutralHost.h"
#include "transport/JTagAnalyser.h"
#include "transport/JTagParallelPortMap.h"
#include "transport/Manage_UsbJtag.h"

#include <memory>
#include <string>

namespace vorel {

class TLibrary {
public:
    // `client` is the host's, null in a process without a host; it outlives the library.
    explicit TLibrary(IHostClient* client);
    ~TLibrary();
    TLibrary(const TLibrary&) = delete;
    TLibrary& operator=(const TLibrary&) = delete;

    TPortList& GetPorts() noexcept { return *Ports; }
    // Null in a process without a host client.
    IDeviceManager* GetManager() noexcept { return RootObject.get(); }

private:
    IUsbServices& ChooseUsb();
    IParallelPortManager* ChooseParallelPorts();
    void JoinAnalyser();
    TKnowledgeSettings KnowledgeSettings(IHostClient* client);
    void MakeRootObject();

    TNeutralHost NoHost;
    IHostClient& Host;
    std::shared_ptr<IUsbServices> MachineUsb; // unless the host has its own
    TJTagParallelPort_InstalledBoardTypes Boards;
    TUsbJtagManager Pods;
    // The one that stands by for a recorder, and has none.
    Ref<TJTagAnalyserAdaptor> Analyser{new TJTagAnalyserAdaptor};

    TSystemModuleLoader ModuleLoader;
    TSystemFileTimes FileTimes;
    TKnowledgeOnDemand Knowledge;
    TZipExtractor Zip;
    TBSDLLibrary BsdlFiles;
    TBsdlSource BsdlSource;
    TCoreContext Context;
    std::unique_ptr<TParallelPortLibrary> MachinePorts; // unless the host has its own
    std::unique_ptr<TPortList> Ports;

    TNoUserDialogs Dialogs;
    std::unique_ptr<TDeviceManager> RootObject;
};

// The library of this process; null when it could not be set up.
TLibrary* TheLibrary() noexcept;

} // namespace vorel
