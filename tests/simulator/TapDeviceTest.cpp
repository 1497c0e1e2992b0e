#include "TapDriver.h"
#include "simulator/Chain.h"
#include "support/Errors.h"

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <vector>

namespace vorel::sim {
namespace {

// The diagram once more, as the standard draws it: per state its name and the
// states that follow with TMS 0 and TMS 1.
struct Bubble {
    const char* Name;
    const char* Zero;
    const char* One;
};
constexpr std::array<Bubble, 16> Diagram{{
    {"Test-Logic-Reset", "Run-Test/Idle", "Test-Logic-Reset"},
    {"Run-Test/Idle", "Run-Test/Idle", "Select-DR-Scan"},
    {"Select-DR-Scan", "Capture-DR", "Select-IR-Scan"},
    {"Capture-DR", "Shift-DR", "Exit1-DR"},
    {"Shift-DR", "Shift-DR", "Exit1-DR"},
    {"Exit1-DR", "Pause-DR", "Update-DR"},
    {"Pause-DR", "Pause-DR", "Exit2-DR"},
    {"Exit2-DR", "Shift-DR", "Update-DR"},
    {"Update-DR", "Run-Test/Idle", "Select-DR-Scan"},
    {"Select-IR-Scan", "Capture-IR", "Test-Logic-Reset"},
    {"Capture-IR", "Shift-IR", "Exit1-IR"},
    {"Shift-IR", "Shift-IR", "Exit1-IR"},
    {"Exit1-IR", "Pause-IR", "Update-IR"},
    {"Pause-IR", "Pause-IR", "Exit2-IR"},
    {"Exit2-IR", "Shift-IR", "Update-IR"},
    {"Update-IR", "Run-Test/Idle", "Select-DR-Scan"},
}};

// A TMS path from Test-Logic-Reset to each state, found in the table above.
std::map<std::string, std::string> PathsFromReset() {
    std::map<std::string, std::string> paths{{"Test-Logic-Reset", ""}};
    for (std::size_t round = 0; round < Diagram.size(); ++round) {
        for (const Bubble& bubble : Diagram) {
            if (paths.contains(bubble.Name)) {
                paths.try_emplace(bubble.Zero, paths[bubble.Name] + "0");
                paths.try_emplace(bubble.One, paths[bubble.Name] + "1");
            }
        }
    }
    return paths;
}

void Clock(TTapDevice& tap, bool tms, bool tdi = true) {
    tap.Rise(tms, tdi);
    tap.Fall();
}

TEST(TapDevice, FollowsTheStateDiagram) {
    const auto paths = PathsFromReset();
    ASSERT_EQ(paths.size(), 16U);
    for (const Bubble& bubble : Diagram) {
        for (const bool tms : {false, true}) {
            TTapDevice tap(Part(0x1));
            for (const char level : paths.at(bubble.Name)) {
                Clock(tap, level == '1');
            }
            Clock(tap, tms);
            const std::string next = tms ? bubble.One : bubble.Zero;
            EXPECT_EQ(Diagram[static_cast<std::size_t>(tap.State())].Name, next) << bubble.Name;
            EXPECT_EQ(tap.Tdo() != Level::Released, next.starts_with("Shift")) << next;
            for (int i = 0; i < 5; ++i) {
                Clock(tap, true);
            }
            EXPECT_EQ(tap.State(), TapState::TestLogicReset) << bubble.Name;
        }
    }
}

TEST(TapDevice, SamplesAtTheRisingEdgeAndDrivesAtTheFallingEdge) {
    TTapDevice tap(Part(0x3));
    for (const char level : std::string("010")) {
        Clock(tap, level == '1');
    }
    ASSERT_EQ(tap.State(), TapState::CaptureDr);
    tap.Rise(false, true);
    EXPECT_EQ(tap.Tdo(), Level::Released) << "TDO is not driven before the falling edge";
    tap.Fall();
    EXPECT_EQ(tap.Tdo(), Level::High);
    tap.Rise(false, false);
    tap.Fall();
    EXPECT_EQ(tap.Tdo(), Level::High);
    tap.Rise(false, false);
    EXPECT_EQ(tap.Tdo(), Level::High) << "the second bit stays until TCK falls";
    tap.Fall();
    EXPECT_EQ(tap.Tdo(), Level::Low);
    EXPECT_EQ(tap.ClockCount(), 6U);
}

// A device with a 5-bit register of its own at instruction 1010.
class PortDevice : public TTapDevice {
public:
    PortDevice() : TTapDevice(Part(0x1)) {}
    int ResetCalls = 0;
    int IdleClocks = 0;
    class TPort : public TWordRegister {
    public:
        TPort() : TWordRegister(5) {}
        void Capture() override { Load(Held + 1); }
        void Update() override { Held = Value(); }
        std::uint64_t Held = 6;
    } Port;

protected:
    TDataRegister& SelectRegister(const BitText& instruction) override {
        return instruction == "1010" ? Port : TTapDevice::SelectRegister(instruction);
    }
    BitText CaptureInstruction() override { return ResetCalls > 0 ? "1001" : "0101"; }
    void OnReset() override { ++ResetCalls; }
    void OnRunTestIdle() override { ++IdleClocks; }
};

TEST(TapDevice, LetsADerivedDeviceAddRegisters) {
    TChain chain;
    auto& tap = static_cast<PortDevice&>(chain.Add(std::make_unique<PortDevice>()));
    TapDriver driver(chain);
    driver.Tms("0");
    EXPECT_EQ(driver.Ir("1010"), "0101");
    EXPECT_EQ(driver.Dr("10110"), "00111");
    EXPECT_EQ(tap.Port.Held, 22U);
    driver.Tms("101"); // through Capture-DR, past Shift-DR
    EXPECT_EQ(tap.Port.Held, 22U) << "nothing is updated before Update-DR";
    driver.Tms("10");
    EXPECT_EQ(tap.Port.Held, 23U);
    driver.Ir("0110");
    EXPECT_EQ(driver.Dr("1101"), "1010") << "an unknown instruction is BYPASS";
    tap.IdleClocks = 0;
    driver.Tms("000");
    EXPECT_EQ(tap.IdleClocks, 3);
    driver.ResetToIdle();
    EXPECT_EQ(tap.ResetCalls, 1);
    EXPECT_EQ(tap.ResetCount(), 1U);
    EXPECT_EQ(driver.Ir("1111"), "1001");
}

TEST(TapDevice, SelectsIdcodeOrBypassAfterReset) {
    struct Case {
        TapSettings Settings;
        BitText Capture;     // what Capture-IR gives
        BitText Instruction; // after reset
        BitText Dr;          // 40 bits after reset, ones behind
    };
    const BitText id = TapDriver::Bits(0x1140D093, 32);
    for (const Case& c :
         {Case{Part(0x1140D093, 6), "000001", "000001", "11111111" + id},
          {Part(std::nullopt, 6), "000001", "111111", BitText(39, '1') + "0"},
          {{"c", 0x1140D093, 5, "11001", "10110"}, "11001", "10110", "11111111" + id},
          {Part(0x1140D093, 1), "1", "0", "11111111" + id},
          {Part(std::nullopt, 70), BitText(69, '0') + "1", BitText(70, '1'),
           BitText(39, '1') + "0"}}) {
        TChain chain;
        const TTapDevice& tap = chain.Add(std::make_unique<TTapDevice>(c.Settings));
        TapDriver driver(chain);
        driver.Tms("0");
        EXPECT_EQ(tap.Instruction(), c.Instruction);
        EXPECT_EQ(driver.Dr(BitText(40, '1')), c.Dr);
        EXPECT_EQ(driver.Ir(BitText(c.Capture.size(), '1')), c.Capture);
        EXPECT_EQ(driver.Dr("1101"), "1010");
        EXPECT_EQ(tap.Instruction(), BitText(c.Capture.size(), '1'));
        driver.ResetToIdle();
        EXPECT_EQ(tap.Instruction(), c.Instruction);
        EXPECT_EQ(driver.Dr(BitText(40, '1')), c.Dr);
        driver.Ir(BitText(c.Capture.size(), '1'));
        chain.SetTrst(true);
        EXPECT_EQ(tap.State(), TapState::TestLogicReset);
        EXPECT_EQ(tap.Instruction(), c.Instruction);
    }
}

TEST(TapDevice, RefusesSettingsThatNoDeviceHas) {
    for (const TapSettings& settings : {Part(1, 0),
                                        Part(1, TTapDevice::MaxIrLength + 1),
                                        {"x", 1, 4, "0010", {}},
                                        {"x", 1, 4, "001", {}},
                                        {"x", 1, 4, "0x01", {}},
                                        {"x", 1, 4, {}, "11"}}) {
        EXPECT_THROW(TTapDevice{settings}, EVorelError);
    }
}

} // namespace
} // namespace vorel::sim
