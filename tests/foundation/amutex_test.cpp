#include "foundation/amutex.h"

#include "support/assert_watch.h"
#include "support/await.h"
#include "support/faults.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using namespace std::chrono_literals;

// Another thread that asks for `mutex` and tells when it has it.
class Rival
{
public:
    explicit Rival(AMutex* mutex)
        : done(in_thread([this, mutex] {
              const AMutexLock lock(mutex);
              entered = true;
              return !lock.is_empty();
          }))
    {
    }

    bool is_kept_out() const
    {
        std::this_thread::sleep_for(50ms);
        return !entered;
    }
    bool gets_in() { return await(std::move(done)); }

private:
    std::atomic<bool> entered{false};
    std::future<bool> done;
};

TEST(AMutexLock, HoldsTheMutexUntilItEnds)
{
    AMutex mutex;
    AMutexLock lock(&mutex);
    EXPECT_FALSE(lock.is_empty());
    Rival rival(&mutex);
    EXPECT_TRUE(rival.is_kept_out());
    lock.clear();
    EXPECT_TRUE(lock.is_empty());
    EXPECT_TRUE(rival.gets_in());
}

TEST(AMutexLock, OneThreadMayTakeTheMutexTwice)
{
    AMutex mutex;
    auto outer = std::make_unique<AMutexLock>(&mutex);
    auto inner = std::make_unique<AMutexLock>(&mutex);
    EXPECT_FALSE(inner->is_empty());
    Rival rival(&mutex);
    outer.reset();
    EXPECT_TRUE(rival.is_kept_out()) << "the second lock still holds";
    inner.reset();
    EXPECT_TRUE(rival.gets_in());
}

TEST(AMutexLock, CopyHoldsOnAndTheLastOneReleases)
{
    AMutex mutex;
    auto first = std::make_unique<AMutexLock>(&mutex);
    auto copy = std::make_unique<AMutexLock>(*first);
    Rival rival(&mutex);
    first.reset();
    EXPECT_FALSE(copy->is_empty());
    EXPECT_TRUE(rival.is_kept_out());
    copy.reset();
    EXPECT_TRUE(rival.gets_in());
}

TEST(AMutexLock, AssignmentReleasesWhatWasHeldBefore)
{
    AMutex first;
    AMutex second;
    AMutexLock lock(&first);
    lock = AMutexLock(&second);
    EXPECT_TRUE(Rival(&first).gets_in());
    Rival rival(&second);
    EXPECT_TRUE(rival.is_kept_out());
    lock.clear();
    EXPECT_TRUE(rival.gets_in());
}

TEST(AMutexLock, NullMutexGivesAnEmptyGuard)
{
    const AssertWatch watch;
    AMutexLock lock(nullptr);
    EXPECT_TRUE(lock.is_empty());
    lock.clear();
    EXPECT_TRUE(AMutexLock().is_empty());
    EXPECT_EQ(watch.count(), 0u);
}

TEST(AMutexLock, MutexThatCouldNotBeCreatedGivesAnEmptyGuard)
{
    AMutex mutex;
    platform::destroy_mutex(std::exchange(mutex.handle, nullptr));
    const AssertWatch watch;
    EXPECT_TRUE(AMutexLock(&mutex).is_empty());
    EXPECT_EQ(watch.count(), 0u);
}

TEST(AMutexLock, KeepsThreadsApart)
{
    AMutex mutex;
    int counter = 0; // guarded by the mutex alone
    std::vector<std::future<void>> running;
    for (int i = 0; i != 4; ++i) {
        running.push_back(in_thread([&] {
            for (int round = 0; round != 1000; ++round) {
                const AMutexLock lock(&mutex);
                ++counter;
            }
        }));
    }
    for (auto& thread : running) {
        await(std::move(thread));
    }
    EXPECT_EQ(counter, 4000);
}

TEST(AMutexLock, OfAMutexThatWasNotCreatedIsEmpty)
{
    const Faults faults{{.call = platform::Call::create_mutex}};
    AMutex mutex;
    const AMutexLock guard(&mutex);
    EXPECT_TRUE(guard.is_empty());
}

TEST(AMutexLock, ThatFailsIsEmptyAndReleasesNothing)
{
    AMutex mutex;
    const Faults faults{{.call = platform::Call::lock_mutex}};
    {
        const AMutexLock held(&mutex);
        EXPECT_TRUE(held.is_empty());
    }
    EXPECT_EQ(Faults::struck(platform::Call::lock_mutex), 1u);
    const AMutexLock next(&mutex);
    EXPECT_FALSE(next.is_empty());
}

} // namespace
