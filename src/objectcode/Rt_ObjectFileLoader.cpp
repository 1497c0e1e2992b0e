#include "objectcode/Rt_ObjectFileLoader.h"

#include "objectcode/ObjectCodeFile.h"
#include "objectcode/Rt_BinaryFileLoader.h"
#include "objectcode/Rt_ElfFileLoader.h"
#include "objectcode/Rt_IntelHexFileLoader.h"
#include "support/Text.h"

#include <string_view>

namespace vorel {

namespace {

std::string_view ExtensionOf(std::string_view fileName) {
    const std::string_view name = FileNameOf(fileName);
    const std::size_t dot = name.rfind('.');
    return dot == std::string_view::npos ? std::string_view{} : name.substr(dot);
}

bool LoadHexWithReport(IHostClient& host, const std::string& fileName,
                       const TByteConsumer& consumer, TObjectFileReport& report) {
    THexLoader loader(host, fileName);
    const bool good = loader.LoadToConsumer(consumer);
    report.Misplaced = good && loader.IgnoredSegments > 0;
    if (report.Misplaced) {
        report.Remark = "The file has extended segment addresses (record type 02), which are not "
                        "applied, so data from above 64 KiB lie below it. Use a file with linear "
                        "addresses (record type 04), a stripped ELF file or a binary one.";
    }
    return good;
}

bool LoadAs(TObjectFileFormat format, IHostClient& host, const std::string& fileName,
            const TByteConsumer& consumer, TObjectFileReport& report) {
    switch (format) {
    case TObjectFileFormat::IntelHex:
        return LoadHexWithReport(host, fileName, consumer, report);
    case TObjectFileFormat::Elf:
        return LoadElfAsBytes(host, fileName, consumer, &report.Remark);
    case TObjectFileFormat::Binary:
        break;
    }
    return LoadBinAsBytes(host, fileName, consumer);
}

} // namespace

TObjectFileFormat GetObjectFileFormat(const std::string& fileName) {
    if (SameText(ExtensionOf(fileName), ".hex")) {
        return TObjectFileFormat::IntelHex;
    }
    return IsElfFile(fileName) ? TObjectFileFormat::Elf : TObjectFileFormat::Binary;
}

bool LoadObjectFile(IHostClient& host, const std::string& fileName, const TBlockConsumer& consumer,
                    TObjectFileReport* report) {
    return LoadObjectFileAsBytes(host, fileName, AsWords(consumer), report);
}

bool LoadObjectFileAsBytes(IHostClient& host, const std::string& fileName,
                           const TByteConsumer& consumer, TObjectFileReport* report) {
    TObjectFileReport unused;
    TObjectFileReport& result = report != nullptr ? *report : unused;
    result = {};
    result.Format = GetObjectFileFormat(fileName);
    TByteConsumer counting;
    if (consumer) {
        counting = [&](const std::uint8_t* bytes, std::int64_t count, std::int64_t address) {
            if (count > 0) {
                ++result.BlockCount;
                result.ByteCount += count;
            }
            consumer(bytes, count, address);
        };
    }
    const bool good = LoadAs(result.Format, host, fileName, counting, result);
    const std::string obstacle = result.BlockCount == 0 ? WhyUnreadable(fileName) : "";
    result.Readable = obstacle.empty();
    if (!result.Readable) {
        result.Remark = obstacle;
    } else if (good && result.BlockCount == 0 && result.Remark.empty()) {
        result.Remark = "The file holds no data.";
    }
    return good;
}

bool LoadObjectFileToImage(IHostClient& host, const std::string& fileName, TMemoryImage& image,
                           std::uint32_t wordSize, std::int32_t& errorCount,
                           std::int64_t& maxAddress) {
    switch (GetObjectFileFormat(fileName)) {
    case TObjectFileFormat::IntelHex:
        return LoadHexToImage(host, fileName, image, wordSize, errorCount, maxAddress);
    case TObjectFileFormat::Elf:
        return LoadElfToImage(host, fileName, image, errorCount, maxAddress);
    case TObjectFileFormat::Binary:
        break;
    }
    return LoadBinToImage(host, fileName, image, wordSize, errorCount, maxAddress);
}

} // namespace vorel
