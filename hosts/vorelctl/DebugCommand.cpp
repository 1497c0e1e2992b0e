// vorelctl debug, and its commands one by one.
#include "hosts/vorelctl/Commands.h"
#include "hosts/vorelctl/Debugger.h"
#include "hosts/vorelctl/Progress.h"
#include "support/Text.h"

#include <unistd.h>

#include <cstdio>
#include <deque>
#include <filesystem>
#include <fstream>
#include <iostream>

namespace vorel::host {

namespace {

void Print(const std::string& text) {
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fflush(stdout);
}

// A long usage has its summary on a line of its own.
std::string CommandLine(const std::string& usage, std::string_view summary) {
    constexpr std::size_t column = 44;
    const std::string gap = usage.size() > column ? "\n" + std::string(column + 2, ' ') : "";
    return "  " + PadRight(usage, column) + gap + " " + std::string(summary);
}

std::string CommandList() {
    std::string text;
    for (const TDebugger::TCommand& command : TDebugger::Commands()) {
        text += CommandLine(TDebugger::UsageOf(command.Name), command.Summary) + "\n";
    }
    return text + CommandLine("help", "list the commands") + "\n" +
           CommandLine("quit", "end the session");
}

class TDebugCommand final : public ICommand {
public:
    std::string_view Name() const override { return "debug"; }
    std::string_view Usage() const override {
        return "[DEVICE] [--script FILE] [--scene FILE | --usb | --bitbang HOST:PORT]";
    }
    std::string_view Summary() const override {
        return "debug a soft device, at a prompt or by a script";
    }
    std::string_view Details() const override {
        static const std::string text =
            "DEVICE is a name or a place on the chain; without it the first soft device is taken,\n"
            "on a hard chain if there is none on a soft one. Addresses and values are hexadecimal, "
            "counts decimal. Commands:\n" +
            CommandList() +
            "\nA script holds a command in each line; lines that begin with # are comments and "
            "are\n"
            "shown. It ends at the first failure. Exit status: 0 all done, 1 a command failed.";
        return text;
    }
    std::vector<TOption> Options() const override {
        std::vector<TOption> options = HardwareOptions();
        options.push_back({"--script", "FILE", "take the commands from a file"});
        return options;
    }
    ExitStatus Run(const TArguments& arguments) const override;
};

// Takes commands from `input` until it ends or says quit. A script is shown while it runs and ends
// at the first failure; at the prompt a failure is told and the session goes on.
class TConversation {
public:
    TConversation(std::istream& input, TDebugger& debugger, bool isScript)
        : Input(input), Debugger(debugger), IsScript(isScript) {}

    ExitStatus Run() {
        std::string line;
        for (int number = 1; Ask(), std::getline(Input, line); ++number) {
            const std::vector<std::string> words = SplitCommandLine(line);
            if (IsScript) {
                Show(Trim(line), words.empty());
            }
            if (words.empty()) {
                continue;
            }
            if (words[0] == "quit") {
                break;
            }
            if (!Obey(words) && IsScript) {
                std::fprintf(stderr, "The script ends at its line %d.\n", number);
                return ExitStatus::NothingFound;
            }
        }
        return ExitStatus::Ok;
    }

private:
    // A comment opens a paragraph, unless it goes on with the one before.
    void Show(std::string_view line, bool isComment) {
        if (!isComment) {
            Print("> " + std::string(line) + "\n");
        } else if (!line.empty()) {
            Print((InComment ? "" : "\n") + std::string(line) + "\n");
        }
        InComment = isComment && !line.empty();
    }
    void Ask() const {
        if (!IsScript && isatty(STDIN_FILENO) != 0) {
            Print("debug> ");
        }
    }
    bool Obey(const std::vector<std::string>& words) const {
        try {
            Print(words[0] == "help"
                      ? CommandList() + "\n"
                      : Debugger.Execute(words[0], {words.begin() + 1, words.end()}));
            return true;
        } catch (const ECommandFailure& failure) {
            std::fprintf(stderr, "%s\n", failure.what());
            const std::string usage = TDebugger::UsageOf(words[0]);
            if (failure.GetExitStatus() == ExitStatus::WrongUsage && !usage.empty()) {
                std::fprintf(stderr, "usage: %s\n", usage.c_str());
            }
        }
        return false;
    }

    std::istream& Input;
    TDebugger& Debugger;
    bool IsScript;
    bool InComment = false; // the line before was one
};

ExitStatus TDebugCommand::Run(const TArguments& arguments) const {
    if (arguments.Words().size() > 1) {
        throw ECommandFailure(ExitStatus::WrongUsage,
                              "debug takes no \"" + arguments.Words()[1] + "\".");
    }
    std::ifstream script;
    const auto fileName = arguments.Find("--script");
    if (fileName) {
        script.open(*fileName);
        if (!script) {
            throw ECommandFailure(ExitStatus::EnvironmentFault, *fileName + " cannot be read.");
        }
    }
    TSession session(arguments);
    TDebugTarget target(session, arguments.Words().empty() ? "" : arguments.Words()[0]);
    TDebugger debugger(session.Client(), target, ShowProgress);
    Print(target.Name() + " at " + target.Place() + "\n");
    if (fileName) {
        debugger.SetFolder(std::filesystem::path(*fileName).parent_path());
        return TConversation(script, debugger, true).Run();
    }
    return TConversation(std::cin, debugger, false).Run();
}

// One command of a session as a command of its own.
class TSingleCommand final : public ICommand {
public:
    explicit TSingleCommand(const TDebugger::TCommand& command)
        : Command(command), UsageText("DEVICE " + std::string(command.Usage)) {}
    std::string_view Name() const override { return Command.Name; }
    std::string_view Usage() const override { return UsageText; }
    std::string_view Summary() const override { return Command.Summary; }
    std::string_view Details() const override {
        return "DEVICE is a name or a place on the chain. Addresses and values are hexadecimal,\n"
               "counts decimal. Each call connects anew, so on a virtual board it meets a fresh\n"
               "one; vorelctl debug keeps one connection.";
    }
    std::vector<TOption> Options() const override {
        std::vector<TOption> options = HardwareOptions();
        const std::vector<TOption> own = TDebugger::OptionsOf(Command.Name);
        options.insert(options.end(), own.begin(), own.end());
        return options;
    }
    ExitStatus Run(const TArguments& arguments) const override;

private:
    const TDebugger::TCommand& Command;
    std::string UsageText;
};

ExitStatus TSingleCommand::Run(const TArguments& arguments) const {
    if (arguments.Words().empty()) {
        throw ECommandFailure(ExitStatus::WrongUsage,
                              std::string(Name()) + " needs a device; see --help.");
    }
    // Values behind the first one of --write are plain words here.
    const bool writes = arguments.Has("--write");
    const auto& given = arguments.Words();
    const auto plainEnd = writes && given.size() > 2 ? given.begin() + 2 : given.end();
    TDebugger::TWords words(given.begin() + 1, plainEnd);
    for (const TOption& option : TDebugger::OptionsOf(Command.Name)) {
        if (arguments.Has(option.Name)) {
            words.emplace_back(option.Name);
            if (!option.Value.empty()) {
                words.push_back(*arguments.Find(option.Name));
            }
        }
    }
    words.insert(words.end(), plainEnd, given.end());
    TSession session(arguments);
    TDebugTarget target(session, given[0]);
    try {
        Print(TDebugger(session.Client(), target, ShowProgress)
                  .Execute(std::string(Command.Name), words));
    } catch (const ECommandFailure& failure) {
        if (failure.GetExitStatus() != ExitStatus::WrongUsage) {
            throw;
        }
        throw ECommandFailure(ExitStatus::WrongUsage, std::string(failure.what()) +
                                                          "\nusage: vorelctl " +
                                                          std::string(Name()) + " " + UsageText);
    }
    return ExitStatus::Ok;
}

} // namespace

const ICommand& DebugCommand() {
    static const TDebugCommand command;
    return command;
}

std::vector<const ICommand*> SingleDebugCommands() {
    static std::deque<TSingleCommand> commands;
    std::vector<const ICommand*> list;
    for (const TDebugger::TCommand& command : TDebugger::Commands()) {
        if (!command.OnlyInSession) {
            list.push_back(&commands.emplace_back(command));
        }
    }
    return list;
}

} // namespace vorel::host
