#include "platform/platform.h"

#include "platform/loopback.h"
#include "support/await.h"

#include <atomic>
#include <chrono>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

class PlatformSocket : public testing::Test
{
protected:
    void SetUp() override { ASSERT_TRUE(connected); }

    Connection both;
    bool connected = both.connected;
    platform::SocketHandle socket = both.client.handle;
    asio::ip::tcp::socket& server = both.server;
};

void write(asio::ip::tcp::socket& peer, std::string_view text)
{
    asio::write(peer, asio::buffer(text));
}

std::string receive_exactly(platform::SocketHandle socket, std::size_t count)
{
    std::string text(count, '\0');
    std::size_t received = 0;
    while (received != count) {
        const auto step = platform::receive(socket, text.data() + received, count - received);
        if (step <= 0) {
            break;
        }
        received += static_cast<std::size_t>(step);
    }
    text.resize(received);
    return text;
}

// Every byte differs from its neighbours and from the same byte of the next KB.
std::vector<std::uint8_t> pattern(std::size_t count)
{
    std::vector<std::uint8_t> bytes(count);
    for (std::size_t i = 0; i != count; ++i) {
        bytes[i] = static_cast<std::uint8_t>(i + (i >> 10));
    }
    return bytes;
}

TEST(PlatformSocketConnect, IsRefusedWhereNobodyListens)
{
    Loopback listener;
    const std::uint16_t port = listener.port();
    listener.stop_listening();
    const TestSocket socket;
    ASSERT_NE(socket.handle, platform::invalid_socket);
    EXPECT_FALSE(platform::connect_socket(socket.handle, Loopback::address, port));
}

TEST(PlatformSocketConnect, InvalidSocketFailsEveryCall)
{
    platform::start_sockets();
    const Loopback listener;
    const platform::SocketHandle none = platform::invalid_socket;
    char byte = 'x';
    EXPECT_FALSE(platform::connect_socket(none, Loopback::address, listener.port()));
    EXPECT_EQ(platform::wait_readable(none, 0), -1);
    EXPECT_EQ(platform::wait_readable(none, platform::infinite), -1);
    EXPECT_EQ(platform::receive(none, &byte, 1), -1);
    EXPECT_EQ(platform::send(none, &byte, 1), -1);
    platform::set_no_delay(none);
    platform::abort_socket(none);
    platform::close_socket(none);
}

TEST_F(PlatformSocket, BytesGoOutAndComeBack)
{
    platform::set_no_delay(socket);
    const std::string text("there and back\0again", 20);
    ASSERT_EQ(platform::send(socket, text.data(), text.size()),
              static_cast<std::ptrdiff_t>(text.size()));
    std::string seen(text.size(), '\0');
    asio::read(server, asio::buffer(seen));
    EXPECT_EQ(seen, text);
    write(server, seen);
    EXPECT_EQ(receive_exactly(socket, text.size()), text);
}

TEST_F(PlatformSocket, ReceiveGivesWhatIsThereUpToItsCount)
{
    write(server, "abcdef");
    EXPECT_EQ(receive_exactly(socket, 4), "abcd");
    char block[2048];
    EXPECT_EQ(platform::receive(socket, block, sizeof block), 2);
    EXPECT_EQ(std::string_view(block, 2), "ef");
}

TEST_F(PlatformSocket, EndOfTheStreamIsReadableAndGivesZero)
{
    write(server, "x");
    server.shutdown(asio::socket_base::shutdown_send);
    EXPECT_EQ(receive_exactly(socket, 1), "x");
    char block[16];
    EXPECT_EQ(platform::wait_readable(socket, 60'000), 1);
    EXPECT_EQ(platform::receive(socket, block, sizeof block), 0);
}

TEST_F(PlatformSocket, ResetByThePeerIsReadableAndGivesNothing)
{
    both.reset_server();
    char block[16];
    EXPECT_EQ(platform::wait_readable(socket, 60'000), 1);
    EXPECT_LE(platform::receive(socket, block, sizeof block), 0);
}

TEST_F(PlatformSocket, WaitsItsWholeTimeForNothing)
{
    EXPECT_EQ(platform::wait_readable(socket, 0), 0);
    const auto start = Clock::now();
    EXPECT_EQ(platform::wait_readable(socket, 100), 0);
    EXPECT_GE(Clock::now() - start, 80ms); // a system may count in ticks of some 15 ms
}

TEST_F(PlatformSocket, BytesEndTheWait)
{
    auto waiter = in_thread([&] { return platform::wait_readable(socket, 3'600'000); });
    std::this_thread::sleep_for(20ms);
    write(server, "x");
    EXPECT_EQ(await(std::move(waiter)), 1);
    EXPECT_EQ(platform::wait_readable(socket, platform::infinite), 1) << "nothing was read";
    EXPECT_EQ(receive_exactly(socket, 1), "x");
    EXPECT_EQ(platform::wait_readable(socket, 0), 0);
}

TEST_F(PlatformSocket, SendOfNothingIsDoneAtOnce)
{
    EXPECT_EQ(platform::send(socket, nullptr, 0), 0);
}

TEST_F(PlatformSocket, SendTakesABlockThatNoBufferHolds)
{
    const std::vector<std::uint8_t> block = pattern(24 * 1024 * 1024);
    auto sender = in_thread([&] { return platform::send(socket, block.data(), block.size()); });

    std::vector<std::uint8_t> seen(block.size());
    std::size_t read = 0;
    for (int pause = 0; pause != 5; ++pause) { // a slow reader at first
        std::this_thread::sleep_for(20ms);
        read += server.read_some(asio::buffer(seen.data() + read, seen.size() - read));
    }
    asio::read(server, asio::buffer(seen.data() + read, seen.size() - read));
    EXPECT_EQ(await(std::move(sender)), static_cast<std::ptrdiff_t>(block.size()));
    EXPECT_TRUE(seen == block);
}

// Sends until the peer, which does not read, lets no more through.
class BlockedSender
{
public:
    explicit BlockedSender(platform::SocketHandle socket)
        : result(in_thread([this, socket] {
              const std::vector<std::uint8_t> block = pattern(1024 * 1024);
              for (;;) {
                  const auto sent = platform::send(socket, block.data(), block.size());
                  if (sent != static_cast<std::ptrdiff_t>(block.size())) {
                      return sent;
                  }
                  ++blocks;
              }
          }))
    {
    }

    void wait_until_blocked() const
    {
        for (int before = -1, now = blocks; before != now;) {
            before = now;
            std::this_thread::sleep_for(300ms);
            now = blocks;
        }
    }

    std::atomic<int> blocks{0};
    std::future<std::ptrdiff_t> result; // last, since its thread uses the rest
};

TEST_F(PlatformSocket, AbortWakesABlockedSender)
{
    BlockedSender sender(socket);
    sender.wait_until_blocked();
    platform::abort_socket(socket);
    EXPECT_EQ(await(std::move(sender.result)), -1);
}

// It may be on its way into the system, inside, or on its way out.
TEST(PlatformSocketAbort, EndsASenderAtWhateverMoment)
{
    for (int round = 0; round != 40; ++round) {
        const Connection both;
        ASSERT_TRUE(both.connected);
        BlockedSender sender(both.client.handle);
        for (auto until = Clock::now() + round * 50us; Clock::now() < until;) {
        }
        platform::abort_socket(both.client.handle);
        ASSERT_EQ(await(std::move(sender.result)), -1) << round;
    }
}

TEST_F(PlatformSocket, LossOfThePeerWakesABlockedSender)
{
    BlockedSender sender(socket);
    sender.wait_until_blocked();
    both.reset_server();
    EXPECT_EQ(await(std::move(sender.result)), -1);
}

TEST_F(PlatformSocket, NothingIsSentBehindAnAbort)
{
    platform::abort_socket(socket);
    EXPECT_EQ(platform::send(socket, "x", 1), -1);
    EXPECT_EQ(platform::send(socket, "x", 1), -1);
    both.client.close();
    char byte = 0;
    asio::error_code error;
    EXPECT_EQ(server.read_some(asio::buffer(&byte, 1), error), 0u);
    EXPECT_TRUE(error) << "the peer sees the end of the connection";
}

TEST_F(PlatformSocket, SendToADeadPeerFailsAndTheProcessGoesOn)
{
    both.reset_server();
    const auto bound = Clock::now() + hang_bound;
    std::ptrdiff_t sent = 1;
    while (sent == 1 && Clock::now() < bound) {
        sent = platform::send(socket, "x", 1); // one can go out before the reset is known
        std::this_thread::sleep_for(1ms);
    }
    EXPECT_EQ(sent, -1);
    EXPECT_EQ(platform::send(socket, "x", 1), -1);
}

TEST_F(PlatformSocket, CloseEndsTheStreamOfThePeer)
{
    ASSERT_EQ(platform::send(socket, "bye", 3), 3);
    both.client.close();
    std::string seen;
    asio::error_code error;
    asio::read(server, asio::dynamic_buffer(seen), error);
    EXPECT_EQ(seen, "bye");
    EXPECT_EQ(error, asio::error::eof);
}

} // namespace
