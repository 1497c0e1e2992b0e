// Times pairs of an instruction and a data scan through the whole system - library, pod protocol,
// remote_bitbang - on a server that is running: the figure to put beside another JTAG program's.
//
// usage: bitbang_pairs HOST:PORT [PAIRS]. The first device of the chain gets IDCODE and is read.
#include "hosts/kit/Hardware.h"
#include "hosts/kit/LibraryLoader.h"
#include "hosts/kit/PlainHost.h"
#include "vorel/Channel.h"
#include "vorel/Ports.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <exception>

namespace {

using namespace vorel;

// The instruction IDCODE of the scene's first device.
constexpr std::uint32_t IdcodeInstruction = 0x09;

int TimePairs(IJTagChannel& channel, int pairs) {
    Bool32 locked = False32;
    channel.Lock(locked);
    std::uint32_t first = 0;
    channel.ScanIrWrite(IdcodeInstruction, 0);
    channel.ScanDrExchange(0, 32, 0, first);
    const auto begin = std::chrono::steady_clock::now();
    int wrong = 0;
    for (int i = 0; i < pairs; ++i) {
        std::uint32_t id = 0;
        channel.ScanIrWrite(IdcodeInstruction, 0);
        channel.ScanDrExchange(0, 32, 0, id);
        wrong += id != first ? 1 : 0;
    }
    const std::chrono::duration<double> time = std::chrono::steady_clock::now() - begin;
    channel.Unlock();
    std::printf("%d pairs, id %08X, %d different, %.4f s\n", pairs, first, wrong, time.count());
    return wrong == 0 && first != 0 ? 0 : 1;
}

int Run(const char* address, int pairs) {
    const auto hardware = host::OpenBitbang(address);
    host::TPlainHost client({VOREL_TREE}, host::TUserFolders::OfThisUser());
    client.UseUsb(&hardware->Usb());
    host::SetHostClient(&client);
    host::TVorelLibrary library;
    if (!library.Load(VOREL_TREE "/System")) {
        std::fprintf(stderr, "%s\n", library.Problem().c_str());
        return 3;
    }
    library.ScanJTagPorts();
    IJTagPort* port = nullptr;
    library.GetJTagPort(1, &port);
    Bool32 found = False32;
    IJTagChannel* channel = nullptr;
    if (port == nullptr || Failed(port->Detect(True32, found)) || found == False32 ||
        Failed(port->GetHardChain(channel))) {
        std::fprintf(stderr, "No chain was found at %s\n", address);
        return 1;
    }
    const int result = TimePairs(*channel, pairs);
    library.Unload();
    return result;
}

} // namespace

int main(int argc, char** argv) {
    if (argc < 2) {
        std::fprintf(stderr, "usage: bitbang_pairs HOST:PORT [PAIRS]\n");
        return 2;
    }
    try {
        return Run(argv[1], argc > 2 ? std::atoi(argv[2]) : 1000);
    } catch (const std::exception& error) {
        std::fprintf(stderr, "%s\n", error.what());
        return 3;
    }
}
