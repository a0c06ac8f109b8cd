#include "foundation/astring.h"
#include "foundation/astring_model.h"
#include "support/assert_watch.h"
#include "support/astring_printer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>
#include <vector>

using model::Random;
using model::string_of;
using model::Text;
using model::text_of;

namespace
{

AString from_bytes(const std::string& bytes)
{
    return AString::from_utf8(bytes.data(), bytes.size());
}

struct Chunks {
    std::vector<std::size_t> sizes;
    std::string bytes;

    static void add(void* self, const unsigned char* bytes, std::uint64_t count)
    {
        auto& chunks = *static_cast<Chunks*>(self);
        chunks.sizes.push_back(count);
        chunks.bytes.append(reinterpret_cast<const char*>(bytes), count);
    }
};

Chunks chunks_of(const AString& text)
{
    Chunks chunks;
    text.for_each_utf8(AString::BytesDelegate(Chunks::add, &chunks));
    return chunks;
}

using Sizes = std::vector<std::size_t>;

TEST(AStringFromUtf8, EndsAtTheFirstByteThatIsNone)
{
    EXPECT_EQ(from_bytes("\x41\xFF\x42").length(), 1u);
    EXPECT_EQ(from_bytes("\x41\xFF\x42"), "A");
    EXPECT_EQ(from_bytes(std::string("ab\0cd", 5)), "ab");
    EXPECT_EQ(from_bytes("ab\xC2"), "ab");
    EXPECT_EQ(from_bytes("ab\xE2\x82"), "ab");
    EXPECT_EQ(from_bytes("ab\x80\x80\x80\x80"), "ab");
    EXPECT_TRUE(from_bytes("\xFF").is_empty());
    EXPECT_TRUE(from_bytes(std::string(1, '\0')).is_empty());
}

TEST(AStringFromUtf8, DecodesEveryLength)
{
    EXPECT_EQ(text_of(from_bytes("a\xC2\xA9\xE4\xB8\xAD\xF0\x9F\x98\x80z")),
              U"a\u00A9\u4E2D\U0001F600z");
}

// The plain stretches are found several bytes at a time: every byte at every place.
TEST(AStringFromUtf8, EndsAPlainStretchWhereItEnds)
{
    for (std::size_t before = 0; before < 26; ++before) {
        for (unsigned byte = 0; byte < 256; ++byte) {
            const std::string bytes =
                std::string(before, '\x7F') + static_cast<char>(byte) + std::string(26, '\x01');
            const std::size_t expected = byte >= 1 && byte <= 127 ? before + 27 : before;
            ASSERT_EQ(from_bytes(bytes).length(), expected) << before << " " << byte;
        }
    }
}

TEST(AStringFromUtf16, EndsAtTheFirstUnitThatIsNone)
{
    EXPECT_EQ(AString(u"ab\0cd", 5), "ab");
    EXPECT_EQ(AString(std::u16string{u'a', u'\xD800', u'b'}), "a");
    EXPECT_EQ(AString(std::u16string{u'a', u'\xDC00', u'b'}), "a");
    EXPECT_EQ(AString(std::u16string{u'a', u'\xD800'}), "a");
    EXPECT_TRUE(AString(std::u16string{u'\xDC00'}).is_empty());
}

TEST(AStringConversions, EveryCodePointGoesThroughUtf8)
{
    for (AChar start = 1; start < 0x110000; start += 0x1000) {
        Text text;
        for (AChar c = start; c < start + 0x1000 && c < 0x110000; ++c) {
            text += static_cast<char32_t>(c);
        }
        const AString string = string_of(text);
        ASSERT_EQ(from_bytes(chunks_of(string).bytes), string) << start;
        ASSERT_EQ(from_bytes(string.to_utf8()), string) << start;
    }
}

TEST(AStringConversions, EveryCodePointButSurrogatesGoesThroughUtf16)
{
    Text text;
    for (AChar c = 1; c < 0x110000; ++c) {
        if (c < 0xD800 || c > 0xDFFF) {
            text += static_cast<char32_t>(c);
        }
    }
    const AString string = string_of(text);
    EXPECT_TRUE(AString(string.to_wide()) == string);
    std::vector<char16_t> units(2 * text.size());
    std::uint64_t actual = 0;
    string.to_utf16(units.data(), units.size(), &actual);
    EXPECT_TRUE(AString(units.data(), actual) == string);
}

TEST(AStringConversions, ViewsGoThroughBothForms)
{
    Random random(10);
    for (const std::size_t length : model::lengths) {
        const Text text = random.text(length, U"ab\u00A9\u4E2D\U0001F600");
        const AString string = random.view(text);
        EXPECT_EQ(text_of(from_bytes(string.to_utf8())), text);
        EXPECT_EQ(text_of(AString(string.to_wide())), text);
    }
}

TEST(AStringToUtf16, WritesWhatFits)
{
    const AString text(u"a\U0001F600b"); // four units
    const std::u16string units = u"a\U0001F600b";
    const std::uint64_t written[] = {0, 1, 1, 3, 4, 4}; // by room; a pair is never cut
    for (std::uint64_t room = 0; room <= 5; ++room) {
        std::u16string buffer(8, u'#');
        std::uint64_t actual = 99;
        text.to_utf16(buffer.data(), room, &actual);
        EXPECT_EQ(actual, written[room]) << room;
        EXPECT_EQ(buffer, units.substr(0, actual) + std::u16string(8 - actual, u'#')) << room;
    }
}

TEST(AStringToUtf16, FillsTheRestWithZerosOnRequest)
{
    std::u16string buffer(8, u'#');
    AString("ab").to_utf16(buffer.data(), 6, nullptr, true);
    EXPECT_EQ(buffer, std::u16string(u"ab\0\0\0\0##", 8));
    AString().to_utf16(buffer.data(), 8, nullptr, true);
    EXPECT_EQ(buffer, std::u16string(8, u'\0'));
}

TEST(AStringToUtf16, EndsAtWhatHasNoUnits)
{
    for (const AChar c : {0xD800u, 0xDFFFu, 0x110000u, 0xFFFFFFFFu}) {
        const AString text = AString("ab") + AString(c) + AString("cd");
        std::u16string buffer(8, u'#');
        std::uint64_t actual = 99;
        text.to_utf16(buffer.data(), 8, &actual);
        EXPECT_EQ(actual, 2u);
        EXPECT_EQ(buffer, u"ab######");
        EXPECT_EQ(text.to_wide(), u"ab");
    }
}

TEST(AStringToUtf16, AZeroIsAUnitLikeOthers)
{
    EXPECT_EQ(AString("a\0b", 3).to_wide(), std::u16string(u"a\0b", 3));
}

TEST(AStringToUtf16, ReportsAMissingBuffer)
{
    AssertWatch watch;
    std::uint64_t actual = 99;
    AString("ab").to_utf16(nullptr, 5, &actual, true);
    EXPECT_EQ(actual, 0u);
    AString("ab").to_utf16z(nullptr, 5);
    EXPECT_EQ(watch.count("astring"), 2u);
    AString("ab").to_utf16(nullptr, 0, &actual, true);
    EXPECT_EQ(watch.count("astring"), 2u);
}

TEST(AStringToUtf16z, WritesNothingBehindTheTerminator)
{
    const AString text("abc");
    const std::u16string expected[] = {
        u"######",
        std::u16string(u"\0#####", 6),
        std::u16string(u"a\0####", 6),
        std::u16string(u"ab\0###", 6),
        std::u16string(u"abc\0##", 6),
        std::u16string(u"abc\0##", 6),
        std::u16string(u"abc\0##", 6),
    };
    for (std::uint64_t count = 0; count <= 6; ++count) {
        std::u16string buffer(6, u'#');
        text.to_utf16z(buffer.data(), count);
        EXPECT_EQ(buffer, expected[count]) << count;
    }
}

TEST(AStringToWide, HasNoSeamsWhereItsBlocksEnd)
{
    for (std::size_t before = 60; before < 70; ++before) {
        const Text text = Text(before, U'a') + U"\U0001F600" + Text(70, U'b');
        const std::u16string wide = string_of(text).to_wide();
        EXPECT_EQ(wide, std::u16string(before, u'a') + u"\U0001F600" + std::u16string(70, u'b'));
    }
    EXPECT_EQ(AString().to_wide(), u"");
}

TEST(AStringRuns, NeverCrossASegment)
{
    const AString text = string_of(Text(1000, U'x')).mid(250, 300);
    std::vector<std::uint64_t> counts;
    const auto add = [](void* to, const AChar*, std::uint64_t count) {
        static_cast<std::vector<std::uint64_t>*>(to)->push_back(count);
    };
    text.for_each_run(AString::RunDelegate(add, &counts));
    EXPECT_EQ(counts, (std::vector<std::uint64_t>{6, 256, 38}));
    counts.clear();
    AString().for_each_run(AString::RunDelegate(add, &counts));
    EXPECT_TRUE(counts.empty());
}

TEST(AStringRuns, AnEmptyDelegateMakesNoCall)
{
    AssertWatch watch;
    AString("abc").for_each_run(AString::RunDelegate());
    AString("abc").for_each_utf8(AString::BytesDelegate());
    EXPECT_EQ(watch.count(), 0u);
}

// Counts in bytes of the bound values that the delegate was called with.
std::uint64_t bytes_by_plain_function = 0;
std::uint32_t value_seen = 0;

TEST(AStringRuns, TakeEveryFormOfDelegate)
{
    bytes_by_plain_function = 0;
    value_seen = 0;
    AString("abc").for_each_utf8(AString::BytesDelegate(
        [](const unsigned char*, std::uint64_t count) { bytes_by_plain_function += count; }));
    EXPECT_EQ(bytes_by_plain_function, 3u);
    AString("abc").for_each_utf8(AString::BytesDelegate(
        [](std::uint32_t value, const unsigned char*, std::uint64_t) { value_seen = value; }, 7u));
    EXPECT_EQ(value_seen, 7u);
    Chunks chunks;
    const auto forward = [](void* object, const void*, const unsigned char* bytes,
                            std::uint64_t count) { Chunks::add(object, bytes, count); };
    AString("abc").for_each_utf8(AString::BytesDelegate(forward, &chunks, nullptr));
    EXPECT_EQ(chunks.bytes, "abc");
}

TEST(AStringUtf8Chunks, AreHandedOverWithLessThanFourBytesOfRoom)
{
    EXPECT_EQ(chunks_of(string_of(Text(125, U'x'))).sizes, (Sizes{125}));
    EXPECT_EQ(chunks_of(string_of(Text(126, U'x'))).sizes, (Sizes{125, 1}));
    EXPECT_EQ(chunks_of(string_of(Text(124, U'x') + U"\U0001F600y")).sizes, (Sizes{128, 1}));
    EXPECT_EQ(chunks_of(string_of(Text(124, U'x') + U"\u4E2Dy")).sizes, (Sizes{127, 1}));
    EXPECT_EQ(chunks_of(string_of(Text(33, U'\U0001F600'))).sizes, (Sizes{128, 4}));
    EXPECT_TRUE(chunks_of(AString()).sizes.empty());
}

TEST(AStringUtf8Chunks, EndWithEachRun)
{
    EXPECT_EQ(chunks_of(string_of(Text(300, U'x'))).sizes, (Sizes{125, 125, 6, 44}));
    EXPECT_EQ(chunks_of(string_of(Text(300, U'x')).mid(250, 10)).sizes, (Sizes{6, 4}));
}

TEST(AStringUtf8Chunks, LeaveOutWhatIsNoCodePoint)
{
    const AString bad = AString(AChar{0x110000}) + AString(AChar{0xFFFFFFFF});
    EXPECT_EQ(chunks_of(AString("a") + bad + AString("b")).bytes, "ab");
    EXPECT_EQ((AString("a") + bad + AString("b")).to_utf8(), "ab");
    EXPECT_TRUE(chunks_of(bad).sizes.empty());
}

TEST(AStringUtf8Chunks, KeepZerosAndSurrogates)
{
    const AString text = AString("\0", 1) + AString(AChar{0xD800});
    EXPECT_EQ(chunks_of(text).bytes, std::string("\0\xED\xA0\x80", 4));
}

} // namespace
