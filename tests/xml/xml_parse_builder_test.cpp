#include "xml/xml_texts.h"

#include <gtest/gtest.h>

#include <random>

namespace
{

struct Row {
    const char* text;
    const char* fate;
};

class RandomTrees
{
public:
    // At most `budget` elements.
    XMLTree make(int budget)
    {
        XMLTree tree(name());
        for (int left = below(3); left > 0; --left) {
            tree.attributes[name()] = AString("v") + name();
        }
        if (budget <= 1 || below(3) == 0) {
            tree.text = text();
            return tree;
        }
        --budget;
        for (int left = 1 + below(6); left > 0 && budget > 0; --left) {
            const int part = 1 + below(budget);
            tree.add_child(make(part));
            budget -= part;
        }
        return tree;
    }

private:
    int below(int limit) { return std::uniform_int_distribution<int>(0, limit - 1)(engine); }

    AString name()
    {
        static const char* const names[] = {"a", "B", "ClipID", "x_1", "reply", "Speed9"};
        return AString(names[below(6)]);
    }

    AString text()
    {
        static const AChar characters[] = {'\'', '<',   '>',    '"',     '&',      ';', ' ',
                                           '\n', 'a',   'l',    't',     'm',      'p', 0xE9,
                                           0xFF, 0x100, 0x65E5, 0x1D11E, 0x10FFFF, 1};
        AStringBuilder builder;
        for (int left = below(8) == 0 ? below(1200) : below(20); left > 0; --left) {
            builder.append(characters[below(static_cast<int>(std::size(characters)))]);
        }
        return builder.finish();
    }

    std::mt19937 engine{8913};
};

void expect_same(const XMLTree& a, const XMLTree& b)
{
    ASSERT_EQ(a.is_null, b.is_null);
    ASSERT_EQ(a.get_name(), b.get_name());
    ASSERT_EQ(a.get_text(), b.get_text());
    ASSERT_EQ(a.attributes, b.attributes);
    ASSERT_EQ(a.get_children().length(), b.get_children().length());
    auto other = b.get_children().begin();
    for (const XMLTree& child : a.get_children()) {
        ASSERT_NO_FATAL_FAILURE(expect_same(child, *other++));
    }
}

} // namespace

TEST(XMLTreeBuilder, ParsesAnElement)
{
    const XMLTree tree = parsed("<a k=\"v\"><b>1</b><c/></a>");
    ASSERT_FALSE(tree.is_null);
    EXPECT_EQ(tree.get_name(), AString("a"));
    EXPECT_TRUE(tree.get_text().is_empty());
    EXPECT_EQ(tree.attributes, (XMLAttributes{{AString("k"), AString("v")}}));
    ASSERT_EQ(tree.get_children().length(), 2u);
    EXPECT_EQ(tree.get_children().at(0).get_name(), AString("b"));
    EXPECT_EQ(tree.get_children().at(0).get_text(), AString("1"));
    EXPECT_EQ(tree.get_children().at(1).get_name(), AString("c"));
    EXPECT_FALSE(tree.get_children().at(1).is_null);
}

TEST(XMLTreeBuilder, ErrorIsSetBothWaysAndMayBeLeftOut)
{
    bool refused = true;
    EXPECT_FALSE(parsed("<a/>", &refused).is_null);
    EXPECT_FALSE(refused);
    EXPECT_TRUE(parsed("<a>", &refused).is_null);
    EXPECT_TRUE(refused);
    EXPECT_TRUE(parsed("<a>").is_null);
}

TEST(XMLTreeBuilder, TableOfFates)
{
    const Row rows[] = {
        {"<a></a>", "<a />"},
        {"<a/>", "<a />"},
        {" \r\n\t<a/>\v\f ", "<a />"},
        {"\xE6\x97\xA5<a/>\xE6\x97\xA5", "<a />"}, // from 256 up all is white space
        {"<a>\xE6\x97\xA5</a>", "<a>\xE6\x97\xA5</a>"},
        {"<a> x </a>", "<a> x </a>"},
        {"<a>\r\n</a>", "<a>\r\n</a>"},
        {"<a>x</a >", "<a>x</a>"},
        {"<a><a><a/></a></a>", "<a><a><a /></a></a>"},
        {"<a><b></b><b/><c>1</c></a>", "<a><b /><b /><c>1</c></a>"},
        {"<a>]]></a>", "refused"},
        // Nothing, or no element.
        {"", "refused"},
        {"   ", "refused"},
        {"\xE6\x97\xA5", "refused"},
        {"text", "refused"},
        {"&lt;a/&gt;", "refused"},
        // Not closed, not opened, closed by another.
        {"<a>", "refused"},
        {"</a>", "refused"},
        {"<a></b>", "refused"},
        {"<a></A>", "refused"},
        {"<a></ab>", "refused"},
        {"<ab></a>", "refused"},
        {"<a><b></a></b>", "refused"},
        {"<a><b></a>", "refused"},
        {"<a></b></a>", "refused"},
        {"<a><b/>", "refused"},
        {"<a>text", "refused"},
        {"<a/></a>", "refused"},
        {"<a></a></a>", "refused"},
        // More than one root, or text around it.
        {"<a/><b/>", "refused"},
        {"<a></a><a></a>", "refused"},
        {"<a/><b>", "refused"},
        {"<a/> <b/>", "refused"},
        {"x<a/>", "refused"},
        {"<a/>x", "refused"},
        {"<a></a> x", "refused"},
        {"<a/>&lt;", "refused"},
        {"<a/>\xC3\xA9", "refused"},
        {"<?xml version=\"1.0\"?><a/>", "refused"},
        {"<!-- c --><a/>", "refused"},
        {"<a><!-- c --></a>", "refused"},
        {"<a><![CDATA[x]]></a>", "refused"},
        // Angles.
        {"<>", "refused"},
        {"<", "refused"},
        {">", "refused"},
        {"<a", "refused"},
        {"<a><", "refused"},
        {"<a></a", "refused"},
        {"<a></a><", "refused"},
        {"<a></a>>", "refused"},
        {"<a>x>y</a>", "refused"},
        {"<a>x<y</a>", "refused"},
        {"<a><></a>", "refused"},
        {"<a></></a>", "refused"},
        {"<a>></a>", "refused"},
        {"<<a/>", "refused"},
        // Mixed content.
        {"<a><b/>x</a>", "refused"},
        {"<a>x<b/></a>", "refused"},
        {"<a>x<b/>y</a>", "refused"},
        {"<a> <b/> x <b/> </a>", "refused"},
        {"<a>&amp;<b/></a>", "refused"},
        {"<a><b/>&</a>", "refused"},
        {"<a>\xC3\xA9<b/></a>", "refused"},
        {"<r><a><b/>x</a></r>", "refused"},
        {"<a> <b/> </a>", "<a><b /></a>"},
        {"<a>\r\n<b/>\r\n<b/>\r\n</a>", "<a><b /><b /></a>"},
        {"<a>\xE6\x97\xA5<b/>\xE6\x97\xA5</a>", "<a><b /></a>"},
        {"<a> <b> </b> </a>", "<a><b> </b></a>"},
        // Entities.
        {"<a>&lt;&#65;</a>", "<a>&lt;&amp;#65;</a>"},
        {"<a>&apos;&lt;&gt;&quot;&amp;</a>", "<a>&apos;&lt;&gt;&quot;&amp;</a>"},
        {"<a>a & b</a>", "<a>a &amp; b</a>"},
        {"<a>&lt</a>", "<a>&amp;lt</a>"},
        // Attributes.
        {"<a b=1/>", "<a b=\"1\" />"},
        {"<a b=\"1\" c='2'>x</a>", "<a b=\"1\" c=\"&apos;2&apos;\">x</a>"},
        {"<a b=1 b=2/>", "<a b=\"2\" />"},
        {"<a z=1 b=2/>", "<a b=\"2\" z=\"1\" />"},
        {"<a b=\"&lt;\"/>", "<a b=\"&amp;lt;\" />"},
        {"<a></a b=1>", "<a />"},
        {"<a></a b>", "refused"},
        {"<a b=\"c d\"/>", "refused"},
        {"<a b=\"c>d\"/>", "refused"},
        {"<a b/>", "refused"},
        {"<a-b/>", "refused"},
        {"<a:b/>", "refused"},
        {"<1/>", "refused"},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(fate_of(row.text), row.fate) << row.text;
    }
}

TEST(XMLTreeBuilder, EveryCutOfAMessageIsRefused)
{
    const std::string message = "<reply>\r\n<xid>17</xid>\r\n<error><Message>a &lt; b</Message>"
                                "<Code n=\"1\"/></error>\r\n</reply>";
    for (std::size_t cut = 0; cut < message.size(); ++cut) {
        EXPECT_EQ(fate_of(message.substr(0, cut)), "refused") << cut;
    }
    EXPECT_NE(fate_of(message), "refused");
}

TEST(XMLTreeBuilder, TextKeepsItsEntitiesReplacedOnce)
{
    const XMLTree tree = parsed("<a>&lt;&#65;&amp;lt;</a>");
    EXPECT_EQ(tree.get_text(), AString("<&#65;&lt;"));
}

TEST(XMLTreeBuilder, ValuesOfALongTextHaveStoragesOfTheirOwn)
{
    const AString text = from_bytes("<a x=\"1\"><b>2</b>" + std::string(60, ' ') + "</a>");
    const XMLTree tree = XMLTreeBuilder::parse(text);
    const XMLTree& leaf = tree.get_children().at(0);
    for (const AString& value : {tree.get_name(), leaf.get_name(), leaf.get_text(),
                                 tree.attributes.begin()->first, tree.attributes.begin()->second}) {
        EXPECT_NE(value.storage.get(), text.storage.get());
    }
}

TEST(XMLTreeBuilder, ValueThatIsMostOfTheTextSharesIt)
{
    const std::string content(100, 'x');
    AString text = from_bytes("<a>" + content + "</a>");
    XMLTree tree = XMLTreeBuilder::parse(text);
    EXPECT_EQ(tree.get_text().to_utf8(), content);
    EXPECT_EQ(tree.get_text().storage.get(), text.storage.get());
    EXPECT_NE(tree.get_name().storage.get(), text.storage.get());
    text = from_bytes("<a>" + content + "</a>" + std::string(26, ' '));
    tree = XMLTreeBuilder::parse(text);
    EXPECT_EQ(tree.get_text().to_utf8(), content);
    EXPECT_NE(tree.get_text().storage.get(), text.storage.get());
}

TEST(XMLTreeBuilder, KnownNamesAndWordsAreTheStringsOfTheTable)
{
    AStringTable table;
    table.add(AString("a"), 0);
    const XMLTree tree = XMLTreeBuilder::parse(from_bytes("<a><b>a</b><a/></a>"), nullptr, &table);
    EXPECT_EQ(written(tree), "<a><b>a</b><a /></a>");
    const AString& constant = table.find(AString("a"))->text;
    for (const AString& text : {tree.get_name(), tree.get_children().at(0).get_text(),
                                tree.get_children().at(1).get_name()}) {
        EXPECT_EQ(text.storage.get(), constant.storage.get());
    }
}

TEST(XMLTreeBuilder, CodePointsBeyondUnicodePass)
{
    AStringBuilder builder;
    builder.append(AString("<a>"));
    builder.append(AChar{0xFFFFFFFF});
    builder.append(AChar{0});
    builder.append(AString("</a>"));
    const XMLTree tree = XMLTreeBuilder::parse(builder.finish());
    EXPECT_EQ(tree.get_text().length(), 2u);
    EXPECT_EQ(tree.get_text().getchar(0, 0), 0xFFFFFFFFu);
}

TEST(XMLTreeBuilder, WideTree)
{
    std::string text = "<a>";
    for (int i = 0; i < 20000; ++i) {
        text += "<b>" + std::to_string(i) + "</b>\r\n";
    }
    text += "</a>";
    const XMLTree tree = parsed(text);
    ASSERT_EQ(tree.get_children().length(), 20000u);
    EXPECT_EQ(tree.get_children().at(19999).get_text(), AString("19999"));
}

TEST(XMLTreeBuilder, ManyPiecesOfBlankTextAroundChildren)
{
    std::string text = "<a>";
    for (int i = 0; i < 20000; ++i) {
        text += "          <b/>";
    }
    EXPECT_EQ(parsed(text + "  </a>").get_children().length(), 20000u);
    EXPECT_EQ(fate_of(text + " x</a>"), "refused");
}

TEST(XMLTreeBuilder, WrittenTreesAreReadBackAsTheyWere)
{
    RandomTrees random;
    for (int round = 0; round < 300; ++round) {
        const XMLTree tree = random.make(60);
        for (const XMLWriteMode mode :
             {XMLWriteMode::compact, XMLWriteMode::lines, XMLWriteMode::indented}) {
            for (const bool short_empty : {false, true}) {
                const std::string bytes = written(tree, mode, short_empty);
                const XMLTree again = parsed(bytes);
                ASSERT_NO_FATAL_FAILURE(expect_same(tree, again)) << bytes;
                EXPECT_EQ(written(again, mode, short_empty), bytes);
            }
        }
    }
}
