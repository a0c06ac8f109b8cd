#include "foundation/afunction.h"

#include "support/assert_watch.h"

#include <string>
#include <type_traits>

#include <gtest/gtest.h>

namespace
{

static_assert(sizeof(AFunction<>) == 4 * sizeof(void*));
static_assert(sizeof(AFunction<int, int, int, int>) == 4 * sizeof(void*));
static_assert(std::is_trivially_copyable_v<AFunction<int>>);

int calls = 0;
void count_call()
{
    ++calls;
}

TEST(AFunction, IsEmptyAtFirstAndItsCallDoesNothing)
{
    const AssertWatch watch;
    const AFunction<> none;
    EXPECT_TRUE(none.is_empty());
    none();
    const AFunction<int, int*> with_arguments;
    with_arguments(1, nullptr);
    EXPECT_EQ(watch.count(), 0u);
}

TEST(AFunction, CallsAPlainFunction)
{
    calls = 0;
    const AFunction<> delegate(&count_call);
    EXPECT_FALSE(delegate.is_empty());
    delegate();
    delegate();
    EXPECT_EQ(calls, 2);
}

TEST(AFunction, BoundValueComesFirst)
{
    const AFunction<std::uint64_t*> delegate(
        [](std::uint32_t bound, std::uint64_t* result) { *result = bound; }, 0xFEDCBA98u);
    std::uint64_t result = 0;
    delegate(&result);
    EXPECT_EQ(result, 0xFEDCBA98u);
    EXPECT_EQ(delegate.kind, 2u);
}

TEST(AFunction, BoundPointerComesFirst)
{
    std::string text = "a";
    const AFunction<const std::string&> delegate(
        [](void* bound, const std::string& more) { *static_cast<std::string*>(bound) += more; },
        &text);
    delegate("bc");
    EXPECT_EQ(text, "abc");
    EXPECT_EQ(delegate.kind, 3u);
}

struct Adder {
    int sum = 0;
};

void forward(void* object, const void* member_function, int a, int b, int c, int* result)
{
    auto* adder = static_cast<Adder*>(object);
    adder->sum += a + b + c + *static_cast<const int*>(member_function);
    *result = adder->sum;
}

TEST(AFunction, MemberFormPassesObjectAndMemberToItsForwarder)
{
    Adder adder;
    const int member = 1000;
    const AFunction<int, int, int, int*> delegate(&forward, &adder, &member);
    EXPECT_EQ(delegate.kind, 4u);
    int result = 0;
    delegate(1, 10, 100, &result);
    EXPECT_EQ(result, 1111);
    EXPECT_EQ(adder.sum, 1111);
}

TEST(AFunction, MemberFormWithoutAFunctionIsEmpty)
{
    const AssertWatch watch;
    Adder adder;
    const AFunction<int> delegate(static_cast<AFunction<int>::Forwarder>(nullptr), &adder, &adder);
    EXPECT_TRUE(delegate.is_empty());
    EXPECT_EQ(delegate.context, 0u);
    delegate(1);
    EXPECT_EQ(watch.count(), 0u);
}

TEST(AFunction, CopyIsPlainDataBoundToTheSameObject)
{
    int sum = 0;
    const AFunction<int> first([](void* bound, int value) { *static_cast<int*>(bound) += value; },
                               &sum);
    AFunction<int> second = first;
    first(1);
    second(2);
    EXPECT_EQ(sum, 3);
    second = AFunction<int>();
    EXPECT_TRUE(second.is_empty());
    EXPECT_FALSE(first.is_empty());
}

TEST(AFunction, UnknownKindIsReportedAndNotCalled)
{
    calls = 0;
    AFunction<> delegate(&count_call);
    delegate.kind = 5;
    const AssertWatch watch;
    EXPECT_FALSE(delegate.is_empty());
    delegate();
    EXPECT_EQ(calls, 0);
    EXPECT_EQ(watch.count("afunction"), 1u);
}

TEST(AFunction, EveryFormWithoutAFunctionIsReportedAndNotCalled)
{
    for (const std::uint32_t kind : {1u, 2u, 3u, 4u}) {
        AFunction<> delegate;
        delegate.kind = kind;
        const AssertWatch watch;
        delegate();
        EXPECT_EQ(watch.count("afunction"), 1u) << kind;
    }
    const AssertWatch watch;
    const AFunction<> plain(static_cast<AFunction<>::Plain>(nullptr));
    EXPECT_FALSE(plain.is_empty());
    plain();
    EXPECT_EQ(watch.count("afunction"), 1u);
}

} // namespace
