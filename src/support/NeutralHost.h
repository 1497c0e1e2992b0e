// A host client whose every operation succeeds and does nothing: what the library works with in a
// process without a host, and the base of hosts that offer only some services.
#pragma once

#include "support/Objects.h"
#include "vorel/Host.h"

namespace vorel {

class TNeutralHost : public TNonRefCountedInterfacedObject<IHostClient> {
public:
    Status ReadOption(const WideText& section, const WideText& key, const WideText& fallback,
                      WideText& value) noexcept override;
    Status WriteOption(const WideText& section, const WideText& key,
                       const WideText& value) noexcept override;
    Status ReadUserSetting(const WideText& branch, const WideText& key, const WideText& fallback,
                           WideText& value) noexcept override;
    Status WriteUserSetting(const WideText& branch, const WideText& key,
                            const WideText& value) noexcept override;
    // A random version-4 GUID text in braces.
    Status NewUniqueId(WideText& id) noexcept override;
    Status ShowStatusText(std::int32_t panel, const WideText& text) noexcept override;
    Status AddMessage(const WideText& messageClass, const WideText& text, const WideText& source,
                      const WideText& kind) noexcept override;
    Status ShowMessageBox(MessageBoxKind kind, const WideText& caption, const WideText& text,
                          MessageBoxAnswer& answer) noexcept override;
    Status BeginWaitCursor() noexcept override;
    Status EndWaitCursor() noexcept override;
    Status ProcessPendingEvents() noexcept override;
    Status RunProcess(const WideText& process, const WideText& parameters) noexcept override;
    Status AddPanel(const WideText& panelId, const WideText& caption,
                    void* widget) noexcept override;
    Status ShowPanel(const WideText& panelId) noexcept override;
    Status RemovePanel(const WideText& panelId) noexcept override;
    Status GetObjectCodeFile(const WideText& deviceUniqueId, WideText& path) noexcept override;
    // Temporary gives the system's temporary folder, all others give empty text.
    Status GetDirectory(HostDirectory directory, WideText& path) noexcept override;
    // A plain write: to a temporary name first, then renamed over the old file.
    Status SaveTextFile(const WideText& path, const std::string& text) noexcept override;
    Status GetVersionText(WideText& text) noexcept override;
    Status IsClosing(Bool32& closing) noexcept override;
    Status GetUsbServices(IUsbServices*& services) noexcept override;
    Status GetParallelPortManager(IParallelPortManager*& manager) noexcept override;
    Status GetTrafficAnalyser(IJTagAnalyser*& analyser) noexcept override;
};

} // namespace vorel
