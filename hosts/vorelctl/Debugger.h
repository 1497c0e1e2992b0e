// The commands of a debugging session, one line each: what the prompt, a script and the single
// commands of vorelctl have in common.
#pragma once

#include "hosts/vorelctl/DebugTarget.h"

#include <filesystem>
#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace vorel::host {

class TDebugger {
public:
    using TWords = std::vector<std::string>; // behind the command's name
    struct TCommand {
        std::string_view Name;
        std::string_view Usage; // what stands behind the name
        std::string_view Summary;
        std::string (TDebugger::*Run)(const TWords& words);
        bool NeedsProcessor = true;
        bool OnlyInSession = false; // means nothing where each command connects anew
    };

    // Host and target outlive the debugger. `progress` gets a line that replaces the one before
    // while a long command works, and "" at its end.
    TDebugger(IHostClient& host, TDebugTarget& target,
              std::function<void(const std::string&)> progress)
        : Host(host), Target(target), Progress(std::move(progress)) {}

    static const std::vector<TCommand>& Commands();
    // A command's name and what stands behind it; empty when there is no such command.
    static std::string UsageOf(std::string_view command);

    // The options of a command; --write stands last, since all words behind it are values.
    static std::vector<TOption> OptionsOf(std::string_view command);

    // Where `load` looks for a file that is not in the current folder: the folder of the script.
    void SetFolder(const std::filesystem::path& folder) { Folder = folder; }

    // Runs one command and gives its output, lines that end with LF. ECommandFailure with
    // WrongUsage for an unknown command or wrong words, with NothingFound when it could not be
    // done or the target fails.
    std::string Execute(const std::string& name, const TWords& words);

private:
    std::string FindFile(const std::string& name) const;
    std::string Load(const TWords& words);
    std::string Save(const TWords& words);
    std::string Reset(const TWords& words);
    std::string Run(const TWords& words);
    std::string Wait(const TWords& words);
    std::string Pause(const TWords& words);
    std::string Step(const TWords& words);
    std::string Status(const TWords& words);
    std::string Regs(const TWords& words);
    std::string Mem(const TWords& words);
    std::string Break(const TWords& words);
    std::string Console(const TWords& words);
    std::string Reconnect(const TWords& words);

    void WriteRegister(const TDebugTarget::TRegister& place, const std::string& value);
    std::string WriteMemory(std::int64_t address, std::size_t size, const TWords& values);
    std::string AddBreakpoint(std::int64_t address);
    std::string RemoveBreakpoint(std::int64_t address);
    std::string ListBreakpoints() const;
    std::int64_t BreakpointLocation(std::int64_t address) const;

    IHostClient& Host;
    TDebugTarget& Target;
    std::function<void(const std::string&)> Progress;
    std::filesystem::path Folder;
    std::vector<std::int64_t> Breakpoints; // byte addresses, in order
};

// The words of a line: separated by blanks; one in double quotes may hold blanks. Nothing for an
// empty line and for one that begins with '#'.
std::vector<std::string> SplitCommandLine(std::string_view line);

} // namespace vorel::host
