// The version text of the host that stands in the driver cache.
#pragma once

#include <string>

namespace vorel {

class IHostClient;

// The host's own version text without "Version "; when that is empty, the version that the host's
// installation file `qmx.ins` in `systemDirectory` names. Empty when neither tells. `host` may be
// null.
std::string VersionOfHost(IHostClient* host, const std::string& systemDirectory);

// The dotted number of an installation text: the first one of the whole text, provided that it
// stands behind the first "Version" that is followed by one. Empty otherwise.
std::string VersionInText(const std::string& text);

} // namespace vorel
