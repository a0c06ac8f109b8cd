#include "protocol/zavl3_client_win32.h"

#include "protocol/test_client.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace
{

using Clock = std::chrono::steady_clock;
using Events = std::vector<std::string>;

TEST(Client, StartsDownWithTheAddressOfThisMachine)
{
    TestClient client;
    EXPECT_FALSE(client.is_connected());
    EXPECT_EQ(client.server_address, 0x7F000001u);
}

TEST(Client, DestructionWithoutAStartDoesNotWait)
{
    await(in_thread([] { TestClient client; }));
}

TEST(Client, ARefusedConnectIsTriedAgainUntilAServerListens)
{
    TestClient client;
    ScriptServer server;
    server.stop_listening();
    client.start(server);
    std::this_thread::sleep_for(300ms); // a few attempts
    EXPECT_FALSE(client.is_connected());

    server.listen();
    const ScriptLink link = server.accept();
    client.events.await("up");
    EXPECT_TRUE(client.is_connected());
    EXPECT_EQ(client.events.all(), Events{"up"});
}

TEST(Client, ItConnectsAtMostTenTimesASecond)
{
    TestClient client;
    ScriptServer server;
    const auto start = Clock::now();
    client.start(server);
    for (int attempt = 1; attempt <= 5; ++attempt) {
        server.accept().close();
        EXPECT_GE(Clock::now() - start, attempt * 95ms); // clocks are not that exact
    }
}

TEST(Client, CommandsFailAtOnceOnTheCallingThreadWhileTheServerRefuses)
{
    TestClient client;
    ScriptServer server;
    server.stop_listening();
    client.start(server);

    for (int i = 0; i < 3; ++i) {
        const Completion& stop = client.issue_stop();
        ASSERT_TRUE(stop.is_over());
        EXPECT_EQ(client.issue_stop().outcome(), link_loss);
        EXPECT_EQ(stop.thread(), std::this_thread::get_id());
        std::this_thread::sleep_for(50ms);
    }
    EXPECT_EQ(client.outstanding_count(), 0u);
}

TEST(Client, ACommandAndItsReplyPass)
{
    TestClient client;
    ScriptServer server;
    ScriptLink link = client.connect(server);

    Completion& stop = client.issue_stop();
    const ReceivedCommand command = link.expect("stop");
    EXPECT_EQ(command.bytes, "<cmd>\r\n<xid>" + command.xid +
                                 "</xid>\r\n<stop>\r\n<Channel>A</Channel>\r\n</stop>\r\n</cmd>");
    EXPECT_FALSE(stop.is_over());
    link.reply_ok(command.xid);
    EXPECT_EQ(stop.outcome(), "ok");
    EXPECT_EQ(stop.thread(), client.worker);
}

TEST(Client, AServerThatClosesFailsWhatIsOutstandingAndIsConnectedAgain)
{
    TestClient client;
    ScriptServer server;
    ScriptLink link = client.connect(server);
    Completion& first = client.issue_stop();
    Completion& second = client.issue_stop();
    link.expect("stop");
    link.expect("stop");

    const auto loss = Clock::now();
    link.close();
    EXPECT_EQ(first.outcome(), link_loss);
    EXPECT_EQ(second.outcome(), link_loss);
    EXPECT_EQ(first.thread(), client.worker);

    const ScriptLink next = server.accept();
    client.events.await("up", 2);
    EXPECT_GE(Clock::now() - loss, 95ms);
    EXPECT_EQ(client.events.all(), (Events{"up", "down", "up"}));
    EXPECT_EQ(client.outstanding_count(), 0u);
}

TEST(Client, AResetByTheServerIsALossToo)
{
    TestClient client;
    ScriptServer server;
    ScriptLink link = client.connect(server);
    Completion& stop = client.issue_stop();
    link.reset();
    EXPECT_EQ(stop.outcome(), link_loss);
    const ScriptLink next = server.accept();
    client.events.await("up", 2);
}

TEST(Client, NothingOfTheOldLinkIsReplayedOnTheNew)
{
    TestClient client;
    ScriptServer server;
    ScriptLink link = client.connect(server);
    Completion& old = client.issue_stop();
    const ReceivedCommand old_command = link.expect("stop");
    link.close();
    EXPECT_EQ(old.outcome(), link_loss);

    ScriptLink next = server.accept();
    client.events.await("up", 2);
    Completion& stop = client.issue_stop();
    const ReceivedCommand command = next.expect("stop");
    EXPECT_NE(command.xid, old_command.xid);

    next.reply_ok(old_command.xid); // nobody waits for it any more
    next.reply_ok(command.xid);
    EXPECT_EQ(stop.outcome(), "ok");
    EXPECT_EQ(old.outcome(), link_loss);
}

// The order of a loss, seen by what each step finds done: closed, down, commands failed, stream
// reset, told.
class LossOrderClient : public TestClient
{
public:
    ~LossOrderClient() override { stop_worker(); }

    void on_connection_down() override
    {
        EXPECT_TRUE(command_failed);
        EXPECT_FALSE(is_stream_broken());
        EXPECT_FALSE(is_connected());
        TestClient::on_connection_down();
    }

    void on_failure(AString, ZAVL3::ErrorCode)
    {
        end_seen.get_future().wait();
        EXPECT_FALSE(is_connected());
        EXPECT_TRUE(is_stream_broken());
        EXPECT_EQ(events.count("down"), 0);
        command_failed = true;
    }

    std::promise<void> end_seen; // by the server
    bool command_failed = false;
};

TEST(Client, ALossClosesThenFailsThenResetsThenTells)
{
    LossOrderClient client;
    ScriptServer server;
    ScriptLink link = client.connect(server);
    client.issue(ZAVL3::command::stop{}, {{}, bind<&LossOrderClient::on_failure>(&client)});

    link.send(broken_stream());
    link.expect_end();
    client.end_seen.set_value();
    client.events.await("down");
    const ScriptLink next = server.accept();
    client.events.await("up", 2);
}

// Looks at itself, and sends, when the link comes up.
class GreetingClient : public TestClient
{
public:
    ~GreetingClient() override { stop_worker(); }

    void on_connection_up() override
    {
        EXPECT_TRUE(is_connected());
        issue_stop(greeting);
        TestClient::on_connection_up();
    }

    Completion greeting;
};

TEST(Client, TheLinkIsUsableWhenItIsToldToBeUp)
{
    GreetingClient client;
    ScriptServer server;
    client.start(server);
    ScriptLink link = server.accept();
    link.reply_ok(link.expect("stop").xid);
    EXPECT_EQ(client.greeting.outcome(), "ok");
    EXPECT_EQ(client.greeting.thread(), client.worker);
}

TEST(Client, AnAddressSetWhileUpIsTakenAtTheNextConnect)
{
    TestClient client;
    ScriptServer old_server;
    ScriptServer new_server;
    ScriptLink link = client.connect(old_server);

    client.set_server_address(new_server.address().number);
    Completion& stop = client.issue_stop();
    link.reply_ok(link.expect("stop").xid);
    EXPECT_EQ(stop.outcome(), "ok");

    link.close();
    const ScriptLink next = new_server.accept();
    client.events.await("up", 2);
}

TEST(Client, DestructionWhileUpLeavesTheSocketOpenAndCallsNoDelegate)
{
    Completion stop;
    ScriptServer server;
    auto client = std::make_unique<TestClient>();
    ScriptLink link = client->connect(server);
    client->issue_stop(stop);
    const ReceivedCommand command = link.expect("stop");

    client.reset();
    EXPECT_FALSE(stop.is_over());
    EXPECT_TRUE(link.is_open());
    link.reply_ok(command.xid); // it is not refused, and reaches nobody
    EXPECT_TRUE(link.is_open());
    EXPECT_FALSE(stop.is_over());
}

TEST(Client, DestructionWhileTheServerRefusesEnds)
{
    ScriptServer server;
    server.stop_listening();
    auto client = std::make_unique<TestClient>();
    client->start(server);
    std::this_thread::sleep_for(150ms);
    await(in_thread([&] { client.reset(); }));
}

// An object whose last owner is its own worker.
class SelfEndingClient : public ZAVL3::Client
{
public:
    ~SelfEndingClient() override
    {
        EXPECT_TRUE(unwound);
        destroyed_on.set_value(std::this_thread::get_id());
    }

    void on_connection_up() override { EXPECT_TRUE(is_worker_thread()); }

    void on_connection_down() override
    {
        const auto destroy = [](void* client) { delete static_cast<SelfEndingClient*>(client); };
        end_on_worker(AFunction<>(destroy, this));
        unwound = true; // nothing is destroyed yet
    }

    using Client::is_worker_thread;

    std::promise<std::thread::id> destroyed_on;
    bool unwound = false;
};

TEST(Client, AWorkerThatEndsItsOwnObjectDestroysItAsItsLastAct)
{
    ScriptServer server;
    auto* client = new SelfEndingClient;
    auto destroyed_on = client->destroyed_on.get_future();
    EXPECT_FALSE(client->is_worker_thread());
    client->set_server_address(server.address().number);
    client->start_worker(0);
    server.accept().close();
    EXPECT_NE(await(std::move(destroyed_on)), std::this_thread::get_id());
}

} // namespace
