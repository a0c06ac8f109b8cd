#include "protocol/zavl3_api.h"

#include "foundation/afunctionext.h"
#include "support/await.h"
#include "support/completion_log.h"
#include "support/recording_api.h"
#include "support/wire_model.h"
#include "support/xml_text.h"

#include <algorithm>
#include <atomic>
#include <functional>
#include <new>
#include <string>
#include <thread>
#include <type_traits>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using namespace ZAVL3;
using Lines = std::vector<std::string>;

const std::string all_failed = "error Failing all outstanding commands 0";

// An API whose link can be down: a write then fails all, as the client's does.
class TestAPI : public RecordingAPI
{
public:
    void write_bytes(const unsigned char* bytes, std::uint64_t count) override
    {
        outstanding_at_write = outstanding_count();
        if (link_down) {
            return fail_all_outstanding();
        }
        RecordingAPI::write_bytes(bytes, count);
    }

    void reply(const AString& xid, const std::string& content)
    {
        feed("<reply><xid>" + xid.to_utf8() + "</xid>" + content + "</reply>");
    }

    bool link_down = false;
    std::uint64_t outstanding_at_write = 0;
};

class APITest : public testing::Test
{
protected:
    AString issue_stop(const std::string& name)
    {
        return api.issue(command::stop(), {log.on_ok(name), log.on_error(name)});
    }

    AString issue_download(const std::string& name)
    {
        return api.issue(
            command::download_clipids(),
            {log.on_ok(name), log.on<reply::clipid>(name, "clipid"), log.on_error(name)});
    }

    CompletionLog log;
    TestAPI api;
};

TEST_F(APITest, WritesTheXidThatItGives)
{
    last_xid_number = 16;
    EXPECT_EQ(issue_stop("a").to_utf8(), "17");
    EXPECT_EQ(api.take_bytes(),
              "<cmd>\r\n<xid>17</xid>\r\n<stop>\r\n<Channel>A</Channel>\r\n</stop>\r\n</cmd>");
}

TEST_F(APITest, KnowsACommandBeforeItsFirstByteLeaves)
{
    issue_stop("a");
    EXPECT_EQ(api.outstanding_at_write, 1u);
    EXPECT_EQ(api.outstanding_count(), 1u);
}

TEST_F(APITest, NeverGivesTwoConnectionsTheSameXid)
{
    TestAPI other;
    last_xid_number = 0;
    EXPECT_EQ(issue_stop("a").to_utf8(), "1");
    EXPECT_EQ(other.issue(command::get_disk_usage(), {{}, log.on_error("b")}).to_utf8(), "2");
    EXPECT_EQ(issue_stop("c").to_utf8(), "3");
}

TEST_F(APITest, CompletesACommandWithItsFinalReply)
{
    const AString xid = issue_stop("a");
    api.reply(xid, "<ok/>");
    EXPECT_EQ(log.lines, Lines{"a: ok"});
    EXPECT_EQ(api.outstanding_count(), 0u);
}

TEST_F(APITest, CompletesACommandWithTheRefusalOfTheServer)
{
    const AString xid = issue_stop("a");
    api.reply(xid, "<error><ErrorMessage>No such clip</ErrorMessage>"
                   "<ErrorCode>clipnotfound</ErrorCode></error>");
    EXPECT_EQ(log.lines, Lines{"a: error No such clip 1"});
    api.reply(xid, "<ok/>");
    EXPECT_EQ(log.lines.size(), 1u);
}

TEST_F(APITest, TellsTheLossToACommandWhoseDelegateHasNoMemory)
{
    const auto exhausted = [](void*, AString) { throw std::bad_alloc(); };
    const AString xid = api.issue(command::get_computer_name(),
                                  {AFunction<AString>(exhausted, nullptr), log.on_error("a")});
    EXPECT_THROW(api.reply(xid, "<computername><ComputerName>studio</ComputerName></computername>"),
                 std::bad_alloc);
    EXPECT_EQ(log.lines, Lines{"a: " + all_failed});
    EXPECT_EQ(api.outstanding_count(), 0u);
}

TEST_F(APITest, GivesTheValuesOfAReplyToItsDelegate)
{
    const auto reply = [this](const AString& xid, const std::string& name) {
        const wire::Layout& content = wire::message(name).content;
        api.reply(xid, content.xml());
        ASSERT_FALSE(log.lines.empty());
        std::string expected = name + ": value";
        for (const wire::Field& field : content.fields) {
            expected += " " + field.seen;
        }
        EXPECT_EQ(log.lines.back(), expected);
    };
    reply(api.issue(command::clip_exists(),
                    {log.on<reply::clipexists>("clipexists", "value"), log.on_error("")}),
          "clipexists");
    reply(api.issue(command::get_clip_info(),
                    {log.on<reply::clipinfo>("clipinfo", "value"), log.on_error("")}),
          "clipinfo");
    reply(api.issue(command::get_computer_name(),
                    {log.on<reply::computername>("computername", "value"), log.on_error("")}),
          "computername");
    reply(api.issue(command::get_disk_usage(),
                    {log.on<reply::disk_usage>("disk_usage", "value"), log.on_error("")}),
          "disk_usage");
    reply(api.issue(command::get_video_standard(),
                    {log.on<reply::video_standard>("video_standard", "value"), log.on_error("")}),
          "video_standard");
    EXPECT_EQ(api.outstanding_count(), 0u);
    reply(
        api.issue(command::download_clipids(), {{}, log.on<reply::clipid>("clipid", "value"), {}}),
        "clipid");
    reply(api.issue(command::download_directory_names(),
                    {{}, log.on<reply::directory_name>("directory_name", "value"), {}}),
          "directory_name");
    reply(
        api.issue(command::download_listids(), {{}, log.on<reply::listid>("listid", "value"), {}}),
        "listid");
    reply(api.issue(command::download_metadata(),
                    {{}, log.on<reply::metadata>("metadata", "value"), {}}),
          "metadata");
    EXPECT_EQ(api.outstanding_count(), 4u);
}

TEST_F(APITest, KeepsACommandOverItsStreamingReplies)
{
    const AString xid = issue_download("a");
    api.reply(xid, "<clipid><ClipID>one</ClipID></clipid>");
    api.reply(xid, "<clipid><ClipID>two</ClipID></clipid>");
    EXPECT_EQ(api.outstanding_count(), 1u);
    api.reply(xid, "<ok/>");
    EXPECT_EQ(log.lines, (Lines{"a: clipid one", "a: clipid two", "a: ok"}));
    EXPECT_EQ(api.outstanding_count(), 0u);
    api.reply(xid, "<clipid><ClipID>late</ClipID></clipid>");
    EXPECT_EQ(log.lines.size(), 3u);
}

TEST_F(APITest, EndsAStreamWithAnErrorAlone)
{
    const AString xid = issue_download("a");
    api.reply(xid, "<clipid><ClipID>one</ClipID></clipid>");
    api.reply(xid, "<error><ErrorMessage>m</ErrorMessage><ErrorCode>general</ErrorCode></error>");
    api.reply(xid, "<ok/>");
    EXPECT_EQ(log.lines, (Lines{"a: clipid one", "a: error m 0"}));
}

TEST_F(APITest, IgnoresARepliesOfUnknownXid)
{
    issue_stop("a");
    for (const char* xid : {"", "x", "none1", "4000000000"}) {
        api.reply(AString(xid), "<ok/>");
        api.reply(AString(xid), "<clipid><ClipID>one</ClipID></clipid>");
    }
    EXPECT_EQ(log.lines, Lines{});
    EXPECT_EQ(api.outstanding_count(), 1u);
}

TEST_F(APITest, TellsTheCommandsApart)
{
    const AString a = issue_stop("a");
    const AString b = issue_download("b");
    const AString c = issue_stop("c");
    api.reply(c, "<ok/>");
    api.reply(b, "<clipid><ClipID>one</ClipID></clipid>");
    api.reply(a, "<ok/>");
    EXPECT_EQ(log.lines, (Lines{"c: ok", "b: clipid one", "a: ok"}));
    EXPECT_EQ(api.outstanding_count(), 1u);
}

// A reply of a kind that the command has no delegate for ends it without a word, if it is a final
// kind: who waits for the command then stays blocked, also over a loss of the link. Wanted.
TEST_F(APITest, EndsACommandInSilenceWithAFinalReplyOfAnotherKind)
{
    const AString xid =
        api.issue(command::get_computer_name(),
                  {log.on<reply::computername>("a", "computername"), log.on_error("a")});
    api.reply(xid, "<ok/>");
    EXPECT_EQ(api.outstanding_count(), 0u);
    api.fail_all_outstanding();
    api.reply(xid, "<computername><ComputerName>late</ComputerName></computername>");
    EXPECT_EQ(log.lines, Lines{});
}

TEST_F(APITest, EndsACommandWithTheFinalKindsOnly)
{
    const std::vector<std::string> streaming = {
        "clipid",    "directory_name",    "configuration_item",
        "melt_item", "melt_flags",        "listid",
        "chaseid",   "list_element",      "chase_element",
        "metadata",  "volatile_file_info"};
    std::size_t kinds = 0;
    for (const wire::Message& message : wire::messages()) {
        if (!message.is_reply) {
            continue;
        }
        const std::string& kind = message.content.name;
        const bool ends = std::find(streaming.begin(), streaming.end(), kind) == streaming.end();
        // A record is in the map as long as anybody could want it; on_error will do for that.
        const AString xid = api.issue(command::download_listids(), {{}, {}, log.on_error("a")});
        api.reply(xid, message.content.xml());
        EXPECT_EQ(api.outstanding_count(), ends ? 0u : 1u) << kind;
        api.fail_all_outstanding();
        ++kinds;
    }
    EXPECT_EQ(kinds, 24u);
}

TEST_F(APITest, KeepsACommandWhoseReplyCannotBeRead)
{
    const AString xid = issue_stop("a");
    api.reply(xid, "<error><ErrorMessage>m</ErrorMessage></error>");
    api.reply(xid, "<ok/><ok/>");
    EXPECT_EQ(api.error_text.to_utf8(), "XML Message contains multiple commands");
    api.feed("<reply><ok/></reply>");
    api.reply(xid, "<channel_speed><Channel>A</Channel><Speed>1X</Speed></channel_speed>");
    EXPECT_EQ(log.lines, Lines{});
    EXPECT_EQ(api.outstanding_count(), 1u);
    api.fail_all_outstanding();
    EXPECT_EQ(log.lines, Lines{"a: " + all_failed});
}

template <typename Command>
void expect_fire_and_forget(const std::string& bytes)
{
    TestAPI api;
    last_xid_number = 4710;
    EXPECT_EQ(api.issue(Command()).to_utf8(), "none4711");
    EXPECT_EQ(api.outstanding_at_write, 0u);
    EXPECT_EQ(api.outstanding_count(), 0u);
    EXPECT_EQ(api.take_bytes(), "<cmd>\r\n<xid>none4711</xid>\r\n" + bytes + "\r\n</cmd>");
    api.reply(AString("none4711"), "<ok/>");
    EXPECT_TRUE(api.message_ok);
}

TEST(APIFireAndForget, LeavesNothingInTheMap)
{
    expect_fire_and_forget<command::channel_report_register>(
        "<channel_report_register>\r\n<Channel>A</Channel>\r\n<ChannelReportType>status"
        "</ChannelReportType>\r\n</channel_report_register>");
    expect_fire_and_forget<command::report_register>(
        "<report_register>\r\n<ReportType>clip_change</ReportType>\r\n</report_register>");
    expect_fire_and_forget<command::watch_metadata_database>(
        "<watch_metadata_database>\r\n<MetadataDatabase />\r\n</watch_metadata_database>");
    expect_fire_and_forget<command::unwatch_metadata_database>(
        "<unwatch_metadata_database>\r\n<MetadataDatabase />\r\n</unwatch_metadata_database>");
}

TEST_F(APITest, FailsACommandBeforeIssueReturnsWhenTheLinkIsDown)
{
    issue_stop("a");
    api.link_down = true;
    const AString xid = issue_stop("b");
    EXPECT_EQ(log.lines, (Lines{"a: " + all_failed, "b: " + all_failed}));
    EXPECT_FALSE(xid.is_empty());
    EXPECT_EQ(api.outstanding_count(), 0u);
    api.link_down = false;
    api.reply(xid, "<ok/>");
    EXPECT_EQ(log.lines.size(), 2u);
}

TEST_F(APITest, FailsInStringOrderOfTheXids)
{
    last_xid_number = 8;
    for (const std::string name : {"9", "10", "11"}) {
        EXPECT_EQ(issue_stop(name).to_utf8(), name);
    }
    api.fail_all_outstanding();
    EXPECT_EQ(log.lines, (Lines{"10: " + all_failed, "11: " + all_failed, "9: " + all_failed}));
}

TEST_F(APITest, CallsNoDelegateWhenItIsDestroyed)
{
    {
        TestAPI dying;
        dying.issue(command::stop(), {log.on_ok("a"), log.on_error("a")});
        EXPECT_EQ(dying.outstanding_count(), 1u);
    }
    EXPECT_EQ(log.lines, Lines{});
}

// Delegates that do something of their own.
struct Reaction {
    static void run_ok(void* reaction) { static_cast<Reaction*>(reaction)->react(); }
    static void run_clipid(void* reaction, AString) { static_cast<Reaction*>(reaction)->react(); }
    static void run_error(void* reaction, AString, ErrorCode)
    {
        static_cast<Reaction*>(reaction)->react();
    }

    reply::ok::Delegate on_ok() { return reply::ok::Delegate(&run_ok, this); }
    reply::clipid::Delegate on_clipid() { return reply::clipid::Delegate(&run_clipid, this); }
    reply::error::Delegate on_error() { return reply::error::Delegate(&run_error, this); }

    std::function<void()> react;
};

TEST_F(APITest, HasForgottenACommandWhenItsIssuerLearnsTheResult)
{
    std::vector<std::uint64_t> counts;
    Reaction count{[&] { counts.push_back(api.outstanding_count()); }};
    const AString a = api.issue(command::stop(), {count.on_ok(), count.on_error()});
    api.reply(a, "<ok/>");
    api.issue(command::stop(), {count.on_ok(), count.on_error()});
    api.fail_all_outstanding();
    EXPECT_EQ(counts, (std::vector<std::uint64_t>{0, 0}));
}

TEST_F(APITest, LetsADelegateIssueTheNextCommand)
{
    AString next;
    Reaction chain{[&] { next = issue_stop("next"); }};
    const AString first = api.issue(command::stop(), {chain.on_ok(), log.on_error("first")});
    api.reply(first, "<ok/>");
    EXPECT_EQ(api.outstanding_count(), 1u);
    api.reply(next, "<ok/>");
    EXPECT_EQ(log.lines, Lines{"next: ok"});
}

TEST_F(APITest, FailsWhatAnErrorDelegateIssuesOnTheDeadLinkToo)
{
    last_xid_number = 0;
    api.link_down = true;
    Reaction retry{[&] {
        log.lines.emplace_back("retry");
        issue_stop("second");
        log.lines.emplace_back("issued");
    }};
    api.issue(command::stop(), {log.on_ok("first"), retry.on_error()});
    EXPECT_EQ(log.lines, (Lines{"retry", "issued", "second: " + all_failed}));
    EXPECT_EQ(api.outstanding_count(), 0u);
}

// The link is lost under a command that its own streaming delegate issues.
TEST_F(APITest, FailsACommandAfterItsStreamingDelegateNotWithinIt)
{
    last_xid_number = 0;
    Reaction lose{[&] {
        log.lines.emplace_back("begin");
        api.link_down = true;
        issue_stop("inner");
        log.lines.emplace_back("end");
    }};
    const AString xid = api.issue(command::download_clipids(),
                                  {log.on_ok("outer"), lose.on_clipid(), log.on_error("outer")});
    api.reply(xid, "<clipid><ClipID>one</ClipID></clipid>");
    EXPECT_EQ(log.lines, (Lines{"begin", "inner: " + all_failed, "end", "outer: " + all_failed}));
    api.reply(xid, "<ok/>");
    EXPECT_EQ(log.lines.size(), 4u);
}

// Which replies the issuer of a command takes, the final one first.
#define EXPECT_ANSWERS(name, ...)                                                                  \
    EXPECT_TRUE((std::is_same_v<command::name::Replies, Answers<__VA_ARGS__>>)) << #name

TEST(APIAnswers, AreTheFinalReplyAndWhatItStreams)
{
    using reply::ok;
    EXPECT_ANSWERS(clip_exists, reply::clipexists);
    EXPECT_ANSWERS(download_clipids, ok, reply::clipid);
    EXPECT_ANSWERS(download_directory_names, ok, reply::directory_name);
    EXPECT_ANSWERS(download_listids, ok, reply::listid);
    EXPECT_ANSWERS(download_metadata, ok, reply::metadata);
    EXPECT_ANSWERS(get_clip_info, reply::clipinfo);
    EXPECT_ANSWERS(get_computer_name, reply::computername);
    EXPECT_ANSWERS(get_disk_usage, reply::disk_usage);
    EXPECT_ANSWERS(get_video_standard, reply::video_standard);
    std::size_t others = 0;
#define COUNT_PLAIN(name, ...) others += std::is_same_v<command::name::Replies, Answers<ok>>;
    ZAVL3_COMMANDS(COUNT_PLAIN)
#undef COUNT_PLAIN
    EXPECT_EQ(others, 57u - 9u);
}

// One command of the test below.
struct Racer {
    void on_ok() { ++completions; }
    void on_error(AString, ErrorCode) { ++completions; }

    void on_clipid(AString)
    {
        late_streams += completions != 0;
        ++streams;
        late_streams += completions != 0;
    }

    std::atomic<int> completions{0};
    int streams = 0;      // by the delivering thread
    int late_streams = 0; // likewise
    std::atomic<bool> issued{false};
    AString xid; // once it is issued
};

// A link that takes everything.
class SilentAPI : public API
{
public:
    void write_bytes(const unsigned char*, std::uint64_t) override {}
};

TEST(APIThreads, CompleteEveryCommandExactlyOnce)
{
    constexpr std::size_t commands = 2000;
    SilentAPI api;
    std::vector<Racer> racers(commands);
    std::atomic<bool> delivered{false};

    auto issuer = in_thread([&] {
        for (Racer& racer : racers) {
            racer.xid = api.issue(command::download_clipids(),
                                  {bind<&Racer::on_ok>(&racer), bind<&Racer::on_clipid>(&racer),
                                   bind<&Racer::on_error>(&racer)});
            racer.issued = true;
        }
    });
    auto worker = in_thread([&] {
        reply::clipid clip;
        clip.set<"ClipID">(AString("one"));
        for (std::size_t i = 0; i < commands; ++i) {
            while (!racers[i].issued) {
                std::this_thread::yield();
            }
            api.on_reply_clipid(racers[i].xid, clip);
            api.on_reply_clipid(racers[i].xid, clip);
            if (i % 2 == 0) {
                api.on_reply_ok(racers[i].xid, reply::ok());
            }
        }
        delivered = true;
    });
    auto loser = in_thread([&] {
        while (!delivered) {
            api.fail_all_outstanding();
            std::this_thread::yield();
        }
    });
    await(std::move(issuer));
    await(std::move(worker));
    await(std::move(loser));
    api.fail_all_outstanding();

    EXPECT_EQ(api.outstanding_count(), 0u);
    for (const Racer& racer : racers) {
        EXPECT_EQ(racer.completions, 1);
        EXPECT_EQ(racer.late_streams, 0);
    }
}

} // namespace
