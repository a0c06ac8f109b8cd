#include "foundation/athread.h"

#include "support/event_log.h"
#include "support/faults.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace
{

void note_start(void* log)
{
    static_cast<EventLog*>(log)->note("started");
}

TEST(AThread, RunsTheFunctionWithItsContext)
{
    EventLog log;
    AThread thread;
    ASSERT_TRUE(thread.start(&note_start, &log));
    thread.join();
    EXPECT_EQ(log.count("started"), 1);
}

TEST(AThread, JoinsOneThatHasEndedLongBefore)
{
    EventLog log;
    AThread thread;
    ASSERT_TRUE(thread.start(&note_start, &log));
    log.await("started");
    std::this_thread::sleep_for(10ms);
    thread.join();
}

TEST(AThread, JoinWaitsForTheEnd)
{
    struct Context {
        EventLog log;
        std::atomic<bool> ended{false};
    } context;
    AThread thread;
    ASSERT_TRUE(thread.start(
        [](void* given) {
            auto* own = static_cast<Context*>(given);
            own->log.await("go");
            std::this_thread::sleep_for(50ms);
            own->ended = true;
        },
        &context));
    context.log.note("go");
    thread.join();
    EXPECT_TRUE(context.ended);
}

// The object goes as soon as it can: nothing of the thread may touch it any more.
TEST(AThread, CanGoRightAfterTheJoin)
{
    std::atomic<int> runs{0};
    for (int i = 0; i < 200; ++i) {
        const auto thread = std::make_unique<AThread>();
        ASSERT_TRUE(
            thread->start([](void* count) { ++*static_cast<std::atomic<int>*>(count); }, &runs));
        thread->join();
    }
    EXPECT_EQ(runs, 200);
}

void expect_none_started_without(platform::Call call)
{
    EventLog log;
    const Faults faults{{.call = call}};
    AThread thread;
    EXPECT_FALSE(thread.start(&note_start, &log));
    EXPECT_EQ(log.count("started"), 0);
}

TEST(AThread, OneThatTheSystemRefusesIsTold)
{
    expect_none_started_without(platform::Call::start_thread);
}

// Nobody could wait for it.
TEST(AThread, WithoutASemaphoreNoneIsStarted)
{
    expect_none_started_without(platform::Call::create_semaphore);
}

TEST(AThread, JoinWaitsForTheEndThoughTheSystemFailsIt)
{
    std::atomic<bool> ended{false};
    AThread thread;
    const Faults faults{
        {.call = platform::Call::wait_semaphore, .times = 20, .threads = Faults::Threads::caller}};
    ASSERT_TRUE(thread.start(
        [](void* context) {
            Faults::await(platform::Call::wait_semaphore, 20);
            *static_cast<std::atomic<bool>*>(context) = true;
        },
        &ended));
    thread.join();
    EXPECT_TRUE(ended);
}

} // namespace
