// What a user of the port library sees of the first parallel port, one line for each question. For
// the check against a real kernel (ppdev_guest.sh).
//
// usage: port_probe SYSTEM_FOLDER ports | claim | hold | registers
#include "platform/ParallelPortLibrary.h"

#include <cstdio>
#include <string_view>
#include <unistd.h>

namespace {

using namespace vorel;

void Print(const char* what, Status status) {
    std::printf("%s: 0x%08X\n", what, static_cast<unsigned>(status));
    std::fflush(stdout);
}

void PrintPorts(IParallelPortManager& manager, IParallelPort* port) {
    std::int32_t count = 0;
    std::uint32_t address = 0;
    manager.GetPortCount(count);
    if (port != nullptr) {
        port->GetBaseAddress(address);
    }
    std::printf("ports: %d, address %03X\n", count, address);
}

// The two that the port drives can be read back: the data register, and the control register in
// that a change of one bit leaves the others.
void PrintRegisters(IParallelPort& port) {
    Print("claim", port.Prepare());
    std::uint8_t first = 0;
    std::uint8_t second = 0;
    port.WriteData(0x5A);
    port.ReadData(first);
    port.WriteData(0xA5);
    port.ReadData(second);
    std::printf("data: %02X %02X\n", first, second);
    Print("control", port.WriteControl(0xFF, 0x04));
    Print("status", port.ReadStatus(first));
}

} // namespace

int main(int argc, char** argv) {
    if (argc != 3) {
        return 2;
    }
    TSystemModuleLoader loader;
    const TParallelPortLibrary library(loader, argv[1]);
    if (library.Manager() == nullptr) {
        std::puts("no port library");
        return 1;
    }
    IParallelPort* port = nullptr;
    library.Manager()->GetPort(0, port);
    const std::string_view question = argv[2];
    if (question == "ports") {
        PrintPorts(*library.Manager(), port);
    } else if (port == nullptr) {
        std::puts("no port");
    } else if (question == "registers") {
        PrintRegisters(*port);
    } else {
        Print(argv[2], port->Prepare());
        if (question == "hold") {
            pause(); // until a signal ends the process
        }
    }
    return 0;
}
