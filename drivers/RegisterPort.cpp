#include "drivers/RegisterPort.h"

#include "support/Errors.h"

#include <algorithm>

namespace vorel {

namespace {

constexpr std::size_t WordBits = 32;

// `end` points behind the 32 digits of the word.
std::uint32_t WordBefore(const char* end) noexcept {
    std::uint32_t value = 0;
    for (const char* digit = end - WordBits; digit != end; ++digit) {
        value = value << 1 | (*digit == '1' ? 1U : 0U);
    }
    return value;
}

void PutWordBefore(char* end, std::uint32_t value) noexcept {
    for (std::size_t bit = 0; bit < WordBits; ++bit) {
        *--end = (value >> bit & 1) != 0 ? '1' : '0';
    }
}

// The first word at the right, and behind it the start bit, which is shifted first.
BitText StreamText(std::span<const std::uint32_t> words) {
    BitText text(words.size() * WordBits + 1, '1');
    char* end = text.data() + text.size() - 1;
    for (const std::uint32_t word : words) {
        PutWordBefore(end, word);
        end -= WordBits;
    }
    return text;
}

} // namespace

IVorelDevice& TRegisterPort::Served() const {
    if (Device == nullptr) {
        throw EVorelError(StatusNotSupported, "This driver serves no device");
    }
    return *Device;
}

std::uint32_t TRegisterPort::Read(std::uint8_t number) const {
    std::uint32_t value = 0;
    ReadWords(number, {&value, 1});
    return value;
}

void TRegisterPort::Write(std::uint8_t number, std::uint32_t value) const {
    Check(Served().WriteRegisterNumber(number, WordBits, value), "Writing a register of the port");
}

void TRegisterPort::ReadWords(std::uint8_t number, std::span<std::uint32_t> words) const {
    BitText bits;
    const std::size_t count = words.size() * WordBits;
    Check(Served().ReadRegisterText(number, static_cast<std::int32_t>(count), bits),
          "Reading a register of the port");
    if (bits.size() != count) {
        throw EVorelError(StatusError, "The device is not on a chain");
    }
    const char* end = bits.data() + bits.size();
    for (std::uint32_t& word : words) {
        word = WordBefore(end);
        end -= WordBits;
    }
}

void TRegisterPort::ReadStream(const TStream& stream, std::uint32_t start,
                               std::span<std::uint32_t> words) const {
    while (!words.empty()) {
        const auto part = words.first(std::min(words.size(), MaxScanWords));
        Write(stream.Pointer, start);
        ReadWords(stream.Data, part);
        start += stream.Stride * static_cast<std::uint32_t>(part.size());
        words = words.subspan(part.size());
    }
}

void TRegisterPort::WriteStream(const TStream& stream, std::uint32_t start,
                                std::span<const std::uint32_t> words) const {
    while (!words.empty()) {
        const auto part = words.first(std::min(words.size(), MaxScanWords));
        Write(stream.Pointer, start);
        Check(Served().WriteRegisterText(stream.Data, StreamText(part)),
              "Writing a stream of words");
        start += stream.Stride * static_cast<std::uint32_t>(part.size());
        words = words.subspan(part.size());
    }
}

TRegisterPort::TPlace TRegisterPort::Place() const {
    TPlace place{};
    Check(Served().GetChannel(place.Channel), "Asking for the device's channel");
    Check(Served().GetChainIndex(place.ChainIndex), "Asking for the device's place");
    return place;
}

bool TRegisterPort::IsOnChain() const {
    if (Device == nullptr) {
        return false;
    }
    const TPlace place = Place();
    return place.Channel != nullptr && place.ChainIndex >= 0;
}

TRegisterPort::TVisit::TVisit(const TRegisterPort& port, const TPlace& place)
    : Visitor(port.Served()), Before(port.Place()) {
    Check(Visitor.SetChannel(place.Channel), "Putting the device on its chain");
    Check(Visitor.SetChainIndex(place.ChainIndex), "Putting the device in its place");
}

TRegisterPort::TVisit::~TVisit() {
    static_cast<void>(Visitor.SetChannel(Before.Channel));
    static_cast<void>(Visitor.SetChainIndex(Before.ChainIndex));
}

} // namespace vorel
