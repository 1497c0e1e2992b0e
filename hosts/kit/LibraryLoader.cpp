#include "hosts/kit/LibraryLoader.h"

#include <dlfcn.h>

#include <array>
#include <utility>

namespace vorel::host {

TVorelLibrary::~TVorelLibrary() {
    Unload();
}

bool TVorelLibrary::Load(const std::filesystem::path& programFolder) {
    if (Handle != nullptr) {
        return true;
    }
    const std::string name = std::string(LibraryName) + ".so";
    const std::string path = (programFolder / name).string();
    Handle = dlopen(name.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NOLOAD);
    if (Handle == nullptr) {
        Handle = dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL);
    }
    if (Handle == nullptr) {
        const char* reason = dlerror();
        ProblemText = "Cannot load the library " + path +
                      (reason != nullptr ? ": " + std::string(reason) : "");
        return false;
    }
    if (!ResolveEntryPoints()) {
        Unload();
        return false;
    }
    return true;
}

bool TVorelLibrary::ResolveEntryPoints() {
    const auto resolve = [this](const char* name, auto& entry) {
        entry = reinterpret_cast<std::remove_reference_t<decltype(entry)>>(dlsym(Handle, name));
        if (entry == nullptr) {
            ProblemText = std::string("The library has no function ") + name;
        }
        return entry != nullptr;
    };
    return resolve(GetDeviceManagerName, GetDeviceManager) &&
           resolve(ScanJTagPortsName, ScanJTagPorts) &&
           resolve(GetJTagPortCountName, GetJTagPortCount) &&
           resolve(GetJTagPortName, GetJTagPort) &&
           resolve(ReleaseJTagPortsName, ReleaseJTagPorts) &&
           resolve(SetJTagTicksName, SetJTagTicks);
}

void TVorelLibrary::Unload() noexcept {
    if (void* handle = std::exchange(Handle, nullptr)) {
        dlclose(handle);
    }
    GetDeviceManager = nullptr;
    ScanJTagPorts = nullptr;
    GetJTagPortCount = nullptr;
    GetJTagPort = nullptr;
    ReleaseJTagPorts = nullptr;
    SetJTagTicks = nullptr;
}

IDeviceManager* TVorelLibrary::DeviceManager() const noexcept {
    IDeviceManager* manager = nullptr;
    if (GetDeviceManager != nullptr) {
        GetDeviceManager(&manager);
    }
    return manager;
}

std::filesystem::path ProgramFolder() {
    std::error_code error;
    return std::filesystem::read_symlink("/proc/self/exe", error).parent_path();
}

} // namespace vorel::host
