// Drives the wires of a target by hand, the way a JTAG master does, for tests.
#pragma once

#include "simulator/TapDevice.h"
#include "simulator/Wires.h"
#include "vorel/Types.h"

#include <cstdint>
#include <string_view>

namespace vorel::sim {

class TapDriver {
public:
    explicit TapDriver(IWireTarget& target) : Target(target) {}

    // TMS levels, left to right.
    void Tms(std::string_view levels) {
        for (const char level : levels) {
            Target.Clock(level == '1', true);
        }
    }
    void ResetToIdle() { Tms("111110"); }
    // From Run-Test/Idle and back; the rightmost character goes first, as it comes back.
    BitText Dr(const BitText& bits) { return Scan("100", bits); }
    BitText Ir(const BitText& bits) { return Scan("1100", bits); }
    // Shifts in Shift-DR or Shift-IR; `exit` leaves it with the last bit.
    BitText Shift(const BitText& bits, bool exit) {
        BitText out(bits.size(), '?');
        for (std::size_t i = bits.size(); i-- > 0;) {
            const bool tms = exit && i == 0;
            Target.SetLines(false, tms, bits[i] == '1');
            out[i] = IsHigh(Target.Tdo()) ? '1' : '0';
            Target.Clock(tms, bits[i] == '1');
        }
        return out;
    }
    // One access to a register of a board controller with 8 instruction bits on a chain of its own.
    std::uint8_t BoardRegister(bool write, std::uint8_t value) {
        Ir("00001011");
        Dr(write ? "10000001" : "00000001");
        Ir("00001010");
        return ToByte(Dr(Bits(value)));
    }
    static BitText Bits(std::uint64_t value, int count = 8) {
        BitText text;
        while (count-- > 0) {
            text += (value >> count & 1) != 0 ? '1' : '0';
        }
        return text;
    }
    static std::uint8_t ToByte(const BitText& bits) {
        return static_cast<std::uint8_t>(std::stoul(bits, nullptr, 2));
    }

private:
    BitText Scan(std::string_view path, const BitText& bits) {
        Tms(path);
        BitText out = Shift(bits, true);
        Tms("10");
        return out;
    }

    IWireTarget& Target;
};

inline TapSettings Part(std::optional<std::uint32_t> id, unsigned irLength = 4) {
    return {"part", id, irLength, {}, {}};
}

} // namespace vorel::sim
