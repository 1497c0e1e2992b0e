// Pins of devices on a virtual chain, read through the whole system: scan, drivers, description
// files of a library tree, boundary scan.
#include "SoftRig.h"

#include "bsdl/BSDLFile.h"
#include "hosts/vorelctl/PinSample.h"
#include "knowledge/TempFolder.h"
#include "simulator/BsdlDevice.h"
#include "vorel/Driver.h"

#include <cstdlib>
#include <map>
#include <optional>

namespace vorel::host {
namespace {

namespace fs = std::filesystem;

struct TPart {
    fs::path File;
    const char* Id; // an item of a device line, or nothing
};

std::string TextOf(IVorelDriver& driver, Status (IVorelDriver::*get)(WideText&) noexcept) {
    WideText text;
    EXPECT_EQ((driver.*get)(text), StatusOk);
    return ToUtf8(text);
}

class Boundary : public testing::Test {
protected:
    // The library's description of a device, once its file lies where the driver says; null when
    // the driver names none.
    IBSDLEntity* Describe(IJTagDevice& device, const fs::path& file) const {
        IVorelDriver* driver = nullptr;
        EXPECT_EQ(device.GetDriver(driver), StatusOk);
        IBSDLEntity* entity = nullptr;
        const std::string name = TextOf(*driver, &IVorelDriver::GetBsdlFile);
        if (!name.empty()) {
            const fs::path folder = fs::path(Folder.Path()) / "Library/BSDL" /
                                    TextOf(*driver, &IVorelDriver::GetVendor) /
                                    TextOf(*driver, &IVorelDriver::GetFamily);
            fs::create_directories(folder);
            fs::copy_file(file, folder / name);
            EXPECT_EQ(device.ReloadBsdl(), StatusOk);
            EXPECT_EQ(device.GetBsdlEntity(entity), StatusOk);
            EXPECT_NE(entity, nullptr) << folder;
        }
        return entity;
    }

    // Sets a level on each pin that a cell names; gives them by pin number.
    static std::map<std::string, bool> SetLevels(sim::TBsdlDevice& device, TBSDLEntity& entity,
                                                 std::uint32_t seed) {
        std::map<std::string, bool> levels;
        entity.GetBoundaryCells();
        for (const auto& pin : entity.Pins) {
            if (!pin->Cells.empty()) {
                seed = seed * 1664525 + 1013904223;
                const std::string number(pin->Number);
                levels[number] = (seed >> 31U) != 0;
                device.SetPin(number, levels[number]);
            }
        }
        return levels;
    }

    void SampleOne(std::int32_t index, const fs::path& file) {
        sim::TChain& wires = Rig->Pod().Target()->HardChain();
        IJTagDevice* device = nullptr;
        ASSERT_EQ(Channel->GetDevice(index, device), StatusOk);
        const TBSDLFile own = ReadBsdlFile(file.string());
        IBSDLEntity* entity = Describe(*device, file);
        Described += entity != nullptr ? 1 : 0;
        entity = entity != nullptr ? entity : own.Entity.get();
        auto& simulated =
            dynamic_cast<sim::TBsdlDevice&>(wires.Device(static_cast<std::size_t>(index)));
        for (std::uint32_t seed = 1; seed <= 3; ++seed) {
            const auto levels = SetLevels(simulated, *own.Entity, seed);
            std::size_t seen = 0;
            for (const TPinLevel& pin : SamplePins(*device, *entity)) {
                if (pin.Level) {
                    EXPECT_EQ(*pin.Level, levels.at(pin.Number)) << pin.Name;
                    ++seen;
                }
            }
            EXPECT_GE(seen + 2, levels.size()) << "only clock and observing cells show no level";
        }
        std::int32_t sample = -1;
        entity->GetSampleOpcode(sample);
        for (std::size_t i = 0; i < wires.DeviceCount(); ++i) {
            const std::string instruction = wires.Device(i).Instruction();
            EXPECT_EQ(wires.Device(i).State(), sim::TapState::RunTestIdle);
            if (static_cast<std::int32_t>(i) == index) {
                EXPECT_EQ(std::stoi(instruction, nullptr, 2), sample);
            } else {
                EXPECT_EQ(instruction.find('0'), std::string::npos) << "BYPASS";
            }
        }
    }

    // Samples each part; the library has to describe `described` of them by itself.
    void SampleAll(const std::vector<TPart>& parts, int described) {
        std::string text = "[pod]\n[hard]\n";
        for (const TPart& part : parts) {
            text += "device = part \"bsdl=" + part.File.string() + "\" " + part.Id + "\n";
        }
        fs::create_directory_symlink(VOREL_TREE "/System", Folder / "System");
        Rig.emplace(sim::TScene::Parse(text), Folder.Path(), Folder.Path());
        ASSERT_EQ(Rig->Port->GetHardChain(Channel), StatusOk);
        std::int32_t count = 0;
        ASSERT_EQ(Channel->GetDeviceCount(count), StatusOk);
        ASSERT_EQ(static_cast<std::size_t>(count), parts.size());
        for (std::size_t i = 0; i < parts.size(); ++i) {
            SCOPED_TRACE(parts[i].File);
            SampleOne(static_cast<std::int32_t>(i), parts[i].File);
        }
        EXPECT_EQ(Described, described);
    }

    const TTempFolder Folder;
    std::optional<TPodRig> Rig;
    IJTagChannel* Channel = nullptr;
    int Described = 0;
};

TEST_F(Boundary, ReadsTheLevelsOnPinsOfSmallParts) {
    const fs::path data = VOREL_SOURCE_DIR "/tests/data/bsdl";
    // Ids of parts with as long instruction registers, so that a driver is found.
    SampleAll({{data / "port.bsd", "id=59608093"},
               {data / "latch.bsd", ""},
               {data / "pulse.bsd", "id=06412041"}},
              2);
}

TEST_F(Boundary, ReadsTheLevelsOnPinsOfRealParts) {
    const char* given = std::getenv("VOREL_TEST_DATA");
    const fs::path data =
        fs::path(given != nullptr ? given : VOREL_SOURCE_DIR "/../shared/data") / "bsdl";
    if (!fs::exists(data)) {
        GTEST_SKIP() << "no BSDL files in " << data;
    }
    SampleAll({{data / "st/STM32F1_Low_density_QFPN36.bsd", ""},
               {data / "altera/ep1c3t100.bsd", ""},
               {data / "atmel/1502AS_J44.bsd", ""}},
              3);
}

} // namespace
} // namespace vorel::host
