// Writing a range of a memory as an Intel Hex file.
#pragma once

#include "vorel/Host.h"
#include "vorel/VorelDevice.h"

#include <cstdint>
#include <string>

namespace vorel {

// Reads `size` locations of `memory` from `readAddress` on, a line at a time, and saves the low
// byte of each through the host as if it lay at `fileAddress`, `bytesPerLine` (1 to 255) to a line.
// Lines end with CR LF. Addresses of 64 Ki and above get extended linear address records of bits 16
// to 31; a line is never split at a 64 KiB limit. The wait cursor is shown meanwhile.
// False without a memory or with another `bytesPerLine`. A failing memory or host raises
// EVorelError; nothing is saved then.
bool SaveMemoryAsHex(IHostClient& host, IMemorySpace* memory, const std::string& fileName,
                     std::int32_t bytesPerLine, std::int64_t readAddress, std::int64_t size,
                     std::int64_t fileAddress);

} // namespace vorel
