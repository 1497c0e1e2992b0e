// The port of one USB pod.
#pragma once

#include "core/JTagChannel_UsbPort.h"
#include "core/JTagPort.h"

namespace vorel {

class TJtagUsbPort final : public TJtagPortOf<IJTagUsbPort> {
public:
    // `pod` is not owned and outlives the port.
    TJtagUsbPort(TUsbPort& pod, const TCoreContext& context);

protected:
    std::string DoGetName() override;
    std::string DoGetDescription() override;
    bool DoIsPresent() override;
    bool DoDetect(bool force) override;
    TJTagChannel& DoGetHardChain() noexcept override { return HardChain; }
    TJTagChannel& DoGetSoftChain() noexcept override { return SoftChain; }
    TJTagChannel& DoGetBoardChain() noexcept override { return BoardChain; }
    TJTagChannel& DoGetSpiChain() noexcept override { return SpiChain; }
    std::int32_t DoGetBoardInfo(int /*index*/) override { return 0; }
    std::string DoGetPortId() override;

private:
    // The two ways in which chains can hang behind a pod.
    bool TryMode(bool boardMode);
    void SetPodMode(std::uint32_t mode);
    bool TryBoard();
    bool TryBareChains();

    TUsbPort& Pod;
    TJTagChannel_UsbPort BoardChain;
    TJTagChannel_UsbPort HardChain;
    TJTagChannel_UsbPort SoftChain;
    TJTagChannel_UsbPort SpiChain;
    bool BoardMode = false; // of the last detection
    bool WasDetected = false;
};

} // namespace vorel
