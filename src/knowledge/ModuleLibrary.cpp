#include "knowledge/ModuleLibrary.h"

#include "support/Errors.h"
#include "support/Text.h"

#include <algorithm>

namespace vorel {

void FreeDriver(IVorelDriver* driver) noexcept {
    if (driver == nullptr) {
        return;
    }
    IDriverObject* object = nullptr;
    const Status status = driver->GetImplementingObject(object);
    driver->Release();
    if (Succeeded(status) && object != nullptr) {
        object->Free();
    }
}

TModuleLibrary::~TModuleLibrary() {
    if (Handle != nullptr) {
        Loader.Unload(Handle);
    }
}

bool TModuleLibrary::TakeLoaded(const std::string& path) {
    Handle = Loader.FindLoaded(FileNameOf(path));
    FindEntryPoints();
    return IsLoaded();
}

bool TModuleLibrary::LoadFile(const std::string& path) {
    Handle = Loader.Load(path);
    FindEntryPoints();
    return IsLoaded();
}

void TModuleLibrary::FindEntryPoints() {
    if (Handle == nullptr) {
        return;
    }
    GetDriverCountProc = reinterpret_cast<GetVorelDriverCountProc>(
        Loader.FindSymbol(Handle, GetVorelDriverCountName));
    GetDriverProc =
        reinterpret_cast<GetVorelDriverProc>(Loader.FindSymbol(Handle, GetVorelDriverName));
}

bool TModuleLibrary::HasEntryPoints() const noexcept {
    return GetDriverCountProc != nullptr && GetDriverProc != nullptr;
}

std::int32_t TModuleLibrary::GetDriverCount() const {
    std::int32_t count = 0;
    Check(GetDriverCountProc(&count), GetVorelDriverCountName);
    return std::clamp(count, 0, MaxDriverCount);
}

IVorelDriver* TModuleLibrary::GetDriver(std::int32_t index) const {
    IVorelDriver* driver = nullptr;
    Check(GetDriverProc(index, &driver), GetVorelDriverName);
    return driver;
}

} // namespace vorel
