#include "support/Errors.h"
#include "support/Objects.h"

#include <gtest/gtest.h>

#include <new>

namespace vorel {
namespace {

TEST(Guard, TurnsExceptionsIntoStatuses) {
    EXPECT_EQ(Guard([] {}), StatusOk);
    EXPECT_EQ(Guard([]() -> Status { return 1; }), 1);
    EXPECT_EQ(Guard([] { throw EVorelError(StatusBadArgument, "x"); }), StatusBadArgument);
    EXPECT_EQ(Guard([] { throw std::bad_alloc(); }), StatusOutOfMemory);
    EXPECT_EQ(Guard([] { throw std::out_of_range("x"); }), StatusIndexOutOfRange);
    EXPECT_EQ(Guard([] { throw 7; }), StatusError);
}

TEST(Guard, NeverReportsAnErrorAsSuccess) {
    EXPECT_TRUE(Failed(Guard([] { throw EVorelError(5, "a success code used as an error"); })));
}

TEST(Check, RaisesWithTheSameStatusAndNamesTheAction) {
    EXPECT_NO_THROW(Check(StatusOk, "x"));
    EXPECT_NO_THROW(Check(1, "x"));
    try {
        Check(StatusFromOsError(31), "Writing to the pod");
        FAIL() << "a failing status did not raise";
    } catch (const EVorelError& error) {
        EXPECT_EQ(error.GetStatus(), StatusFromOsError(31));
        EXPECT_STREQ(error.what(), "Writing to the pod failed with status 0x8007001F");
    }
}

class IFirst : public IInterface {
public:
    static constexpr Guid Id{1, 0, 0, {}};
    virtual int First() noexcept = 0;

protected:
    ~IFirst() = default;
};

class ISecond : public IInterface {
public:
    static constexpr Guid Id{2, 0, 0, {}};
    virtual int Second() noexcept = 0;

protected:
    ~ISecond() = default;
};

class Counted : public TInterfacedObject<IFirst, ISecond> {
public:
    explicit Counted(bool& gone) : Gone(gone) {}
    ~Counted() override { Gone = true; }
    int First() noexcept override { return 10; }
    int Second() noexcept override { return 20; }

private:
    bool& Gone;
};

TEST(Ref, KeepsAnObjectUntilTheLastInterfaceGoes) {
    bool gone = false;
    Ref<IFirst> first(new Counted(gone));
    Ref<ISecond> second = Ref<ISecond>::Adopt(QueryFor<ISecond>(first.Get()));
    ASSERT_TRUE(second);
    EXPECT_EQ(second->Second(), 20);
    first.Reset();
    EXPECT_FALSE(gone);
    EXPECT_EQ(QueryFor<IFirst>(second.Get())->First(), 10);
    second->Release();
    second.Reset();
    EXPECT_TRUE(gone);
}

} // namespace
} // namespace vorel
