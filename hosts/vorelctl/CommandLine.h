// The command line of vorelctl: options, positional words, and the exit statuses.
#pragma once

#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

namespace vorel::host {

enum class ExitStatus : int {
    Ok = 0,
    NothingFound = 1,     // the work was done, and it found nothing or failed
    WrongUsage = 2,       // the command line is wrong
    EnvironmentFault = 3, // a file, the library, the hardware access or a permission is missing
};

// Ends a command: the text goes to stderr, the status to the shell.
class ECommandFailure : public std::runtime_error {
public:
    ECommandFailure(ExitStatus exitStatus, const std::string& text)
        : std::runtime_error(text), Exit(exitStatus) {}
    ExitStatus GetExitStatus() const noexcept { return Exit; }

private:
    ExitStatus Exit;
};

struct TOption {
    std::string_view Name; // "--scene"
    std::string_view
        Value; // what the value is called in the help; empty when the option takes none
    std::string_view Help;
};

class TArguments {
public:
    // Reads the words behind the command's name. Options may be written "--name VALUE" or
    // "--name=VALUE"; "--" ends them. An unknown option, a missing or a needless value raises
    // ECommandFailure with WrongUsage.
    TArguments(const std::vector<std::string>& words, const std::vector<TOption>& options);

    bool Has(std::string_view option) const;
    std::optional<std::string> Find(std::string_view option) const; // the last one given counts
    const std::vector<std::string>& Words() const noexcept { return Positional; }

    // A whole number in [least, most]; WrongUsage names the option and the range otherwise.
    std::optional<long> FindNumber(std::string_view option, long least, long most) const;

private:
    std::vector<std::pair<std::string, std::string>> Given;
    std::vector<std::string> Positional;
};

// The option list as help text, one aligned line each.
std::string DescribeOptions(const std::vector<TOption>& options);

} // namespace vorel::host
