#include "xml/xml_tree.h"

#include "support/await.h"
#include "xml/xml_texts.h"

#include <gtest/gtest.h>

namespace
{

AString long_text()
{
    return AString("x").repeat(100);
}

XMLTree family()
{
    XMLTree tree(AString("a"));
    tree.add_child(XMLTree(AString("b"), AString("1")));
    tree.add_child(XMLTree(AString("c"), AString("2")));
    tree.add_child(XMLTree(AString("b"), AString("3")));
    return tree;
}

// A tree nested `depth` deep around `innermost`.
XMLTree nested(std::uint32_t depth, XMLTree innermost)
{
    for (std::uint32_t level = 0; level < depth; ++level) {
        XMLTree around(AString("a"));
        around.get_writable_children().push_back(std::move(innermost));
        innermost = std::move(around);
    }
    return innermost;
}

constexpr std::uint32_t very_deep = 200000;

} // namespace

TEST(XMLTree, DefaultIsTheNullTree)
{
    const XMLTree tree;
    EXPECT_TRUE(tree.is_null);
    EXPECT_TRUE(tree.get_name().is_empty());
    EXPECT_TRUE(tree.get_text().is_empty());
    EXPECT_EQ(tree.get_children().length(), 0u);
    EXPECT_TRUE(tree.attributes.empty());
}

TEST(XMLTree, ElementHasTextOrChildren)
{
    const XMLTree bare(AString("a"));
    EXPECT_FALSE(bare.is_null);
    EXPECT_EQ(bare.get_name(), AString("a"));
    EXPECT_TRUE(bare.get_text().is_empty());
    EXPECT_EQ(bare.get_children().length(), 0u);

    const XMLTree leaf(AString("a"), AString("text"));
    EXPECT_EQ(leaf.get_text(), AString("text"));
    EXPECT_EQ(leaf.get_children().length(), 0u);

    XMLTreeList children;
    children.push_back(leaf);
    const XMLTree parent(AString("p"), children);
    EXPECT_TRUE(parent.get_text().is_empty());
    ASSERT_EQ(parent.get_children().length(), 1u);
    EXPECT_EQ(&parent.get_children().get_readable(), &children.get_readable());
}

TEST(XMLTree, NameAndTextDoNotKeepALargeStorage)
{
    const AString all = long_text();
    const XMLTree small(all.left(5), all.left(67));
    EXPECT_NE(small.get_name().storage.get(), all.storage.get());
    EXPECT_NE(small.get_text().storage.get(), all.storage.get());
    EXPECT_EQ(small.get_text(), all.left(67));
    const XMLTree most(all.left(68), all.left(90));
    EXPECT_EQ(most.get_name().storage.get(), all.storage.get());
    EXPECT_EQ(most.get_text().storage.get(), all.storage.get());
}

TEST(XMLTree, CopiesShareChildrenUntilOneIsWritten)
{
    const XMLTree tree = family();
    XMLTree copy = tree;
    EXPECT_EQ(&copy.get_children().get_readable(), &tree.get_children().get_readable());
    copy.add_child(XMLTree(AString("d")));
    EXPECT_EQ(copy.get_children().length(), 4u);
    EXPECT_EQ(tree.get_children().length(), 3u);
    EXPECT_EQ(written(tree), "<a><b>1</b><c>2</c><b>3</b></a>");
}

TEST(XMLTree, WritableChildrenAreThoseOfThisTreeAlone)
{
    const XMLTree tree = family();
    XMLTree copy = tree;
    copy.get_writable_children().at(0) = XMLTree(AString("z"));
    EXPECT_EQ(written(copy), "<a><z /><c>2</c><b>3</b></a>");
    EXPECT_EQ(written(tree), "<a><b>1</b><c>2</c><b>3</b></a>");
}

TEST(XMLTree, AttributesAreCopied)
{
    XMLTree tree(AString("a"));
    tree.attributes[AString("x")] = AString("1");
    XMLTree copy = tree;
    copy.attributes[AString("x")] = AString("2");
    EXPECT_EQ(tree.attributes.at(AString("x")), AString("1"));
    copy = tree;
    EXPECT_EQ(copy.attributes.at(AString("x")), AString("1"));
}

TEST(XMLTree, AssignmentToItselfKeepsAll)
{
    XMLTree tree = family();
    tree.attributes[AString("x")] = AString("1");
    const XMLTree& same = tree;
    tree = same;
    EXPECT_EQ(written(tree), "<a x=\"1\"><b>1</b><c>2</c><b>3</b></a>");
    XMLTree& moved = tree;
    tree = std::move(moved);
    EXPECT_EQ(written(tree), "<a x=\"1\"><b>1</b><c>2</c><b>3</b></a>");
}

TEST(XMLTree, AssignmentOfAPartOfItself)
{
    XMLTree tree = nested(3, family());
    while (tree.get_children().length() == 1) {
        tree = tree.get_children().get_readable().head->value;
    }
    EXPECT_EQ(written(tree), "<a><b>1</b><c>2</c><b>3</b></a>");

    tree = nested(3, family());
    while (tree.get_children().length() == 1) {
        tree = std::move(tree.get_writable_children().at(0));
    }
    EXPECT_EQ(written(tree), "<a><b>1</b><c>2</c><b>3</b></a>");
}

TEST(XMLTree, CountChildrenGivesTheFirstOfTheName)
{
    const XMLTree tree = family();
    XMLTree first;
    EXPECT_EQ(tree.count_children(AString("b"), &first), 2u);
    EXPECT_EQ(written(first), "<b>1</b>");
    EXPECT_EQ(tree.count_children(AString("c")), 1u);
}

TEST(XMLTree, CountChildrenLeavesTheOutTreeWhenThereIsNone)
{
    XMLTree first(AString("before"));
    EXPECT_EQ(family().count_children(AString("B"), &first), 0u);
    EXPECT_EQ(written(first), "<before />");
    EXPECT_EQ(XMLTree().count_children(AString("b"), &first), 0u);
}

TEST(XMLTree, CountChildrenMayStoreIntoTheTreeItself)
{
    XMLTree tree = family();
    EXPECT_EQ(tree.count_children(AString("b"), &tree), 2u);
    EXPECT_EQ(written(tree), "<b>1</b>");
}

TEST(XMLTree, NamesMatchExactly)
{
    const XMLTree tree = family();
    EXPECT_TRUE(tree.has_child(AString("b")));
    EXPECT_FALSE(tree.has_child(AString("B")));
    EXPECT_FALSE(tree.has_child(AString("bb")));
    EXPECT_FALSE(tree.has_child(AString()));
    EXPECT_FALSE(tree.has_child(AString("1")));
}

TEST(XMLTree, OnlyDirectChildrenAreLookedAt)
{
    const XMLTree tree = nested(1, family());
    EXPECT_FALSE(tree.has_child(AString("b")));
    EXPECT_EQ(tree.count_children(AString("b")), 0u);
    EXPECT_EQ(tree.children_named(AString("b")).length(), 0u);
}

TEST(XMLTree, ChildrenNamedKeepTheirOrder)
{
    std::string texts;
    for (const XMLTree& child : family().children_named(AString("b"))) {
        texts += written(child);
    }
    EXPECT_EQ(texts, "<b>1</b><b>3</b>");
}

TEST(XMLTree, VeryDeepTreeIsTakenApartInALoop)
{
    XMLTree tree = nested(very_deep, XMLTree(AString("end")));
    const XMLTree copy = tree;
    tree = XMLTree();
    EXPECT_FALSE(copy.is_null);
    XMLTreeList list;
    list.push_back(nested(very_deep, XMLTree(AString("end"))));
    list.clear();
    EXPECT_EQ(list.length(), 0u);
}

TEST(XMLTree, WideAndDeepTreeIsTakenApart)
{
    XMLTree tree(AString("a"));
    for (int i = 0; i < 300; ++i) {
        tree.add_child(nested(300, family()));
    }
    tree = XMLTree();
    EXPECT_TRUE(tree.is_null);
}

TEST(XMLTree, PartsThatAreSharedOutliveTheTree)
{
    XMLTree kept;
    {
        const XMLTree tree = nested(1000, family());
        const XMLTree* at = &tree;
        for (int level = 0; level < 500; ++level) {
            at = &at->get_children().get_readable().head->value;
        }
        kept = *at;
    }
    const std::string text = written(kept);
    EXPECT_EQ(text.size(), 500 * std::string("<a></a>").size() + written(family()).size());
}

TEST(XMLTree, EntryHeldByAnIteratorKeepsItsChildren)
{
    XMLTreeList::iterator held;
    {
        XMLTree tree(AString("root"));
        tree.add_child(XMLTree(AString("before")));
        tree.get_writable_children().push_back(nested(1000, family()));
        tree.add_child(XMLTree(AString("behind")));
        held = ++tree.get_children().begin();
    }
    const std::string text = written(*held);
    EXPECT_EQ(text.size(), 1000 * std::string("<a></a>").size() + written(family()).size());
    EXPECT_EQ(++held, XMLTreeList::iterator());
}

TEST(XMLTree, CopiesAreReadAndDroppedByOtherThreads)
{
    for (int round = 0; round < 50; ++round) {
        XMLTree tree = nested(50, family());
        const std::string text = written(tree);
        std::vector<std::future<std::string>> readers;
        for (int i = 0; i < 3; ++i) {
            readers.push_back(in_thread([copy = tree] { return written(copy); }));
        }
        tree = XMLTree();
        for (auto& reader : readers) {
            EXPECT_EQ(await(std::move(reader)), text);
        }
    }
}
