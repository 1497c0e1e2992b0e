#include "hosts/kit/ScanReport.h"
#include "hosts/vorelctl/Commands.h"
#include "hosts/vorelctl/Progress.h"
#include "hosts/vorelctl/Recording.h"
#include "hosts/vorelctl/ScanText.h"
#include "hosts/vorelctl/Session.h"

#include <cstdio>
#include <optional>

namespace vorel::host {

namespace {

class TScanCommand final : public ICommand {
public:
    std::string_view Name() const override { return "scan"; }
    std::string_view Usage() const override {
        return "[--scene FILE | --usb | --bitbang HOST:PORT] [--json] [--record NAME]";
    }
    std::string_view Summary() const override {
        return "find the ports, their chains and the devices on them";
    }
    std::string_view Details() const override {
        return "Without a choice of hardware the built-in virtual board is scanned.\n"
               "Device 0 of a chain is nearest TDI. Ids are shown without their version bits, as\n"
               "they identify a part; IR is the length of the instruction register in bits.\n"
               "Exit status: 0 some chain was found, 1 none.";
    }
    std::vector<TOption> Options() const override {
        std::vector<TOption> options = HardwareOptions();
        options.push_back({"--json", "", "print one JSON object"});
        options.push_back({"--record", "NAME",
                           "record the JTAG traffic: NAME_JTAG.txt, NAME_JTAGOut.txt, NAME.vcd"});
        return options;
    }
    ExitStatus Run(const TArguments& arguments) const override;
};

ExitStatus TScanCommand::Run(const TArguments& arguments) const {
    if (!arguments.Words().empty()) {
        throw ECommandFailure(ExitStatus::WrongUsage,
                              "scan takes no \"" + arguments.Words().front() + "\".");
    }
    std::optional<TRecording> recording;
    if (const auto name = arguments.Find("--record")) {
        recording.emplace(*name);
    }
    TSession session(arguments, recording ? recording->Analyser() : nullptr);
    TScanReport report = CollectScan(session.Library(), ShowProgress);
    ShowProgress("");
    report.Hardware = session.Hardware().Describe();
    for (std::string& note : session.Hardware().Notes()) {
        report.Notes.push_back(std::move(note));
    }
    if (recording) {
        std::fprintf(stderr, "%s\n", recording->Save().c_str());
    }
    const std::string text = arguments.Has("--json") ? ScanAsJson(report) : ScanAsText(report);
    std::fputs(text.c_str(), stdout);
    return report.FoundChain() ? ExitStatus::Ok : ExitStatus::NothingFound;
}

} // namespace

const ICommand& ScanCommand() {
    static const TScanCommand command;
    return command;
}

} // namespace vorel::host
