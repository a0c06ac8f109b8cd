#include "connection/kv_store.h"

#include "support/assert_watch.h"
#include "support/store_script.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

namespace
{

constexpr std::uint32_t both = VELTO_STORE_READ_WRITE;
constexpr std::uint32_t writing = VELTO_STORE_WRITE;

// ---- Changes, on their way down. What the connection calls is called here.

// A store of a connection that has no server, with its inside laid open.
class LoneStore : public KVStore
{
public:
    explicit LoneStore(std::int32_t store_mode = kv_read, const std::u16string& key_prefix = u"p/")
        : KVStore(ARef<VeltoConnObject>::create(), u"notes", key_prefix, store_mode)
    {
    }
    ~LoneStore() { close(); }

    using KVStore::changes_erase;
    using KVStore::changes_order;
    using KVStore::changes_set;

    void arrive(const Entries& entries, const std::string& report_prefix = {})
    {
        std::vector<ZAVL3::Metadata> list;
        for (const auto& [key, value] : entries) {
            list.emplace_back().set<"Key">(utf8(key));
            list.back().set<"Value">(utf8(value));
        }
        on_metadata(utf8(report_prefix), list);
    }

    void leave(const Texts& keys, const std::string& report_prefix = {})
    {
        std::vector<AString> list;
        for (const std::string& key : keys) {
            list.push_back(utf8(key));
        }
        on_metadata_removed(utf8(report_prefix), list);
    }

    // As change_of.
    std::string change(std::uint32_t timeout_ms = 0)
    {
        std::uint32_t kind = 0;
        std::vector<VeltoChar> key(64), value(64);
        const Outcome outcome = outcome_of([&] {
            return get_change(timeout_ms, &kind, {key.data(), 64}, {value.data(), 64});
        });
        if (outcome != succeeded) {
            return outcome.text;
        }
        return kind == VELTO_STORE_CHANGE_SET ? ascii(key.data()) + " = " + ascii(value.data())
                                              : "no " + ascii(key.data()) + ascii(value.data());
    }

    Texts changes()
    {
        return changes_until_timeout([this] { return change(); });
    }
};

TEST(Changes, ComeInTheOrderOfTheirArrival)
{
    LoneStore store;
    store.arrive({{"p/b", "1"}, {"p/a", "2"}});
    store.leave({"p/d", "p/c"});
    EXPECT_EQ(store.changes(), (Texts{"b = 1", "a = 2", "no d", "no c"}));
    EXPECT_EQ(store.changes(), Texts{});
}

TEST(Changes, OfOtherKeysAndOfThePrefixItselfAreSkipped)
{
    LoneStore store;
    const Entries foreign = {{"p/", "0"}, {"p", "1"}, {"q/a", "2"}, {"P/a", "3"}, {"", "4"}};
    store.arrive(foreign);
    for (const auto& [key, value] : foreign) {
        store.leave({key});
    }
    EXPECT_EQ(store.changes(), Texts{});
    store.arrive({{"q/a", "1"}, {"p/a", "2"}, {"p/", "3"}, {"p/p/", "4"}}); // amid others
    EXPECT_EQ(store.changes(), (Texts{"a = 2", "p/ = 4"}));
}

TEST(Changes, OfAStoreWithoutAPrefixAreAllKeysButTheEmptyOne)
{
    LoneStore store(kv_read, u"");
    store.arrive({{"", "1"}, {"a", "2"}, {"p/a", "3"}});
    store.leave({"", "b"});
    EXPECT_EQ(store.changes(), (Texts{"a = 2", "p/a = 3", "no b"}));
}

TEST(Changes, BearThePrefixOfTheirReport)
{
    LoneStore store;
    store.arrive({{"/a", "1"}, {"a", "2"}}, "p");
    store.arrive({{"b", "3"}, {"", "4"}}, "p/");
    store.arrive({{"", "5"}}, "p/c");
    store.leave({"/d"}, "p");
    EXPECT_EQ(store.changes(), (Texts{"a = 1", "b = 3", "c = 5", "no d"}));
}

// Each by itself: a character that is no text ends its own part only.
TEST(Changes, PrefixAndKeyAreConvertedApart)
{
    LoneStore store(kv_read, u"");
    std::vector<ZAVL3::Metadata> list(1);
    list[0].set<"Key">(AString("key"));
    list[0].set<"Value">(AString("1"));
    store.on_metadata(AString("a") + AString(AChar{0xD800}) + AString("b"), list);
    EXPECT_EQ(store.changes(), Texts{"akey = 1"});
}

TEST(Changes, OfOneKeyOnlyTheLatestIsDelivered)
{
    LoneStore store;
    store.arrive({{"p/a", "1"}, {"p/b", "1"}});
    store.arrive({{"p/a", "2"}});
    store.arrive({{"p/c", "1"}, {"p/a", "3"}, {"p/a", "4"}});
    EXPECT_EQ(store.changes(), (Texts{"a = 4", "b = 1", "c = 1"})); // at the first place
}

TEST(Changes, ASetThatIsRemovedBeforeItsDeliveryIsARemovalAtItsPlace)
{
    LoneStore store;
    store.arrive({{"p/a", "1"}, {"p/b", "1"}});
    store.leave({"p/a"});
    EXPECT_EQ(store.changes(), (Texts{"no a", "b = 1"}));
}

TEST(Changes, ARemovalThatIsSetBeforeItsDeliveryIsASetAtItsPlace)
{
    LoneStore store;
    store.leave({"p/a", "p/b"});
    store.arrive({{"p/a", "1"}});
    EXPECT_EQ(store.changes(), (Texts{"a = 1", "no b"}));
}

TEST(Changes, SetRemovedAndSetIsOneSetAtTheFirstPlace)
{
    LoneStore store;
    store.arrive({{"p/a", "1"}, {"p/b", "1"}});
    store.leave({"p/a"});
    store.arrive({{"p/a", "3"}});
    EXPECT_EQ(store.changes(), (Texts{"a = 3", "b = 1"}));
}

TEST(Changes, RemovedTwiceIsOneRemoval)
{
    LoneStore store;
    store.leave({"p/a", "p/a"});
    store.leave({"p/a"});
    EXPECT_EQ(store.changes(), Texts{"no a"});
}

TEST(Changes, AValueThatWasDeliveredComesAgain)
{
    LoneStore store;
    store.arrive({{"p/a", "1"}});
    EXPECT_EQ(store.changes(), Texts{"a = 1"});
    store.arrive({{"p/a", "1"}});
    store.arrive({{"p/a", "1"}});
    EXPECT_EQ(store.changes(), Texts{"a = 1"});
}

TEST(Changes, NoneInTimeIsATimeout)
{
    LoneStore store;
    EXPECT_EQ(store.change(0), "Timeout");
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(store.change(100), "Timeout");
    EXPECT_GE(std::chrono::steady_clock::now() - start, 100ms);
}

TEST(Changes, AreWaitedForWithAllBitsOfTheTime)
{
    for (const std::uint32_t timeout_ms : {0xFFFFFFFFu, 0x80000000u}) {
        LoneStore store;
        auto waiting = in_thread([&] { return store.change(timeout_ms); });
        EXPECT_EQ(waiting.wait_for(20ms), std::future_status::timeout);
        store.arrive({{"q/a", "0"}}); // none of ours
        EXPECT_EQ(waiting.wait_for(20ms), std::future_status::timeout);
        store.leave({"p/a"});
        EXPECT_EQ(await(std::move(waiting)), "no a");
    }
}

TEST(Changes, ThatAreThereAreNotWaitedFor)
{
    LoneStore store;
    store.arrive({{"p/a", "1"}});
    auto taking = in_thread([&] { return store.change(0xFFFFFFFF); });
    EXPECT_EQ(await(std::move(taking)), "a = 1");
}

TEST(Changes, ManyThatComeTogetherWakeAllWhoWait)
{
    LoneStore store;
    auto first = in_thread([&] { return store.change(0xFFFFFFFF); });
    auto second = in_thread([&] { return store.change(0xFFFFFFFF); });
    EXPECT_EQ(first.wait_for(20ms), std::future_status::timeout);
    store.arrive({{"p/a", "1"}, {"p/b", "2"}});
    Texts taken{await(std::move(first)), await(std::move(second))};
    std::sort(taken.begin(), taken.end());
    EXPECT_EQ(taken, (Texts{"a = 1", "b = 2"}));
}

TEST(Changes, LeaveTheOutputsAloneWhenThereIsNone)
{
    LoneStore store;
    std::uint32_t kind = 77;
    VeltoChar key = 'k';
    VeltoChar value = 'v';
    EXPECT_EQ(outcome_of([&] {
                  return store.get_change(0, &kind, {&key, 1}, {&value, 1});
              }),
              timed_out);
    EXPECT_EQ(kind, 77u);
    EXPECT_EQ(key, VeltoChar{'k'});
    EXPECT_EQ(value, VeltoChar{'v'});
}

// An order without the tables to it can not come about; what then happens is settled all the same.
TEST(Changes, AKeyWithoutAChangeFailsWithoutAText)
{
    AssertWatch watch;
    LoneStore store;
    store.changes_order.push_back(u"a");
    set_last_error_text("before");
    EXPECT_EQ(store.change(), "before");
    ASSERT_EQ(watch.count(), 1u);
    EXPECT_EQ(watch.reports()[0].source, "kv_store");
    EXPECT_EQ(watch.reports()[0].expression, "!(changes_set.empty () && changes_erase.empty ())");
    EXPECT_EQ(store.changes_order.size(), 1u);

    store.changes_set.emplace(u"b", u"1");
    std::uint32_t kind = 77;
    EXPECT_EQ(store.get_change(0, &kind, {nullptr, 0}, {nullptr, 0}), VELTO_RESULT_FAILED);
    EXPECT_EQ(get_last_error_text().to_utf8(), "before");
    EXPECT_EQ(kind, 77u);
    EXPECT_TRUE(store.changes_order.empty()); // the key is gone
}

// ---- Writes, on their way up.

class Writes : public testing::Test
{
protected:
    ScriptLink& link() { return *session.link; }

    // Keeps the writer busy, so that what is written next waits behind it. Gives the xid to answer.
    std::string occupy()
    {
        EXPECT_EQ(store.set("busy", "1"), succeeded);
        return expect_bytes(link(), set_command("p/busy", "1"));
    }

    void serve(const std::string& element) { link().reply_ok(expect_bytes(link(), element)); }

    void expect_nothing_more()
    {
        EXPECT_EQ(store.flush(long_ms), succeeded);
        session.settle();
    }

    Session session;
    Store store{session.handle, writing};
};

TEST_F(Writes, ASetAndAnEraseGoOutWithTheFullKey)
{
    EXPECT_EQ(store.set("a", "1"), succeeded);
    serve(set_command("p/a", "1"));
    EXPECT_EQ(store.flush(long_ms), succeeded);
    EXPECT_EQ(store.erase("a"), succeeded);
    serve(erase_command("p/a"));
    expect_nothing_more();
}

TEST_F(Writes, TextsAreEscapedAndEmptyOnesAreWritten)
{
    const Store plain(session.handle, writing, "", "<notes>");
    EXPECT_EQ(plain.set("a&b", "<1>"), succeeded);
    serve(set_command("a&amp;b", "&lt;1&gt;", "&lt;notes&gt;"));
    EXPECT_EQ(plain.flush(long_ms), succeeded);
    EXPECT_EQ(plain.set("", ""), succeeded);
    const ReceivedCommand command = link().expect("metadata_set");
    EXPECT_NE(command.bytes.find("<Key />\r\n<Value />"), std::string::npos) << command.bytes;
    link().reply_ok(command.xid);
    EXPECT_EQ(plain.flush(long_ms), succeeded);
}

TEST_F(Writes, OneIsInFlightAtATime)
{
    const std::string first = occupy();
    EXPECT_EQ(store.set("a", "1"), succeeded);
    session.settle(); // nothing else is sent
    link().reply_ok(first);
    serve(set_command("p/a", "1"));
    expect_nothing_more();
}

TEST_F(Writes, OfTwoSetsThatWaitTheLaterGoesOut)
{
    const std::string busy = occupy();
    EXPECT_EQ(store.set("k", "A"), succeeded);
    EXPECT_EQ(store.set("k", "B"), succeeded);
    link().reply_ok(busy);
    serve(set_command("p/k", "B"));
    expect_nothing_more();
}

TEST_F(Writes, ASetDuringTheFlightOfAnotherFollowsIt)
{
    EXPECT_EQ(store.set("k", "A"), succeeded);
    const std::string first = expect_bytes(link(), set_command("p/k", "A"));
    EXPECT_EQ(store.set("k", "B"), succeeded);
    link().reply_ok(first);
    const std::string second = expect_bytes(link(), set_command("p/k", "B"));
    EXPECT_EQ(store.flush(0), timed_out); // only after that one
    link().reply_ok(second);
    expect_nothing_more();
}

TEST_F(Writes, TheSameValueAgainDuringTheFlightIsConfirmedWithIt)
{
    EXPECT_EQ(store.set("k", "A"), succeeded);
    const std::string first = expect_bytes(link(), set_command("p/k", "A"));
    EXPECT_EQ(store.set("k", "A"), succeeded);
    link().reply_ok(first);
    expect_nothing_more();
}

TEST_F(Writes, AnEraseReplacesASetThatWaits)
{
    const std::string busy = occupy();
    EXPECT_EQ(store.set("k", "A"), succeeded);
    EXPECT_EQ(store.erase("k"), succeeded);
    link().reply_ok(busy);
    serve(erase_command("p/k"));
    expect_nothing_more();
}

TEST_F(Writes, ASetReplacesAnEraseThatWaits)
{
    const std::string busy = occupy();
    EXPECT_EQ(store.erase("k"), succeeded);
    EXPECT_EQ(store.set("k", "A"), succeeded);
    link().reply_ok(busy);
    serve(set_command("p/k", "A"));
    expect_nothing_more();
}

TEST_F(Writes, ASetDuringTheFlightOfAnEraseFollowsIt)
{
    EXPECT_EQ(store.erase("k"), succeeded);
    const std::string erase = expect_bytes(link(), erase_command("p/k"));
    EXPECT_EQ(store.set("k", "A"), succeeded);
    link().reply_ok(erase);
    serve(set_command("p/k", "A"));
    expect_nothing_more();
}

TEST_F(Writes, AnEraseDuringTheFlightOfASetFollowsItAndIsNothingToReport)
{
    AssertWatch watch;
    EXPECT_EQ(store.set("k", "A"), succeeded);
    const std::string set = expect_bytes(link(), set_command("p/k", "A"));
    EXPECT_EQ(store.erase("k"), succeeded);
    link().reply_ok(set);
    serve(erase_command("p/k"));
    expect_nothing_more();
    EXPECT_EQ(watch.count(), 0u);
}

TEST_F(Writes, AnEraseOfAKeyThatNobodyWroteGoesOutAllTheSame)
{
    EXPECT_EQ(store.erase("never"), succeeded);
    serve(erase_command("p/never"));
    expect_nothing_more();
}

TEST_F(Writes, AllSetsGoBeforeAnyErase)
{
    const std::string busy = occupy();
    EXPECT_EQ(store.erase("e"), succeeded);
    EXPECT_EQ(store.set("s", "1"), succeeded);
    EXPECT_EQ(store.set("t", "1"), succeeded);
    link().reply_ok(busy);
    std::multiset<std::string> sets; // in an order that nobody knows
    for (int i = 0; i < 2; ++i) {
        const ReceivedCommand set = link().expect("metadata_set");
        sets.insert(set.bytes.substr(set.bytes.find("<metadata_set>")));
        link().reply_ok(set.xid);
    }
    EXPECT_EQ(sets, (std::multiset<std::string>{set_command("p/s", "1") + "\r\n</cmd>",
                                                set_command("p/t", "1") + "\r\n</cmd>"}));
    serve(erase_command("p/e"));
    expect_nothing_more();
}

TEST_F(Writes, ASetDuringTheFlightOfAnEraseGoesBeforeTheOtherErases)
{
    EXPECT_EQ(store.erase("d"), succeeded);
    const std::string first = expect_bytes(link(), erase_command("p/d"));
    EXPECT_EQ(store.erase("e"), succeeded);
    EXPECT_EQ(store.set("s", "1"), succeeded);
    link().reply_ok(first);
    serve(set_command("p/s", "1"));
    serve(erase_command("p/e"));
    expect_nothing_more();
}

// The longest pause that a test can tell from none. The clocks of both ends are the same.
constexpr auto retry_pause = 200ms;

TEST_F(Writes, ARefusedOneIsTriedAgainAfterAPauseForEver)
{
    EXPECT_EQ(store.set("k", "A"), succeeded);
    for (int i = 0; i < 3; ++i) {
        const std::string xid = expect_bytes(link(), set_command("p/k", "A"));
        const auto refused = std::chrono::steady_clock::now();
        link().reply_error(xid, "Not now");
        EXPECT_EQ(store.flush(0), timed_out);
        const ReceivedCommand again = link().expect("metadata_set");
        EXPECT_GE(std::chrono::steady_clock::now() - refused, retry_pause);
        link().reply_error(again.xid, "Nor now");
    }
    serve(set_command("p/k", "A"));
    expect_nothing_more();
}

TEST_F(Writes, ARefusedEraseIsTriedAgainAfterAPause)
{
    EXPECT_EQ(store.erase("k"), succeeded);
    const std::string xid = expect_bytes(link(), erase_command("p/k"));
    const auto refused = std::chrono::steady_clock::now();
    link().reply_error(xid, "Not now");
    const std::string again = expect_bytes(link(), erase_command("p/k"));
    EXPECT_GE(std::chrono::steady_clock::now() - refused, retry_pause);
    link().reply_ok(again);
    expect_nothing_more();
}

TEST_F(Writes, ANewOneDoesNotShortenThePause)
{
    EXPECT_EQ(store.erase("k"), succeeded);
    const std::string xid = expect_bytes(link(), erase_command("p/k"));
    const auto refused = std::chrono::steady_clock::now();
    link().reply_error(xid, "Not now");
    session.settle(); // the refusal has arrived
    for (int i = 0; i < 10; ++i) {
        EXPECT_EQ(store.set("s", std::to_string(i)), succeeded);
        std::this_thread::sleep_for(2ms);
    }
    ReceivedCommand next = link().expect_command();
    EXPECT_GE(std::chrono::steady_clock::now() - refused, retry_pause);
    bool erased = false;
    bool set = false;
    for (;; next = link().expect_command()) { // on a slow day there are some sets before the last
        link().reply_ok(next.xid);
        erased = erased || next.name == "metadata_erase";
        set = set || next.bytes.find(set_command("p/s", "9")) != std::string::npos;
        if (erased && set) {
            break;
        }
    }
    expect_nothing_more();
}

TEST_F(Writes, AnotherValueForARefusedKeyTakesItsPlace)
{
    EXPECT_EQ(store.set("k", "A"), succeeded);
    const std::string first = expect_bytes(link(), set_command("p/k", "A"));
    EXPECT_EQ(store.set("k", "B"), succeeded);
    link().reply_error(first, "Not A");
    serve(set_command("p/k", "B"));
    expect_nothing_more();
}

TEST_F(Writes, TheTextOfARefusalReachesNobody)
{
    EXPECT_EQ(store.set("k", "A"), succeeded);
    link().reply_error(expect_bytes(link(), set_command("p/k", "A")), "Not now");
    session.settle();
    EXPECT_EQ(get_last_error_text().to_utf8(), "OK");
    serve(set_command("p/k", "A"));
    expect_nothing_more();
}

TEST_F(Writes, AnIdleStoreIsFlushedAtOnce)
{
    EXPECT_EQ(store.flush(0), succeeded);
    const Store other(session.handle, both);
    EXPECT_EQ(other.flush(0), succeeded);
}

TEST_F(Writes, FlushWaitsForTheLastConfirmation)
{
    const std::string busy = occupy();
    EXPECT_EQ(store.set("a", "1"), succeeded);
    EXPECT_EQ(store.flush(0), timed_out);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(store.flush(100), timed_out);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 100ms);
    auto first = calling([&] { return velto_kvstore_flush(store.handle, 0xFFFFFFFF); });
    auto second = calling([&] { return velto_kvstore_flush(store.handle, 0x80000000); });
    link().reply_ok(busy);
    const std::string last = expect_bytes(link(), set_command("p/a", "1"));
    EXPECT_EQ(first.wait_for(20ms), std::future_status::timeout);
    link().reply_ok(last);
    EXPECT_EQ(await(std::move(first)), succeeded);
    EXPECT_EQ(await(std::move(second)), succeeded);
}

TEST_F(Writes, WaitWhileTheLinkIsDownAndGoOutWhenItIsBack)
{
    lose_link(session);
    EXPECT_EQ(store.set("a", "1"), succeeded);
    EXPECT_EQ(store.flush(100), timed_out);
    restore_link(session);
    serve(set_command("p/a", "1"));
    expect_nothing_more();
}

TEST_F(Writes, OneThatLosesItsReplyWithTheLinkIsSentAgain)
{
    EXPECT_EQ(store.set("a", "1"), succeeded);
    expect_bytes(link(), set_command("p/a", "1"));
    session.replace_link();
    serve(set_command("p/a", "1"));
    expect_nothing_more();
}

TEST_F(Writes, OfAStoreThatReadsTooGoOutBesideItsScan)
{
    const Store reader(session.handle, both);
    expect_watch(link());
    const std::string scan = expect_download(link());
    EXPECT_EQ(reader.set("a", "1"), succeeded);
    serve(set_command("p/a", "1")); // whatever the scan does
    EXPECT_EQ(reader.flush(long_ms), succeeded);
    link().send(change_report({{"p/a", "1"}}));
    link().reply_ok(scan);
    EXPECT_EQ(reader.change(long_ms), "a = 1"); // its own write, as the server tells it
}

TEST_F(Writes, OfTwoStoresDoNotWaitForEachOther)
{
    const std::string busy = occupy();
    const Store other(session.handle, writing);
    EXPECT_EQ(other.set("a", "1"), succeeded);
    serve(set_command("p/a", "1"));
    EXPECT_EQ(other.flush(long_ms), succeeded);
    link().reply_ok(busy);
    expect_nothing_more();
}

// The price of not waiting: the entries leave the store as soon as they are sent.
TEST_F(Writes, OnAnAsynchronousConnectionCountAsConfirmedOnceTheyAreSent)
{
    velto_synchronous(session.handle, VELTO_COMMANDS_DO_NOT_WAIT);
    EXPECT_EQ(store.set("a", "1"), succeeded);
    EXPECT_EQ(store.flush(long_ms), succeeded);
    const std::string set = expect_bytes(link(), set_command("p/a", "1"));
    EXPECT_EQ(store.erase("b"), succeeded);
    EXPECT_EQ(store.flush(long_ms), succeeded);
    link().reply_error(set, "nobody hears it");
    link().reply_ok(expect_bytes(link(), erase_command("p/b")));
    velto_sync(session.handle);
    velto_synchronous(session.handle, VELTO_COMMANDS_WAIT);
    expect_nothing_more();
}

TEST_F(Writes, OfManyThreadsAllArrive)
{
    constexpr int threads = 4;
    constexpr int keys = 25;
    std::vector<std::future<void>> writers;
    for (int thread = 0; thread < threads; ++thread) {
        writers.push_back(in_thread([this, thread] {
            for (int i = 0; i < keys; ++i) {
                store.set(std::to_string(thread) + "-" + std::to_string(i), "1");
            }
        }));
    }
    std::set<std::string> arrived;
    while (arrived.size() < threads * keys) {
        const ReceivedCommand set = link().expect("metadata_set");
        EXPECT_TRUE(arrived.insert(set.bytes.substr(set.bytes.find("<Key>"))).second);
        link().reply_ok(set.xid);
    }
    for (std::future<void>& writer : writers) {
        await(std::move(writer));
    }
    expect_nothing_more();
}

} // namespace
