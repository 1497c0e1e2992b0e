#include "objectcode/Rt_BinaryFileLoader.h"

#include "objectcode/ObjectCodeFile.h"
#include "support/Text.h"

#include <algorithm>

namespace vorel {

namespace {

void ShowBinError(IHostClient& host, const std::string& fileName, const std::string& text) {
    ShowError(host, "Errors Found When Loading Bin File: " + std::string(FileNameOf(fileName)) +
                        "\r\r    " + text);
}

// The file's bytes; fewer than its size says count as one error, which is shown. No bytes for a
// file that cannot be opened.
TFileBytes ReadBytes(IHostClient& host, const std::string& fileName, std::int64_t size,
                     std::int32_t& errorCount) {
    auto file = ReadObjectFile(fileName);
    if (!file) {
        return {};
    }
    if (static_cast<std::int64_t>(file->Size) < size) {
        ++errorCount;
        ShowBinError(host, fileName, "Number of Errors: " + std::to_string(errorCount));
    }
    return std::move(*file);
}

} // namespace

bool LoadBinBytes(IHostClient& host, const std::string& fileName, TMemoryWords& words,
                  std::int64_t& count, std::int32_t& errorCount) {
    words.clear();
    count = 0;
    errorCount = 0;
    if (!ObjectFileExists(fileName)) {
        return false;
    }
    const TFileBytes file = ReadBytes(host, fileName, GetFileSize64(fileName), errorCount);
    words.assign(file.Bytes.get(), file.Bytes.get() + file.Size);
    count = static_cast<std::int64_t>(file.Size);
    return errorCount == 0;
}

bool LoadBinToConsumer(IHostClient& host, const std::string& fileName,
                       const TBlockConsumer& consumer) {
    return LoadBinAsBytes(host, fileName, AsWords(consumer));
}

bool LoadBinAsBytes(IHostClient& host, const std::string& fileName, const TByteConsumer& consumer) {
    if (!ObjectFileExists(fileName)) {
        return false;
    }
    std::int32_t errorCount = 0;
    const TFileBytes file = ReadBytes(host, fileName, GetFileSize64(fileName), errorCount);
    if (errorCount == 0 && consumer) {
        consumer(file.Bytes.get(), static_cast<std::int64_t>(file.Size), 0);
    }
    return errorCount == 0;
}

bool LoadBinToImage(IHostClient& host, const std::string& fileName, TMemoryImage& image,
                    std::uint32_t wordSize, std::int32_t& errorCount, std::int64_t& count) {
    image.fill(0);
    count = 0;
    errorCount = 0;
    if (!ObjectFileExists(fileName)) {
        return false;
    }
    const std::int64_t size = std::max<std::int64_t>(GetFileSize64(fileName), 0);
    if (wordSize == 0 || size % wordSize != 0) {
        ShowBinError(host, fileName,
                     "Filelength : " + std::to_string(size) + " not a divisor of " +
                         std::to_string(wordSize));
        return true;
    }
    const TFileBytes file = ReadBytes(host, fileName, size, errorCount);
    count = static_cast<std::int64_t>(file.Size / wordSize);
    const std::size_t filled = wordSize > 4 ? 0 : std::min(file.Size / wordSize, image.size());
    for (std::size_t i = 0; i < filled * wordSize; ++i) {
        image[i / wordSize] |= TMemoryWord{file.Bytes[i]} << (8 * (i % wordSize));
    }
    return errorCount == 0;
}

} // namespace vorel
