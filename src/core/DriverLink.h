// The thread from a soft device to its driver and its chain: one place that knows what happens when
// there is no driver, and how the chain is held open around a call.
#pragma once

#include "support/Errors.h"
#include "vorel/Channel.h"
#include "vorel/Driver.h"

namespace vorel {

// Belongs to one device; its registers and memory spaces use it too. It holds one reference of the
// driver and one of the channel; either may be missing.
//
// Ask and Tell forward to one entry of the driver's table; the `...Locked` forms hold the channel's
// Lock around the call if there is a channel. All give the driver's status, or StatusOk without a
// driver.
class TDriverLink {
public:
    explicit TDriverLink(IVorelDriver* driver) : Driver(driver) {}

    IVorelDriver* GetDriver() const noexcept { return Driver.Get(); }
    // Lets go of the driver without touching it: its module may be gone already.
    void ForgetDriver() noexcept { static_cast<void>(Driver.Detach()); }
    IJTagChannel* GetChannel() const noexcept { return Channel.Get(); }
    void SetChannel(IJTagChannel* channel) noexcept { Channel = Ref<IJTagChannel>(channel); }

    // `out` takes the neutral value, which stays without a driver and with one that leaves it
    // alone; then the driver is asked.
    template<class Entry, class Out, class Neutral, class... Arguments>
    Status Ask(Entry entry, Out& out, const Neutral& neutral,
               const Arguments&... arguments) noexcept {
        return Guard([&]() -> Status {
            out = neutral;
            return Driver ? (Driver.Get()->*entry)(arguments..., out) : StatusOk;
        });
    }
    template<class Entry, class Out, class Neutral, class... Arguments>
    Status AskLocked(Entry entry, Out& out, const Neutral& neutral,
                     const Arguments&... arguments) noexcept {
        return Guard([&]() -> Status {
            out = neutral;
            return Driver ? WithChannelLocked(
                                [&] { return (Driver.Get()->*entry)(arguments..., out); })
                          : StatusOk;
        });
    }
    template<class Entry, class... Arguments>
    Status Tell(Entry entry, const Arguments&... arguments) noexcept {
        return Driver ? (Driver.Get()->*entry)(arguments...) : StatusOk;
    }

    // Runs `body`, which gives a Status and raises nothing, while the channel is locked. A channel
    // that cannot be locked fails without running it. The channel is unlocked in any case, and the
    // first failure is what the caller gets.
    template<class Body>
    Status WithChannelLocked(Body body) noexcept {
        const Ref<IJTagChannel> held = Channel; // the body may take the device off its channel
        if (!held) {
            return body();
        }
        Bool32 locked = False32;
        if (const Status opening = held->Lock(locked); Failed(opening)) {
            return opening;
        }
        const Status result = body();
        const Status closing = held->Unlock();
        return Failed(result) ? result : closing;
    }

private:
    Ref<IVorelDriver> Driver;
    Ref<IJTagChannel> Channel;
};

} // namespace vorel
