#include "protocol/zavl3_client_win32.h"

#include "protocol/test_client.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace
{

// Sends as the platform does, and counts the blocks that got through.
struct CountedSend {
    static std::ptrdiff_t send(platform::SocketHandle socket, const void* bytes, std::size_t count)
    {
        const std::ptrdiff_t sent = platform::send(socket, bytes, count);
        ++blocks;
        return sent;
    }

    // Waits until a block has gone out and then none for a while.
    static void await_standstill()
    {
        int seen = 0;
        do {
            seen = blocks;
            std::this_thread::sleep_for(300ms);
        } while (seen == 0 || seen != blocks);
    }

    static inline std::atomic<int> blocks{0};
};

// A thread that is blocked in a huge command, which the server does not read.
class ClientBlockedInSend : public testing::Test
{
protected:
    ClientBlockedInSend()
    {
        client.send_block = &CountedSend::send;
        CountedSend::blocks = 0;
        link.emplace(client.connect(server));
        writing = in_thread([this] {
            const AString clip = AString("x").repeat(16u << 20);
            return client.issue_delete_clip(clip).outcome();
        });
        CountedSend::await_standstill();
    }

    void expect_writer_fails_and_next_link_works()
    {
        EXPECT_EQ(await(std::move(writing)), link_loss);
        ScriptLink next = server.accept();
        client.events.await("up", 2);
        Completion& stop = client.issue_stop();
        next.reply_ok(next.expect("stop").xid); // no rest of the huge one stands before it
        EXPECT_EQ(stop.outcome(), "ok");
    }

    TestClient client;
    ScriptServer server;
    std::optional<ScriptLink> link;
    std::future<std::string> writing;
};

TEST_F(ClientBlockedInSend, WakesWhenTheServerResetsTheLink)
{
    link->reset();
    expect_writer_fails_and_next_link_works();
}

TEST_F(ClientBlockedInSend, WakesWhenTheWorkerGivesTheLinkUp)
{
    link->send(broken_stream());
    expect_writer_fails_and_next_link_works();
}

// Issues commands of several blocks, as fast as it can, until it is told to stop.
class Writer
{
public:
    explicit Writer(TestClient& target) : client(target) {}

    void run(const std::atomic<bool>& stop)
    {
        ZAVL3::command::delete_clip command;
        command.set<"ClipID">(AString("x").repeat(clip_length));
        while (!stop) {
            client.issue(command, {bind<&Writer::on_ok>(this), bind<&Writer::on_error>(this)});
            ++issued;
        }
    }

    void on_ok() { ++ended; }
    void on_error(AString, ZAVL3::ErrorCode) { ++ended; }

    static constexpr std::size_t clip_length = 4000;

    std::atomic<std::uint64_t> issued{0};
    std::atomic<std::uint64_t> ended{0};

private:
    TestClient& client;
};

// What a link brought is whole commands, and the beginning of one at most.
void expect_whole_commands(const std::string& received)
{
    const std::string before_xid = "<cmd>\r\n<xid>";
    const std::string behind_xid = "</xid>\r\n<delete_clip>\r\n<ClipID>" +
                                   std::string(Writer::clip_length, 'x') +
                                   "</ClipID>\r\n</delete_clip>\r\n</cmd>";
    std::string_view rest = received;
    while (!rest.empty()) {
        const std::string_view begin = rest.substr(0, before_xid.size());
        ASSERT_TRUE(before_xid.starts_with(begin)) << rest.substr(0, 100);
        rest.remove_prefix(begin.size());
        rest.remove_prefix(std::min(rest.find_first_not_of("0123456789"), rest.size()));
        const std::string_view end = rest.substr(0, behind_xid.size());
        ASSERT_TRUE(behind_xid.starts_with(end)) << rest.substr(0, 100);
        rest.remove_prefix(end.size());
    }
}

TEST(Client, NoHalfCommandOfOneLinkReachesTheNext)
{
    constexpr int links = 15;
    TestClient client;
    ScriptServer server;
    std::atomic<bool> stop{false};
    std::deque<Writer> writers;
    std::vector<std::future<void>> running;
    client.start(server);
    for (int i = 0; i < 4; ++i) {
        Writer& writer = writers.emplace_back(client);
        running.push_back(in_thread([&] { writer.run(stop); }));
    }

    for (int i = 0; i < links; ++i) {
        ScriptLink link = server.accept();
        std::string received;
        while (received.size() < 200'000) {
            received += link.receive();
        }
        if (i % 2 == 0) {
            link.send(broken_stream());
            for (std::string piece; !(piece = link.receive()).empty();) {
                received += piece;
            }
        }
        link.reset();
        expect_whole_commands(received);
    }

    stop = true;
    ScriptLink last = server.accept();
    client.events.await("up", links + 1);
    server.stop_listening();
    last.reset();
    for (std::future<void>& writer : running) {
        await(std::move(writer));
    }
    client.events.await("down", links + 1);
    for (const Writer& writer : writers) {
        EXPECT_GT(writer.issued, 0u);
        EXPECT_EQ(writer.issued, writer.ended);
    }
}

} // namespace
