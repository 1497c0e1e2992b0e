// Reading Intel Hex files (Intel's Hexadecimal Object File Format),
// into a flat image or as blocks of up to 64 KiB.
//
// A file with a bad line is reported once, at its first bad line, and has failed; the reading goes
// on to the end, and also goes on behind an end record.
#pragma once

#include "objectcode/MemoryWords.h"
#include "objectcode/ObjectCodeFile.h"
#include "vorel/Host.h"

#include <cstdint>
#include <span>
#include <string>
#include <vector>

namespace vorel {

// One line. Its data bytes live in the buffer that the line was parsed in.
class THexRecord {
public:
    static constexpr std::uint8_t DataRecord = 0;
    static constexpr std::uint8_t ExtendedSegmentAddress = 2;
    static constexpr std::uint8_t ExtendedLinearAddress = 4;

    // Parses a line without its line end: ':', count, address, type, data, checksum. Characters
    // behind the 255th do not count; a digit that is missing or none reads as nothing, so that only
    // the checksum shows it. False for a line that does not start like a record or whose bytes do
    // not add up to 0. The data bytes are decoded in place: the line's text is lost.
    bool Parse(std::span<std::uint8_t> line);

    // Data byte `index`; the line may have held fewer than its count says, the others are 0.
    std::uint8_t DataAt(std::size_t index) const noexcept {
        return index < Stored ? Data[index] : std::uint8_t{0};
    }
    // Writes the data: ByteCount bytes.
    void CopyTo(std::uint8_t* bytes) const noexcept;

    std::uint8_t ByteCount = 0;
    std::uint16_t Address = 0;
    std::uint8_t RecordType = 5;
    std::uint8_t Checksum = 0; // after a good parse 0, the sum of all fields

private:
    std::uint8_t Stored = 0;
    const std::uint8_t* Data = nullptr;
};

using THexRecords = std::vector<THexRecord>;

class THexLoader {
public:
    // The host shows the messages. `fileName` is UTF-8.
    THexLoader(IHostClient& host, std::string fileName);

    // Takes the text from memory instead of from the file; the name only serves the messages.
    void SetText(std::span<const std::uint8_t> text);

    // Appends the file's good records to `list`: all of them, or the data records only. They refer
    // to this loader's copy of the file. False after a message if the file does not exist or has a
    // bad line.
    bool ReadRecords(THexRecords& list, bool keepAllTypes);

    // Zeroes the image and fills it from all good lines. Addresses stay below 64 Ki, since extended
    // addresses are dropped. Words are put together from `wordSize` bytes, lowest first: sizes 1
    // to 3 take the record's address as word address, size 4 takes it as byte address (a quarter of
    // it is the word address), any other size writes nothing. Words beyond the image are dropped.
    bool LoadToImage(TMemoryImage& image, std::uint32_t wordSize);

    // One block for each run of data records between extended linear address records, from its
    // lowest to its highest address, gaps as zeros. Nothing is delivered if any line is bad or
    // without a consumer, which gives false. The last block is delivered whatever it holds: without
    // data it has a count below 1.
    bool LoadToConsumer(const TByteConsumer& consumer);

    // Lines that failed.
    std::int32_t ErrorCount = 0;
    // Of a delivery: extended segment addresses other than 0. They are not applied, so the data
    // behind them came lower than the file says.
    std::int32_t IgnoredSegments = 0;
    // Of an image: one above the record address plus the word's place in the record, at its
    // highest.
    std::uint32_t MaxAddress = 0;

private:
    bool TakeLines();
    void WriteToImage(const THexRecord& record, TMemoryImage& image, std::uint32_t wordSize);
    void DeliverSegments(const THexRecords& list, const TByteConsumer& consumer);
    void ShowFailure() const;

    IHostClient& Host;
    std::string FileName;
    TFileBytes Lines;
    bool HaveLines = false;
};

// The ways of loading in one call, with the results of THexLoader.
bool LoadHexToImage(IHostClient& host, const std::string& fileName, TMemoryImage& image,
                    std::uint32_t wordSize, std::int32_t& errorCount, std::int64_t& maxAddress);
bool LoadHexToConsumer(IHostClient& host, const std::string& fileName,
                       const TBlockConsumer& consumer);
bool LoadHexAsBytes(IHostClient& host, const std::string& fileName, const TByteConsumer& consumer);

} // namespace vorel
