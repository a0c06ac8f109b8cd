#include "connection/velto.h"

#include "support/event_log.h"
#include "support/session.h"

#include <vector>

#include <gtest/gtest.h>

using namespace std::chrono_literals;

// How a connection goes, whoever drops its last reference.
namespace
{

// Counts the ends of the threads on which `notice` has run. Where memory of a thread is emulated it
// is gone by then, so that only what is global may be touched.
struct ThreadEnd {
    ~ThreadEnd() { ++count; }

    static void notice(XMLTree) { static thread_local ThreadEnd end; }

    static void await(int times)
    {
        const auto start = std::chrono::steady_clock::now();
        while (count < times) {
            std::this_thread::sleep_for(1ms);
            if (std::chrono::steady_clock::now() - start > hang_bound) {
                report_hang("the end of a worker");
            }
        }
    }

    static inline std::atomic<int> count{0};
};

// A connection whose worker's end can be waited for, once it has received a message.
class Lifetime : public testing::Test
{
protected:
    Lifetime()
    {
        connection->message_tap = &ThreadEnd::notice;
        connection->set_server_address(server.address().number);
        connection->start_worker(0);
        link.emplace(server.accept());
        velto_wait_until_connected(handle);
    }

    VeltoResult stop()
    {
        return VeltoConnObject::plain_command(connection, ZAVL3::command::stop{});
    }

    // From here on the connection belongs to the commands that are outstanding.
    void close()
    {
        velto_close(handle);
        connection.clear();
    }

    const int ended_before = ThreadEnd::count;
    ScriptServer server;
    ARef<VeltoConnObject> connection = ARef<VeltoConnObject>::create();
    VeltoHandle handle = connection_registry().add_connection(connection);
    std::optional<ScriptLink> link;
};

TEST_F(Lifetime, AReplyThatDropsTheLastReferenceEndsTheWorker)
{
    connection->asynchronous = 1;
    stop();
    const std::string xid = link->expect("stop").xid;
    close();
    EXPECT_EQ(ThreadEnd::count, ended_before);
    link->reply_ok(xid);
    ThreadEnd::await(ended_before + 1);
    EXPECT_TRUE(link->is_open()); // as with every connection that goes while it is up
}

TEST_F(Lifetime, TheLastOfSeveralRepliesDoes)
{
    connection->asynchronous = 1;
    stop();
    stop();
    const std::string first = link->expect("stop").xid;
    const std::string second = link->expect("stop").xid;
    close();
    link->send(reply_message(second, "<ok />") + reply_message(first, "<ok />") +
               reply_message(first, "<ok />"));
    ThreadEnd::await(ended_before + 1);
}

TEST_F(Lifetime, ALossThatDropsTheLastReferenceEndsTheWorker)
{
    connection->asynchronous = 1;
    link->send("<report></report>");
    stop();
    stop();
    link->expect("stop");
    link->expect("stop");
    close();
    link->close();
    ThreadEnd::await(ended_before + 1);
}

TEST_F(Lifetime, ACallThatOutlivesTheCloseEndsNormally)
{
    auto call = calling([this] { return stop(); });
    const std::string xid = link->expect("stop").xid;
    velto_close(handle);
    EXPECT_EQ(velto_connected(handle), 0u);
    link->reply_ok(xid);
    EXPECT_EQ(await(std::move(call)), succeeded);
    link->close();
    connection.clear();
    ThreadEnd::await(ended_before + 1);
}

// A caller that closes as soon as it has its reply meets its worker letting go of the connection.
// Whichever of them is the last, no thread is left behind.
TEST(LifetimeOfMany, AClosingCallerAndTheWorkerMayDropTheLastReferenceInAnyOrder)
{
    constexpr int connection_count = 12;
    const int ended_before = ThreadEnd::count;
    ScriptServer server;
    std::vector<std::future<Outcome>> callers;
    for (int i = 0; i < connection_count; ++i) {
        auto connection = ARef<VeltoConnObject>::create();
        connection->message_tap = &ThreadEnd::notice;
        connection->set_server_address(server.address().number);
        connection->start_worker(0);
        const VeltoHandle handle = connection_registry().add_connection(connection);
        callers.push_back(calling([handle] {
            velto_wait_until_connected(handle);
            const VeltoResult result = velto_cmd_stop1(handle, 0);
            velto_close(handle);
            return result;
        }));
    }
    std::vector<ScriptLink> links;
    for (int i = 0; i < connection_count; ++i) {
        links.push_back(server.accept());
    }
    server.stop_listening(); // a close behind a link that is up would take a second, one by one
    for (ScriptLink& link : links) {
        link.reply_ok(link.expect("stop").xid);
        link.close();
    }
    for (std::future<Outcome>& caller : callers) {
        EXPECT_EQ(await(std::move(caller)), succeeded);
    }
    ThreadEnd::await(ended_before + connection_count);
}

// The stand-in for the wait for input of a connection that is about to be closed.
struct LingeringWait {
    static int wait(platform::SocketHandle, std::uint32_t)
    {
        worker_is_inside = true;
        entered.note("entered");
        std::this_thread::sleep_for(200ms);
        worker_is_inside = false;
        return 0;
    }

    static inline EventLog entered;
    static inline std::atomic<bool> worker_is_inside{false};
};

// Reaches the protected stand-in of a connection that is none of its own.
struct Access : VeltoConnObject {
    using VeltoConnObject::wait_for_input;
};

TEST(Close, ReturnsOnlyWhenTheWorkerHasEnded)
{
    ScriptServer server;
    auto connection = ARef<VeltoConnObject>::create();
    connection.get()->*(&Access::wait_for_input) = &LingeringWait::wait;
    connection->set_server_address(server.address().number);
    connection->start_worker(0);
    const VeltoHandle handle = connection_registry().add_connection(connection);
    connection.clear();
    const ScriptLink link = server.accept();

    LingeringWait::entered.await("entered");
    velto_close(handle);
    EXPECT_FALSE(LingeringWait::worker_is_inside);
}

} // namespace
