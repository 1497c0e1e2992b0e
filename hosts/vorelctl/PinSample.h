// Samples of a device's pins, and how they are printed.
#pragma once

#include "vorel/Device.h"

#include <optional>
#include <string>
#include <vector>

namespace vorel::host {

struct TPinLevel {
    std::string Number;
    std::string Name;
    std::string Direction;
    std::optional<bool> Level; // nothing for a pin whose level no boundary cell shows

    bool operator==(const TPinLevel&) const = default;
};

// One sample: the pins of `entity` in its order, with the levels on the pins of `device` now.
// EVorelError names the operation that failed.
std::vector<TPinLevel> SamplePins(IJTagDevice& device, IBSDLEntity& entity);

// A table of the pins that have a level. Those whose level differs from `before` are marked with
// "*"; an empty `before` marks none.
std::string PinsAsText(const std::vector<TPinLevel>& pins, const std::vector<TPinLevel>& before);

} // namespace vorel::host
