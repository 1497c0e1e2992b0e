#include "platform/ParallelPortLibrary.h"

namespace vorel {

TParallelPortLibrary::TParallelPortLibrary(IModuleLoader& loader, const std::string& systemFolder)
    : Loader(loader), Module(loader.FindLoaded(FileName)) {
    if (Module == nullptr) {
        Module = Loader.Load(systemFolder + "/" + FileName);
    }
    if (Module != nullptr) {
        AskForManager();
    }
}

TParallelPortLibrary::~TParallelPortLibrary() {
    if (Module != nullptr) {
        Loader.Unload(Module);
    }
}

void TParallelPortLibrary::AskForManager() {
    void* entry = Loader.FindSymbol(Module, ParallelPortManagerEntryPoint);
    IParallelPortManager* manager = nullptr;
    if (entry != nullptr &&
        Succeeded(reinterpret_cast<GetParallelPortManagerProc>(entry)(&manager))) {
        Ports = manager;
    }
}

} // namespace vorel
