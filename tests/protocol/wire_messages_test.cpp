// Every message of the server, as a table: tests/support/wire_model.cpp.

#include "protocol/zavl3_messages.h"

#include "support/recording_parser.h"
#include "support/wire_model.h"
#include "support/xml_text.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using Calls = std::vector<std::string>;

class WireMessage : public testing::TestWithParam<wire::Message>
{
protected:
    const wire::Message& message() const { return GetParam(); }
    const wire::Layout& content() const { return GetParam().content; }
    const std::string& tag() const { return content().name; }
    std::string expected_xid() const { return message().is_reply ? "17" : ""; }

    // From its tree, and as it is received. Both must come to the same.
    void dispatch(const std::string& content_xml)
    {
        RecordingParser receiver;
        for (RecordingParser* each : {&parser, &receiver}) {
            each->calls.clear();
            each->error_text = AString("untouched");
            each->error_xid = AString("untouched");
        }
        const std::string bytes = message().wrap(content_xml);
        parser.dispatch_message(parse_xml(bytes));
        receiver.feed(bytes);
        EXPECT_EQ(receiver.calls, parser.calls);
        EXPECT_EQ(receiver.message_ok, parser.message_ok);
        EXPECT_EQ(receiver.error_text.to_utf8(), parser.error_text.to_utf8());
        EXPECT_EQ(receiver.error_xid.to_utf8(), parser.error_xid.to_utf8());
    }

    void expect_call(const std::string& seen) const
    {
        EXPECT_EQ(parser.calls, Calls{message().call(seen)});
        EXPECT_TRUE(parser.message_ok);
        EXPECT_EQ(parser.error_text.to_utf8(), "untouched");
    }

    void expect_failure(const std::string& text) const
    {
        EXPECT_EQ(parser.calls, Calls{});
        EXPECT_FALSE(parser.message_ok);
        EXPECT_EQ(parser.error_text.to_utf8(), text);
        EXPECT_EQ(parser.error_xid.to_utf8(), expected_xid());
    }

    template <typename Check>
    void for_each_field(wire::Presence presence, Check check)
    {
        for (std::size_t i = 0; i < content().fields.size(); ++i) {
            if (content().fields[i].presence == presence) {
                SCOPED_TRACE(content().fields[i].name);
                check(i, content().fields[i]);
            }
        }
    }

    RecordingParser parser;
};

TEST_P(WireMessage, ReachesItsOperationWithItsValues)
{
    dispatch(content().xml());
    expect_call(content().seen());
}

TEST_P(WireMessage, ReachesItsOperationWhenItComesByteByByte)
{
    const std::string bytes = message().wrap(content().xml());
    for (const char& byte : bytes) {
        ASSERT_EQ(parser.calls, Calls{});
        parser.feed_bytes(&byte, 1);
    }
    EXPECT_EQ(parser.calls, Calls{message().call(content().seen())});
    EXPECT_FALSE(parser.is_stream_broken());
}

TEST_P(WireMessage, TakesItsFieldsInAnyOrderAndIgnoresOthers)
{
    std::string fields = xml_element("Unknown", "1");
    for (const wire::Field& field : content().fields) {
        fields = field.xml + xml_element("Unknown", "2") + fields;
    }
    dispatch(xml_element(tag(), fields));
    expect_call(content().seen());
}

TEST_P(WireMessage, FailsWithoutARequiredField)
{
    for_each_field(wire::Presence::required, [&](std::size_t at, const wire::Field& field) {
        dispatch(content().xml_with(at, ""));
        expect_failure("Tag '" + field.name + "' not found within '" + tag() + "'");
    });
}

// With this one and all behind it missing, this one must be complained about.
TEST_P(WireMessage, ReadsItsFieldsInOrder)
{
    for_each_field(wire::Presence::required, [&](std::size_t at, const wire::Field& field) {
        std::string fields;
        for (std::size_t i = 0; i < at; ++i) {
            fields += content().fields[i].xml;
        }
        dispatch(xml_element(tag(), fields));
        expect_failure("Tag '" + field.name + "' not found within '" + tag() + "'");
    });
}

TEST_P(WireMessage, FailsWithARequiredFieldDoubled)
{
    for_each_field(wire::Presence::required, [&](std::size_t at, const wire::Field& field) {
        dispatch(content().xml_with(at, field.xml + field.xml));
        expect_failure("More than one tag '" + field.name + "' found within '" + tag() + "'");
    });
}

TEST_P(WireMessage, FailsWithARequiredFieldThatCannotBeRead)
{
    for_each_field(wire::Presence::required, [&](std::size_t at, const wire::Field& field) {
        if (!field.bad.empty()) {
            dispatch(content().xml_with(at, field.bad));
            expect_failure(field.complaint);
        }
    });
}

TEST_P(WireMessage, TakesAnOptionalFieldThatCannotBeReadAsAbsent)
{
    for_each_field(wire::Presence::optional, [&](std::size_t at, const wire::Field& field) {
        for (const std::string& replacement : {std::string(), field.bad, field.xml + field.xml}) {
            dispatch(content().xml_with(at, replacement));
            expect_call(content().seen_with(at, "-"));
        }
    });
}

INSTANTIATE_TEST_SUITE_P(All, WireMessage, testing::ValuesIn(wire::messages()),
                         [](const auto& row) { return row.param.content.name; });

TEST(WireMessages, AreTheOnesOfTheLibraryInTheOrderOfTheirKinds)
{
    const std::vector<std::string> known = {
#define NAME(name, ...) #name,
        ZAVL3_REPLIES(NAME) ZAVL3_REPORTS(NAME)
#undef NAME
    };
    std::vector<std::string> expected;
    for (const wire::Message& message : wire::messages()) {
        expected.push_back(message.content.name);
    }
    EXPECT_EQ(known, expected);
    EXPECT_EQ(ZAVL3::message_kind_count, 77);
    EXPECT_EQ(ZAVL3::first_report_kind, 24);
    EXPECT_EQ(ZAVL3::reply_channel_current_timecode, 23);
    EXPECT_EQ(ZAVL3::report_clip_created, 24);
    EXPECT_EQ(ZAVL3::report_ltc_timecode, 76);
}

TEST(WireMessages, AreDispatchedByKindToTheOperationOfTheirName)
{
    for (std::size_t kind = 0; kind < wire::messages().size(); ++kind) {
        const wire::Message& message = wire::messages()[kind];
        RecordingParser parser;
        parser.dispatch_kind(static_cast<std::int32_t>(kind), parse_xml(message.content.xml()),
                             AString("17"));
        EXPECT_EQ(parser.calls, Calls{message.call(message.content.seen())});
    }
}

// The same exchange again, with each message as it stands on the wire.
struct Literal {
    const char* bytes;
    const char* call; // empty where the message fails
    const char* error;
};

constexpr Literal literals[] = {
    {"<reply><xid>17</xid><clipexists><ClipID>news_open</ClipID><Exists>true</Exists></clipexists>"
     "</reply>",
     "17 clipexists{news_open, true}", ""},
    {"<report><channel_speed><Channel>A</Channel><Speed>1.5X</Speed></channel_speed></report>",
     "channel_speed{0, 98304}", ""},
    {"<report><channel_speed><Channel>A</Channel><Speed>98304</Speed></channel_speed></report>",
     "channel_speed{0, 98304}", ""},
    {"<report><channel_speed><Channel>A</Channel><Speed>4294901760</Speed></channel_speed>"
     "</report>",
     "channel_speed{0, -65536}", ""},
    {"<report><channel_speed><Channel>A</Channel><Speed>1.5</Speed></channel_speed></report>", "",
     "Tag Speed contains invalid value '1.5'"},
    {"<reply>\r\n<xid> 17 </xid>\r\n<ok />\r\n</reply>", " 17  ok{}", ""},
    {"<reply><xid></xid><ok/></reply>", " ok{}", ""},
    {"<reply><ok></ok><xid>17</xid></reply>", "17 ok{}", ""},
    {"<report><channel_status><Channel> B </Channel><ChannelStatus>idle</ChannelStatus>"
     "</channel_status></report>",
     "channel_status{1, 1, -}", ""},
    {"<report><channel_status><Channel>B</Channel><ChannelStatus>idle</ChannelStatus>"
     "<ClipID> a </ClipID></channel_status></report>",
     "channel_status{1, 1,  a }", ""},
    {"<report><channel_status><Channel>B</Channel><ChannelStatus>Idle</ChannelStatus>"
     "</channel_status></report>",
     "", "Tag channel_status contains invalid value 'ChannelStatus'"},
    {"<report><config_changed></config_changed></report>", "config_changed{-}", ""},
    {"<report><config_changed/></report>", "config_changed{-}", ""},
    {"<report><config_changed><ConfigurationChange><ConfigurationItem/></ConfigurationChange>"
     "</config_changed></report>",
     "config_changed{-}", ""},
    {"<report><config_changed><ConfigurationChange/></config_changed></report>",
     "config_changed{[]}", ""},
    {"<report><channel_listplay_air_now><Channel>A</Channel><ListPlaybackIndex />"
     "</channel_listplay_air_now></report>",
     "channel_listplay_air_now{0, {-}}", ""},
    {"<report><channel_listplay_air_now><Channel>A</Channel><ListPlaybackIndex>"
     "<ListIndex>12</ListIndex></ListPlaybackIndex></channel_listplay_air_now></report>",
     "channel_listplay_air_now{0, {12}}", ""},
    {"<report><channel_listplay_air_now><Channel>A</Channel></channel_listplay_air_now></report>",
     "", "Tag 'ListPlaybackIndex' not found within 'channel_listplay_air_now'"},
    {"<report><channel_listplay_item_remove><Channel>A</Channel><ListIndex>65536</ListIndex>"
     "</channel_listplay_item_remove></report>",
     "", "Tag ListIndex contains invalid value '65536'"},
    {"<report><channel_clipid><Channel>M</Channel><ClipID>x</ClipID></channel_clipid></report>", "",
     "Tag channel_clipid contains invalid value 'Channel'"},
    {"<reply><xid>5</xid><error><ErrorMessage>No &quot;x&quot; &amp; no &apos;y&apos;"
     "</ErrorMessage><ErrorCode>general</ErrorCode></error></reply>",
     "5 error{No \"x\" & no 'y', 0}", ""},
    {"<reply><xid>5</xid><error><ErrorMessage>m</ErrorMessage><ErrorCode>4</ErrorCode></error>"
     "</reply>",
     "", "Tag error contains invalid value 'ErrorCode'"},
    {"<reply><xid>6</xid><video_standard><VideoStandard>4K_60p</VideoStandard>"
     "<VideoRate>23_98</VideoRate><VideoResolution>4K</VideoResolution></video_standard></reply>",
     "6 video_standard{0, 9, 0}", ""},
    {"<report><clip_created><ClipID></ClipID></clip_created></report>", "clip_created{}", ""},
    {"<report><clip_created><ClipID>\u00D6l \U0001F3AC</ClipID></clip_created></report>",
     "clip_created{\u00D6l \U0001F3AC}", ""},
};

TEST(WireMessages, AreReadAsTheyStandOnTheWire)
{
    for (const Literal& row : literals) {
        SCOPED_TRACE(row.bytes);
        RecordingParser parser;
        parser.feed(row.bytes);
        const bool good = *row.call != '\0';
        EXPECT_EQ(parser.calls, good ? Calls{row.call} : Calls{});
        EXPECT_EQ(parser.message_ok, good);
        EXPECT_EQ(parser.error_text.to_utf8(), row.error);
        EXPECT_FALSE(parser.is_stream_broken());
    }
}

} // namespace
