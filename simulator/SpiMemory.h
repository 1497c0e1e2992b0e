// A small serial memory on the SPI bus (mode 0): chip select is TMS, active low; SCK is TCK, MOSI
// TDI, MISO TDO. Bytes go most significant bit first; MISO changes at the falling edge of SCK.
//
// Commands, as serial flash memories have them: 9F gives the three id bytes, 05 the status (bit 1:
// writing is enabled), 06 and 04 enable and disable writing, 03 reads from a 24-bit address on, 02
// programs within a page of 256 bytes (bits only go from 1 to 0), C7 erases all. Any other command
// echoes: each byte comes back while the next one is sent.
#pragma once

#include "simulator/Wires.h"

#include <cstdint>
#include <string>
#include <vector>

namespace vorel::sim {

class TSpiMemory final : public IWireTarget {
public:
    static constexpr std::size_t ByteCount = 65536;

    // `id`: the three bytes that command 9F gives, the first in bits 23 to 16.
    TSpiMemory(std::string name, std::uint32_t id);

    void SetLines(bool tck, bool tms, bool tdi) override;
    Level Tdo() const override { return Output; }
    void SetTrst(bool) override {}

    const std::string& Name() const noexcept { return Label; }
    // The contents; addresses repeat every ByteCount bytes.
    std::vector<std::uint8_t>& Contents() noexcept { return Memory; }

private:
    void BeginCommand();
    void EndCommand();
    void TakeByte(std::uint8_t value);
    std::uint8_t NextOutput(std::uint8_t value);
    void Program(std::uint8_t value);

    std::string Label;
    std::uint32_t Id;
    std::vector<std::uint8_t> Memory;
    Level Output = Level::Released;
    bool Sck = false;
    bool Selected = false;
    bool WriteEnabled = false;
    std::uint8_t Command = 0;
    std::uint8_t InByte = 0;
    std::uint8_t OutByte = 0;
    unsigned BitIndex = 0;
    std::uint64_t ByteIndex = 0;
    std::uint32_t Address = 0;
};

} // namespace vorel::sim
