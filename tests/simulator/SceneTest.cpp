#include "simulator/Scene.h"
#include "TapDriver.h"
#include "simulator/SimUsbServices.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace vorel::sim {
namespace {

using testing::HasSubstr;

constexpr const char* Full = R"(; all that a scene can say
[pod first]
name = Pod one, the first
serial = 12.5
product = 0200
unplug = READ 7 back
[Board]
busy_reads = 3
[hard]
device = "Part A", id=1140D093, ir=6, capture=110001, idcode=111110
device = B id=none ir=5 tdo=stuck_low x3
tdo = stuck_high
[soft]
[spi]
device = flash id=EF4014
[pod]
vendor = 0403
[pod last]
[hard]
device = C id=00000001 ir=100 x9996
)";

TEST(Scene, SaysWhatStandsInFrontOfEachPod) {
    const TScene scene = TScene::Parse(Full);
    ASSERT_EQ(scene.Pods.size(), 3U);
    const auto usb = scene.CreateUsb();
    TSimPod& first = usb->Pod(0);
    EXPECT_EQ(first.Identity().ProductName, "Pod one, the first");
    EXPECT_EQ(first.Identity().SerialNumber, "12.5");
    EXPECT_EQ(first.Identity().Product, 0x0200);
    const UsbFault* const fault = first.Faults().Find(UsbTransfer::Read, 7);
    ASSERT_NE(fault, nullptr);
    EXPECT_EQ(fault->What, UsbFault::Effect::Replug);
    TTarget& target = *first.Target();
    ASSERT_EQ(target.HardChain().DeviceCount(), 4U);
    const TapSettings& part = target.HardChain().Device(0).Settings();
    EXPECT_EQ(part.Name, "Part A");
    EXPECT_EQ(part.Id, 0x1140D093U);
    EXPECT_EQ(part.IrLength, 6U);
    EXPECT_EQ(part.IrCapture, "110001");
    EXPECT_EQ(part.IdcodeInstruction, "111110");
    EXPECT_EQ(target.HardChain().Device(3).Settings().Id, std::nullopt);
    EXPECT_EQ(target.HardChain().Tdo(), Level::High);
    EXPECT_EQ(target.SoftChain().DeviceCount(), 0U);
    ASSERT_NE(target.Board(), nullptr);
    EXPECT_NE(target.Board()->SpiDevice(0), nullptr);
    TapDriver board(target.Board()->ControllerChain());
    board.ResetToIdle();
    EXPECT_EQ(board.Dr(BitText(32, '0')), TapDriver::Bits(0x1B8C0B01, 32));
    board.BoardRegister(true, 2);
    EXPECT_EQ(board.BoardRegister(false, 0), 3) << "busy";
    EXPECT_EQ(usb->Pod(1).Firmware(), nullptr);
    EXPECT_EQ(usb->Pod(2).Identity().SerialNumber, "3");
    EXPECT_EQ(usb->Pod(2).Target()->Board(), nullptr);
    EXPECT_EQ(usb->Pod(2).Target()->HardChain().DeviceCount(), 9996U);
}

TEST(Scene, NamesTheLineAndWhatIsExpected) {
    for (const auto& [text, error] : std::vector<std::pair<const char*, const char*>>{
             {"", "f.ini:1: the scene has no pod and no cable; a section [pod] or"},
             {"name = x", "f.ini:1: a section [pod] or [cable] is expected before the first"},
             {"[hard]", "f.ini:1: a section [pod] or [cable] is expected before [h"},
             {"[pod]\nnonsense", "f.ini:2: a line \"[section]\", \"key = value\" or a comment"},
             {"[pod]\n[chain]", "f.ini:2: unknown section [chain]; pod, cable, board, hard"},
             {"[pod]\n[hard]\n[HARD]", "f.ini:3: the pod or cable has a section [HARD] already"},
             {"[pod]\nspeed=1", "f.ini:2: unknown key \"speed\" in [pod]; name, serial, product"},
             {"[pod]\nunplug=write", "f.ini:2: write N, read N, write N back or read N back is"},
             {"[pod]\nunplug=write 1 x", "f.ini:2: write N, read N, write N back or read N back"},
             {"[pod]\nunplug=write 0", "f.ini:2: the number of a transfer from 1 to 1000000000"},
             {"[pod]\nname=a\nNAME=b", "f.ini:3: the key \"NAME\" is given twice"},
             {"[pod]\nname=", "f.ini:2: \"name\" has to have 1 to 126 characters"},
             {"[pod]\nproduct=10000", "f.ini:2: a USB id of 1 to 4 hexadecimal digits is expected"},
             {"[pod]\nremote=localhost", "f.ini:2: HOST:PORT is expected, not \"localhost\""},
             {"[pod]\nremote=a:0", "f.ini:2: a port from 1 to 65535 is expected, not \"0\""},
             {"[pod]\nremote=a:1\n[hard]", "f.ini:3: only a pod with neither \"remote\""},
             {"[pod]\n[spi]\ndevice=f id=1", "f.ini:3: there are SPI devices; they need"},
             {"[pod]\n[board]\n[spi]\ndevice=f", "f.ini:4: a label and id=HEX are expected"},
             {"[pod]\n[board]\ndevice=L id=1 ir=3", "f.ini:3: Board controller \"L\" needs"},
             {"[pod]\n[board]\nbusy_reads=-1", "f.ini:3: a number of reads from 0 to 1000000"},
             {"[pod]\n[hard]\nbusy_reads=1", "f.ini:3: unknown key \"busy_reads\" in [hard]"},
             {"[pod]\n[hard]\nbsdl = a.bsd", "f.ini:3: unknown key \"bsdl\" in [hard]; device or"},
             {"[cable]\n[soft]", "f.ini:2: without wires for a board the cable leads to a hard"},
             {"[cable]\nboard=x", "f.ini:2: unknown board \"x\"; PlainHardChain, ControlSig"},
             {"[cable]\nwires=tck=D1 tms=D2 tdi=D0", "f.ini:2: tck=LINE, tms=LINE, tdi=LINE and"},
             {"[cable]\nwires=tck=C4 tms=D2 tdi=D0 tdo=S4", "D0 to D7 or C0 to C3 is expected"},
             {"[cable]\nwires=tck=D1 tms=D2 tdi=D0 tdo=D4", "S0 to S7 is expected, not \"D4\""},
             {"[pod]\n[hard]\ntdo=none", "unknown fault \"none\"; open, stuck_low, stuck_high or"},
             {"[pod]\n[hard]\ndevice=", "a label is expected as the first item"},
             {"[pod]\n[hard]\ndevice=id=1 ir=4", "a label is expected as the first item"},
             {"[pod]\n[hard]\ndevice=A,,id=1", "an item is empty"},
             {"[pod]\n[hard]\ndevice=A ir=4", "device \"A\" needs id=HEX or id=none, and ir=N"},
             {"[pod]\n[hard]\ndevice=A id=3 ir=4 vhdl=a", "unknown item \"vhdl=a\" of a device"},
             {"[pod]\n[hard]\ndevice=A id=3 id=5 ir=4", "\"id\" is given twice for one device"},
             {"[pod]\n[hard]\ndevice=A id=123456789 ir=4", "an IDCODE of 1 to 8 hexadecimal"},
             {"[pod]\n[hard]\ndevice=A id= ir=4", "an IDCODE of 1 to 8 hexadecimal"},
             {"[pod]\n[hard]\ndevice=A id=2 ir=4", "the lowest bit of an IDCODE is 1"},
             {"[pod]\n[hard]\ndevice=A id=1 ir=0", "length from 1 to 1024 is expected, not \"0\""},
             {"[pod]\n[hard]\ndevice=A id=1 ir=9999999999999999999999", "from 1 to 1024"},
             {"[pod]\n[hard]\ndevice=A id=1 ir=4 capture=0010", "has to end in 01"},
             {"[pod]\n[hard]\ndevice=A id=1 ir=4 x10001", "a number of devices from 1 to 10000"},
             {"[pod]\n[hard]\ndevice=A id=1 ir=4 x0", "a number of devices from 1 to 10000"},
             {"[pod]\n[hard]\ndevice=A id=1 ir=4 x9999\ndevice=A id=1 ir=4 x2",
              "f.ini:4: a scene has at most 10000 devices"}}) {
        EXPECT_THAT([&text = text] { TScene::Parse(text, "f.ini"); },
                    testing::ThrowsMessage<ESceneError>(
                        AllOf(HasSubstr(error), testing::StartsWith("f.ini:"))))
            << text;
    }
    EXPECT_THROW(TScene::Parse(std::string(TScene::MaxTextSize + 1, ';')), ESceneError);
    EXPECT_THROW(TScene::Load("/nowhere/at all.ini"), ESceneError);
    EXPECT_THROW(TScene::Load("/"), ESceneError);
}

TEST(Scene, AllInstalledScenesLoad) {
    for (const auto& file : std::filesystem::directory_iterator(VOREL_TREE "/scenes")) {
        EXPECT_NO_THROW(TScene::Load(file.path().string())) << file.path();
    }
}

} // namespace
} // namespace vorel::sim
