// vorelctl: the command-line host.
#include "hosts/vorelctl/Commands.h"
#include "support/Errors.h"
#include "support/Text.h"

#include <algorithm>
#include <cstdio>

namespace vorel::host {

const std::vector<const ICommand*>& AllCommands() {
    static const std::vector<const ICommand*> commands = [] {
        std::vector<const ICommand*> list{&ScanCommand(),    &PinsCommand(),     &BsdlCommand(),
                                          &VendorsCommand(), &FamiliesCommand(), &DevicesCommand(),
                                          &DeviceCommand(),  &IdCommand(),       &MappingCommand(),
                                          &CacheCommand(),   &ServeCommand(),    &ObjectCommand(),
                                          &DebugCommand()};
        const std::vector<const ICommand*> single = SingleDebugCommands();
        list.insert(list.end(), single.begin(), single.end());
        return list;
    }();
    return commands;
}

namespace {

std::string HelpText() {
    std::string text = "vorelctl drives JTAG chains through VorelManager.\n\n"
                       "usage: vorelctl COMMAND [OPTION...]\n\ncommands:\n";
    for (const ICommand* command : AllCommands()) {
        text += "  " + PadRight(command->Name(), 10) + std::string(command->Summary()) + "\n";
    }
    return text + "\nvorelctl COMMAND --help tells more. vorelctl --version prints the version.\n"
                  "Exit status: 0 done, 1 nothing found or failed, 2 wrong usage, 3 a file, "
                  "permission or device is missing.\n";
}

std::string HelpText(const ICommand& command) {
    std::string text = "usage: vorelctl " + std::string(command.Name()) + " " +
                       std::string(command.Usage()) + "\n\n" + std::string(command.Summary()) +
                       "\n\n" + DescribeOptions(command.Options());
    if (!command.Details().empty()) {
        text += "\n" + std::string(command.Details()) + "\n";
    }
    return text;
}

ExitStatus Print(const std::string& text) {
    std::fputs(text.c_str(), stdout);
    return ExitStatus::Ok;
}

ExitStatus RunCommand(const std::vector<std::string>& words) {
    if (words.empty()) {
        std::fputs(HelpText().c_str(), stderr);
        return ExitStatus::WrongUsage;
    }
    if (words[0] == "--help" || words[0] == "help") {
        return Print(HelpText());
    }
    if (words[0] == "--version") {
        return Print("vorelctl " VOREL_VERSION "\n");
    }
    const auto& commands = AllCommands();
    const auto hit = std::find_if(commands.begin(), commands.end(),
                                  [&](const ICommand* c) { return c->Name() == words[0]; });
    if (hit == commands.end()) {
        throw ECommandFailure(ExitStatus::WrongUsage,
                              "There is no command \"" + words[0] + "\". See vorelctl --help.");
    }
    const std::vector<std::string> rest(words.begin() + 1, words.end());
    if (std::find(rest.begin(), rest.end(), "--help") != rest.end()) {
        return Print(HelpText(**hit));
    }
    return (*hit)->Run(TArguments(rest, (*hit)->Options()));
}

} // namespace

} // namespace vorel::host

int main(int argc, char** argv) {
    using vorel::host::ExitStatus;
    const auto fail = [](ExitStatus status, const char* text) {
        std::fprintf(stderr, "vorelctl: %s\n", text);
        return static_cast<int>(status);
    };
    try {
        return static_cast<int>(vorel::host::RunCommand({argv + 1, argv + argc}));
    } catch (const vorel::host::ECommandFailure& failure) {
        return fail(failure.GetExitStatus(), failure.what());
    } catch (const std::exception& error) {
        return fail(ExitStatus::EnvironmentFault, error.what());
    }
}
