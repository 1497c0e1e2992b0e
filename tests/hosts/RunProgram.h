// Running vorelctl the way a user does.
#pragma once

#include <sys/wait.h>

#include <array>
#include <cstdio>
#include <string>

namespace vorel::host {

struct TRun {
    std::string Output; // stdout and stderr
    int ExitStatus = -1;
};

// `home` is where the program keeps its cache and settings: not the user's. It runs in `folder`.
inline TRun RunProgram(const std::string& program, const std::string& home,
                       const std::string& arguments, const std::string& folder = "/") {
    const std::string command = "cd '" + folder + "' && XDG_DATA_HOME='" + home +
                                "' XDG_CONFIG_HOME='" + home + "' '" + program + "' " + arguments +
                                " 2>&1";
    TRun run;
    FILE* pipe = popen(command.c_str(), "r");
    std::array<char, 4096> block{};
    while (const std::size_t size = fread(block.data(), 1, block.size(), pipe)) {
        run.Output.append(block.data(), size);
    }
    const int status = pclose(pipe);
    run.ExitStatus = WIFEXITED(status) ? WEXITSTATUS(status) : -1;
    return run;
}

} // namespace vorel::host
