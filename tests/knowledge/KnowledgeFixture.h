// An installation of test modules: folders, a host that names them, file times that tests set, and
// a loader that counts.
#pragma once

#include "knowledge/KnowledgeSettings.h"
#include "knowledge/TempFolder.h"
#include "support/NeutralHost.h"
#include "support/Text.h"

#include <map>
#include <string>
#include <vector>

namespace vorel {

class TCountingLoader final : public IModuleLoader {
public:
    Handle FindLoaded(std::string_view fileName) override { return System.FindLoaded(fileName); }
    Handle Load(const std::string& path) override {
        Loaded.emplace_back(FileNameOf(path));
        return System.Load(path);
    }
    void* FindSymbol(Handle handle, const char* name) override {
        return System.FindSymbol(handle, name);
    }
    void Unload(Handle handle) noexcept override { System.Unload(handle); }

    std::vector<std::string> Loaded;

private:
    TSystemModuleLoader System;
};

class TSetFileTimes final : public IFileTimes {
public:
    std::int32_t LastWrite(const std::string& path) override {
        if (!std::filesystem::exists(path)) {
            return -1;
        }
        const auto time = Times.find(std::string(FileNameOf(path)));
        return time == Times.end() ? 0x5A6B4321 : time->second;
    }

    std::map<std::string, std::int32_t> Times;
};

class TFolderHost final : public TNeutralHost {
public:
    explicit TFolderHost(const std::string& root) : Root(root) {}

    Status GetDirectory(HostDirectory directory, WideText& path) noexcept override {
        return Guard([&] {
            path = ToWide(Root + (directory == HostDirectory::System ? "/System" : "/User"));
        });
    }
    Status GetVersionText(WideText& text) noexcept override {
        return Guard([&] { text = Version; });
    }

    WideText Version = u"Version 7.5.1";

private:
    std::string Root;
};

class TRecordingProgress : public IRebuildProgress {
public:
    void Begin(int moduleCount) override { Log += "begin " + std::to_string(moduleCount) + ";"; }
    void Step() override { Log += "step;"; }
    void ShowImage(const std::string& name) override { Log += "image " + name + ";"; }
    void ShowLabel(const std::string& text) override { Log += text + ";"; }
    void ProcessPendingEvents() override {}
    void End() override { Log += "end;"; }
    void Report(const std::string& message) override { Reports.push_back(message); }

    std::string Log;
    std::vector<std::string> Reports;
};

struct TInstallation {
    TInstallation() { std::filesystem::create_directories(Folder / "System"); }

    // A module that declares the drivers of these lines (see TestModule.cpp).
    void AddModule(const std::string& name, const std::string& lines) {
        AddFile(name, VOREL_TEST_MODULE);
        Folder.Write("System/" + name + ".txt", lines);
    }
    void AddFile(const std::string& name, const std::string& source) {
        std::filesystem::copy_file(source, Folder / ("System/" + name));
    }
    // Other bytes at the end, which the loader does not mind.
    void ChangeBytes(const std::string& name) {
        std::ofstream(Folder / ("System/" + name), std::ios::binary | std::ios::app) << "changed";
    }

    TKnowledgeSettings Settings() {
        TKnowledgeSettings settings;
        settings.Host = &Host;
        settings.Loader = &Loader;
        settings.FileTimes = &Times;
        settings.Progress = &Progress;
        return settings;
    }

    TTempFolder Folder;
    TFolderHost Host{Folder.Path()};
    TCountingLoader Loader;
    TSetFileTimes Times;
    TRecordingProgress Progress;
};

} // namespace vorel
