// The PC's parallel port as the library sees it: a manager that lists ports, and one port's three
// registers.
//
// The table positions are those of the port library's binary contract: operations that this system
// does not use keep their place as reserved entries, so that the used ones stand where the contract
// has them.
#pragma once

#include "vorel/Interface.h"

namespace vorel {

// One parallel port. Owned by its manager. Errors are failing statuses: the port is busy, gone, or
// not permitted.
class IParallelPort : public IInterface {
public:
    static constexpr Guid Id{
        0x0EBF8B32, 0xBD95, 0x4EEE, {0xB0, 0xB2, 0xE5, 0xCE, 0xD0, 0x03, 0xDD, 0x6B}};

    // 3: claims the port for a session; called once when a channel becomes active.
    virtual Status Prepare() noexcept = 0;
    // 4: gives the port's base address, 16 bits.
    virtual Status GetBaseAddress(std::uint32_t& address) noexcept = 0;
    // 5: true when the cable of that kind answers.
    virtual Status IsXilinxCable(Bool32& present) noexcept = 0;
    // 6: the data register as it was written last.
    virtual Status ReadData(std::uint8_t& value) noexcept = 0;
    // 7 to 38
    virtual Status Reserved7() noexcept { return StatusNotSupported; }
    virtual Status Reserved8() noexcept { return StatusNotSupported; }
    virtual Status Reserved9() noexcept { return StatusNotSupported; }
    virtual Status Reserved10() noexcept { return StatusNotSupported; }
    virtual Status Reserved11() noexcept { return StatusNotSupported; }
    virtual Status Reserved12() noexcept { return StatusNotSupported; }
    virtual Status Reserved13() noexcept { return StatusNotSupported; }
    virtual Status Reserved14() noexcept { return StatusNotSupported; }
    virtual Status Reserved15() noexcept { return StatusNotSupported; }
    virtual Status Reserved16() noexcept { return StatusNotSupported; }
    virtual Status Reserved17() noexcept { return StatusNotSupported; }
    virtual Status Reserved18() noexcept { return StatusNotSupported; }
    virtual Status Reserved19() noexcept { return StatusNotSupported; }
    virtual Status Reserved20() noexcept { return StatusNotSupported; }
    virtual Status Reserved21() noexcept { return StatusNotSupported; }
    virtual Status Reserved22() noexcept { return StatusNotSupported; }
    virtual Status Reserved23() noexcept { return StatusNotSupported; }
    virtual Status Reserved24() noexcept { return StatusNotSupported; }
    virtual Status Reserved25() noexcept { return StatusNotSupported; }
    virtual Status Reserved26() noexcept { return StatusNotSupported; }
    virtual Status Reserved27() noexcept { return StatusNotSupported; }
    virtual Status Reserved28() noexcept { return StatusNotSupported; }
    virtual Status Reserved29() noexcept { return StatusNotSupported; }
    virtual Status Reserved30() noexcept { return StatusNotSupported; }
    virtual Status Reserved31() noexcept { return StatusNotSupported; }
    virtual Status Reserved32() noexcept { return StatusNotSupported; }
    virtual Status Reserved33() noexcept { return StatusNotSupported; }
    virtual Status Reserved34() noexcept { return StatusNotSupported; }
    virtual Status Reserved35() noexcept { return StatusNotSupported; }
    virtual Status Reserved36() noexcept { return StatusNotSupported; }
    virtual Status Reserved37() noexcept { return StatusNotSupported; }
    virtual Status Reserved38() noexcept { return StatusNotSupported; }
    // 39: the status register; bit 7 is inverted by the port's hardware.
    virtual Status ReadStatus(std::uint8_t& value) noexcept = 0;
    // 40 to 64
    virtual Status Reserved40() noexcept { return StatusNotSupported; }
    virtual Status Reserved41() noexcept { return StatusNotSupported; }
    virtual Status Reserved42() noexcept { return StatusNotSupported; }
    virtual Status Reserved43() noexcept { return StatusNotSupported; }
    virtual Status Reserved44() noexcept { return StatusNotSupported; }
    virtual Status Reserved45() noexcept { return StatusNotSupported; }
    virtual Status Reserved46() noexcept { return StatusNotSupported; }
    virtual Status Reserved47() noexcept { return StatusNotSupported; }
    virtual Status Reserved48() noexcept { return StatusNotSupported; }
    virtual Status Reserved49() noexcept { return StatusNotSupported; }
    virtual Status Reserved50() noexcept { return StatusNotSupported; }
    virtual Status Reserved51() noexcept { return StatusNotSupported; }
    virtual Status Reserved52() noexcept { return StatusNotSupported; }
    virtual Status Reserved53() noexcept { return StatusNotSupported; }
    virtual Status Reserved54() noexcept { return StatusNotSupported; }
    virtual Status Reserved55() noexcept { return StatusNotSupported; }
    virtual Status Reserved56() noexcept { return StatusNotSupported; }
    virtual Status Reserved57() noexcept { return StatusNotSupported; }
    virtual Status Reserved58() noexcept { return StatusNotSupported; }
    virtual Status Reserved59() noexcept { return StatusNotSupported; }
    virtual Status Reserved60() noexcept { return StatusNotSupported; }
    virtual Status Reserved61() noexcept { return StatusNotSupported; }
    virtual Status Reserved62() noexcept { return StatusNotSupported; }
    virtual Status Reserved63() noexcept { return StatusNotSupported; }
    virtual Status Reserved64() noexcept { return StatusNotSupported; }
    // 65
    virtual Status WriteData(std::uint8_t value) noexcept = 0;
    virtual Status Reserved66() noexcept { return StatusNotSupported; }
    // 67: changes only the control bits that `mask` names; bits 0, 1 and 3 are inverted by the
    // port's hardware.
    virtual Status WriteControl(std::uint8_t value, std::uint8_t mask) noexcept = 0;
    virtual Status Reserved68() noexcept { return StatusNotSupported; }
    virtual Status Reserved69() noexcept { return StatusNotSupported; }
    // 70: called before each ReadStatus.
    virtual Status PrepareStatusRead() noexcept = 0;

protected:
    ~IParallelPort() = default;
};

// The machine's parallel ports.
class IParallelPortManager : public IInterface {
public:
    static constexpr Guid Id{
        0x28E31FA8, 0xC5EF, 0x45C3, {0xBF, 0x9E, 0x4A, 0x03, 0x44, 0x3E, 0xB4, 0x81}};

    virtual Status Reserved3() noexcept { return StatusNotSupported; }
    virtual Status Reserved4() noexcept { return StatusNotSupported; }
    virtual Status Reserved5() noexcept { return StatusNotSupported; }
    virtual Status Reserved6() noexcept { return StatusNotSupported; }
    virtual Status Reserved7() noexcept { return StatusNotSupported; }
    // 8: number of ports that exist.
    virtual Status GetPortCount(std::int32_t& count) noexcept = 0;
    // 9: port `index`, from 0; null when out of range.
    virtual Status GetPort(std::int32_t index, IParallelPort*& port) noexcept = 0;

protected:
    ~IParallelPortManager() = default;
};

// Entry point of the port library, exported under this name.
inline constexpr const char* ParallelPortManagerEntryPoint = "GetParallelPortManager";
extern "C" {
using GetParallelPortManagerProc = Status (*)(IParallelPortManager** manager);
}

} // namespace vorel
