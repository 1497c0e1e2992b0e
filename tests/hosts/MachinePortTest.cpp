// The machine's own parallel port from end to end: the library as a host loads it, and vorelctl,
// reach an emulated kernel port through the port library of the installation.
#include "hosts/RunProgram.h"
#include "hosts/kit/Hardware.h"
#include "hosts/kit/LibraryLoader.h"
#include "hosts/kit/PlainHost.h"
#include "platform/EmulatedPort.h"
#include "platform/ParallelPortLibrary.h"
#include "transport/ParallelTestTools.h"
#include "vorel/Channel.h"
#include "vorel/Device.h"
#include "vorel/Ports.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <functional>
#include <spawn.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace vorel::host {
namespace {

namespace fs = std::filesystem;

// An installation of its own with one board file: each register access takes a while here.
class MachinePort : public testing::Test {
protected:
    void SetUp() override {
        fs::create_directories(Root / "System");
        fs::copy(VOREL_TREE "/System/PlainHardChain.JTGBRD", Root / "System");
        fs::create_symlink(VOREL_TREE "/System/ParallelPortManager.so",
                           Root / "System/ParallelPortManager.so");
        AddDevice(Chain, 0x1140'D093);
        Cable.Connect(PlainWiring(), Chain);
    }
    void TearDown() override { fs::remove_all(Root); }

    // Whether it comes true before anybody would wait longer.
    static bool Becomes(const std::function<bool()>& condition) {
        for (int i = 0; i < 20'000 && !condition(); ++i) {
            std::this_thread::sleep_for(std::chrono::milliseconds(1));
        }
        return condition();
    }

    // vorelctl on the machine's ports, in the middle of a scan.
    pid_t StartScan() {
        const std::string command = "exec env XDG_DATA_HOME='" + Root.string() +
                                    "' XDG_CONFIG_HOME='" + Root.string() +
                                    "' " VOREL_TREE "/System/vorelctl scan --usb >/dev/null 2>&1";
        const char* arguments[] = {"sh", "-c", command.c_str(), nullptr};
        pid_t process = -1;
        EXPECT_EQ(posix_spawn(&process, "/bin/sh", nullptr, nullptr,
                              const_cast<char* const*>(arguments), environ),
                  0);
        const int before = Port.Transfers;
        EXPECT_TRUE(Becomes([&] { return Port.Transfers > before + 100; }));
        return process;
    }

    const fs::path Root =
        fs::temp_directory_path() / ("vorel-machine-port-" + std::to_string(getpid()));
    sim::TChain Chain;
    sim::TParallelCable Cable;
    TEmulatedPort Port{Cable};
};

TEST_F(MachinePort, ScansAChainThroughTheLoadedLibrary) {
    const auto machine = OpenMachine();
    TPlainHost host({Root}, {Root, Root});
    host.UseUsb(&machine->Usb());
    host.UseParallelPorts(machine->ParallelPorts());
    SetHostClient(&host);
    TVorelLibrary library;
    ASSERT_TRUE(library.Load(VOREL_TREE "/System")) << library.Problem();

    EXPECT_EQ(library.ScanJTagPorts(), StatusOk);
    IJTagPort* port = nullptr;
    ASSERT_EQ(library.GetJTagPort(0, &port), StatusOk);
    Bool32 found = False32;
    EXPECT_EQ(port->IsPresent(found), StatusOk);
    EXPECT_EQ(found, True32);
    EXPECT_EQ(port->Detect(True32, found), StatusOk);
    EXPECT_EQ(found, True32);
    WideText text;
    EXPECT_EQ(port->GetName(text), StatusOk);
    EXPECT_EQ(text, u"Parallel-Port (Address: 378)");

    IJTagChannel* chain = nullptr;
    ASSERT_EQ(port->GetHardChain(chain), StatusOk);
    std::int32_t count = 0;
    EXPECT_EQ(chain->GetDeviceCount(count), StatusOk);
    ASSERT_EQ(count, 1);
    IJTagDevice* device = nullptr;
    EXPECT_EQ(chain->GetDevice(0, device), StatusOk);
    std::uint32_t id = 0;
    EXPECT_EQ(device->GetJTagId(id), StatusOk);
    EXPECT_EQ(id, 0x0140'D093U);
    // Given back as often as it was claimed, with nobody at work.
    EXPECT_FALSE(Port.IsClaimed());
    EXPECT_GT(Port.Releases, 0);

    // Somebody else at the port: a status, and no devices of old.
    Port.HasOtherDriver = true;
    EXPECT_EQ(port->Detect(False32, found), StatusFromOsError(EBUSY));
    EXPECT_EQ(found, False32);
    EXPECT_EQ(chain->GetDeviceCount(count), StatusOk);
    EXPECT_EQ(count, 0);
    library.Unload();
    SetHostClient(nullptr);
}

TEST_F(MachinePort, IsSaidToBeBusyWhileSomebodyElseUsesIt) {
    Port.HasOtherDriver = true;
    const TRun run =
        RunProgram(VOREL_TREE "/System/vorelctl", Root.string(), "scan --usb", Root.string());
    EXPECT_EQ(run.ExitStatus, 1);
    EXPECT_NE(run.Output.find("Port 0: Parallel-Port\n  Failed. Detecting: the port is in use"),
              std::string::npos)
        << run.Output;
}

TEST_F(MachinePort, IsFreeAgainWhenASignalEndsAScan) {
    TSystemModuleLoader loader;
    const TParallelPortLibrary ports(loader, (Root / "System").string());
    ASSERT_NE(ports.Manager(), nullptr);
    IParallelPort* found = nullptr;
    ASSERT_EQ(ports.Manager()->GetPort(0, found), StatusOk);
    ASSERT_NE(found, nullptr);
    for (const int signal : {SIGKILL, SIGTERM, SIGINT}) {
        const pid_t process = StartScan();
        EXPECT_TRUE(Port.IsClaimed());
        EXPECT_EQ(found->Prepare(), StatusFromOsError(EBUSY)) << "while the other one scans";
        const int releases = Port.Releases;
        Port.HoldRequests(true);
        EXPECT_TRUE(Becomes([&] { return Port.HasHeldRequest.load(); }));
        kill(process, signal); // in the middle of a register access
        int status = 0;
        ASSERT_EQ(waitpid(process, &status, 0), process);
        EXPECT_TRUE(WIFSIGNALED(status) && WTERMSIG(status) == signal) << status;
        Port.HoldRequests(false);
        ASSERT_TRUE(Becomes([&] { return Port.OpenFiles() == 0; }));
        EXPECT_EQ(Port.Releases, releases) << "the closing did it";
        const Ref<IParallelPort> mine(found);
        EXPECT_EQ(found->Prepare(), StatusOk);
        EXPECT_TRUE(Port.IsClaimed());
    }
}

} // namespace
} // namespace vorel::host
