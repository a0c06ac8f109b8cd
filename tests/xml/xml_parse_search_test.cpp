#include "xml/xml_parse_search.h"

#include <gtest/gtest.h>

#include <optional>
#include <string>

namespace
{

using Place = std::optional<std::pair<std::uint64_t, std::uint64_t>>;

const unsigned char* bytes_of(const std::string& text)
{
    return reinterpret_cast<const unsigned char*>(text.data());
}

Place find_whole(const std::string& text, const std::string& name, bool closing)
{
    XMLTagSearch search(closing);
    if (!search.find(name, bytes_of(text), text.size(), text.size())) {
        return std::nullopt;
    }
    return std::pair(search.get_start(), search.get_end());
}

Place find_growing(const std::string& text, const std::string& name, bool closing)
{
    XMLTagSearch search(closing);
    for (std::uint64_t count = 0; count <= text.size(); ++count) {
        const std::string so_far = text.substr(0, count); // nothing behind it can be read
        if (search.find(name, bytes_of(so_far), count, count)) {
            EXPECT_EQ(search.get_end(), count) << text;
            return std::pair(search.get_start(), search.get_end());
        }
    }
    return std::nullopt;
}

Place at(std::uint64_t start, std::uint64_t end)
{
    return std::pair(start, end);
}

struct Row {
    const char* text;
    Place open;
    Place close;
};

} // namespace

TEST(XMLTagSearch, TableForTheNameReply)
{
    const Place none;
    const Row rows[] = {
        {"", none, none},
        {"reply", none, none},
        {"<reply>", at(0, 7), none},
        {"</reply>", none, at(0, 8)},
        {"< reply >", at(0, 9), none},
        {"</ reply >", none, at(0, 10)},
        {"< / reply >", none, at(0, 11)},
        {"<\b\t\n\r reply\b\t\n\r >", at(0, 17), none},
        {"<\b/\treply\n>", none, at(0, 11)},
        {"<\vreply>", none, none},
        {"<reply\f>", none, none},
        {"<\xC2\xA0reply>", none, none},
        {"<reply a=\"1\">", none, none},
        {"<reply/>", none, none},
        {"<reply />", none, none},
        {"</reply/>", none, none},
        {"<//reply>", none, none},
        {"<Reply>", none, none},
        {"<replyx>", none, none},
        {"<repl>", none, none},
        {"<re ply>", none, none},
        {"<report>", none, none},
        {"<reply", none, none},
        {"<", none, none},
        {"</", none, none},
        {"<<reply>", at(1, 8), none},
        {"<rep<reply>", at(4, 11), none},
        {"<reply<reply>", at(6, 13), none},
        {"< <reply>", at(2, 9), none},
        {"</</reply>", none, at(2, 10)},
        {"x<reply>y</reply>z", at(1, 8), at(9, 17)},
        {"</reply><reply></reply>", at(8, 15), at(0, 8)},
        {"<reply><reply>", at(0, 7), none},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(find_whole(row.text, "reply", false), row.open) << row.text;
        EXPECT_EQ(find_whole(row.text, "reply", true), row.close) << row.text;
        EXPECT_EQ(find_growing(row.text, "reply", false), row.open) << row.text;
        EXPECT_EQ(find_growing(row.text, "reply", true), row.close) << row.text;
    }
}

TEST(XMLTagSearch, OddNamesAreMatchedByTheirBytes)
{
    EXPECT_EQ(find_whole("x<>", "", false), at(1, 3));
    EXPECT_EQ(find_whole("< / >", "", true), at(0, 5));
    EXPECT_EQ(find_growing("< >", "", false), at(0, 3));
    EXPECT_EQ(find_whole("<a<a<b>", "a<b", false), at(2, 7));
    EXPECT_EQ(find_whole("<a b>", "a b", false), at(0, 5));
    EXPECT_EQ(find_whole("<\xC3\xA9>", "\xC3\xA9", false), at(0, 4));
}

TEST(XMLTagSearch, TagsFromTheLimitOnAreNotLookedFor)
{
    const std::string text = "..<a>..<a>";
    XMLTagSearch search(false);
    EXPECT_FALSE(search.find("a", bytes_of(text), text.size(), 2));
    EXPECT_TRUE(search.find("a", bytes_of(text), text.size(), 3));
    EXPECT_EQ(search.get_start(), 2u);
}

TEST(XMLTagSearch, FindingsMoveWithTheBytes)
{
    const std::string text = "....<a>";
    XMLTagSearch search(false);
    ASSERT_TRUE(search.find("a", bytes_of(text), text.size(), text.size()));
    search.drop_front(4);
    EXPECT_TRUE(search.is_found());
    EXPECT_EQ(search.get_start(), 0u);
    EXPECT_EQ(search.get_end(), 3u);
    search.drop_front(1);
    EXPECT_FALSE(search.is_found());
}

TEST(XMLTagSearch, HalfATagMovesWithTheBytes)
{
    const std::string text = "....<  a";
    XMLTagSearch search(false);
    EXPECT_FALSE(search.find("a", bytes_of(text), text.size(), text.size()));
    search.drop_front(4);
    const std::string rest = "<  a >";
    EXPECT_TRUE(search.find("a", bytes_of(rest), rest.size(), rest.size()));
    EXPECT_EQ(search.get_start(), 0u);
    EXPECT_EQ(search.get_end(), 6u);
}
