#include "simulator/BoardController.h"

#include "support/Errors.h"

#include <utility>

namespace vorel::sim {

namespace {

constexpr unsigned AddressInstruction = 11;
constexpr unsigned ValueInstruction = 10;
constexpr std::uint8_t WriteFlag = 0x80;

bool IsInstruction(const BitText& instruction, unsigned number) noexcept {
    for (std::size_t i = 0; i < instruction.size(); ++i) {
        const bool expected = i < 32 && (number >> i & 1) != 0;
        if ((instruction[instruction.size() - 1 - i] == '1') != expected) {
            return false;
        }
    }
    return true;
}

TapSettings Checked(TapSettings settings) {
    if (settings.IrLength < 4) {
        throw EVorelError(StatusBadArgument, "Board controller \"" + settings.Name +
                                                 "\" needs an instruction register of at least 4 "
                                                 "bits for its instructions 10 and 11");
    }
    return settings;
}

} // namespace

TBoardController::TBoardController(TapSettings settings, std::function<void(std::uint8_t)> selected)
    : TTapDevice(Checked(std::move(settings))), Selected(std::move(selected)) {}

TDataRegister& TBoardController::SelectRegister(const BitText& instruction) {
    if (IsInstruction(instruction, AddressInstruction)) {
        return AddressRegister;
    }
    if (IsInstruction(instruction, ValueInstruction)) {
        return ValueRegister;
    }
    return TTapDevice::SelectRegister(instruction);
}

std::uint8_t TBoardController::ReadAddressed() {
    const std::uint8_t address = AddressRegister.Address;
    std::uint8_t value = Register(address);
    if ((address & WriteFlag) != 0) {
        return value;
    }
    ++Reads;
    if (address == MultiplexerRegister && BusyLeft > 0) {
        --BusyLeft;
        value |= 1;
    }
    return value;
}

void TBoardController::WriteAddressed(std::uint8_t value) {
    const std::uint8_t address = AddressRegister.Address;
    if ((address & WriteFlag) == 0) {
        return;
    }
    ++Writes;
    Registers[address & 0x7F] = value;
    if ((address & 0x7F) == MultiplexerRegister) {
        BusyLeft = BusyReads;
        Selected(value);
    }
}

} // namespace vorel::sim
