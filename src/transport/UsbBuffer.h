// The batch of one pod: builds the command stream, sends it and decodes the answers.
#pragma once

#include "transport/UsbPodProtocol.h"
#include "vorel/Types.h"

#include <array>
#include <cstddef>
#include <string>

namespace vorel {

class TUsbJtagManager;

// Owned by its TUsbPort. Whatever a pod answers, nothing is read or written outside the arrays:
// items that find no room behind a batch that was kept (see Transfer) are counted but not stored.
class TUsbBuffer {
public:
    static constexpr std::int32_t Capacity = 512; // bytes of a batch
    static constexpr std::int32_t FullAt = 510;   // the end-of-batch item still fits

    // `manager` must outlive the buffer.
    TUsbBuffer(TUsbJtagManager& manager, std::int32_t deviceIndex) noexcept
        : Manager(manager), DeviceIndex(deviceIndex) {}

    // Adds an item. An item with `answered` gets two bytes from the pod.
    void Add(std::uint8_t opcode, std::uint8_t operand, bool answered = false) noexcept {
        Store(opcode, operand, answered);
        Packing = false;
    }

    // Adds one clock; up to four in a row with the same flags share an item.
    void AddClock(bool select, bool tms, bool tdi, bool capture) noexcept {
        const auto pair = static_cast<std::uint8_t>((tms ? 2U : 0U) | (tdi ? 1U : 0U));
        if (Packing && PackSelect == select && PackCapture == capture) {
            JoinClock(pair);
        } else {
            OpenClock(pair, select, capture);
        }
    }

    // Bytes waiting to be sent.
    std::int32_t GetWriteLen() const noexcept { return WriteLen; }
    bool IsFull() const noexcept { return WriteLen >= FullAt; }
    // The last item still takes clocks of the same kind.
    bool TakesClocks() const noexcept { return Packing; }

    // Sends what waits, reads the answers and appends their text to `reversed`, last character
    // first: bit 0 of the first capture comes first, an identity's second character before its
    // first. False when the pod failed four times in writing or in reading; nothing is appended
    // then. A transfer that moves no byte counts as a failure.
    //
    // A failure in writing drops the batch. A failure in reading does not clear the place of the
    // next item: the pod then gets the start of the old stream again for each further batch, until
    // a transfer succeeds.
    bool Transfer(std::string& reversed);

    // Why the last transfer failed: a status of UsbStatus.h, 0 when it did not.
    std::uint32_t GetLastError() const noexcept { return LastError; }

private:
    void Store(std::uint8_t opcode, std::uint8_t operand, bool answered) noexcept {
        if (WritePos < Capacity) {
            WriteData[static_cast<std::size_t>(WritePos)] = operand;
            WriteData[static_cast<std::size_t>(WritePos) + 1] = opcode;
            WritePos += 2;
        }
        WriteLen += 2;
        ExpectedRead += answered ? 2 : 0;
    }
    void OpenClock(std::uint8_t pair, bool select, bool capture) noexcept {
        PackPos = WritePos;
        Packing = true;
        PackSelect = select;
        PackCapture = capture;
        PackCount = 1;
        PackByte = pair;
        Store(ClockOpcode(), pair, capture);
    }
    void JoinClock(std::uint8_t pair) noexcept {
        PackByte = static_cast<std::uint8_t>(PackByte | (pair << (2 * PackCount)));
        ++PackCount;
        if (PackPos < Capacity) {
            WriteData[static_cast<std::size_t>(PackPos)] = PackByte;
            WriteData[static_cast<std::size_t>(PackPos) + 1] = ClockOpcode();
        }
        Packing = PackCount < 4;
    }
    std::uint8_t ClockOpcode() const noexcept {
        return static_cast<std::uint8_t>(UsbPodOpcode::Clocks | PackCount |
                                         (PackSelect ? UsbPodOpcode::SelectFlag : 0) |
                                         (PackCapture ? UsbPodOpcode::CaptureFlag : 0));
    }

    bool WriteBatch();
    bool ReadAnswers();
    void Decode(std::int32_t total, std::string& reversed) const;
    void Clear() noexcept;

    TUsbJtagManager& Manager;
    std::int32_t DeviceIndex;
    std::array<std::uint8_t, Capacity> WriteData{};
    // Each read asks for a whole batch behind what has come already, hence the second half.
    std::array<std::uint8_t, 2 * static_cast<std::size_t>(Capacity)> ReadData{};
    std::int32_t ExpectedRead = 0; // bytes of answer that the waiting stream will cause
    std::int32_t WritePos = 0;     // place of the next item, even
    std::int32_t PackPos = 0;      // place of the clock item being packed
    bool Packing = false;          // that item takes more clocks
    bool PackCapture = false;
    bool PackSelect = false;
    std::int32_t PackCount = 0; // clocks in that item, 1 to 4
    std::uint8_t PackByte = 0;  // its operand
    std::int32_t WriteLen = 0;  // bytes waiting to be sent
    std::uint32_t LastError = 0;
};

} // namespace vorel
