// One parallel port of the kernel, claimed through its device file /dev/parport<N> (linux/ppdev.h).
//
// The port is claimed for this process alone (PPEXCL before PPCLAIM). An exclusive claim never
// waits: with another driver or process on the port the kernel refuses it at once. A shared claim
// would block in the kernel for as long as the other one works.
//
// Closing the file gives the port back, and the kernel closes it whatever ends the process, a
// signal included: its release routine for the file gives up the claim and takes the process off
// the port's list of users. So no signal handler is needed. The file is not handed to child
// processes, which could otherwise keep it open. The lines stay at the levels written last.
#pragma once

#include <cstdint>
#include <string>

namespace vorel {

class TPpdevDevice {
public:
    explicit TPpdevDevice(unsigned number);
    TPpdevDevice(const TPpdevDevice&) = delete;
    TPpdevDevice& operator=(const TPpdevDevice&) = delete;
    ~TPpdevDevice() { Release(); }

    // Does nothing when claimed already. EVorelError with the operating system's error: no such
    // port, not permitted, or EBUSY for a port that somebody else uses.
    void Claim();
    // Gives the port back; does nothing when it is not claimed.
    void Release() noexcept;
    bool IsClaimed() const noexcept { return File >= 0; }

    // The registers as the hardware has them, inverted lines not straightened. EVorelError: EINVAL
    // without a claim, else what the operating system says.
    std::uint8_t ReadData();
    std::uint8_t ReadStatus();
    void WriteData(std::uint8_t value);
    // Changes the bits of `mask` alone.
    void WriteControl(std::uint8_t value, std::uint8_t mask);

private:
    void Control(unsigned long request, void* argument, const char* what);

    std::string Path;
    int File = -1;
};

} // namespace vorel
