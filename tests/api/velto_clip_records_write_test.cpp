#include "api/clip_records.h"

#include "support/clip_script.h"
#include "support/wire_call.h"

#include <set>

#include <gtest/gtest.h>

namespace
{

// A call that writes to the record of `fresh_clip`, what it sends in its change, and what a reader
// gives before and after.
struct WriterRow {
    const char* function;
    std::function<VeltoResult(VeltoRecordHandle)> call;
    std::vector<std::string> elements;
    Read read;
    const char* before;
    std::string after;
    std::size_t reports = 0; // of checks that did not hold
};

const ClipFields fresh_clip = {
    {"Loop", "pingpong"},
    {"Playback", "f12"},
    {"TimecodeSource", "rectc"},
    {"StripeTimecode", "<Valid>true</Valid><FieldNumber>9</FieldNumber>"},
    {"MetadataList", metadata_pair("take", "one") + metadata_pair("shot", "12")},
};

Reading read_take(std::uint32_t record)
{
    return read_meta(record, "take");
}

Reading read_new(std::uint32_t record)
{
    return read_meta(record, "new");
}

Reading has_take(std::uint32_t record)
{
    return has_meta(record, "take");
}

constexpr const VeltoChar* awkward = VELTO_TEXT(" <\u00E9> & \U0001F3AC ");
constexpr const char* awkward_seen = " <\u00E9> & \U0001F3AC ";
constexpr const char* awkward_sent = " &lt;\u00E9&gt; &amp; \U0001F3AC ";

std::vector<std::string> stripe_sent(const std::string& field_number, const std::string& flag)
{
    return {"<TimecodeSource>striped</TimecodeSource>",
            "<StripeTimecode>",
            "<Valid>true</Valid>",
            "<FieldNumber>" + field_number + "</FieldNumber>",
            "<DropFrameFlag>" + flag + "</DropFrameFlag>",
            "</StripeTimecode>"};
}

std::vector<std::string> pair_sent(const std::string& key, const std::string& value)
{
    return {"<MetadataList>", "<Metadata>", key, value, "</Metadata>", "</MetadataList>"};
}

// clang-format off
const std::vector<WriterRow> writers = {
    {CALL(velto_set_clip_title, VELTO_TEXT("Final")), {"<Title>Final</Title>"}, read_text<velto_clip_title>, "News opener", "Final"},
    {CALL(velto_set_clip_title, awkward), {"<Title>" + std::string(awkward_sent) + "</Title>"}, read_text<velto_clip_title>, "News opener", awkward_seen},
    {CALL(velto_set_clip_title, VELTO_TEXT("")), {"<Title />"}, read_text<velto_clip_title>, "News opener", ""},
    {CALL(velto_set_clip_title, none), {"<Title />"}, read_text<velto_clip_title>, "News opener", "", 1},
    {CALL(velto_set_clip_creator, VELTO_TEXT("Ann")), {"<Creator>Ann</Creator>"}, read_text<velto_clip_creator>, "Zo&e", "Ann"},
    {CALL(velto_set_clip_creator, none), {"<Creator />"}, read_text<velto_clip_creator>, "Zo&e", "", 1},
    {CALL(velto_set_clip_project, VELTO_TEXT("Alps")), {"<Project>Alps</Project>"}, read_text<velto_clip_project>, "Olympia", "Alps"},
    {CALL(velto_set_clip_project, none), {"<Project />"}, read_text<velto_clip_project>, "Olympia", "", 1},

    {CALL(velto_set_clip_loop_in_point, 7), {"<LoopIn>7</LoopIn>"}, read_number<velto_clip_loop_in_point>, "100", "7"},
    {CALL(velto_set_clip_loop_in_point, all_ones), {"<LoopIn>4294967295</LoopIn>"}, read_number<velto_clip_loop_in_point>, "100", "4294967295"},
    {CALL(velto_set_clip_loop_out_point, 0), {"<LoopOut>0</LoopOut>"}, read_number<velto_clip_loop_out_point>, "1200", "0"},
    {CALL(velto_set_clip_loop_out_point, 9), {"<LoopOut>9</LoopOut>"}, read_number<velto_clip_loop_out_point>, "1200", "9"},
    {CALL(velto_set_clip_trim_start, 0), {"<TrimStart>0</TrimStart>"}, read_number<velto_clip_trim_start>, "0", "0"},
    {CALL(velto_set_clip_trim_start, 1), {"<TrimStart>0</TrimStart>"}, read_number<velto_clip_trim_start>, "0", "0"},
    {CALL(velto_set_clip_trim_start, 7), {"<TrimStart>6</TrimStart>"}, read_number<velto_clip_trim_start>, "0", "6"},
    {CALL(velto_set_clip_trim_start, all_ones), {"<TrimStart>4294967294</TrimStart>"}, read_number<velto_clip_trim_start>, "0", "4294967294"},
    {CALL(velto_set_clip_trim_end, 8), {"<TrimEnd>8</TrimEnd>"}, read_number<velto_clip_trim_end>, "0", "8"},
    {CALL(velto_set_clip_trim_end, 9), {"<TrimEnd>8</TrimEnd>"}, read_number<velto_clip_trim_end>, "0", "8"},

    {CALL(velto_set_clip_playback, 0), {"<Playback>field</Playback>"}, read_number<velto_clip_playback>, "1", "0"},
    {CALL(velto_set_clip_playback, 1), {"<Playback>f12</Playback>"}, read_number<velto_clip_playback>, "1", "1"},
    {CALL(velto_set_clip_playback, 2), {"<Playback>field</Playback>"}, read_number<velto_clip_playback>, "1", "0"},
    {CALL(velto_set_clip_playback, 5), {"<Playback>field</Playback>"}, read_number<velto_clip_playback>, "1", "0"},
    {CALL(velto_set_clip_repeat, 0), {"<Loop>off</Loop>"}, read_number<velto_clip_repeat>, "3", "0"},
    {CALL(velto_set_clip_repeat, 1), {"<Loop>loop</Loop>"}, read_number<velto_clip_repeat>, "3", "1"},
    {CALL(velto_set_clip_repeat, 2), {"<Loop>loopto</Loop>"}, read_number<velto_clip_repeat>, "3", "2"},
    {CALL(velto_set_clip_repeat, 3), {"<Loop>pingpong</Loop>"}, read_number<velto_clip_repeat>, "3", "3"},
    {CALL(velto_set_clip_repeat, 4), {"<Loop>pingpongto</Loop>"}, read_number<velto_clip_repeat>, "3", "4"},
    {CALL(velto_set_clip_repeat, 5), {"<Loop>off</Loop>"}, read_number<velto_clip_repeat>, "3", "0"},
    {CALL(velto_set_clip_timecode_source, 0), {"<TimecodeSource>zerobased</TimecodeSource>"}, read_number<velto_clip_timecode_source>, "2", "0"},
    {CALL(velto_set_clip_timecode_source, 1), {"<TimecodeSource>striped</TimecodeSource>"}, read_number<velto_clip_timecode_source>, "2", "1"},
    {CALL(velto_set_clip_timecode_source, 2), {"<TimecodeSource>rectc</TimecodeSource>"}, read_number<velto_clip_timecode_source>, "2", "2"},
    {CALL(velto_set_clip_timecode_source, 3), {"<TimecodeSource>rec0_stripe</TimecodeSource>"}, read_number<velto_clip_timecode_source>, "2", "3"},
    {CALL(velto_set_clip_timecode_source, 4), {"<TimecodeSource>zerobased</TimecodeSource>"}, read_number<velto_clip_timecode_source>, "2", "0", 1},
    {CALL(velto_set_clip_timecode_source, all_ones), {"<TimecodeSource>zerobased</TimecodeSource>"}, read_number<velto_clip_timecode_source>, "2", "0", 1},

    {CALL(velto_set_clip_timecode_stripe, 90000, 0), stripe_sent("90000", "df"), read_pair<velto_clip_timecode_stripe>, "0 0", "90000 0"},
    {CALL(velto_set_clip_timecode_stripe, 90000, 1), stripe_sent("90000", "ndf"), read_pair<velto_clip_timecode_stripe>, "0 0", "90000 1"},
    {CALL(velto_set_clip_timecode_stripe, 5, 2), stripe_sent("5", "df"), read_pair<velto_clip_timecode_stripe>, "0 0", "5 0"},
    {CALL(velto_set_clip_timecode_stripe, all_ones, all_ones), stripe_sent("-1", "df"), read_pair<velto_clip_timecode_stripe>, "0 0", "4294967295 0"},
    {CALL(velto_set_clip_timecode_stripe, 0x80000000, 1), stripe_sent("-2147483648", "ndf"), read_pair<velto_clip_timecode_stripe>, "0 0", "2147483648 1"},

    {CALL(velto_clip_set_meta, VELTO_TEXT("take"), VELTO_TEXT("two")), pair_sent("<Key>take</Key>", "<Value>two</Value>"), read_take, "one", "two"},
    {CALL(velto_clip_set_meta, VELTO_TEXT("take"), awkward), pair_sent("<Key>take</Key>", "<Value>" + std::string(awkward_sent) + "</Value>"), read_take, "one", awkward_seen},
    {CALL(velto_clip_set_meta, VELTO_TEXT("take"), none), pair_sent("<Key>take</Key>", "<Value />"), read_take, "one", "", 1},
    {CALL(velto_clip_set_meta, VELTO_TEXT("new"), VELTO_TEXT("x")), pair_sent("<Key>new</Key>", "<Value>x</Value>"), read_new, "", "x"},
    {CALL(velto_clip_delete_meta, VELTO_TEXT("take")), {"<KeyList>", "<Key>take</Key>", "</KeyList>"}, has_take, "1", "0"},
    {CALL(velto_clip_delete_meta, VELTO_TEXT("Take")), {"<KeyList>", "<Key>Take</Key>", "</KeyList>"}, has_take, "1", "1"},
    {CALL(velto_clip_delete_meta, none), {"<KeyList>", "<Key />", "</KeyList>"}, has_take, "1", "1", 1},
};
// clang-format on

class Writers : public ClipScript
{
protected:
    // Runs `check` with each row and a record of its own, which reads as before it is written to.
    template <typename Check>
    void for_each_writer(Check check)
    {
        for (const WriterRow& row : writers) {
            SCOPED_TRACE(row.function + (" of " + row.elements.back()));
            const VeltoRecordHandle record = open(fresh_clip);
            EXPECT_EQ(row.read(record), read_to(row.before));
            check(row, record);
            velto_close_clip_metadata(record);
        }
    }
};

TEST(WriterRows, AreOfAllThirteen)
{
    std::set<std::string> functions;
    for (const WriterRow& row : writers) {
        functions.insert(row.function);
    }
    EXPECT_EQ(functions.size(), 13u);
}

TEST_F(Writers, SendTheseBytesAndTheRecordReadsBackWhatWasWritten)
{
    for_each_writer([&](const WriterRow& row, VeltoRecordHandle record) {
        const AssertWatch watch;
        EXPECT_EQ(written([&] { return row.call(record); }, row.elements), succeeded);
        EXPECT_EQ(watch.count(), row.reports);
        EXPECT_EQ(row.read(record), read_to(row.after));
    });
}

TEST_F(Writers, AreRefusedWithTheServersTextAndTheRecordStays)
{
    for_each_writer([&](const WriterRow& row, VeltoRecordHandle record) {
        EXPECT_EQ(written([&] { return row.call(record); }, row.elements,
                          error_content("Clip is read-only", "clipnotfound")),
                  (Outcome{2, "Clip is read-only"}));
        EXPECT_EQ(row.read(record), read_to(row.before));
    });
}

// Only the server knows whether it can be written to.
TEST_F(Writers, SendAlsoForARecordThatIsReadOnly)
{
    const VeltoRecordHandle record =
        open({{"ReadOnly", "true"}, {"ReadOnlyMeta", "true"}, {"ReadOnlyContent", "true"}});
    EXPECT_EQ(written([&] { return velto_set_clip_title(record, VELTO_TEXT("a")); },
                      {"<Title>a</Title>"}),
              succeeded);
    EXPECT_EQ(written([&] { return velto_clip_delete_meta(record, VELTO_TEXT("a")); },
                      {"<KeyList>", "<Key>a</Key>", "</KeyList>"}, error_content("no")),
              (Outcome{2, "no"}));
    velto_close_clip_metadata(record);
}

TEST_F(Writers, FailWithTheLinkAndTheRecordStays)
{
    std::vector<VeltoRecordHandle> records;
    std::vector<std::future<Outcome>> calls;
    for (const WriterRow& row : writers) {
        records.push_back(open(fresh_clip));
        calls.push_back(calling([&, record = records.back()] { return row.call(record); }));
        session.link->expect("modify_clip_attributes");
    }
    session.link->close();
    for (std::size_t i = 0; i < writers.size(); ++i) {
        EXPECT_EQ(await(std::move(calls[i])), link_failed);
        EXPECT_EQ(writers[i].read(records[i]), read_to(writers[i].before));
        velto_close_clip_metadata(records[i]);
    }
}

TEST_F(Writers, GiveInvalidHandleForAnUnknownRecord)
{
    const VeltoRecordHandle closed = open();
    velto_close_clip_metadata(closed);
    for (const WriterRow& row : writers) {
        for (const VeltoRecordHandle unknown : {0u, closed, session.handle}) {
            EXPECT_EQ(outcome_of([&] { return row.call(unknown); }), invalid_handle)
                << row.function;
        }
    }
    session.settle(); // nothing was sent
}

TEST_F(Writers, GiveInvalidHandleWhenTheConnectionIsClosed)
{
    std::vector<VeltoRecordHandle> records;
    for (std::size_t i = 0; i < writers.size(); ++i) {
        records.push_back(open(fresh_clip));
    }
    velto_close(session.handle);
    for (std::size_t i = 0; i < writers.size(); ++i) {
        EXPECT_EQ(outcome_of([&] { return writers[i].call(records[i]); }), invalid_handle)
            << writers[i].function;
        EXPECT_EQ(writers[i].read(records[i]), read_to(writers[i].before));
        velto_close_clip_metadata(records[i]);
    }
}

// The server has made the change all the same.
TEST_F(Writers, GiveInvalidHandleWhenTheRecordIsClosedMeanwhile)
{
    for_each_writer([&](const WriterRow& row, VeltoRecordHandle record) {
        auto writing = calling([&] { return row.call(record); });
        const std::string xid = expect_lines(session, change_lines(row.elements));
        velto_close_clip_metadata(record);
        session.link->reply_ok(xid);
        EXPECT_EQ(await(std::move(writing)), invalid_handle);
    });
}

TEST_F(Writers, KeepTheServersTextWhenTheRecordIsClosedMeanwhile)
{
    const VeltoRecordHandle record = open();
    auto writing = calling([&] { return velto_set_clip_loop_in_point(record, 5); });
    const std::string xid = session.link->expect("modify_clip_attributes").xid;
    velto_close_clip_metadata(record);
    session.link->reply_error(xid, "no");
    EXPECT_EQ(await(std::move(writing)), (Outcome{2, "no"}));
}

// Only the record is looked up again.
TEST_F(Writers, SucceedWhenTheConnectionIsClosedMeanwhile)
{
    const VeltoRecordHandle record = open();
    auto writing = calling([&] { return velto_set_clip_loop_in_point(record, 5); });
    const std::string xid = session.link->expect("modify_clip_attributes").xid;
    velto_close(session.handle);
    session.link->reply_ok(xid);
    EXPECT_EQ(await(std::move(writing)), succeeded);
    EXPECT_EQ(read_number<velto_clip_loop_in_point>(record), read_to("5"));
    velto_close_clip_metadata(record);
}

TEST_F(Writers, SucceedAtOnceWhereCommandsDoNotWaitWhateverTheServerSays)
{
    for (const std::string& content : {std::string("<ok />"), error_content("nobody hears it")}) {
        for_each_writer([&](const WriterRow& row, VeltoRecordHandle record) {
            velto_synchronous(session.handle, VELTO_COMMANDS_DO_NOT_WAIT);
            EXPECT_EQ(outcome_of([&] { return row.call(record); }), succeeded);
            EXPECT_EQ(row.read(record), read_to(row.after));
            session.link->reply(expect_lines(session, change_lines(row.elements)), content);
            velto_sync(session.handle);
            EXPECT_EQ(row.read(record), read_to(row.after));
            velto_synchronous(session.handle, VELTO_COMMANDS_WAIT);
        });
    }
}

TEST_F(Writers, SucceedAlsoWithoutALinkWhereCommandsDoNotWait)
{
    const VeltoRecordHandle record = open();
    velto_synchronous(session.handle, VELTO_COMMANDS_DO_NOT_WAIT);
    session.server.stop_listening();
    session.link->close();
    EXPECT_EQ(outcome_of([&] { return velto_set_clip_loop_in_point(record, 5); }), succeeded);
    EXPECT_EQ(read_number<velto_clip_loop_in_point>(record), read_to("5"));
    velto_close_clip_metadata(record);
}

// Each keeps to its own field.
TEST_F(Writers, OfOneRecordCanBeUnderWayAtOnce)
{
    const VeltoRecordHandle record = open();
    auto title = calling([&] { return velto_set_clip_title(record, VELTO_TEXT("a")); });
    const std::string title_xid = session.link->expect("modify_clip_attributes").xid;
    auto loop = calling([&] { return velto_set_clip_loop_in_point(record, 5); });
    const std::string loop_xid = session.link->expect("modify_clip_attributes").xid;
    EXPECT_EQ(read_text<velto_clip_title>(record), read_to("News opener"));
    session.link->reply_ok(loop_xid);
    EXPECT_EQ(await(std::move(loop)), succeeded);
    session.link->reply_ok(title_xid);
    EXPECT_EQ(await(std::move(title)), succeeded);
    EXPECT_EQ(read_text<velto_clip_title>(record), read_to("a"));
    EXPECT_EQ(read_number<velto_clip_loop_in_point>(record), read_to("5"));
    velto_close_clip_metadata(record);
}

// However much is in it.
TEST_F(Writers, DoNotCopyTheRecord)
{
    const VeltoRecordHandle record = open(fresh_clip);
    const auto address = [&] { return &clip_records().find(record)->get(); };
    const ZAVL3::ClipInfo* before = address();
    EXPECT_EQ(
        written([&] { return velto_set_clip_loop_in_point(record, 5); }, {"<LoopIn>5</LoopIn>"}),
        succeeded);
    EXPECT_EQ(address(), before);
    velto_close_clip_metadata(record);
}

// What was written is there, but a timecode that was not valid does not become so.
TEST_F(Writers, OfTheStripeLeaveItAsValidAsItWas)
{
    const VeltoRecordHandle record = open({{"StripeTimecode", "<Valid>false</Valid>"}});
    EXPECT_EQ(written([&] { return velto_set_clip_timecode_stripe(record, 5, 1); },
                      stripe_sent("5", "ndf")),
              succeeded);
    EXPECT_EQ(read_number<velto_clip_timecode_source>(record), read_to("1"));
    EXPECT_EQ(read_pair<velto_clip_timecode_stripe>(record), read_to("0 0"));
    velto_close_clip_metadata(record);
}

} // namespace
