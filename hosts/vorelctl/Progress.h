// The line that tells what is being done while work takes its time.
#pragma once

#include <string>

namespace vorel::host {

// Overwrites the line with `text`; an empty one clears it. Shown on stderr, and only where that is
// a terminal.
void ShowProgress(const std::string& text);

} // namespace vorel::host
