// A memory behind a register port of the soft chain, with nothing around it: the simplest soft
// device that is of use.
//
// Registers of the port: 0 ID (read: 4D454D31), 1 SIZE (read: words), 2 ADDRESS (word number for
// 3), 3 DATA (stream; word n lies at ADDRESS + n). What lies outside reads 0 and drops writes.
#pragma once

#include "simulator/SoftDevice.h"

#include <utility>
#include <vector>

namespace vorel::sim {

class TMemoryInstrument final : public TSoftDevice {
public:
    static constexpr std::uint32_t UnitId = 0x4D454D31; // "MEM1"
    static constexpr std::uint32_t Size = 4096;         // words of 32 bits

    explicit TMemoryInstrument(TapSettings settings) : TSoftDevice(std::move(settings)) {}

protected:
    std::uint32_t ReadWord(unsigned number, std::uint32_t word) override;
    void WriteWord(unsigned number, std::uint32_t word, std::uint32_t value) override;
    bool IsStream(unsigned number) const override;

private:
    std::vector<std::uint32_t> Words = std::vector<std::uint32_t>(Size);
    std::uint64_t Address = 0;
};

} // namespace vorel::sim
