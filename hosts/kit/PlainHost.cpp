#include "hosts/kit/PlainHost.h"

#include "hosts/kit/LibraryLoader.h"
#include "support/Errors.h"
#include "support/IniFile.h"
#include "support/Text.h"

#include <cstdlib>
#include <fstream>
#include <iterator>
#include <utility>

namespace vorel::host {

namespace {

constexpr const char* OptionsFile = "options.ini";
constexpr const char* SettingsFile = "settings.ini";

IHostClient* TheClient = nullptr;

std::filesystem::path FolderFromEnvironment(const char* variable, const char* belowHome) {
    if (const char* folder = std::getenv(variable); folder != nullptr && *folder == '/') {
        return std::filesystem::path(folder) / "vorel";
    }
    const char* home = std::getenv("HOME");
    return std::filesystem::path(home != nullptr ? home : "/") / belowHome / "vorel";
}

TIniFile ReadIni(const std::filesystem::path& path) {
    std::ifstream file(path, std::ios::binary);
    return TIniFile(std::string(std::istreambuf_iterator<char>(file), {}));
}

std::string ReadValue(const std::filesystem::path& path, const WideText& section,
                      const WideText& key, const WideText& fallback) {
    return ReadIni(path).Read(ToUtf8(section), ToUtf8(key), ToUtf8(fallback));
}

// A box breaks lines at any CR; on a terminal that would write one line over the other.
std::string AsLines(std::string_view text) {
    std::string lines;
    for (const std::string& line : SplitLines(text)) {
        if (!line.empty()) {
            lines += (lines.empty() ? "" : "\n") + line;
        }
    }
    return lines;
}

} // namespace

TInstallation TInstallation::OfThisProgram() {
    return {ProgramFolder().parent_path()};
}

TUserFolders TUserFolders::OfThisUser() {
    return {FolderFromEnvironment("XDG_DATA_HOME", ".local/share"),
            FolderFromEnvironment("XDG_CONFIG_HOME", ".config")};
}

TPlainHost::TPlainHost(TInstallation installation, TUserFolders user)
    : Installation(std::move(installation)), User(std::move(user)) {}

Status TPlainHost::ReadOption(const WideText& section, const WideText& key,
                              const WideText& fallback, WideText& value) noexcept {
    return Guard(
        [&] { value = ToWide(ReadValue(User.Settings / OptionsFile, section, key, fallback)); });
}

Status TPlainHost::ReadUserSetting(const WideText& branch, const WideText& key,
                                   const WideText& fallback, WideText& value) noexcept {
    return Guard(
        [&] { value = ToWide(ReadValue(User.Settings / SettingsFile, branch, key, fallback)); });
}

Status TPlainHost::WriteOption(const WideText& section, const WideText& key,
                               const WideText& value) noexcept {
    return Guard([&] {
        const std::filesystem::path path = User.Settings / OptionsFile;
        TIniFile ini = ReadIni(path);
        ini.Write(ToUtf8(section), ToUtf8(key), ToUtf8(value));
        std::filesystem::create_directories(User.Settings);
        return SaveTextFile(path.u16string(), ini.ToText());
    });
}

Status TPlainHost::WriteUserSetting(const WideText& branch, const WideText& key,
                                    const WideText& value) noexcept {
    return Guard([&] {
        const std::filesystem::path path = User.Settings / SettingsFile;
        TIniFile ini = ReadIni(path);
        ini.Write(ToUtf8(branch), ToUtf8(key), ToUtf8(value));
        std::filesystem::create_directories(User.Settings);
        return SaveTextFile(path.u16string(), ini.ToText());
    });
}

Status TPlainHost::ShowStatusText(std::int32_t, const WideText& text) noexcept {
    return Guard([&] {
        if (OnStatus) {
            OnStatus(ToUtf8(text));
        }
    });
}

Status TPlainHost::AddMessage(const WideText& messageClass, const WideText& text,
                              const WideText& source, const WideText& kind) noexcept {
    return Guard([&] {
        if (OnMessage) {
            OnMessage(ToUtf8(kind) + " " + ToUtf8(messageClass) + ": " + ToUtf8(source) + ": " +
                      ToUtf8(text));
        }
    });
}

Status TPlainHost::ShowMessageBox(MessageBoxKind kind, const WideText& caption,
                                  const WideText& text, MessageBoxAnswer& answer) noexcept {
    const Status status = Guard([&] {
        if (OnMessage) {
            OnMessage((caption.empty() ? "" : ToUtf8(caption) + ": ") + AsLines(ToUtf8(text)));
        }
    });
    TNeutralHost::ShowMessageBox(kind, caption, text, answer);
    return status;
}

Status TPlainHost::GetDirectory(HostDirectory directory, WideText& path) noexcept {
    return Guard([&]() -> Status {
        path.clear();
        switch (directory) {
        case HostDirectory::Installation:
            path = Installation.Root.u16string();
            return StatusOk;
        case HostDirectory::System:
            path = Installation.System().u16string();
            return StatusOk;
        case HostDirectory::Library:
            path = Installation.Library().u16string();
            return StatusOk;
        case HostDirectory::DeviceImages:
            path = Installation.DeviceImages().u16string();
            return StatusOk;
        case HostDirectory::UserData:
            std::filesystem::create_directories(User.Data);
            path = User.Data.u16string();
            return StatusOk;
        case HostDirectory::UserSettings:
            path = User.Settings.u16string();
            return StatusOk;
        case HostDirectory::Temporary:
            break;
        }
        return TNeutralHost::GetDirectory(directory, path);
    });
}

Status TPlainHost::GetUsbServices(IUsbServices*& services) noexcept {
    services = Usb;
    return StatusOk;
}

Status TPlainHost::GetParallelPortManager(IParallelPortManager*& manager) noexcept {
    manager = ParallelPorts;
    return StatusOk;
}

Status TPlainHost::GetTrafficAnalyser(IJTagAnalyser*& analyser) noexcept {
    analyser = Analyser;
    return StatusOk;
}

void SetHostClient(IHostClient* client) noexcept {
    TheClient = client;
}

} // namespace vorel::host

// What the library looks for in the process. It stands in the same file as SetHostClient, so that a
// program that sets a client also has the function.
extern "C" __attribute__((visibility("default"))) vorel::Status
GetVorelHostClient(vorel::IHostClient** client) {
    if (client == nullptr) {
        return vorel::StatusBadArgument;
    }
    *client = vorel::host::TheClient;
    return vorel::StatusOk;
}
