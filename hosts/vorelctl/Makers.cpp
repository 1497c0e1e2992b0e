#include "hosts/vorelctl/Makers.h"

#include <algorithm>
#include <array>

namespace vorel::host {

namespace {

struct Maker {
    std::uint32_t Code;
    const char* Name;
};

constexpr std::array Makers{
    Maker{0x001, "AMD"},       Maker{0x009, "Intel"},   Maker{0x00E, "Freescale"},
    Maker{0x015, "NXP"},       Maker{0x017, "TI"},      Maker{0x01F, "Atmel"},
    Maker{0x020, "ST"},        Maker{0x021, "Lattice"}, Maker{0x029, "Microchip"},
    Maker{0x034, "Cypress"},   Maker{0x049, "Xilinx"},  Maker{0x065, "Analog Devices"},
    Maker{0x06E, "Altera"},    Maker{0x0E7, "Actel"},   Maker{0x23B, "ARM"},
    Maker{0x40D, "Gowin"},     Maker{0x489, "SiFive"},  Maker{0x53C, "Efinix"},
    Maker{0x612, "Espressif"}, Maker{0x61A, "Anlogic"},
};

} // namespace

std::string MakerName(std::uint32_t manufacturer) {
    const auto* const hit = std::find_if(Makers.begin(), Makers.end(), [&](const Maker& maker) {
        return maker.Code == manufacturer;
    });
    return hit != Makers.end() ? hit->Name : "";
}

} // namespace vorel::host
