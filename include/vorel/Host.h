// The services that the library needs of the application that loads it.
//
// At load the library looks in the process for the function named by HostClientEntryPoint. A host
// exports it, and with the client that it gives the root object comes to life; a process without it
// gets no root object. The client must stay until the library is unloaded. All calls come on the
// host's main thread.
#pragma once

#include "vorel/Interface.h"

namespace vorel {

class IJTagAnalyser;
class IUsbServices;
class IParallelPortManager;

// Folders of the host's installation and of the user, without a final separator.
enum class HostDirectory : std::int32_t {
    Installation = 0, // holds the three below
    System = 1,       // driver modules, board files, family and alias data
    Library = 2,      // BSDL files and device data
    DeviceImages = 3,
    UserData = 4,     // the driver cache, memory view files
    UserSettings = 5, // where the options store lies
    Temporary = 6,
};

// Kinds of message boxes, and the answer of a question.
enum class MessageBoxKind : std::int32_t { Information = 0, Warning = 1, Error = 2, YesNo = 3 };
enum class MessageBoxAnswer : std::int32_t { Ok = 0, Yes = 1, No = 2, Cancel = 3 };

class IHostClient : public IInterface {
public:
    static constexpr Guid Id{
        0x7781ED35, 0xA4CF, 0x4E6D, {0x89, 0x2F, 0xEF, 0xF9, 0x16, 0x38, 0xD4, 0x5A}};

    // Options store. Gives the stored text, or `fallback` when there is none.
    virtual Status ReadOption(const WideText& section, const WideText& key,
                              const WideText& fallback, WideText& value) noexcept = 0;
    virtual Status WriteOption(const WideText& section, const WideText& key,
                               const WideText& value) noexcept = 0;
    // Per-user store of dialog and form state, below a branch ("Forms/ChooseDevice").
    virtual Status ReadUserSetting(const WideText& branch, const WideText& key,
                                   const WideText& fallback, WideText& value) noexcept = 0;
    virtual Status WriteUserSetting(const WideText& branch, const WideText& key,
                                    const WideText& value) noexcept = 0;

    // A text that no other object has: any GUID text.
    virtual Status NewUniqueId(WideText& id) noexcept = 0;

    // Status line; an empty text clears it. Panel 3 is the one for parsing and loading.
    virtual Status ShowStatusText(std::int32_t panel, const WideText& text) noexcept = 0;
    // One line on the message panel, e.g. class "VHDL", kind "[Error]"; `source` is a file name
    // without folder.
    virtual Status AddMessage(const WideText& messageClass, const WideText& text,
                              const WideText& source, const WideText& kind) noexcept = 0;
    // Modal box. An empty caption stands for the host's default one. A host without a user answers
    // Ok or No.
    virtual Status ShowMessageBox(MessageBoxKind kind, const WideText& caption,
                                  const WideText& text, MessageBoxAnswer& answer) noexcept = 0;
    // Nested: each begin has its end.
    virtual Status BeginWaitCursor() noexcept = 0;
    virtual Status EndWaitCursor() noexcept = 0;
    // Lets the user interface paint and react in the middle of long work.
    virtual Status ProcessPendingEvents() noexcept = 0;

    // Runs a process of the host such as "TEXTEDIT:CrossProbeNotify". Parameters:
    // "name=value|name=value".
    virtual Status RunProcess(const WideText& process, const WideText& parameters) noexcept = 0;

    // Panels of the debugger. `widget` is a widget of the user interface toolkit, which stays the
    // library's.
    virtual Status AddPanel(const WideText& panelId, const WideText& caption,
                            void* widget) noexcept = 0;
    virtual Status ShowPanel(const WideText& panelId) noexcept = 0;
    virtual Status RemovePanel(const WideText& panelId) noexcept = 0;

    // The object code file that the host's project has for a device; empty without one.
    virtual Status GetObjectCodeFile(const WideText& deviceUniqueId, WideText& path) noexcept = 0;

    virtual Status GetDirectory(HostDirectory directory, WideText& path) noexcept = 0;
    // Writes a whole file, replacing one that is there; the host may ask for a read-only or
    // checked-out file first. `text` holds the file's bytes.
    virtual Status SaveTextFile(const WideText& path, const std::string& text) noexcept = 0;
    virtual Status GetVersionText(WideText& text) noexcept = 0;
    // True once the host is shutting down.
    virtual Status IsClosing(Bool32& closing) noexcept = 0;

    // What stands in for the machine's own hardware access; null for the machine's own. Asked once,
    // at load.
    virtual Status GetUsbServices(IUsbServices*& services) noexcept = 0;
    virtual Status GetParallelPortManager(IParallelPortManager*& manager) noexcept = 0;
    // Who is told of all JTAG traffic (vorel/Analyser.h); null for nobody. Asked once, at load.
    virtual Status GetTrafficAnalyser(IJTagAnalyser*& analyser) noexcept = 0;

protected:
    ~IHostClient() = default;
};

// Gives the process's host client; null when it has none at the moment.
inline constexpr const char* HostClientEntryPoint = "GetVorelHostClient";
extern "C" {
using GetHostClientProc = Status (*)(IHostClient** client);
}

} // namespace vorel
