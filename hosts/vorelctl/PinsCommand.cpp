#include "bsdl/BSDLFile.h"
#include "hosts/kit/ScanReport.h"
#include "hosts/vorelctl/Commands.h"
#include "hosts/vorelctl/PinSample.h"
#include "hosts/vorelctl/Session.h"
#include "support/Errors.h"
#include "support/Text.h"
#include "vorel/Channel.h"
#include "vorel/Ports.h"

#include <csignal>
#include <cstdio>
#include <ctime>
#include <limits>

namespace vorel::host {

namespace {

constexpr long DefaultInterval = 500; // milliseconds
constexpr long MaxInterval = 3'600'000;

struct TNamedChain {
    const char* Name;
    Status (IJTagPort::*Get)(IJTagChannel*&) noexcept;
};
constexpr TNamedChain NamedChains[] = {{"hard", &IJTagPort::GetHardChain},
                                       {"soft", &IJTagPort::GetSoftChain},
                                       {"board", &IJTagPort::GetBoardChain}};

const TNamedChain& FindChain(const std::string& name) {
    for (const TNamedChain& chain : NamedChains) {
        if (SameText(name, chain.Name)) {
            return chain;
        }
    }
    throw ECommandFailure(ExitStatus::WrongUsage,
                          "--chain is one of hard, soft and board, not \"" + name + "\".");
}

[[noreturn]] void Fail(const std::string& text) {
    throw ECommandFailure(ExitStatus::NothingFound, text);
}

// The port that was asked for, else the first one that finds its chains.
IJTagPort& FindPort(TVorelLibrary& library, std::optional<long> wanted) {
    if (const Status status = library.ScanJTagPorts(); Failed(status)) {
        Fail("Looking for pods failed: " + DescribeStatus(status));
    }
    std::int32_t count = 0;
    library.GetJTagPortCount(&count);
    for (std::int32_t i = 0; i < count; ++i) {
        IJTagPort* port = nullptr;
        if (!wanted || *wanted == i) {
            library.GetJTagPort(i, &port);
        }
        Bool32 present = False32;
        Bool32 found = False32;
        if (port != nullptr && Succeeded(port->IsPresent(present)) && present != False32 &&
            Succeeded(port->Detect(True32, found)) && found != False32) {
            return *port;
        }
    }
    Fail((wanted ? "Port " + std::to_string(*wanted) + " finds" : std::string("No port finds")) +
         " no chain. vorelctl scan tells why.");
}

IJTagDevice& FindDevice(IJTagPort& port, const TNamedChain& chain, long index) {
    IJTagChannel* channel = nullptr;
    std::int32_t count = 0;
    (port.*chain.Get)(channel);
    if (channel != nullptr) {
        channel->GetDeviceCount(count);
    }
    IJTagDevice* device = nullptr;
    if (index < count) {
        channel->GetDevice(static_cast<std::int32_t>(index), device);
    }
    if (device == nullptr) {
        Fail("There is no device " + std::to_string(index) + " on the " + chain.Name +
             " chain, which has " + std::to_string(count) + ".");
    }
    return *device;
}

std::string NameOf(IJTagDevice& device) {
    WideText name;
    device.GetName(name);
    return ToUtf8(name);
}

// The description to sample into: the file that was named, else what the library knows.
class TDescription {
public:
    TDescription(const std::optional<std::string>& path, IJTagDevice& device) {
        if (path) {
            File = ReadBsdlFile(*path);
            CheckFile(*path);
            Entity = File.Entity.get();
            return;
        }
        device.GetBsdlEntity(Entity);
        if (Entity == nullptr) {
            Fail("The library has no BSDL file for \"" + NameOf(device) +
                 "\". Name one with --bsdl FILE.");
        }
    }
    IBSDLEntity& Get() const { return *Entity; }

private:
    void CheckFile(const std::string& path) const {
        if (!File.Readable || File.HadErrors() || File.Entity == nullptr) {
            throw ECommandFailure(ExitStatus::EnvironmentFault,
                                  "The BSDL file " + path +
                                      (!File.Readable ? " cannot be read."
                                       : File.HadErrors()
                                           ? " has an error in " + File.DescribeError() + "."
                                           : " has no entity in it."));
        }
    }

    TBSDLFile File;
    IBSDLEntity* Entity = nullptr;
};

// What would make a sample nonsense.
void CheckFits(IJTagDevice& device, IBSDLEntity& entity) {
    std::int32_t sample = -1;
    entity.GetSampleOpcode(sample);
    if (sample == -1) {
        Fail("The BSDL file has no SAMPLE instruction.");
    }
    std::int32_t cells = 0;
    if (Failed(entity.GetBoundaryCellCount(cells))) {
        Fail("The boundary cells in the BSDL file are not numbered 0 to n-1, each once.");
    }
    std::int32_t known = 0;
    std::int32_t told = 0;
    device.GetIrLength(known);
    entity.GetInstructionLength(told);
    if (known != told) {
        Fail("The BSDL file tells of an instruction register of " + std::to_string(told) +
             " bits, but the library takes that of \"" + NameOf(device) + "\" for " +
             std::to_string(known) + " bits long.");
    }
}

// False when the program was interrupted meanwhile.
bool Wait(const sigset_t& signals, long milliseconds) {
    const timespec time{milliseconds / 1000, milliseconds % 1000 * 1'000'000};
    return sigtimedwait(&signals, nullptr, &time) < 0;
}

class TPinsCommand final : public ICommand {
public:
    std::string_view Name() const override { return "pins"; }
    std::string_view Usage() const override {
        return "[--scene FILE | --usb | --bitbang HOST:PORT] --chain NAME --index N [--bsdl FILE] "
               "[--watch]";
    }
    std::string_view Summary() const override { return "sample the pins of a device"; }
    std::string_view Details() const override {
        return "Runs SAMPLE on one device, which goes on working meanwhile, and prints the level "
               "on each\npin that a boundary cell shows. Device 0 of a chain is nearest TDI.\n"
               "With --watch it samples again until it is interrupted (Ctrl+C); pins that changed "
               "since the\nsample before are marked with *.";
    }
    std::vector<TOption> Options() const override {
        std::vector<TOption> options = HardwareOptions();
        options.insert(options.end(),
                       {{"--chain", "NAME", "hard, soft or board"},
                        {"--index", "N", "the device on the chain, from 0"},
                        {"--port", "N",
                         "the port, as scan lists them; default: the first one "
                         "with a chain"},
                        {"--bsdl", "FILE",
                         "the description, for a device that the library has "
                         "no file for"},
                        {"--watch", "", "sample again and again"},
                        {"--interval", "MS", "milliseconds between samples; default 500"},
                        {"--samples", "N", "end after so many samples of --watch"}});
        return options;
    }
    ExitStatus Run(const TArguments& arguments) const override;
};

ExitStatus TPinsCommand::Run(const TArguments& arguments) const {
    const auto chain = arguments.Find("--chain");
    const auto index = arguments.FindNumber("--index", 0, std::numeric_limits<std::int32_t>::max());
    if (!chain || !index || !arguments.Words().empty()) {
        throw ECommandFailure(ExitStatus::WrongUsage, "pins needs --chain and --index.");
    }
    const TNamedChain& named = FindChain(*chain);
    const auto port = arguments.FindNumber("--port", 0, std::numeric_limits<std::int32_t>::max());
    const long interval =
        arguments.FindNumber("--interval", 1, MaxInterval).value_or(DefaultInterval);
    const long most = std::numeric_limits<std::int32_t>::max();
    const auto samples = arguments.FindNumber("--samples", 1, most);
    const bool watch = arguments.Has("--watch");

    TSession session(arguments);
    IJTagDevice& device = FindDevice(FindPort(session.Library(), port), named, *index);
    const TDescription description(arguments.Find("--bsdl"), device);
    CheckFits(device, description.Get());

    // Blocked and waited for, so that an interruption never leaves the chain in mid-scan.
    sigset_t signals;
    sigemptyset(&signals);
    sigaddset(&signals, SIGINT);
    sigaddset(&signals, SIGTERM);
    if (watch) {
        sigprocmask(SIG_BLOCK, &signals, nullptr);
    }
    std::vector<TPinLevel> before;
    for (long count = 1;; ++count) {
        std::vector<TPinLevel> pins = SamplePins(device, description.Get());
        if (count == 1) {
            std::printf("Pins of %s, device %ld of the %s chain\n", NameOf(device).c_str(), *index,
                        named.Name);
        } else {
            std::printf("\nSample %ld\n", count);
        }
        std::fputs(PinsAsText(pins, before).c_str(), stdout);
        std::fflush(stdout);
        before = std::move(pins);
        if (!watch || (samples && count >= *samples) || !Wait(signals, interval)) {
            return ExitStatus::Ok;
        }
    }
}

} // namespace

const ICommand& PinsCommand() {
    static const TPinsCommand command;
    return command;
}

} // namespace vorel::host
