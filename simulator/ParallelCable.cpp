#include "simulator/ParallelCable.h"

#include "support/Errors.h"

namespace vorel::sim {

namespace {

constexpr std::uint8_t InvertedControlBits = 0x0B;
constexpr std::uint8_t InvertedStatusBits = 0x80;
constexpr std::uint8_t ControlLines = 0x0F;
constexpr unsigned LoopDataBit = 6;
constexpr std::uint8_t LoopStatusBits = 0xA0; // Busy and Paper Out

constexpr std::uint8_t WithBits(std::uint8_t value, std::uint8_t bits, bool set) noexcept {
    return static_cast<std::uint8_t>(set ? value | bits : value & ~bits);
}

bool IsOutput(PortLine line) noexcept {
    return line.Register != PortRegister::Status &&
           line.Bit < (line.Register == PortRegister::Control ? 4U : 8U);
}

bool IsInput(PortLine line) noexcept {
    return line.Register == PortRegister::None ||
           (line.Register == PortRegister::Status && line.Bit < 8);
}

} // namespace

void TParallelCable::Connect(const CableWiring& wiring, IWireTarget& target) {
    if (!IsOutput(wiring.Tck) || !IsOutput(wiring.Tms) || !IsOutput(wiring.Tdi) ||
        !IsInput(wiring.Tdo)) {
        throw EVorelError(StatusBadArgument, "the cable has a wire on a line that cannot carry it");
    }
    Connections.push_back({wiring, &target});
    Drive(Connections.back());
}

bool TParallelCable::LevelOf(PortLine line) const noexcept {
    switch (line.Register) {
    case PortRegister::Data:
        return ((Data >> line.Bit) & 1U) != 0;
    case PortRegister::Control:
        return (((Control ^ InvertedControlBits) >> line.Bit) & 1U) != 0;
    default:
        return true;
    }
}

void TParallelCable::Drive(Connection& connection) {
    const bool tck = LevelOf(connection.Wiring.Tck);
    const bool tms = LevelOf(connection.Wiring.Tms);
    const bool tdi = LevelOf(connection.Wiring.Tdi);
    const unsigned lines = (tck ? 4U : 0U) | (tms ? 2U : 0U) | (tdi ? 1U : 0U);
    if (lines != connection.Lines) {
        connection.Lines = lines;
        connection.Target->SetLines(tck, tms, tdi);
    }
}

Status TParallelCable::DriveAll() noexcept {
    return Guard([&] {
        for (Connection& connection : Connections) {
            Drive(connection);
        }
    });
}

Status TParallelCable::Prepare() noexcept {
    ++Counters.Prepares;
    return Failure;
}

Status TParallelCable::GetBaseAddress(std::uint32_t& address) noexcept {
    address = BaseAddress;
    return Failure;
}

Status TParallelCable::IsXilinxCable(Bool32& present) noexcept {
    present = ToBool32(HasLoop && Succeeded(Failure));
    return Failure;
}

Status TParallelCable::ReadData(std::uint8_t& value) noexcept {
    ++Counters.DataReads;
    value = Succeeded(Failure) ? Data : std::uint8_t{0};
    return Failure;
}

Status TParallelCable::ReadStatus(std::uint8_t& value) noexcept {
    ++Counters.StatusReads;
    value = 0;
    if (vorel::Failed(Failure)) {
        return Failure;
    }
    std::uint8_t lines = 0xFF;
    if (HasLoop) {
        lines = WithBits(lines, LoopStatusBits, LevelOf({PortRegister::Data, LoopDataBit}));
    }
    for (const Connection& connection : Connections) {
        if (connection.Wiring.Tdo.Register == PortRegister::Status) {
            lines = WithBits(lines, static_cast<std::uint8_t>(1U << connection.Wiring.Tdo.Bit),
                             IsHigh(connection.Target->Tdo()));
        }
    }
    value = lines ^ InvertedStatusBits;
    return StatusOk;
}

Status TParallelCable::WriteData(std::uint8_t value) noexcept {
    ++Counters.DataWrites;
    if (vorel::Failed(Failure)) {
        return Failure;
    }
    Data = value;
    return DriveAll();
}

Status TParallelCable::WriteControl(std::uint8_t value, std::uint8_t mask) noexcept {
    ++Counters.ControlWrites;
    if (vorel::Failed(Failure)) {
        return Failure;
    }
    const std::uint8_t changed = mask & ControlLines;
    Control = static_cast<std::uint8_t>((Control & ~changed) | (value & changed));
    return DriveAll();
}

TParallelCable& TSimParallelPorts::Add(std::uint16_t baseAddress) {
    return *Ports.emplace_back(std::make_unique<TParallelCable>(baseAddress));
}

Status TSimParallelPorts::GetPortCount(std::int32_t& count) noexcept {
    count = static_cast<std::int32_t>(Ports.size());
    return StatusOk;
}

Status TSimParallelPorts::GetPort(std::int32_t index, IParallelPort*& port) noexcept {
    const bool inside = index >= 0 && static_cast<std::size_t>(index) < Ports.size();
    port = inside ? Ports[static_cast<std::size_t>(index)].get() : nullptr;
    return StatusOk;
}

} // namespace vorel::sim
