#include "hosts/vorelctl/Progress.h"

#include <unistd.h>

#include <cstdio>

namespace vorel::host {

void ShowProgress(const std::string& text) {
    if (isatty(STDERR_FILENO) != 0) {
        std::fprintf(stderr, "\r\033[K%s", text.c_str());
        std::fflush(stderr);
    }
}

} // namespace vorel::host
