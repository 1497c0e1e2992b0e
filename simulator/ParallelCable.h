// A PC's parallel port with a JTAG cable on it, in front of virtual hardware.
//
// The port has its three registers as the PC has them. At the connector a data line has the level
// of its bit; the control lines of bits 0, 1 and 3 and the status line of bit 7 are inverted
// between connector and register. The cable says which line of the connector leads to which JTAG
// wire; levels of the JTAG wires are those of the connector.
#pragma once

#include "simulator/Target.h"
#include "simulator/Wires.h"
#include "support/Objects.h"
#include "vorel/ParallelPort.h"

#include <cstddef>
#include <memory>
#include <vector>

namespace vorel::sim {

enum class PortRegister : std::uint8_t { None, Data, Status, Control };

// A line of the connector, by its register and bit. None is a wire that the cable does not drive:
// it is pulled up.
struct PortLine {
    PortRegister Register = PortRegister::None;
    unsigned Bit = 0;
};

// The lines to one set of JTAG wires. Tck, Tms and Tdi are data or control lines, Tdo is a status
// line.
struct CableWiring {
    PortLine Tck;
    PortLine Tms;
    PortLine Tdi;
    PortLine Tdo;
};

// Accesses to the port so far.
struct PortAccesses {
    std::uint64_t DataReads = 0;
    std::uint64_t DataWrites = 0;
    std::uint64_t StatusReads = 0;
    std::uint64_t ControlWrites = 0;
    std::uint64_t Prepares = 0;

    std::uint64_t Total() const noexcept {
        return DataReads + DataWrites + StatusReads + ControlWrites;
    }
};

class TParallelCable final : public TNonRefCountedInterfacedObject<IParallelPort> {
public:
    // After power-up, as a PC's port has it.
    static constexpr std::uint8_t InitialControl = 0x0C;

    explicit TParallelCable(std::uint16_t baseAddress = 0x378) : BaseAddress(baseAddress) {}

    // Connects a set of wires; the target is not owned and must outlive the cable. A cable may lead
    // to several targets. EVorelError for lines of the wrong register or bits above 7.
    void Connect(const CableWiring& wiring, IWireTarget& target);
    // Data line 6 is tied to the status lines Busy and Paper Out, by which programs know one kind
    // of cable.
    void SetIdentificationLoop(bool present) noexcept { HasLoop = present; }
    // Every later operation fails with this status; StatusOk ends that.
    void SetFailure(Status failure) noexcept { Failure = failure; }

    const PortAccesses& Accesses() const noexcept { return Counters; }
    std::uint8_t DataRegister() const noexcept { return Data; }
    std::uint8_t ControlRegister() const noexcept { return Control; }

    Status Prepare() noexcept override;
    Status GetBaseAddress(std::uint32_t& address) noexcept override;
    Status IsXilinxCable(Bool32& present) noexcept override;
    Status ReadData(std::uint8_t& value) noexcept override;
    Status ReadStatus(std::uint8_t& value) noexcept override;
    Status WriteData(std::uint8_t value) noexcept override;
    Status WriteControl(std::uint8_t value, std::uint8_t mask) noexcept override;
    Status PrepareStatusRead() noexcept override { return Failure; }

private:
    struct Connection {
        CableWiring Wiring;
        IWireTarget* Target = nullptr;
        unsigned Lines = 0xFF; // levels of TCK, TMS, TDI given last; none yet
    };

    bool LevelOf(PortLine line) const noexcept;
    void Drive(Connection& connection);
    Status DriveAll() noexcept;

    std::vector<Connection> Connections;
    PortAccesses Counters;
    Status Failure = StatusOk;
    std::uint16_t BaseAddress;
    std::uint8_t Data = 0;
    std::uint8_t Control = InitialControl;
    bool HasLoop = false;
};

// The parallel ports of a virtual machine. Owns them, and the targets that it is given to keep.
class TSimParallelPorts final : public TNonRefCountedInterfacedObject<IParallelPortManager> {
public:
    // Adds a port behind those that are there.
    TParallelCable& Add(std::uint16_t baseAddress = 0x378);
    // A target that cables lead to.
    TTarget& Keep(std::unique_ptr<TTarget> target) {
        return *Targets.emplace_back(std::move(target));
    }

    Status GetPortCount(std::int32_t& count) noexcept override;
    Status GetPort(std::int32_t index, IParallelPort*& port) noexcept override;

private:
    std::vector<std::unique_ptr<TTarget>> Targets;
    std::vector<std::unique_ptr<TParallelCable>> Ports;
};

} // namespace vorel::sim
