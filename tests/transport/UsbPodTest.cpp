#include "transport/Manage_UsbJtag.h"

#include "transport/FakeUsb.h"
#include "transport/TrafficRecording.h"

#include <gmock/gmock.h>

namespace vorel {
namespace {

using testing::ElementsAre;
using TReply = TFakeUsb::TReply;

std::string Amd() {
    return "AuthenticAMD";
}
std::string Other() {
    return "GenuineIntel";
}

struct UsbPod : testing::Test {
    TFakeUsb Usb;
    TUsbJtagManager Manager{Usb, &Other};
    TUsbPort& Port = Manager.GetPort(0);

    void Clocks(const std::string& tms, const std::string& tdi, bool select = false) {
        for (std::size_t i = 0; i < tms.size(); ++i) {
            Port.Clock(select, tms[i] == '1', tdi[i] == '1', true);
        }
    }
    // The answer comes in two pieces, the first one odd.
    std::string ReadBack(const std::string& answer) {
        const auto rest = static_cast<std::uint32_t>(answer.size() - 1);
        Usb.Reads = {{0, 1, answer.substr(0, 1)}, {0, rest, answer.substr(1)}};
        std::string text = "old";
        EXPECT_TRUE(Port.EndRead(text));
        return text;
    }
    std::vector<std::string> FlushedWrites() {
        EXPECT_TRUE(Port.Flush());
        return Usb.TakeWrites();
    }
};

TEST_F(UsbPod, ScanCountsPodsUntilADeviceCannotBeOpened) {
    struct Case {
        std::vector<TFakeUsb::TDevice> Devices;
        int Count;
    };
    const TFakeUsb::TDevice pod;
    const Case cases[] = {
        {{}, 0},
        {{pod, {0x1B8C, 0x0200}, pod}, 3},
        {{{0x1B8C, 0x0300}, pod, {0x1B8D, 0x0100}}, 1},
        {{pod, {0x1B8C, 0x0100, u"", UsbError::AccessDenied}, pod}, 1},
    };
    for (const Case& c : cases) {
        Usb.Devices = c.Devices;
        EXPECT_EQ(Manager.CountPods(), c.Count);
        Usb.Log.clear();
    }
    Usb.FailingControl = UsbControl::GetDescriptor;
    EXPECT_EQ(Manager.CountPods(), 0);
    EXPECT_THAT(Usb.Log, ElementsAre("open path-0", "control 108: ",
                                     "control 6: 00 00 00 00 01 00 00 00", "close", "open path-1"))
        << "a pod that does not tell its descriptor is passed over";
    Usb.HasList = false;
    EXPECT_EQ(Manager.CountPods(), 0);
    Usb.HasList = true;
    Manager.SetEnabled(false);
    EXPECT_EQ(Manager.CountPods(), 0);
}

TEST_F(UsbPod, OnePodIsOpenAtATimeAndEachTransferBinds) {
    Usb.Devices.resize(2);
    ASSERT_EQ(Manager.CountPods(), 2);
    Usb.Log.clear();
    EXPECT_EQ(&Manager.GetPort(0), &Port);
    EXPECT_TRUE(Port.Flush());
    EXPECT_TRUE(Port.Flush());
    EXPECT_TRUE(Manager.GetPort(1).Flush());
    Usb.Log.erase(
        std::remove_if(Usb.Log.begin(), Usb.Log.end(),
                       [](const auto& line) { return line.rfind("control 36:", 0) == 0; }),
        Usb.Log.end());
    EXPECT_THAT(Usb.Log,
                ElementsAre("open path-0", "control 108: ", "control 120: 02", "write 00 10",
                            "control 124: ", "control 120: 02", "write 00 10",
                            "control 124: ", "close", "open path-1",
                            "control 108: ", "control 120: 02", "write 00 10", "control 124: "));
    Manager.Release();
    Usb.Log.clear();
    EXPECT_TRUE(Port.Flush());
    EXPECT_EQ(Usb.Log[0], "open \\\\.\\USBIO_Device0") << "without a list by number";
}

TEST_F(UsbPod, ItemsGoOutOperandFirst) {
    EXPECT_THAT(FlushedWrites(), ElementsAre("00 10")) << "an empty flush says so";
    Port.SetTimingA(0x104);
    Port.SetTimingA(0x104);
    Port.SetTimingB(0);
    Port.SetTimingB(7);
    Port.SetTimingD(8);
    Port.SetPodMode(1);
    Port.SetPodMode(1);
    Port.SetTms(true);
    Port.Delay(9);
    Port.Clock(false, true, true, false);
    Port.Clock(true, true, false, false);
    EXPECT_THAT(FlushedWrites(),
                ElementsAre("04 41 07 42 08 44 01 55 01 55 01 51 09 20 01 71 00 79 00 10"));
    EXPECT_EQ(Port.GetTimingA(), 0x104U);
    EXPECT_EQ(Port.GetPodMode(), 1U);
    EXPECT_EQ(Manager.GetTraffic().Writes, 2U);
    EXPECT_EQ(Manager.GetTraffic().BytesWritten, 22U);
    EXPECT_EQ(Manager.GetTraffic().Reads, 0U);
}

TEST_F(UsbPod, SessionsNest) {
    EXPECT_TRUE(Port.BeginSession());
    EXPECT_TRUE(Port.BeginSession());
    EXPECT_TRUE(Port.EndSession());
    EXPECT_THAT(Usb.TakeWrites(), ElementsAre("01 50 00 10", "00 10", "00 10"));
    EXPECT_TRUE(Port.EndSession());
    EXPECT_THAT(Usb.TakeWrites(), ElementsAre("00 50 00 10"));
}

TEST_F(UsbPod, ClocksArePackedWhileTheirFlagsStay) {
    Clocks("11001", "10101");
    EXPECT_THAT(FlushedWrites(), ElementsAre("1B 64 03 61 00 10"));
    Clocks("00", "11");
    Clocks("00", "11", true);
    Port.SetTms(false);
    Clocks("1", "0", true);
    Port.BeginRead();
    Clocks("10", "01", true);
    EXPECT_EQ(ReadBack({'\xFF', '\x80'}), "10");
    EXPECT_THAT(Usb.TakeWrites(), ElementsAre("05 62 05 6A 00 51 02 69 06 EA 00 10"));
}

TEST_F(UsbPod, AFullBatchGoesByItself) {
    for (int i = 0; i < 254 * 4; ++i) {
        Port.Clock(false, false, true, true);
    }
    EXPECT_EQ(Manager.GetTraffic().Writes, 0U);
    Port.Clock(false, true, false, true);
    const std::vector<std::string> writes = Usb.TakeWrites();
    ASSERT_EQ(writes.size(), 1U);
    EXPECT_EQ(writes[0].size(), 512U * 3 - 1);
    EXPECT_EQ(writes[0].substr(std::size_t{506} * 3), "55 64 02 61 00 10");
}

TEST_F(UsbPod, AnswersBecomeTextWithTheFirstBitRightmost) {
    Port.BeginRead();
    Clocks("000", "000");
    EXPECT_EQ(ReadBack({'\x00', '\xA0'}), "101");
    Port.BeginRead();
    Clocks("00000", "00000");
    Port.SetTms(true);
    Port.Clock(false, false, true, false);
    EXPECT_EQ(ReadBack({'\x00', '\x70', '\x00', '\x7F', '\x00', '\x80'}), "100111");
    EXPECT_EQ(Manager.GetTraffic().Reads, 4U);
    EXPECT_EQ(Manager.GetTraffic().BytesRead, 8U);
    EXPECT_THAT(Usb.TakeWrites().back(), "00 E4 00 E1 01 51 01 F1 00 10");
    std::string identity;
    Usb.Reads = {{0, 2, "10"}};
    EXPECT_TRUE(Port.ReadIdentity(identity));
    EXPECT_EQ(identity, "10");
    EXPECT_THAT(Usb.TakeWrites(), ElementsAre("00 00 00 10"));
    Usb.Reads = {{0, 2, "10"}, {0, 2, "11"}};
    EXPECT_FALSE(Port.IsReady());
    EXPECT_TRUE(Port.IsReady());
}

TEST_F(UsbPod, AWriteIsTriedFourTimesOverAllItsPieces) {
    const TReply fault{31, 0};
    const TReply half{0, 2};
    Port.SetTms(true);
    Usb.Writes = {fault, half, fault, {0, 0}};
    EXPECT_THAT(FlushedWrites(),
                ElementsAre("01 51 00 10", "01 51 00 10", "00 10", "00 10", "00 10"));
    EXPECT_EQ(Port.LastStatus(), StatusOk);

    Port.SetTms(true);
    Usb.Writes = {fault, half, fault, fault, fault};
    EXPECT_FALSE(Port.Flush());
    EXPECT_EQ(Port.LastStatus(), StatusFromOsError(31));
    EXPECT_EQ(Usb.TakeWrites().size(), 5U);
    EXPECT_THAT(FlushedWrites(), ElementsAre("00 10")) << "the batch was dropped";
}

TEST_F(UsbPod, AReadFailureKeepsThePlaceOfTheNextItem) {
    const TReply fault{UsbError::TimedOut, 0};
    Port.BeginRead();
    Clocks("0", "1");
    Usb.Reads = {fault, fault, fault, fault};
    std::string text = "old";
    EXPECT_FALSE(Port.EndRead(text));
    EXPECT_EQ(text, "");
    EXPECT_EQ(Port.LastStatus(), StatusFromOsError(UsbError::TimedOut));
    EXPECT_EQ(Manager.GetTraffic().Reads, 4U);
    Usb.TakeWrites();

    // Three items are laid behind the two old ones; the first six bytes go. None of the new ones
    // asks for an answer, so none is read, and the clean-up puts things right.
    Port.SetTms(true);
    Port.SetTms(false);
    EXPECT_THAT(FlushedWrites(), ElementsAre("01 E1 00 10 01 51"));
    EXPECT_THAT(FlushedWrites(), ElementsAre("00 10"));
}

TEST_F(UsbPod, APodThatNeverAnswersHarmsNothing) {
    const TReply hostile[] = {{31, 0}, {0, 0}, {0, 0xFFFFFFFF, std::string(512, '\xFF')}};
    std::string text;
    for (int round = 0; round < 3; ++round) {
        for (const TReply& reply : hostile) {
            Usb.DefaultRead = reply;
            Port.BeginRead();
            for (int i = 0; i < 600; ++i) {
                Port.Clock(i % 3 == 0, false, true, i % 5 != 0);
            }
            EXPECT_EQ(Port.EndRead(text), reply.Count > 0);
            Port.IsReady();
        }
    }
    Usb.DefaultRead = {};
    Usb.DefaultWrite = {0, 0};
    EXPECT_FALSE(Port.Flush()) << "a write that never moves a byte ends";
    EXPECT_EQ(Port.LastStatus(), StatusFromUsb(StatusFailed));
    Usb.DefaultWrite = {0, 0xFFFFFFFF};
    EXPECT_TRUE(Port.Flush());
    Usb.TakeWrites();
    EXPECT_THAT(FlushedWrites(), ElementsAre("00 10")) << "and a good transfer heals all";
}

TEST_F(UsbPod, AVanishedPodFailsInWritingAndReadsAsAnswered) {
    Usb.FailingControl = UsbControl::BindPipe;
    EXPECT_FALSE(Port.Flush());
    EXPECT_EQ(Port.LastStatus(), StatusFromUsb(StatusFailed));
    char data[16];
    std::uint32_t count = sizeof data;
    EXPECT_EQ(Manager.Read(0, data, count), StatusSuccess);
    EXPECT_EQ(count, sizeof data);
    Usb.FailingControl = UsbControl::SetConfiguration;
    Manager.Release();
    EXPECT_EQ(Manager.Write(0, data, count), StatusFailed);
    EXPECT_EQ(Usb.Log.back(), "close") << "a pod that cannot be configured is closed";
    EXPECT_EQ(Manager.GetTraffic().Writes, 0U);
}

TEST_F(UsbPod, TextsAreCutOnOneMakersProcessorsOnly) {
    EXPECT_EQ(Port.ProductName(), u"Vorel Pod-2.1 \u20AC");
    EXPECT_EQ(Port.SerialNumber(), u"47.11 B");
    TUsbJtagManager cutting(Usb, &Amd);
    EXPECT_EQ(cutting.ProductName(0), u"Vorel Pod-2.1 ");
    EXPECT_EQ(cutting.SerialNumber(0), u"47.11");
    Usb.Devices[0].Name = u"\u4141\u4242!";
    EXPECT_EQ(cutting.ProductName(0), u"\u4141\u4242") << "only the low byte is judged";
    Usb.Devices[0].Name = WideText(300, u'x');
    EXPECT_EQ(cutting.ProductName(0), WideText(127, u'x'));
    Usb.FailingControl = UsbControl::GetDescriptor;
    EXPECT_EQ(Port.ProductName(), u"");
}

TEST_F(UsbPod, TellsTheRecorderClocksAndTheBitsReadWithThem) {
    TTrafficRecording recording("x", "");
    TJTagAnalyserAdaptor adaptor;
    adaptor.Form = &recording;
    Manager.SetAnalyser(&adaptor);
    Port.SetTms(true);
    Port.BeginRead();
    Clocks("010", "110", true);
    EXPECT_EQ(ReadBack(std::string("\0\x60", 2)), "011");
    Port.BeginRead();
    Port.Clock(true, false, true, false);
    EXPECT_EQ(ReadBack(std::string("\0\x80", 2)), "1");
    Port.BeginRead(); // an identity is no TDO
    EXPECT_EQ(ReadBack("11"), "");
    Port.ClockBits(false, "01", 2);
    EXPECT_THAT(recording.TextRecorder().Lines(),
                ElementsAre("0: Mode:0 TMS:1 TDI:0 TCK:0", "1: Mode:1 TMS:0 TDI:1 TCK:Tick ->IDLE",
                            "2: Mode:1 TMS:1 TDI:1 TCK:Tick ->DRSELECT",
                            "3: Mode:1 TMS:0 TDI:0 TCK:Tick ->DRCAPTURE",
                            "4: Mode:1 TMS:0 TDI:1 TCK:0",
                            "5: Mode:0 TMS:0 TDI:1 TCK:Tick ->DRSHIFT",
                            "6: Mode:0 TMS:0 TDI:0 TCK:Tick ->DRSHIFT"));
    EXPECT_THAT(
        recording.TextRecorder().ReadLines(),
        ElementsAre("0: -", "1: Read TDO:1", "2: Read TDO:1", "3: Read TDO:0", "4: Read TDO:1"));
    EXPECT_EQ(recording.TextRecorder().Totals().BytesIn, 4);
    EXPECT_GT(recording.TextRecorder().Totals().BytesOut, 4);
}

} // namespace
} // namespace vorel
