#include "protocol/zavl3_client_win32.h"

#include "protocol/test_client.h"
#include "support/faults.h"

#include <gtest/gtest.h>

// What becomes of a link when the system fails under it.
namespace
{

using platform::Call;
using Effect = Faults::Effect;
using Threads = Faults::Threads;
using Events = std::vector<std::string>;

class ClientFaults : public testing::Test
{
protected:
    // The worker's first connects fail, and a later one does not.
    void expect_link_after(Call call)
    {
        faults.arm({.call = call, .times = 3, .threads = Threads::others});
        const ScriptLink link = client.connect(server);
        EXPECT_EQ(Faults::struck(call), 3u);
        EXPECT_EQ(client.events.all(), Events{"up"});
    }

    // Loses the link, with what is outstanding, and has the next one.
    void expect_loss_by(const Faults::Fault& fault)
    {
        ScriptLink link = client.connect(server);
        Completion& lost = client.issue_stop();
        link.expect("stop");
        faults.arm(fault);
        link.send(" "); // ends the worker's wait
        EXPECT_EQ(lost.outcome(), link_loss);
        const ScriptLink next = expect_good_link(server.accept());
        EXPECT_EQ(client.events.all(), (Events{"up", "down", "up"}));
    }

    ScriptLink expect_good_link(ScriptLink link)
    {
        client.events.await("up", 2);
        Completion& next = client.issue_stop();
        link.reply_ok(link.expect("stop").xid);
        EXPECT_EQ(next.outcome(), "ok");
        return link;
    }

    TestClient client;
    ScriptServer server;
    Faults faults;
};

TEST_F(ClientFaults, OutOfDescriptorsItTriesAgain)
{
    expect_link_after(Call::open_socket);
}

TEST_F(ClientFaults, AfterAConnectThatFailsItTriesAgain)
{
    expect_link_after(Call::connect);
}

TEST_F(ClientFaults, WithoutItsOptionTheLinkIsUpAllTheSame)
{
    faults.arm({.call = Call::set_option, .threads = Threads::others});
    const ScriptLink link = client.connect(server);
    EXPECT_EQ(Faults::struck(Call::set_option), 1u);
}

TEST_F(ClientFaults, AWaitThatFailsLosesTheLink)
{
    expect_loss_by({.call = Call::wait_ready, .threads = Threads::others});
}

TEST_F(ClientFaults, AReceiveThatFailsLosesTheLink)
{
    expect_loss_by({.call = Call::receive, .threads = Threads::others});
}

TEST_F(ClientFaults, AReceiveOfNothingLosesTheLink)
{
    expect_loss_by({.call = Call::receive, .effect = Effect::empty, .threads = Threads::others});
}

TEST_F(ClientFaults, ALossGoesOnWhereShutdownAndCloseFail)
{
    faults.arm({.call = Call::shut_down, .threads = Threads::others});
    faults.arm({.call = Call::close_socket, .threads = Threads::others});
    expect_loss_by({.call = Call::receive, .threads = Threads::others});
    EXPECT_EQ(Faults::struck(Call::shut_down), 1u);
    EXPECT_EQ(Faults::struck(Call::close_socket), 1u);
}

TEST_F(ClientFaults, RepliesMayComeByteByByte)
{
    ScriptLink link = client.connect(server);
    faults.arm({.call = Call::receive,
                .effect = Effect::cut,
                .times = Faults::for_good,
                .threads = Threads::others});
    Completion& stop = client.issue_stop();
    link.reply_ok(link.expect("stop").xid);
    EXPECT_EQ(stop.outcome(), "ok");
    EXPECT_GT(Faults::struck(Call::receive), 20u);
}

TEST_F(ClientFaults, CommandsMayGoByteByByte)
{
    ScriptLink link = client.connect(server);
    faults.arm({.call = Call::send, .effect = Effect::cut, .times = Faults::for_good});
    Completion& stop = client.issue_stop();
    const ReceivedCommand command = link.expect("stop");
    EXPECT_EQ(Faults::struck(Call::send), command.bytes.size());
    link.reply_ok(command.xid);
    EXPECT_EQ(stop.outcome(), "ok");
}

// Half a command never meets the next link, at whichever send it breaks off.
TEST_F(ClientFaults, ASendThatFailsLosesTheLinkAndTheCommand)
{
    ScriptLink link = client.connect(server);
    faults.arm(
        {.call = Call::send, .effect = Effect::cut, .bytes = 10, .threads = Threads::caller});
    faults.arm({.call = Call::send, .threads = Threads::caller});
    Completion& lost = client.issue_stop();
    link.send(" "); // ends the worker's wait
    EXPECT_EQ(lost.outcome(), link_loss);
    std::string half;
    for (std::string bytes = link.receive(); !bytes.empty(); bytes = link.receive()) {
        half += bytes;
    }
    EXPECT_EQ(half.size(), 10u);
    expect_good_link(server.accept());
}

TEST_F(ClientFaults, AnUnreliableWallClockDoesNotTouchTheLink)
{
    faults.arm({.call = Call::wall_clock, .times = Faults::for_good});
    ScriptLink link = client.connect(server);
    Completion& stop = client.issue_stop();
    link.reply_ok(link.expect("stop").xid);
    EXPECT_EQ(stop.outcome(), "ok");
    EXPECT_GE(Faults::struck(Call::wall_clock), 1u);
}

TEST_F(ClientFaults, AWorkerThatIsNotStartedLeavesTheLinkDown)
{
    faults.arm({.call = Call::start_thread});
    client.start(server);
    EXPECT_EQ(Faults::struck(Call::start_thread), 1u);
    EXPECT_FALSE(client.is_connected());
    const Completion& stop = client.issue_stop();
    EXPECT_TRUE(stop.is_over()); // at once: the link is down

    const ScriptLink link = client.connect(server); // when there are threads again
    EXPECT_TRUE(client.is_connected());
}

struct StoppableClient : TestClient {
    using TestClient::stop_worker;
};

TEST(ClientThreadFaults, TheEndWaitsForAWorkerThatIsNotStarted)
{
    const Faults faults{{.call = Call::start_thread}};
    StoppableClient client;
    client.start_worker(0);
    EXPECT_EQ(Faults::struck(Call::start_thread), 1u);
    auto end = in_thread([&] { client.stop_worker(); });
    EXPECT_EQ(end.wait_for(std::chrono::milliseconds(50)), std::future_status::timeout);
    client.start_worker(0); // when there are threads again
    await(std::move(end));
}

} // namespace
