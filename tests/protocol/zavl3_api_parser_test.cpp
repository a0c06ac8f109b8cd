#include "protocol/zavl3_api_parser.h"

#include "support/assert_watch.h"
#include "support/recording_parser.h"
#include "support/wire_model.h"
#include "support/xml_text.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using Calls = std::vector<std::string>;

class APIParserTest : public testing::Test
{
protected:
    void dispatch(const std::string& text) { parser.dispatch_message(parse_xml(text)); }

    void expect_failure(const std::string& text, const std::string& xid) const
    {
        EXPECT_EQ(parser.calls, Calls{});
        EXPECT_FALSE(parser.message_ok);
        EXPECT_EQ(parser.error_text.to_utf8(), text);
        EXPECT_EQ(parser.error_xid.to_utf8(), xid);
    }

    RecordingParser parser;
};

TEST_F(APIParserTest, HasNoFailureAtFirst)
{
    EXPECT_TRUE(parser.message_ok);
    EXPECT_TRUE(parser.error_xid.is_empty());
    EXPECT_TRUE(parser.error_text.is_empty());
    EXPECT_TRUE(parser.message_tap.is_empty());
}

TEST_F(APIParserTest, RefusesAnyOtherRoot)
{
    const std::string content = "><xid>17</xid><ok/></";
    for (const std::string root : {"cmd", "Reply", "REPORT", "replyx", "reports"}) {
        dispatch("<" + root + content + root + ">");
        expect_failure("XML Message is not a <reply> or <report> message", "");
    }
}

TEST_F(APIParserTest, RefusesTheNullTree)
{
    parser.dispatch_message(XMLTree());
    expect_failure("XML Message is not a <reply> or <report> message", "");
}

TEST_F(APIParserTest, RefusesAReplyWithoutExactlyOneXid)
{
    dispatch("<reply><ok/></reply>");
    expect_failure("Tag 'xid' not found within 'reply'", "");
    dispatch("<reply><xid>1</xid><ok/><xid>1</xid></reply>");
    expect_failure("More than one tag 'xid' found within 'reply'", "");
    dispatch("<reply><ok><xid>1</xid></ok></reply>");
    expect_failure("Tag 'xid' not found within 'reply'", "");
}

TEST_F(APIParserTest, IgnoresTheXidsOfAReport)
{
    dispatch("<report><xid>1</xid><xid>2</xid><clip_created><ClipID>a</ClipID></clip_created>"
             "</report>");
    EXPECT_EQ(parser.calls, Calls{"clip_created{a}"});
    parser.calls.clear();
    dispatch("<report><xid>1</xid><clip_created/></report>");
    expect_failure("Tag 'ClipID' not found within 'clip_created'", "");
}

TEST_F(APIParserTest, RefusesTwoContents)
{
    dispatch("<reply><ok/><xid>17</xid><ok/></reply>");
    expect_failure("XML Message contains multiple commands", "17");
    dispatch("<reply><xid>18</xid><computername><ComputerName>a</ComputerName></computername>"
             "<clipid><ClipID>a</ClipID></clipid></reply>");
    expect_failure("XML Message contains multiple commands", "18");
    dispatch("<report><clip_created><ClipID>a</ClipID></clip_created><clip_created/></report>");
    expect_failure("XML Message contains multiple commands", "");
}

TEST_F(APIParserTest, RefusesAMessageWithoutContent)
{
    dispatch("<reply><xid>17</xid></reply>");
    expect_failure("XML Message contains no commands", "17");
    dispatch("<report/>");
    expect_failure("XML Message contains no commands", "");
    dispatch("<report>text alone</report>");
    expect_failure("XML Message contains no commands", "");
}

TEST_F(APIParserTest, RefusesAMessageWithUnknownContentInTheSameWay)
{
    dispatch("<reply><xid>17</xid><OK/><Ok/><okay/></reply>");
    expect_failure("XML Message contains no commands", "17");
}

TEST_F(APIParserTest, TakesNoReportInAReplyAndNoReplyInAReport)
{
    dispatch("<reply><xid>17</xid><channel_speed><Channel>A</Channel><Speed>1X</Speed>"
             "</channel_speed></reply>");
    expect_failure("XML Message contains no commands", "17");
    dispatch("<report><ok/></report>");
    expect_failure("XML Message contains no commands", "");
}

TEST_F(APIParserTest, IgnoresUnknownSiblings)
{
    dispatch("<reply><before/><clip_created/><ok/><xid>17</xid><after><ok/></after></reply>");
    EXPECT_EQ(parser.calls, Calls{"17 ok{}"});
    EXPECT_TRUE(parser.message_ok);
}

TEST_F(APIParserTest, GoesOnAfterAFailure)
{
    dispatch("<report><clip_created/></report>");
    EXPECT_FALSE(parser.message_ok);
    dispatch("<report><clip_created><ClipID>a</ClipID></clip_created></report>");
    EXPECT_TRUE(parser.message_ok);
    EXPECT_EQ(parser.calls, Calls{"clip_created{a}"});
    // What is known of the failure stays until the next one.
    EXPECT_EQ(parser.error_text.to_utf8(), "Tag 'ClipID' not found within 'clip_created'");
}

TEST_F(APIParserTest, KeepsTheFirstFailureOfAMessage)
{
    parser.dispatch_kind(ZAVL3::reply_clipid, parse_xml("<clipid/>"), AString("1"));
    parser.dispatch_kind(ZAVL3::reply_listid, parse_xml("<listid/>"), AString("2"));
    expect_failure("Tag 'ClipID' not found within 'clipid'", "1");
}

TEST_F(APIParserTest, ReportsAKindThatCannotBe)
{
    const XMLTree content = parse_xml("<ok/>");
    for (const std::int32_t kind : {77, 1000, -1, INT32_MAX, INT32_MIN}) {
        AssertWatch watch;
        parser.message_ok = true;
        parser.error_text = AString();
        parser.dispatch_kind(kind, content, AString("17"));
        expect_failure("Internal software error", "17");
        EXPECT_EQ(watch.count(), 1u);
        EXPECT_TRUE(watch.saw("zavl3_api_parser", 331));
    }
}

// What a tap saw, and what the parser had done until then.
struct Tap {
    static void see(void* tap, XMLTree tree)
    {
        Tap& self = *static_cast<Tap*>(tap);
        self.seen.push_back(to_xml(tree));
        self.message_ok_before.push_back(self.parser->message_ok);
        self.calls_before.push_back(self.parser->calls.size());
    }

    RecordingParser* parser;
    std::vector<std::string> seen;
    std::vector<bool> message_ok_before;
    std::vector<std::size_t> calls_before;
};

TEST_F(APIParserTest, ShowsEveryElementToTheTapBeforeAnythingElse)
{
    Tap tap{&parser, {}, {}, {}};
    parser.message_tap = AFunction<XMLTree>(&Tap::see, &tap);
    dispatch("<other />");
    dispatch("<reply><xid>1</xid><ok /></reply>");
    dispatch("<reply><xid>2</xid><ok /></reply>");
    EXPECT_EQ(tap.seen, (Calls{"<other />", "<reply><xid>1</xid><ok /></reply>",
                               "<reply><xid>2</xid><ok /></reply>"}));
    EXPECT_EQ(tap.message_ok_before, (std::vector<bool>{true, false, true}));
    EXPECT_EQ(tap.calls_before, (std::vector<std::size_t>{0, 0, 1}));
}

// Where nobody overrides an operation, a message is read, checked and dropped.
TEST(APIParserOperations, DoNothingByThemselves)
{
    AssertWatch watch;
    ZAVL3::APIParser parser;
    for (const wire::Message& message : wire::messages()) {
        parser.dispatch_message(parse_xml(message.wrap(message.content.xml())));
        EXPECT_TRUE(parser.message_ok) << message.content.name;
        for (std::size_t i = 0; i < message.content.fields.size(); ++i) {
            if (message.content.fields[i].presence == wire::Presence::required) {
                parser.dispatch_message(parse_xml(message.wrap(message.content.xml_with(i, ""))));
                EXPECT_FALSE(parser.message_ok) << message.content.name;
            }
        }
    }
    EXPECT_EQ(watch.count(), 0u);
}

} // namespace
