#include "core/CoreRig.h"

#include "bsdl/BSDLLibrary.h"
#include "core/BsdlSource.h"
#include "knowledge/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace vorel::test {
namespace {

namespace fs = std::filesystem;

constexpr const char* PartText = R"bsdl(entity PART is
generic (PHYSICAL_PIN_MAP : string := "PKG");
port (A : in bit; B : out bit; C : inout bit; D : out bit; E : in bit;
      TDI, TMS, TCK : in bit; TDO : out bit);
use STD_1149_1_1994.all;
attribute PIN_MAP of PART : entity is PHYSICAL_PIN_MAP;
constant PKG : PIN_MAP_STRING :=
  "A:1, B:2, C:3, D:4, E:5, TDI:6, TMS:7, TCK:8, TDO:9";
attribute INSTRUCTION_LENGTH of PART : entity is 6;
attribute INSTRUCTION_OPCODE of PART : entity is
  "BYPASS (111111)," & "SAMPLE (000010)," & "IDCODE (000001)";
attribute BOUNDARY_LENGTH of PART : entity is 7;
attribute BOUNDARY_REGISTER of PART : entity is
  "0 (BC_1, A, input, X)," &
  "1 (BC_1, B, output3, X, 3, 1, Z)," &
  "2 (BC_1, C, bidir, X, 3, 1, Z)," &
  "3 (BC_1, *, control, 1)," &
  "4 (BC_1, D, output3, X, 3, 1, Z)," &
  "5 (BC_1, D, output3, X, 3, 1, Z)," &
  "6 (BC_1, E, clock, X)";
end PART;
)bsdl";

// A device whose instruction 2 samples its pins, all high.
class TSampledDevice : public sim::TTapDevice {
public:
    TSampledDevice() : TTapDevice({"sampled", IdB, 6, BitText(), BitText()}) { Pins.Value = 0x7F; }

private:
    struct TPins : sim::TWordRegister {
        TPins() : TWordRegister(7) {}
        void Capture() override { Load(Value); }
        std::uint32_t Value = 0;
    };
    sim::TDataRegister& SelectRegister(const BitText& instruction) override {
        return instruction == "000010" ? Pins : TTapDevice::SelectRegister(instruction);
    }
    TPins Pins;
};

// A chain whose middle device samples its pins and has two names: "part", with a file, and "bare".
struct Device : ::testing::Test, TRig {
    Device() {
        Host.Library = Folder.Path();
        Context.Bsdl = &Source;
        Knowledge.AddPart(IdB, "bare");
        Knowledge.AddPart(IdB, "part").Bsdl = "part.bsd";
        AddTap(Wires, IdA);
        Wires.Add(std::make_unique<TSampledDevice>());
        AddTap(Wires, IdC);
    }

    TJTagDevice& Middle() {
        EXPECT_TRUE(test::Detect(Port(1)));
        return *HardChain(Port(1)).ChainDevices().at(1);
    }
    void WriteFile(const std::string& text) { Folder.Write("BSDL/Maker/Parts/part.bsd", text); }
    static IBSDLEntity* EntityOf(TJTagDevice& device) {
        return Get<IBSDLEntity*>([&](auto& entity) { return device.GetBsdlEntity(entity); });
    }
    static std::int32_t PinsOf(TJTagDevice& device) {
        return Get<std::int32_t>([&](auto& n) { return device.GetPinCount(n); });
    }

    TTempFolder Folder;
    fs::path File = Folder / "BSDL/Maker/Parts/part.bsd";
    TZipExtractor Zip;
    TBSDLLibrary Library{Host, Zip, Folder.Path(), Folder.Path()};
    TBsdlSource Source{Library};
    sim::TChain& Wires = AddPod().Target()->HardChain();
};

TEST_F(Device, WithoutNamesHasDefaults) {
    Middle();
    TJTagDevice& device = *HardChain(Port(1)).ChainDevices().at(0);
    EXPECT_EQ(Utf8(Get<WideText>([&](auto& t) { return device.GetName(t); })), "Unknown");
    EXPECT_EQ(Get<IVorelDriver*>([&](auto& d) { return device.GetDriver(d); }), nullptr);
    EXPECT_EQ(Get<std::int32_t>([&](auto& n) { return device.GetIrLength(n); }), 4);
    EXPECT_EQ(EntityOf(device), nullptr);
    EXPECT_EQ(Get<IBSDLPin*>([&](auto& pin) { return device.GetPin(0, pin); }), nullptr);
}

TEST_F(Device, ReadsEachPartsFileOnceOnDemand) {
    WriteFile(PartText);
    TJTagDevice& device = Middle();
    EXPECT_FALSE(fs::exists(fs::path(File).replace_extension(".Log")));
    EXPECT_EQ(Get<std::int32_t>([&](auto& n) { return device.GetIrLength(n); }), 6);
    IBSDLEntity* entity = EntityOf(device);
    ASSERT_NE(entity, nullptr);
    EXPECT_GT(fs::file_size(fs::path(File).replace_extension(".Log")), 0U);
    EXPECT_EQ(PinsOf(device), 9);
    EXPECT_EQ(Utf8(Get<WideText>([&](auto& t) { return device.GetFileName(t); })), File.string());

    const auto select = [&](const char16_t* name) {
        return Get<Bool32>([&](auto& b) { return device.SelectPart(name, b); }) != False32;
    };
    EXPECT_TRUE(select(u"BARE"));
    EXPECT_EQ(EntityOf(device), nullptr);
    EXPECT_FALSE(select(u"missing"));
    EXPECT_EQ(device.PartName(), "bare");
    EXPECT_TRUE(select(u"part"));
    fs::remove(File);
    EXPECT_EQ(EntityOf(device), entity);
    EXPECT_EQ(device.ReloadBsdl(), StatusOk);
    EXPECT_EQ(EntityOf(device), nullptr);
    WriteFile(PartText);
    EXPECT_NE(EntityOf(device), nullptr);
    EXPECT_TRUE(Host.Boxes.empty());
}

TEST_F(Device, TellsOfABadFileOnceAndUsesTheDefault) {
    WriteFile(std::string(PartText).substr(0, 500) + "\"; 17 &&& ( end");
    TJTagDevice& device = Middle();
    EXPECT_EQ(PinsOf(device), 0);
    EXPECT_EQ(EntityOf(device), nullptr);
    const std::string box =
        "Error reading BSDL file: " + File.string() + "\rUsing default data for device.";
    EXPECT_EQ(Host.Boxes, std::vector<std::string>{box});
    EXPECT_TRUE(fs::exists(fs::path(File).replace_extension(".Log")));

    bool hadErrors = false;
    WriteFile(PartText);
    const auto fallback = Library.LoadBsdlFile(File.string(), hadErrors);
    ASSERT_FALSE(hadErrors);
    WriteFile("entity ( ;");
    Knowledge.Drivers["part"].Default = fallback.get();
    EXPECT_EQ(device.ReloadBsdl(), StatusOk);
    EXPECT_EQ(EntityOf(device), fallback.get());
    EXPECT_EQ(Host.Boxes.size(), 2U);
}

TEST_F(Device, SamplesItsPins) {
    WriteFile(PartText);
    TJTagDevice& device = Middle();
    IBSDLEntity& entity = *EntityOf(device);
    EXPECT_EQ(Get<Bool32>([&](auto& b) { return device.ReadBoundary(&entity, b); }), True32);
    std::string sampled;
    for (std::int32_t i = 0; i < PinsOf(device); ++i) {
        auto* pin = Get<IBSDLPin*>([&](auto& p) { return device.GetPin(i, p); });
        const auto tag = Get<std::int32_t>([&](auto& n) { return pin->GetTag(n); });
        const auto name = Utf8(Get<WideText>([&](auto& t) { return pin->GetName(t); }));
        sampled += name.size() == 1 ? name + std::to_string(tag) : "";
    }
    EXPECT_EQ(sampled, "A1B1C1D0E0"); // D has two cells, E is a clock
    for (std::int32_t i = 0; i < 7; ++i) {
        auto* cell = Get<IBSDLBoundaryCell*>([&](auto& c) { return device.GetBoundaryCell(i, c); });
        EXPECT_EQ(Get<std::int32_t>([&](auto& n) { return cell->GetTag(n); }), 1) << i;
    }
    EXPECT_EQ(Wires.Device(0).Instruction(), "1111");
    EXPECT_EQ(Wires.Device(1).State(), sim::TapState::RunTestIdle);

    // Without SAMPLE nothing moves.
    WriteFile(std::string(PartText).replace(std::string(PartText).find("SAMPLE"), 6, "SOMPLE"));
    ASSERT_EQ(device.ReloadBsdl(), StatusOk);
    const std::uint64_t clocks = Wires.ClockCount();
    IBSDLEntity* without = EntityOf(device);
    EXPECT_EQ(Get<Bool32>([&](auto& b) { return device.ReadBoundary(without, b); }), True32);
    EXPECT_EQ(Get<Bool32>([&](auto& b) { return device.ReadBoundary(nullptr, b); }), True32);
    EXPECT_EQ(Wires.ClockCount(), clocks);
}

} // namespace
} // namespace vorel::test
