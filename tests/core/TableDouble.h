// A stand-in for any object behind an interface that is nothing but its table: each entry writes
// its number into one shared record and leaves all arguments alone. So a test sees which entry a
// caller really hit, whatever the operation is called. Single entries can be given a body, and one
// can be made to fail.
#pragma once

#include "vorel/Interface.h"

#include <array>
#include <string>
#include <tuple>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace vorel::test {

// What all doubles were asked since the last TakeCalls: "d3 c4", a letter for the double each.
inline std::string Calls;

inline void Record(const std::string& call) {
    Calls += (Calls.empty() ? "" : " ") + call;
}
inline std::string TakeCalls() {
    return std::exchange(Calls, {});
}

// A table is an array of functions with the offset to the object and its type before the first
// one, and an object begins with the address of its table.
template<class I>
class TTableDouble {
public:
    explicit TTableDouble(std::string letter = "") : Letter(std::move(letter)) {
        Fill(std::make_integer_sequence<int, Size>());
        Table = &Entries[2];
    }
    TTableDouble(const TTableDouble&) = delete;
    TTableDouble& operator=(const TTableDouble&) = delete;

    I* Get() { return reinterpret_cast<I*>(this); }
    int LastEntry() const { return Last; }

    template<class Operation, class... Arguments>
    void Replace(Operation operation, Status (*body)(I*, Arguments...));
    // From now on this entry (without a body) fails with `status` and no other one does.
    void FailAt(int entry, Status status) {
        FailingEntry = entry;
        Failure = status;
    }
    void FailNowhere() { FailingEntry = -1; }

private:
    static constexpr int Size = 128;

    template<int Number>
    static Status Entry(TTableDouble* self) noexcept {
        self->Last = Number;
        if (Number > 2) { // reference counting is nobody's business
            Record(self->Letter + std::to_string(Number));
        }
        return Number == self->FailingEntry ? self->Failure : StatusOk;
    }
    template<int... Numbers>
    void Fill(std::integer_sequence<int, Numbers...>) {
        ((Entries.at(Numbers + 2) = reinterpret_cast<const void*>(&Entry<Numbers>)), ...);
    }

    const void* const* Table = nullptr; // first: it is what makes this an object with a table
    std::array<const void*, Size + 2> Entries{nullptr, &typeid(I)};
    std::string Letter;
    int Last = -1;
    int FailingEntry = -1;
    Status Failure = StatusError;
};

// A value for one parameter: out parameters hold rubbish, all others are 0, null or empty.
template<class A>
std::remove_cvref_t<A> Argument() {
    using T = std::remove_cvref_t<A>;
    static char rubbish = 0;
    if constexpr (!std::is_lvalue_reference_v<A> || std::is_const_v<std::remove_reference_t<A>>) {
        return T{};
    } else if constexpr (std::is_pointer_v<T>) {
        return reinterpret_cast<T>(&rubbish);
    } else if constexpr (std::is_arithmetic_v<T>) {
        return T{77};
    } else {
        return T(3, typename T::value_type{'?'});
    }
}

// Calls an operation with such values and gives the status and what became of them.
template<class I, class... A>
std::pair<Status, std::tuple<std::remove_cvref_t<A>...>>
Call(I& object, Status (I::*operation)(A...) noexcept) {
    std::tuple<std::remove_cvref_t<A>...> values{Argument<A>()...};
    const Status status =
        std::apply([&](auto&... each) { return (object.*operation)(each...); }, values);
    return {status, values};
}

// The number of the table entry that a call of this operation hits.
template<class I, class... A>
int SlotOf(Status (I::*operation)(A...) noexcept) {
    TTableDouble<I> probe;
    Call(*probe.Get(), operation);
    TakeCalls();
    return probe.LastEntry();
}

template<class I>
template<class Operation, class... Arguments>
void TTableDouble<I>::Replace(Operation operation, Status (*body)(I*, Arguments...)) {
    Entries.at(static_cast<std::size_t>(SlotOf(operation)) + 2) =
        reinterpret_cast<const void*>(body);
}

} // namespace vorel::test
