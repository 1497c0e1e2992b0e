#include "simulator/PodFirmware.h"

#include <algorithm>

namespace vorel::sim {

namespace {

constexpr std::uint8_t CaptureFlag = 0x80;
constexpr std::uint8_t SelectFlag = 0x08;
constexpr std::uint8_t ClockFamily = 0x60;
constexpr std::uint8_t SingleFamily = 0x70;

} // namespace

bool TPodFirmware::Write(const std::uint8_t* data, std::size_t count) {
    for (std::size_t i = 0; i < count; ++i) {
        if (HaveOperand) {
            Execute(Operand, data[i]);
        } else {
            Operand = data[i];
        }
        HaveOperand = !HaveOperand;
    }
    return CollectAnswers();
}

std::size_t TPodFirmware::Read(std::uint8_t* data, std::size_t count) {
    const std::size_t taken = std::min(count, Answers.size());
    const auto end = Answers.begin() + static_cast<std::ptrdiff_t>(taken);
    std::copy(Answers.begin(), end, data);
    Answers.erase(Answers.begin(), end);
    return taken;
}

void TPodFirmware::Reset() {
    Current = PodState{};
    HaveOperand = false;
    Pending.clear();
    Answers.clear();
}

std::string TPodFirmware::ErrorText() const {
    for (std::size_t slot = 0; slot < NoSlot; ++slot) {
        const IJtagLines* const lines = LinesAt(slot);
        if (lines != nullptr && !lines->ErrorText().empty()) {
            return lines->ErrorText();
        }
    }
    return {};
}

void TPodFirmware::Execute(std::uint8_t operand, std::uint8_t opcode) {
    ++Current.Items;
    if (ExecuteSetting(operand, opcode)) {
        return;
    }
    const bool capture = (opcode & CaptureFlag) != 0;
    const unsigned select = (opcode & SelectFlag) != 0 ? 1 : 0;
    const unsigned count = opcode & 7U;
    const unsigned family = opcode & 0x70U;
    if (family == ClockFamily && count >= 1 && count <= 4) {
        ExecuteClocks(operand, count, select, capture);
    } else if (family == SingleFamily && count == 1) {
        ExecuteTdi((operand & 1) != 0, select, capture);
    } else {
        ++Current.UnknownItems;
    }
}

bool TPodFirmware::ExecuteSetting(std::uint8_t operand, std::uint8_t opcode) {
    switch (opcode) {
    case 0x00:
        Pending.push_back({NoSlot, 0, {'1', '1'}});
        return true;
    case 0x10:
        ++Current.Batches;
        return true;
    case 0x20:
        Current.DelayTicks += operand;
        return true;
    case 0x41:
        Current.TimingA = operand;
        return true;
    case 0x42:
        Current.TimingB = operand;
        return true;
    case 0x44:
        Current.TimingD = operand;
        return true;
    case 0x50:
        Current.Sessions += operand != 0 && !Current.Session ? 1 : 0;
        Current.Session = operand != 0;
        return true;
    case 0x51:
        SetTms((operand & 1) != 0);
        return true;
    case 0x55:
        Current.Mode = operand != 0 ? 1 : 0;
        return true;
    default:
        return false;
    }
}

void TPodFirmware::ExecuteClocks(std::uint8_t operand, unsigned count, unsigned select,
                                 bool capture) {
    Current.Clocks[select] += count;
    Current.ClocksOutsideSession += Current.Session ? 0 : count;
    IJtagLines* const lines = LinesAt(SlotOf(select));
    for (unsigned k = 0; lines != nullptr && k < count; ++k) {
        const bool tdi = (operand >> (2 * k) & 1) != 0;
        const bool tms = (operand >> (2 * k + 1) & 1) != 0;
        capture ? lines->ClockSampled(tms, tdi) : lines->Clock(tms, tdi);
    }
    if (capture) {
        ExpectBits(select, count);
    }
}

void TPodFirmware::ExecuteTdi(bool level, unsigned select, bool capture) {
    IJtagLines* const lines = LinesAt(SlotOf(select));
    if (lines != nullptr) {
        lines->SetTdi(level);
    }
    if (!capture) {
        return;
    }
    if (lines != nullptr) {
        lines->Sample();
    }
    ExpectBits(select, 1);
}

// The item has no select: TMS goes to both sets, where it is also the chip select of an SPI bus.
void TPodFirmware::SetTms(bool level) {
    for (unsigned select = 0; select < 2; ++select) {
        if (IJtagLines* const lines = LinesAt(SlotOf(select))) {
            lines->SetTms(level);
        }
    }
}

void TPodFirmware::ExpectBits(unsigned select, unsigned count) {
    if (LinesAt(SlotOf(select)) != nullptr) {
        Pending.push_back({SlotOf(select), count, {}});
    } else {
        Pending.push_back({NoSlot, 0, {0, static_cast<std::uint8_t>(0xFF00U >> count)}});
    }
}

bool TPodFirmware::CollectAnswers() {
    std::array<std::vector<std::uint8_t>, NoSlot> samples;
    bool reached = true;
    for (std::size_t slot = 0; slot < NoSlot; ++slot) {
        if (IJtagLines* const lines = LinesAt(slot)) {
            reached = lines->Finish(samples[slot]) && reached;
        }
    }
    std::array<std::size_t, NoSlot> used{};
    for (const PendingAnswer& answer : Pending) {
        if (!reached) {
            break;
        }
        if (answer.Slot == NoSlot) {
            AddAnswer(answer.Bytes[0], answer.Bytes[1]);
            continue;
        }
        unsigned bits = 0;
        for (unsigned k = 0; k < answer.Bits; ++k) {
            bits |= static_cast<unsigned>(samples[answer.Slot].at(used[answer.Slot]++)) << k;
        }
        AddAnswer(0, static_cast<std::uint8_t>(bits << (8 - answer.Bits)));
    }
    Pending.clear();
    return reached;
}

void TPodFirmware::AddAnswer(std::uint8_t first, std::uint8_t second) {
    if (Answers.size() + 2 <= MaxAnswerBytes) {
        Answers.push_back(first);
        Answers.push_back(second);
    }
}

} // namespace vorel::sim
