// What the commands that touch hardware share: choosing it, the host services on top of it, and the
// loaded library.
#pragma once

#include "hosts/kit/Hardware.h"
#include "hosts/kit/LibraryLoader.h"
#include "hosts/kit/PlainHost.h"
#include "hosts/vorelctl/CommandLine.h"

#include <memory>

namespace vorel::host {

// --scene, --usb and --bitbang.
std::vector<TOption> HardwareOptions();

// A scene by path, or by name among the scenes of the installation.
std::filesystem::path FindScene(const std::string& name);

class TSession {
public:
    // Opens the hardware that the arguments name, the default scene without any, and loads the
    // library on it. ECommandFailure with WrongUsage or EnvironmentFault.
    explicit TSession(const TArguments& arguments);
    ~TSession();
    TSession(const TSession&) = delete;
    TSession& operator=(const TSession&) = delete;

    TVorelLibrary& Library() noexcept { return Vorel; }
    IHostClient& Client() noexcept { return Host; }
    const IHardware& Hardware() const noexcept { return *Chosen; }

private:
    std::unique_ptr<IHardware> Chosen;
    TPlainHost Host;
    TVorelLibrary Vorel;
};

} // namespace vorel::host
