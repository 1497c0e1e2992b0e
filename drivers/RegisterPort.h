// How our drivers of soft devices reach the words behind a register port: single registers and
// streams of words. Part of a driver; the device is the one that the driver serves.
#pragma once

#include "vorel/VorelDevice.h"

#include <cstdint>
#include <span>

namespace vorel {

// Failures of the chain, a device that is on no chain, and a driver that serves no device raise
// EVorelError. A stream of many words is cut in scans of at most MaxScanWords.
class TRegisterPort final {
public:
    static constexpr std::size_t MaxScanWords = 4096;

    void SetDevice(IVorelDevice* device) noexcept { Device = device; }

    std::uint32_t Read(std::uint8_t number) const;
    void Write(std::uint8_t number, std::uint32_t value) const;

    // The streams start where the register `pointer` says; it is written for each scan, `stride`
    // further for each word.
    struct TStream {
        std::uint8_t Pointer; // register that tells the start
        std::uint8_t Data;    // the stream register
        std::uint32_t Stride; // what a word adds to the pointer
    };
    void ReadStream(const TStream& stream, std::uint32_t start,
                    std::span<std::uint32_t> words) const;
    void WriteStream(const TStream& stream, std::uint32_t start,
                     std::span<const std::uint32_t> words) const;
    // The words of a register that needs no pointer, in one scan.
    void ReadWords(std::uint8_t number, std::span<std::uint32_t> words) const;

    // Where the device is; the channel is not counted and lives as long as its port.
    struct TPlace {
        IJTagChannel* Channel;
        std::int32_t ChainIndex;
    };
    TPlace Place() const;
    bool IsOnChain() const;
    // Puts a device that was released back in a place for one's lifetime: the notice of a release
    // comes when the device is off its chain already.
    class TVisit {
    public:
        TVisit(const TRegisterPort& port, const TPlace& place);
        ~TVisit();
        TVisit(const TVisit&) = delete;
        TVisit& operator=(const TVisit&) = delete;

    private:
        IVorelDevice& Visitor;
        TPlace Before;
    };

private:
    IVorelDevice& Served() const;

    IVorelDevice* Device = nullptr;
};

} // namespace vorel
