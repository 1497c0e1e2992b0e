// What is looked at in the file of a dynamic library before the dynamic linker gets it.
#pragma once

#include <string>

namespace vorel {

// True for an ELF file of this machine's word size that holds all that its program headers say it
// does. The dynamic linker maps what they say and reads it: behind the end of a file that was cut
// short, that ends the process.
// Source: System V ABI, "ELF Header" and "Program Header".
bool IsWholeElfFile(const std::string& path);

} // namespace vorel
