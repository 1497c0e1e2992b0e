// Reading raw binary files. They have no addresses: their data starts at 0.
#pragma once

#include "objectcode/MemoryWords.h"
#include "vorel/Host.h"

#include <cstdint>
#include <string>

namespace vorel {

// Gives each byte of the file as one word, in `words` (replaced) and their number in `count`. False
// if the file does not exist, without a message, or if it could not be read to its end, after a
// message and with an error count of 1. A file that cannot be opened counts as an empty one.
bool LoadBinBytes(IHostClient& host, const std::string& fileName, TMemoryWords& words,
                  std::int64_t& count, std::int32_t& errorCount);

// Delivers the whole file as one block at address 0, an empty file too, with count 0. Results as
// LoadBinBytes; nothing is delivered on failure or without a consumer.
bool LoadBinToConsumer(IHostClient& host, const std::string& fileName,
                       const TBlockConsumer& consumer);
bool LoadBinAsBytes(IHostClient& host, const std::string& fileName, const TByteConsumer& consumer);

// Zeroes the image and fills it with words of `wordSize` bytes, lowest first; other sizes than 1 to
// 4 give words of 0. `count` is the number of words in the file, also where they lie beyond the
// image and are dropped. A file whose length is no multiple of `wordSize` is not read: this is told
// in a message only, the result is true with a count of 0. Other results as LoadBinBytes.
bool LoadBinToImage(IHostClient& host, const std::string& fileName, TMemoryImage& image,
                    std::uint32_t wordSize, std::int32_t& errorCount, std::int64_t& count);

} // namespace vorel
