#include "platform/faults.h"

#include "platform/loopback.h"
#include "support/event_log.h"
#include "support/faults.h"

#include <array>
#include <set>
#include <string>
#include <string_view>

#include <gtest/gtest.h>

// What the platform layer makes of each failure of the system, on every system.
namespace
{

using platform::Call;
using platform::ReleaseResult;
using platform::WaitResult;
using Effect = Faults::Effect;
using Threads = Faults::Threads;

// ---- The seam.

bool strikes(Call call)
{
    return platform::faults::strike(call).has_value();
}

TEST(FaultSeam, NothingStrikesThatIsNotArmed)
{
    const Faults faults{{.call = Call::send}};
    EXPECT_FALSE(strikes(Call::receive));
    EXPECT_TRUE(strikes(Call::send));
    EXPECT_FALSE(strikes(Call::send));
}

TEST(FaultSeam, CallsGoWellFirstAndThenFailSoOften)
{
    const Faults faults{{.call = Call::send, .behind = 2, .times = 2}};
    std::array<bool, 6> seen{};
    for (bool& strike : seen) {
        strike = strikes(Call::send);
    }
    EXPECT_EQ(seen, (std::array{false, false, true, true, false, false}));
    EXPECT_EQ(Faults::struck(Call::send), 2u);
}

TEST(FaultSeam, OneFaultFollowsTheOther)
{
    const Faults faults{{.call = Call::send, .effect = Effect::cut, .bytes = 7},
                        {.call = Call::send, .effect = Effect::empty, .times = Faults::for_good}};
    const auto first = platform::faults::strike(Call::send);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->effect, Effect::cut);
    EXPECT_EQ(first->bytes, 7u);
    for (int i = 0; i != 100; ++i) {
        const auto later = platform::faults::strike(Call::send);
        ASSERT_TRUE(later);
        EXPECT_EQ(later->effect, Effect::empty);
    }
}

TEST(FaultSeam, ConcernsTheThreadsThatWereAskedFor)
{
    const Faults faults{{.call = Call::send, .threads = Threads::caller},
                        {.call = Call::receive, .threads = Threads::others}};
    const auto elsewhere = [](Call call) {
        return await(in_thread([=] { return strikes(call); }));
    };
    EXPECT_FALSE(elsewhere(Call::send));
    EXPECT_TRUE(strikes(Call::send));
    EXPECT_FALSE(strikes(Call::receive));
    EXPECT_TRUE(elsewhere(Call::receive));
}

TEST(FaultSeam, IsWholeAgainWhenTheTestIsOver)
{
    {
        const Faults faults{{.call = Call::send, .times = Faults::for_good}};
        EXPECT_TRUE(strikes(Call::send));
    }
    EXPECT_FALSE(strikes(Call::send));
    EXPECT_EQ(Faults::struck(Call::send), 0u);
}

TEST(FaultSeam, EachCallHasItsName)
{
    EXPECT_EQ(platform::call_names[static_cast<std::size_t>(Call::wall_clock)], "wall_clock");
    const std::set<std::string_view> names(platform::call_names.begin(),
                                           platform::call_names.end());
    EXPECT_EQ(names.size(), platform::call_names.size());
}

// ---- Sockets.

class SocketFaults : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(both.connected); }

    bool send(std::string_view text)
    {
        return platform::send(socket, text.data(), text.size()) ==
               static_cast<std::ptrdiff_t>(text.size());
    }

    // What has come to the server, of so many bytes at most.
    std::string arrived(std::size_t count)
    {
        std::string text(count, '\0');
        asio::error_code error;
        text.resize(asio::read(both.server, asio::buffer(text), error));
        return text;
    }

    void answer(std::string_view text) { asio::write(both.server, asio::buffer(text)); }

    std::string receive()
    {
        char block[64];
        const auto count = platform::receive(socket, block, sizeof block);
        return count < 0 ? "failed" : std::string(block, static_cast<std::size_t>(count));
    }

    Connection both;
    platform::SocketHandle socket = both.client.handle;
    Faults faults;
};

TEST(SocketCreationFaults, OutOfDescriptorsThereIsNoSocket)
{
    platform::start_sockets();
    const Faults faults{{.call = Call::open_socket}};
    EXPECT_EQ(platform::open_socket(), platform::invalid_socket);
    const TestSocket next;
    EXPECT_NE(next.handle, platform::invalid_socket);
}

TEST(SocketCreationFaults, AConnectThatFailsIsTold)
{
    Loopback listener;
    const TestSocket socket;
    const Faults faults{{.call = Call::connect}};
    EXPECT_FALSE(platform::connect_socket(socket.handle, Loopback::address, listener.port()));
    EXPECT_TRUE(platform::connect_socket(socket.handle, Loopback::address, listener.port()));
}

TEST_F(SocketFaults, AnOptionThatIsNotSetIsPassedOver)
{
    faults.arm({.call = Call::set_option});
    platform::set_no_delay(socket);
    EXPECT_EQ(Faults::struck(Call::set_option), 1u);
    ASSERT_TRUE(send("abc"));
    EXPECT_EQ(arrived(3), "abc");
}

TEST_F(SocketFaults, AWaitThatFailsIsTold)
{
    answer("x");
    faults.arm({.call = Call::wait_ready});
    EXPECT_EQ(platform::wait_readable(socket, 60'000), -1);
    EXPECT_EQ(platform::wait_readable(socket, 60'000), 1);
}

TEST_F(SocketFaults, AReceiveThatFailsIsTold)
{
    answer("abc");
    faults.arm({.call = Call::receive});
    EXPECT_EQ(receive(), "failed");
}

TEST_F(SocketFaults, AReceiveOfNothingIsTheEnd)
{
    answer("abc");
    faults.arm({.call = Call::receive, .effect = Effect::empty});
    EXPECT_EQ(receive(), "");
}

TEST_F(SocketFaults, AShortReceiveLeavesTheRest)
{
    answer("abcdef");
    faults.arm({.call = Call::receive, .effect = Effect::cut, .bytes = 2});
    EXPECT_EQ(receive(), "ab");
    EXPECT_EQ(receive(), "cdef");
}

TEST_F(SocketFaults, AnyPartOfABlockMayBeTakenFirst)
{
    const std::string_view block = "0123456789";
    for (std::size_t part = 1; part <= block.size() + 1; ++part) {
        faults.arm({.call = Call::send, .effect = Effect::cut, .bytes = part});
        ASSERT_TRUE(send(block));
        ASSERT_EQ(arrived(block.size()), block) << "after " << part;
    }
}

TEST_F(SocketFaults, ABlockMayGoByteByByte)
{
    const std::string block(1500, 'b');
    faults.arm({.call = Call::send, .effect = Effect::cut, .times = Faults::for_good});
    ASSERT_TRUE(send(block));
    EXPECT_EQ(Faults::struck(Call::send), block.size());
    EXPECT_EQ(arrived(block.size()), block);
}

TEST_F(SocketFaults, ASendMayFailAtItsSecondStep)
{
    faults.arm({.call = Call::send, .effect = Effect::cut, .bytes = 3});
    faults.arm({.call = Call::send});
    EXPECT_EQ(platform::send(socket, "abcdef", 6), -1);
    both.client.close();
    EXPECT_EQ(arrived(6), "abc");
}

TEST_F(SocketFaults, ASendThatTakesNothingFails)
{
    faults.arm({.call = Call::send, .effect = Effect::empty});
    EXPECT_EQ(platform::send(socket, "abc", 3), -1);
}

TEST_F(SocketFaults, AShutdownThatFailsLeavesTheConnection)
{
    faults.arm({.call = Call::shut_down});
    platform::abort_socket(socket);
    ASSERT_EQ(Faults::struck(Call::shut_down), 1u);
    EXPECT_TRUE(send("abc"));
    platform::abort_socket(socket);
    EXPECT_FALSE(send("abc"));
}

TEST_F(SocketFaults, ACloseThatFailsHasClosed)
{
    faults.arm({.call = Call::close_socket});
    both.client.close();
    EXPECT_EQ(Faults::struck(Call::close_socket), 1u);
    EXPECT_EQ(arrived(1), "");
}

// ---- Mutexes and semaphores.

TEST(MutexFaults, OneThatIsNotCreatedIsNull)
{
    const Faults faults{{.call = Call::create_mutex}};
    EXPECT_EQ(platform::create_mutex(), nullptr);
    platform::Mutex* next = platform::create_mutex();
    EXPECT_NE(next, nullptr);
    platform::destroy_mutex(next);
}

// Comes to an end only if no other thread holds it.
WaitResult lock_elsewhere(platform::Mutex* mutex)
{
    return await(in_thread([=] {
        const WaitResult result = platform::lock_mutex(mutex);
        platform::unlock_mutex(mutex);
        return result;
    }));
}

TEST(MutexFaults, ALockThatFailsIsToldAndNotHeld)
{
    platform::Mutex* mutex = platform::create_mutex();
    const Faults faults{{.call = Call::lock_mutex}};
    EXPECT_EQ(platform::lock_mutex(mutex), WaitResult::failed);
    EXPECT_EQ(lock_elsewhere(mutex), WaitResult::signalled);
    platform::destroy_mutex(mutex);
}

TEST(MutexFaults, WhatIsLetGoIsGoneEvenIfThatFails)
{
    platform::Mutex* mutex = platform::create_mutex();
    const Faults faults{{.call = Call::unlock_mutex}, {.call = Call::destroy_mutex}};
    platform::lock_mutex(mutex);
    platform::unlock_mutex(mutex);
    EXPECT_EQ(Faults::struck(Call::unlock_mutex), 1u);
    EXPECT_EQ(lock_elsewhere(mutex), WaitResult::signalled);
    platform::destroy_mutex(mutex);
    EXPECT_EQ(Faults::struck(Call::destroy_mutex), 1u);
}

TEST(SemaphoreFaults, OneThatIsNotCreatedIsNull)
{
    const Faults faults{{.call = Call::create_semaphore}};
    EXPECT_EQ(platform::create_semaphore(1, 1), nullptr);
    platform::Semaphore* next = platform::create_semaphore(1, 1);
    EXPECT_NE(next, nullptr);
    platform::destroy_semaphore(next);
}

TEST(SemaphoreFaults, AWaitThatFailsIsToldAndTakesNothing)
{
    platform::Semaphore* semaphore = platform::create_semaphore(1, 1);
    for (const std::uint32_t time_ms : {0u, 60'000u, platform::infinite}) {
        const Faults faults{{.call = Call::wait_semaphore}};
        EXPECT_EQ(platform::wait_semaphore(semaphore, time_ms), WaitResult::failed);
    }
    EXPECT_EQ(platform::wait_semaphore(semaphore, 0), WaitResult::signalled);
    EXPECT_EQ(platform::wait_semaphore(semaphore, 0), WaitResult::timed_out);
    platform::destroy_semaphore(semaphore);
}

TEST(SemaphoreFaults, AReleaseThatFailsIsToldAndGivesNothing)
{
    platform::Semaphore* semaphore = platform::create_semaphore(0, 1);
    const Faults faults{{.call = Call::release_semaphore}};
    EXPECT_EQ(platform::release_semaphore(semaphore), ReleaseResult::failed);
    EXPECT_EQ(platform::wait_semaphore(semaphore, 0), WaitResult::timed_out);
    EXPECT_EQ(platform::release_semaphore(semaphore), ReleaseResult::released);
    EXPECT_EQ(platform::wait_semaphore(semaphore, 0), WaitResult::signalled);
    platform::destroy_semaphore(semaphore);
}

TEST(SemaphoreFaults, WhatIsLetGoIsGoneEvenIfThatFails)
{
    const Faults faults{{.call = Call::destroy_semaphore}};
    platform::destroy_semaphore(platform::create_semaphore(0, 1));
    EXPECT_EQ(Faults::struck(Call::destroy_semaphore), 1u);
}

// ---- Threads and time.

TEST(ThreadFaults, OneThatIsNotStartedIsToldAndNeverRuns)
{
    EventLog log;
    const auto note = [](void* context) { static_cast<EventLog*>(context)->note("ran"); };
    const Faults faults{{.call = Call::start_thread}};
    EXPECT_FALSE(platform::start_thread(note, &log, 65536));
    ASSERT_TRUE(platform::start_thread(note, &log, 65536));
    log.await("ran");
    EXPECT_EQ(log.count("ran"), 1);
}

TEST(TimeFaults, AWallClockThatFailsIsBeforeAllTimes)
{
    const Faults faults{{.call = Call::wall_clock}};
    EXPECT_EQ(platform::unix_time_seconds(), -1);
    EXPECT_GT(platform::unix_time_seconds(), 0);
}

} // namespace
