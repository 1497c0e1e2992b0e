#include "simulator/MemoryInstrument.h"

namespace vorel::sim {

namespace {

enum Register : unsigned { Id = 0, WordCount = 1, WordAddress = 2, Data = 3 };

} // namespace

bool TMemoryInstrument::IsStream(unsigned number) const {
    return number == Data;
}

std::uint32_t TMemoryInstrument::ReadWord(unsigned number, std::uint32_t word) {
    if (number == Data) {
        return Address + word < Size ? Words[Address + word] : 0;
    }
    if (word > 0) {
        return 0;
    }
    switch (number) {
    case Id:
        return UnitId;
    case WordCount:
        return Size;
    case WordAddress:
        return static_cast<std::uint32_t>(Address);
    default:
        return 0;
    }
}

void TMemoryInstrument::WriteWord(unsigned number, std::uint32_t word, std::uint32_t value) {
    if (number == WordAddress) {
        Address = value;
    } else if (number == Data && Address + word < Size) {
        Words[Address + word] = value;
    }
}

} // namespace vorel::sim
