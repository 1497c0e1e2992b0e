// What is shown while the driver cache reads modules. The library hands in a dialog, a command line
// program a line of text; without either the work goes on unseen.
#pragma once

#include <string>

namespace vorel {

// Begin and End frame one rebuild; the other calls come between them, except Report. Calls may
// process the user's input. They must not raise.
class IRebuildProgress {
public:
    virtual ~IRebuildProgress() = default;

    // The window appears, with a bar from 0 to `moduleCount`.
    virtual void Begin(int moduleCount) = 0;
    // One module further on the bar.
    virtual void Step() = 0;
    // The picture `name` + "_About.bmp" of the device images; none when there is no such file. The
    // empty name comes before the drivers of each module.
    virtual void ShowImage(const std::string& name) = 0;
    // "File: " and the file name of the module.
    virtual void ShowLabel(const std::string& text) = 0;
    virtual void ProcessPendingEvents() = 0;
    virtual void End() = 0;
    // Something that the user should know of: the database file was damaged.
    virtual void Report(const std::string& message) = 0;
};

class TSilentProgress final : public IRebuildProgress {
public:
    void Begin(int) override {}
    void Step() override {}
    void ShowImage(const std::string&) override {}
    void ShowLabel(const std::string&) override {}
    void ProcessPendingEvents() override {}
    void End() override {}
    void Report(const std::string&) override {}
};

} // namespace vorel
