#include "protocol/zavl3_client_win32.h"

#include "protocol/test_client.h"
#include "support/assert_watch.h"

#include <gtest/gtest.h>

namespace
{

using Events = std::vector<std::string>;

TEST(ClientPump, AnUnknownResultOfTheWaitIsReportedAndLosesTheLink)
{
    const AssertWatch watch;
    TestClient client;
    ScriptServer server;
    PumpGate& gate = client.hold_at_gate();
    ScriptLink link = client.connect(server);
    gate.await_worker();
    Completion& stop = client.issue_stop();

    gate.let_go(7);
    EXPECT_EQ(stop.outcome(), link_loss);
    client.events.await("down");
    EXPECT_EQ(watch.count(), 1u);
    EXPECT_TRUE(watch.saw("zavl3_client_win32", 197));
    EXPECT_EQ(watch.reports().front().expression, "x == SOCKET_ERROR");
    link.expect_end();
    const ScriptLink next = server.accept();
    client.events.await("up", 2);
}

TEST(ClientPump, AnErrorOfTheWaitLosesTheLinkWithoutAReport)
{
    const AssertWatch watch;
    TestClient client;
    ScriptServer server;
    PumpGate& gate = client.hold_at_gate();
    ScriptLink link = client.connect(server);
    gate.await_worker();

    gate.let_go(-1);
    client.events.await("down");
    EXPECT_EQ(watch.count(), 0u);
    link.expect_end();
}

TEST(ClientPump, AWaitThatRunsOutChangesNothing)
{
    TestClient client;
    ScriptServer server;
    PumpGate& gate = client.hold_at_gate();
    ScriptLink link = client.connect(server);
    for (int i = 0; i < 3; ++i) {
        gate.await_worker();
        gate.let_go(0);
    }
    gate.await_worker();
    EXPECT_TRUE(client.is_connected());
    EXPECT_TRUE(link.is_open());
    EXPECT_EQ(client.events.all(), Events{"up"});
}

// A broken message is found out when the next bytes arrive, and not before. It is wanted so.
TEST(ClientPump, ABrokenMessageLosesTheLinkWhenTheNextBytesArrive)
{
    TestClient client;
    ScriptServer server;
    PumpGate& gate = client.hold_at_gate();
    ScriptLink link = client.connect(server);
    gate.await_worker();
    Completion& stop = client.issue_stop();

    link.send("<reply></oops></reply>");
    gate.let_go(1);
    gate.await_worker();
    EXPECT_TRUE(client.is_connected());
    EXPECT_FALSE(client.is_stream_broken());
    EXPECT_FALSE(stop.is_over());

    link.send(" ");
    gate.let_go(1);
    EXPECT_EQ(stop.outcome(), link_loss);
    link.expect_end();
}

// A client whose keep-alive is counted, and whose worker goes step by step.
class KeepaliveClient : public TestClient
{
public:
    ~KeepaliveClient() override
    {
        gate->open();
        link.reset();
        stop_worker();
    }

    // Connects, and waits until the worker is at its first wait for input.
    void begin(ScriptServer& server, std::uint32_t period)
    {
        keepalive_period = period;
        keepalive_hook = bind<&KeepaliveClient::on_keepalive>(this);
        gate = &hold_at_gate();
        link.emplace(connect(server));
        gate->await_worker();
    }

    // One step of the worker; the number of calls that it made.
    int step()
    {
        const int before = calls;
        gate->let_go(0);
        gate->await_worker();
        return calls - before;
    }

    void on_keepalive()
    {
        ++calls;
        EXPECT_EQ(std::this_thread::get_id(), worker);
        stamp_in_call = last_keepalive;
        if (takes_link_down) {
            takes_link_down = false;
            connected = false;
        }
    }

    PumpGate* gate = nullptr;
    std::optional<ScriptLink> link;
    std::atomic<int> calls{0};
    std::int64_t stamp_in_call = 0;
    bool takes_link_down = false;
};

TEST(ClientKeepalive, IsCalledAtEveryStepWithAPeriodOfZero)
{
    KeepaliveClient client;
    ScriptServer server;
    client.begin(server, 0);
    EXPECT_EQ(client.calls, 1); // before the first wait
    EXPECT_EQ(client.step(), 1);
    EXPECT_EQ(client.step(), 1);
}

TEST(ClientKeepalive, IsCalledOnceThePeriodHasPassed)
{
    KeepaliveClient client;
    ScriptServer server;
    client.begin(server, 1000);
    EXPECT_EQ(client.step(), 0); // the link came up just now

    client.last_keepalive -= 2000;
    EXPECT_EQ(client.step(), 1);
    EXPECT_EQ(client.step(), 0); // it starts anew
}

TEST(ClientKeepalive, TakesItsTimeStampBeforeTheCall)
{
    KeepaliveClient client;
    ScriptServer server;
    client.begin(server, 1000);
    const std::int64_t old = client.last_keepalive - 2000;
    client.last_keepalive = old;
    EXPECT_EQ(client.step(), 1);
    EXPECT_GE(client.stamp_in_call, old + 2000);
    EXPECT_EQ(client.stamp_in_call, client.last_keepalive);
}

// The times are compared by their low 32 bits, without a sign.
TEST(ClientKeepalive, ComparesThirtyTwoBitsOfTheTime)
{
    constexpr std::int64_t two_to_32 = std::int64_t{1} << 32;
    KeepaliveClient client;
    ScriptServer server;
    client.begin(server, 1000);
    client.last_keepalive -= two_to_32;
    EXPECT_EQ(client.step(), 0);
    client.last_keepalive = platform::unix_time_seconds() + 500; // a clock that was set back
    EXPECT_EQ(client.step(), 1);
}

TEST(ClientKeepalive, IsNotCalledWithFourCommandsOutstanding)
{
    KeepaliveClient client;
    ScriptServer server;
    client.begin(server, 0);
    for (int outstanding = 1; outstanding <= 3; ++outstanding) {
        client.issue_stop();
        EXPECT_EQ(client.step(), 1) << outstanding;
    }
    client.issue_stop();
    EXPECT_EQ(client.step(), 0);
    client.issue_stop();
    EXPECT_EQ(client.step(), 0);
}

// The step ends there, and the worker connects anew.
TEST(ClientKeepalive, MayTakeTheLinkDown)
{
    KeepaliveClient client;
    ScriptServer server;
    client.begin(server, 0);
    client.takes_link_down = true;
    client.gate->let_go(0);
    const ScriptLink next = server.accept();
    client.gate->await_worker();
    EXPECT_EQ(client.events.all(), (Events{"up", "up"}));
}

TEST(ClientKeepalive, StartsWithTheTimeOfTheLink)
{
    TestClient client;
    ScriptServer server;
    PumpGate& gate = client.hold_at_gate();
    const std::int64_t before = platform::unix_time_seconds();
    const ScriptLink link = client.connect(server);
    gate.await_worker();
    EXPECT_GE(client.last_keepalive, before);
    EXPECT_LE(client.last_keepalive, platform::unix_time_seconds());
}

} // namespace
