// What tests of soft devices share: a host that records, and the check that every operation of an
// object forwards as it should.
#pragma once

#include "TableDouble.h"
#include "core/UserDialogs.h"
#include "support/NeutralHost.h"
#include "support/Text.h"
#include "vorel/Channel.h"
#include "vorel/Driver.h"

#include <gtest/gtest.h>

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

// Goes through the operations of an interface in table order. Each has to stand in its place, to
// make the stated calls on a driver that leaves its out values alone, and to give the neutral value
// there as well as without a driver.
template<class I>
class TForwardTable {
public:
    TForwardTable(I& driven, I& bare) : Driven(driven), Bare(bare) {}

    template<class Operation, class... Neutral>
    void Row(Operation operation, const char* calls, const Neutral&... neutral) {
        Rows(operation, calls, "", neutral...);
    }
    // An operation that is no forward: without a driver it makes the same or other calls.
    template<class Operation, class... Neutral>
    void Rows(Operation operation, const char* drivenCalls, const char* bareCalls,
              const Neutral&... neutral) {
        Place(operation);
        Try(Driven, operation, drivenCalls, neutral...);
        Try(Bare, operation, bareCalls, neutral...);
    }
    // Only its place: looked at elsewhere.
    template<class Operation>
    void Place(Operation operation) {
        EXPECT_EQ(SlotOf(operation), ++Slot);
    }
    int Count() const { return Slot - 2; }

private:
    template<class... A, class... Neutral>
    void Try(I& object, Status (I::*operation)(A...) noexcept, const char* calls,
             const Neutral&... neutral) {
        const std::string where = (&object == &Bare ? "bare, " : "") + std::to_string(Slot);
        TakeCalls();
        const auto [status, values] = Call(object, operation);
        EXPECT_EQ(status, StatusOk) << where;
        EXPECT_EQ(TakeCalls(), calls) << where;
        if constexpr (sizeof...(Neutral) > 0) {
            EXPECT_TRUE(((std::get<sizeof...(A) - 1>(values) == neutral) && ...)) << where;
        }
    }

    I& Driven;
    I& Bare;
    int Slot = 2;
};

} // namespace vorel::test
