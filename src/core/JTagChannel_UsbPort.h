// A chain behind a USB pod: pin changes are folded into the pod's clock commands, which the pod
// collects into batches.
#pragma once

#include "core/JTagChannel.h"

#include <array>

namespace vorel {

class TUsbPort;

// What tells the four channels of a pod apart.
struct TUsbChannelSetup {
    std::string Name;
    std::uint8_t ChainNumber; // for the board's multiplexer
    bool ResetOnOpen;         // false for the serial bus, which is no JTAG chain
};

class TJTagChannel_UsbPort final : public TJTagChannel {
public:
    // `pod` may be null: the channel then runs all its logic and reads zeros. `parent` is the board
    // channel, null for the board channel itself. Both are not owned.
    TJTagChannel_UsbPort(TUsbChannelSetup setup, TJtagPort& port, TUsbPort* pod,
                         TJTagChannel* parent, const TCoreContext& context);

    // Whether a board with its multiplexer stands behind the pod, and which of the pod's two
    // outputs carries this chain. Counts from the next opening on.
    void SetRoute(bool boardMode, std::uint8_t podChannel) noexcept {
        BoardMode = boardMode;
        PodChannel = podChannel;
    }

    BitText DoShiftBits(std::string_view bits, std::int32_t count, bool capture,
                        bool exitShift) override;
    void DoRefresh() override;
    void DoDelay(std::uint8_t ticks) override;
    void DoSpiWriteByte(std::uint8_t value) override;
    std::uint8_t DoSpiExchangeByte(std::uint8_t value) override;
    void DoSpiExchangeBlock(std::uint8_t* buffer, std::int32_t count) override;
    void DoWritePins() override;
    void DoReadTdo() override;

protected:
    void DoBeginCapture() override;
    BitText DoEndCapture() override;
    void DoAbandonCapture() noexcept override;
    void DoOpen() override;
    void DoClose() override;

private:
    using TTiming = std::array<std::uint32_t, 3>; // timing values A, D and B

    // Raises when the pod's transfer failed.
    void CheckPod(bool done) const;
    bool SetTiming(const TTiming& timing);
    void ShiftFast(std::string_view bits, std::int32_t count);
    void ClearPins() noexcept;
    void Leave(bool inSession) noexcept;

    TUsbPort* Pod;
    std::uint8_t ChainNumber;
    bool ResetOnOpen;
    bool BoardMode = false;
    std::uint8_t PodChannel = 0;
    TTiming SavedTicks{};
    std::uint8_t LastTck = 0;
    std::uint8_t LastTms = 0;
    std::uint8_t LastTdi = 0;
};

} // namespace vorel
