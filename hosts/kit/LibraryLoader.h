// How a host gets at the library: by name, once per process.
#pragma once

#include "vorel/Exports.h"

#include <filesystem>
#include <string>

namespace vorel::host {

// The six entry points of a loaded library. The library stays in the process until this object
// goes; pointers got through it are void then.
class TVorelLibrary {
public:
    TVorelLibrary() = default;
    ~TVorelLibrary();
    TVorelLibrary(const TVorelLibrary&) = delete;
    TVorelLibrary& operator=(const TVorelLibrary&) = delete;

    // Takes the library that is in the process already, else loads it from `programFolder`. False
    // when it is not there or lacks an entry point; Problem() tells then what was tried. The host
    // client must be set before.
    bool Load(const std::filesystem::path& programFolder);
    // Unloads; pods are closed and all objects of the library go.
    void Unload() noexcept;
    bool IsLoaded() const noexcept { return Handle != nullptr; }
    const std::string& Problem() const noexcept { return ProblemText; }

    // Null without a library, and in a process without a host client.
    IDeviceManager* DeviceManager() const noexcept;

    ScanJTagPortsProc ScanJTagPorts = nullptr;
    GetJTagPortCountProc GetJTagPortCount = nullptr;
    GetJTagPortProc GetJTagPort = nullptr;
    ReleaseJTagPortsProc ReleaseJTagPorts = nullptr;
    SetJTagTicksProc SetJTagTicks = nullptr;

private:
    bool ResolveEntryPoints();

    void* Handle = nullptr;
    GetDeviceManagerProc GetDeviceManager = nullptr;
    std::string ProblemText;
};

// The folder of the running program's file, links resolved.
std::filesystem::path ProgramFolder();

} // namespace vorel::host
