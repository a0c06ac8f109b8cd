#include "foundation/csem.h"

#include "support/assert_watch.h"
#include "support/await.h"
#include "support/faults.h"

#include <utility>

#include <gtest/gtest.h>

namespace
{

// Lets a test post, which the library does through BSem alone.
class PostableSem : public CSem
{
public:
    using CSem::CSem;
    bool post() { return platform::release_semaphore(handle) == platform::ReleaseResult::released; }
};

TEST(CSem, GivesItsInitialCountAndNoMore)
{
    const AssertWatch watch;
    CSem semaphore(2, 5);
    EXPECT_TRUE(semaphore.wait(0));
    EXPECT_TRUE(semaphore.wait(platform::infinite));
    EXPECT_FALSE(semaphore.wait(0));
    EXPECT_EQ(watch.count(), 0u);
}

TEST(CSem, WaitOnAnUnsetOneTimesOutWithoutAReport)
{
    const AssertWatch watch;
    CSem semaphore(0, 1);
    EXPECT_FALSE(semaphore.wait(0));
    EXPECT_FALSE(semaphore.wait(20));
    EXPECT_EQ(watch.count(), 0u);
}

TEST(CSem, CountsUpToItsMaximum)
{
    PostableSem semaphore(0, 2);
    EXPECT_TRUE(semaphore.post());
    EXPECT_TRUE(semaphore.post());
    EXPECT_FALSE(semaphore.post());
    EXPECT_TRUE(semaphore.wait(0));
    EXPECT_TRUE(semaphore.wait(0));
    EXPECT_FALSE(semaphore.wait(0));
}

TEST(CSem, PostEndsAWaitOfAnotherThread)
{
    PostableSem semaphore(0, 1);
    auto waiter = in_thread([&] { return semaphore.wait(platform::infinite); });
    EXPECT_TRUE(semaphore.post());
    EXPECT_TRUE(await(std::move(waiter)));
}

TEST(CSem, OneThatCannotBeCreatedReportsThatAndEveryWait)
{
    const AssertWatch watch;
    CSem semaphore(2, 1);
    EXPECT_EQ(watch.count("csem"), 1u);
    EXPECT_FALSE(semaphore.wait(0));
    EXPECT_EQ(watch.count("csem"), 2u);
    EXPECT_FALSE(semaphore.wait(platform::infinite));
    EXPECT_EQ(watch.count("csem"), 3u);
}

TEST(CSem, OneThatWasNotCreatedReportsEveryWaitAndFailsIt)
{
    const AssertWatch watch;
    const Faults faults{{.call = platform::Call::create_semaphore}};
    CSem semaphore(1, 1);
    EXPECT_FALSE(semaphore.is_usable());
    EXPECT_EQ(watch.count("csem"), 1u);
    EXPECT_FALSE(semaphore.wait(0));
    EXPECT_FALSE(semaphore.wait(platform::infinite));
    EXPECT_EQ(watch.count("csem"), 3u);
}

TEST(CSem, AWaitThatFailsIsReported)
{
    const AssertWatch watch;
    CSem semaphore(1, 1);
    {
        const Faults faults{{.call = platform::Call::wait_semaphore}};
        EXPECT_FALSE(semaphore.wait(platform::infinite));
    }
    EXPECT_EQ(watch.count("csem"), 1u);
    EXPECT_TRUE(semaphore.wait(0));
}

TEST(CSem, AWaitWithoutLimitThatRunsOutOfTimeIsReported)
{
    const AssertWatch watch;
    CSem semaphore(1, 1);
    const Faults faults{
        {.call = platform::Call::wait_semaphore, .effect = Faults::Effect::timed_out}};
    EXPECT_FALSE(semaphore.wait(platform::infinite));
    EXPECT_EQ(watch.count("csem"), 1u);
}

TEST(CSem, AnInterruptedWaitIsMadeAgain)
{
    const AssertWatch watch;
    CSem semaphore(1, 1);
    const Faults faults{{.call = platform::Call::wait_semaphore,
                         .effect = Faults::Effect::interrupted,
                         .times = 3}};
    EXPECT_TRUE(semaphore.wait(platform::infinite));
    EXPECT_EQ(Faults::struck(platform::Call::wait_semaphore), 3u);
    EXPECT_EQ(watch.count(), 0u);
}

} // namespace
