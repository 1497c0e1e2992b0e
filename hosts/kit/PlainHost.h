// The host services of a plain process: options and settings in ini files of the user, messages on
// stderr, folders of an installation, and the hardware that the program chose.
#pragma once

#include "support/NeutralHost.h"

#include <filesystem>
#include <functional>
#include <string>

namespace vorel::host {

// The folders of an installation. A program lies in its System folder, beside the library.
struct TInstallation {
    std::filesystem::path Root;

    std::filesystem::path System() const { return Root / "System"; }
    std::filesystem::path Library() const { return Root / "Library"; }
    std::filesystem::path DeviceImages() const { return Root / "DeviceImages"; }
    std::filesystem::path Scenes() const { return Root / "scenes"; }

    // The installation that the running program belongs to.
    static TInstallation OfThisProgram();
};

// Where a user's data and settings lie: the XDG base directories ($XDG_DATA_HOME and
// $XDG_CONFIG_HOME, else ~/.local/share and ~/.config), folder "vorel".
struct TUserFolders {
    std::filesystem::path Data;
    std::filesystem::path Settings;

    static TUserFolders OfThisUser();
};

class TPlainHost : public TNeutralHost {
public:
    TPlainHost(TInstallation installation, TUserFolders user);

    // The hardware to use in place of the machine's own; not owned, null for the machine's own.
    // Has to be set before the library is loaded.
    void UseUsb(IUsbServices* services) noexcept { Usb = services; }
    void UseParallelPorts(IParallelPortManager* manager) noexcept { ParallelPorts = manager; }
    // Who is told of all traffic; the same.
    void UseAnalyser(IJTagAnalyser* analyser) noexcept { Analyser = analyser; }

    // Where status texts, and messages and boxes, go. Nothing is shown while empty.
    std::function<void(const std::string&)> OnStatus;
    std::function<void(const std::string&)> OnMessage;

    Status ReadOption(const WideText& section, const WideText& key, const WideText& fallback,
                      WideText& value) noexcept override;
    Status WriteOption(const WideText& section, const WideText& key,
                       const WideText& value) noexcept override;
    Status ReadUserSetting(const WideText& branch, const WideText& key, const WideText& fallback,
                           WideText& value) noexcept override;
    Status WriteUserSetting(const WideText& branch, const WideText& key,
                            const WideText& value) noexcept override;
    Status ShowStatusText(std::int32_t panel, const WideText& text) noexcept override;
    Status AddMessage(const WideText& messageClass, const WideText& text, const WideText& source,
                      const WideText& kind) noexcept override;
    Status ShowMessageBox(MessageBoxKind kind, const WideText& caption, const WideText& text,
                          MessageBoxAnswer& answer) noexcept override;
    Status GetDirectory(HostDirectory directory, WideText& path) noexcept override;
    Status GetUsbServices(IUsbServices*& services) noexcept override;
    Status GetParallelPortManager(IParallelPortManager*& manager) noexcept override;
    Status GetTrafficAnalyser(IJTagAnalyser*& analyser) noexcept override;

private:
    TInstallation Installation;
    TUserFolders User;
    IUsbServices* Usb = nullptr;
    IParallelPortManager* ParallelPorts = nullptr;
    IJTagAnalyser* Analyser = nullptr;
};

// The client that this process's exported function gives to the library; null takes it back. Not
// owned: it has to stay until the library is unloaded.
void SetHostClient(IHostClient* client) noexcept;

} // namespace vorel::host
