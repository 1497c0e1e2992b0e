// The library behind which the machine's parallel ports are: ParallelPortManager, with the suffix
// of the platform's libraries.
#pragma once

#include "platform/DynamicLibrary.h"
#include "vorel/ParallelPort.h"

#include <string>

namespace vorel {

class TParallelPortLibrary {
public:
    static constexpr const char* FileName = "ParallelPortManager.so";

    // Takes the module that is in the process already, otherwise the one in this folder. `loader`
    // is not owned and must outlive the object.
    TParallelPortLibrary(IModuleLoader& loader, const std::string& systemFolder);
    TParallelPortLibrary(const TParallelPortLibrary&) = delete;
    TParallelPortLibrary& operator=(const TParallelPortLibrary&) = delete;
    // Gives the library back. Ports and manager are gone with it if nobody else holds it.
    ~TParallelPortLibrary();

    // The machine's ports, good for as long as this object lives. Null when there is no such
    // library, it lacks the entry point, or it gives no manager.
    IParallelPortManager* Manager() const noexcept { return Ports; }

private:
    void AskForManager();

    IModuleLoader& Loader;
    IModuleLoader::Handle Module = nullptr;
    IParallelPortManager* Ports = nullptr;
};

} // namespace vorel
