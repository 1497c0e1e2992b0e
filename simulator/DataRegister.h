// Registers between TDI and TDO of a TAP. A device owns its registers as members or in a container;
// the TAP only points at the one that the instruction selects.
//
// A register's text form is most significant bit first: the rightmost character is nearest TDO.
#pragma once

#include "vorel/Types.h"

#include <cstddef>
#include <cstdint>
#include <vector>

namespace vorel::sim {

class TDataRegister {
public:
    TDataRegister() = default;
    TDataRegister(const TDataRegister&) = delete;
    TDataRegister& operator=(const TDataRegister&) = delete;
    virtual ~TDataRegister() = default;

    // Rising edge of TCK in Capture-DR: loads the shift stage. Registers that have nothing to
    // capture keep what they hold.
    virtual void Capture() {}
    // Rising edge in Shift-DR: moves the bits one place to TDO and takes `tdi` in behind them.
    virtual void Shift(bool tdi) = 0;
    // Falling edge in Update-DR: what was shifted in takes effect.
    virtual void Update() {}
    // The bit nearest TDO.
    bool Out() const noexcept { return OutBit; }

protected:
    bool OutBit = false;
};

// One bit that captures 0 (IEEE 1149.1: the bypass register).
class TBypassRegister final : public TDataRegister {
public:
    void Capture() override { OutBit = false; }
    void Shift(bool tdi) override { OutBit = tdi; }
};

// 1 to 64 bits kept as a number, bit 0 nearest TDO. Derive and override Capture and Update to give
// it a meaning.
class TWordRegister : public TDataRegister {
public:
    // EVorelError for a length outside 1 to 64.
    explicit TWordRegister(unsigned length);

    void Shift(bool tdi) override {
        Bits = (Bits >> 1) | (static_cast<std::uint64_t>(tdi) << (Length - 1));
        OutBit = (Bits & 1) != 0;
    }
    std::uint64_t Value() const noexcept { return Bits; }
    // Bits above the length are dropped.
    void Load(std::uint64_t value) noexcept;
    unsigned BitCount() const noexcept { return Length; }

private:
    std::uint64_t Bits = 0;
    unsigned Length;
};

// A register that captures the same number each time, such as the device identification register.
class TConstantRegister final : public TWordRegister {
public:
    TConstantRegister(unsigned length, std::uint64_t value) : TWordRegister(length), Fixed(value) {}
    void Capture() override { Load(Fixed); }

private:
    std::uint64_t Fixed;
};

// A register of any length of at least 1; a shift costs the same whatever the length.
class TBitRegister : public TDataRegister {
public:
    // EVorelError for a length of 0 or above MaxLength.
    explicit TBitRegister(std::size_t length);
    static constexpr std::size_t MaxLength = 1'000'000;

    void Shift(bool tdi) override {
        Ring[Head] = tdi ? 1 : 0;
        Head = Head + 1 == Ring.size() ? 0 : Head + 1;
        OutBit = Ring[Head] != 0;
    }
    // `bits` must have the register's length.
    void Load(const BitText& bits);
    BitText Text() const;
    std::size_t BitCount() const noexcept { return Ring.size(); }

private:
    std::vector<std::uint8_t> Ring;
    std::size_t Head = 0; // the bit nearest TDO
};

} // namespace vorel::sim
