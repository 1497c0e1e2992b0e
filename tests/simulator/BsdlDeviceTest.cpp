#include "simulator/BsdlDevice.h"
#include "TapDriver.h"
#include "bsdl/BSDLFile.h"
#include "simulator/Scene.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <map>

namespace vorel::sim {
namespace {

constexpr const char* Folder = VOREL_SOURCE_DIR "/tests/data/bsdl/";

// One device made from a file, on a chain of its own.
struct TOnChain {
    explicit TOnChain(const std::string& name) {
        const TBSDLFile file = ReadBsdlFile(Folder + name);
        EXPECT_FALSE(file.HadErrors()) << file.DescribeError();
        auto device = std::make_unique<TBsdlDevice>(*file.Entity,
                                                    TBsdlDevice::SettingsOf(*file.Entity, "part"));
        Device = device.get();
        Chain.Add(std::move(device));
        Driver.ResetToIdle();
    }
    // The data register that an instruction selects, as captured, with `bits` sent in.
    BitText Scan(const BitText& instruction, const BitText& bits) {
        Driver.Ir(instruction);
        return Driver.Dr(bits);
    }

    TChain Chain;
    TapDriver Driver{Chain};
    TBsdlDevice* Device = nullptr;
};

TEST(BsdlDevice, IsTheTapOfItsDescription) {
    TOnChain latch("latch.bsd");
    EXPECT_EQ(latch.Driver.Dr(BitText(32, '0')), TapDriver::Bits(0x01234093, 32));
    EXPECT_EQ(latch.Driver.Ir("1111"), "0001");
    TOnChain port("port.bsd");
    EXPECT_EQ(port.Driver.Ir("00000111"), "01010101");
    EXPECT_EQ(port.Driver.Dr(BitText(32, '0')), TapDriver::Bits(0x00AAF0CC, 32));
    EXPECT_EQ(port.Scan("00000110", BitText(32, '0')), TapDriver::Bits(0x34321093, 32));

    // By instruction the length of the register that it selects.
    for (const auto& [instruction, length] :
         std::map<std::string, std::size_t>{{"1111", 1}, // BYPASS
                                            {"0111", 1}, // a register without length
                                            {"0101", 1}, // HIGHZ
                                            {"1110", 1}, // in no list
                                            {"0110", 5}, // a register of its own
                                            {"0010", 8}, // SAMPLE
                                            {"1000", 8}, // its second code
                                            {"1010", 8}}) {
        TOnChain device("latch.bsd");
        device.Scan(instruction, BitText(12, '0'));
        BitText late(12, '0');
        late[11 - length] = '1';
        EXPECT_EQ(device.Driver.Dr("000000000001"), late) << instruction;
    }
    EXPECT_EQ(latch.Scan("1001", BitText(32, '0')), TapDriver::Bits(0x01234093, 32)) << "X001";
}

TEST(BsdlDevice, CapturesLevelsOfPinsAndDrivesThem) {
    TOnChain latch("latch.bsd");
    TBsdlDevice& device = *latch.Device;
    device.SetPin("d", true);
    device.SetPin("3", true);
    device.SetPin("B2", PinInput::Flip); // the port A1; "A1" is the number of TDO
    device.SetPin("Q", true);
    EXPECT_THROW(device.SetPin("VCC", true), EVorelError);
    EXPECT_THROW(device.SetPin("A2", true), EVorelError);
    // D LE OE_N control Q IO IO' A1; the control cell knows a reset
    EXPECT_EQ(latch.Scan("0010", "00101101"), "10111000");
    EXPECT_EQ(device.PinDriven("Q"), Level::Released) << "SAMPLE only preloads";
    latch.Driver.Ir("0000");
    EXPECT_EQ(device.PinDriven("4"), Level::High);
    EXPECT_EQ(device.PinDriven("IO"), Level::Low);
    EXPECT_EQ(device.PinDriven("D"), Level::Released);
    EXPECT_EQ(latch.Driver.Dr("00010010"), "10101001") << "output cells give what they drive";
    EXPECT_EQ(device.PinDriven("Q"), Level::Released) << "disabled by the control cell";
    EXPECT_EQ(latch.Driver.Dr("00000010"), "10110010") << "A1 flips";
    EXPECT_EQ(device.PinDriven("IO"), Level::High);
    EXPECT_EQ(latch.Driver.Dr("00000010"), "10100111") << "the input cell sees the driven pin";
    latch.Driver.Ir("0100");
    EXPECT_EQ(device.PinDriven("IO"), Level::High) << "CLAMP";
    latch.Driver.Ir("0101");
    EXPECT_EQ(device.PinDriven("IO"), Level::Released) << "HIGHZ";
    latch.Driver.ResetToIdle();
    latch.Driver.Ir("0000");
    EXPECT_EQ(device.PinDriven("IO"), Level::Released) << "the control cell was reset";
}

TEST(BsdlDevice, BidirectionalCellsSeeTheirPin) {
    TOnChain port("port.bsd");
    port.Device->SetPin("P1", true);
    port.Device->SetPin("MODE", true);
    EXPECT_EQ(port.Scan("00000101", "010001"), "100100");
    port.Driver.Ir("00000000");
    EXPECT_EQ(port.Device->PinDriven("P0"), Level::Released);
    port.Driver.Dr("010010");
    EXPECT_EQ(port.Device->PinDriven("P0"), Level::Low);
    EXPECT_EQ(port.Device->PinDriven("P2"), Level::Released);
    EXPECT_EQ(port.Driver.Dr("000000"), "100110");
}

TEST(BsdlScene, MakesDevicesFromFiles) {
    const std::string head = "[pod]\n[hard]\ndevice = ";
    const auto parse = [&](const std::string& line) {
        return TScene::Parse(head + line, std::string(Folder) + "a.ini");
    };
    const TScene scene = parse("L bsdl=latch.bsd id=F1234093 capture=1101 pin.D=1 pin.b2=flip x2");
    const auto target = scene.Pods.at(0).CreateTarget();
    TapDriver driver(target->HardChain());
    driver.ResetToIdle();
    EXPECT_EQ(driver.Dr(BitText(64, '0')),
              TapDriver::Bits(0xF1234093, 32) + TapDriver::Bits(0xF1234093, 32));
    EXPECT_EQ(driver.Ir("00100010"), "11011101");
    EXPECT_EQ(driver.Dr(BitText(16, '0')), "1001000010010000");
    EXPECT_EQ(driver.Dr(BitText(16, '0')), "1000000110000001");
    EXPECT_EQ(parse("P bsdl=port.bsd id=none").Pods[0].Hard.Devices[0].Settings.Id, std::nullopt);

    for (const auto& [line, error] : std::vector<std::pair<const char*, const char*>>{
             {"L bsdl=", "a.ini:3: the path of a BSDL file is expected behind bsdl="},
             {"L bsdl=none.bsd", "none.bsd\" cannot be read"},
             {"L bsdl=broken.bsd", "broken.bsd\" has an error in line 4, column 16: "},
             {"L bsdl=latch.bsd ir=4", "\"ir\" of a device with a BSDL file comes from the file"},
             {"L bsdl=latch.bsd BSDL=port.bsd", "\"bsdl\" is given twice"},
             {"L bsdl=latch.bsd pin.D=1 pin.d=0", "\"pin.d\" is given twice"},
             {"L bsdl=latch.bsd pin.D=2", "0, 1 or flip is expected for pin \"d\", not \"2\""},
             {"L bsdl=latch.bsd pin.X=1", "No boundary cell belongs to a pin \"x\""},
             {"L bsdl=latch.bsd capture=11", "capture value \"11\" of device \"L\""},
             {"L id=3 ir=4 pin.D=1", "levels on pins need a device with bsdl=PATH"},
             {"L bsdl=../../simulator/CMakeLists.txt", "has no entity in it"}}) {
        EXPECT_THAT(([&, &line = line] { parse(line); }),
                    testing::ThrowsMessage<ESceneError>(testing::HasSubstr(error)))
            << line;
    }
    EXPECT_THAT([&] { TScene::Parse("[pod]\n[board]\ndevice=L bsdl=latch.bsd", "f"); },
                testing::ThrowsMessage<ESceneError>(testing::HasSubstr("f:3: a board controller")));
}

} // namespace
} // namespace vorel::sim
