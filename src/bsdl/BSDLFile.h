// Reads one BSDL file on its own, without a library tree, a host or log files: for programs that
// say what is in a file, and for virtual devices.
#pragma once

#include "bsdl/BSDLEntity.h"

namespace vorel {

struct TBSDLFile {
    bool Readable = false;               // the bytes could be read
    std::unique_ptr<TBSDLEntity> Entity; // the first one in order of names; null without any
    // The place of the first error, counted from 1; -1 without one.
    std::int32_t ErrorLine = -1;
    std::int32_t ErrorColumn = -1;
    std::string ErrorText; // UTF-8, without the place; empty for an error in an architecture

    bool HadErrors() const noexcept { return ErrorLine != -1; }
    // "line 3, column 7: what is wrong"; for a file with an error.
    std::string DescribeError() const;
};

// `path` is UTF-8. An entity may come out of a file with an error, and then lacks what stood behind
// it. X in the id code gives 0.
TBSDLFile ReadBsdlFile(const std::string& path);

} // namespace vorel
