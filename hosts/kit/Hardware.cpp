#include "hosts/kit/Hardware.h"

#include "platform/LibusbServices.h"
#include "simulator/RemoteBitbangLines.h"
#include "simulator/Scene.h"
#include "simulator/SimUsbServices.h"
#include "support/Text.h"

namespace vorel::host {

namespace {

class TVirtualHardware final : public IHardware {
public:
    TVirtualHardware(std::unique_ptr<sim::TSimUsbServices> services,
                     std::unique_ptr<sim::TSimParallelPorts> cables, std::string description)
        : Services(std::move(services)),
          Cables(std::move(cables)),
          Description(std::move(description)) {}

    IUsbServices& Usb() noexcept override { return *Services; }
    IParallelPortManager* ParallelPorts() noexcept override { return Cables.get(); }
    std::string Describe() const override { return Description; }
    std::vector<std::string> Notes() const override {
        if (Services->LastError().empty()) {
            return {};
        }
        return {"The connection failed: " + Services->LastError()};
    }

private:
    std::unique_ptr<sim::TSimUsbServices> Services;
    std::unique_ptr<sim::TSimParallelPorts> Cables;
    std::string Description;
};

class TMachineHardware final : public IHardware {
public:
    IUsbServices& Usb() noexcept override { return Services; }
    IParallelPortManager* ParallelPorts() noexcept override { return nullptr; }
    std::string Describe() const override {
        return "the USB pods and parallel ports of this machine";
    }
    std::vector<std::string> Notes() const override;

private:
    TLibusbServices Services;
};

std::vector<std::string> TMachineHardware::Notes() const {
    std::vector<std::string> notes;
    for (const TRefusedUsbDevice& device : Services.GetRefusedDevices()) {
        notes.push_back("A pod (1B8C:" + ToHex(device.ProductId, 4) + ") is plugged in at bus " +
                        std::to_string(device.Bus) + ", address " + std::to_string(device.Address) +
                        ", and could not be opened: " + device.Reason +
                        ". It needs read and write permission for " + device.Node +
                        "; the udev rule 60-vorel-pods.rules grants it to users at the machine "
                        "and the group plugdev. Plug the pod in again after installing it.");
    }
    return notes;
}

} // namespace

std::unique_ptr<IHardware> OpenScene(const std::filesystem::path& file) {
    const sim::TScene scene = sim::TScene::Load(file.string());
    return std::make_unique<TVirtualHardware>(scene.CreateUsb(), scene.CreateParallelPorts(),
                                              "scene " + file.filename().string() +
                                                  " (virtual hardware)");
}

std::unique_ptr<IHardware> OpenBitbang(const std::string& address) {
    auto services = std::make_unique<sim::TSimUsbServices>();
    sim::UsbIdentity identity;
    identity.ProductName = "Bitbang pod";
    identity.SerialNumber = address;
    services->Add(
        std::make_unique<sim::TSimPod>(identity, sim::TRemoteBitbangLines::Connect(address)));
    return std::make_unique<TVirtualHardware>(std::move(services),
                                              std::make_unique<sim::TSimParallelPorts>(),
                                              "remote_bitbang server " + address);
}

std::unique_ptr<IHardware> OpenMachine() {
    return std::make_unique<TMachineHardware>();
}

std::unique_ptr<IHardware> OpenNoHardware() {
    return std::make_unique<TVirtualHardware>(std::make_unique<sim::TSimUsbServices>(),
                                              std::make_unique<sim::TSimParallelPorts>(),
                                              "no hardware");
}

} // namespace vorel::host
