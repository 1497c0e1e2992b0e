// The port of the machine's one parallel-port cable.
#pragma once

#include "core/JTagChannel_ParallelPort.h"
#include "core/JTagPort.h"
#include "vorel/ParallelPort.h"

namespace vorel {

class TJTagParallelPort_BoardType;
class TJTagParallelPort_InstalledBoardTypes;

class TJtagParallelPort final : public TJtagPortOf<IJTagParallelPort> {
public:
    // `manager` lists the machine's parallel ports, null for none; `boards` are the board types to
    // try, in their order. Neither is owned; both outlive the port.
    TJtagParallelPort(IParallelPortManager* manager, TJTagParallelPort_InstalledBoardTypes& boards,
                      const TCoreContext& context);

    Status GetParallelPort(IParallelPort*& port) noexcept override;

protected:
    std::string DoGetName() override;
    std::string DoGetDescription() override;
    bool DoIsPresent() override;
    bool DoDetect(bool force) override;
    TJTagChannel& DoGetHardChain() noexcept override { return HardChain; }
    TJTagChannel& DoGetSoftChain() noexcept override { return SoftChain; }
    TJTagChannel& DoGetBoardChain() noexcept override { return BoardChain; }
    TJTagChannel& DoGetSpiChain() noexcept override { return SpiChain; }
    // The masks of TCK, TDO, TDI and TMS of the board chain.
    std::int32_t DoGetBoardInfo(int index) override;
    std::string DoGetPortId() override;

private:
    std::int32_t PortCount();
    std::string AddressText();
    bool SearchBoards(bool force);
    bool TryBoard(TJTagParallelPort_BoardType& board);
    void ForgetBoard() noexcept;

    IParallelPortManager* Manager;
    TJTagParallelPort_InstalledBoardTypes& Boards;
    TJTagChannel_ParallelPort BoardChain;
    TJTagChannel_ParallelPort HardChain;
    TJTagChannel_ParallelPort SoftChain;
    TJTagChannel_ParallelPort SpiChain;
    IParallelPort* Device = nullptr;
    TJTagParallelPort_BoardType* BoardType = nullptr; // that fitted last
};

} // namespace vorel
