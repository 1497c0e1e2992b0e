#include "library/Library.h"

#include "knowledge/Manage_DeviceFamilies.h"
#include "knowledge/Manage_GenericDevices.h"
#include "knowledge/VorelCache.h"
#include "platform/LibusbServices.h"
#include "support/Errors.h"
#include "support/Text.h"

#include <dlfcn.h>

#include <filesystem>

namespace vorel {

namespace {

std::string FolderOf(IHostClient& host, HostDirectory directory) {
    WideText path;
    Check(host.GetDirectory(directory, path), "Asking the host for a folder");
    return ToUtf8(path);
}

// The folder of the library's own file: driver modules lie beside it.
std::string OwnFolder() {
    Dl_info info{};
    if (dladdr(reinterpret_cast<const void*>(&TheLibrary), &info) == 0 ||
        info.dli_fname == nullptr) {
        return {};
    }
    return std::filesystem::path(info.dli_fname).parent_path().string();
}

std::string BelowLibrary(IHostClient& host, const char* relative) {
    return (std::filesystem::path(FolderOf(host, HostDirectory::Library)) / relative).string();
}

IHostClient* FindHostClient() {
    void* symbol = dlsym(RTLD_DEFAULT, HostClientEntryPoint);
    if (symbol == nullptr) {
        return nullptr;
    }
    IHostClient* client = nullptr;
    const auto getClient = reinterpret_cast<GetHostClientProc>(symbol);
    return Succeeded(getClient(&client)) ? client : nullptr;
}

} // namespace

TLibrary::TLibrary(IHostClient* client)
    : Host(client != nullptr ? *client : NoHost),
      Boards(FolderOf(Host, HostDirectory::System)),
      Pods(ChooseUsb()),
      Knowledge(KnowledgeSettings(client)),
      BsdlFiles(Host, Zip, FolderOf(Host, HostDirectory::Library),
                FolderOf(Host, HostDirectory::Temporary)),
      BsdlSource(BsdlFiles),
      Context{Host, &Knowledge, nullptr, &BsdlSource},
      Ports(std::make_unique<TPortList>(Pods, ChooseParallelPorts(), Boards, Context)) {
    JoinAnalyser();
    if (client != nullptr) {
        MakeRootObject();
    } else {
        const TModulePathLookupCache cache(KnowledgeSettings(nullptr));
    }
}

TLibrary::~TLibrary() = default;

IUsbServices& TLibrary::ChooseUsb() {
    IUsbServices* services = nullptr;
    Check(Host.GetUsbServices(services), "Asking the host for USB services");
    if (services == nullptr) {
        MachineUsb = std::make_shared<TLibusbServices>();
        services = MachineUsb.get();
    }
    return *services;
}

IParallelPortManager* TLibrary::ChooseParallelPorts() {
    IParallelPortManager* manager = nullptr;
    Check(Host.GetParallelPortManager(manager), "Asking the host for parallel ports");
    if (manager == nullptr) {
        MachinePorts = std::make_unique<TParallelPortLibrary>(
            ModuleLoader, FolderOf(Host, HostDirectory::System));
        manager = MachinePorts->Manager();
    }
    return manager;
}

// An analyser without a recorder is not told of every clock of a pod: that would cost more than
// the clock.
void TLibrary::JoinAnalyser() {
    IJTagAnalyser* recording = nullptr;
    Check(Host.GetTrafficAnalyser(recording), "Asking the host for a recorder");
    Boards.SetAnalyser(recording != nullptr ? recording : Analyser.Get());
    Pods.SetAnalyser(recording);
}

TKnowledgeSettings TLibrary::KnowledgeSettings(IHostClient* client) {
    TKnowledgeSettings settings;
    settings.Host = client;
    settings.ModuleDirectory = OwnFolder();
    settings.Loader = &ModuleLoader;
    settings.FileTimes = &FileTimes;
    return settings;
}

void TLibrary::MakeRootObject() {
    const std::string families =
        (std::filesystem::path(FolderOf(Host, HostDirectory::System)) / "FamilyMappings.txt")
            .string();
    Ref<IGenericDeviceManager> generics(
        new TGenericDeviceManager(BelowLibrary(Host, "BSDL/Generic/BSDL_FileMap.txt"), nullptr));
    Context.Generic = generics.Get();
    RootObject = std::make_unique<TDeviceManager>(TDeviceManagerParts{
        Host, Knowledge, Dialogs, nullptr,
        Ref<IDeviceFamilyManager>(new TDeviceFamilyManager(families)), std::move(generics)});
}

namespace {

// Made when the library is loaded and destroyed when it is unloaded.
std::unique_ptr<TLibrary> MakeLibrary() noexcept {
    std::unique_ptr<TLibrary> library;
    static_cast<void>(Guard([&] { library = std::make_unique<TLibrary>(FindHostClient()); }));
    return library;
}

const std::unique_ptr<TLibrary> Instance = MakeLibrary();

} // namespace

TLibrary* TheLibrary() noexcept {
    return Instance.get();
}

} // namespace vorel
