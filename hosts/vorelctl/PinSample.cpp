#include "hosts/vorelctl/PinSample.h"

#include "support/Errors.h"
#include "support/Objects.h"
#include "support/Text.h"

#include <algorithm>

namespace vorel::host {

namespace {

// What a pin's tag holds until a sample gives it a level.
constexpr std::int32_t NotSampled = -1;

std::vector<IBSDLPin*> PinsOf(IBSDLEntity& entity) {
    std::int32_t count = 0;
    Check(entity.GetPinCount(count), "counting the pins");
    std::vector<IBSDLPin*> pins;
    for (std::int32_t i = 0; i < count; ++i) {
        IBSDLPin* pin = nullptr;
        Check(entity.GetPin(i, pin), "reading a pin");
        if (pin != nullptr) {
            pins.push_back(pin);
        }
    }
    return pins;
}

std::string TextOf(IBSDLPin& pin, Status (IBSDLPin::*get)(WideText&) noexcept) {
    WideText text;
    Check((pin.*get)(text), "reading a pin");
    return ToUtf8(text);
}

TPinLevel Describe(IBSDLPin& pin) {
    TPinLevel result;
    result.Number = TextOf(pin, &IBSDLPin::GetNumber);
    result.Name = TextOf(pin, &IBSDLPin::GetName);
    std::int32_t mode = 0;
    Check(pin.GetMode(mode), "reading a pin");
    if (mode >= 0 && static_cast<std::size_t>(mode) < PinModeNames.size()) {
        result.Direction = PinModeNames[static_cast<std::size_t>(mode)];
    }
    std::int32_t tag = NotSampled;
    Check(pin.GetTag(tag), "reading a pin's level");
    if (tag != NotSampled) {
        result.Level = tag != 0;
    }
    return result;
}

} // namespace

std::vector<TPinLevel> SamplePins(IJTagDevice& device, IBSDLEntity& entity) {
    const std::vector<IBSDLPin*> pins = PinsOf(entity);
    for (IBSDLPin* pin : pins) {
        if (const auto tagged = Ref<IBSDLTagged>::Adopt(QueryFor<IBSDLTagged>(pin))) {
            Check(tagged->SetTag(NotSampled), "preparing a sample");
        }
    }
    Bool32 done = False32;
    Check(device.ReadBoundary(&entity, done), "sampling the boundary register");
    std::vector<TPinLevel> levels;
    levels.reserve(pins.size());
    for (IBSDLPin* pin : pins) {
        levels.push_back(Describe(*pin));
    }
    return levels;
}

std::string PinsAsText(const std::vector<TPinLevel>& pins, const std::vector<TPinLevel>& before) {
    std::size_t number = std::string_view("PIN").size();
    std::size_t name = std::string_view("NAME").size();
    for (const TPinLevel& pin : pins) {
        number = std::max(number, pin.Number.size());
        name = std::max(name, pin.Name.size());
    }
    constexpr std::size_t direction = 14; // the longest of PinModeNames
    const auto row = [&](const std::string& a, const std::string& b, const std::string& c) {
        return PadRight(a, number + 2) + PadRight(b, name + 2) + PadRight(c, direction + 2);
    };
    std::string text = "  " + row("PIN", "NAME", "DIRECTION") + "LEVEL\n";
    std::size_t without = 0;
    for (std::size_t i = 0; i < pins.size(); ++i) {
        const TPinLevel& pin = pins[i];
        if (!pin.Level) {
            ++without;
            continue;
        }
        const bool changed = i < before.size() && before[i].Level != pin.Level;
        text += (changed ? "* " : "  ") + row(pin.Number, pin.Name, pin.Direction) +
                (*pin.Level ? "1\n" : "0\n");
    }
    return text + std::to_string(pins.size() - without) + " pins sampled, " +
           std::to_string(without) + " without a boundary cell that shows them\n";
}

} // namespace vorel::host
