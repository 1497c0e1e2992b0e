#include "simulator/SpiMemory.h"

#include <algorithm>
#include <utility>

namespace vorel::sim {

namespace {

constexpr std::uint8_t PageProgram = 0x02;
constexpr std::uint8_t ReadData = 0x03;
constexpr std::uint8_t WriteDisable = 0x04;
constexpr std::uint8_t ReadStatus = 0x05;
constexpr std::uint8_t WriteEnable = 0x06;
constexpr std::uint8_t ReadId = 0x9F;
constexpr std::uint8_t ChipErase = 0xC7;

} // namespace

TSpiMemory::TSpiMemory(std::string name, std::uint32_t id)
    : Label(std::move(name)), Id(id), Memory(ByteCount, 0xFF) {}

void TSpiMemory::SetLines(bool tck, bool tms, bool tdi) {
    if (Selected == tms) {
        tms ? EndCommand() : BeginCommand();
    }
    const bool before = std::exchange(Sck, tck);
    if (!Selected || before == tck) {
        return;
    }
    if (tck) {
        InByte = static_cast<std::uint8_t>(InByte << 1 | (tdi ? 1 : 0));
        if (++BitIndex == 8) {
            BitIndex = 0;
            TakeByte(InByte);
        }
    } else {
        Output = ToLevel((OutByte >> (7 - BitIndex) & 1) != 0);
    }
}

void TSpiMemory::BeginCommand() {
    Selected = true;
    Output = Level::Low;
    BitIndex = 0;
    ByteIndex = 0;
    OutByte = 0;
    Address = 0;
}

void TSpiMemory::EndCommand() {
    Selected = false;
    Output = Level::Released;
    if (ByteIndex == 1 && Command == ChipErase && WriteEnabled) {
        std::fill(Memory.begin(), Memory.end(), std::uint8_t{0xFF});
    }
    if (ByteIndex > 0 && (Command == PageProgram || Command == ChipErase)) {
        WriteEnabled = false;
    }
}

void TSpiMemory::TakeByte(std::uint8_t value) {
    if (ByteIndex == 0) {
        Command = value;
        if (value == WriteEnable || value == WriteDisable) {
            WriteEnabled = value == WriteEnable;
        }
    }
    OutByte = NextOutput(value);
    ++ByteIndex;
}

std::uint8_t TSpiMemory::NextOutput(std::uint8_t value) {
    switch (Command) {
    case ReadId:
        return static_cast<std::uint8_t>(ByteIndex < 3 ? Id >> (16 - 8 * ByteIndex) : 0);
    case ReadStatus:
        return WriteEnabled ? std::uint8_t{2} : std::uint8_t{0};
    case ReadData:
    case PageProgram:
        break;
    default:
        return value;
    }
    if (ByteIndex >= 1 && ByteIndex <= 3) {
        Address = Address << 8 | value;
    } else if (ByteIndex > 3 && Command == PageProgram) {
        Program(value);
    }
    return Command == ReadData && ByteIndex >= 3 ? Memory[Address++ % ByteCount] : std::uint8_t{0};
}

void TSpiMemory::Program(std::uint8_t value) {
    if (WriteEnabled) {
        Memory[Address % ByteCount] &= value;
    }
    Address = (Address & ~0xFFU) | ((Address + 1) & 0xFFU);
}

} // namespace vorel::sim
