// One driver module in the process: the file's handle and its two entry points.
#pragma once

#include "platform/DynamicLibrary.h"
#include "vorel/Driver.h"

#include <string>

namespace vorel {

// Gives back a driver that nobody keeps: asks for the object behind it, drops the interface and
// frees the object. Null does nothing.
void FreeDriver(IVorelDriver* driver) noexcept;

class TModuleLibrary {
public:
    explicit TModuleLibrary(IModuleLoader& loader) : Loader(loader) {}
    TModuleLibrary(const TModuleLibrary&) = delete;
    TModuleLibrary& operator=(const TModuleLibrary&) = delete;
    ~TModuleLibrary();

    // Takes the library that is in the process under the path's file name, with one hold on it.
    // False when there is none.
    bool TakeLoaded(const std::string& path);
    // Loads the file. False when that cannot be done.
    bool LoadFile(const std::string& path);
    bool IsLoaded() const noexcept { return Handle != nullptr; }
    bool HasEntryPoints() const noexcept;

    // Drivers in the module, 0 when it says less than that; at most MaxDriverCount count. Raises
    // what the module raises and EVorelError for a failing status.
    std::int32_t GetDriverCount() const;
    // A new driver object or null; raises as GetDriverCount does.
    IVorelDriver* GetDriver(std::int32_t index) const;

    static constexpr std::int32_t MaxDriverCount = 1'000'000;

private:
    void FindEntryPoints();

    IModuleLoader& Loader;
    IModuleLoader::Handle Handle = nullptr;
    GetVorelDriverCountProc GetDriverCountProc = nullptr;
    GetVorelDriverProc GetDriverProc = nullptr;
};

} // namespace vorel
