#include "platform/ppdev/PpdevDevice.h"

#include "support/Errors.h"

#include <fcntl.h>
#include <linux/ppdev.h>
#include <sys/ioctl.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

namespace vorel {

namespace {

[[noreturn]] void Fail(const std::string& path, const char* what, int error) {
    throw EVorelError(StatusFromOsError(static_cast<std::uint32_t>(error)),
                      path + ": " + what + ": " + std::strerror(error));
}

} // namespace

TPpdevDevice::TPpdevDevice(unsigned number) : Path("/dev/parport" + std::to_string(number)) {}

void TPpdevDevice::Claim() {
    if (IsClaimed()) {
        return;
    }
    const int file = open(Path.c_str(), O_RDWR | O_CLOEXEC | O_NOCTTY);
    if (file < 0) {
        Fail(Path, "opening", errno);
    }
    if (ioctl(file, PPEXCL) != 0 || ioctl(file, PPCLAIM) != 0) {
        // ppdev says ENXIO when it cannot register an exclusive user beside others.
        const int error = errno == ENXIO ? EBUSY : errno;
        close(file);
        Fail(Path, "claiming", error);
    }
    File = file;
}

void TPpdevDevice::Release() noexcept {
    if (IsClaimed()) {
        ioctl(File, PPRELEASE);
        close(File);
        File = -1;
    }
}

void TPpdevDevice::Control(unsigned long request, void* argument, const char* what) {
    if (!IsClaimed()) {
        Fail(Path, what, EINVAL);
    }
    if (ioctl(File, request, argument) != 0) {
        Fail(Path, what, errno);
    }
}

std::uint8_t TPpdevDevice::ReadData() {
    unsigned char value = 0;
    Control(PPRDATA, &value, "reading the data register");
    return value;
}

std::uint8_t TPpdevDevice::ReadStatus() {
    unsigned char value = 0;
    Control(PPRSTATUS, &value, "reading the status register");
    return value;
}

void TPpdevDevice::WriteData(std::uint8_t value) {
    Control(PPWDATA, &value, "writing the data register");
}

void TPpdevDevice::WriteControl(std::uint8_t value, std::uint8_t mask) {
    // The kernel's rule is (old & ~mask) ^ val, so val may hold no bit outside the mask.
    ppdev_frob_struct change{mask, static_cast<unsigned char>(value & mask)};
    Control(PPFCONTROL, &change, "writing the control register");
}

} // namespace vorel
