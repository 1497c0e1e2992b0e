// Object code between files and the memory of a target, and memory as people read it.
#pragma once

#include "hosts/vorelctl/DebugTarget.h"
#include "objectcode/Rt_ObjectFileLoader.h"
#include "vorel/Host.h"

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

namespace vorel::host {

struct TObjectImage {
    struct TBlock {
        std::int64_t Address; // of its first byte
        std::vector<std::uint8_t> Bytes;
    };
    std::vector<TBlock> Blocks; // blocks that follow each other without a gap are one

    std::size_t ByteCount() const noexcept;
};

using TProgress = std::function<void(const std::string&)>;

// Ends a command whose file did not load or delivered nothing: ECommandFailure says why and what
// helps, with EnvironmentFault for a file that cannot be read. A remark on a file that delivered
// something becomes a warning.
void CheckDelivery(IHostClient& host, const std::string& fileName, bool loaded,
                   const TObjectFileReport& report);

// Reads Intel Hex (by the extension .hex), ELF or binary. The reader's messages go to the host.
// ECommandFailure as CheckDelivery, and for data that came to other addresses than the file says.
TObjectImage ReadObjectImage(IHostClient& host, const std::string& fileName);

// All blocks, `offset` added to their addresses. Nothing is written when one of them does not fit.
void WriteObjectImage(const TDebugTarget& target, const TObjectImage& image, std::int64_t offset,
                      const TProgress& progress);
// ECommandFailure names the first byte that differs.
void VerifyObjectImage(const TDebugTarget& target, const TObjectImage& image, std::int64_t offset,
                       const TProgress& progress);

// To a file: Intel Hex by the extension .hex, else binary. ECommandFailure when it cannot be
// written.
void SaveMemory(const TDebugTarget& target, std::int64_t address, std::size_t count,
                const std::string& fileName);

// `count` items of `size` bytes (1, 2 or 4), 16 bytes to a line, with their characters.
std::string DumpMemory(const TDebugTarget& target, std::int64_t address, std::size_t count,
                       std::size_t size);

} // namespace vorel::host
