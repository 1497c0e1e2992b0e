// Soft devices whose driver or channel fails where several calls hang together: making a device,
// brackets around work on a stopped processor, block reads, breakpoints, the register port. What
// the plain forwards do with a failure is checked with their table.
#include "DeviceRig.h"
#include "core/MemorySpace.h"
#include "core/VorelDevice.h"
#include "vorel/DriverBase.h"

namespace vorel::test {
namespace {

constexpr Status Failure = StatusFromOsError(31);

class DriverFaults : public TDeviceTest {
protected:
    // The status and the calls of one operation: "ok: d101 d102".
    template<class Operation>
    std::string Told(Operation operation) {
        TakeCalls();
        const Status status = operation();
        const char* const text = status == StatusOk ? "ok:" : status == Failure ? "failed:" : "?:";
        const std::string calls = TakeCalls();
        return text + (calls.empty() ? calls : " " + calls);
    }
};

TEST_F(DriverFaults, ADeviceIsNotMadeHalf) {
    for (const int entry : {50, 67, 79}) {
        Driver.FailAt(entry, Failure);
        try {
            TVorelDevice device(Host, Dialogs, Driver.Get());
            ADD_FAILURE() << entry;
        } catch (const EVorelError& error) {
            EXPECT_EQ(error.GetStatus(), Failure) << entry;
        }
    }
    Driver.FailAt(48, Failure);
    TVorelDevice device(Host, Dialogs, Driver.Get());
    EXPECT_THROW(device.GetKind(), EVorelError);
    Driver.FailNowhere();
    EXPECT_EQ(device.GetKind(), u"Unknown");
}

TEST_F(DriverFaults, AHaltThatFailsCountsAndIsEndedWithoutLettingTheProcessorRun) {
    TVorelDevice device(Host, Dialogs, Driver.Get());
    const auto begin = [&] { return Told([&] { return device.BeginHalt(); }); };
    const auto end = [&] { return Told([&] { return device.EndHalt(); }); };
    const auto both = [](const auto& first, const auto& second) {
        const std::string told = first();
        return told + " " + second();
    };
    EXPECT_EQ(both(begin, end), "ok: d101 d102 d98 ok: d99") << "a processor that runs";

    Driver.FailAt(101, Failure);
    EXPECT_EQ(begin(), "failed: d101");
    EXPECT_EQ(begin(), "ok:") << "the halt is open all the same";
    EXPECT_EQ(both(end, end), "ok: ok:") << "nobody stopped the processor";
    Driver.FailAt(102, Failure);
    EXPECT_EQ(both(begin, end), "failed: d101 d102 ok:");
    Driver.FailAt(98, Failure);
    EXPECT_EQ(both(begin, end), "failed: d101 d102 d98 ok: d99");

    Driver.FailAt(99, Failure);
    EXPECT_EQ(both(begin, end), "ok: d101 d102 d98 failed: d99");
    Driver.FailNowhere();
    EXPECT_EQ(both(end, end), "ok: d99 ok:") << "the halt waited for an end that works";
}

TEST_F(DriverFaults, ABlockReadThatFailsLeavesHaltAndLockForItsCaller) {
    TVorelDevice device(Host, Dialogs, Driver.Get());
    TMemorySpace space(0, device);
    const auto read = [&] { return Told([&] { return space.ReadBlock(nullptr, 0, 0); }); };
    const auto write = [&] { return Told([&] { return space.WriteBlock(nullptr, 0, 0); }); };
    const auto begin = [&] { return Told([&] { return device.BeginHalt(); }); };
    EXPECT_EQ(read(), "ok: d81") << "no channel and no halt";
    ASSERT_EQ(device.SetChannel(Channel.Get()), StatusOk);
    ASSERT_EQ(begin(), "ok: d101 d102 d98");
    EXPECT_EQ(write(), "ok: c3 d82 c4");
    Channel.FailAt(3, Failure);
    EXPECT_EQ(read(), "failed: c3") << "a chain that does not open is not read";
    Channel.FailNowhere();
    Driver.FailAt(81, Failure);
    EXPECT_EQ(read(), "failed: c3 d81");
    Driver.FailAt(99, Failure);
    EXPECT_EQ(read(), "failed: c3 d81 d99") << "the processor that cannot go on is told as well";
    Driver.FailNowhere();
    EXPECT_EQ(read(), "ok: c3 d81 d99 c4") << "the halt was still open";
    EXPECT_EQ(Told([&] { return device.EndHalt(); }), "ok:") << "the read has ended it";
    Channel.FailAt(4, Failure);
    EXPECT_EQ(read(), "failed: c3 d81 c4");
}

// The driver's breakpoints: every call is recorded, and each list holds what the test says.
class TBreakpointDriver : public TDriverBase {
public:
    Status QueryInterface(const Guid& id, void*& object) noexcept override {
        object = id == IVorelBreakpoints::Id ? List.Get() : nullptr;
        return object != nullptr ? StatusOk : StatusNoInterface;
    }

    TTableDouble<IVorelBreakpoints> List{"b"};
};

TTableDouble<IVorelBreakpoint>& TheBreakpoint() {
    static TTableDouble<IVorelBreakpoint> breakpoint("p");
    return breakpoint;
}

constexpr std::int64_t Far = 1LL << 40;

TEST_F(DriverFaults, BreakpointsTellOfEachStepThatFails) {
    using B = IVorelBreakpoints;
    TBreakpointDriver driver;
    TVorelDevice device(Host, Dialogs, &driver);
    IVorelBreakpoint* item = nullptr;
    Bool32 removed = True32;
    const auto failing = [&](int entry, const auto& operation) {
        driver.List.FailAt(entry, Failure);
        std::string told = Told(operation);
        driver.List.FailNowhere();
        return told;
    };
    const auto add = [&] { return device.AddBreakpoint(0, Far, item); };
    const auto find = [&] { return device.FindBreakpoint(0, Far, item); };
    const auto remove = [&] { return device.RemoveBreakpoint(0, Far, removed); };
    const auto clear = [&] { return device.RemoveAllBreakpoints(); };

    EXPECT_EQ(failing(7, add), "failed: b7");
    EXPECT_EQ(failing(31, add), "failed: b7 b31");
    EXPECT_EQ(Told(add), "ok: b7 b31");
    EXPECT_EQ(Host.Boxes, "") << "the hardware has no breakpoints, or nobody knows";
    driver.List.Replace(
        &B::HardwareLimit, +[](B*, std::int32_t& limit) -> Status { return limit = 4, StatusOk; });
    EXPECT_EQ(Told(add), "ok: b7");
    EXPECT_EQ(item, nullptr);
    EXPECT_EQ(Host.Boxes,
              "2Error|A request for a hardware breakpoint could not be satisfied!\r\n\r\nEither "
              "the underlying hardware has no support for hardware breakpoints or you need to free "
              "up an existing hardware breakpoint.\r\n");
    std::int32_t count = 77;
    EXPECT_EQ(failing(21, [&] { return device.GetBreakpointCount(count); }), "failed: b21");
    EXPECT_EQ(count, 0);

    driver.List.Replace(
        &B::Add, +[](B*, std::int32_t, std::int64_t, IVorelBreakpoint*& added) -> Status {
            return added = TheBreakpoint().Get(), StatusOk;
        });
    TheBreakpoint().FailAt(10, Failure);
    EXPECT_EQ(Told(add), "failed: p10");
    EXPECT_EQ(item, nullptr);
    TheBreakpoint().FailNowhere();
    EXPECT_EQ(Told(add), "ok: p10");
    EXPECT_EQ(item, TheBreakpoint().Get());

    EXPECT_EQ(failing(19, find), "failed: b19");
    EXPECT_EQ(failing(19, remove), "failed: b19");
    EXPECT_EQ(failing(21, clear), "failed: b21");
    EXPECT_EQ(failing(22, clear), "failed: b21 b22");
    driver.List.Replace(
        &B::Find, +[](B*, std::int32_t, std::int64_t address, IVorelBreakpoint*& found) -> Status {
            return found = address == Far ? TheBreakpoint().Get() : nullptr, StatusOk;
        });
    EXPECT_EQ(Told(find), "ok:");
    EXPECT_EQ(item, TheBreakpoint().Get());
    EXPECT_EQ(failing(9, remove), "failed: b9");
    EXPECT_EQ(removed, False32);
    EXPECT_EQ(Told(remove), "ok: b9");
    EXPECT_EQ(removed, True32);
    driver.List.Replace(
        &B::CountB, +[](B*, std::int32_t& items) -> Status { return items = 2, StatusOk; });
    EXPECT_EQ(failing(24, clear), "failed: b21 b24");
    EXPECT_EQ(Told(clear), "ok: b21 b24 b24");
}

TEST_F(DriverFaults, TheRegisterPortIsUnlockedWhereverTheChainFails) {
    Channel.Replace(
        &IJTagChannel::GetDeviceCount,
        +[](IJTagChannel*, std::int32_t& count) -> Status { return count = 1, StatusOk; });
    TVorelDevice device(Host, Dialogs, nullptr);
    ASSERT_EQ(device.SetChannel(Channel.Get()), StatusOk);
    ASSERT_EQ(device.SetChainIndex(0), StatusOk);
    std::uint32_t value = 77;
    BitText bits = "???";
    const struct {
        std::function<Status()> Access;
        const char* Calls; // of a whole access; the TAP moves four times
    } accesses[] = {
        {[&] { return device.ReadRegisterNumber(1, 8, value); }, "c3 c31 c35 c18 c35 c35 c19 c35"},
        {[&] { return device.WriteRegisterNumber(1, 8, 9); }, "c3 c31 c35 c18 c35 c35 c18 c35"},
        {[&] { return device.ReadRegisterText(1, 8, bits); }, "c3 c31 c35 c18 c35 c35 c21 c35"},
        {[&] { return device.WriteRegisterText(1, "01"); }, "c3 c31 c35 c18 c35 c35 c20 c35"},
    };
    for (const auto& [access, calls] : accesses) {
        const std::string whole = calls;
        EXPECT_EQ(Told(access), "ok: " + whole + " c4");
        for (const int entry : {31, 35, 18, std::stoi(whole.substr(24))}) {
            const std::string call = "c" + std::to_string(entry);
            Channel.FailAt(entry, Failure);
            EXPECT_EQ(Told(access),
                      "failed: " + whole.substr(0, whole.find(call) + call.size()) + " c4");
        }
        Channel.FailAt(3, Failure);
        EXPECT_EQ(Told(access), "failed: c3");
        Channel.FailAt(4, Failure);
        EXPECT_EQ(Told(access), "failed: " + whole + " c4");
        Channel.FailNowhere();
    }
    EXPECT_EQ(value, 0U);
    EXPECT_EQ(bits, "");
}

} // namespace
} // namespace vorel::test
