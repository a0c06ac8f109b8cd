#include "platform/platform.h"

#include "support/await.h"

#include <atomic>
#include <chrono>
#include <cstddef>
#include <memory>

#include <gtest/gtest.h>

namespace
{

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

struct Started {
    std::promise<std::uint32_t> thread_id;
};

void tell_thread_id(void* context)
{
    static_cast<Started*>(context)->thread_id.set_value(platform::current_thread_id());
}

TEST(PlatformThread, RunsItsFunctionWithItsContextOnAnotherThread)
{
    Started started;
    ASSERT_TRUE(platform::start_thread(&tell_thread_id, &started, 65536));
    EXPECT_NE(await(started.thread_id.get_future()), platform::current_thread_id());
}

TEST(PlatformThread, StackSizeMayBeLeftToTheSystem)
{
    Started started;
    ASSERT_TRUE(platform::start_thread(&tell_thread_id, &started, 0));
    EXPECT_NE(await(started.thread_id.get_future()), platform::current_thread_id());
}

TEST(PlatformThread, StackBelowTheLeastIsRaised)
{
    Started started;
    ASSERT_TRUE(platform::start_thread(&tell_thread_id, &started, 1));
    EXPECT_NE(await(started.thread_id.get_future()), platform::current_thread_id());
}

template <std::size_t Bytes>
void fill_stack(void* context)
{
    volatile std::byte block[Bytes];
    std::size_t filled = 0;
    for (volatile std::byte& byte : block) {
        byte = std::byte{1};
        filled += std::to_integer<std::size_t>(byte);
    }
    static_cast<std::promise<std::size_t>*>(context)->set_value(filled);
}

TEST(PlatformThread, HasTheStackThatWasAskedFor)
{
    std::promise<std::size_t> small;
    ASSERT_TRUE(platform::start_thread(&fill_stack<32 * 1024>, &small, 65536));
    EXPECT_EQ(await(small.get_future()), 32u * 1024);

    constexpr std::size_t large_bytes = 24 * 1024 * 1024; // more than any default
    std::promise<std::size_t> large;
    ASSERT_TRUE(platform::start_thread(&fill_stack<large_bytes>, &large, 32 * 1024 * 1024));
    EXPECT_EQ(await(large.get_future()), large_bytes);
}

std::atomic<bool> ran{false};

TEST(PlatformThread, RefusalIsToldAndNothingRuns)
{
    const std::size_t more_than_there_is = std::size_t{1} << 48;
    EXPECT_FALSE(platform::start_thread([](void*) { ran = true; }, nullptr, more_than_there_is));
    platform::sleep_ms(50);
    EXPECT_FALSE(ran);
}

TEST(PlatformThread, IdIsOneForAThreadAndAnotherForTheNext)
{
    const std::uint32_t mine = platform::current_thread_id();
    EXPECT_NE(mine, 0u);
    EXPECT_EQ(platform::current_thread_id(), mine);

    std::promise<void> both_started;
    std::shared_future<void> go = both_started.get_future().share();
    const auto tell = [go] {
        const std::uint32_t id = platform::current_thread_id();
        go.wait(); // alive together, so that the system cannot give one id twice
        return id;
    };
    auto first = in_thread(tell);
    auto second = in_thread(tell);
    both_started.set_value();
    const std::uint32_t first_id = await(std::move(first));
    const std::uint32_t second_id = await(std::move(second));
    EXPECT_NE(first_id, mine);
    EXPECT_NE(second_id, mine);
    EXPECT_NE(first_id, second_id);
}

TEST(PlatformTime, SleepsItsWholeTime)
{
    const auto start = Clock::now();
    platform::sleep_ms(100);
    EXPECT_GE(Clock::now() - start, 80ms); // a system may count in ticks of some 15 ms
}

TEST(PlatformTime, CountsSecondsSince1970)
{
    const auto seconds = [] {
        const auto now = std::chrono::system_clock::now().time_since_epoch();
        return std::chrono::duration_cast<std::chrono::seconds>(now).count();
    };
    const std::int64_t before = seconds();
    const std::int64_t told = platform::unix_time_seconds();
    EXPECT_GE(told, before - 1); // the two clocks may be read from sources of different grain
    EXPECT_LE(told, seconds() + 1);
}

} // namespace
