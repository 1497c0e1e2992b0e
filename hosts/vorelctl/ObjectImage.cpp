#include "hosts/vorelctl/ObjectImage.h"

#include "support/Text.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <numeric>
#include <utility>

namespace vorel::host {

namespace {

constexpr std::size_t PartBytes = 16384; // of a block write between two reports of progress
constexpr std::size_t RowBytes = 16;

[[noreturn]] void Fail(const std::string& text) {
    throw ECommandFailure(ExitStatus::NothingFound, text);
}

void Append(TObjectImage& image, const std::uint8_t* bytes, std::int64_t count,
            std::int64_t address) {
    if (count < 1) {
        return;
    }
    auto& blocks = image.Blocks;
    const bool follows =
        !blocks.empty() &&
        blocks.back().Address + static_cast<std::int64_t>(blocks.back().Bytes.size()) == address;
    if (!follows) {
        blocks.push_back({address, {}});
    }
    std::vector<std::uint8_t>& held = blocks.back().Bytes;
    held.insert(held.end(), bytes, bytes + count);
}

// Calls `work` with the parts of all blocks: address, and the bytes of the part.
template<class Work>
void ForEachPart(const TObjectImage& image, std::int64_t offset, const char* what,
                 const TProgress& progress, Work work) {
    const std::size_t total = std::max<std::size_t>(image.ByteCount(), 1);
    std::size_t done = 0;
    for (const TObjectImage::TBlock& block : image.Blocks) {
        for (std::size_t start = 0; start < block.Bytes.size(); start += PartBytes) {
            progress(std::string(what) + " " + std::to_string(done * 100 / total) + " %");
            const std::span<const std::uint8_t> rest =
                std::span<const std::uint8_t>(block.Bytes).subspan(start);
            const auto part = rest.first(std::min(rest.size(), PartBytes));
            work(block.Address + offset + static_cast<std::int64_t>(start), part);
            done += part.size();
        }
    }
    progress("");
}

std::string HexLine(std::uint8_t type, std::uint32_t address, std::span<const std::uint8_t> data) {
    std::vector<std::uint8_t> bytes{static_cast<std::uint8_t>(data.size()),
                                    static_cast<std::uint8_t>(address >> 8),
                                    static_cast<std::uint8_t>(address), type};
    bytes.insert(bytes.end(), data.begin(), data.end());
    const auto sum = std::accumulate(bytes.begin(), bytes.end(), 0U);
    bytes.push_back(static_cast<std::uint8_t>(0U - sum));
    std::string line = ":";
    for (const std::uint8_t byte : bytes) {
        line += ToHex(byte, 2);
    }
    return line + "\r\n";
}

// Intel Hex with 16 bytes to a line; each 64 KiB has its extended address record.
std::string AsHex(std::int64_t address, std::span<const std::uint8_t> bytes) {
    std::string text;
    std::int64_t upper = 0;
    while (!bytes.empty()) {
        if (address >> 16 != upper) {
            upper = address >> 16;
            const std::array<std::uint8_t, 2> high{static_cast<std::uint8_t>(upper >> 8),
                                                   static_cast<std::uint8_t>(upper)};
            text += HexLine(4, 0, high);
        }
        const auto toBorder = static_cast<std::size_t>(0x10000 - (address & 0xFFFF));
        const auto line = bytes.first(std::min({RowBytes, toBorder, bytes.size()}));
        text += HexLine(0, static_cast<std::uint32_t>(address & 0xFFFF), line);
        address += static_cast<std::int64_t>(line.size());
        bytes = bytes.subspan(line.size());
    }
    return text + HexLine(1, 0, {});
}

} // namespace

std::size_t TObjectImage::ByteCount() const noexcept {
    return std::accumulate(
        Blocks.begin(), Blocks.end(), std::size_t{0},
        [](std::size_t sum, const TBlock& block) { return sum + block.Bytes.size(); });
}

void CheckDelivery(IHostClient& host, const std::string& fileName, bool loaded,
                   const TObjectFileReport& report) {
    if (!report.Readable) {
        throw ECommandFailure(ExitStatus::EnvironmentFault, fileName + ": " + report.Remark);
    }
    if (!loaded) {
        Fail(fileName + " was not loaded." + (report.Remark.empty() ? "" : " " + report.Remark));
    }
    if (report.BlockCount == 0) {
        Fail(fileName + " delivers nothing. " + report.Remark);
    }
    if (!report.Remark.empty()) {
        MessageBoxAnswer answer{};
        host.ShowMessageBox(MessageBoxKind::Warning, u"Warning", ToWide(report.Remark), answer);
    }
}

TObjectImage ReadObjectImage(IHostClient& host, const std::string& fileName) {
    TObjectImage image;
    TObjectFileReport report;
    const auto take = [&](const std::uint8_t* bytes, std::int64_t count, std::int64_t address) {
        Append(image, bytes, count, address);
    };
    const bool loaded = LoadObjectFileAsBytes(host, fileName, take, &report);
    if (report.Misplaced) {
        Fail(fileName + " was not loaded. " + report.Remark);
    }
    CheckDelivery(host, fileName, loaded, report);
    return image;
}

void WriteObjectImage(const TDebugTarget& target, const TObjectImage& image, std::int64_t offset,
                      const TProgress& progress) {
    const std::int64_t size = target.MemoryBytes();
    for (const TObjectImage::TBlock& block : image.Blocks) {
        const std::int64_t address = block.Address + offset;
        if (address < 0 || address > size || std::cmp_greater(block.Bytes.size(), size - address)) {
            Fail("The block of " + std::to_string(block.Bytes.size()) + " bytes at " +
                 ToHex(static_cast<std::uint64_t>(address), 8) +
                 " does not fit in the memory, which ends at " +
                 ToHex(static_cast<std::uint64_t>(size), 8) + ".");
        }
        target.CheckBlock(address, block.Bytes.size());
    }
    ForEachPart(image, offset, "Loading", progress,
                [&](std::int64_t address, std::span<const std::uint8_t> part) {
                    target.WriteBytes(address, part);
                });
}

void VerifyObjectImage(const TDebugTarget& target, const TObjectImage& image, std::int64_t offset,
                       const TProgress& progress) {
    ForEachPart(image, offset, "Verifying", progress,
                [&](std::int64_t address, std::span<const std::uint8_t> part) {
                    const std::vector<std::uint8_t> seen = target.ReadBytes(address, part.size());
                    const auto difference = std::mismatch(part.begin(), part.end(), seen.begin());
                    if (difference.first != part.end()) {
                        const std::int64_t place = address + (difference.first - part.begin());
                        Fail("The memory differs at " +
                             ToHex(static_cast<std::uint64_t>(place), 8) + ": " +
                             ToHex(*difference.second, 2) + " in place of " +
                             ToHex(*difference.first, 2) + ".");
                    }
                });
}

void SaveMemory(const TDebugTarget& target, std::int64_t address, std::size_t count,
                const std::string& fileName) {
    const std::vector<std::uint8_t> bytes = target.ReadBytes(address, count);
    const bool isHex =
        fileName.size() > 4 && SameText(fileName.substr(fileName.size() - 4), ".hex");
    std::ofstream file(fileName, std::ios::binary);
    if (isHex) {
        file << AsHex(address, bytes);
    } else {
        file.write(reinterpret_cast<const char*>(bytes.data()),
                   static_cast<std::streamsize>(bytes.size()));
    }
    file.close();
    if (!file) {
        Fail(fileName + " cannot be written.");
    }
}

std::string DumpMemory(const TDebugTarget& target, std::int64_t address, std::size_t count,
                       std::size_t size) {
    const std::vector<std::uint8_t> bytes = target.ReadBytes(address, count * size);
    const bool big = target.IsBigEndian();
    std::string text;
    for (std::size_t row = 0; row < bytes.size(); row += RowBytes) {
        const std::size_t end = std::min(bytes.size(), row + RowBytes);
        std::string items;
        std::string characters;
        for (std::size_t i = row; i < end; i += size) {
            std::uint32_t value = 0;
            for (std::size_t k = 0; k < size; ++k) {
                value |= std::uint32_t{bytes[i + k]} << (8 * (big ? size - 1 - k : k));
            }
            items += " " + ToHex(value, static_cast<int>(2 * size));
        }
        for (std::size_t i = row; i < end; ++i) {
            characters += bytes[i] >= 32 && bytes[i] < 127 ? static_cast<char>(bytes[i]) : '.';
        }
        const std::size_t width = RowBytes / size * (2 * size + 1);
        text += ToHex(static_cast<std::uint64_t>(address) + row, 8) + " " + PadRight(items, width) +
                "  " + characters + "\n";
    }
    return text;
}

} // namespace vorel::host
