// What commands that need the library share: the hardware they work on, if any, the host services
// on top of it, and the loaded library.
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
    // `analyser` is told of all traffic; not owned, null for none, outlives the session.
    explicit TSession(const TArguments& arguments, IJTagAnalyser* analyser = nullptr);
    // Loads the library without hardware, for questions about what it knows. ECommandFailure with
    // EnvironmentFault.
    TSession();
    ~TSession();
    TSession(const TSession&) = delete;
    TSession& operator=(const TSession&) = delete;

    TVorelLibrary& Library() noexcept { return Vorel; }
    IHostClient& Client() noexcept { return Host; }
    const IHardware& Hardware() const noexcept { return *Chosen; }
    // The root object. ECommandFailure with EnvironmentFault when the library has none.
    IDeviceManager& Devices() const;

private:
    TSession(std::unique_ptr<IHardware> hardware, IJTagAnalyser* analyser);

    std::unique_ptr<IHardware> Chosen;
    TPlainHost Host;
    TVorelLibrary Vorel;
};

} // namespace vorel::host
