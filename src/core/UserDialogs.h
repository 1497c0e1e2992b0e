// The forms that the core asks the user with, without knowing how they look. The library hands in
// the real ones; a process without a user interface gets TNoUserDialogs.
#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace vorel {

class IVorelDriver;

// What the device chooser is opened for.
enum class ChooserMode : std::int32_t {
    Choose = 0,
    Add = 1,
    Change = 2,
    Browse = 3,
    BrowseAdd = 4,
    ChooseCompatible = 5,
};

// All forms are modal: a call returns when the user has closed the form. Names are UTF-8.
class IUserDialogs {
public:
    virtual ~IUserDialogs() = default;

    // The device that the user found by search; empty on cancel.
    virtual std::string FindDevice() = 0;
    // The device that the user chose, `current` being selected at first; nothing on cancel.
    virtual std::optional<std::string> ChooseDevice(ChooserMode mode,
                                                    const std::string& current) = 0;
    // The about box of a driver.
    virtual void ShowAbout(IVorelDriver& driver) = 0;
};

// Nobody there: every question is cancelled.
class TNoUserDialogs final : public IUserDialogs {
public:
    std::string FindDevice() override { return {}; }
    std::optional<std::string> ChooseDevice(ChooserMode, const std::string&) override {
        return std::nullopt;
    }
    void ShowAbout(IVorelDriver&) override {}
};

} // namespace vorel
