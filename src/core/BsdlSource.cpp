#include "core/BsdlSource.h"

#include "bsdl/BSDLLibrary.h"
#include "bsdl/BSDLReport.h"
#include "support/Text.h"

namespace vorel {

std::string TBsdlSource::FindFile(const std::string& path) {
    return Library.FindBsdlFile(path);
}

TLoadedBsdl TBsdlSource::Load(const std::string& path) {
    TLoadedBsdl loaded;
    const std::shared_ptr<TBSDLEntity> entity = Library.LoadBsdlFile(path, loaded.HadErrors);
    if (entity != nullptr) {
        std::vector<std::string> lines;
        DumpEntity(*entity, lines);
        loaded.Log = JoinLines(lines);
    }
    loaded.Entity = entity;
    return loaded;
}

} // namespace vorel
