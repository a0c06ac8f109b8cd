#include "support/session.h"

#include <array>
#include <vector>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace
{

constexpr VeltoChar untouched = 0x2A2A;

// What velto_get_last_error writes into a buffer of `size`, and the unit behind it.
std::vector<VeltoChar> last_error(std::uint32_t size)
{
    std::vector<VeltoChar> units(size + 1, untouched);
    velto_get_last_error({units.data(), size});
    return units;
}

VeltoHandle closed_handle()
{
    ScriptServer server;
    server.stop_listening();
    const VeltoHandle handle = velto_connect(server.address().number);
    velto_close(handle);
    return handle;
}

Outcome stop_on(VeltoHandle handle)
{
    return outcome_of([=] { return velto_cmd_stop1(handle, 0); });
}

TEST(Connect, ReturnsAtOnceWhereNothingListens)
{
    ScriptServer server;
    server.stop_listening();
    const VeltoHandle handle = velto_connect(server.address().number);
    EXPECT_NE(handle, 0u);
    EXPECT_EQ(velto_connected(handle), 0u);
    EXPECT_EQ(stop_on(handle), link_failed);
    velto_close(handle);
}

TEST(Connect, TheLinkComesUpWhenAServerAccepts)
{
    ScriptServer server;
    const VeltoHandle handle = velto_connect(server.address().number);
    ScriptLink link = server.accept();
    EXPECT_EQ(velto_wait_until_connected(handle), 1u);
    EXPECT_EQ(velto_connected(handle), 1u);
    EXPECT_EQ(velto_wait_until_connected(handle), 1u);
    link.close();
    velto_close(handle);
    EXPECT_EQ(velto_connected(handle), 0u);
}

TEST(Connect, WaitingGoesOnUntilAServerListens)
{
    ScriptServer server;
    server.stop_listening();
    const VeltoHandle handle = velto_connect(server.address().number);
    auto waiting = in_thread([=] { return velto_wait_until_connected(handle); });
    EXPECT_EQ(waiting.wait_for(250ms), std::future_status::timeout);
    server.listen();
    ScriptLink link = server.accept();
    EXPECT_EQ(await(std::move(waiting)), 1u);
    link.close();
    velto_close(handle);
}

TEST(Connect, TwoConnectionsToOneServerShareNothing)
{
    ScriptServer server;
    const VeltoHandle first = velto_connect(server.address().number);
    ScriptLink first_link = server.accept();
    const VeltoHandle second = velto_connect(server.address().number);
    ScriptLink second_link = server.accept();
    EXPECT_NE(first, second);
    velto_wait_until_connected(first);
    velto_wait_until_connected(second);

    auto stopping = calling([=] { return velto_cmd_stop1(first, 0); });
    auto playing = calling([=] { return velto_cmd_play1(second, 0); });
    const ReceivedCommand stop = first_link.expect("stop");
    const ReceivedCommand play = second_link.expect("play");
    EXPECT_NE(stop.xid, play.xid);
    first_link.reply_error(play.xid, "not on this connection");
    first_link.close();
    EXPECT_EQ(await(std::move(stopping)), link_failed);
    velto_close(first);

    EXPECT_EQ(velto_connected(second), 1u);
    second_link.reply_ok(play.xid);
    EXPECT_EQ(await(std::move(playing)), succeeded);
    second_link.close();
    velto_close(second);
}

TEST(Connect, LeavesTheTextAsItWas)
{
    ScriptServer server;
    server.stop_listening();
    const auto texts = await(in_thread([&] {
        const VeltoHandle handle = velto_connect(server.address().number);
        std::vector<VeltoChar> of_new_thread = last_error(3);
        set_last_error_text("before");
        velto_connected(handle);
        velto_synchronous(handle, 1);
        velto_sync(handle);
        velto_close(handle);
        return std::pair(of_new_thread, get_last_error_text().to_utf8());
    }));
    EXPECT_EQ(texts.first, (std::vector<VeltoChar>{0, untouched, untouched, untouched}));
    EXPECT_EQ(texts.second, "before");
}

TEST(Close, TwiceDoesNothingTheSecondTime)
{
    const VeltoHandle handle = closed_handle();
    set_last_error_text("before");
    velto_close(handle);
    velto_close(0);
    EXPECT_EQ(get_last_error_text().to_utf8(), "before");
}

TEST(Close, LeavesACallOfAnotherThreadToFinish)
{
    Session session;
    session.connection.clear();
    auto call = calling([&] { return velto_cmd_stop1(session.handle, 0); });
    const std::string xid = session.link->expect("stop").xid;
    velto_close(session.handle); // does not wait for it
    EXPECT_EQ(stop_on(session.handle), invalid_handle);
    session.link->reply_ok(xid);
    EXPECT_EQ(await(std::move(call)), succeeded);
}

TEST(Close, EndsWhileALinkIsUp)
{
    ScriptServer server;
    const VeltoHandle handle = velto_connect(server.address().number);
    ScriptLink link = server.accept();
    velto_wait_until_connected(handle);
    velto_close(handle);
    EXPECT_TRUE(link.is_open()); // the socket is left to the process
}

TEST(ClosedHandle, IsInvalidForEveryCall)
{
    const VeltoHandle handle = closed_handle();
    EXPECT_EQ(stop_on(handle), invalid_handle);
    EXPECT_EQ(stop_on(0), invalid_handle);
    EXPECT_EQ(velto_connected(handle), 0u);
    EXPECT_EQ(velto_connected(0), 0u);
}

TEST(ClosedHandle, IsIgnoredBySyncAndSynchronous)
{
    const VeltoHandle handle = closed_handle();
    set_last_error_text("before");
    velto_synchronous(handle, 1);
    velto_sync(handle);
    EXPECT_EQ(get_last_error_text().to_utf8(), "before");
}

TEST(Synchronous, OneMeansNotToWait)
{
    ScriptServer server;
    server.stop_listening();
    const VeltoHandle handle = velto_connect(server.address().number);
    velto_synchronous(handle, 1);
    EXPECT_EQ(stop_on(handle), succeeded);
    velto_synchronous(handle, 0);
    EXPECT_EQ(stop_on(handle), link_failed);
    velto_synchronous(handle, 0xFFFFFFFF);
    EXPECT_EQ(stop_on(handle), succeeded);
    velto_sync(handle);
    velto_close(handle);
}

TEST(Sync, WaitsForTheCommandsOfTheConnection)
{
    Session session;
    velto_sync(session.handle); // nothing is outstanding
    velto_synchronous(session.handle, 1);
    EXPECT_EQ(stop_on(session.handle), succeeded);
    auto waiting = in_thread([&] { velto_sync(session.handle); });
    const std::string xid = session.link->expect("stop").xid;
    EXPECT_EQ(waiting.wait_for(50ms), std::future_status::timeout);
    session.link->reply_error(xid, "nobody hears it");
    await(std::move(waiting));
}

TEST(LastErrorText, IsCutToTheBuffer)
{
    EXPECT_EQ(stop_on(0), invalid_handle);
    EXPECT_EQ(last_error(3), (std::vector<VeltoChar>{'I', 'n', 0, untouched}));
    EXPECT_EQ(last_error(1), (std::vector<VeltoChar>{0, untouched}));
    EXPECT_EQ(last_error(0), (std::vector<VeltoChar>{untouched}));
    velto_get_last_error({nullptr, 0});
    EXPECT_EQ(get_last_error_text().to_utf8(), "Invalid handle");
}

TEST(LastErrorText, IsThatOfTheThreadAndNotOfTheConnection)
{
    Session session;
    auto refused = calling([&] { return velto_cmd_stop1(session.handle, 0); });
    session.link->reply_error(session.link->expect("stop").xid, "refused");
    EXPECT_EQ(await(std::move(refused)), (Outcome{2, "refused"}));

    EXPECT_EQ(stop_on(0), invalid_handle);
    EXPECT_EQ(await(in_thread([] { return last_error(1); })),
              (std::vector<VeltoChar>{0, untouched}));
    EXPECT_EQ(get_last_error_text().to_utf8(), "Invalid handle");
}

TEST(LastErrorText, IsOkAfterASuccess)
{
    Session session;
    auto call = calling([&] {
        velto_cmd_stop1(0, 0);
        return velto_cmd_stop1(session.handle, 0);
    });
    session.link->reply_ok(session.link->expect("stop").xid);
    EXPECT_EQ(await(std::move(call)), succeeded);
}

TEST(LastErrorText, KeepsTheServersCharacters)
{
    Session session;
    auto call = calling([&] { return velto_cmd_stop1(session.handle, 0); });
    session.link->reply_error(session.link->expect("stop").xid,
                              "Clip &lt;\xC3\xA9\xF0\x9F\x8E\xAC&gt; is locked");
    EXPECT_EQ(await(std::move(call)), (Outcome{2, "Clip <\xC3\xA9\xF0\x9F\x8E\xAC> is locked"}));
}

} // namespace
