#include "connection/kv_store.h"

#include "support/assert_watch.h"
#include "support/store_script.h"

#include <gtest/gtest.h>

using namespace std::chrono_literals;

// What ties the stores of a connection to the wire: registration, scans, the way of a report, and
// how all of it comes back after a loss of the link.
namespace
{

constexpr std::uint32_t reading = VELTO_STORE_READ;
constexpr std::uint32_t both = VELTO_STORE_READ_WRITE;
constexpr std::uint32_t writing = VELTO_STORE_WRITE;

class Stores : public testing::Test
{
protected:
    ScriptLink& link() { return *session.link; }

    // Expects what the first store on a folder sends, and ends its scan.
    void serve_opening(const Entries& entries = {}, const std::string& folder = "notes")
    {
        expect_watch(link(), folder);
        serve_scan(entries, folder);
    }

    void serve_scan(const Entries& entries = {}, const std::string& folder = "notes")
    {
        const std::string xid = expect_download(link(), folder);
        if (!entries.empty()) {
            link().send(scan_reply(xid, entries, "", folder));
        }
        link().reply_ok(xid);
    }

    // What the client then has taken in, it has taken in from everything before.
    void settle() { session.settle(); }

    Session session;
};

TEST_F(Stores, TheFirstOnAFolderWatchesAndScansItAndTheSecondOnlyScans)
{
    const Store first(session.handle, reading);
    expect_watch(link());
    expect_download(link());
    const Store second(session.handle, both, "q/");
    expect_download(link());
    settle(); // that was all
}

TEST_F(Stores, EachFolderIsWatchedByItself)
{
    const Store notes(session.handle, reading);
    const Store cues(session.handle, reading, "p/", "cues");
    expect_watch(link());
    expect_download(link());
    expect_watch(link(), "cues");
    expect_download(link(), "cues");
}

TEST_F(Stores, TheLastOnAFolderEndsItsWatch)
{
    Store first(session.handle, reading);
    Store second(session.handle, both);
    Store other(session.handle, reading, "", "cues");
    serve_opening();
    serve_scan();
    serve_opening({}, "cues");

    first.close();
    settle(); // nothing was sent
    other.close();
    expect_unwatch(link(), "cues");
    second.close();
    expect_unwatch(link());

    const Store again(session.handle, reading);
    serve_opening(); // as if there had been none
}

TEST_F(Stores, OneThatOnlyWritesIsNotKnownHere)
{
    Store store(session.handle, writing);
    settle(); // neither watch nor download
    link().send(change_report({{"p/a", "1"}}));
    settle();
    EXPECT_EQ(store.change(), "Write only");
    session.replace_link();
    settle();
    store.close();
    settle(); // no unwatch
}

TEST_F(Stores, AScanReachesEveryStoreOnTheFolder)
{
    const Store first(session.handle, reading);
    serve_opening({{"p/a", "1"}, {"p/b", "2"}});
    EXPECT_EQ(first.wait_scan(long_ms), succeeded);
    EXPECT_EQ(first.changes(), (Texts{"a = 1", "b = 2"}));

    const Store second(session.handle, reading, "");
    serve_scan({{"p/a", "1"}, {"p/b", "2"}});
    EXPECT_EQ(second.wait_scan(long_ms), succeeded);
    EXPECT_EQ(second.changes(), (Texts{"p/a = 1", "p/b = 2"}));
    EXPECT_EQ(first.changes(), (Texts{"a = 1", "b = 2"})); // once more
}

TEST_F(Stores, AScanCanComeInManyPieces)
{
    const Store store(session.handle, reading, "");
    expect_watch(link());
    const std::string xid = expect_download(link());
    link().send(scan_reply(xid, {{"a", "1"}, {"b", "2"}}));
    settle();
    EXPECT_EQ(store.changes(), (Texts{"a = 1", "b = 2"}));
    EXPECT_EQ(store.wait_scan(0), timed_out);
    link().send(scan_reply(xid, {{"c", "3"}}));
    link().send(scan_reply(xid, {}));
    link().send(scan_reply(xid, {{"d", "4"}}, "sub/"));
    link().reply_ok(xid);
    EXPECT_EQ(store.wait_scan(long_ms), succeeded);
    EXPECT_EQ(store.changes(), (Texts{"c = 3", "sub/d = 4"}));
}

TEST_F(Stores, AReportReachesTheStoresOfItsFolderAlone)
{
    const Store notes(session.handle, reading, "");
    const Store cues(session.handle, reading, "", "cues");
    link().send(change_report({{"a", "1"}}));
    link().send(change_report({{"b", "2"}}, "", "cues"));
    link().send(change_report({{"c", "3"}}, "", "nobodys"));
    link().send(removal_report({{"d"}}, "", "cues"));
    link().send(removal_report({{"e"}}, "", "nobodys"));
    link().send(change_report({{"f", "4"}}, "", "note"));
    link().send(change_report({{"g", "5"}}, "", "Notes"));
    for (const char* folder : {"notes", "cues"}) {
        expect_watch(link(), folder);
        expect_download(link(), folder);
    }
    settle();
    EXPECT_EQ(notes.changes(), Texts{"a = 1"});
    EXPECT_EQ(cues.changes(), (Texts{"b = 2", "no d"}));
}

TEST_F(Stores, AReportForNobodyIsDropped)
{
    AssertWatch watch;
    link().send(change_report({{"a", "1"}}));
    link().send(removal_report({"a"}));
    settle();
    Store store(session.handle, reading, "");
    serve_opening();
    store.close();
    expect_unwatch(link());
    link().send(change_report({{"a", "1"}}));
    settle();
    EXPECT_EQ(watch.count(), 0u);
}

TEST_F(Stores, ThoseOfTwoConnectionsNeverMeet)
{
    Session other;
    const Store here(session.handle, reading, "");
    const Store there(other.handle, reading, "");
    expect_watch(*other.link); // a folder is watched on each
    other.link->reply_ok(expect_download(*other.link));
    serve_opening();
    link().send(change_report({{"a", "1"}}));
    settle();
    other.settle();
    EXPECT_EQ(here.changes(), Texts{"a = 1"});
    EXPECT_EQ(there.changes(), Texts{});
}

TEST_F(Stores, WaitScanWaitsForTheScan)
{
    const Store store(session.handle, reading);
    expect_watch(link());
    const std::string xid = expect_download(link());
    EXPECT_EQ(store.wait_scan(0), timed_out);
    auto waiting = calling([&] { return velto_kvstore_wait_scan(store.handle, long_ms); });
    EXPECT_EQ(waiting.wait_for(50ms), std::future_status::timeout);
    link().reply_ok(xid);
    EXPECT_EQ(await(std::move(waiting)), succeeded);
    EXPECT_EQ(store.wait_scan(0), succeeded); // from now on at once
}

TEST_F(Stores, AFailedScanDoesNotEndTheWaitButALaterOneDoes)
{
    const Store store(session.handle, reading);
    expect_watch(link());
    link().reply_error(expect_download(link()), "No such database");
    settle();
    EXPECT_EQ(store.wait_scan(0), timed_out);
    auto waiting = calling([&] { return velto_kvstore_wait_scan(store.handle, long_ms); });
    EXPECT_EQ(waiting.wait_for(50ms), std::future_status::timeout);
    const Store later(session.handle, reading);
    serve_scan();
    EXPECT_EQ(await(std::move(waiting)), succeeded);
}

TEST_F(Stores, OfOverlappingScansTheOneThatEndsLastDecides)
{
    const Store first(session.handle, reading);
    const Store second(session.handle, reading);
    expect_watch(link());
    const std::string bad = expect_download(link());
    const std::string good = expect_download(link());
    link().reply_error(bad, "refused");
    settle();
    EXPECT_EQ(first.wait_scan(0), timed_out); // one is still under way
    link().reply_ok(good);
    EXPECT_EQ(first.wait_scan(long_ms), succeeded);

    const Store third(session.handle, reading);
    const Store fourth(session.handle, reading);
    const std::string good_again = expect_download(link());
    const std::string bad_again = expect_download(link());
    link().reply_ok(good_again);
    link().reply_error(bad_again, "refused");
    settle();
    EXPECT_EQ(first.wait_scan(0), timed_out);
}

TEST_F(Stores, ANewScanIsWaitedForAnew)
{
    const Store first(session.handle, reading);
    serve_opening();
    EXPECT_EQ(first.wait_scan(long_ms), succeeded);
    const Store second(session.handle, reading);
    const std::string xid = expect_download(link());
    EXPECT_EQ(first.wait_scan(0), timed_out);
    link().reply_ok(xid);
    EXPECT_EQ(first.wait_scan(long_ms), succeeded);
}

TEST_F(Stores, OneThatOnlyWritesCanWaitForTheScanOfOthers)
{
    const Store writer(session.handle, writing);
    const auto start = std::chrono::steady_clock::now();
    EXPECT_EQ(writer.wait_scan(100), timed_out);
    EXPECT_GE(std::chrono::steady_clock::now() - start, 100ms);

    const Store elsewhere(session.handle, reading, "", "cues");
    serve_opening({}, "cues");
    settle();
    EXPECT_EQ(writer.wait_scan(0), timed_out);
    const Store reader(session.handle, reading);
    serve_opening();
    EXPECT_EQ(writer.wait_scan(long_ms), succeeded);
}

TEST_F(Stores, TheScanOfAFolderIsRememberedWhenItsLastStoreGoes)
{
    {
        const Store store(session.handle, reading);
        serve_opening();
        EXPECT_EQ(store.wait_scan(long_ms), succeeded);
    }
    expect_unwatch(link());
    const Store writer(session.handle, writing);
    EXPECT_EQ(writer.wait_scan(0), succeeded);
}

TEST_F(Stores, AreWatchedAndScannedAgainWhenTheLinkIsBack)
{
    const Store notes(session.handle, reading, "");
    const Store second(session.handle, both, "p/");
    serve_opening({{"a", "1"}, {"p/b", "2"}});
    serve_scan();
    EXPECT_EQ(notes.wait_scan(long_ms), succeeded);

    session.replace_link();
    serve_opening({{"a", "1"}, {"p/b", "3"}}); // once for both stores
    EXPECT_EQ(notes.wait_scan(long_ms), succeeded);
    settle();                                                // that was all
    EXPECT_EQ(notes.changes(), (Texts{"a = 1", "p/b = 3"})); // still there: no change is dropped
    EXPECT_EQ(second.changes(), (Texts{"b = 3"}));
}

TEST_F(Stores, AfterALossEachKeyIsAFreshChangeAndWhatWasErasedGoesUnnoticed)
{
    const Store store(session.handle, reading, "");
    serve_opening({{"a", "1"}, {"b", "2"}});
    EXPECT_EQ(store.wait_scan(long_ms), succeeded);
    EXPECT_EQ(store.changes(), (Texts{"a = 1", "b = 2"}));
    session.replace_link();
    serve_opening({{"a", "1"}});
    EXPECT_EQ(store.wait_scan(long_ms), succeeded);
    EXPECT_EQ(store.changes(), Texts{"a = 1"});
}

TEST_F(Stores, EveryFolderComesBackInOnePass)
{
    const Store notes(session.handle, reading);
    const Store cues(session.handle, reading, "", "cues");
    Store gone(session.handle, reading, "", "gone");
    for (const char* folder : {"notes", "cues", "gone"}) {
        serve_opening({}, folder);
    }
    gone.close();
    expect_unwatch(link(), "gone");
    session.replace_link();
    std::multiset<std::string> folders; // in an order that nobody knows
    for (int i = 0; i < 2; ++i) {
        const std::string watch = link().expect("watch_metadata_database").bytes;
        const std::string download = link().expect("download_metadata").bytes;
        for (const char* folder : {"notes", "cues"}) {
            const std::string element = xml_element("MetadataDatabase", folder);
            if (watch.find(element) != std::string::npos &&
                download.find(element) != std::string::npos) {
                folders.insert(folder);
            }
        }
    }
    EXPECT_EQ(folders, (std::multiset<std::string>{"cues", "notes"}));
    settle(); // that was all
}

TEST_F(Stores, ComeBackBehindTheChannels)
{
    const Store store(session.handle, reading);
    serve_opening();
    settle();
    EXPECT_EQ(first_read(session, position_getter, 4), read_to("250"));
    session.replace_link();
    expect_registration(session, 'E', "timecode");
    serve_opening();
}

TEST_F(Stores, AScanThatLosesItsLinkHasFailedAndTheNextOneCounts)
{
    const Store store(session.handle, reading);
    expect_watch(link());
    expect_download(link());
    auto waiting = calling([&] { return velto_kvstore_wait_scan(store.handle, long_ms); });
    lose_link(session);
    EXPECT_EQ(store.wait_scan(0), timed_out);
    restore_link(session);
    serve_opening();
    EXPECT_EQ(await(std::move(waiting)), succeeded);
}

TEST_F(Stores, OpenedWithTheLinkDownComeAliveWhenItIsBack)
{
    lose_link(session);
    const Store store(session.handle, reading);
    EXPECT_EQ(store.wait_scan(0), timed_out);
    EXPECT_EQ(store.change(), "Timeout");
    restore_link(session);
    serve_opening({{"p/a", "1"}});
    EXPECT_EQ(store.change(long_ms), "a = 1");
    EXPECT_EQ(store.wait_scan(long_ms), succeeded);
}

TEST_F(Stores, ClosedWithTheLinkDownDoNotComeBack)
{
    Store store(session.handle, reading);
    serve_opening();
    lose_link(session);
    store.close();
    restore_link(session);
    settle();
}

// What the tables hold of a store that is not in them, or twice: nothing changes.
TEST_F(Stores, ARegistrationThatCannotBeIsReportedAndIgnored)
{
    AssertWatch watch;
    KVStore store(session.connection, u"notes", u"", kv_read);
    serve_opening();
    session.connection->register_store(&store, u"cues");
    settle(); // nothing was sent
    store.close();
    expect_unwatch(link());
    session.connection->unregister_store(&store);
    settle();
    const std::vector<AssertWatch::Report> reports = watch.reports();
    ASSERT_EQ(reports.size(), 2u);
    EXPECT_EQ(reports[0].source, "velto");
    EXPECT_EQ(reports[0].expression, "l->byStore.find (kvstore) == l->byStore.cend ()");
    EXPECT_EQ(reports[1].source, "velto");
    EXPECT_EQ(reports[1].expression, "it != l->byStore.cend ()");
}

} // namespace
