#include "simulator/Scene.h"

#include "simulator/BsdlDevice.h"
#include "simulator/DebugUnit.h"
#include "simulator/MemoryInstrument.h"
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

void Fill(TBoard& board, const SceneTarget& scene) {
    TChain& chain = board.ControllerChain();
    for (const SceneDevice& device : scene.Board.Devices) {
        for (std::size_t i = 0; i < device.Count; ++i) {
            board.AddController(device.Settings).SetBusyReads(scene.BusyReads);
            chain.SetWireFault(chain.DeviceCount() - 1, device.Fault);
        }
    }
    chain.SetTdoFault(scene.Board.TdoFault);
    for (std::size_t i = 0; i < scene.Spi.size(); ++i) {
        board.SetSpiDevice(i, std::make_unique<TSpiMemory>(scene.Spi[i].Name, scene.Spi[i].Id));
    }
}

} // namespace

std::unique_ptr<TTapDevice> SceneDevice::Create() const {
    if (Kind == SceneKind::Processor) {
        return std::make_unique<TDebugUnit>(Settings);
    }
    if (Kind == SceneKind::Memory) {
        return std::make_unique<TMemoryInstrument>(Settings);
    }
    if (Entity == nullptr) {
        return std::make_unique<TTapDevice>(Settings);
    }
    auto device = std::make_unique<TBsdlDevice>(*Entity, Settings);
    for (const auto& [pin, input] : Pins) {
        device->SetPin(pin, input);
    }
    return device;
}

std::unique_ptr<TTarget> SceneTarget::CreateTarget() const {
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
    auto pod = Remote.empty()
                   ? std::make_unique<TSimPod>(Identity, CreateTarget())
                   : std::make_unique<TSimPod>(Identity, TRemoteBitbangLines::Connect(Remote));
    if (Fault) {
        pod->Faults().Add(*Fault);
    }
    return pod;
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
    TSceneReader(fileName).Read(text, scene);
    return scene;
}

std::unique_ptr<TSimUsbServices> TScene::CreateUsb() const {
    auto services = std::make_unique<TSimUsbServices>();
    for (const ScenePod& pod : Pods) {
        services->Add(pod.CreatePod());
    }
    return services;
}

std::unique_ptr<TSimParallelPorts> TScene::CreateParallelPorts() const {
    auto ports = std::make_unique<TSimParallelPorts>();
    for (const SceneCable& cable : Cables) {
        TTarget& target = ports->Keep(cable.CreateTarget());
        TParallelCable& port = ports->Add(cable.Address);
        TBoard* board = target.Board();
        if (board != nullptr && cable.BoardWires) {
            port.Connect(*cable.BoardWires, board->ControllerChain());
            port.Connect(cable.Wires, board->MultiplexedLines());
        } else {
            port.Connect(cable.Wires, target.HardChain());
        }
    }
    return ports;
}

} // namespace vorel::sim
