// A device of the soft chain: a TAP with a register port.
//
// Instruction 11 opens the port. The first data scan under it is an address byte: the register's
// number times 2, plus 1 for a read. The next is the data of that register; after it an address is
// due again. Update-IR and a reset of the TAP make an address due, too. All data go lowest bit
// first.
//
// Every register is a sequence of 32-bit words; an ordinary one has a single word.
//   Read: the words follow each other from the first, as many as are shifted out.
//   Write of an ordinary register: the last 32 bits shifted in, taken in Update-DR.
//   Write of a stream register: zeros, a start bit 1, then words. A word is taken when its last bit
//   is in; an incomplete one at the end is dropped. Devices in BYPASS before this one, and the
//   filling for those behind it, put zeros in front of what a host sends: an ordinary register
//   loses them by counting from the end, a stream by its start bit.
// Reading changes nothing: a chain that is longer behind the device makes it shift out more words
// than the host asked for.
#pragma once

#include "simulator/TapDevice.h"

#include <cstdint>

namespace vorel::sim {

class TSoftDevice : public TTapDevice {
public:
    static constexpr unsigned RegisterPortInstruction = 11;

    // IrLength has to be 4 or more: EVorelError.
    explicit TSoftDevice(TapSettings settings);

protected:
    // Word `word`, from 0, of register 0 to 127; 0 for what is not there.
    virtual std::uint32_t ReadWord(unsigned number, std::uint32_t word) = 0;
    // What is not there is dropped.
    virtual void WriteWord(unsigned number, std::uint32_t word, std::uint32_t value) = 0;
    virtual bool IsStream(unsigned number) const = 0;

    TDataRegister& SelectRegister(const BitText& instruction) final;
    void OnReset() final { Port.ExpectAddress(); }

private:
    class TPort final : public TDataRegister {
    public:
        explicit TPort(TSoftDevice& owner) : Owner(owner) {}
        void ExpectAddress() noexcept { AddressDue = true; }
        void Capture() override;
        void Shift(bool tdi) override;
        void Update() override;

    private:
        void TakeStreamBit(bool tdi);

        TSoftDevice& Owner;
        bool AddressDue = true;
        bool Reading = false;
        bool Streaming = false; // the data are those of a stream to write
        bool Started = false;   // its start bit was seen
        unsigned Number = 0;    // of the register
        std::uint32_t In = 0;   // the last 32 bits shifted in
        unsigned InCount = 0;   // bits of the stream's present word
        std::uint32_t InWord = 0;
        std::uint32_t Out = 0; // what is left of the word being shifted out
        unsigned OutCount = 0;
        std::uint32_t OutWord = 0;
    };

    TPort Port{*this};
};

} // namespace vorel::sim
