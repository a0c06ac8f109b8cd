#include "protocol/zavl3_client_win32.h"

#include "protocol/test_client.h"

#include <array>

#include <gtest/gtest.h>

namespace
{

// Stands in for the send of a client: keeps what it was asked to send, and answers as it was told.
struct SendStandIn {
    struct Call {
        std::ptrdiff_t offset; // from `base`, if there is one
        std::size_t count;
        bool operator==(const Call&) const = default;
    };

    static std::ptrdiff_t send(platform::SocketHandle, const void* bytes, std::size_t count)
    {
        const auto offset = base ? static_cast<const unsigned char*>(bytes) - base : 0;
        calls.push_back({offset, count});
        return answers.at(calls.size() - 1);
    }

    static std::ptrdiff_t count_and_send(platform::SocketHandle socket, const void* bytes,
                                         std::size_t count)
    {
        calls.push_back({0, count});
        return platform::send(socket, bytes, count);
    }

    static void expect(const unsigned char* bytes, std::vector<std::ptrdiff_t> to_answer)
    {
        base = bytes;
        calls.clear();
        answers = std::move(to_answer);
    }

    static inline const unsigned char* base = nullptr;
    static inline std::vector<Call> calls;
    static inline std::vector<std::ptrdiff_t> answers;
};

using Calls = std::vector<SendStandIn::Call>;

// A client that takes its link for up and sends through the stand-in.
class ClientWrite : public testing::Test
{
protected:
    ClientWrite()
    {
        client.connected = true;
        client.send_block = &SendStandIn::send;
    }

    TestClient client;
    std::array<unsigned char, 100> memory{};
};

TEST_F(ClientWrite, AWholeBlockIsSentOnce)
{
    SendStandIn::expect(memory.data(), {10});
    client.write_bytes(memory.data(), 10);
    EXPECT_EQ(SendStandIn::calls, (Calls{{0, 10}}));
    EXPECT_FALSE(client.send_failed);
}

TEST_F(ClientWrite, NoBytesAreNotSent)
{
    SendStandIn::expect(memory.data(), {});
    client.write_bytes(memory.data(), 0);
    EXPECT_EQ(SendStandIn::calls, Calls{});
}

// The step is by what remains, not by what was sent. It is wanted so.
TEST_F(ClientWrite, AfterAShortSendThePointerStepsByWhatRemains)
{
    SendStandIn::expect(memory.data(), {4, 6});
    client.write_bytes(memory.data(), 10);
    EXPECT_EQ(SendStandIn::calls, (Calls{{0, 10}, {6, 6}}));

    SendStandIn::expect(memory.data(), {3, 5, 2});
    client.write_bytes(memory.data(), 10);
    EXPECT_EQ(SendStandIn::calls, (Calls{{0, 10}, {7, 7}, {9, 2}}));
    EXPECT_FALSE(client.send_failed);
}

TEST_F(ClientWrite, OneSendTakesAtMostTheLargestBlock)
{
    SendStandIn::expect(memory.data(), {0x7FFFFFFF, 3});
    client.write_bytes(memory.data(), 0x80000002);
    EXPECT_EQ(SendStandIn::calls, (Calls{{0, 0x7FFFFFFF}, {3, 3}}));
}

TEST_F(ClientWrite, AFailureInTheMiddleOfABlockEndsIt)
{
    SendStandIn::expect(memory.data(), {4, -1});
    client.write_bytes(memory.data(), 10);
    EXPECT_EQ(SendStandIn::calls, (Calls{{0, 10}, {6, 6}}));
    EXPECT_TRUE(client.send_failed);
}

TEST_F(ClientWrite, WhenASendHasFailedBytesAreDroppedAndEveryCommandFails)
{
    client.send_failed = true;
    SendStandIn::expect(memory.data(), {});
    Completion& stop = client.issue_stop();
    EXPECT_TRUE(stop.is_over());
    EXPECT_EQ(stop.outcome(), link_loss);
    EXPECT_EQ(stop.thread(), std::this_thread::get_id());
    EXPECT_EQ(SendStandIn::calls, Calls{});
}

TEST_F(ClientWrite, WhenTheLinkIsDownBytesAreDroppedAndEveryCommandFails)
{
    client.connected = false;
    SendStandIn::expect(memory.data(), {});
    EXPECT_EQ(client.issue_stop().outcome(), link_loss);
    EXPECT_EQ(SendStandIn::calls, Calls{});
}

class ClientFailedSend : public testing::TestWithParam<int>
{
};

// Nothing happens on the thread that sends: the worker finds it at its next step.
TEST_P(ClientFailedSend, IsCarriedOutByTheWorker)
{
    TestClient client;
    ScriptServer server;
    PumpGate& gate = client.hold_at_gate();
    ScriptLink link = client.connect(server);
    gate.await_worker();
    Completion& earlier = client.issue_stop();
    link.expect("stop");

    client.send_block = &SendStandIn::send;
    SendStandIn::expect(nullptr, {GetParam()});
    Completion& stop = client.issue_stop();
    EXPECT_TRUE(client.send_failed);
    EXPECT_TRUE(client.is_connected());
    EXPECT_FALSE(stop.is_over());
    EXPECT_FALSE(earlier.is_over());
    client.send_block = &platform::send;

    gate.let_go(0);
    EXPECT_EQ(stop.outcome(), link_loss);
    EXPECT_EQ(stop.thread(), client.worker);
    EXPECT_EQ(earlier.outcome(), link_loss);
    client.events.await("down");
    link.expect_end();

    ScriptLink next = server.accept();
    gate.await_worker();
    EXPECT_FALSE(client.send_failed);
    client.issue_stop();
    next.expect("stop");
}

INSTANTIATE_TEST_SUITE_P(MinusOneAndZero, ClientFailedSend, testing::Values(-1, 0));

// A command that meets a failed send takes everything outstanding with it, on its own thread.
TEST(Client, ACommandBehindAFailedSendFailsAllAtOnce)
{
    TestClient client;
    ScriptServer server;
    PumpGate& gate = client.hold_at_gate();
    ScriptLink link = client.connect(server);
    gate.await_worker();

    client.send_block = &SendStandIn::send;
    SendStandIn::expect(nullptr, {-1});
    Completion& first = client.issue_stop();
    EXPECT_FALSE(first.is_over());
    Completion& second = client.issue_stop();
    EXPECT_TRUE(first.is_over());
    EXPECT_TRUE(second.is_over());
    EXPECT_EQ(first.outcome(), link_loss);
    EXPECT_EQ(first.thread(), std::this_thread::get_id());
    EXPECT_EQ(second.outcome(), link_loss);
}

// Holds a writer in its send until it is let go, and then fails.
struct ParkedSend {
    static std::ptrdiff_t send(platform::SocketHandle, const void*, std::size_t)
    {
        steps->note("entered");
        steps->await("let go");
        return -1;
    }

    static inline std::optional<EventLog> steps;
};

// The number of a closed socket is soon that of another: it stays taken while somebody may send.
TEST(Client, ALossDoesNotCloseTheSocketUnderAWriter)
{
    TestClient client;
    ScriptServer server;
    ScriptLink link = client.connect(server);
    ParkedSend::steps.emplace();
    client.send_block = &ParkedSend::send;
    auto writing = in_thread([&] { return client.issue_stop().outcome(); });
    ParkedSend::steps->await("entered");

    link.send(broken_stream());
    link.expect_end(); // the worker is at its loss
    std::this_thread::sleep_for(std::chrono::milliseconds(100));
    EXPECT_TRUE(client.is_connected());
    std::vector<platform::SocketHandle> others(20);
    for (platform::SocketHandle& other : others) {
        other = platform::open_socket();
        EXPECT_NE(other, client.socket_handle);
    }

    ParkedSend::steps->note("let go");
    EXPECT_EQ(await(std::move(writing)), link_loss);
    client.events.await("down");
    for (const platform::SocketHandle other : others) {
        platform::close_socket(other);
    }
}

TEST(Client, ALongCommandGoesOutInBlocksOfAtMost1500Bytes)
{
    TestClient client;
    ScriptServer server;
    ScriptLink link = client.connect(server);
    client.send_block = &SendStandIn::count_and_send;
    SendStandIn::expect(nullptr, {});

    client.issue_delete_clip(AString("x").repeat(20000));
    const ReceivedCommand command = link.expect("delete_clip");
    EXPECT_EQ(command.bytes, "<cmd>\r\n<xid>" + command.xid +
                                 "</xid>\r\n<delete_clip>\r\n<ClipID>" + std::string(20000, 'x') +
                                 "</ClipID>\r\n</delete_clip>\r\n</cmd>");
    std::size_t sum = 0;
    for (const SendStandIn::Call& call : SendStandIn::calls) {
        EXPECT_LE(call.count, 1500u);
        sum += call.count;
    }
    EXPECT_EQ(sum, command.bytes.size());
}

} // namespace
