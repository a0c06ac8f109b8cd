#include "platform/platform.h"

#include "support/await.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using namespace std::chrono_literals;
using platform::ReleaseResult;
using platform::WaitResult;
using Clock = std::chrono::steady_clock;

struct Destroy {
    void operator()(platform::Mutex* mutex) const { platform::destroy_mutex(mutex); }
    void operator()(platform::Semaphore* semaphore) const
    {
        platform::destroy_semaphore(semaphore);
    }
};
using MutexHandle = std::unique_ptr<platform::Mutex, Destroy>;
using SemaphoreHandle = std::unique_ptr<platform::Semaphore, Destroy>;

constexpr std::uint32_t an_hour_ms = 3'600'000;

TEST(PlatformMutex, OwnerMayLockAgainAndOthersWaitForItsLastUnlock)
{
    const MutexHandle mutex(platform::create_mutex());
    ASSERT_EQ(platform::lock_mutex(mutex.get()), WaitResult::signalled);
    ASSERT_EQ(platform::lock_mutex(mutex.get()), WaitResult::signalled);

    std::atomic<bool> entered{false};
    auto other = in_thread([&] {
        const WaitResult result = platform::lock_mutex(mutex.get());
        entered = true;
        platform::unlock_mutex(mutex.get());
        return result;
    });
    std::this_thread::sleep_for(50ms);
    EXPECT_FALSE(entered);
    platform::unlock_mutex(mutex.get());
    std::this_thread::sleep_for(50ms);
    EXPECT_FALSE(entered) << "one of two locks is still held";
    platform::unlock_mutex(mutex.get());
    EXPECT_EQ(await(std::move(other)), WaitResult::signalled);
    EXPECT_TRUE(entered);
}

TEST(PlatformMutex, OneThreadAtATime)
{
    const MutexHandle mutex(platform::create_mutex());
    constexpr int threads = 4;
    constexpr int rounds = 2000;
    int counter = 0; // guarded by the mutex alone
    std::vector<std::future<void>> running;
    for (int i = 0; i != threads; ++i) {
        running.push_back(in_thread([&] {
            for (int round = 0; round != rounds; ++round) {
                platform::lock_mutex(mutex.get());
                ++counter;
                platform::unlock_mutex(mutex.get());
            }
        }));
    }
    for (auto& thread : running) {
        await(std::move(thread));
    }
    EXPECT_EQ(counter, threads * rounds);
}

TEST(PlatformMutex, NullCannotBeLocked)
{
    EXPECT_EQ(platform::lock_mutex(nullptr), WaitResult::failed);
    platform::unlock_mutex(nullptr);
    platform::destroy_mutex(nullptr);
}

TEST(PlatformSemaphore, GivesItsInitialCount)
{
    const SemaphoreHandle semaphore(platform::create_semaphore(2, 3));
    EXPECT_EQ(platform::wait_semaphore(semaphore.get(), 0), WaitResult::signalled);
    EXPECT_EQ(platform::wait_semaphore(semaphore.get(), 0), WaitResult::signalled);
    EXPECT_EQ(platform::wait_semaphore(semaphore.get(), 0), WaitResult::timed_out);
}

TEST(PlatformSemaphore, TakesNoPostAboveItsMaximum)
{
    const SemaphoreHandle semaphore(platform::create_semaphore(1, 2));
    EXPECT_EQ(platform::release_semaphore(semaphore.get()), ReleaseResult::released);
    EXPECT_EQ(platform::release_semaphore(semaphore.get()), ReleaseResult::too_many_posts);
    EXPECT_EQ(platform::wait_semaphore(semaphore.get(), 0), WaitResult::signalled);
    EXPECT_EQ(platform::wait_semaphore(semaphore.get(), 0), WaitResult::signalled);
    EXPECT_EQ(platform::wait_semaphore(semaphore.get(), 0), WaitResult::timed_out);
    EXPECT_EQ(platform::release_semaphore(semaphore.get()), ReleaseResult::released);
}

TEST(PlatformSemaphore, IsNotMadeWithCountsThatCannotBe)
{
    EXPECT_EQ(platform::create_semaphore(0, 0), nullptr);
    EXPECT_EQ(platform::create_semaphore(3, 2), nullptr);
    EXPECT_EQ(platform::create_semaphore(0, 0x80000000u), nullptr);
    const SemaphoreHandle largest(platform::create_semaphore(0x7FFFFFFFu, 0x7FFFFFFFu));
    EXPECT_NE(largest, nullptr);
}

TEST(PlatformSemaphore, NullFailsEveryCall)
{
    EXPECT_EQ(platform::wait_semaphore(nullptr, 0), WaitResult::failed);
    EXPECT_EQ(platform::wait_semaphore(nullptr, platform::infinite), WaitResult::failed);
    EXPECT_EQ(platform::release_semaphore(nullptr), ReleaseResult::failed);
    platform::destroy_semaphore(nullptr);
}

TEST(PlatformSemaphore, WaitsItsWholeTime)
{
    const SemaphoreHandle semaphore(platform::create_semaphore(0, 1));
    const auto start = Clock::now();
    EXPECT_EQ(platform::wait_semaphore(semaphore.get(), 100), WaitResult::timed_out);
    EXPECT_GE(Clock::now() - start, 80ms); // a system may count in ticks of some 15 ms
}

TEST(PlatformSemaphore, ReleaseEndsAWaitWithoutLimit)
{
    const SemaphoreHandle semaphore(platform::create_semaphore(0, 1));
    auto waiter =
        in_thread([&] { return platform::wait_semaphore(semaphore.get(), platform::infinite); });
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(platform::release_semaphore(semaphore.get()), ReleaseResult::released);
    EXPECT_EQ(await(std::move(waiter)), WaitResult::signalled);
}

TEST(PlatformSemaphore, ReleaseEndsATimedWaitBeforeItsTime)
{
    const SemaphoreHandle semaphore(platform::create_semaphore(0, 1));
    auto waiter = in_thread([&] { return platform::wait_semaphore(semaphore.get(), an_hour_ms); });
    std::this_thread::sleep_for(20ms);
    EXPECT_EQ(platform::release_semaphore(semaphore.get()), ReleaseResult::released);
    EXPECT_EQ(await(std::move(waiter)), WaitResult::signalled);
}

TEST(PlatformSemaphore, EveryReleaseFreesOneWaiter)
{
    constexpr int waiters = 4;
    const SemaphoreHandle semaphore(platform::create_semaphore(0, waiters));
    std::atomic<int> freed{0};
    std::vector<std::future<WaitResult>> waiting;
    for (int i = 0; i != waiters; ++i) {
        waiting.push_back(in_thread([&] {
            const WaitResult result = platform::wait_semaphore(semaphore.get(), an_hour_ms);
            ++freed;
            return result;
        }));
    }
    std::this_thread::sleep_for(20ms);
    for (int released = 1; released <= waiters; ++released) {
        EXPECT_EQ(platform::release_semaphore(semaphore.get()), ReleaseResult::released);
        std::this_thread::sleep_for(5ms);
        EXPECT_LE(freed, released);
    }
    for (auto& waiter : waiting) {
        EXPECT_EQ(await(std::move(waiter)), WaitResult::signalled);
    }
    EXPECT_EQ(platform::wait_semaphore(semaphore.get(), 0), WaitResult::timed_out);
}

// A caller is woken and drops what it waited on before the worker is out of the release.
TEST(PlatformSemaphore, MayBeDestroyedAsSoonAsItsCountIsTaken)
{
    constexpr int rounds = 3000;
    std::atomic<platform::Semaphore*> offered{nullptr};
    auto releaser = in_thread([&] {
        for (int round = 0; round != rounds; ++round) {
            platform::Semaphore* semaphore = nullptr;
            while ((semaphore = offered.exchange(nullptr)) == nullptr) {
                std::this_thread::yield();
            }
            platform::release_semaphore(semaphore);
        }
    });
    int taken = 0;
    for (int round = 0; round != rounds; ++round) {
        const SemaphoreHandle semaphore(platform::create_semaphore(0, 1));
        offered = semaphore.get();
        taken += platform::wait_semaphore(semaphore.get(), an_hour_ms) == WaitResult::signalled;
    }
    await(std::move(releaser));
    EXPECT_EQ(taken, rounds);
}

} // namespace
