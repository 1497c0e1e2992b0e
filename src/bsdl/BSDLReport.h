// A report of an entity for people.
#pragma once

#include "bsdl/BSDLEntity.h"

namespace vorel {

// Adds the report's lines to `lines`, in the bytes of the file. It does not set off the lazy read
// of the boundary register, so the boundary length is 0 before that. The opcodes and registers that
// bring it above 64 MiB are left out.
void DumpEntity(const TBSDLEntity& entity, std::vector<std::string>& lines);

} // namespace vorel
