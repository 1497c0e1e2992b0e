// A chain behind a parallel-port cable: each pin change is a write to the port's registers.
//
// The channel holds a reference of the port from its opening to its closing, however that ends.
// When no channel holds one any more, the port gives its claim back to the machine.
#pragma once

#include "core/JTagChannel.h"
#include "vorel/ParallelPort.h"

namespace vorel {

class TJTagParallelPort_ChannelMapping;

class TJTagChannel_ParallelPort final : public TJTagChannel {
public:
    // `parent` is the board channel, null for the board channel itself. Not owned.
    TJTagChannel_ParallelPort(std::string name, TJtagPort& port, TJTagChannel* parent,
                              const TCoreContext& context);

    // The way from signals to port registers, owned by the board type; null while no cable fits:
    // the channel then runs all its logic and reads zeros and empty texts.
    void SetMapping(TJTagParallelPort_ChannelMapping* mapping) noexcept { Mapping = mapping; }
    TJTagParallelPort_ChannelMapping* GetMapping() const noexcept { return Mapping; }

    void DoRefresh() override;
    void DoWritePins() override;
    void DoReadTdo() override;

protected:
    void DoBeginCapture() override;
    BitText DoEndCapture() override;
    void DoAbandonCapture() noexcept override;
    void DoOpen() override;
    void DoClose() override;

private:
    void ClearPins() noexcept;
    void CloseAfterFailure() noexcept;

    TJTagParallelPort_ChannelMapping* Mapping = nullptr;
    Ref<IParallelPort> Claim; // while open
    std::uint8_t LastTck = 0;
    std::uint8_t LastTms = 0;
    std::uint8_t LastTdi = 0;
    BitText Captured; // first bit first while the capture runs
    bool CaptureActive = false;
};

} // namespace vorel
