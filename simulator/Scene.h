// A scene: which pods and parallel-port cables are plugged in and what stands in front of each,
// read from an ini file.
//
// Lines that are empty or begin with ';' or '#' are comments. Names of sections and keys compare
// without case. A key or section that is not listed here, one that is given twice (except
// `device`), and a value that does not fit are errors that name the file, the line and what is
// expected.
//
//   [pod]                       each pod begins with a section [pod] or [pod NAME], any NAME
//   name = Virtual pod          product name, up to 126 characters; default "Virtual pod"
//   serial = 1                  serial number, the same; default: the pod's number from 1
//   product = 0100              product id, hexadecimal; default 0100
//   vendor = 1B8C               vendor id, hexadecimal; any other makes it a device that is no pod
//   unplug = write 500          the pod is pulled out at its 500th write to it (or "read 500": at
//                               its 500th read), counted from the start; with "back" behind it, it
//                               is put in again at once
//   remote = HOST:PORT          the pod drives hardware behind a remote_bitbang server (mode 1,
//                               select 0); it has no sections of its own then
//
//   [cable]                     a PC's parallel port with a cable on it; [cable NAME] the same
//   address = 378               base address of the port, hexadecimal; default 378
//   board = PlainHardChain      wired as the board file of this name: PlainHardChain,
//   ControlSignals
//                               or MultiplexedBoard; default PlainHardChain
//   wires = tck=D1 tms=D2 tdi=D0 tdo=S4
//                               instead of `board`: the line of the connector for each JTAG wire,
//                               a register (D data, S status, C control) and a bit. The wires lead
//                               to the hard chain or, with a [board], to what the board's
//                               multiplexer connects
//   board_wires = ...           the same for the board's controller chain
//
// Only a cable with wires for a controller chain has a section [board], and only with a board it
// has a section [soft].
//
// The sections that follow belong to that pod or cable, each at most once:
//
//   [board]                     the target has a board around it: its controller chain. Without any
//                               device line there is one controller "Lumaplate", id 1B8C0B01, ir=8
//   busy_reads = 0              reads of the multiplexer register that show busy after a write
//   [hard] [soft]               the hard and the soft chain; a missing section is an empty chain
//   [spi]                       SPI devices 0, 1, 2 ... of the board, at most 32 (needs [board])
//
// Keys of [board], [hard] and [soft]:
//
//   device = LABEL id=HEX ir=N  one device, from TDI to TDO in the order of the lines
//   tdo = FAULT                 a fault on the chain's TDO: open, stuck_low, stuck_high, loop
//
// A device line is a list of items separated by blanks or commas; an item in double quotes may hold
// both. The label comes first. The others, in any order and each at most once:
//
//   id=HEX                      the IDCODE, 1 to 8 hexadecimal digits, its lowest bit 1; or
//                               id=none for a device without an identification register; needed
//                               without bsdl=
//   ir=N                        bits of the instruction register, 1 to 1024; needed without bsdl=
//                               (4 or more for a board controller)
//   capture=BITS                what Capture-IR loads, N digits 0 or 1 that end in 01
//   idcode=BITS                 the instruction IDCODE, N digits 0 or 1
//   tdo=FAULT                   a fault on the device's own TDO: open (the chain is broken behind
//                               it), stuck_low, stuck_high, loop
//   kind=KIND                   on [soft] only: processor (DebugUnit.h) or memory
//                               (MemoryInstrument.h); ir has to be 4 or more then. Without it the
//                               device is a TAP with IDCODE and BYPASS
//   xN                          N such devices one behind another, 1 to 10000
//   bsdl=PATH                   the device that this BSDL file describes; a relative path starts at
//                               the scene file's folder. Not for [board]. The file gives id, ir and
//                               idcode and all instructions and registers, X bits being 0; id= and
//                               capture= may give other values (version bits, status bits)
//   pin.PIN=LEVEL               the level on a pin of a BSDL device from outside: 0, 1 or flip (0
//                               first, the other one after each sample). PIN is the package number
//                               or the port name, without case; pins that are not given are 0
//
// A device line of [spi] is a label and id=HEX, the three id bytes (6 digits).
//
// Limits: 1 MiB of text, 64 pods and cables; on all their chains together 10,000 devices, 64 of
// them with a kind, and 4,000,000 boundary cells and instructions of BSDL devices.
#pragma once

#include "simulator/BoundaryRegister.h"
#include "simulator/Chain.h"
#include "simulator/ParallelCable.h"
#include "simulator/SimPod.h"
#include "support/Errors.h"

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

namespace vorel::sim {

class TSimUsbServices;

// A scene file that does not fit; the text is "FILE:LINE: what is wrong; what is expected".
class ESceneError : public EVorelError {
public:
    explicit ESceneError(const std::string& text) : EVorelError(StatusBadArgument, text) {}
};

enum class SceneKind : std::uint8_t { Plain, Processor, Memory };

// `Count` equal devices one behind another.
struct SceneDevice {
    TapSettings Settings;
    SceneKind Kind = SceneKind::Plain;
    WireFault Fault = WireFault::None;
    std::size_t Count = 1;
    std::shared_ptr<TBSDLEntity> Entity;                // null for a plain TAP
    std::vector<std::pair<std::string, PinInput>> Pins; // of a device with an entity
    std::size_t Cells = 0; // boundary cells and instructions of a device with an entity

    // Makes one of them. EVorelError for settings that do not fit.
    std::unique_ptr<TTapDevice> Create() const;
};

struct SceneChain {
    std::vector<SceneDevice> Devices;
    WireFault TdoFault = WireFault::None;
};

struct SceneSpiDevice {
    std::string Name;
    std::uint32_t Id = 0;
};

// What stands in front of a pod or a cable.
struct SceneTarget {
    bool HasBoard = false;
    unsigned BusyReads = 0;
    SceneChain Board;
    SceneChain Hard;
    SceneChain Soft;
    std::vector<SceneSpiDevice> Spi;

    // Makes the board and the chains.
    std::unique_ptr<TTarget> CreateTarget() const;
};

struct ScenePod : SceneTarget {
    UsbIdentity Identity;
    std::string Remote; // HOST:PORT; empty for a pod with a virtual target
    std::optional<UsbFault> Fault;

    // Makes the pod with its target. A remote pod connects now: EVorelError names host, port and
    // the reason when that fails.
    std::unique_ptr<TSimPod> CreatePod() const;
};

struct SceneCable : SceneTarget {
    std::uint16_t Address = 0x378;
    CableWiring Wires;
    std::optional<CableWiring> BoardWires;
};

class TScene final {
public:
    static constexpr std::size_t MaxTextSize = 1'048'576;
    static constexpr std::size_t MaxPods = 64;
    static constexpr std::size_t MaxDevices = TChain::MaxDevices;
    static constexpr std::size_t MaxCells = 4'000'000;
    static constexpr std::size_t MaxSoftDevices = 64; // with a kind: each holds a memory

    // Reads a file. ESceneError; a file that cannot be read gives one with the reason.
    static TScene Load(const std::string& path);
    // Reads a text; `fileName` stands in error texts and its folder is where paths start.
    static TScene Parse(std::string_view text, const std::string& fileName = "scene");

    // In the order of the file, at least one pod or cable.
    std::vector<ScenePod> Pods;
    std::vector<SceneCable> Cables;

    // USB services with a pod for each of the scene's pods, in order.
    std::unique_ptr<TSimUsbServices> CreateUsb() const;
    // Parallel ports with a cable for each of the scene's cables, in order; perhaps none.
    std::unique_ptr<TSimParallelPorts> CreateParallelPorts() const;
};

} // namespace vorel::sim
