#include "support/clip_script.h"

#include <random>

#include <gtest/gtest.h>

namespace
{

using OpenList = VeltoResult (*)(VeltoHandle, VeltoListHandle*);
using TakeName = VeltoResult (*)(VeltoListHandle, VeltoTextBuffer);

// A kind of list: what it sends, and the reply that brings a name.
struct ListRow {
    const char* name;
    OpenList open;
    TakeName take;
    void (*close)(VeltoListHandle);
    const char* command;
    const char* reply;
    const char* element;

    std::string name_reply(const std::string& xid, const std::string& text) const
    {
        return reply_message(xid, xml_element(reply, xml_element(element, text)));
    }
};

// clang-format off
const ListRow lists[] = {
    {"clips", velto_open_clip_list, velto_get_clip_name, velto_close_clip_list, "download_clipids", "clipid", "ClipID"},
    {"directories", velto_open_directory_list, velto_get_directory_name, velto_close_directory_list, "download_directory_names", "directory_name", "DirectoryName"},
    {"playlists", velto_open_playlist_list, velto_get_playlist_name, velto_close_playlist_list, "download_listids", "listid", "ListID"},
};
// clang-format on

void close_keys(VeltoListHandle list)
{
    velto_close_metakeys(list);
}

const TakeName takers[] = {velto_get_clip_name, velto_get_directory_name, velto_get_playlist_name,
                           velto_get_metakey};
void (*const closers[])(VeltoListHandle) = {velto_close_clip_list, velto_close_directory_list,
                                            velto_close_playlist_list, close_keys};

Reading take(VeltoListHandle list, TakeName taker = velto_get_clip_name)
{
    return text_reading([&](VeltoTextBuffer buffer) { return taker(list, buffer); });
}

class Lists : public CommandScript
{
protected:
    struct Opened {
        Outcome outcome;
        VeltoListHandle list; // where there is none, 77

        bool operator==(const Opened&) const = default;
        friend std::ostream& operator<<(std::ostream& out, const Opened& opened)
        {
            return out << opened.outcome << " with " << opened.list;
        }
    };

    // Opens a list while the server answers with names, and then with `content`.
    Opened opened(const ListRow& row, const std::vector<std::string>& names,
                  const std::string& content = "<ok />")
    {
        VeltoListHandle list = 77;
        auto opening = calling([&] { return row.open(session.handle, &list); });
        const std::string xid = expect_lines(session, {"<" + std::string(row.command) + " />"});
        std::string replies;
        for (const std::string& name : names) {
            replies += row.name_reply(xid, name);
        }
        session.link->send(replies + reply_message(xid, content));
        const Outcome outcome = await(std::move(opening));
        return {outcome, list};
    }

    VeltoListHandle open(const std::vector<std::string>& names, const ListRow& row = lists[0])
    {
        const Opened result = opened(row, names);
        EXPECT_EQ(result.outcome, succeeded);
        return result.list;
    }
};

TEST_F(Lists, GiveTheNamesInTheOrderOfTheServer)
{
    for (const ListRow& row : lists) {
        SCOPED_TRACE(row.name);
        const VeltoListHandle list = open({"b", "a", " x &amp; y ", "b", "\u00E9\U0001F3AC"}, row);
        for (const char* name : {"b", "a", " x & y ", "b", "\u00E9\U0001F3AC", "", ""}) {
            EXPECT_EQ(take(list, row.take), read_to(name));
        }
        row.close(list);
        EXPECT_EQ(take(list, row.take), (Reading{invalid_handle, ""}));
    }
}

TEST_F(Lists, MayBeEmpty)
{
    for (const ListRow& row : lists) {
        const VeltoListHandle list = open({}, row);
        for (int i = 0; i < 3; ++i) {
            EXPECT_EQ(take(list, row.take), read_to(""));
        }
        row.close(list);
    }
}

// It reads like the end, and the names behind it follow.
TEST_F(Lists, CanHoldAnEmptyName)
{
    const VeltoListHandle list = open({"a", "", "b", ""});
    for (const char* name : {"a", "", "b", "", ""}) {
        EXPECT_EQ(take(list), read_to(name));
    }
    velto_close_clip_list(list);
}

TEST_F(Lists, AreReadByAnyNameAndClosedByAnyOther)
{
    for (const ListRow& row : lists) {
        for (const auto& closer : closers) {
            const VeltoListHandle list = open({"a", "b", "c", "d", "e"}, row);
            std::string names;
            for (const TakeName taker : takers) {
                names += take(list, taker).values;
            }
            EXPECT_EQ(names, "abcd");
            closer(list);
            for (const TakeName taker : takers) {
                EXPECT_EQ(take(list, taker), (Reading{invalid_handle, ""}));
            }
        }
    }
}

TEST_F(Lists, LoseANameThatDoesNotFit)
{
    const VeltoListHandle list = open({"abc", "def", "ghi"});
    VeltoChar units[3] = {'7', '7', '7'};
    EXPECT_EQ(velto_get_clip_name(list, {units, 3}), VELTO_RESULT_OK);
    EXPECT_EQ(text_of(units), "ab");
    EXPECT_EQ(velto_get_clip_name(list, {nullptr, 0}), VELTO_RESULT_OK);
    EXPECT_EQ(take(list), read_to("ghi"));
    velto_close_clip_list(list);
}

TEST_F(Lists, AreSnapshots)
{
    const VeltoListHandle list = open({"a", "b"});
    for (const char* report : {"clip_created", "clip_deleted"}) {
        session.link->send(xml_element("report", xml_element(report, xml_element("ClipID", "b"))));
    }
    session.settle();
    EXPECT_EQ(take_all(list), "a|b|");
    velto_close_clip_list(list);
}

TEST_F(Lists, OutliveTheLinkAndTheConnection)
{
    const VeltoListHandle list = open({"a", "b"});
    session.link->close();
    EXPECT_EQ(take(list), read_to("a"));
    velto_close(session.handle);
    EXPECT_EQ(take(list), read_to("b"));
    EXPECT_EQ(take(list), read_to(""));
    velto_close_clip_list(list);
}

TEST_F(Lists, AreIndependent)
{
    const VeltoListHandle first = open({"a", "b"});
    const VeltoListHandle second = open({"a", "b"});
    EXPECT_LT(first, second);
    EXPECT_EQ(take(first), read_to("a"));
    velto_close_clip_list(first);
    EXPECT_EQ(take_all(second), "a|b|");
    velto_close_clip_list(second);
}

TEST_F(Lists, AreNotMadeOfARefusalHoweverLateAndItsTextStays)
{
    const std::uint32_t handle_before = last_handle;
    for (const ListRow& row : lists) {
        EXPECT_EQ(opened(row, {}, error_content("No access")), (Opened{{2, "No access"}, 77}));
        EXPECT_EQ(opened(row, {"a", "b"}, error_content("Disk lost", "clipnotfound")),
                  (Opened{{2, "Disk lost"}, 77}));
    }
    EXPECT_EQ(last_handle, handle_before);
}

TEST_F(Lists, AreNotMadeWhereTheLinkIsLostAmongTheNames)
{
    std::vector<VeltoListHandle> handles(std::size(lists), 77);
    std::vector<std::future<Outcome>> openings;
    for (std::size_t i = 0; i < std::size(lists); ++i) {
        openings.push_back(calling([&, i] { return lists[i].open(session.handle, &handles[i]); }));
        const std::string xid = session.link->expect(lists[i].command).xid;
        session.link->send(lists[i].name_reply(xid, "a"));
    }
    session.link->close();
    for (std::size_t i = 0; i < std::size(lists); ++i) {
        EXPECT_EQ(await(std::move(openings[i])), link_failed);
        EXPECT_EQ(handles[i], 77u);
    }
}

// The names of one thread's list do not get into that of another.
TEST_F(Lists, CanComeAtOnceNameByName)
{
    std::vector<VeltoListHandle> handles(std::size(lists), 77);
    std::vector<std::future<Outcome>> openings;
    std::vector<std::string> xids;
    for (std::size_t i = 0; i < std::size(lists); ++i) {
        openings.push_back(calling([&, i] { return lists[i].open(session.handle, &handles[i]); }));
        xids.push_back(session.link->expect(lists[i].command).xid);
    }
    for (int round = 0; round < 100; ++round) {
        for (std::size_t i = 0; i < std::size(lists); ++i) {
            session.link->send(lists[i].name_reply(xids[i], lists[i].name + std::to_string(round)));
        }
    }
    for (std::size_t i = 0; i < std::size(lists); ++i) {
        session.link->reply_ok(xids[i]);
        EXPECT_EQ(await(std::move(openings[i])), succeeded);
        for (int round = 0; round < 100; ++round) {
            EXPECT_EQ(take(handles[i]), read_to(lists[i].name + std::to_string(round)));
        }
        EXPECT_EQ(take(handles[i]), read_to(""));
        lists[i].close(handles[i]);
    }
}

// It is dropped, and the list goes on.
TEST_F(Lists, LeaveOutAReplyThatCannotBeRead)
{
    VeltoListHandle list = 77;
    auto opening = calling([&] { return velto_open_clip_list(session.handle, &list); });
    const std::string xid = session.link->expect("download_clipids").xid;
    session.link->send(lists[0].name_reply(xid, "a") + reply_message(xid, "<clipid />") +
                       lists[0].name_reply(xid, "b") + reply_message(xid, "<ok />"));
    EXPECT_EQ(await(std::move(opening)), succeeded);
    EXPECT_EQ(take_all(list), "a|b|");
    velto_close_clip_list(list);
}

TEST_F(Lists, AreNotKeptForNobody)
{
    const std::uint32_t handle_before = last_handle;
    for (const ListRow& row : lists) {
        auto opening = calling([&] { return row.open(session.handle, nullptr); });
        const std::string xid = session.link->expect(row.command).xid;
        session.link->send(row.name_reply(xid, "a") + reply_message(xid, "<ok />"));
        EXPECT_EQ(await(std::move(opening)), succeeded);
    }
    EXPECT_EQ(last_handle, handle_before);
}

TEST_F(Lists, AreWaitedForAlsoWhereCommandsDoNotWait)
{
    velto_synchronous(session.handle, VELTO_COMMANDS_DO_NOT_WAIT);
    for (const ListRow& row : lists) {
        const VeltoListHandle list = open({"a", "b"}, row);
        EXPECT_EQ(take_all(list), "a|b|");
        row.close(list);
        EXPECT_EQ(opened(row, {"a"}, error_content("no")), (Opened{{2, "no"}, 77}));
    }
}

TEST(ListsWithoutHandle, AreNotOpened)
{
    for (const ListRow& row : lists) {
        VeltoListHandle list = 77;
        EXPECT_EQ(outcome_of([&] { return row.open(0, &list); }), invalid_handle);
        EXPECT_EQ(list, 77u);
    }
}

TEST(ListsWithoutLink, AreNotOpened)
{
    ScriptServer server;
    server.stop_listening();
    const VeltoHandle handle = velto_connect(server.address().number);
    for (const ListRow& row : lists) {
        VeltoListHandle list = 77;
        EXPECT_EQ(outcome_of([&] { return row.open(handle, &list); }), link_failed);
        EXPECT_EQ(list, 77u);
    }
    velto_close(handle);
}

TEST(ListsWithoutHandle, GiveTheEmptyTextAndInvalidHandle)
{
    for (const TakeName taker : takers) {
        for (const VeltoListHandle unknown : {0u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
            EXPECT_EQ(take(unknown, taker), (Reading{invalid_handle, ""}));
        }
        EXPECT_EQ(outcome_of([&] { return taker(0, {nullptr, 0}); }), invalid_handle);
    }
}

// Those that have no result leave the text of the call before.
TEST_F(Lists, CloseWithoutATrace)
{
    const VeltoListHandle list = open({"a"});
    set_last_error_text("before");
    for (const ListRow& row : lists) {
        row.close(list);
        row.close(list);
        row.close(0);
        EXPECT_EQ(get_last_error_text().to_utf8(), "before");
    }
}

// Names of every length around that of a block of text, in an order that packs them anew each time.
TEST_F(Lists, GiveNamesOfAnyLength)
{
    const std::vector<int> lengths = {0, 1, 254, 255, 256, 257, 511, 512, 513, 1000};
    std::vector<std::string> names;
    std::mt19937 random(4);
    for (int i = 0; i < 600; ++i) {
        const int length = lengths[random() % lengths.size()];
        std::string name = i % 3 == 0 ? std::string(static_cast<std::size_t>(length), 'a') : "";
        for (int k = 0; i % 3 != 0 && k < length; ++k) {
            name += i % 3 == 1 ? "\u00E9" : "\U0001F3AC";
        }
        names.push_back(std::move(name));
    }
    const VeltoListHandle list = open(names);
    for (const std::string& name : names) {
        ASSERT_EQ(take(list), read_to(name));
    }
    EXPECT_EQ(take(list), read_to(""));
    velto_close_clip_list(list);
}

TEST_F(Lists, GiveManyThousandNames)
{
    std::vector<std::string> names;
    for (std::size_t i = 0; i < 20'000; ++i) {
        names.push_back("clip " + std::to_string(i) + std::string(i % 23, 'x'));
    }
    const VeltoListHandle list = open(names);
    VeltoChar units[64];
    for (const std::string& name : names) {
        ASSERT_EQ(velto_get_clip_name(list, {units, 64}), VELTO_RESULT_OK);
        ASSERT_EQ(text_of(units), name);
    }
    EXPECT_EQ(take(list), read_to(""));
    velto_close_clip_list(list);
}

// What is left goes with it.
TEST_F(Lists, CanBeClosedWithManyNamesLeft)
{
    const VeltoListHandle list = open(std::vector<std::string>(20'000, "clip"));
    EXPECT_EQ(take(list), read_to("clip"));
    velto_close_clip_list(list);
    EXPECT_EQ(take(list), (Reading{invalid_handle, ""}));
}

} // namespace
