#include "simulator/Scene.h"

#include "simulator/BsdlDevice.h"
#include "simulator/RemoteBitbangLines.h"
#include "simulator/SceneReader.h"
#include "simulator/SimUsbServices.h"
#include "simulator/SpiMemory.h"

#include <cerrno>
#include <fstream>
#include <system_error>

namespace vorel::sim {

namespace {

void Fill(TChain& chain, const SceneChain& scene) {
    for (const SceneDevice& device : scene.Devices) {
        for (std::size_t i = 0; i < device.Count; ++i) {
            chain.Add(device.Create());
            chain.SetWireFault(chain.DeviceCount() - 1, device.Fault);
        }
    }
    chain.SetTdoFault(scene.TdoFault);
}

void Fill(TBoard& board, const ScenePod& pod) {
    TChain& chain = board.ControllerChain();
    for (const SceneDevice& device : pod.Board.Devices) {
        for (std::size_t i = 0; i < device.Count; ++i) {
            board.AddController(device.Settings).SetBusyReads(pod.BusyReads);
            chain.SetWireFault(chain.DeviceCount() - 1, device.Fault);
        }
    }
    chain.SetTdoFault(pod.Board.TdoFault);
    for (std::size_t i = 0; i < pod.Spi.size(); ++i) {
        board.SetSpiDevice(i, std::make_unique<TSpiMemory>(pod.Spi[i].Name, pod.Spi[i].Id));
    }
}

} // namespace

std::unique_ptr<TTapDevice> SceneDevice::Create() const {
    if (Entity == nullptr) {
        return std::make_unique<TTapDevice>(Settings);
    }
    auto device = std::make_unique<TBsdlDevice>(*Entity, Settings);
    for (const auto& [pin, input] : Pins) {
        device->SetPin(pin, input);
    }
    return device;
}

std::unique_ptr<TTarget> ScenePod::CreateTarget() const {
    auto target = std::make_unique<TTarget>();
    Fill(target->HardChain(), Hard);
    Fill(target->SoftChain(), Soft);
    if (HasBoard) {
        Fill(target->AddBoard(), *this);
    }
    return target;
}

std::unique_ptr<TSimPod> ScenePod::CreatePod() const {
    if (Identity.Vendor != UsbIdentity{}.Vendor) {
        return std::make_unique<TSimPod>(Identity);
    }
    if (!Remote.empty()) {
        return std::make_unique<TSimPod>(Identity, TRemoteBitbangLines::Connect(Remote));
    }
    return std::make_unique<TSimPod>(Identity, CreateTarget());
}

TScene TScene::Load(const std::string& path) {
    errno = 0;
    std::ifstream file(path, std::ios::binary);
    std::string text(MaxTextSize + 1, '\0');
    if (!file.is_open() ||
        (!file.read(text.data(), static_cast<std::streamsize>(text.size())) && !file.eof())) {
        throw ESceneError(path +
                          ": the scene cannot be read: " + std::generic_category().message(errno));
    }
    text.resize(static_cast<std::size_t>(file.gcount()));
    return Parse(text, path);
}

TScene TScene::Parse(std::string_view text, const std::string& fileName) {
    if (text.size() > MaxTextSize) {
        throw ESceneError(fileName + ": a scene has at most " + std::to_string(MaxTextSize) +
                          " bytes");
    }
    TScene scene;
    scene.Pods = TSceneReader(fileName).Read(text);
    return scene;
}

std::unique_ptr<TSimUsbServices> TScene::CreateUsb() const {
    auto services = std::make_unique<TSimUsbServices>();
    for (const ScenePod& pod : Pods) {
        services->Add(pod.CreatePod());
    }
    return services;
}

} // namespace vorel::sim
