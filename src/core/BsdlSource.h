// BSDL files from the installation's library.
#pragma once

#include "core/CoreContext.h"

namespace vorel {

class TBSDLLibrary;

class TBsdlSource final : public IBsdlSource {
public:
    // `library` must stay as long as the source.
    explicit TBsdlSource(TBSDLLibrary& library) : Library(library) {}

    std::string FindFile(const std::string& path) override;
    TLoadedBsdl Load(const std::string& path) override;

private:
    TBSDLLibrary& Library;
};

} // namespace vorel
