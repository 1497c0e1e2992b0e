#include "core/JTagUsbPort.h"

#include "core/ChainScan.h"
#include "support/Text.h"
#include "transport/Manage_UsbJtag.h"

namespace vorel {

namespace {

// What the name of a board's controller contains.
constexpr std::string_view BoardController = "LUMAPLATE";

// Modes of the pod: in the first its outputs reach the board's controller and the board's
// multiplexer, in the second the hard and the soft chain.
constexpr std::uint32_t PodModeBoard = 0;
constexpr std::uint32_t PodModeBare = 1;

// Text in the single-byte code page of names on devices: Latin-1. What it cannot hold becomes "#"
// and its four hexadecimal digits.
WideText MakePlain(const WideText& text) {
    WideText plain;
    for (const char16_t unit : text) {
        if (unit < 0x100) {
            plain.push_back(unit);
        } else {
            plain.push_back(u'#');
            plain += ToWide(ToHex(unit, 4));
        }
    }
    return plain;
}

} // namespace

TJtagUsbPort::TJtagUsbPort(TUsbPort& pod, const TCoreContext& context)
    : Pod(pod),
      BoardChain({"Lumaplate", 0, true}, *this, &pod, nullptr, context),
      HardChain({"Hard-Devices", 0, true}, *this, &pod, &BoardChain, context),
      SoftChain({"Soft-Devices", 1, true}, *this, &pod, &BoardChain, context),
      SpiChain({"SPI-Devices", 2, false}, *this, &pod, &BoardChain, context) {}

std::string TJtagUsbPort::DoGetPortId() {
    return ToUtf8(MakePlain(Pod.SerialNumber()));
}

std::string TJtagUsbPort::DoGetName() {
    return ToUtf8(Pod.ProductName()) + " (ID: " + DoGetPortId() + ")";
}

std::string TJtagUsbPort::DoGetDescription() {
    return "USB JTAG Cable found at address " + std::to_string(Pod.GetDeviceIndex()) + ".";
}

bool TJtagUsbPort::DoIsPresent() {
    return Pod.IsReady();
}

bool TJtagUsbPort::DoDetect(bool force) {
    if (!force && WasDetected && TryMode(BoardMode)) {
        return true;
    }
    WasDetected = false;
    BoardMode = true;
    bool found = TryMode(BoardMode);
    if (!found) {
        BoardMode = false;
        found = TryMode(BoardMode);
    }
    WasDetected = found;
    return found;
}

bool TJtagUsbPort::TryMode(bool boardMode) {
    for (TJTagChannel_UsbPort* chain : {&BoardChain, &HardChain, &SoftChain, &SpiChain}) {
        const bool second = boardMode ? chain != &BoardChain : chain == &SoftChain;
        chain->SetRoute(boardMode, second ? 1 : 0);
    }
    return boardMode ? TryBoard() : TryBareChains();
}

void TJtagUsbPort::SetPodMode(std::uint32_t mode) {
    if (!Pod.SetPodMode(mode)) {
        throw EVorelError(Pod.LastStatus(), "setting the mode of a pod failed");
    }
}

bool TJtagUsbPort::TryBoard() {
    SetPodMode(PodModeBoard);
    TChainScan(BoardChain).Scan();
    const auto& devices = BoardChain.ChainDevices();
    if (devices.empty() ||
        UpperCase(devices.front()->PartName()).find(BoardController) == std::string::npos) {
        // What answers is no board, so these devices belong to another chain.
        BoardChain.RetireDevices();
        return false;
    }
    TChainScan(SoftChain).Scan();
    TChainScan(HardChain).Scan();
    return true;
}

bool TJtagUsbPort::TryBareChains() {
    SetPodMode(PodModeBare);
    TChainScan(HardChain).Scan();
    if (HardChain.DeviceCount() == 0) {
        return false;
    }
    TChainScan(SoftChain).Scan();
    return true;
}

} // namespace vorel
