#include "memory/sweep.h"

#include "api/connection_registry.h"
#include "support/answering_server.h"
#include "support/clip_script.h"

#include <gtest/gtest.h>

// Memory runs out at each allocation of a job. The process goes on, nobody waits for ever, and the
// job that comes next is a good one. The address sanitizer sees what leaks.
namespace
{

using Of = Exhaustion::Of;

constexpr std::uint32_t long_ms = 60'000; // only catches a hang

// ---- A message.

class MessageExhaustion : public testing::Test
{
protected:
    void feed(const std::string& message)
    {
        connection->feed_bytes(message.data(), message.size());
    }

    // What a worker does with an exhausted memory: it gives the link up, and with it the stream.
    void sweep_message(const std::string& message, const std::function<void()>& check)
    {
        sweep(Of::caller, [&](Exhaustion& exhaustion) {
            try {
                feed(message);
            } catch (const std::bad_alloc&) {
            }
            exhaustion.end();
            connection->reset_stream();
            feed(" "); // a broken stream takes its first bytes for nothing
            feed(message);
            check();
        });
    }

    ARef<VeltoConnObject> connection = ARef<VeltoConnObject>::create();
};

TEST_F(MessageExhaustion, OfAReportOfAChannelTheNextOneIsTakenIn)
{
    sweep_message("<report><channel_clipid><Channel>A</Channel><ClipID>news_open</ClipID>"
                  "</channel_clipid></report>",
                  [this] {
                      EXPECT_EQ(connection->channel_state(0)->clip_id.value, AString("news_open"));
                      std::uint32_t kind = 0;
                      std::uint32_t channel = 9;
                      connection->notices.wait_notice(0, &kind, &channel);
                      EXPECT_EQ(kind, 1u);
                      EXPECT_EQ(channel, 0u);
                      connection->notices.wait_notice(0, &kind, &channel);
                      EXPECT_EQ(kind, 0u) << "one notice for all";
                  });
}

TEST_F(MessageExhaustion, OfAChangeOfAClipTheNextOneIsTakenIn)
{
    sweep_message("<report><clip_created><ClipID>weather</ClipID></clip_created></report>", [this] {
        EXPECT_TRUE(connection->clips_added.contains(AString("weather")));
        connection->clips_added.clear();
    });
}

// ---- Calls, on the thread of the application.

class CallExhaustion : public testing::Test
{
protected:
    CallExhaustion() : server(&answer, &Exhaustion::spare_this_thread) { connect(); }
    ~CallExhaustion() override { velto_close(handle); }

    static AnsweringServer::Contents answer(const ReceivedCommand& command)
    {
        if (command.name == "get_clip_info") {
            return {clip_info()};
        }
        if (command.name == "get_computer_name") {
            return {"<computername><ComputerName>studio</ComputerName></computername>"};
        }
        if (command.name == "download_clipids") {
            return {"<clipid><ClipID>news_open</ClipID></clipid>",
                    "<clipid><ClipID>weather</ClipID></clipid>", "<ok />"};
        }
        return {"<ok />"};
    }

    void connect()
    {
        handle = velto_connect(server.address());
        velto_wait_until_connected(handle);
    }

    void expect_good_link()
    {
        EXPECT_EQ(velto_connected(handle), 1u);
        EXPECT_EQ(velto_cmd_stop1(handle, 0), VELTO_RESULT_OK);
        velto_sync(handle); // nothing is left behind that nobody completes
    }

    // A link that is to go may not have gone yet.
    void await_good_link()
    {
        while (velto_cmd_stop1(handle, 0) != VELTO_RESULT_OK) {
            velto_wait_until_connected(handle);
        }
    }

    static bool is_good_or_failed(VeltoResult result)
    {
        return result == VELTO_RESULT_OK || result == VELTO_RESULT_FAILED;
    }

    AnsweringServer server;
    VeltoHandle handle = 0;
};

TEST_F(CallExhaustion, OfACommandTheNextOneIsGood)
{
    const auto load = [this] { return velto_cmd_loadclip1(handle, 0, VELTO_TEXT("news_open")); };
    sweep(Of::caller, [&](Exhaustion& exhaustion) {
        EXPECT_TRUE(is_good_or_failed(load()));
        exhaustion.end();
        expect_good_link();
    });
    EXPECT_EQ(load(), VELTO_RESULT_OK);
    expect_good_link();
}

TEST_F(CallExhaustion, OfAQuestionTheNextOneIsGood)
{
    std::array<VeltoChar, 32> name{};
    const auto ask = [&] { return velto_server_name(handle, {name.data(), 32}); };
    sweep(Of::caller, [&](Exhaustion&) { EXPECT_TRUE(is_good_or_failed(ask())); });
    EXPECT_EQ(ask(), VELTO_RESULT_OK);
    EXPECT_EQ(text_of(name.data()), "studio");
    expect_good_link();
}

TEST_F(CallExhaustion, OfReadingARecordTheNextOneIsGood)
{
    std::array<VeltoChar, 64> title{};
    const auto read = [&] {
        VeltoRecordHandle record = 0;
        const VeltoResult opened =
            velto_open_clip_metadata(handle, VELTO_TEXT("news_open"), &record);
        if (opened != VELTO_RESULT_OK) {
            return opened;
        }
        try {
            const VeltoResult result = velto_clip_title(record, {title.data(), 64});
            velto_close_clip_metadata(record);
            return result;
        } catch (const std::bad_alloc&) {
            velto_close_clip_metadata(record);
            throw;
        }
    };
    sweep(Of::caller, [&](Exhaustion&) { EXPECT_TRUE(is_good_or_failed(read())); });
    EXPECT_EQ(read(), VELTO_RESULT_OK);
    EXPECT_NE(text_of(title.data()), "");
    expect_good_link();
}

TEST_F(CallExhaustion, OfAListTheNextOneIsGood)
{
    std::array<VeltoChar, 32> name{};
    const auto first_name = [&] {
        VeltoListHandle list = 0;
        const VeltoResult opened = velto_open_clip_list(handle, &list);
        if (opened != VELTO_RESULT_OK) {
            return opened;
        }
        const VeltoResult result = velto_get_clip_name(list, {name.data(), 32});
        velto_close_clip_list(list);
        return result;
    };
    sweep(Of::caller, [&](Exhaustion&) { EXPECT_TRUE(is_good_or_failed(first_name())); });
    EXPECT_EQ(first_name(), VELTO_RESULT_OK);
    EXPECT_EQ(text_of(name.data()), "news_open");
    expect_good_link();
}

// Without its thread, a connection closes at once: the sweep is over the opening alone.
TEST(ConnectExhaustion, OfAConnectionTheNextOneIsGood)
{
    constexpr std::uint32_t nobody_listens = 0x7F4D0901;
    sweep(Of::caller, [](Exhaustion&) { velto_close(velto_connect(nobody_listens)); });
    AnsweringServer server;
    const VeltoHandle handle = velto_connect(server.address());
    EXPECT_EQ(velto_wait_until_connected(handle), 1u);
    EXPECT_EQ(velto_cmd_stop1(handle, 0), VELTO_RESULT_OK);
    velto_close(handle);
}

TEST_F(CallExhaustion, OfAStoreTheNextOneIsGood)
{
    VeltoStoreHandle store = 0;
    const auto open = [&] {
        store = 0;
        return velto_open_kvstore(handle, VELTO_TEXT("folder"), VELTO_TEXT(""),
                                  VELTO_STORE_READ_WRITE, &store);
    };
    sweep(Of::caller, [&](Exhaustion& exhaustion) {
        try {
            open();
        } catch (const std::bad_alloc&) {
        }
        exhaustion.end();
        velto_close_key_value_store(store);
    });
    ASSERT_EQ(open(), VELTO_RESULT_OK);
    EXPECT_EQ(velto_kvstore_wait_scan(store, long_ms), VELTO_RESULT_OK);
    const auto set = [&] {
        return velto_kvstore_set(store, VELTO_TEXT("a key"), VELTO_TEXT("a value"));
    };
    sweep(Of::caller, [&](Exhaustion&) {
        set();
        velto_kvstore_flush(store, long_ms);
    });
    EXPECT_EQ(set(), VELTO_RESULT_OK);
    EXPECT_EQ(velto_kvstore_flush(store, long_ms), VELTO_RESULT_OK);
    velto_close_key_value_store(store);
    expect_good_link();
}

// ---- The library's own threads.

// What was told meanwhile may be lost with the link, but not its place in the queue.
TEST_F(CallExhaustion, OfAReaderTheNextChangeIsTold)
{
    VeltoStoreHandle store = 0;
    ASSERT_EQ(
        velto_open_kvstore(handle, VELTO_TEXT("notes"), VELTO_TEXT(""), VELTO_STORE_READ, &store),
        VELTO_RESULT_OK);
    ASSERT_EQ(velto_kvstore_wait_scan(store, long_ms), VELTO_RESULT_OK);
    const std::string change =
        "<report><metadata_change><MetadataDatabase>notes</MetadataDatabase><MetadataPrefix />"
        "<MetadataList>" +
        metadata_pair("a key", "a value") + "</MetadataList></metadata_change></report>";
    std::array<VeltoChar, 32> key{};
    std::uint32_t kind = 0;
    sweep(Of::library, [&](Exhaustion& exhaustion) {
        server.tell(change);
        velto_cmd_stop1(handle, 0); // answered behind it
        exhaustion.end();
        await_good_link();
        server.tell(change);
        EXPECT_EQ(velto_kvstore_get_change(store, long_ms, &kind, {key.data(), 32}, {nullptr, 0}),
                  VELTO_RESULT_OK);
        EXPECT_EQ(text_of(key.data()), "a key");
    });
    velto_close_key_value_store(store);
    expect_good_link();
}

// The link may go, and comes back; the call ends either way.
TEST_F(CallExhaustion, OfAWorkerCostsTheLinkAtMost)
{
    std::array<VeltoChar, 32> name{};
    sweep(Of::library, [&](Exhaustion& exhaustion) {
        EXPECT_TRUE(is_good_or_failed(velto_server_name(handle, {name.data(), 32})));
        exhaustion.end();
        await_good_link();
    });
    EXPECT_EQ(velto_server_name(handle, {name.data(), 32}), VELTO_RESULT_OK);
    expect_good_link();
}

TEST_F(CallExhaustion, OfAWorkerDoesNotLoseANameOfAList)
{
    std::uint32_t names = 0;
    sweep(Of::library, [&](Exhaustion& exhaustion) {
        VeltoListHandle list = 0;
        const VeltoResult opened = velto_open_clip_list(handle, &list);
        exhaustion.end();
        if (opened == VELTO_RESULT_OK) {
            std::array<VeltoChar, 32> name{};
            for (const char* expected : {"news_open", "weather"}) {
                velto_get_clip_name(list, {name.data(), 32});
                names += text_of(name.data()) == expected;
            }
            velto_close_clip_list(list);
        }
        await_good_link();
    });
    EXPECT_GE(names, 4u); // the last round of each sweep, at least
    expect_good_link();
}

TEST_F(CallExhaustion, OfAWriterTheWriteIsMadeAgain)
{
    VeltoStoreHandle store = 0;
    ASSERT_EQ(
        velto_open_kvstore(handle, VELTO_TEXT("folder"), VELTO_TEXT(""), VELTO_STORE_WRITE, &store),
        VELTO_RESULT_OK);
    sweep(Of::library, [&](Exhaustion& exhaustion) {
        EXPECT_EQ(velto_kvstore_set(store, VELTO_TEXT("a key"), VELTO_TEXT("a value")),
                  VELTO_RESULT_OK);
        velto_kvstore_flush(store, 100); // it may have run out
        exhaustion.end();
        EXPECT_EQ(velto_kvstore_flush(store, long_ms), VELTO_RESULT_OK);
    });
    velto_close_key_value_store(store);
    await_good_link();
    expect_good_link();
}

} // namespace
