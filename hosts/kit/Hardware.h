// The hardware that a host program works on: the virtual one of a scene, the machine's own, or a
// remote_bitbang server behind a pod of its own.
#pragma once

#include "vorel/ParallelPort.h"
#include "vorel/UsbServices.h"

#include <filesystem>
#include <memory>
#include <string>
#include <vector>

namespace vorel::host {

class IHardware {
public:
    IHardware() = default;
    IHardware(const IHardware&) = delete;
    IHardware& operator=(const IHardware&) = delete;
    virtual ~IHardware() = default;

    // Owned by the hardware; has to stay until the library is unloaded.
    virtual IUsbServices& Usb() noexcept = 0;
    // The same; null for the machine's own ports.
    virtual IParallelPortManager* ParallelPorts() noexcept = 0;
    // For people: "scene default.ini (virtual hardware)".
    virtual std::string Describe() const = 0;
    // What a user should know besides the ports: pods that may not be opened, a connection that was
    // lost. Asked after the work.
    virtual std::vector<std::string> Notes() const { return {}; }
};

// Each raises EVorelError whose text says what was tried.
std::unique_ptr<IHardware> OpenScene(const std::filesystem::path& file);
std::unique_ptr<IHardware> OpenBitbang(const std::string& address); // HOST:PORT
std::unique_ptr<IHardware> OpenMachine();
// No hardware at all, not even the machine's own: for work with what is known about devices.
std::unique_ptr<IHardware> OpenNoHardware();

} // namespace vorel::host
