// The loaded library on the default board, with its two soft devices taken into use.
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

#include <filesystem>
#include <string>
#include <vector>

namespace vorel::host {

class TSoftRig {
public:
    // `folder` holds the driver cache; one that stays makes the next rig quick.
    explicit TSoftRig(const std::filesystem::path& folder)
        : Usb(sim::TScene::Load(VOREL_TREE "/scenes/default.ini").CreateUsb()),
          Host({VOREL_TREE}, {folder, folder}) {
        Host.UseUsb(Usb.get());
        Host.OnMessage = [this](const std::string& text) { Messages += text; };
        SetHostClient(&Host);
        if (!Vorel.Load(VOREL_TREE "/System")) {
            throw EVorelError(Vorel.Problem());
        }
        Check(Vorel.ScanJTagPorts(), "Scanning the ports");
        IJTagPort* port = nullptr;
        Check(Vorel.GetJTagPort(1, &port), "Getting the pod");
        Bool32 found = False32;
        Check(port->Detect(True32, found), "Detecting");
        Check(port->GetSoftChain(Chain), "Getting the soft chain");
        Processor = Take(u"ZRC3000", 0);
        Memory = Take(u"SOFTMEM4K", 1);
        Check(Processor->GetMainMemorySpace(Ram), "Getting the memory");
    }
    ~TSoftRig() {
        Vorel.Unload();
        SetHostClient(nullptr);
    }
    TSoftRig(const TSoftRig&) = delete;
    TSoftRig& operator=(const TSoftRig&) = delete;

    sim::TSimPod& Pod() { return Usb->Pod(0); }
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

    std::unique_ptr<sim::TSimUsbServices> Usb;
    std::string Messages;
    TPlainHost Host;
    TVorelLibrary Vorel;
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

} // namespace vorel::host
