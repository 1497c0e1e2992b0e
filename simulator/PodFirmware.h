// The firmware of a USB JTAG pod: takes the command stream, drives JTAG lines and keeps the answers
// until they are read.
//
// The stream is made of two-byte items, operand first (the pod's protocol):
//
//   opcode      operand             answer   meaning
//   00          0                   "11"     identify
//   10          0                            end of batch
//   20          ticks                        wait
//   41 42 44    value                        first, second, third timing value
//   50          1 or 0                       session on, off
//   51          level                        set TMS of both sets of lines, no clock
//   55          0 or 1                       pod mode
//   60+n E0+n   pairs               E0: bits n = 1 to 4 clocks; E0 samples TDO before each rising
//   71 F1       TDI level           F1: bit  set TDI without a clock; F1 samples TDO once
//
// 08 added to an opcode of the last two lines means the second set of lines (select 1). Clock k
// takes TDI from bit 2k and TMS from bit 2k+1 of its operand. A bit answer has two bytes; the bits
// stand at the top of the second, the first sampled lowest. An item that is not in this table is
// counted and has no effect and no answer.
//
// Which lines a select means depends on the pod mode. Lines that are not there read as 1.
#pragma once

#include "simulator/JtagLines.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <string>
#include <vector>

namespace vorel::sim {

// The lines of a pod by mode and select; null where nothing is connected. Not owned. No two entries
// may be the same object.
struct PodLines {
    std::array<std::array<IJtagLines*, 2>, 2> ByModeAndSelect{};
};

// What the stream has told the pod so far.
struct PodState {
    bool Session = false;
    std::uint8_t TimingA = 0;
    std::uint8_t TimingB = 0;
    std::uint8_t TimingD = 0;
    std::uint8_t Mode = 0;
    std::uint64_t DelayTicks = 0;           // sum of all waits
    std::uint64_t Sessions = 0;             // times that a session was opened
    std::uint64_t Batches = 0;              // end-of-batch items
    std::uint64_t Items = 0;                // items of all kinds
    std::uint64_t UnknownItems = 0;         // items that are not in the table
    std::uint64_t ClocksOutsideSession = 0; // clocks are carried out all the same
    std::array<std::uint64_t, 2> Clocks{};  // TCK cycles by select
};

class TPodFirmware final {
public:
    // Answers that nobody reads are kept up to this number of bytes; later ones are lost.
    static constexpr std::size_t MaxAnswerBytes = 65536;

    explicit TPodFirmware(const PodLines& lines) : Lines(lines) {}

    // Interprets bytes of the stream; an item may be split over two calls. False when lines could
    // not be driven: no answers are added then.
    bool Write(const std::uint8_t* data, std::size_t count);
    std::size_t AnswerBytes() const noexcept { return Answers.size(); }
    // Takes up to `count` bytes of answers; gives how many it took.
    std::size_t Read(std::uint8_t* data, std::size_t count);
    // Forgets answers that wait.
    void DropAnswers() noexcept { Answers.clear(); }
    // As after power-up; the target keeps its state.
    void Reset();

    const PodState& State() const noexcept { return Current; }
    // Why Write failed; empty when all lines work.
    std::string ErrorText() const;

private:
    // An answer whose bits may still be on their way: `Bits` samples from lines `Slot`, or the two
    // bytes given when Slot is NoSlot.
    struct PendingAnswer {
        std::size_t Slot;
        unsigned Bits;
        std::array<std::uint8_t, 2> Bytes;
    };
    static constexpr std::size_t NoSlot = 4;

    void Execute(std::uint8_t operand, std::uint8_t opcode);
    bool ExecuteSetting(std::uint8_t operand, std::uint8_t opcode);
    void ExecuteClocks(std::uint8_t operand, unsigned count, unsigned select, bool capture);
    void ExecuteTdi(bool level, unsigned select, bool capture);
    void SetTms(bool level);
    void ExpectBits(unsigned select, unsigned count);
    bool CollectAnswers();
    void AddAnswer(std::uint8_t first, std::uint8_t second);
    std::size_t SlotOf(unsigned select) const noexcept { return Current.Mode * 2U + select; }
    IJtagLines* LinesAt(std::size_t slot) const noexcept {
        return Lines.ByModeAndSelect[slot / 2][slot % 2];
    }

    PodLines Lines;
    PodState Current;
    bool HaveOperand = false;
    std::uint8_t Operand = 0;
    std::vector<PendingAnswer> Pending;
    std::deque<std::uint8_t> Answers;
};

} // namespace vorel::sim
