#include "foundation/aassert.h"

#include "support/assert_watch.h"

#include <string>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace
{

TEST(AAssert, ReturnsWithAndWithoutAHook)
{
    assert_failed("somewhere", 1, "x == y");
    const AssertWatch watch;
    assert_failed("somewhere", 2, "x == y");
    EXPECT_EQ(watch.count(), 1u);
}

TEST(AAssert, HookSeesSourceLineAndExpression)
{
    const AssertWatch watch;
    assert_failed("zavl3", 197, "x == SOCKET_ERROR");
    ASSERT_EQ(watch.count(), 1u);
    EXPECT_EQ(watch.reports()[0].source, "zavl3");
    EXPECT_EQ(watch.reports()[0].line, 197);
    EXPECT_EQ(watch.reports()[0].expression, "x == SOCKET_ERROR");
}

TEST(AAssert, CheckGivesItsConditionAndReportsWhereItDoesNotHold)
{
    const AssertWatch watch;
    const int one = 1;
    EXPECT_TRUE(A_CHECK("here", one == 1));
    EXPECT_EQ(watch.count(), 0u);
    EXPECT_FALSE(A_CHECK("here", one == 2));
    const int line = __LINE__ - 1;
    EXPECT_EQ(watch.count("here"), 1u);
    EXPECT_TRUE(watch.saw("here", line));
    EXPECT_EQ(watch.reports()[0].expression, "one == 2");
}

TEST(AAssert, ReportNeedsNoCondition)
{
    const AssertWatch watch;
    A_REPORT("here", "never");
    EXPECT_TRUE(watch.saw("here", __LINE__ - 1));
    EXPECT_EQ(watch.reports()[0].expression, "never");
}

TEST(AssertWatch, TellsSourcesAndLinesApart)
{
    const AssertWatch watch;
    assert_failed("a", 1, "");
    assert_failed("a", 2, "");
    assert_failed("b", 1, "");
    EXPECT_EQ(watch.count(), 3u);
    EXPECT_EQ(watch.count("a"), 2u);
    EXPECT_EQ(watch.count("c"), 0u);
    EXPECT_TRUE(watch.saw("a", 2));
    EXPECT_FALSE(watch.saw("b", 2));
}

TEST(AssertWatch, InnerWatchHidesTheOuterUntilItEnds)
{
    const AssertWatch outer;
    {
        const AssertWatch inner;
        assert_failed("a", 1, "");
        EXPECT_EQ(inner.count(), 1u);
    }
    EXPECT_EQ(outer.count(), 0u);
    assert_failed("a", 2, "");
    EXPECT_EQ(outer.count(), 1u);
}

int seen_by_own_hook = 0;

TEST(AssertWatch, GivesBackTheHookThatWasThere)
{
    const AssertHook own = [](const char*, int, const char*) { ++seen_by_own_hook; };
    const AssertHook before = assert_hook.exchange(own);
    {
        const AssertWatch watch;
        assert_failed("a", 1, "");
        EXPECT_EQ(watch.count(), 1u);
    }
    EXPECT_EQ(assert_hook.load(), own);
    EXPECT_EQ(seen_by_own_hook, 0);
    assert_failed("a", 1, "");
    EXPECT_EQ(seen_by_own_hook, 1);
    assert_hook = before;
}

TEST(AssertWatch, CountsReportsOfAllThreads)
{
    const AssertWatch watch;
    std::vector<std::thread> threads;
    for (int i = 0; i != 4; ++i) {
        threads.emplace_back([] {
            for (int line = 0; line != 500; ++line) {
                assert_failed("thread", line, "");
            }
        });
    }
    for (std::thread& thread : threads) {
        thread.join();
    }
    EXPECT_EQ(watch.count("thread"), 2000u);
}

} // namespace
