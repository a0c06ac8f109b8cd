#include "xml/xml_plain.h"

#include "xml/xml_texts.h"

#include <gtest/gtest.h>

#include <random>

namespace
{

using Outcome = XMLPlainParser::Outcome;

// The names of the tests: roots, and some that nest.
const AStringTable& names()
{
    static const AStringTable table = [] {
        AStringTable made;
        for (const char* name : {"reply", "report", "a", "b", "item", "item_2"}) {
            made.add(AString(name), 0);
        }
        return made;
    }();
    return table;
}

const AString& constant(const char* name)
{
    return names().find(AString(name))->text;
}

// As `written` has a tree. The names that are not known are `?`.
std::string written(const XMLPlainElement& element)
{
    const std::string name = element.get_name().is_empty() ? "?" : element.get_name().to_utf8();
    const std::string_view text = element.get_text();
    std::string content =
        text.empty() ? "" : xml_escape(AString(text.data(), text.size())).to_utf8();
    element.visit_children([&content](const XMLPlainElement& child) {
        content += written(child);
        return true;
    });
    return content.empty() ? "<" + name + " />" : "<" + name + ">" + content + "</" + name + ">";
}

struct PlainParser : XMLPlainParser {
    PlainParser() : XMLPlainParser(names())
    {
        add_root_tag("reply");
        add_root_tag("report");
    }

    // The element as it is written, or what else has come of the bytes.
    std::string parse_all(std::string_view bytes)
    {
        restart();
        return parse_more(bytes);
    }

    std::string parse_more(std::string_view bytes)
    {
        switch (parse(bytes.data(), bytes.size())) {
        case Outcome::complete:
            return written(get_root());
        case Outcome::incomplete:
            return "incomplete";
        default:
            return "not plain";
        }
    }
};

std::string fate_of_plain(std::string_view bytes)
{
    return PlainParser().parse_all(bytes);
}

TEST(XMLPlainParser, ReadsElementsTextsAndUnknownNames)
{
    EXPECT_EQ(fate_of_plain("<reply>x</reply>"), "<reply>x</reply>");
    EXPECT_EQ(fate_of_plain("<report></report>"), "<report />");
    EXPECT_EQ(fate_of_plain("<reply><a>1</a><b><item>2</item><item/></b></reply>"),
              "<reply><a>1</a><b><item>2</item><item /></b></reply>");
    EXPECT_EQ(fate_of_plain("<reply><other>1</other><other_2/></reply>"),
              "<reply><?>1</?><? /></reply>");
}

TEST(XMLPlainParser, KeepsTheWhiteSpaceOfALeafAndDropsItAroundElements)
{
    EXPECT_EQ(fate_of_plain(" \r\n<reply>\r\n\t<a> 1\t</a>\v\f <b> </b>\r\n</reply>\r\n"),
              "<reply><a> 1\t</a><b> </b></reply>");
}

TEST(XMLPlainParser, TakesEmptyElementsWithAndWithoutTheSpace)
{
    EXPECT_EQ(fate_of_plain("<reply><a/><a /><b>1</b></reply>"),
              "<reply><a /><a /><b>1</b></reply>");
}

TEST(XMLPlainParser, TellsWhereTheMessageEnds)
{
    PlainParser parser;
    const std::string bytes = " <reply>1</reply><report>";
    ASSERT_EQ(parser.parse_all(bytes), "<reply>1</reply>");
    EXPECT_EQ(parser.get_end(), bytes.data() + bytes.size() - 8);
}

TEST(XMLPlainParser, FindsNamesByTheirConstants)
{
    PlainParser parser;
    ASSERT_EQ(parser.parse_all("<reply><other/></reply>"), "<reply><? /></reply>");
    EXPECT_TRUE(parser.get_root().has_name(constant("reply")));
    EXPECT_FALSE(parser.get_root().has_name(constant("report")));
    parser.get_root().visit_children([](const XMLPlainElement& child) {
        EXPECT_TRUE(child.get_name().is_empty());
        EXPECT_FALSE(child.has_name(constant("a")));
        return true;
    });
}

TEST(XMLPlainParser, VisitsChildrenUntilItIsEnough)
{
    PlainParser parser;
    ASSERT_EQ(parser.parse_all("<reply><a>1</a><a>2</a><a>3</a></reply>"),
              "<reply><a>1</a><a>2</a><a>3</a></reply>");
    std::string seen;
    const auto until_2 = [&seen](const XMLPlainElement& child) {
        seen += child.get_text();
        return child.get_text() != "2";
    };
    EXPECT_FALSE(parser.get_root().visit_children(until_2));
    EXPECT_EQ(seen, "12");
}

TEST(XMLPlainParser, LeavesAllElseToOthers)
{
    for (const char* bytes : {
             "<other>1</other>",
             "<reply/>",
             "<reply />",
             "</reply>",
             "<>",
             "< reply>1</reply>",
             "<reply >1</reply>",
             "<reply a=\"1\">1</reply>",
             "<?xml version=\"1.0\"?><reply>1</reply>",
             "x<reply>1</reply>",
             "<reply>1</ reply>",
             "<reply>1</reply >",
             "<reply>1</report>",
             "<reply>1</replyx",
             "<reply>&amp;</reply>",
             "<reply>&</reply>",
             "<reply>></reply>",
             "<reply>\xC3\x96l</reply>",
             "<reply>\xFF</reply>",
             "<reply><a b='1'>1</a></reply>",
             "<reply><a  /></reply>",
             "<reply><a/ ></reply>",
             "<reply><a/x></reply>",
             "<reply><1/></reply>",
             "<reply><_a/></reply>",
             "<reply><a-b/></reply>",
             "<reply><\xC3\x96/></reply>",
             "<reply><></reply>",
             "<reply></></reply>",
             "<reply><a></b></reply>",
             "<reply><a>1</item></reply>",
             "<reply>x<a/></reply>",
             "<reply><a/>x</reply>",
             "<reply><a/>x<a/></reply>",
             "<reply><reply>1</reply></reply>",
             "<reply><a><reply/></a></reply>",
         }) {
        EXPECT_EQ(fate_of_plain(bytes), "not plain") << bytes;
    }
    EXPECT_EQ(fate_of_plain("x"), "incomplete");
    EXPECT_EQ(fate_of_plain(std::string_view("<reply>\0</reply>", 16)), "not plain");
    EXPECT_EQ(fate_of_plain("<reply><a><report>1</report></a></reply>"),
              "<reply><a><report>1</report></a></reply>");
}

TEST(XMLPlainParser, LeavesLongNamesAndManyElementsToOthers)
{
    const auto with_name = [](std::size_t length) {
        const std::string name(length, 'n');
        return "<reply><" + name + ">1</" + name + "></reply>";
    };
    EXPECT_EQ(fate_of_plain(with_name(64)), "<reply><?>1</?></reply>");
    EXPECT_EQ(fate_of_plain(with_name(65)), "not plain");
    const auto with_children = [](std::size_t count) {
        std::string children;
        for (std::size_t i = 0; i < count; ++i) {
            children += "<a />";
        }
        return "<reply>" + children + "</reply>";
    };
    EXPECT_EQ(fate_of_plain(with_children(4095)), with_children(4095));
    EXPECT_EQ(fate_of_plain(with_children(4096)), "not plain");
}

TEST(XMLPlainParser, WaitsAtEachByteAndGoesOnThere)
{
    const std::string message =
        "\r\n<reply>\r\n<a>12</a><item_2>3</item_2><other/><b /><item> </item> </reply>";
    const std::string expected =
        "<reply><a>12</a><item_2>3</item_2><? /><b /><item> </item></reply>";
    PlainParser parser;
    parser.restart();
    for (std::size_t count = 0; count < message.size(); ++count) {
        ASSERT_EQ(parser.parse_more(std::string_view(message.data(), count)), "incomplete")
            << count;
    }
    EXPECT_EQ(parser.parse_more(message), expected);
    for (std::size_t cut = 0; cut < message.size(); ++cut) {
        ASSERT_EQ(parser.parse_all(std::string_view(message.data(), cut)), "incomplete") << cut;
        EXPECT_EQ(parser.parse_more(message), expected) << cut;
    }
}

TEST(XMLPlainParser, IsNotMisledByTheNamesOfTheMessageBefore)
{
    PlainParser parser;
    for (const char* message :
         {"<reply><item>1</item></reply>", "<reply><item_2>1</item_2></reply>",
          "<reply><item>1</item></reply>", "<report><a>1</a><b>2</b></report>", "<reply><a />",
          "<report><b>1</b></report>", "<reply>1</reply>",
          "<report><a><b>1</b></a><item /></report>"}) {
        const std::string bytes = message;
        const bool whole = bytes.find("</re") != std::string::npos;
        EXPECT_EQ(parser.parse_all(bytes), whole ? bytes : "incomplete");
    }
}

// Pieces of messages at random: what is read as plain is what the tree says.
TEST(XMLPlainParser, AgreesWithTheTreeOnWhateverItReads)
{
    constexpr const char* pieces[] = {"<a>",     "</a>",       "<b>", "</b>", "<a/>", "<b />",
                                      "<item>",  "</item>",    "1",   " ",    "\r\n", "&lt;",
                                      "x=\"1\"", "<item_2 />", "<",   ">",    "/",    "\xC3\x96"};
    std::mt19937 random(20240);
    std::size_t plain = 0;
    PlainParser parser;
    for (int round = 0; round < 50000; ++round) {
        std::string message = "<reply>";
        const auto count = random() % 9;
        for (std::uint32_t i = 0; i < count; ++i) {
            // Those that make a plain message stand in front.
            message += pieces[random() % (random() % 4 == 0 ? std::size(pieces) : 11)];
        }
        message += "</reply>";
        const std::string fate = parser.parse_all(message);
        if (fate != "not plain") {
            ++plain;
            ASSERT_EQ(fate, fate_of(message)) << message;
        }
    }
    EXPECT_GT(plain, 2000u);
}

} // namespace
