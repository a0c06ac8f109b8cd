#include "xml/xml_chars.h"

#include "xml/xml_texts.h"

#include <gtest/gtest.h>

namespace
{

std::string text_of(XMLChars chars)
{
    return AString::from_chars(chars.data(), chars.size()).to_utf8();
}

constexpr auto is_comma = [](AChar c) { return c == L1(','); };

} // namespace

TEST(XMLChars, TrimmingCountsAllFrom256AsWhiteSpace)
{
    const XMLFlatText text(from_bytes(" \t\xC4\x80 a \xC3\xA9\xE6\x97\xA5\r\n"));
    EXPECT_EQ(text_of(trim_left(text.get_chars())), "a \xC3\xA9\xE6\x97\xA5\r\n");
    EXPECT_EQ(text_of(trim_right(trim_left(text.get_chars()))), "a \xC3\xA9");
}

TEST(XMLChars, BlankIsWhiteSpaceAloneOrNothing)
{
    EXPECT_TRUE(is_blank(XMLChars()));
    EXPECT_TRUE(is_blank(XMLFlatText(from_bytes(" \t\r\n\v\f\xE6\x97\xA5")).get_chars()));
    EXPECT_FALSE(is_blank(XMLFlatText(from_bytes("  x")).get_chars()));
    EXPECT_FALSE(is_blank(XMLFlatText(from_bytes("\b")).get_chars()));
}

TEST(XMLChars, PiecesLeaveOutEmptyOnes)
{
    const XMLFlatText text(from_bytes(",,a,b,,c,"));
    XMLChars rest = text.get_chars();
    EXPECT_EQ(text_of(take_piece(rest, is_comma)), "a");
    EXPECT_EQ(text_of(take_piece(rest, is_comma)), "b");
    EXPECT_EQ(text_of(take_piece(rest, is_comma)), "c");
    EXPECT_TRUE(take_piece(rest, is_comma).empty());
    EXPECT_TRUE(rest.empty());
}

TEST(XMLFlatText, TextInOneBlockIsBorrowed)
{
    const AString text = AString("xabcx").mid(1, 3);
    const XMLFlatText flat(text);
    EXPECT_EQ(text_of(flat.get_chars()), "abc");
    EXPECT_EQ(flat.get_chars().data(), text.storage->head->buf.data() + 1);
}

TEST(XMLFlatText, TextAcrossBlocksIsJoined)
{
    std::string bytes;
    for (int i = 0; i < 1000; ++i) {
        bytes += static_cast<char>('a' + i % 26);
    }
    const XMLFlatText flat(AString(bytes.c_str()).mid(10, 900));
    EXPECT_EQ(text_of(flat.get_chars()), bytes.substr(10, 900));
}

TEST(XMLFlatText, EmptyTextHasNoCharacters)
{
    const XMLFlatText flat{AString()};
    EXPECT_TRUE(flat.get_chars().empty());
    EXPECT_TRUE(flat.keep(flat.get_chars(), 32).is_empty());
}

TEST(XMLFlatText, KeptStretchSharesTheTextWhereACompactCopyWould)
{
    const AString text = AString("x").repeat(100).mid(0, 99);
    const XMLFlatText flat(text);
    for (std::uint64_t length = 1; length <= text.length(); ++length) {
        const AString kept = flat.keep(flat.get_chars().first(length), 32);
        EXPECT_EQ(kept, text.left(length));
        const bool shared = kept.storage.get() == text.storage.get();
        EXPECT_EQ(shared, length >= 68) << length;
        EXPECT_EQ(shared, text.left(length).compact_copy(32).storage.get() == text.storage.get());
    }
}

TEST(XMLFlatText, DecodesBytesAsAStringDoesAndUsesItsRoomAgain)
{
    XMLFlatText flat;
    for (const std::string& bytes : {std::string(1000, 'x'), std::string("a\xC3\xA9z\xE6\x97\xA5"),
                                     std::string("ab\xFF"
                                                 "c"),
                                     std::string("ab\0c", 4), std::string("\xF0\x9D\x84\x9E")}) {
        flat.decode(reinterpret_cast<const unsigned char*>(bytes.data()), bytes.size());
        EXPECT_EQ(text_of(flat.get_chars()), from_bytes(bytes).to_utf8());
        EXPECT_FALSE(flat.can_share(flat.get_chars(), 32));
        EXPECT_EQ(flat.keep(flat.get_chars(), 32), from_bytes(bytes));
    }
}
