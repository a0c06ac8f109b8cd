#include "foundation/bsem.h"

#include "support/assert_watch.h"
#include "support/await.h"
#include "support/faults.h"

#include <utility>

#include <gtest/gtest.h>

namespace
{

TEST(BSem, StartsAsItIsTold)
{
    BSem set(true);
    BSem unset(false);
    EXPECT_TRUE(set.wait(0));
    EXPECT_FALSE(set.wait(0));
    EXPECT_FALSE(unset.wait(0));
}

TEST(BSem, SignalTwiceIsHarmlessAndCountsOnce)
{
    const AssertWatch watch;
    BSem semaphore(false);
    semaphore.signal();
    semaphore.signal();
    EXPECT_TRUE(semaphore.wait(0));
    EXPECT_FALSE(semaphore.wait(0));
    EXPECT_EQ(watch.count(), 0u);
}

TEST(BSem, SignalWakesTheWaiter)
{
    BSem semaphore(false);
    auto waiter = in_thread([&] { return semaphore.wait(platform::infinite); });
    semaphore.signal();
    EXPECT_TRUE(await(std::move(waiter)));
    EXPECT_FALSE(semaphore.wait(0));
}

TEST(BSem, SignalThatFailsIsReported)
{
    class Unusable : public BSem
    {
    public:
        Unusable() : BSem(false) { platform::destroy_semaphore(std::exchange(handle, nullptr)); }
    };
    Unusable semaphore;
    const AssertWatch watch;
    semaphore.signal();
    EXPECT_EQ(watch.count("bsem"), 1u);
}

TEST(BSem, ASignalThatFailsIsReportedAndGivesNothing)
{
    const AssertWatch watch;
    BSem semaphore(false);
    const Faults faults{{.call = platform::Call::release_semaphore}};
    semaphore.signal();
    EXPECT_EQ(watch.count("bsem"), 1u);
    EXPECT_FALSE(semaphore.wait(0));
    semaphore.signal();
    EXPECT_TRUE(semaphore.wait(0));
}

} // namespace
