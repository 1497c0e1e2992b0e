#include "platform/DynamicLibrary.h"

#include "platform/ElfFile.h"
#include "support/Text.h"

#include <dlfcn.h>
#include <link.h>

namespace vorel {

namespace {

struct TNameSearch {
    std::string_view FileName;
    std::string Path;
};

int CompareLoaded(dl_phdr_info* info, std::size_t, void* context) {
    auto& search = *static_cast<TNameSearch*>(context);
    const std::string_view path = info->dlpi_name == nullptr ? "" : info->dlpi_name;
    if (path.empty() || FileNameOf(path) != search.FileName) {
        return 0;
    }
    search.Path = path;
    return 1;
}

} // namespace

IModuleLoader::Handle TSystemModuleLoader::FindLoaded(std::string_view fileName) {
    TNameSearch search{fileName, {}};
    dl_iterate_phdr(CompareLoaded, &search);
    return search.Path.empty() ? nullptr
                               : dlopen(search.Path.c_str(), RTLD_NOW | RTLD_LOCAL | RTLD_NOLOAD);
}

IModuleLoader::Handle TSystemModuleLoader::Load(const std::string& path) {
    return IsWholeElfFile(path) ? dlopen(path.c_str(), RTLD_NOW | RTLD_LOCAL) : nullptr;
}

void* TSystemModuleLoader::FindSymbol(Handle handle, const char* name) {
    return dlsym(handle, name);
}

void TSystemModuleLoader::Unload(Handle handle) noexcept {
    dlclose(handle);
}

} // namespace vorel
