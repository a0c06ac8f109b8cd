#include "api/kv_stores.h"

#include "support/assert_watch.h"
#include "support/metadata_server.h"
#include "support/store_script.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

// Closing a store that cannot get rid of its writes: it gives them two seconds, and a command that
// is under way as long as that takes.
namespace
{

constexpr auto last_flush = 2s;

using Clock = std::chrono::steady_clock;

class ClosingWithWrites : public testing::Test
{
protected:
    ClosingWithWrites()
    {
        EXPECT_EQ(velto_open_kvstore(session.handle, VELTO_TEXT("notes"), VELTO_TEXT("p/"),
                                     VELTO_STORE_WRITE, &handle),
                  VELTO_RESULT_OK);
    }

    ScriptLink& link() { return *session.link; }

    void set(std::string_view key)
    {
        EXPECT_EQ(velto_kvstore_set(handle, units(key).c_str(), VELTO_TEXT("1")), VELTO_RESULT_OK);
    }

    // Gives the time that it has taken.
    std::future<Clock::duration> closing()
    {
        return in_thread([own_handle = handle] {
            const auto start = Clock::now();
            velto_close_key_value_store(own_handle);
            return Clock::now() - start;
        });
    }

    Session session;
    VeltoStoreHandle handle = 0;
};

TEST_F(ClosingWithWrites, ThatAreRefusedGivesThemUpAfterTwoSeconds)
{
    set("a");
    auto client = in_thread([&] {
        const auto time = closing().get();
        velto_cmd_stop1(session.handle, 0); // behind the last that it sends
        return time;
    });
    int refusals = 0;
    ReceivedCommand command = link().expect_command();
    for (; command.name != "stop"; command = link().expect_command()) {
        EXPECT_EQ(command.bytes, command_bytes(command.xid, set_command("p/a", "1")));
        link().reply_error(command.xid, "Not now");
        ++refusals;
    }
    link().reply_ok(command.xid);
    const auto time = await(std::move(client));
    EXPECT_GE(time, last_flush);
    EXPECT_GE(refusals, 2);
    session.settle(); // the write is lost
}

TEST_F(ClosingWithWrites, ThatAreAcceptedAfterAllLosesNone)
{
    set("a");
    set("b");
    auto closed = closing();
    std::string xid = link().expect("metadata_set").xid;
    link().reply_error(xid, "Not now");
    for (int i = 0; i < 2; ++i) {
        link().reply_ok(link().expect("metadata_set").xid);
    }
    EXPECT_GE(await(std::move(closed)), 200ms); // the pause after the refusal
    session.settle();
}

TEST_F(ClosingWithWrites, AndNoLinkGivesThemUpAfterTwoSeconds)
{
    lose_link(session);
    set("a");
    EXPECT_GE(await(closing()), last_flush);
    restore_link(session);
    session.settle(); // the write is lost
}

TEST_F(ClosingWithWrites, AndALinkThatComesBackInTimeLosesNone)
{
    lose_link(session);
    set("a");
    auto closed = closing();
    std::this_thread::sleep_for(300ms);
    restore_link(session);
    // On a slow day the two seconds are over before, and the next command is the stop of settle.
    auto stopping = calling([&] {
        closed.wait();
        return velto_cmd_stop1(session.handle, 0);
    });
    const ReceivedCommand command = link().expect_command();
    link().reply_ok(command.xid);
    if (command.name != "stop") {
        EXPECT_EQ(command.bytes, command_bytes(command.xid, set_command("p/a", "1")));
        link().reply_ok(link().expect("stop").xid);
    }
    EXPECT_EQ(await(std::move(stopping)), succeeded);
}

TEST_F(ClosingWithWrites, WaitsForTheReplyToTheOneInFlightAndSendsNoOther)
{
    set("a");
    const std::string xid = expect_bytes(link(), set_command("p/a", "1"));
    set("b");
    auto closed = closing();
    std::this_thread::sleep_for(last_flush + 300ms);
    EXPECT_EQ(closed.wait_for(0s), std::future_status::timeout);
    link().reply_ok(xid);
    EXPECT_GE(await(std::move(closed)), last_flush);
    // In time for the flush, on a very slow day, the other would have gone out as well.
    auto stopping = calling([&] { return velto_cmd_stop1(session.handle, 0); });
    link().reply_ok(link().expect("stop").xid);
    EXPECT_EQ(await(std::move(stopping)), succeeded);
}

// Beyond its ten seconds it goes on waiting, but without the lock that other calls need.
TEST_F(ClosingWithWrites, WaitsForACommandThatIsNeverAnsweredUntilTheLinkGoes)
{
    set("a");
    expect_bytes(link(), set_command("p/a", "1"));
    const std::shared_ptr<KVStore> store = kv_stores().find(handle).value();
    auto closed = closing();
    EXPECT_EQ(closed.wait_for(last_flush + 10s + 500ms), std::future_status::timeout);
    auto writing = in_thread([&] { return store->set(u"b", u"1"); });
    EXPECT_EQ(await(std::move(writing)), VELTO_RESULT_OK);
    EXPECT_EQ(store->flush(0), VELTO_RESULT_TIMEOUT);
    EXPECT_EQ(closed.wait_for(0s), std::future_status::timeout);
    link().close();
    await(std::move(closed));
    EXPECT_EQ(store->flush(0), VELTO_RESULT_OK); // it has ended, whatever was left
}

// Writes, pauses and closes meet in all ways; a wake-up that is lost is a hang.
TEST(ClosingAmidWrites, LosesNoWakeUp)
{
    constexpr int rounds = 400;
    MetadataServer server;
    const VeltoHandle connection = velto_connect(server.address(0));
    velto_wait_until_connected(connection);
    for (int i = 0; i < rounds; ++i) {
        if (i % 40 == 0) {
            server.refuse(1);
        }
        await(in_thread([&] {
            const Store store(connection, VELTO_STORE_WRITE, "p/");
            auto writer = in_thread([&] {
                for (int write = 0; write < i % 4; ++write) {
                    store.set(std::to_string(write), std::to_string(i));
                }
            });
            if (i % 3 == 0) {
                EXPECT_EQ(store.flush(long_ms), succeeded);
            }
            await(std::move(writer));
        }));
    }
    server.refuse(0);
    server.close_door(0);
    velto_close(connection);
}

} // namespace
