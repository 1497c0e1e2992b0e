// The loaded library on virtual boards.
#pragma once

#include "hosts/kit/LibraryLoader.h"
#include "hosts/kit/PlainHost.h"
#include "simulator/Scene.h"
#include "simulator/SimUsbServices.h"
#include "support/Errors.h"
#include "support/Text.h"
#include "vorel/Channel.h"
#include "vorel/DeviceManager.h"
#include "vorel/Ports.h"
#include "vorel/VorelDevice.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <string>
#include <vector>

namespace vorel::host {

// The library loaded on virtual hardware, with the pod at port 1 detected.
class TPodRig {
public:
    // `user` holds the driver cache; one that stays makes the next rig quick.
    TPodRig(const sim::TScene& scene, const std::filesystem::path& installation,
            const std::filesystem::path& user)
        : Usb(scene.CreateUsb()), Host({installation}, {user, user}) {
        Host.UseUsb(Usb.get());
        Host.OnMessage = [this](const std::string& text) { Messages += text; };
        SetHostClient(&Host);
        if (!Vorel.Load(VOREL_TREE "/System")) {
            throw EVorelError(Vorel.Problem());
        }
        Check(Vorel.ScanJTagPorts(), "Scanning the ports");
        Check(Vorel.GetJTagPort(1, &Port), "Getting the pod");
        Bool32 found = False32;
        Check(Port->Detect(True32, found), "Detecting");
    }
    ~TPodRig() {
        Vorel.Unload();
        SetHostClient(nullptr);
    }
    TPodRig(const TPodRig&) = delete;
    TPodRig& operator=(const TPodRig&) = delete;

    sim::TSimPod& Pod() { return Usb->Pod(0); }

    std::unique_ptr<sim::TSimUsbServices> Usb;
    std::string Messages;
    TPlainHost Host;
    TVorelLibrary Vorel;
    IJTagPort* Port = nullptr;
};

// The default board with its two soft devices taken into use.
class TSoftRig : public TPodRig {
public:
    explicit TSoftRig(const std::filesystem::path& user)
        : TPodRig(sim::TScene::Load(VOREL_TREE "/scenes/default.ini"), VOREL_TREE, user) {
        Check(Port->GetSoftChain(Chain), "Getting the soft chain");
        Processor = Take(u"ZRC3000", 0);
        Memory = Take(u"SOFTMEM4K", 1);
        Check(Processor->GetMainMemorySpace(Ram), "Getting the memory");
    }

    std::uint64_t Clocks() { return Pod().Target()->SoftChain().ClockCount(); }

    void WriteWords(std::uint32_t address, const std::vector<std::uint32_t>& words) {
        std::vector<std::uint32_t> slots;
        for (const std::uint32_t word : words) {
            for (int shift = 24; shift >= 0; shift -= 8) {
                slots.push_back(word >> shift & 0xFF);
            }
        }
        Check(Ram->WriteBlock(slots.data(), address, static_cast<std::int32_t>(slots.size())),
              "Writing words");
    }
    std::uint32_t Register(std::int32_t index) {
        IProcessorRegister* handle = nullptr;
        std::uint32_t value = 0;
        Check(Processor->GetRegister(index, handle), "Getting a register");
        Check(handle->ReadValue(value), "Reading a register");
        return value;
    }
    std::string Text(std::int32_t argument) {
        WideText text;
        Check(Processor->GetCoreText111(argument, text), "Asking for a text");
        return ToUtf8(text);
    }
    std::string StatusText() {
        WideText text;
        Check(Processor->GetStatusText(text), "Asking for the status");
        return ToUtf8(text);
    }
    // Runs from where the processor stands until it stops; false when it does not.
    bool RunToStop() {
        Check(Processor->ContinueProcessor(), "Continuing");
        Bool32 paused = False32;
        for (int i = 0; i < 100000 && paused == False32; ++i) {
            Check(Processor->IsPaused(paused), "Asking whether it is paused");
        }
        return paused != False32;
    }

    IJTagChannel* Chain = nullptr;
    IVorelDevice* Processor = nullptr;
    IVorelDevice* Memory = nullptr;
    IMemorySpace* Ram = nullptr;

private:
    IVorelDevice* Take(const WideText& name, std::int32_t place) {
        IVorelDevice* device = nullptr;
        Check(Vorel.DeviceManager()->AcquireDevice(name, device), "Taking a device");
        Check(device->SetChannel(Chain), "Putting it on its chain");
        Check(device->SetChainIndex(place), "Putting it in its place");
        return device;
    }
};

// Tests on that board, which share a driver cache.
class TSoftRigTest : public testing::Test {
protected:
    static void SetUpTestSuite() { std::filesystem::create_directories(Folder()); }
    static void TearDownTestSuite() { std::filesystem::remove_all(Folder()); }
    static std::filesystem::path Folder() {
        return std::filesystem::temp_directory_path() / "vorel-soft-test";
    }

    TSoftRig Rig{Folder()};
};

} // namespace vorel::host
