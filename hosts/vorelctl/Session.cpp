#include "hosts/vorelctl/Session.h"

#include "support/Errors.h"

#include <cstdio>

namespace vorel::host {

namespace {

constexpr const char* DefaultScene = "default.ini";

std::unique_ptr<IHardware> OpenChosen(const TArguments& arguments) {
    const int chosen =
        arguments.Has("--scene") + arguments.Has("--usb") + arguments.Has("--bitbang");
    if (chosen > 1) {
        throw ECommandFailure(ExitStatus::WrongUsage,
                              "Choose one of --scene, --usb and --bitbang.");
    }
    try {
        if (arguments.Has("--usb")) {
            return OpenMachine();
        }
        if (const auto address = arguments.Find("--bitbang")) {
            return OpenBitbang(*address);
        }
        return OpenScene(FindScene(arguments.Find("--scene").value_or(DefaultScene)));
    } catch (const EVorelError& error) {
        throw ECommandFailure(ExitStatus::EnvironmentFault, error.what());
    }
}

} // namespace

std::filesystem::path FindScene(const std::string& name) {
    std::error_code error;
    std::filesystem::path shipped = TInstallation::OfThisProgram().Scenes() / name;
    if (!std::filesystem::exists(name, error) && std::filesystem::exists(shipped, error)) {
        return shipped;
    }
    return name;
}

std::vector<TOption> HardwareOptions() {
    return {
        {"--scene", "FILE", "virtual hardware: a scene file, or the name of a shipped scene"},
        {"--usb", "", "the USB pods and parallel ports of this machine"},
        {"--bitbang", "HOST:PORT", "a chain behind a remote_bitbang server"},
    };
}

TSession::TSession(const TArguments& arguments, IJTagAnalyser* analyser)
    : TSession(OpenChosen(arguments), analyser) {}

TSession::TSession() : TSession(OpenNoHardware(), nullptr) {}

TSession::TSession(std::unique_ptr<IHardware> hardware, IJTagAnalyser* analyser)
    : Chosen(std::move(hardware)),
      Host(TInstallation::OfThisProgram(), TUserFolders::OfThisUser()) {
    Host.UseUsb(&Chosen->Usb());
    Host.UseParallelPorts(Chosen->ParallelPorts());
    Host.UseAnalyser(analyser);
    Host.OnMessage = [](const std::string& text) { std::fprintf(stderr, "%s\n", text.c_str()); };
    SetHostClient(&Host);
    if (!Vorel.Load(ProgramFolder())) {
        SetHostClient(nullptr);
        throw ECommandFailure(ExitStatus::EnvironmentFault, Vorel.Problem());
    }
}

TSession::~TSession() {
    Vorel.Unload();
    SetHostClient(nullptr);
}

IDeviceManager& TSession::Devices() const {
    IDeviceManager* const manager = Vorel.DeviceManager();
    if (manager == nullptr) {
        throw ECommandFailure(ExitStatus::EnvironmentFault, "The library made no device manager.");
    }
    return *manager;
}

} // namespace vorel::host
