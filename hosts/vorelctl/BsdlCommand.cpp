#include "hosts/vorelctl/BsdlText.h"
#include "hosts/vorelctl/Commands.h"

#include <cstdio>

namespace vorel::host {

namespace {

class TBsdlCommand final : public ICommand {
public:
    std::string_view Name() const override { return "bsdl"; }
    std::string_view Usage() const override { return "FILE... [--json]"; }
    std::string_view Summary() const override { return "say what BSDL files hold"; }
    std::string_view Details() const override {
        return "Prints a report of each file, with line and column of what could not be read.\n"
               "Exit status: 0 all files gave a description, 1 some file could not be read at all.";
    }
    std::vector<TOption> Options() const override {
        return {{"--json", "", "print one JSON object a line and file"}};
    }
    ExitStatus Run(const TArguments& arguments) const override;
};

ExitStatus TBsdlCommand::Run(const TArguments& arguments) const {
    if (arguments.Words().empty()) {
        throw ECommandFailure(ExitStatus::WrongUsage, "bsdl needs a file.");
    }
    ExitStatus status = ExitStatus::Ok;
    const bool json = arguments.Has("--json");
    for (const std::string& name : arguments.Words()) {
        const TBSDLFile file = ReadBsdlFile(name);
        if (file.Entity == nullptr) {
            status = ExitStatus::NothingFound;
        }
        const std::string text = json ? BsdlAsJson(name, file) : BsdlAsText(name, file);
        std::fputs(text.c_str(), stdout);
    }
    return status;
}

} // namespace

const ICommand& BsdlCommand() {
    static const TBsdlCommand command;
    return command;
}

} // namespace vorel::host
