// MD5 of files, by which changed driver modules are told from ones that were only touched.
#pragma once

#include <string>

namespace vorel {

// MD5 (RFC 1321) of the whole file as 32 upper-case hexadecimal digits. Raises EVorelError with the
// file's name when it cannot be opened or read.
std::string Md5OfFile(const std::string& path);

} // namespace vorel
