#include "xml/xml_parse_tag.h"

#include "xml/xml_texts.h"

#include <gtest/gtest.h>

namespace
{

std::string text_of(XMLChars chars)
{
    return AString::from_chars(chars.data(), chars.size()).to_utf8();
}

// A tag in words: its kind, its name and its attributes, each in square brackets.
std::string described(std::string_view text)
{
    const XMLFlatText flat(from_bytes(text));
    const XMLTag tag = next_tag(flat.get_chars(), 0);
    static const char* const kinds[] = {"none", "error", "open", "close", "empty"};
    const char* kind = kinds[static_cast<int>(tag.kind)];
    if (tag.kind == XMLTagKind::none || tag.kind == XMLTagKind::error) {
        return kind;
    }
    std::string words = std::string(kind) + " " + text_of(tag.name);
    for (const auto& [name, value] : tag.attributes) {
        words += " [" + text_of(name) + "][" + text_of(value) + "]";
    }
    return words;
}

struct Row {
    const char* text;
    const char* meaning;
};

} // namespace

TEST(XMLTagScan, KindsKeepTheirNumbers)
{
    EXPECT_EQ(static_cast<int>(XMLTagKind::none), 0);
    EXPECT_EQ(static_cast<int>(XMLTagKind::error), 1);
    EXPECT_EQ(static_cast<int>(XMLTagKind::open), 2);
    EXPECT_EQ(static_cast<int>(XMLTagKind::close), 3);
    EXPECT_EQ(static_cast<int>(XMLTagKind::empty), 4);
}

TEST(XMLTagScan, PositionsAreThoseOfTheAngles)
{
    const XMLFlatText flat(from_bytes("<a>\xC3\xA9<bc/>"));
    XMLTag tag = next_tag(flat.get_chars(), 0);
    EXPECT_EQ(tag.start, 0u);
    EXPECT_EQ(tag.end, 2u);
    tag = next_tag(flat.get_chars(), 3);
    EXPECT_EQ(tag.start, 4u);
    EXPECT_EQ(tag.end, 8u);
    EXPECT_EQ(text_of(tag.name), "bc");
    EXPECT_EQ(next_tag(flat.get_chars(), 9).kind, XMLTagKind::none);
}

TEST(XMLTagScan, Table)
{
    const Row rows[] = {
        {"", "none"},
        {"text only", "none"},
        {"<a>", "open a"},
        {"</a>", "close a"},
        {"<a/>", "empty a"},
        {"text<a>text", "open a"},
        // Angles that do not pair.
        {"<", "error"},
        {">", "error"},
        {"<a", "error"},
        {"a>", "error"},
        {"x>y<a>", "error"},
        {"<>", "error"},
        {"< >", "error"},
        {"<<a>", "error"},
        {"<a<b>", "error"},
        // Slashes.
        {"</>", "error"},
        {"<//>", "error"},
        {"< / >", "error"},
        {"</a/>", "error"},
        {"<//a>", "error"},
        {"<a//>", "error"},
        {"<a/b>", "error"},
        {"<a / b>", "error"},
        {"< / a >", "close a"},
        {"< a / >", "empty a"},
        {"<\ta\r\n/\v>", "empty a"},
        // Names.
        {"<A>", "open A"},
        {"<z9_>", "open z9_"},
        {"<Z_z0>", "open Z_z0"},
        {"<9a>", "error"},
        {"<_a>", "error"},
        {"<a-b>", "error"},
        {"<a.b>", "error"},
        {"<a:b>", "error"},
        {"<?xml?>", "error"},
        {"<!a>", "error"},
        {"<!--a-->", "error"},
        {"<![CDATA[a]]>", "error"},
        {"<\xC3\xA9>", "error"},  // a letter, but none of A to Z
        {"<a\xC3\xA9>", "error"}, //
        {"<a\xE6\x97\xA5"
         "b>",
         "error"}, // within a name it is no white space
        {"<[>", "error"},
        {"<@>", "error"},
        {"<`>", "error"},
        {"<{>", "error"},
        {"<a\b>", "error"}, // the backspace is white space only to the scan for roots
        // Trimming takes all from 256 up as white space.
        {"<\xE6\x97\xA5"
         "a\xE6\x97\xA5>",
         "open a"},
        {"</\xE6\x97\xA5"
         "a>",
         "close a"},
        {"<a\xE6\x97\xA5/>", "empty a"},
        // Attributes.
        {"<a b=1>", "open a [b][1]"},
        {"<a b=1/>", "empty a [b][1]"},
        {"<a b=\"1\" />", "empty a [b][1]"},
        {"<a\tb=1\nc=2\rd=3\ve=4\ff=5>", "open a [b][1] [c][2] [d][3] [e][4] [f][5]"},
        {"<a  b=1   c=2 >", "open a [b][1] [c][2]"},
        {"</a b=1>", "close a [b][1]"},
        {"</a b>", "error"},
        {"<a b>", "error"},
        {"<a b=>", "error"},
        {"<a =b>", "error"},
        {"<a =>", "error"},
        {"<a b = 1>", "error"},
        {"<a b= 1>", "error"},
        {"<a b=1=2>", "error"},
        {"<a b=\"c=d\">", "error"},
        {"<a b=\"c d\">", "error"},
        {"<a b==1>", "open a [b][1]"}, // empty parts do not count
        {"<a =b=1=>", "open a [b][1]"},
        {"<a b=\"\">", "open a [b][]"},
        {"<a b=\">", "open a [b][]"},
        {"<a b=\"1>", "open a [b][1]"},
        {"<a b=1\">", "open a [b][1]"},
        {"<a b=\"\"1\"\">", "open a [b][\"1\"]"},
        {"<a b='1'>", "open a [b]['1']"},
        {"<a \"b\"=1>", "open a [\"b\"][1]"},
        {"<a 9-:\xC3\xA9=1>", "open a [9-:\xC3\xA9][1]"},
        {"<a b=&lt;>", "open a [b][&lt;]"},
        {"<a b=<>", "open a [b][<]"},
        {"<a b=/x>", "open a [b][/x]"},
        {"<a b=x/>", "empty a [b][x]"},
        {"<a b=1 b=2>", "open a [b][1] [b][2]"},
        {"<a b=\xE6\x97\xA5>", "error"}, // the value is trimmed away
        {"<a b=\"\xE6\x97\xA5\">", "open a [b][\xE6\x97\xA5]"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(described(row.text), row.meaning) << row.text;
    }
}

TEST(XMLTagScan, TellsWhetherWhiteSpaceAloneStandsBefore)
{
    const std::pair<const char*, bool> rows[] = {
        {"<a>", true},   {" \r\n\t<a>", true}, {"\xE6\x97\xA5</a>", true},
        {"x<a>", false}, {" x </a>", false},   {"\xC3\xA9<a>", false},
        {"", true},      {" \t", true},        {" x", false},
    };
    for (const auto& [text, space] : rows) {
        const XMLFlatText flat(from_bytes(text));
        EXPECT_EQ(next_tag(flat.get_chars(), 0).space_before, space) << text;
    }
}

TEST(XMLTagScan, ExpectedNameChangesNothing)
{
    for (const char* text : {"</ab>", "</a>", "</abc>", "</ab >", "</ab", "</ab/>", "</ab c=1>",
                             "<ab>", "x</ab>y", "< / ab >", "</xy>"}) {
        const XMLFlatText flat(from_bytes(text));
        const XMLFlatText expected(AString("ab"));
        const XMLTag plain = next_tag(flat.get_chars(), 0);
        const XMLTag quick = next_tag(flat.get_chars(), 0, expected.get_chars());
        EXPECT_EQ(quick.kind, plain.kind) << text;
        EXPECT_EQ(quick.start, plain.start) << text;
        EXPECT_EQ(quick.end, plain.end) << text;
        EXPECT_EQ(text_of(quick.name), text_of(plain.name)) << text;
    }
}
