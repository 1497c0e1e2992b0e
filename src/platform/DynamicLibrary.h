// Dynamic libraries as a service, so that what loads modules can be watched and counted.
#pragma once

#include <string>
#include <string_view>

namespace vorel {

class IModuleLoader {
public:
    using Handle = void*;

    virtual ~IModuleLoader() = default;

    // A library that is already in the process under this file name (no folder), with one more
    // hold on it; null when there is none.
    virtual Handle FindLoaded(std::string_view fileName) = 0;
    // Loads the file of this path and binds all that it needs. Null when that cannot be done.
    virtual Handle Load(const std::string& path) = 0;
    // The address of an exported name; null when there is no such export.
    virtual void* FindSymbol(Handle handle, const char* name) = 0;
    // Gives back one hold that FindLoaded or Load gave. The last one takes the library out of the
    // process.
    virtual void Unload(Handle handle) noexcept = 0;
};

// The dynamic linker of the system. All symbols are bound at load, so that a library with a missing
// one is refused instead of ending the process at its first call. So is a file that was cut short
// (IsWholeElfFile). Paths have a folder: the system's own search is not used.
class TSystemModuleLoader final : public IModuleLoader {
public:
    Handle FindLoaded(std::string_view fileName) override;
    Handle Load(const std::string& path) override;
    void* FindSymbol(Handle handle, const char* name) override;
    void Unload(Handle handle) noexcept override;
};

} // namespace vorel
