#include "platform/platform.h"

#include "platform/loopback.h"
#include "platform/posix/signals.h"
#include "support/await.h"

#include <chrono>
#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;
using platform::WaitResult;

constexpr std::uint32_t an_hour_ms = 3'600'000;

// What `wait` returns on a thread that is interrupted all the time. `event`, which is to end the
// wait, happens when many signals have been sent.
template <typename Wait, typename Event>
auto under_signals(Wait wait, Event event)
{
    auto waiting = in_thread([&] {
        const SignalStorm storm;
        return wait();
    });
    while (SignalStorm::sent < 50 && waiting.wait_for(1ms) != std::future_status::ready) {
    }
    event();
    return await(std::move(waiting));
}

class PosixSignals : public testing::Test
{
protected:
    void SetUp() override { SignalStorm::sent = 0; }
};

TEST_F(PosixSignals, DoNotEndAWaitForASemaphore)
{
    const std::unique_ptr<platform::Semaphore, void (*)(platform::Semaphore*)> semaphore(
        platform::create_semaphore(0, 1), &platform::destroy_semaphore);
    const auto release = [&] { platform::release_semaphore(semaphore.get()); };
    const auto wait = [&](std::uint32_t time_ms) {
        return [&, time_ms] { return platform::wait_semaphore(semaphore.get(), time_ms); };
    };
    EXPECT_EQ(under_signals(wait(platform::infinite), release), WaitResult::signalled);
    SignalStorm::sent = 0;
    EXPECT_EQ(under_signals(wait(an_hour_ms), release), WaitResult::signalled);

    const SignalStorm storm;
    const auto start = Clock::now();
    EXPECT_EQ(platform::wait_semaphore(semaphore.get(), 200), WaitResult::timed_out);
    EXPECT_GE(Clock::now() - start, 200ms);
}

TEST_F(PosixSignals, DoNotEndASleep)
{
    const SignalStorm storm;
    const auto start = Clock::now();
    platform::sleep_ms(200);
    EXPECT_GE(Clock::now() - start, 200ms);
    EXPECT_GT(SignalStorm::handled, 0);
}

TEST_F(PosixSignals, DoNotEndAWaitForBytes)
{
    Connection both;
    ASSERT_TRUE(both.connected);
    const auto send_byte = [&] { asio::write(both.server, asio::buffer("x", 1)); };
    const auto socket = both.client.handle;
    {
        const SignalStorm storm;
        const auto start = Clock::now();
        EXPECT_EQ(platform::wait_readable(socket, 200), 0);
        EXPECT_GE(Clock::now() - start, 200ms);
    }
    for (const std::uint32_t time_ms : {platform::infinite, an_hour_ms}) {
        SignalStorm::sent = 0;
        EXPECT_EQ(
            under_signals([&] { return platform::wait_readable(socket, time_ms); }, send_byte), 1);
        char byte = 0;
        EXPECT_EQ(platform::receive(socket, &byte, 1), 1);
    }
}

TEST_F(PosixSignals, AreNotSeenByReceive)
{
    Connection both;
    ASSERT_TRUE(both.connected);
    char byte = 0;
    const auto received =
        under_signals([&] { return platform::receive(both.client.handle, &byte, 1); },
                      [&] { asio::write(both.server, asio::buffer("x", 1)); });
    EXPECT_EQ(received, 1);
    EXPECT_EQ(byte, 'x');
}

TEST_F(PosixSignals, DoNotCutABlockThatIsSent)
{
    Connection both;
    ASSERT_TRUE(both.connected);
    std::vector<char> block(16 * 1024 * 1024);
    for (std::size_t i = 0; i != block.size(); ++i) {
        block[i] = static_cast<char>(i + (i >> 10));
    }
    std::vector<char> seen(block.size());
    const auto sent = under_signals(
        [&] { return platform::send(both.client.handle, block.data(), block.size()); },
        [&] { asio::read(both.server, asio::buffer(seen)); });
    EXPECT_EQ(sent, static_cast<std::ptrdiff_t>(block.size()));
    EXPECT_TRUE(seen == block);
}

// Connections that nobody accepts fill the listener's queue; the next one then waits for a place.
class FullListener
{
public:
    FullListener()
    {
        acceptor.listen(0);
        for (int i = 0; i != queue_bound; ++i) {
            asio::ip::tcp::socket& filler = fillers.emplace_back(context);
            filler.async_connect(acceptor.local_endpoint(), [](const asio::error_code&) {});
        }
        context.run_for(200ms);
    }

    std::uint16_t port() const { return acceptor.local_endpoint().port(); }

    void make_room()
    {
        fillers.clear();
        acceptor.non_blocking(true);
        asio::error_code error;
        while (!error) {
            asio::ip::tcp::socket taken(context);
            acceptor.accept(taken, error);
        }
    }

private:
    static constexpr int queue_bound = 4;

    asio::io_context context;
    asio::ip::tcp::acceptor acceptor{
        context, asio::ip::tcp::endpoint(asio::ip::address_v4(Loopback::address), 0)};
    std::vector<asio::ip::tcp::socket> fillers;
};

TEST_F(PosixSignals, DoNotEndAConnect)
{
    FullListener listener;
    const TestSocket socket;
    EXPECT_TRUE(under_signals(
        [&] { return platform::connect_socket(socket.handle, Loopback::address, listener.port()); },
        [&] { listener.make_room(); }));
    EXPECT_EQ(platform::send(socket.handle, "x", 1), 1);
}

TEST_F(PosixSignals, AreBlockedOnStartedThreadsAndNotOnTheStarter)
{
    std::promise<std::vector<int>> open;
    ASSERT_TRUE(platform::start_thread(
        [](void* context) {
            sigset_t mask;
            pthread_sigmask(SIG_SETMASK, nullptr, &mask);
            std::vector<int> not_blocked;
            for (int number = 1; number != SIGRTMIN; ++number) {
                const bool settable = number != SIGKILL && number != SIGSTOP && number < 32;
                if (settable && sigismember(&mask, number) == 0) {
                    not_blocked.push_back(number);
                }
            }
            static_cast<std::promise<std::vector<int>>*>(context)->set_value(not_blocked);
        },
        &open, 65536));
    EXPECT_EQ(await(open.get_future()), std::vector<int>());

    sigset_t mask;
    pthread_sigmask(SIG_SETMASK, nullptr, &mask);
    EXPECT_EQ(sigismember(&mask, SIGUSR1), 0);
    EXPECT_EQ(sigismember(&mask, SIGTERM), 0);
}

} // namespace
