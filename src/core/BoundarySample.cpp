#include "core/BoundarySample.h"

#include "core/JTagChannel.h"
#include "support/Errors.h"

#include <string_view>

namespace vorel {

namespace {

// The boundary register as it was captured, cell 0 rightmost.
BitText CaptureBoundary(TJTagChannel& channel, std::int32_t index, std::int32_t opCode,
                        std::int32_t cells) {
    TChannelLock lock(channel);
    channel.DoScanIrWrite(static_cast<std::uint32_t>(opCode), index);
    channel.DoTapMove(TTapState::IDLE, TTapState::DRSHIFT);
    const std::int32_t behind = channel.DeviceCount() - index - 1;
    for (std::int32_t i = 0; i < behind; ++i) {
        channel.DoClock(false);
    }
    BitText captured = channel.DoShiftBits("0", cells, true, false);
    channel.DoClock(true);
    channel.DoTapMove(TTapState::DREXIT1, TTapState::IDLE);
    lock.Release();
    return captured;
}

void SetTag(IInterface& record, std::int32_t value) {
    const auto tagged = Ref<IBSDLTagged>::Adopt(QueryFor<IBSDLTagged>(&record));
    if (tagged) {
        Check(tagged->SetTag(value), "storing a sampled value");
    }
}

// Whether a cell of this function, one of `cellCount` of its pin, shows the pin's state.
bool ShowsPin(IBSDLBoundaryCell& cell, std::int32_t cellCount) {
    std::int32_t function = 0;
    Check(cell.GetCellFunction(function), "reading a boundary cell");
    if (function <= 0 || static_cast<std::size_t>(function) >= BoundaryCellFunctionNames.size()) {
        return false;
    }
    const std::string_view name = BoundaryCellFunctionNames[static_cast<std::size_t>(function)];
    return name == "Input" || name == "BiDir" || name == "Output2" ||
           (name == "Output3" && cellCount == 1);
}

void TakeFromCells(IBSDLPin& pin) {
    std::int32_t count = 0;
    Check(pin.GetCellCount(count), "reading a pin");
    for (std::int32_t i = 0; i < count; ++i) {
        IBSDLBoundaryCell* cell = nullptr;
        Check(pin.GetCell(i, cell), "reading a pin's cell");
        if (cell != nullptr && ShowsPin(*cell, count)) {
            std::int32_t value = 0;
            Check(cell->GetTag(value), "reading a boundary cell");
            SetTag(pin, value);
        }
    }
}

} // namespace

void SampleBoundary(TJTagChannel& channel, std::int32_t index, IBSDLEntity& entity) {
    std::int32_t opCode = -1;
    std::int32_t cells = 0;
    Check(entity.GetSampleOpcode(opCode), "reading the SAMPLE instruction");
    if (opCode == -1) {
        return;
    }
    Check(entity.GetBoundaryCellCount(cells), "reading the boundary register");
    const BitText captured = CaptureBoundary(channel, index, opCode, cells);
    for (std::int32_t i = 0; i < cells; ++i) {
        IBSDLBoundaryCell* cell = nullptr;
        Check(entity.GetBoundaryCell(i, cell), "reading a boundary cell");
        const auto place = static_cast<std::size_t>(i);
        if (cell != nullptr) {
            SetTag(*cell, place < captured.size() && captured[captured.size() - 1 - place] == '1');
        }
    }
    std::int32_t pins = 0;
    Check(entity.GetPinCount(pins), "reading the pins");
    for (std::int32_t i = 0; i < pins; ++i) {
        IBSDLPin* pin = nullptr;
        Check(entity.GetPin(i, pin), "reading a pin");
        if (pin != nullptr) {
            TakeFromCells(*pin);
        }
    }
}

} // namespace vorel
