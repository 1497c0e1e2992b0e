#include "objectcode/Rt_IntelHexFileLoader.h"

#include "support/Text.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <limits>

namespace vorel {

namespace {

constexpr std::size_t LineLimit = 255;
constexpr std::size_t DataColumn = 9;
constexpr std::uint8_t NoDigit = 0x80;

constexpr std::array<std::uint8_t, 256> MakeDigitTable() {
    std::array<std::uint8_t, 256> table{};
    table.fill(NoDigit);
    for (std::uint8_t i = 0; i < 10; ++i) {
        table[static_cast<std::size_t>('0') + i] = i;
    }
    for (std::uint8_t i = 0; i < 6; ++i) {
        table[static_cast<std::size_t>('A') + i] = static_cast<std::uint8_t>(10 + i);
        table[static_cast<std::size_t>('a') + i] = static_cast<std::uint8_t>(10 + i);
    }
    return table;
}
constexpr std::array<std::uint8_t, 256> DigitValues = MakeDigitTable();

// Up to `digits` digits from `column` on; ends at the line's end or at the first other character.
unsigned ReadDigits(std::span<const std::uint8_t> line, std::size_t column, std::size_t digits) {
    unsigned value = 0;
    const std::size_t end = std::min(line.size(), column + digits);
    for (std::size_t i = column; i < end && DigitValues[line[i]] != NoDigit; ++i) {
        value = (value << 4U) | DigitValues[line[i]];
    }
    return value;
}

// `count` pairs of digits to bytes; `bytes` may be the same memory. Gives the sum of the bytes.
unsigned DecodePairs(const std::uint8_t* text, std::size_t count, std::uint8_t* bytes) {
    unsigned sum = 0;
    for (std::size_t i = 0; i < count; ++i) {
        const unsigned high = DigitValues[text[2 * i]];
        const unsigned low = DigitValues[text[2 * i + 1]];
        unsigned value = (high << 4U) | low;
        if (((high | low) & NoDigit) != 0) [[unlikely]] {
            value = high == NoDigit ? 0 : high;
        }
        bytes[i] = static_cast<std::uint8_t>(value);
        sum += value;
    }
    return sum;
}

// Cuts a text into lines that end with LF, CR LF or CR. Each character is looked at twice at most.
class TLineCutter {
public:
    explicit TLineCutter(std::span<std::uint8_t> text)
        : Next(text.data()), End(text.data() + text.size()) {}

    bool AtEnd() const noexcept { return Next == End; }

    std::span<std::uint8_t> Take() {
        if (LineFeed < Next) {
            LineFeed = Find('\n', Next, End);
        }
        std::uint8_t* const first = Next;
        std::uint8_t* const stop = Find('\r', first, LineFeed);
        Next = stop;
        if (stop != LineFeed) {
            ++Next;
        }
        if (Next == LineFeed && Next != End) {
            ++Next;
        }
        return {first, stop};
    }

private:
    static std::uint8_t* Find(char c, std::uint8_t* from, std::uint8_t* to) {
        void* const hit = std::memchr(from, c, static_cast<std::size_t>(to - from));
        return hit != nullptr ? static_cast<std::uint8_t*>(hit) : to;
    }

    std::uint8_t* Next;
    std::uint8_t* End;
    std::uint8_t* LineFeed = nullptr; // the first at or behind Next, once one was looked for
};

// The data of one run of records. There is room for the last line of a segment to run over its end.
class TSegment {
public:
    TSegment() : Bytes(65536 + 512) {}

    void Add(const THexRecord& record) {
        record.CopyTo(Bytes.data() + record.Address);
        MaxAddress = std::max<std::int32_t>(MaxAddress, record.Address + record.ByteCount);
        MinOffset = std::min<std::int32_t>(MinOffset, record.Address);
    }

    void Restart(std::uint32_t base) {
        if (MinOffset < MaxAddress) {
            std::fill(Bytes.begin() + MinOffset, Bytes.begin() + MaxAddress, std::uint8_t{0});
        }
        Base = base;
        MaxAddress = 0;
        MinOffset = std::numeric_limits<std::int32_t>::max();
    }

    bool IsEmpty() const noexcept { return MaxAddress == 0; }

    void Deliver(const TByteConsumer& consumer) const {
        const std::int64_t count = std::int64_t{MaxAddress} - MinOffset;
        const std::uint8_t* const first = Bytes.data() + (count > 0 ? MinOffset : 0);
        consumer(first, count, std::int64_t{Base} + MinOffset);
    }

private:
    std::vector<std::uint8_t> Bytes;
    std::uint32_t Base = 0;
    std::int32_t MaxAddress = 0;
    std::int32_t MinOffset = std::numeric_limits<std::int32_t>::max();
};

} // namespace

bool THexRecord::Parse(std::span<std::uint8_t> line) {
    line = line.first(std::min(line.size(), LineLimit));
    if (line.size() < DataColumn || line[0] != ':') {
        return false;
    }
    ByteCount = static_cast<std::uint8_t>(ReadDigits(line, 1, 2));
    Address = static_cast<std::uint16_t>(ReadDigits(line, 3, 4));
    RecordType = static_cast<std::uint8_t>(ReadDigits(line, 7, 2));

    const std::size_t behind = DataColumn + 2 * std::size_t{ByteCount};
    const unsigned checksum = ReadDigits(line, behind, 2);
    std::size_t stored = std::min<std::size_t>(ByteCount, (line.size() - DataColumn) / 2);
    const bool oneDigitLeft = stored < ByteCount && (line.size() - DataColumn) % 2 != 0;
    const unsigned lastByte = oneDigitLeft ? ReadDigits(line, line.size() - 1, 1) : 0;
    std::uint8_t* const data = line.data() + DataColumn;
    unsigned sum = DecodePairs(data, stored, data);
    if (oneDigitLeft) {
        data[stored++] = static_cast<std::uint8_t>(lastByte);
    }
    Data = data;
    Stored = static_cast<std::uint8_t>(stored);
    sum += lastByte + ByteCount + (Address >> 8U) + Address + RecordType + checksum;
    Checksum = static_cast<std::uint8_t>(sum);
    return Checksum == 0;
}

void THexRecord::CopyTo(std::uint8_t* bytes) const noexcept {
    std::uint8_t* const behind = std::copy(Data, Data + Stored, bytes);
    std::fill(behind, bytes + ByteCount, std::uint8_t{0});
}

THexLoader::THexLoader(IHostClient& host, std::string fileName)
    : Host(host), FileName(std::move(fileName)) {}

void THexLoader::SetText(std::span<const std::uint8_t> text) {
    Lines.Bytes = std::make_unique_for_overwrite<std::uint8_t[]>(text.size());
    Lines.Size = text.size();
    std::copy(text.begin(), text.end(), Lines.Bytes.get());
    HaveLines = true;
}

bool THexLoader::TakeLines() {
    if (!HaveLines) {
        auto file = ReadObjectFile(FileName);
        if (!file) {
            ShowError(Host, "File " + FileName + " Not Found");
            return false;
        }
        Lines = std::move(*file);
    }
    HaveLines = false; // records are decoded in place: a text can be read once
    return true;
}

bool THexLoader::ReadRecords(THexRecords& list, bool keepAllTypes) {
    if (!TakeLines()) {
        return false;
    }
    list.reserve(list.size() + Lines.Size / 40);
    TLineCutter lines(Lines.View());
    bool good = true;
    for (std::int64_t number = 1; !lines.AtEnd(); ++number) {
        THexRecord record;
        if (!record.Parse(lines.Take())) {
            ++ErrorCount;
            if (good) {
                ShowError(Host, "Hex File Error : Line " + std::to_string(number));
            }
            good = false;
        } else if (keepAllTypes || record.RecordType == THexRecord::DataRecord) {
            list.push_back(record);
        }
    }
    return good;
}

void THexLoader::ShowFailure() const {
    ShowError(Host, "Errors Found When Loading Hex File: " + std::string(FileNameOf(FileName)) +
                        "\r\r     Lines With Errors: " + std::to_string(ErrorCount));
}

void THexLoader::WriteToImage(const THexRecord& record, TMemoryImage& image,
                              std::uint32_t wordSize) {
    const std::uint32_t first = wordSize == 4 ? record.Address / 4U : record.Address;
    const std::uint32_t count = record.ByteCount / wordSize;
    for (std::uint32_t i = 0; i < count; ++i) {
        TMemoryWord word = 0;
        for (std::uint32_t byte = 0; byte < wordSize; ++byte) {
            word |= TMemoryWord{record.DataAt(i * wordSize + byte)} << (8 * byte);
        }
        if (first + i < image.size()) {
            image[first + i] = word;
        }
    }
    if (count > 0) {
        MaxAddress = std::max(MaxAddress, record.Address + count);
    }
}

bool THexLoader::LoadToImage(TMemoryImage& image, std::uint32_t wordSize) {
    image.fill(0);
    ErrorCount = 0;
    MaxAddress = 0;
    THexRecords list;
    const bool good = ReadRecords(list, false);
    if (wordSize >= 1 && wordSize <= 4) {
        for (const THexRecord& record : list) {
            WriteToImage(record, image, wordSize);
        }
    }
    if (!good) {
        ShowFailure();
    }
    return good;
}

void THexLoader::DeliverSegments(const THexRecords& list, const TByteConsumer& consumer) {
    TSegment segment;
    for (const THexRecord& record : list) {
        if (record.RecordType == THexRecord::DataRecord) {
            segment.Add(record);
        } else if (record.RecordType == THexRecord::ExtendedLinearAddress) {
            if (!segment.IsEmpty()) {
                segment.Deliver(consumer);
            }
            segment.Restart((std::uint32_t{record.DataAt(0)} << 24U) |
                            (std::uint32_t{record.DataAt(1)} << 16U));
        } else if (record.RecordType == THexRecord::ExtendedSegmentAddress &&
                   (record.DataAt(0) | record.DataAt(1)) != 0) {
            ++IgnoredSegments;
        }
    }
    segment.Deliver(consumer);
}

bool THexLoader::LoadToConsumer(const TByteConsumer& consumer) {
    if (!consumer) {
        return false;
    }
    ErrorCount = 0;
    IgnoredSegments = 0;
    THexRecords list;
    if (!ReadRecords(list, true)) {
        ShowFailure();
        return false;
    }
    DeliverSegments(list, consumer);
    return true;
}

bool LoadHexToImage(IHostClient& host, const std::string& fileName, TMemoryImage& image,
                    std::uint32_t wordSize, std::int32_t& errorCount, std::int64_t& maxAddress) {
    THexLoader loader(host, fileName);
    const bool good = loader.LoadToImage(image, wordSize);
    errorCount = loader.ErrorCount;
    maxAddress = loader.MaxAddress;
    return good;
}

bool LoadHexToConsumer(IHostClient& host, const std::string& fileName,
                       const TBlockConsumer& consumer) {
    return LoadHexAsBytes(host, fileName, AsWords(consumer));
}

bool LoadHexAsBytes(IHostClient& host, const std::string& fileName, const TByteConsumer& consumer) {
    return THexLoader(host, fileName).LoadToConsumer(consumer);
}

} // namespace vorel
