// The controller of a development board: a TAP on the board's own chain with a register file.
//
// Instruction 11 selects an 8-bit address register: bits 6 to 0 the register, bit 7 set for a write
// and clear for a read (so 129 and 1 for register 1). Instruction 10 selects the 8-bit data
// register: Capture-DR loads the addressed register, Update-DR of a write stores into it. Both
// shift their lowest bit first. Register 1 is the chain multiplexer.
#pragma once

#include "simulator/TapDevice.h"

#include <array>
#include <functional>

namespace vorel::sim {

class TBoardController final : public TTapDevice {
public:
    static constexpr std::uint32_t DefaultId = 0x1B8C0B01;
    static constexpr unsigned DefaultIrLength = 8;
    static constexpr std::uint8_t MultiplexerRegister = 1;

    // IrLength has to be 4 or more. `selected` is called with each value that is written to the
    // multiplexer register.
    TBoardController(TapSettings settings, std::function<void(std::uint8_t)> selected);

    // So many reads of register 1 after each write of it show bit 0 set (busy) whatever it holds.
    void SetBusyReads(unsigned count) noexcept { BusyReads = count; }
    // Contents of a register, 0 to 127 (higher bits of the number are dropped).
    std::uint8_t Register(std::uint8_t number) const noexcept { return Registers[number & 0x7F]; }
    // Data bytes read and written over the TAP.
    std::uint64_t ReadCount() const noexcept { return Reads; }
    std::uint64_t WriteCount() const noexcept { return Writes; }

protected:
    TDataRegister& SelectRegister(const BitText& instruction) override;

private:
    class TAddressRegister final : public TWordRegister {
    public:
        TAddressRegister() : TWordRegister(8) {}
        void Update() override { Address = static_cast<std::uint8_t>(Value()); }
        std::uint8_t Address = 0;
    };
    class TValueRegister final : public TWordRegister {
    public:
        explicit TValueRegister(TBoardController& owner) : TWordRegister(8), Owner(owner) {}
        void Capture() override { Load(Owner.ReadAddressed()); }
        void Update() override { Owner.WriteAddressed(static_cast<std::uint8_t>(Value())); }

    private:
        TBoardController& Owner;
    };

    std::uint8_t ReadAddressed();
    void WriteAddressed(std::uint8_t value);

    TAddressRegister AddressRegister;
    TValueRegister ValueRegister{*this};
    std::array<std::uint8_t, 128> Registers{};
    std::function<void(std::uint8_t)> Selected;
    unsigned BusyReads = 0;
    unsigned BusyLeft = 0;
    std::uint64_t Reads = 0;
    std::uint64_t Writes = 0;
};

} // namespace vorel::sim
