#include "support/assert_watch.h"
#include "xml/xml_texts.h"

#include <gtest/gtest.h>

namespace
{

using Mode = XMLWriteMode;

XMLTree empty_a()
{
    return XMLTree(AString("a"));
}

XMLTree a_with(const XMLTree& child)
{
    XMLTree tree(AString("a"));
    tree.add_child(child);
    return tree;
}

XMLTree leaf_b()
{
    return XMLTree(AString("b"), AString("x"));
}

std::string joined(const std::vector<std::string>& parts)
{
    std::string all;
    for (const std::string& part : parts) {
        all += part;
    }
    return all;
}

// The chunks that come when each piece goes through `for_each_utf8`.
std::vector<std::string> chunks_of_pieces(const XMLTree& tree, Mode mode, bool short_empty)
{
    ByteCollector collector;
    for (const AString& piece : tree.to_pieces(mode, short_empty)) {
        piece.for_each_utf8(bind<&ByteCollector::add>(&collector));
    }
    return collector.chunks;
}

XMLTree of_everything()
{
    XMLTree tree(AString("cmd"));
    tree.attributes[AString("v")] = AString("a<b");
    tree.attributes[AString("n")] = AString("1");
    tree.add_child(XMLTree(AString("xid"), AString("17")));
    tree.add_child(XMLTree(AString("empty")));
    tree.add_child(a_with(a_with(XMLTree(AString("b"), from_bytes("\xC3\xA9 & \xE6\x97\xA5")))));
    tree.add_child(XMLTree(AString("long"), AString("text ").repeat(200)));
    return tree;
}

} // namespace

TEST(XMLWrite, EmptyElement)
{
    EXPECT_EQ(written(empty_a(), Mode::compact, true), "<a />");
    EXPECT_EQ(written(empty_a(), Mode::compact, false), "<a></a>");
    EXPECT_EQ(written(empty_a(), Mode::lines, true), "<a />");
    EXPECT_EQ(written(empty_a(), Mode::indented, false), "<a></a>");
}

TEST(XMLWrite, CompactHasNothingBetweenElements)
{
    EXPECT_EQ(written(a_with(leaf_b()), Mode::compact), "<a><b>x</b></a>");
}

TEST(XMLWrite, LinesBreakAroundEachChildAndNotBehindTheRoot)
{
    EXPECT_EQ(written(a_with(leaf_b()), Mode::lines), "<a>\r\n<b>x</b>\r\n</a>");
    XMLTree two = a_with(leaf_b());
    two.add_child(a_with(empty_a()));
    EXPECT_EQ(written(two, Mode::lines), "<a>\r\n<b>x</b>\r\n<a>\r\n<a />\r\n</a>\r\n</a>");
    EXPECT_EQ(written(two, Mode::lines, false),
              "<a>\r\n<b>x</b>\r\n<a>\r\n<a></a>\r\n</a>\r\n</a>");
}

TEST(XMLWrite, IndentedLinesStartWithFourSpacesALevel)
{
    XMLTree two = a_with(a_with(leaf_b()));
    two.add_child(empty_a());
    EXPECT_EQ(written(two, Mode::indented), "<a>\r\n"
                                            "    <a>\r\n"
                                            "        <b>x</b>\r\n"
                                            "    </a>\r\n"
                                            "    <a />\r\n"
                                            "</a>");
}

TEST(XMLWrite, TextIsEscaped)
{
    EXPECT_EQ(written(XMLTree(AString("a"), AString("a<b&c"))), "<a>a&lt;b&amp;c</a>");
    EXPECT_EQ(written(XMLTree(AString("a"), from_bytes("\xC3\xA9'\">"))),
              "<a>\xC3\xA9&apos;&quot;&gt;</a>");
}

TEST(XMLWrite, TextIsNotWrittenWithChildren)
{
    XMLTree tree = a_with(leaf_b());
    tree.text = AString("unseen");
    EXPECT_EQ(written(tree), "<a><b>x</b></a>");
}

TEST(XMLWrite, ListThatWasReadAndHoldsNothingIsNoChildren)
{
    XMLTree tree = empty_a();
    EXPECT_EQ(tree.get_children().get_readable().count, 0u);
    EXPECT_EQ(written(tree), "<a />");
}

TEST(XMLWrite, AttributesComeInOrderOfTheirNamesWithEscapedValues)
{
    XMLTree tree(AString("a"), AString("t"));
    tree.attributes[AString("b")] = AString("2");
    tree.attributes[AString("B")] = AString("<'\">&");
    tree.attributes[AString("a&")] = AString();
    EXPECT_EQ(written(tree), "<a B=\"&lt;&apos;&quot;&gt;&amp;\" a&=\"\" b=\"2\">t</a>");
    tree.text = AString();
    EXPECT_EQ(written(tree), "<a B=\"&lt;&apos;&quot;&gt;&amp;\" a&=\"\" b=\"2\" />");
}

TEST(XMLWrite, AttributeValueMayLookLikeAPlaceholder)
{
    XMLTree tree(AString("a"));
    tree.attributes[AString("%2")] = AString("%1");
    EXPECT_EQ(written(tree), "<a %2=\"%1\" />");
}

TEST(XMLWrite, PiecesOfAnElement)
{
    XMLTree tree = a_with(leaf_b());
    tree.attributes[AString("k")] = AString("v");
    EXPECT_EQ(pieces_of(tree, Mode::indented),
              (std::vector<std::string>{"<", "a", " k=\"v\"", ">", "\r\n", "    ", "<", "b", ">",
                                        "x", "<", "/", "b", ">", "\r\n", "<", "/", "a", ">"}));
    EXPECT_EQ(pieces_of(empty_a(), Mode::compact, true),
              (std::vector<std::string>{"<", "a", " />"}));
}

TEST(XMLWrite, EmptyTextGivesAnEmptyPiece)
{
    EXPECT_EQ(pieces_of(empty_a(), Mode::compact, false),
              (std::vector<std::string>{"<", "a", ">", "", "<", "/", "a", ">"}));
}

TEST(XMLWrite, PiecesShareTheTextsOfTheTree)
{
    const XMLTree tree(AString("name"), AString("text"));
    std::vector<const AStringStorage*> storages;
    for (const AString& piece : tree.to_pieces(Mode::compact, true)) {
        storages.push_back(piece.storage.get());
    }
    ASSERT_EQ(storages.size(), 8u);
    EXPECT_EQ(storages[1], tree.get_name().storage.get());
    EXPECT_EQ(storages[3], tree.get_text().storage.get());
    EXPECT_EQ(storages[0], storages[4]); // a constant
}

TEST(XMLWrite, IndentComesInPiecesOf128AndTheRest)
{
    XMLTree tree = leaf_b();
    for (int level = 0; level < 65; ++level) {
        tree = a_with(tree);
    }
    std::vector<std::vector<std::size_t>> indents(1); // of each line
    for (const std::string& piece : pieces_of(tree, Mode::indented)) {
        if (piece == "\r\n") {
            indents.emplace_back();
        } else if (piece.find_first_not_of(' ') == std::string::npos) {
            indents.back().push_back(piece.size());
        }
    }
    using Sizes = std::vector<std::size_t>;
    EXPECT_EQ(indents[0], Sizes{});
    EXPECT_EQ(indents[1], Sizes{4});
    EXPECT_EQ(indents[31], Sizes{124});
    EXPECT_EQ(indents[32], Sizes{128});
    EXPECT_EQ(indents[33], (Sizes{128, 4}));
    EXPECT_EQ(indents[64], (Sizes{128, 128}));
    EXPECT_EQ(indents[65], (Sizes{128, 128, 4}));
}

TEST(XMLWrite, UnknownModeIsReportedAndGivesNothing)
{
    const AssertWatch watch;
    EXPECT_EQ(empty_a().to_pieces(static_cast<Mode>(3), true).length(), 0u);
    EXPECT_EQ(watch.count("xml_tree"), 1u);
    EXPECT_EQ(written(a_with(leaf_b()), static_cast<Mode>(-1)), "");
    EXPECT_EQ(watch.count(), 2u);
}

TEST(XMLWrite, NullTreeIsReportedAndGivesNothing)
{
    const AssertWatch watch;
    EXPECT_EQ(XMLTree().to_pieces(Mode::compact, true).length(), 0u);
    EXPECT_EQ(watch.count("xml_tree"), 1u);
    EXPECT_EQ(written(XMLTree()), "");
    EXPECT_EQ(watch.count("xml_tree"), 2u);
    EXPECT_EQ(written(a_with(XMLTree()), Mode::lines), "<a>\r\n\r\n</a>");
    EXPECT_EQ(watch.count("xml_tree"), 3u);
}

TEST(XMLWrite, BytesComeInTheChunksOfThePieces)
{
    XMLTree deep = of_everything();
    for (int level = 0; level < 40; ++level) {
        deep = a_with(deep);
    }
    for (const XMLTree& tree : {empty_a(), of_everything(), deep}) {
        for (const Mode mode : {Mode::compact, Mode::lines, Mode::indented}) {
            for (const bool short_empty : {false, true}) {
                ByteCollector collector;
                tree.write(bind<&ByteCollector::add>(&collector), mode, short_empty);
                EXPECT_EQ(collector.chunks, chunks_of_pieces(tree, mode, short_empty));
                EXPECT_EQ(collector.bytes, joined(pieces_of(tree, mode, short_empty)));
            }
        }
    }
}

TEST(XMLWrite, EmptySinkDropsTheBytes)
{
    const AssertWatch watch;
    of_everything().write({}, Mode::lines, true);
    EXPECT_EQ(watch.count(), 0u);
}
