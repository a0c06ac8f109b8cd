#include "platform/platform.h"

#include "foundation/amutex.h"
#include "foundation/csem.h"
#include "support/assert_watch.h"
#include "support/await.h"

#include <atomic>
#include <chrono>
#include <memory>
#include <utility>

#include <windows.h>

#include <gtest/gtest.h>

namespace
{

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using platform::WaitResult;

std::atomic<int> calls{0};

void CALLBACK count_call(ULONG_PTR)
{
    ++calls;
}

// An asynchronous call of the calling thread runs in its next alertable wait.
void queue_call()
{
    ASSERT_NE(QueueUserAPC(&count_call, GetCurrentThread(), 0), 0u);
}

class WindowsCalls : public testing::Test
{
protected:
    void SetUp() override { calls = 0; }
};

TEST_F(WindowsCalls, InterruptTheWaitForASemaphore)
{
    const std::unique_ptr<platform::Semaphore, void (*)(platform::Semaphore*)> semaphore(
        platform::create_semaphore(0, 1), &platform::destroy_semaphore);
    queue_call();
    EXPECT_EQ(platform::wait_semaphore(semaphore.get(), platform::infinite),
              WaitResult::interrupted);
    EXPECT_EQ(calls, 1);
}

TEST_F(WindowsCalls, AreRunByCSemWhichThenWaitsOn)
{
    const AssertWatch watch;
    CSem semaphore(0, 1);
    queue_call();
    const auto start = Clock::now();
    EXPECT_FALSE(semaphore.wait(100));
    EXPECT_GE(Clock::now() - start, 80ms);
    EXPECT_EQ(calls, 1);
    EXPECT_EQ(watch.count(), 0u);
}

TEST_F(WindowsCalls, DoNotRunInTheWaitForAMutex)
{
    AMutex mutex;
    AMutexLock lock(&mutex);
    std::atomic<bool> waiting{false};
    auto rival = in_thread([&] {
        queue_call();
        waiting = true;
        const AMutexLock own(&mutex);
        return !own.is_empty() && calls == 0;
    });
    while (!waiting) {
        platform::sleep_ms(1);
    }
    platform::sleep_ms(50);
    lock.clear();
    EXPECT_TRUE(await(std::move(rival)));
}

TEST(WindowsErrors, TooManyPostsLeavesNoError)
{
    const std::unique_ptr<platform::Semaphore, void (*)(platform::Semaphore*)> semaphore(
        platform::create_semaphore(1, 1), &platform::destroy_semaphore);
    SetLastError(ERROR_FILE_NOT_FOUND);
    EXPECT_EQ(platform::release_semaphore(semaphore.get()),
              platform::ReleaseResult::too_many_posts);
    EXPECT_EQ(GetLastError(), 0u);
}

TEST(WindowsErrors, FailedReleaseKeepsItsError)
{
    EXPECT_EQ(platform::release_semaphore(nullptr), platform::ReleaseResult::failed);
    EXPECT_EQ(GetLastError(), DWORD{ERROR_INVALID_HANDLE});
}

// Whoever dies with the mutex may have left anything behind: no lock then, though the wait ends.
TEST(WindowsMutex, OfAThreadThatEndedWithItGivesAnEmptyGuard)
{
    AMutex mutex;
    await(in_thread([&] { platform::lock_mutex(mutex.handle); }));
    EXPECT_TRUE(AMutexLock(&mutex).is_empty());
}

TEST(WindowsThread, PriorityIsThatOfTheCallingThread)
{
    std::promise<int> priority;
    ASSERT_TRUE(platform::start_thread(
        [](void* context) {
            platform::set_thread_priority(-1);
            static_cast<std::promise<int>*>(context)->set_value(
                GetThreadPriority(GetCurrentThread()));
        },
        &priority, 65536));
    EXPECT_EQ(await(priority.get_future()), THREAD_PRIORITY_BELOW_NORMAL);
    EXPECT_EQ(GetThreadPriority(GetCurrentThread()), THREAD_PRIORITY_NORMAL);
}

} // namespace
