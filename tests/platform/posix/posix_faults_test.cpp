#include "platform/faults.h"

#include "platform/loopback.h"
#include "support/event_log.h"
#include "support/faults.h"

#include <signal.h>

#include <gtest/gtest.h>

namespace
{

using platform::Call;
using platform::WaitResult;
using Effect = Faults::Effect;
using Clock = std::chrono::steady_clock;
using namespace std::chrono_literals;

constexpr std::uint32_t an_hour_ms = 3'600'000;

// ---- Interruptions.

Faults::Fault interrupted(Call call)
{
    return {.call = call, .effect = Effect::interrupted, .times = 3};
}

bool connects()
{
    Loopback listener;
    const TestSocket socket;
    return platform::connect_socket(socket.handle, Loopback::address, listener.port());
}

TEST(PosixInterruptions, AConnectGoesOn)
{
    const Faults faults{{.call = Call::connect, .effect = Effect::interrupted},
                        interrupted(Call::wait_ready)};
    EXPECT_TRUE(connects());
    EXPECT_EQ(Faults::struck(Call::connect), 1u);
    EXPECT_EQ(Faults::struck(Call::wait_ready), 3u);
}

TEST(PosixInterruptions, AConnectWhoseEndCannotBeWaitedForHasFailed)
{
    const Faults faults{{.call = Call::connect, .effect = Effect::interrupted},
                        {.call = Call::wait_ready}};
    EXPECT_FALSE(connects());
}

TEST(PosixInterruptions, AConnectWhoseResultIsNotToldHasFailed)
{
    const Faults faults{{.call = Call::connect, .effect = Effect::interrupted},
                        {.call = Call::connect_result}};
    EXPECT_FALSE(connects());
}

TEST(PosixInterruptions, AWaitForBytesGoesOn)
{
    Connection both;
    ASSERT_TRUE(both.connected);
    asio::write(both.server, asio::buffer("x", 1));
    for (const std::uint32_t time_ms : {an_hour_ms, platform::infinite}) {
        const Faults faults{interrupted(Call::wait_ready)};
        EXPECT_EQ(platform::wait_readable(both.client.handle, time_ms), 1);
        EXPECT_EQ(Faults::struck(Call::wait_ready), 3u);
    }
}

TEST(PosixInterruptions, AReceiveIsMadeAgain)
{
    Connection both;
    ASSERT_TRUE(both.connected);
    asio::write(both.server, asio::buffer("x", 1));
    const Faults faults{interrupted(Call::receive)};
    char byte = 0;
    EXPECT_EQ(platform::receive(both.client.handle, &byte, 1), 1);
    EXPECT_EQ(byte, 'x');
    EXPECT_EQ(Faults::struck(Call::receive), 3u);
}

TEST(PosixInterruptions, ASendGoesOnWhereItWas)
{
    Connection both;
    ASSERT_TRUE(both.connected);
    const Faults faults{{.call = Call::send, .effect = Effect::cut, .bytes = 2},
                        interrupted(Call::send),
                        {.call = Call::send, .effect = Effect::cut, .bytes = 1},
                        interrupted(Call::send)};
    EXPECT_EQ(platform::send(both.client.handle, "abcdef", 6), 6);
    EXPECT_EQ(Faults::struck(Call::send), 8u);
    std::string seen(6, '\0');
    asio::read(both.server, asio::buffer(seen));
    EXPECT_EQ(seen, "abcdef");
}

TEST(PosixInterruptions, AWaitForASemaphoreGoesOn)
{
    platform::Semaphore* semaphore = platform::create_semaphore(3, 3);
    for (const std::uint32_t time_ms : {0u, an_hour_ms, platform::infinite}) {
        const Faults faults{interrupted(Call::wait_semaphore)};
        EXPECT_EQ(platform::wait_semaphore(semaphore, time_ms), WaitResult::signalled);
        EXPECT_EQ(Faults::struck(Call::wait_semaphore), 3u);
    }
    platform::destroy_semaphore(semaphore);
}

TEST(PosixInterruptions, ASleepLastsItsTime)
{
    const Faults faults{interrupted(Call::sleep)};
    const auto start = Clock::now();
    platform::sleep_ms(50);
    EXPECT_GE(Clock::now() - start, 50ms);
    EXPECT_EQ(Faults::struck(Call::sleep), 3u);
}

// ---- What a mutex and a thread are made of: each step of that fails once.

TEST(PosixMutexFaults, WithoutAttributesThereIsNoMutex)
{
    for (const std::uint64_t step : {0u, 1u}) { // to make them, to set them
        const Faults faults{{.call = Call::mutex_attributes, .behind = step}};
        EXPECT_EQ(platform::create_mutex(), nullptr) << step;
    }
    const Faults faults{{.call = Call::mutex_attributes, .behind = 2}}; // to let them go
    platform::Mutex* mutex = platform::create_mutex();
    EXPECT_NE(mutex, nullptr);
    EXPECT_EQ(Faults::struck(Call::mutex_attributes), 1u);
    platform::destroy_mutex(mutex);
}

class PosixThreadFaults : public testing::Test
{
protected:
    bool starts()
    {
        const auto note = [](void* context) { static_cast<EventLog*>(context)->note("ran"); };
        const bool started = platform::start_thread(note, &log, 65536);
        if (started) {
            log.await("ran", ++runs);
        }
        return started;
    }

    EventLog log;
    std::ptrdiff_t runs = 0;
};

TEST_F(PosixThreadFaults, WithoutItsAttributesNoneIsStarted)
{
    for (const std::uint64_t step : {0u, 1u, 2u}) { // to make them, detached, with a stack
        const Faults faults{{.call = Call::thread_attributes, .behind = step}};
        EXPECT_FALSE(starts()) << step;
    }
    const Faults faults{{.call = Call::thread_attributes, .behind = 3}}; // to let them go
    EXPECT_TRUE(starts());
    EXPECT_EQ(Faults::struck(Call::thread_attributes), 1u);
    EXPECT_EQ(log.count("ran"), 1);
}

TEST_F(PosixThreadFaults, WithoutTheLimitsOfAStackNoneIsStarted)
{
    for (const std::uint64_t step : {0u, 1u}) {
        const Faults faults{{.call = Call::stack_limits, .behind = step}};
        EXPECT_FALSE(starts()) << step;
    }
    EXPECT_TRUE(starts());
}

// On a thread with signals open, a handler of the application could run.
TEST_F(PosixThreadFaults, WhereSignalsCannotBeBlockedNoneIsStarted)
{
    {
        const Faults faults{{.call = Call::signal_mask}};
        EXPECT_FALSE(starts());
    }
    sigset_t mask;
    pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    EXPECT_EQ(sigismember(&mask, SIGUSR1), 0);
    EXPECT_TRUE(starts());
}

TEST_F(PosixThreadFaults, AMaskThatIsRestoredWithAFailureIsRestored)
{
    const Faults faults{{.call = Call::signal_mask, .behind = 1}};
    EXPECT_TRUE(starts());
    EXPECT_EQ(Faults::struck(Call::signal_mask), 1u);
    sigset_t mask;
    pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    EXPECT_EQ(sigismember(&mask, SIGUSR1), 0);
}

TEST_F(PosixThreadFaults, AThreadWithoutAnIdHasOneThatIsNotZero)
{
    const Faults faults{{.call = Call::thread_id}};
    EXPECT_NE(await(in_thread([] { return platform::current_thread_id(); })), 0u);
    EXPECT_EQ(Faults::struck(Call::thread_id), 1u);
}

// ---- Time.

TEST(PosixTimeFaults, ASleepThatFailsIsOver)
{
    const Faults faults{{.call = Call::sleep}};
    platform::sleep_ms(an_hour_ms);
    EXPECT_EQ(Faults::struck(Call::sleep), 1u);
}

TEST(PosixTimeFaults, AYieldThatFailsIsPassedOver)
{
    const Faults faults{{.call = Call::yield}};
    platform::yield_thread();
    EXPECT_EQ(Faults::struck(Call::yield), 1u);
}

TEST(PosixTimeFaults, WithoutAClockAWaitForASemaphoreIsOver)
{
    platform::Semaphore* semaphore = platform::create_semaphore(1, 1);
    const Faults faults{{.call = Call::monotonic_clock, .times = Faults::for_good}};
    EXPECT_EQ(platform::wait_semaphore(semaphore, an_hour_ms), WaitResult::signalled);
    EXPECT_EQ(platform::wait_semaphore(semaphore, an_hour_ms), WaitResult::timed_out);
    platform::destroy_semaphore(semaphore);
}

TEST(PosixTimeFaults, WithoutAClockAWaitForBytesIsNotDrawnOut)
{
    Connection both;
    ASSERT_TRUE(both.connected);
    for (const std::uint64_t step : {0u, 1u}) { // for the deadline, for what is left
        const Faults faults{
            {.call = Call::monotonic_clock, .behind = step, .times = Faults::for_good},
            {.call = Call::wait_ready, .effect = Effect::interrupted}};
        EXPECT_EQ(platform::wait_readable(both.client.handle, an_hour_ms), 0) << step;
        EXPECT_GE(Faults::struck(Call::monotonic_clock), 1u);
    }
}

} // namespace
