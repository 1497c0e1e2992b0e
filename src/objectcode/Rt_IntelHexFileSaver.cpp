#include "objectcode/Rt_IntelHexFileSaver.h"

#include "objectcode/MemoryWords.h"
#include "support/Errors.h"
#include "support/Text.h"

#include <algorithm>
#include <array>
#include <span>

namespace vorel {

namespace {

class TWaitCursor {
public:
    explicit TWaitCursor(IHostClient& host) : Host(host) { Host.BeginWaitCursor(); }
    ~TWaitCursor() { Host.EndWaitCursor(); }
    TWaitCursor(const TWaitCursor&) = delete;
    TWaitCursor& operator=(const TWaitCursor&) = delete;

private:
    IHostClient& Host;
};

void AppendByte(std::string& text, unsigned value) {
    constexpr const char* digits = "0123456789ABCDEF";
    text.push_back(digits[(value >> 4U) & 0xFU]);
    text.push_back(digits[value & 0xFU]);
}

// One record with its line end; only the low byte of each word goes into it.
void AppendRecord(std::string& text, std::uint64_t address, unsigned type,
                  std::span<const TMemoryWord> data) {
    const auto count = static_cast<unsigned>(data.size());
    const auto high = static_cast<unsigned>((address >> 8U) & 0xFFU);
    const auto low = static_cast<unsigned>(address & 0xFFU);
    unsigned sum = 0;
    text.push_back(':');
    for (const unsigned field : {count, high, low, type}) {
        AppendByte(text, field);
        sum += field;
    }
    for (const TMemoryWord word : data) {
        AppendByte(text, word);
        sum += word;
    }
    AppendByte(text, 0U - sum);
    text.append("\r\n");
}

} // namespace

bool SaveMemoryAsHex(IHostClient& host, IMemorySpace* memory, const std::string& fileName,
                     std::int32_t bytesPerLine, std::int64_t readAddress, std::int64_t size,
                     std::int64_t fileAddress) {
    if (memory == nullptr || bytesPerLine < 1 || bytesPerLine > 255) {
        return false;
    }
    const TWaitCursor waiting(host);
    std::array<TMemoryWord, 255> line{};
    std::string text;
    std::int64_t segmentLimit = 65536;
    while (size > 0) {
        if (fileAddress >= segmentLimit) {
            const auto upper = static_cast<std::uint32_t>(fileAddress >> 16);
            AppendRecord(text, 0, 4, std::array{(upper >> 8U) & 0xFFU, upper & 0xFFU});
            segmentLimit = (fileAddress & 0xFFFF0000) + 65536;
        }
        const auto n = static_cast<std::int32_t>(std::min<std::int64_t>(bytesPerLine, size));
        Check(memory->ReadBlock(line.data(), readAddress, n), "Reading the memory");
        const std::span words = std::span(line).first(static_cast<std::size_t>(n));
        AppendRecord(text, static_cast<std::uint64_t>(fileAddress), 0, words);
        size -= n;
        readAddress += n;
        fileAddress += n;
    }
    text.append(":00000001FF\r\n");
    Check(host.SaveTextFile(ToWide(fileName), text), "Saving the Intel Hex file");
    return true;
}

} // namespace vorel
