// What tests of soft devices share: a host that records, and the check that every operation of an
// object forwards as it should.
#pragma once

#include "TableDouble.h"
#include "core/UserDialogs.h"
#include "support/NeutralHost.h"
#include "support/Text.h"
#include "vorel/Channel.h"
#include "vorel/DriverBase.h"

#include <gtest/gtest.h>

#include <sstream>

namespace vorel::test {

class THost : public TNeutralHost {
public:
    Status NewUniqueId(WideText& id) noexcept override {
        id = u"id" + ToWide(std::to_string(++Ids));
        return StatusOk;
    }
    Status ShowMessageBox(MessageBoxKind kind, const WideText& caption, const WideText& text,
                          MessageBoxAnswer&) noexcept override {
        Boxes += std::to_string(static_cast<int>(kind)) + ToUtf8(caption + u"|" + text);
        return StatusOk;
    }
    Status ReadOption(const WideText& section, const WideText& key, const WideText& fallback,
                      WideText& value) noexcept override {
        Record("read " + ToUtf8(section + u"/" + key));
        value = Stored.value_or(fallback);
        return StatusOk;
    }
    Status WriteOption(const WideText& section, const WideText& key,
                       const WideText& value) noexcept override {
        Record("write " + ToUtf8(section + u"/" + key));
        Stored = value;
        return StatusOk;
    }
    Status IsClosing(Bool32& closing) noexcept override {
        closing = ToBool32(Closing);
        return StatusOk;
    }

    int Ids = 0;
    bool Closing = false;
    std::string Boxes;
    std::optional<WideText> Stored;
};

class TDialogs : public IUserDialogs {
public:
    std::string FindDevice() override { return Found; }
    std::optional<std::string> ChooseDevice(ChooserMode mode, const std::string& current) override {
        Record("choose " + std::to_string(static_cast<int>(mode)) + " " + current);
        return Chosen;
    }
    void ShowAbout(IVorelDriver&) override { Record("about"); }

    std::string Found;
    std::optional<std::string> Chosen;
};

// What a soft device is made with.
class TDeviceTest : public testing::Test {
protected:
    TDeviceTest() { TakeCalls(); }

    THost Host;
    TDialogs Dialogs;
    TTableDouble<IVorelDriver> Driver{"d"};
    TTableDouble<IJTagChannel> Channel{"c"};
};

// The base of drivers where it is the same as no driver at all: it has neither name nor attribute.
class TSilentDriver : public TDriverBase {
public:
    Status GetDeviceName(WideText& text) noexcept override { return Give(text, u"Unknown Device"); }
    Status HasAttribute(const WideText&, Bool32& value) noexcept override {
        return Give(value, True32);
    }
};

// Goes through the operations of an interface in table order. Each has to stand in its place, to
// make the stated calls on a driver that leaves its out values alone, and to give the neutral value
// there as well as without a driver and with a silent one. When one of those calls fails, that
// failure has to come out as it is, with nothing behind it but the unlocking of the channel, and
// the next try has to work.
template<class I>
class TForwardTable {
public:
    TForwardTable(I& driven, I& silent, I& bare, TTableDouble<IVorelDriver>& driver,
                  TTableDouble<IJTagChannel>& channel)
        : Driven(driven), Silent(silent), Bare(bare), Driver(driver), Channel(channel) {}

    template<class Operation, class... Neutral>
    void Row(Operation operation, const char* calls, const Neutral&... neutral) {
        Rows(operation, calls, "", neutral...);
    }
    // Rows that follow each other, each a plain forward to the driver's entries from `entry` on.
    template<class Neutral, class... Operations>
    void Forwards(int entry, const Neutral& neutral, Operations... operations) {
        (Row(operations, ("d" + std::to_string(entry++)).c_str(), neutral), ...);
    }
    // The same with operations that give nothing back.
    template<class... Operations>
    void Commands(int entry, Operations... operations) {
        (Row(operations, ("d" + std::to_string(entry++)).c_str()), ...);
    }
    // Rows of operations that ask nobody.
    template<class Neutral, class... Operations>
    void Constants(const Neutral& neutral, Operations... operations) {
        (Row(operations, "", neutral), ...);
    }
    // An operation that is no forward: without a driver it makes the same or other calls.
    template<class Operation, class... Neutral>
    void Rows(Operation operation, const char* drivenCalls, const char* bareCalls,
              const Neutral&... neutral) {
        RowThatCounts(operation, drivenCalls, bareCalls, neutral...);
        TryFailures(operation, drivenCalls, neutral...);
    }
    // An operation that does not do the same each time: its failures are looked at elsewhere.
    template<class Operation, class... Neutral>
    void RowThatCounts(Operation operation, const char* drivenCalls, const char* bareCalls,
                       const Neutral&... neutral) {
        Place(operation);
        Try(Driven, operation, drivenCalls, neutral...);
        Try(Silent, operation, WithoutDriver(drivenCalls).c_str(), neutral...);
        Try(Bare, operation, bareCalls, neutral...);
    }
    // Only its place: looked at elsewhere.
    template<class Operation>
    void Place(Operation operation) {
        EXPECT_EQ(SlotOf(operation), ++Slot);
    }
    int Count() const { return Slot - 2; }
    // Failing calls that were tried.
    int FailureCount() const { return Failures; }

private:
    static constexpr Status Failure = StatusFromOsError(31);

    template<class... A, class... Neutral>
    void Try(I& object, Status (I::*operation)(A...) noexcept, const char* calls,
             const Neutral&... neutral) {
        const char* const kind = &object == &Bare ? "bare, " : &object == &Silent ? "silent, " : "";
        const std::string where = kind + std::to_string(Slot);
        TakeCalls();
        const auto [status, values] = Call(object, operation);
        EXPECT_EQ(status, StatusOk) << where;
        EXPECT_EQ(TakeCalls(), calls) << where;
        if constexpr (sizeof...(Neutral) > 0) {
            EXPECT_TRUE(((std::get<sizeof...(A) - 1>(values) == neutral) && ...)) << where;
        }
    }

    // One after the other, each of the calls fails where it is made first.
    template<class Operation, class... Neutral>
    void TryFailures(Operation operation, const char* calls, const Neutral&... neutral) {
        std::string before;
        for (std::istringstream list(calls); list;) {
            std::string call;
            list >> call;
            const bool isDriver = call.starts_with("d");
            const int entry = isDriver || call.starts_with("c") ? std::atoi(call.c_str() + 1) : 0;
            if (entry != 0 && !Holds(before, call)) {
                isDriver ? Driver.FailAt(entry, Failure) : Channel.FailAt(entry, Failure);
                const bool unlocks = Holds(before, LockCall) && call != UnlockCall;
                TryFailing(operation,
                           before + call + (unlocks ? std::string(" ") + UnlockCall : ""));
                Driver.FailNowhere();
                Channel.FailNowhere();
                Try(Driven, operation, calls, neutral...);
            }
            before += call + " ";
        }
    }
    template<class... A>
    void TryFailing(Status (I::*operation)(A...) noexcept, const std::string& calls) {
        const std::string where = std::to_string(Slot) + " with a failure after " + calls;
        ++Failures;
        const auto [status, values] = Call(Driven, operation);
        EXPECT_EQ(status, Failure) << where;
        EXPECT_EQ(TakeCalls(), calls) << where;
        if constexpr (sizeof...(A) > 0) {
            using Last = std::tuple_element_t<sizeof...(A) - 1, std::tuple<A...>>;
            if constexpr (std::is_lvalue_reference_v<Last> &&
                          !std::is_const_v<std::remove_reference_t<Last>>) {
                EXPECT_NE(std::get<sizeof...(A) - 1>(values), Argument<Last>()) << where;
            }
        }
    }
    static std::string WithoutDriver(const char* calls) {
        std::string others;
        std::istringstream list(calls);
        for (std::string call; list >> call;) {
            others += call.starts_with("d") ? "" : (others.empty() ? "" : " ") + call;
        }
        return others;
    }
    static bool Holds(const std::string& calls, const std::string& call) {
        return (" " + calls).find(" " + call + " ") != std::string::npos;
    }

    static constexpr const char* LockCall = "c3";
    static constexpr const char* UnlockCall = "c4";

    I& Driven;
    I& Silent;
    I& Bare;
    TTableDouble<IVorelDriver>& Driver;
    TTableDouble<IJTagChannel>& Channel;
    int Slot = 2;
    int Failures = 0;
};

} // namespace vorel::test
