#include "hosts/vorelctl/Commands.h"
#include "hosts/vorelctl/Session.h"
#include "simulator/RemoteBitbangServer.h"
#include "simulator/Scene.h"
#include "support/Errors.h"
#include "support/Text.h"

#include <atomic>
#include <csignal>
#include <cstdio>

namespace vorel::host {

namespace {

std::atomic<bool> StopRequested{false};

void RequestStop(int) {
    StopRequested = true;
}

struct ServedChain {
    const char* Name;
    sim::IWireTarget* (*Get)(sim::TTarget&);
};

constexpr ServedChain ServedChains[] = {
    {"hard", [](sim::TTarget& t) -> sim::IWireTarget* { return &t.HardChain(); }},
    {"soft", [](sim::TTarget& t) -> sim::IWireTarget* { return &t.SoftChain(); }},
    {"board",
     [](sim::TTarget& t) -> sim::IWireTarget* {
         return t.Board() != nullptr ? &t.Board()->ControllerChain() : nullptr;
     }},
};

sim::IWireTarget& FindChain(sim::TTarget& target, const std::string& name) {
    for (const ServedChain& chain : ServedChains) {
        if (SameText(name, chain.Name)) {
            if (sim::IWireTarget* found = chain.Get(target)) {
                return *found;
            }
            throw ECommandFailure(ExitStatus::EnvironmentFault,
                                  "The scene has no board, so it has no board chain.");
        }
    }
    throw ECommandFailure(ExitStatus::WrongUsage,
                          "--chain is one of hard, soft and board, not \"" + name + "\".");
}

class TServeCommand final : public ICommand {
public:
    std::string_view Name() const override { return "serve"; }
    std::string_view Usage() const override {
        return "--scene FILE --chain NAME --port N [--pod N]";
    }
    std::string_view Summary() const override {
        return "serve a scene's chain as remote_bitbang on a loopback port";
    }
    std::string_view Details() const override {
        return "Listens on 127.0.0.1 until it is interrupted (Ctrl+C). Port 0 takes a free one "
               "and\n"
               "says which. One client is served at a time.";
    }
    std::vector<TOption> Options() const override {
        return {{"--scene", "FILE", "a scene file, or the name of a shipped scene"},
                {"--chain", "NAME", "hard, soft or board"},
                {"--port", "N", "TCP port, 0 to 65535"},
                {"--pod", "N", "the pod of the scene, from 1; default 1"}};
    }
    ExitStatus Run(const TArguments& arguments) const override;
};

ExitStatus TServeCommand::Run(const TArguments& arguments) const {
    const auto port = arguments.FindNumber("--port", 0, 65535);
    const auto chain = arguments.Find("--chain");
    const auto sceneName = arguments.Find("--scene");
    if (!port || !chain || !sceneName || !arguments.Words().empty()) {
        throw ECommandFailure(ExitStatus::WrongUsage, "serve needs --scene, --chain and --port.");
    }
    const sim::TScene scene = sim::TScene::Load(FindScene(*sceneName).string());
    const long podCount = static_cast<long>(scene.Pods.size());
    if (podCount == 0) {
        throw ECommandFailure(ExitStatus::EnvironmentFault, "The scene has no pod.");
    }
    const long pod = arguments.FindNumber("--pod", 1, podCount).value_or(1);
    const std::unique_ptr<sim::TTarget> target =
        scene.Pods[static_cast<std::size_t>(pod - 1)].CreateTarget();
    sim::TRemoteBitbangServer server(FindChain(*target, *chain), static_cast<std::uint16_t>(*port));
    std::printf("Serving the %s chain on 127.0.0.1:%u\n", chain->c_str(), server.Port());
    std::fflush(stdout);
    std::signal(SIGINT, RequestStop);
    std::signal(SIGTERM, RequestStop);
    server.Run(StopRequested);
    return ExitStatus::Ok;
}

} // namespace

const ICommand& ServeCommand() {
    static const TServeCommand command;
    return command;
}

} // namespace vorel::host
