#include "api/kv_stores.h"

#include "support/store_script.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

// Closing a store, in every state in which it does not take seconds.
namespace
{

constexpr std::uint32_t reading = VELTO_STORE_READ;
constexpr std::uint32_t both = VELTO_STORE_READ_WRITE;
constexpr std::uint32_t writing = VELTO_STORE_WRITE;

class ClosingAStore : public testing::Test
{
protected:
    ScriptLink& link() { return *session.link; }

    // A handle that the test closes itself.
    VeltoStoreHandle open(std::uint32_t mode)
    {
        VeltoStoreHandle handle = 0;
        EXPECT_EQ(velto_open_kvstore(session.handle, VELTO_TEXT("notes"), VELTO_TEXT("p/"), mode,
                                     &handle),
                  VELTO_RESULT_OK);
        return handle;
    }

    void serve_opening()
    {
        expect_watch(link());
        link().reply_ok(expect_download(link()));
    }

    static std::future<void> closing(VeltoStoreHandle handle)
    {
        return in_thread([handle] { velto_close_key_value_store(handle); });
    }

    Session session;
};

TEST_F(ClosingAStore, LeavesTheLastErrorTextAlone)
{
    for (const std::uint32_t mode : {reading, both, writing}) {
        const VeltoStoreHandle handle = open(mode);
        set_last_error_text("before");
        velto_close_key_value_store(handle);
        EXPECT_EQ(get_last_error_text().to_utf8(), "before");
        velto_close_key_value_store(handle); // unknown by now
        velto_close_key_value_store(0);
        EXPECT_EQ(get_last_error_text().to_utf8(), "before");
    }
}

TEST_F(ClosingAStore, MakesItsHandleInvalid)
{
    const VeltoStoreHandle handle = open(both);
    velto_close_key_value_store(handle);
    EXPECT_EQ(change_of(handle), "Invalid handle");
    EXPECT_EQ(outcome_of([&] { return velto_kvstore_flush(handle, 0); }), invalid_handle);
}

TEST_F(ClosingAStore, WaitsForAWriteThatIsInFlight)
{
    const VeltoStoreHandle handle = open(writing);
    velto_kvstore_set(handle, VELTO_TEXT("a"), VELTO_TEXT("1"));
    const std::string xid = expect_bytes(link(), set_command("p/a", "1"));
    auto closed = closing(handle);
    EXPECT_EQ(closed.wait_for(50ms), std::future_status::timeout);
    link().reply_ok(xid);
    await(std::move(closed));
}

TEST_F(ClosingAStore, SendsWhatIsPending)
{
    const VeltoStoreHandle handle = open(writing);
    velto_kvstore_erase(handle, VELTO_TEXT("b"));
    const std::string first = expect_bytes(link(), erase_command("p/b"));
    velto_kvstore_set(handle, VELTO_TEXT("a"), VELTO_TEXT("1"));
    velto_kvstore_erase(handle, VELTO_TEXT("c"));
    auto closed = closing(handle);
    link().reply_ok(first);
    link().reply_ok(expect_bytes(link(), set_command("p/a", "1")));
    link().reply_ok(expect_bytes(link(), erase_command("p/c")));
    await(std::move(closed));
    session.settle(); // that was all
}

TEST_F(ClosingAStore, UnwatchesBeforeItWaitsForItsWrites)
{
    const VeltoStoreHandle handle = open(both);
    serve_opening();
    velto_kvstore_set(handle, VELTO_TEXT("a"), VELTO_TEXT("1"));
    const std::string xid = expect_bytes(link(), set_command("p/a", "1"));
    auto closed = closing(handle);
    expect_unwatch(link());
    link().reply_ok(xid);
    await(std::move(closed));
}

TEST_F(ClosingAStore, DuringItsScanLeavesTheRestToNobody)
{
    const VeltoStoreHandle handle = open(reading);
    expect_watch(link());
    const std::string xid = expect_download(link());
    link().send(scan_reply(xid, {{"p/a", "1"}}));
    velto_close_key_value_store(handle);
    expect_unwatch(link());
    link().send(scan_reply(xid, {{"p/b", "2"}}));
    link().reply_ok(xid);
    session.settle();
    EXPECT_TRUE(session.connection->wait_scan(u"notes", 0)); // ended as any
}

// Whoever is inside goes on as if nothing had happened.
TEST_F(ClosingAStore, LeavesCallsOfOtherThreadsAlone)
{
    const VeltoStoreHandle handle = open(both);
    serve_opening();
    const std::shared_ptr<KVStore> store = kv_stores().find(handle).value();
    auto change = in_thread([&] {
        std::vector<VeltoChar> key(64), value(64);
        std::uint32_t kind = 0;
        store->get_change(0xFFFFFFFF, &kind, {key.data(), 64}, {value.data(), 64});
        return ascii(key.data());
    });
    EXPECT_EQ(change.wait_for(20ms), std::future_status::timeout);
    velto_close_key_value_store(handle);
    EXPECT_EQ(change.wait_for(20ms), std::future_status::timeout);
    EXPECT_EQ(store->set(u"a", u"1"), VELTO_RESULT_OK); // comes too late, and reaches nobody
    EXPECT_EQ(store->flush(0), VELTO_RESULT_OK);
    std::vector<ZAVL3::Metadata> list(1);
    list[0].set<"Key">(AString("p/a"));
    store->on_metadata({}, list);
    EXPECT_EQ(await(std::move(change)), "a");
}

TEST_F(ClosingAStore, TwoWhoCloseItAtOnceCloseItOnce)
{
    for (int i = 0; i < 20; ++i) {
        const VeltoStoreHandle handle = open(both);
        serve_opening();
        auto first = closing(handle);
        auto second = closing(handle);
        await(std::move(first));
        await(std::move(second));
        expect_unwatch(link());
    }
    session.settle();
}

TEST_F(ClosingAStore, AmidChangesTakesNoneOfThemAmiss)
{
    constexpr int rounds = 30;
    std::atomic<bool> ended{false};
    auto client = in_thread([&] {
        for (int i = 0; i < rounds; ++i) {
            const VeltoStoreHandle handle = open(both);
            change_of(handle, 2);
            velto_close_key_value_store(handle);
        }
        ended = true;
        return outcome_of([&] { return velto_cmd_stop1(session.handle, 0); });
    });
    for (int i = 0; !ended; ++i) {
        const std::string key = "p/" + std::to_string(i % 7);
        link().send(change_report({{key, std::to_string(i)}}));
        link().send(removal_report({key}));
    }
    ReceivedCommand command = link().expect_command();
    while (command.name != "stop") {
        command = link().expect_command();
    }
    link().reply_ok(command.xid);
    EXPECT_EQ(await(std::move(client)), succeeded);
}

TEST_F(ClosingAStore, WithTheLinkDownAndNothingToWriteTakesNoTime)
{
    const VeltoStoreHandle handle = open(both);
    serve_opening();
    lose_link(session);
    velto_close_key_value_store(handle);
    restore_link(session);
    session.settle(); // it does not come back
}

// The store keeps its connection, which then has no handle any more.
TEST_F(ClosingAStore, ThatHasOutlivedItsConnectionEndsThatToo)
{
    const VeltoStoreHandle handle = open(both);
    serve_opening();
    session.settle();
    velto_close(session.handle);
    session.connection.clear();

    velto_kvstore_set(handle, VELTO_TEXT("a"), VELTO_TEXT("1"));
    link().reply_ok(expect_bytes(link(), set_command("p/a", "1")));
    EXPECT_EQ(velto_kvstore_flush(handle, long_ms), VELTO_RESULT_OK);
    link().send(change_report({{"p/b", "2"}}));
    EXPECT_EQ(change_of(handle, long_ms), "b = 2");

    link().close(); // it still does all that it did
    session.link.emplace(session.server.accept());
    velto_kvstore_erase(handle, VELTO_TEXT("a"));
    Texts names; // the writer does not wait for the worker
    for (int i = 0; i < 3; ++i) {
        const ReceivedCommand command = link().expect_command();
        link().reply_ok(command.xid);
        names.push_back(command.name);
    }
    std::sort(names.begin(), names.end());
    EXPECT_EQ(names, (Texts{"download_metadata", "metadata_erase", "watch_metadata_database"}));
    EXPECT_EQ(velto_kvstore_flush(handle, long_ms), VELTO_RESULT_OK);

    velto_close_key_value_store(handle);
    expect_unwatch(link());
}

TEST_F(ClosingAStore, OfTwoThatHaveOutlivedItsConnectionTheOtherLivesOn)
{
    const VeltoStoreHandle first = open(reading);
    const VeltoStoreHandle second = open(reading);
    serve_opening();
    link().reply_ok(expect_download(link()));
    velto_close(session.handle);
    session.connection.clear();
    velto_close_key_value_store(first);
    link().send(change_report({{"p/b", "2"}}));
    EXPECT_EQ(change_of(second, long_ms), "b = 2");
    link().close();
    velto_close_key_value_store(second);
}

// Its scan will never end; nothing of it may stay behind.
TEST_F(ClosingAStore, WithAScanOutstandingAsTheLastOfItsConnection)
{
    const VeltoStoreHandle handle = open(reading);
    expect_watch(link());
    expect_download(link());
    velto_close(session.handle);
    session.connection.clear();
    velto_close_key_value_store(handle);
    expect_unwatch(link());
}

} // namespace
