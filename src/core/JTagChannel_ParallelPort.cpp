#include "core/JTagChannel_ParallelPort.h"

#include "core/JTagPort.h"
#include "support/Errors.h"
#include "transport/JTagParallelPortMap.h"

#include <algorithm>

namespace vorel {

TJTagChannel_ParallelPort::TJTagChannel_ParallelPort(std::string name, TJtagPort& port,
                                                     TJTagChannel* parent,
                                                     const TCoreContext& context)
    : TJTagChannel(std::move(name), port, parent, context) {}

void TJTagChannel_ParallelPort::ClearPins() noexcept {
    Tck = 0;
    Tdo = 0;
    Tdi = 0;
    Tms = 0;
}

void TJTagChannel_ParallelPort::DoOpen() {
    ClearPins();
    if (Mapping == nullptr) {
        return;
    }
    if (Mapping->Multiplexed && Mapping->ChannelAddress != OwningPort().GetSelectedChain()) {
        SelectChain(Mapping->ChannelAddress);
    }
    Claim = Ref<IParallelPort>(Mapping->GetPort());
    try {
        Mapping->Activate();
        LastTck = 0;
        LastTms = 0;
        LastTdi = 0;
        if (Mapping->IsJTag) {
            DoResetToIdle();
        }
    } catch (...) {
        CloseAfterFailure();
        throw;
    }
}

void TJTagChannel_ParallelPort::DoClose() {
    ClearPins();
    const Ref<IParallelPort> claim = std::move(Claim);
    if (Mapping == nullptr) {
        return;
    }
    try {
        if (Mapping->Multiplexed && Mapping->NextChannel < TJtagPort::NoChain) {
            SelectChain(Mapping->NextChannel);
        }
    } catch (...) {
        CloseAfterFailure();
        throw;
    }
    Mapping->Deactivate();
}

// What fails now has been told already.
void TJTagChannel_ParallelPort::CloseAfterFailure() noexcept {
    ClearPins();
    static_cast<void>(Guard([&] { Mapping->Deactivate(); }));
    Claim.Reset();
}

void TJTagChannel_ParallelPort::DoWritePins() {
    if (Mapping == nullptr) {
        Tck = 0;
        Tms = 0;
        Tdi = 0;
    } else if (CaptureActive && LastTck == 0 && Tck == 1) {
        // TDO belongs to the state before the rising edge.
        DoReadTdo();
        Captured.push_back(Tdo != 0 ? '1' : '0');
    }
    if (Mapping != nullptr && (Tck != LastTck || Tms != LastTms || Tdi != LastTdi)) {
        Mapping->SetSignals(Tck, Tms, Tdi);
    }
    LastTck = Tck;
    LastTms = Tms;
    LastTdi = Tdi;
}

void TJTagChannel_ParallelPort::DoReadTdo() {
    Tdo = 0;
    if (Mapping != nullptr) {
        Mapping->ReadTdo(Tdo);
    }
}

void TJTagChannel_ParallelPort::DoRefresh() {
    if (Mapping != nullptr) {
        Mapping->SetSignals(Tck, Tms, Tdi);
    }
}

void TJTagChannel_ParallelPort::DoBeginCapture() {
    Captured.clear();
    CaptureActive = true;
}

BitText TJTagChannel_ParallelPort::DoEndCapture() {
    CaptureActive = false;
    std::reverse(Captured.begin(), Captured.end());
    return std::exchange(Captured, {});
}

void TJTagChannel_ParallelPort::DoAbandonCapture() noexcept {
    CaptureActive = false;
    Captured.clear();
}

} // namespace vorel
