#include "api/clip_records.h"

#include "support/clip_script.h"
#include "support/describe.h"
#include "support/wire_model.h"

#include <functional>
#include <map>
#include <set>
#include <stdexcept>

#include <gtest/gtest.h>

namespace
{

using namespace ZAVL3;

class Records : public ClipScript
{
protected:
    // What the client says of the last message that it could not read. Nothing else may be on its
    // way.
    std::string last_complaint()
    {
        session.settle();
        return session.connection->error_text.to_utf8();
    }

    // An opening which is first answered with what cannot be read.
    void expect_dropped(const std::string& bad, const std::string& complaint)
    {
        VeltoRecordHandle record = 77;
        auto opening = calling([&] {
            return velto_open_clip_metadata(session.handle, VELTO_TEXT("news_open"), &record);
        });
        const std::string xid = session.link->expect("get_clip_info").xid;
        session.link->reply(xid, bad);
        EXPECT_EQ(last_complaint(), complaint);
        EXPECT_EQ(session.connection->error_xid.to_utf8(), xid);
        EXPECT_EQ(session.connection->outstanding_callbacks, 1u); // it waits on
        session.link->reply(xid, clip_info());
        EXPECT_EQ(await(std::move(opening)), succeeded);
        EXPECT_EQ(read_text<velto_clip_title>(record), read_to("News opener"));
        velto_close_clip_metadata(record);
    }
};

// ---- Opening and closing

TEST_F(Records, AreMadeOfTheReply)
{
    const VeltoRecordHandle record = open();
    EXPECT_EQ(read_text<velto_clip_title>(record), read_to("News opener"));
    EXPECT_EQ(outcome_of([&] { return velto_close_clip_metadata(record); }), succeeded);
    EXPECT_EQ(read_text<velto_clip_title>(record), (Reading{invalid_handle, "77"}));
}

TEST_F(Records, OfOneClipAreIndependent)
{
    const VeltoRecordHandle first = open();
    const VeltoRecordHandle second = open({{"Title", "later"}});
    EXPECT_LT(first, second);
    EXPECT_EQ(written([&] { return velto_set_clip_title(second, VELTO_TEXT("mine")); },
                      {"<Title>mine</Title>"}),
              succeeded);
    EXPECT_EQ(read_text<velto_clip_title>(first), read_to("News opener"));
    EXPECT_EQ(read_text<velto_clip_title>(second), read_to("mine"));
    velto_close_clip_metadata(first);
    EXPECT_EQ(read_text<velto_clip_title>(second), read_to("mine"));
    velto_close_clip_metadata(second);
}

TEST_F(Records, AreNotTouchedByReports)
{
    const VeltoRecordHandle record = open();
    for (const char* report : {"clip_created", "clip_changed", "clip_deleted"}) {
        session.link->send(
            xml_element("report", xml_element(report, xml_element("ClipID", "news_open"))));
    }
    session.settle();
    EXPECT_EQ(read_text<velto_clip_title>(record), read_to("News opener"));
    velto_close_clip_metadata(record);
}

TEST_F(Records, AreAskedForByTheNameAsItStands)
{
    for (const auto& [name, element] :
         {std::pair(VELTO_TEXT(" <\u00E9> & \U0001F3AC "),
                    "<ClipID> &lt;\u00E9&gt; &amp; \U0001F3AC </ClipID>"),
          std::pair(VELTO_TEXT(""), "<ClipID />")}) {
        auto opening = calling(
            [&, name = name] { return velto_open_clip_metadata(session.handle, name, nullptr); });
        session.link->reply_error(
            expect_lines(session, {"<get_clip_info>", element, "</get_clip_info>"}), "no");
        EXPECT_EQ(await(std::move(opening)), (Outcome{2, "no"}));
    }
}

// Its own id counts from then on, not the name that was asked for.
TEST_F(Records, AreWrittenToByTheIdOfTheReply)
{
    const VeltoRecordHandle record = open({{"ClipID", "other"}});
    auto writing = calling([&] { return velto_set_clip_loop_in_point(record, 5); });
    session.link->reply_ok(expect_lines(
        session, {"<modify_clip_attributes>", "<ClipID>other</ClipID>", "<ClipAttrChange>",
                  "<LoopIn>5</LoopIn>", "</ClipAttrChange>", "</modify_clip_attributes>"}));
    EXPECT_EQ(await(std::move(writing)), succeeded);
    velto_close_clip_metadata(record);
}

TEST_F(Records, AreNotMadeOfARefusalWhoseTextStays)
{
    const Opened refused = opened(error_content("Clip not found", "clipnotfound"));
    EXPECT_EQ(refused.outcome, (Outcome{2, "Clip not found"}));
    EXPECT_EQ(refused.record, 77u);
}

TEST_F(Records, AreNotMadeWhereTheLinkIsLost)
{
    VeltoRecordHandle record = 77;
    auto opening = calling(
        [&] { return velto_open_clip_metadata(session.handle, VELTO_TEXT("news_open"), &record); });
    session.link->expect("get_clip_info");
    session.link->close();
    EXPECT_EQ(await(std::move(opening)), link_failed);
    EXPECT_EQ(record, 77u);
}

TEST_F(Records, AreNotKeptForNobody)
{
    const std::uint32_t handle_before = last_handle;
    auto opening = calling(
        [&] { return velto_open_clip_metadata(session.handle, VELTO_TEXT("news_open"), nullptr); });
    session.link->reply(session.link->expect("get_clip_info").xid, clip_info());
    EXPECT_EQ(await(std::move(opening)), succeeded);
    EXPECT_EQ(last_handle, handle_before);
}

TEST_F(Records, AreWaitedForAlsoWhereCommandsDoNotWait)
{
    velto_synchronous(session.handle, VELTO_COMMANDS_DO_NOT_WAIT);
    const VeltoRecordHandle record = open();
    EXPECT_EQ(read_number<velto_clip_length>(record), read_to("1500"));
    velto_close_clip_metadata(record);
    EXPECT_EQ(opened(error_content("no")).outcome, (Outcome{2, "no"}));
}

TEST(RecordsWithoutHandle, AreNotOpened)
{
    VeltoRecordHandle record = 77;
    EXPECT_EQ(outcome_of([&] { return velto_open_clip_metadata(0, VELTO_TEXT("a"), &record); }),
              invalid_handle);
    EXPECT_EQ(record, 77u);
}

TEST(RecordsWithoutLink, AreNotOpened)
{
    ScriptServer server;
    server.stop_listening();
    const VeltoHandle handle = velto_connect(server.address().number);
    VeltoRecordHandle record = 77;
    EXPECT_EQ(
        outcome_of([&] { return velto_open_clip_metadata(handle, VELTO_TEXT("a"), &record); }),
        link_failed);
    EXPECT_EQ(record, 77u);
    velto_close(handle);
}

TEST(RecordsWithoutHandle, CloseOftenEnough)
{
    for (const VeltoRecordHandle never_issued : {0u, 0x7FFFFFFFu, 0xFFFFFFFFu}) {
        EXPECT_EQ(outcome_of([&] { return velto_close_clip_metadata(never_issued); }), succeeded);
    }
}

TEST_F(Records, CloseTwice)
{
    const VeltoRecordHandle record = open();
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(outcome_of([&] { return velto_close_clip_metadata(record); }), succeeded);
    }
}

// A handle of another kind is unknown here.
TEST_F(Records, AreNoConnections)
{
    const VeltoRecordHandle record = open();
    EXPECT_EQ(outcome_of([&] { return velto_delete_clip(record, VELTO_TEXT("a")); }),
              invalid_handle);
    EXPECT_EQ(read_number<velto_clip_length>(session.handle), (Reading{invalid_handle, "77"}));
    velto_close(record); // not this
    EXPECT_EQ(read_number<velto_clip_length>(record), read_to("1500"));
    velto_close_clip_metadata(record);
}

// ---- Readers

struct ReaderRow {
    const char* function;
    Read read;
    const char* element;
    std::vector<std::pair<std::string, std::string>>
        values;              // content of the element, what it reads
    std::string absent = {}; // what a record without the element reads; empty: it is never without
    std::string outputs_before = "77";
};

// clang-format off
const std::vector<ReaderRow> readers = {
    {"velto_clip_title", read_text<velto_clip_title>, "Title", {{"", ""}, {" a &lt;b&gt; ", " a <b> "}, {"\u00D6l \U0001F3AC", "\u00D6l \U0001F3AC"}, {std::string(3000, 'x'), std::string(3000, 'x')}}},
    {"velto_clip_creator", read_text<velto_clip_creator>, "Creator", {{"", ""}, {"Zo&amp;e", "Zo&e"}}},
    {"velto_clip_project", read_text<velto_clip_project>, "Project", {{"", ""}, {"Olympia", "Olympia"}}},
    {"velto_clip_uuid", read_text<velto_clip_uuid>, "ClipUUID", {{"", ""}, {"0a1b", "0a1b"}}, "(empty)"},
    {"velto_clip_parent_uuid", read_text<velto_clip_parent_uuid>, "ParentUUID", {{"", ""}, {"2c3d", "2c3d"}}, "(empty)"},
    {"velto_clip_length", read_number<velto_clip_length>, "ClipLength", {{"0", "0"}, {" 1500 ", "1500"}, {"4294967295", "4294967295"}}},
    {"velto_clip_loop_in_point", read_number<velto_clip_loop_in_point>, "LoopIn", {{"0", "0"}, {"101", "101"}, {"4294967295", "4294967295"}}},
    {"velto_clip_loop_out_point", read_number<velto_clip_loop_out_point>, "LoopOut", {{"0", "0"}, {"102", "102"}, {"4294967295", "4294967295"}}},
    {"velto_clip_trim_start", read_number<velto_clip_trim_start>, "TrimStart", {{"0", "0"}, {"103", "103"}, {"4294967295", "4294967295"}}, "0"},
    {"velto_clip_trim_end", read_number<velto_clip_trim_end>, "TrimEnd", {{"0", "0"}, {"105", "105"}, {"4294967295", "4294967295"}}, "0"},
    {"velto_clip_playback", read_number<velto_clip_playback>, "Playback", {{"auto", "0"}, {"field", "0"}, {"f12", "1"}}},
    {"velto_clip_repeat", read_number<velto_clip_repeat>, "Loop", {{"off", "0"}, {"loop", "1"}, {"loopto", "2"}, {"pingpong", "3"}, {"pingpongto", "4"}, {"auto", "0"}, {"record", "0"}}},
    {"velto_clip_video_standard", read_number<velto_clip_video_standard>, "VideoStandard", {
        {"1080_60i", "0"}, {"1080_59_94i", "1"}, {"1080_50i", "2"}, {"1080_48i", "3"}, {"1080_47_95i", "4"},
        {"720_60p", "5"}, {"720_59_94p", "6"}, {"720_50p", "7"}, {"625_50i", "8"}, {"525_59_94i", "9"},
        {"4K_60p", "0"}, {"4K_59_94p", "0"}, {"4K_50p", "0"}, {"4K_30p", "0"}, {"4K_29_97p", "0"}, {"4K_25p", "0"},
        {"4K_24p", "0"}, {"4K_23_98p", "0"}, {"1080_60p", "0"}, {"1080_59_94p", "0"}, {"1080_50p", "0"}, {"1080_30p", "0"},
        {"1080_29_97p", "0"}, {"1080_25p", "0"}, {"1080_24p", "0"}, {"1080_23_98p", "0"}, {"1080_23_98psf", "0"}}},
    {"velto_clip_timecode_source", read_number<velto_clip_timecode_source>, "TimecodeSource", {{"zerobased", "0"}, {"striped", "1"}, {"rectc", "2"}, {"rec0_stripe", "3"}}},
    {"velto_clip_is_readonly", read_number<velto_clip_is_readonly>, "ReadOnly", {{"false", "0"}, {"true", "1"}, {"-7", "1"}}},
    {"velto_clip_content_last_edited", read_stamp<velto_clip_content_last_edited>, "ContentEditStamp", {{"0", "0"}, {"10000000005", "10000000005"}, {"18446744073709551615", "18446744073709551615"}}, "0"},
    {"velto_clip_metadata_last_edited", read_stamp<velto_clip_metadata_last_edited>, "MetaEditStamp", {{"10000000004", "10000000004"}, {"18446744073709551615", "18446744073709551615"}}, "0"},
    {"velto_clip_last_loaded", read_stamp<velto_clip_last_loaded>, "LoadedStamp", {{"10000000001", "10000000001"}, {"18446744073709551615", "18446744073709551615"}}, "0"},
    {"velto_clip_last_unloaded", read_stamp<velto_clip_last_unloaded>, "UnloadedStamp", {{"10000000002", "10000000002"}, {"18446744073709551615", "18446744073709551615"}}, "0"},
    {"velto_clip_last_played", read_stamp<velto_clip_last_played>, "PlayedStamp", {{"10000000003", "10000000003"}, {"18446744073709551615", "18446744073709551615"}}, "0"},
    {"velto_get_tracks", read_number<velto_get_tracks>, "TrackInfoVector", {
        {"", "0"},
        {"<TrackInfo><TrackType>video</TrackType></TrackInfo>", "1"},
        {"<TrackInfo><TrackType>key</TrackType></TrackInfo>", "2"},
        {"<TrackInfo><TrackType>audio</TrackType><TrimStart>5</TrimStart></TrackInfo>", "4"},
        {"<TrackInfo><TrackType>timecode</TrackType></TrackInfo>", "0"},
        {"<TrackInfo><TrackType>video</TrackType></TrackInfo><TrackInfo><TrackType>timecode</TrackType></TrackInfo><TrackInfo><TrackType>key</TrackType></TrackInfo>", "3"},
        {"<TrackInfo><TrackType>audio</TrackType></TrackInfo><TrackInfo><TrackType>audio</TrackType></TrackInfo><TrackInfo><TrackType>video</TrackType></TrackInfo>", "5"}}},
    {"velto_clip_recorded_timecode0", read_pair<velto_clip_recorded_timecode0>, "Frame0Timecode", {
        {"", "0 0"},
        {"<FieldNumber>90000</FieldNumber>", "90000 0"},
        {"<FieldNumber>-1</FieldNumber>", "4294967295 0"},
        {"<FieldNumber>-2147483648</FieldNumber><DropFrameFlag>df</DropFrameFlag>", "2147483648 0"},
        {"<DropFrameFlag>ndf</DropFrameFlag>", "0 1"},
        {"<FieldNumber>5</FieldNumber><DropFrameFlag>ndf</DropFrameFlag>", "5 1"}}, "0 0", "77 77"},
    {"velto_clip_timecode_stripe", read_pair<velto_clip_timecode_stripe>, "StripeTimecode", {
        {"<Valid>true</Valid><FieldNumber>90000</FieldNumber><DropFrameFlag>ndf</DropFrameFlag>", "0 0"}}, {}, "77 77"},
};
// clang-format on

TEST(RecordReaders, AreAllTwentyThree)
{
    std::set<std::string> functions;
    for (const ReaderRow& row : readers) {
        functions.insert(row.function);
    }
    EXPECT_EQ(functions.size(), 23u);
}

TEST_F(Records, GiveEachFieldByItsReader)
{
    for (const ReaderRow& row : readers) {
        for (const auto& [content, values] : row.values) {
            SCOPED_TRACE(std::string(row.function) + " of '" + content + "'");
            const AssertWatch watch;
            EXPECT_EQ(read_after({{row.element, content}}, row.read), read_to(values));
            EXPECT_EQ(watch.count(), 0u);
        }
    }
}

TEST_F(Records, GiveTheirAnswerForAFieldThatIsAbsent)
{
    const VeltoRecordHandle record = open(); // without any optional field
    for (const ReaderRow& row : readers) {
        if (!row.absent.empty()) {
            EXPECT_EQ(row.read(record), read_to(row.absent == "(empty)" ? "" : row.absent))
                << row.function;
        }
    }
    velto_close_clip_metadata(record);
}

TEST_F(Records, WriteNothingForAnUnknownHandle)
{
    const VeltoRecordHandle closed = open();
    velto_close_clip_metadata(closed);
    for (const ReaderRow& row : readers) {
        for (const VeltoRecordHandle unknown : {0u, closed, 0xFFFFFFFFu}) {
            EXPECT_EQ(row.read(unknown), (Reading{invalid_handle, row.outputs_before}))
                << row.function;
        }
    }
}

TEST_F(Records, AreReadAlsoWhenTheLinkOrTheConnectionHasGone)
{
    std::map<const char*, std::pair<VeltoRecordHandle, std::string>> expected;
    for (const ReaderRow& row : readers) {
        const auto& [content, values] = row.values.back();
        expected[row.function] = {open({{row.element, content}}), values};
    }
    session.link->close();
    for (int round = 0; round < 2; ++round) {
        for (const ReaderRow& row : readers) {
            const auto& [record, values] = expected[row.function];
            EXPECT_EQ(row.read(record), read_to(values)) << row.function;
        }
        velto_close(session.handle);
    }
    for (const auto& [function, record] : expected) {
        velto_close_clip_metadata(record.first);
    }
}

// The finer marks are not looked at.
TEST_F(Records, AreReadOnlyByOneFieldAlone)
{
    EXPECT_EQ(read_after({{"ReadOnlyMeta", "true"}, {"ReadOnlyContent", "true"}},
                         read_number<velto_clip_is_readonly>),
              read_to("0"));
    EXPECT_EQ(read_after({{"ReadOnly", "true"}, {"ReadOnlyMeta", "false"}},
                         read_number<velto_clip_is_readonly>),
              read_to("1"));
}

TEST_F(Records, CutTheirTextsToTheBuffer)
{
    const VeltoRecordHandle record = open({{"Title", "abc"}});
    VeltoChar units[4] = {1, 2, 3, 4};
    EXPECT_EQ(velto_clip_title(record, {units, 0}), VELTO_RESULT_OK);
    EXPECT_EQ(units[0], 1);
    EXPECT_EQ(velto_clip_title(record, {units, 3}), VELTO_RESULT_OK);
    EXPECT_EQ(text_of(units), "ab");
    EXPECT_EQ(units[3], 4);
    velto_close_clip_metadata(record);
}

// A standard, and whether timecodes of that standard can drop frames.
struct FamilyRow {
    const char* standard;
    bool can_drop;
    std::size_t reports = 0; // of a standard that no family has; it counts as one that can
};

const FamilyRow families[] = {
    {"4K_60p", false},        {"4K_59_94p", true},        {"4K_50p", false},
    {"4K_30p", true, 1},      {"4K_29_97p", true, 1},     {"4K_25p", true, 1},
    {"4K_24p", true, 1},      {"4K_23_98p", true, 1},     {"1080_60p", false},
    {"1080_59_94p", true},    {"1080_50p", false},        {"1080_30p", true, 1},
    {"1080_29_97p", true, 1}, {"1080_25p", true, 1},      {"1080_24p", true, 1},
    {"1080_23_98p", true, 1}, {"1080_23_98psf", true, 1}, {"1080_60i", false},
    {"1080_59_94i", true},    {"1080_50i", false},        {"1080_48i", false},
    {"1080_47_95i", false},   {"720_60p", false},         {"720_59_94p", true},
    {"720_50p", false},       {"625_50i", false},         {"525_59_94i", true},
};

TEST_F(Records, CountTheDropFrameFlagInOneFamilyOnly)
{
    EXPECT_EQ(std::size(families), word_count<VideoStandard>);
    for (const FamilyRow& row : families) {
        SCOPED_TRACE(row.standard);
        const ClipFields drop = {
            {"VideoStandard", row.standard},
            {"Frame0Timecode", "<FieldNumber>8</FieldNumber><DropFrameFlag>df</DropFrameFlag>"},
            {"TimecodeSource", "striped"},
            {"StripeTimecode",
             "<Valid>true</Valid><FieldNumber>9</FieldNumber><DropFrameFlag>df</DropFrameFlag>"}};
        const AssertWatch watch;
        EXPECT_EQ(read_after(drop, read_pair<velto_clip_recorded_timecode0>),
                  read_to(row.can_drop ? "8 0" : "8 1"));
        EXPECT_EQ(watch.count("typehelp"), row.reports);
        EXPECT_EQ(read_after(drop, read_pair<velto_clip_timecode_stripe>),
                  read_to(row.can_drop ? "9 0" : "9 1"));
        EXPECT_EQ(watch.count(), 2 * row.reports);

        ClipFields non_drop = drop;
        for (auto& [name, content] : non_drop) {
            if (const std::size_t at = content.find(">df<"); at != std::string::npos) {
                content.replace(at, 4, ">ndf<");
            }
        }
        EXPECT_EQ(read_after(non_drop, read_pair<velto_clip_recorded_timecode0>), read_to("8 1"));
        EXPECT_EQ(read_after(non_drop, read_pair<velto_clip_timecode_stripe>), read_to("9 1"));
    }
}

struct StripeRow {
    const char* source;
    ClipFields timecodes;
    const char* values;
};

const std::string stripe = "<Valid>true</Valid><FieldNumber>9</FieldNumber>";
const std::string non_drop_stripe = stripe + "<DropFrameFlag>ndf</DropFrameFlag>";
const std::string invalid_stripe =
    "<Valid>false</Valid><FieldNumber>9</FieldNumber><DropFrameFlag>ndf</DropFrameFlag>";
const std::string frame0 = "<FieldNumber>8</FieldNumber><DropFrameFlag>ndf</DropFrameFlag>";

const StripeRow stripes[] = {
    {"zerobased", {{"StripeTimecode", non_drop_stripe}, {"Frame0Timecode", frame0}}, "0 0"},
    {"striped", {{"StripeTimecode", non_drop_stripe}, {"Frame0Timecode", frame0}}, "9 1"},
    {"striped", {{"StripeTimecode", stripe}}, "9 0"},
    {"striped", {{"StripeTimecode", "<Valid>true</Valid>"}}, "0 0"},
    {"striped",
     {{"StripeTimecode", "<Valid>true</Valid><DropFrameFlag>ndf</DropFrameFlag>"}},
     "0 1"},
    {"striped",
     {{"StripeTimecode", "<Valid>true</Valid><FieldNumber>-1</FieldNumber>"}},
     "4294967295 0"},
    {"striped", {{"StripeTimecode", invalid_stripe}, {"Frame0Timecode", frame0}}, "0 0"},
    {"rectc", {{"StripeTimecode", non_drop_stripe}, {"Frame0Timecode", frame0}}, "8 1"},
    {"rectc", {{"StripeTimecode", non_drop_stripe}}, "0 0"},
    {"rectc", {{"StripeTimecode", non_drop_stripe}, {"Frame0Timecode", ""}}, "0 0"},
    {"rec0_stripe", {{"StripeTimecode", non_drop_stripe}, {"Frame0Timecode", frame0}}, "8 1"},
    {"rec0_stripe", {{"StripeTimecode", non_drop_stripe}}, "0 0"},
};

TEST_F(Records, GiveTheTimecodeOfTheirSource)
{
    for (const StripeRow& row : stripes) {
        ClipFields fields = row.timecodes;
        fields.emplace_back("TimecodeSource", row.source);
        EXPECT_EQ(read_after(fields, read_pair<velto_clip_timecode_stripe>), read_to(row.values))
            << row.source << " with " << row.timecodes.front().second;
    }
}

// The standard inside of the timecode itself says nothing here.
TEST_F(Records, TakeTheFamilyFromTheirOwnStandard)
{
    const std::string fifty = "<Valid>true</Valid><VideoStandard>1080_50i</VideoStandard>"
                              "<FieldNumber>9</FieldNumber>";
    EXPECT_EQ(read_after({{"TimecodeSource", "striped"}, {"StripeTimecode", fifty}},
                         read_pair<velto_clip_timecode_stripe>),
              read_to("9 0"));
    EXPECT_EQ(read_after({{"VideoStandard", "1080_50i"}}, read_pair<velto_clip_timecode_stripe>),
              read_to("0 1"));
    EXPECT_EQ(read_after({{"VideoStandard", "1080_50i"}}, read_pair<velto_clip_recorded_timecode0>),
              read_to("0 1"));
}

// A value that no message brings, but a table has to take.
TEST(RecordReaders, TakeAnUnknownPlaybackForTheFirst)
{
    ClipInfo info;
    info.set<"Playback">(Playback{9}).set<"Loop">(Loop{9}).set<"VideoStandard">(VideoStandard{99});
    const VeltoRecordHandle record = clip_records().add(ClipRecord(0, info));
    EXPECT_EQ(read_number<velto_clip_playback>(record), read_to("0"));
    EXPECT_EQ(read_number<velto_clip_repeat>(record), read_to("0"));
    EXPECT_EQ(read_number<velto_clip_video_standard>(record), read_to("0"));
    velto_close_clip_metadata(record);
}

// ---- The reply, field by field

TEST_F(Records, TakeAReplyWithAllFieldsAndWithNoneOfTheOptionalOnes)
{
    const wire::Layout& message = wire::message("clipinfo").content;
    const VeltoRecordHandle record = opened(message.xml()).record;
    EXPECT_EQ("{" + describe(clip_records().find(record)->get()) + "}", message.seen());
    velto_close_clip_metadata(record);
}

const wire::Layout& clip_info_layout()
{
    for (const wire::Layout& layout : wire::composites()) {
        if (layout.name == "ClipInfo") {
            return layout;
        }
    }
    throw std::logic_error("no ClipInfo");
}

std::string clipinfo_with(const wire::Layout& layout, std::size_t changed, const std::string& text)
{
    return xml_element("clipinfo", layout.xml_with(changed, text));
}

TEST_F(Records, TakeAReplyWithoutAnyOneOfTheOptionalFields)
{
    const wire::Layout& layout = clip_info_layout();
    std::size_t optional_fields = 0;
    for (std::size_t i = 0; i < layout.fields.size(); ++i) {
        if (layout.fields[i].presence == wire::Presence::optional) {
            SCOPED_TRACE(layout.fields[i].name);
            const Opened without = opened(clipinfo_with(layout, i, ""));
            EXPECT_EQ(without.outcome, succeeded);
            EXPECT_EQ(describe(clip_records().find(without.record)->get()),
                      layout.seen_with(i, "-"));
            velto_close_clip_metadata(without.record);
            ++optional_fields;
        }
    }
    EXPECT_EQ(optional_fields, 22u);
}

TEST_F(Records, AreNotMadeOfAReplyWithOneBadFieldEvenAnOptionalOne)
{
    const wire::Layout& layout = clip_info_layout();
    for (std::size_t i = 0; i < layout.fields.size(); ++i) {
        const wire::Field& field = layout.fields[i];
        SCOPED_TRACE(field.name);
        if (!field.bad.empty()) {
            expect_dropped(clipinfo_with(layout, i, field.bad), field.complaint);
        }
        expect_dropped(clipinfo_with(layout, i, field.xml + field.xml),
                       "More than one tag '" + field.name + "' found within 'ClipInfo'");
    }
}

std::string tracks(int count)
{
    std::string text;
    for (int i = 0; i < count; ++i) {
        text += "<TrackInfo><TrackType>audio</TrackType></TrackInfo>";
    }
    return text;
}

TEST_F(Records, TakeSeventeenTracksAndNoMore)
{
    const VeltoRecordHandle record = open({{"TrackInfoVector", tracks(17)}});
    EXPECT_EQ(clip_records().find(record)->get().get<"TrackInfoVector">().count, 17u);
    EXPECT_EQ(read_number<velto_get_tracks>(record), read_to("4"));
    velto_close_clip_metadata(record);
    expect_dropped(clip_info({{"TrackInfoVector", tracks(18)}}),
                   "Tag TrackInfoVector contains %u subelements. The maximum is 17.");
}

// Every word of every enumeration of a record, and what the record then holds.
template <FixedString Name, typename E>
void expect_words(const std::function<ClipInfo(const ClipFields&)>& record_with)
{
    constexpr auto words = wire_words(E{});
    for (std::size_t i = 0; i < words.size(); ++i) {
        const std::string name(Name.view());
        const ClipInfo info = record_with({{name, words[i]}});
        EXPECT_EQ(describe(info.get<Name>()), std::to_string(i)) << words[i];
    }
}

TEST_F(Records, HoldEveryWordOfEveryEnumeration)
{
    const auto record_with = [this](const ClipFields& changes) {
        const VeltoRecordHandle record = open(changes);
        const ClipInfo info = clip_records().find(record)->get();
        velto_close_clip_metadata(record);
        return info;
    };
    expect_words<"VideoStandard", VideoStandard>(record_with);
    expect_words<"Playback", Playback>(record_with);
    expect_words<"Interp", Interp>(record_with);
    expect_words<"Loop", Loop>(record_with);
    expect_words<"TimecodeSource", TimecodeSource>(record_with);
    expect_words<"SpecialClipType", SpecialClipType>(record_with);
    expect_words<"CompressionType", CompressionType>(record_with);
}

} // namespace
