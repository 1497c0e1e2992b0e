// The processor's state in words, and the bracket for work that needs it stopped.
#include "core/VorelDevice.h"

namespace vorel {

Status TVorelDevice::GetStatusText(WideText& text) noexcept {
    return Guard([&] {
        text.clear();
        Bool32 reset = False32;
        Check(IsReset(reset), "Asking whether the processor is reset");
        if (reset != False32) {
            text = u"Reset";
            return;
        }
        Bool32 paused = False32;
        Check(IsPaused(paused), "Asking whether the processor is paused");
        text = paused != False32 ? u"Paused" : u"Running";
    });
}

bool TVorelDevice::IsHalted() {
    Bool32 halted = False32;
    Check(IsPaused(halted), "Asking whether the processor is paused");
    if (halted == False32) {
        Check(IsReset(halted), "Asking whether the processor is reset");
    }
    return halted != False32;
}

Status TVorelDevice::BeginHalt() noexcept {
    return Guard([&] {
        if (++HaltCount != 1) {
            return;
        }
        ResumeNeeded = false; // not what an earlier halt left, should the question fail
        ResumeNeeded = !IsHalted();
        if (ResumeNeeded) {
            Check(PauseProcessor(), "Pausing the processor");
        }
    });
}

Status TVorelDevice::EndHalt() noexcept {
    return Guard([&] {
        if (HaltCount == 0) {
            return;
        }
        if (HaltCount == 1 && ResumeNeeded) {
            Check(ContinueProcessor(), "Continuing the processor");
        }
        --HaltCount;
    });
}

} // namespace vorel
