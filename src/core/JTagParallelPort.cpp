#include "core/JTagParallelPort.h"

#include "core/ChainScan.h"
#include "support/Text.h"
#include "transport/JTagParallelPortMap.h"

namespace vorel {

TJtagParallelPort::TJtagParallelPort(IParallelPortManager* manager,
                                     TJTagParallelPort_InstalledBoardTypes& boards,
                                     const TCoreContext& context)
    : Manager(manager),
      Boards(boards),
      BoardChain("Lumaplate", *this, nullptr, context),
      HardChain("Hard-Devices", *this, &BoardChain, context),
      SoftChain("Soft-Devices", *this, &BoardChain, context),
      SpiChain("SPI-Devices", *this, &BoardChain, context) {}

Status TJtagParallelPort::GetParallelPort(IParallelPort*& port) noexcept {
    port = Device;
    return StatusOk;
}

std::int32_t TJtagParallelPort::PortCount() {
    std::int32_t count = 0;
    if (Manager != nullptr) {
        Check(Manager->GetPortCount(count), "counting the parallel ports");
    }
    return count;
}

std::string TJtagParallelPort::AddressText() {
    std::uint32_t address = 0;
    Check(Device->GetBaseAddress(address), "asking for the parallel port's address");
    return ToHex(address & 0xFFFFU, 3);
}

std::string TJtagParallelPort::DoGetPortId() {
    if (Device == nullptr) {
        SearchChains(false);
    }
    return Device != nullptr ? AddressText() : std::string();
}

std::string TJtagParallelPort::DoGetName() {
    return Device != nullptr ? "Parallel-Port (Address: " + AddressText() + ")" : "Parallel-Port";
}

std::string TJtagParallelPort::DoGetDescription() {
    return Device != nullptr ? "Parallel-Port Cable found at address " + AddressText() + "H."
                             : std::string();
}

bool TJtagParallelPort::DoIsPresent() {
    return PortCount() > 0;
}

std::int32_t TJtagParallelPort::DoGetBoardInfo(int index) {
    const TJTagParallelPort_ChannelMapping* mapping = BoardChain.GetMapping();
    if (mapping == nullptr) {
        return 0;
    }
    const std::array<std::uint32_t, 4> values{mapping->Mask_TCK, mapping->Mask_TDO,
                                              mapping->Mask_TDI, mapping->Mask_TMS};
    return static_cast<std::int32_t>(values.at(static_cast<std::size_t>(index)));
}

bool TJtagParallelPort::DoDetect(bool force) {
    bool found = false;
    try {
        found = SearchBoards(force);
    } catch (...) {
        ForgetBoard();
        throw;
    }
    if (!found) {
        ForgetBoard();
    }
    return found;
}

void TJtagParallelPort::ForgetBoard() noexcept {
    Device = nullptr;
    BoardType = nullptr;
    for (TJTagChannel_ParallelPort* chain : {&BoardChain, &HardChain, &SoftChain, &SpiChain}) {
        chain->SetMapping(nullptr);
    }
}

bool TJtagParallelPort::SearchBoards(bool force) {
    const std::int32_t ports = PortCount();
    for (std::int32_t i = 0; i < ports; ++i) {
        Check(Manager->GetPort(i, Device), "asking for a parallel port");
        if (Device == nullptr) {
            continue;
        }
        if (!force && BoardType != nullptr && TryBoard(*BoardType)) {
            return true;
        }
        for (std::size_t k = 0; k < Boards.Count(); ++k) {
            if (TryBoard(Boards.BoardAt(k))) {
                BoardType = &Boards.BoardAt(k);
                return true;
            }
        }
    }
    return false;
}

bool TJtagParallelPort::TryBoard(TJTagParallelPort_BoardType& board) {
    board.SetPort(Device);
    if (!board.PortIsUsable()) {
        return false;
    }
    BoardChain.SetMapping(board.BoardChannel.get());
    HardChain.SetMapping(board.HardChannel.get());
    SoftChain.SetMapping(board.SoftChannel.get());
    SpiChain.SetMapping(board.SPIChannel.get());
    if (board.BoardIdCount() == 0) {
        TChainScan(HardChain).Scan();
        if (HardChain.DeviceCount() == 0) {
            return false;
        }
        TChainScan(BoardChain).Scan();
        TChainScan(SoftChain).Scan();
        return true;
    }
    TChainScan(BoardChain).Scan();
    if (BoardChain.DeviceCount() == 0 ||
        !board.MatchesBoardId(BoardChain.ChainDevices().front()->JTagId())) {
        return false;
    }
    TChainScan(SoftChain).Scan();
    TChainScan(HardChain).Scan();
    return true;
}

} // namespace vorel
