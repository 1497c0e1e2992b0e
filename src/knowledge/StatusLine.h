// One line on the host's status panel for parsing and loading.
#pragma once

#include "support/Text.h"
#include "vorel/Host.h"

namespace vorel {

inline constexpr std::int32_t LoadingPanel = 3;

// An empty text clears the panel. Without a host nothing is shown.
inline void ShowStatusLine(IHostClient* host, const std::string& text) {
    if (host != nullptr) {
        host->ShowStatusText(LoadingPanel, ToWide(text));
    }
}

} // namespace vorel
