// The two front ends that take any object code file: Intel Hex by extension, ELF by content, all
// else as raw binary.
#pragma once

#include "objectcode/MemoryWords.h"
#include "vorel/Host.h"

#include <cstdint>
#include <string>

namespace vorel {

enum class TObjectFileFormat { IntelHex, Elf, Binary };

// ".hex" in any case is Intel Hex, whatever the file holds; otherwise the content decides.
TObjectFileFormat GetObjectFileFormat(const std::string& fileName);

// What came of a file, for a caller who has to tell the user: a load may succeed and deliver
// nothing.
struct TObjectFileReport {
    TObjectFileFormat Format = TObjectFileFormat::Binary;
    bool Readable = false;       // the file exists and could be opened
    std::int64_t BlockCount = 0; // blocks with at least one byte
    std::int64_t ByteCount = 0;  // bytes in them
    bool Misplaced = false;      // data came to other addresses than the file says
    // Why nothing, not all, or the wrong thing was delivered as far as the messages do not tell,
    // and the remedy; empty when all is well. One or two sentences.
    std::string Remark;
};

// Delivers the file's blocks, one byte of the file to a word. Results, messages and blocks are
// those of LoadHexToConsumer, LoadElfToConsumer and LoadBinToConsumer; blocks without words are
// passed on as well.
bool LoadObjectFile(IHostClient& host, const std::string& fileName, const TBlockConsumer& consumer,
                    TObjectFileReport* report = nullptr);
// The same as bytes, for who has no use for words.
bool LoadObjectFileAsBytes(IHostClient& host, const std::string& fileName,
                           const TByteConsumer& consumer, TObjectFileReport* report = nullptr);

// Fills the image as LoadHexToImage, LoadElfToImage or LoadBinToImage do. `maxAddress` is the
// latter's count.
bool LoadObjectFileToImage(IHostClient& host, const std::string& fileName, TMemoryImage& image,
                           std::uint32_t wordSize, std::int32_t& errorCount,
                           std::int64_t& maxAddress);

} // namespace vorel
