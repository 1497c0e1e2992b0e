#include "transport/UsbBuffer.h"

#include "transport/UsbJtagManager.h"

#include <algorithm>

namespace vorel {

namespace {

// The fourth failure ends a transfer. The count runs over all its pieces.
constexpr int MaxFailures = 4;

// `count` is what the services say that they moved: never believed beyond what was asked.
std::int32_t Moved(std::uint32_t count, std::int32_t asked) noexcept {
    return static_cast<std::int32_t>(std::min(count, static_cast<std::uint32_t>(asked)));
}

// The bits of an answer in the order in which they were captured.
void AppendBits(std::uint8_t answer, unsigned count, std::string& reversed) {
    for (unsigned bit = 8 - count; bit < 8; ++bit) {
        reversed.push_back(((answer >> bit) & 1U) != 0 ? '1' : '0');
    }
}

} // namespace

bool TUsbBuffer::Transfer(std::string& reversed) {
    if (WriteLen < 1) {
        return true;
    }
    LastError = StatusSuccess;
    const std::int32_t total = std::min(WriteLen, Capacity);
    const bool written = WriteBatch();
    if (written && ExpectedRead > 0) {
        if (!ReadAnswers()) {
            return false;
        }
        Decode(total, reversed);
    }
    Clear();
    return written;
}

bool TUsbBuffer::WriteBatch() {
    WriteLen = std::min(WriteLen, Capacity);
    std::int32_t offset = 0;
    for (int failures = 0; WriteLen > 0;) {
        auto count = static_cast<std::uint32_t>(WriteLen);
        const std::uint32_t status = Manager.Write(DeviceIndex, WriteData.data() + offset, count);
        if (status == StatusSuccess && count > 0) {
            const std::int32_t moved = Moved(count, WriteLen);
            offset += moved;
            WriteLen -= moved;
        } else if (++failures == MaxFailures) {
            LastError = status != StatusSuccess ? status : StatusFailed;
            return false;
        }
    }
    return true;
}

bool TUsbBuffer::ReadAnswers() {
    std::int32_t offset = 0;
    for (int failures = 0; ExpectedRead > 0;) {
        std::uint32_t count = Capacity;
        const std::uint32_t status = Manager.Read(DeviceIndex, ReadData.data() + offset, count);
        if (status == StatusSuccess && count > 0) {
            const std::int32_t moved = Moved(count, Capacity);
            offset += moved;
            ExpectedRead -= moved;
        } else if (++failures == MaxFailures) {
            LastError = status != StatusSuccess ? status : StatusFailed;
            ExpectedRead = 0;
            return false;
        }
    }
    return true;
}

void TUsbBuffer::Decode(std::int32_t total, std::string& reversed) const {
    const std::size_t start = reversed.size();
    std::size_t answer = 0;
    for (std::size_t item = 0; item < static_cast<std::size_t>(total); item += 2) {
        const std::uint8_t opcode = WriteData[item + 1];
        const std::uint8_t first = ReadData[answer];
        const std::uint8_t second = ReadData[answer + 1];
        const auto family = static_cast<std::uint8_t>(opcode & UsbPodOpcode::FamilyMask);
        if (family == UsbPodOpcode::Identify) {
            reversed.push_back(static_cast<char>(second));
            reversed.push_back(static_cast<char>(first));
        } else if (family == UsbPodOpcode::NumberFamily) {
            const std::string number = std::to_string(first + 256 * second);
            reversed.resize(start);
            reversed.append(number.rbegin(), number.rend());
        } else if ((opcode & UsbPodOpcode::CaptureFlag) != 0) {
            AppendBits(second, opcode & UsbPodOpcode::BitCountMask, reversed);
        } else {
            continue;
        }
        answer += 2;
    }
}

void TUsbBuffer::Clear() noexcept {
    WriteLen = 0;
    ExpectedRead = 0;
    WritePos = 0;
    PackPos = 0;
    Packing = false;
    PackCapture = false;
    PackSelect = false;
    PackCount = 0;
    PackByte = 0;
}

} // namespace vorel
