#include "simulator/MipsCore.h"

#include <limits>

namespace vorel::sim {

namespace {

constexpr std::int32_t AsSigned(std::uint32_t value) noexcept {
    return static_cast<std::int32_t>(value);
}

constexpr std::uint32_t ShiftRightSigned(std::uint32_t value, unsigned count) noexcept {
    return static_cast<std::uint32_t>(AsSigned(value) >> count);
}

constexpr std::uint32_t ExtendSign(std::uint32_t value, unsigned size) noexcept {
    return size == 1   ? static_cast<std::uint32_t>(static_cast<std::int8_t>(value & 0xFF))
           : size == 2 ? static_cast<std::uint32_t>(static_cast<std::int16_t>(value & 0xFFFF))
                       : value;
}

} // namespace

void TMipsCore::Reset() noexcept {
    Registers.fill(0);
    SetProgramCounter(0);
    BadAddress = 0;
}

Trap TMipsCore::Step() {
    ++Bus.Cycles;
    if ((Pc & 3) != 0) {
        return FailAt(Trap::AddressLoad, Pc);
    }
    // Peripherals hold no code.
    const auto word = Pc < TProcessorBus::RamSize ? Bus.Load(Pc, 4) : std::nullopt;
    if (!word) {
        return FailAt(Trap::BusFetch, Pc);
    }
    Target = NextPc + 4;
    Waiting = false;
    const Trap trap = Execute(TFields(*word));
    if ((trap == Trap::None || trap == Trap::Syscall) && !Waiting) {
        Pc = NextPc;
        NextPc = Target;
    }
    return trap;
}

Trap TMipsCore::Execute(TFields f) {
    switch (f.Op()) {
    case 0x00:
        return ExecuteSpecial(f);
    case 0x01:
        return ExecuteRegImm(f);
    case 0x03: // JAL
        SetRegister(31, NextPc + 4);
        [[fallthrough]];
    case 0x02: // J
        Target = (NextPc & 0xF0000000) | (f.Word << 2 & 0x0FFFFFFF);
        return Trap::None;
    case 0x04: // BEQ
        BranchIf(Registers[f.Rs()] == Registers[f.Rt()], f);
        return Trap::None;
    case 0x05: // BNE
        BranchIf(Registers[f.Rs()] != Registers[f.Rt()], f);
        return Trap::None;
    case 0x06: // BLEZ
        BranchIf(AsSigned(Registers[f.Rs()]) <= 0, f);
        return Trap::None;
    case 0x07: // BGTZ
        BranchIf(AsSigned(Registers[f.Rs()]) > 0, f);
        return Trap::None;
    default:
        break;
    }
    if (f.Op() < 0x10) {
        return ExecuteImmediate(f);
    }
    if (f.Op() < 0x14) {
        return Trap::Coprocessor;
    }
    return f.Op() < 0x28 ? ExecuteLoad(f) : ExecuteStore(f);
}

Trap TMipsCore::ExecuteSpecial(TFields f) {
    const std::uint32_t s = Registers[f.Rs()];
    const std::uint32_t t = Registers[f.Rt()];
    switch (f.Function()) {
    case 0x00: // SLL
        SetRegister(f.Rd(), t << f.Shift());
        return Trap::None;
    case 0x02: // SRL
        SetRegister(f.Rd(), t >> f.Shift());
        return Trap::None;
    case 0x03: // SRA
        SetRegister(f.Rd(), ShiftRightSigned(t, f.Shift()));
        return Trap::None;
    case 0x04: // SLLV
        SetRegister(f.Rd(), t << (s & 31));
        return Trap::None;
    case 0x06: // SRLV
        SetRegister(f.Rd(), t >> (s & 31));
        return Trap::None;
    case 0x07: // SRAV
        SetRegister(f.Rd(), ShiftRightSigned(t, s & 31));
        return Trap::None;
    case 0x09: // JALR
        SetRegister(f.Rd(), NextPc + 4);
        [[fallthrough]];
    case 0x08: // JR
        Target = s;
        return Trap::None;
    case 0x0C:
        return Trap::Syscall;
    case 0x0D:
        return Trap::Break;
    default:
        return f.Function() < 0x20 ? ExecuteMultiply(f) : ExecuteArithmetic(f);
    }
}

Trap TMipsCore::ExecuteArithmetic(TFields f) {
    const std::uint32_t s = Registers[f.Rs()];
    const std::uint32_t t = Registers[f.Rt()];
    std::uint32_t result = 0;
    switch (f.Function()) {
    case 0x20: // ADD
    case 0x22: // SUB
        return AddTo(f.Rd(), s, t, f.Function() == 0x22);
    case 0x21: // ADDU
        result = s + t;
        break;
    case 0x23: // SUBU
        result = s - t;
        break;
    case 0x24: // AND
        result = s & t;
        break;
    case 0x25: // OR
        result = s | t;
        break;
    case 0x26: // XOR
        result = s ^ t;
        break;
    case 0x27: // NOR
        result = ~(s | t);
        break;
    case 0x2A: // SLT
        result = AsSigned(s) < AsSigned(t) ? 1 : 0;
        break;
    case 0x2B: // SLTU
        result = s < t ? 1 : 0;
        break;
    default:
        return Trap::Instruction;
    }
    SetRegister(f.Rd(), result);
    return Trap::None;
}

Trap TMipsCore::ExecuteMultiply(TFields f) {
    const std::uint32_t s = Registers[f.Rs()];
    const std::uint32_t t = Registers[f.Rt()];
    std::uint32_t& hi = Registers[HiIndex];
    std::uint32_t& lo = Registers[LoIndex];
    switch (f.Function()) {
    case 0x10: // MFHI
        SetRegister(f.Rd(), hi);
        return Trap::None;
    case 0x11: // MTHI
        hi = s;
        return Trap::None;
    case 0x12: // MFLO
        SetRegister(f.Rd(), lo);
        return Trap::None;
    case 0x13: // MTLO
        lo = s;
        return Trap::None;
    case 0x18:   // MULT
    case 0x19: { // MULTU
        const std::uint64_t product =
            f.Function() == 0x19
                ? std::uint64_t{s} * t
                : static_cast<std::uint64_t>(std::int64_t{AsSigned(s)} * AsSigned(t));
        hi = static_cast<std::uint32_t>(product >> 32);
        lo = static_cast<std::uint32_t>(product);
        return Trap::None;
    }
    case 0x1A:   // DIV
    case 0x1B: { // DIVU
        // 64 bits, so that the one quotient too large for 32 signed bits wraps as hardware does.
        const bool isSigned = f.Function() == 0x1A;
        const std::int64_t a = isSigned ? AsSigned(s) : std::int64_t{s};
        const std::int64_t b = isSigned ? AsSigned(t) : std::int64_t{t};
        lo = b == 0 ? 0xFFFFFFFF : static_cast<std::uint32_t>(a / b);
        hi = b == 0 ? s : static_cast<std::uint32_t>(a % b);
        return Trap::None;
    }
    default:
        return Trap::Instruction;
    }
}

Trap TMipsCore::ExecuteRegImm(TFields f) {
    const std::int32_t s = AsSigned(Registers[f.Rs()]);
    const unsigned kind = f.Rt();
    if ((kind & 0x0E) != 0) {
        return Trap::Instruction;
    }
    if ((kind & 0x10) != 0) { // BLTZAL, BGEZAL link whether they branch or not
        SetRegister(31, NextPc + 4);
    }
    BranchIf((kind & 1) != 0 ? s >= 0 : s < 0, f);
    return Trap::None;
}

Trap TMipsCore::ExecuteImmediate(TFields f) {
    const std::uint32_t s = Registers[f.Rs()];
    std::uint32_t result = 0;
    switch (f.Op()) {
    case 0x08: // ADDI
        return AddTo(f.Rt(), s, f.Signed(), false);
    case 0x09: // ADDIU
        result = s + f.Signed();
        break;
    case 0x0A: // SLTI
        result = AsSigned(s) < AsSigned(f.Signed()) ? 1 : 0;
        break;
    case 0x0B: // SLTIU
        result = s < f.Signed() ? 1 : 0;
        break;
    case 0x0C: // ANDI
        result = s & f.Unsigned();
        break;
    case 0x0D: // ORI
        result = s | f.Unsigned();
        break;
    case 0x0E: // XORI
        result = s ^ f.Unsigned();
        break;
    default: // LUI
        result = f.Unsigned() << 16;
        break;
    }
    SetRegister(f.Rt(), result);
    return Trap::None;
}

Trap TMipsCore::AddTo(unsigned index, std::uint32_t a, std::uint32_t b, bool subtract) {
    const std::int64_t second = AsSigned(b);
    const std::int64_t sum = AsSigned(a) + (subtract ? -second : second);
    if (sum < std::numeric_limits<std::int32_t>::min() ||
        sum > std::numeric_limits<std::int32_t>::max()) {
        return Trap::Overflow;
    }
    SetRegister(index, static_cast<std::uint32_t>(sum));
    return Trap::None;
}

Trap TMipsCore::ExecuteLoad(TFields f) {
    const std::uint32_t address = Registers[f.Rs()] + f.Signed();
    unsigned size = 4;
    bool isSigned = true;
    switch (f.Op()) {
    case 0x20: // LB
        size = 1;
        break;
    case 0x21: // LH
        size = 2;
        break;
    case 0x22: // LWL
        return LoadPart(f, address, true);
    case 0x23: // LW
        break;
    case 0x24: // LBU
        size = 1;
        isSigned = false;
        break;
    case 0x25: // LHU
        size = 2;
        isSigned = false;
        break;
    case 0x26: // LWR
        return LoadPart(f, address, false);
    default:
        return Trap::Instruction;
    }
    if (address % size != 0) {
        return FailAt(Trap::AddressLoad, address);
    }
    const auto value = Bus.Load(address, size);
    if (!value) {
        return FailAt(Trap::BusData, address);
    }
    SetRegister(f.Rt(), isSigned ? ExtendSign(*value, size) : *value);
    return Trap::None;
}

// LWL takes the bytes from `address` to the end of its word into the upper end of the register, LWR
// those from the start of the word to `address` into the lower end.
Trap TMipsCore::LoadPart(TFields f, std::uint32_t address, bool left) {
    const auto word = Bus.Load(address & ~3U, 4);
    if (!word) {
        return FailAt(Trap::BusData, address);
    }
    const unsigned place = (address & 3) * 8;
    const unsigned rest = 24 - place;
    const std::uint32_t old = Registers[f.Rt()];
    const std::uint32_t mask = left ? 0xFFFFFFFF << place : 0xFFFFFFFF >> rest;
    const std::uint32_t moved = left ? *word << place : *word >> rest;
    SetRegister(f.Rt(), (old & ~mask) | (moved & mask));
    return Trap::None;
}

Trap TMipsCore::ExecuteStore(TFields f) {
    const std::uint32_t address = Registers[f.Rs()] + f.Signed();
    switch (f.Op()) {
    case 0x28: // SB
        return StoreValue(address, 1, Registers[f.Rt()]);
    case 0x29: // SH
        return StoreValue(address, 2, Registers[f.Rt()]);
    case 0x2A: // SWL
        return StorePart(f, address, true);
    case 0x2B: // SW
        return StoreValue(address, 4, Registers[f.Rt()]);
    case 0x2E: // SWR
        return StorePart(f, address, false);
    default:
        return Trap::Instruction;
    }
}

Trap TMipsCore::StorePart(TFields f, std::uint32_t address, bool left) {
    const auto word = Bus.Load(address & ~3U, 4);
    if (!word) {
        return FailAt(Trap::BusData, address);
    }
    const unsigned place = (address & 3) * 8;
    const unsigned rest = 24 - place;
    const std::uint32_t mask = left ? 0xFFFFFFFF >> place : 0xFFFFFFFF << rest;
    const std::uint32_t moved = left ? Registers[f.Rt()] >> place : Registers[f.Rt()] << rest;
    return StoreValue(address & ~3U, 4, (*word & ~mask) | (moved & mask));
}

Trap TMipsCore::StoreValue(std::uint32_t address, unsigned size, std::uint32_t value) {
    if (address % size != 0) {
        return FailAt(Trap::AddressStore, address);
    }
    const auto outcome = Bus.Store(address, size, value);
    Waiting = outcome == TProcessorBus::Outcome::Wait;
    return outcome == TProcessorBus::Outcome::Error ? FailAt(Trap::BusData, address) : Trap::None;
}

} // namespace vorel::sim
