#include "foundation/achar.h"

#include "support/assert_watch.h"

#include <gtest/gtest.h>

#include <array>
#include <cstring>
#include <string>
#include <vector>

namespace
{

TEST(AChar, L1WidensBytesWithZeros)
{
    EXPECT_EQ(L1(0x41), 0x41u);
    EXPECT_EQ(L1(0xFF), 0xFFu);
}

TEST(AChar, IsDigitKnowsTheTenAsciiDigitsAlone)
{
    for (AChar c = 0; c < 0x20000; ++c) {
        ASSERT_EQ(is_digit(c), c >= 0x30 && c <= 0x39) << c;
    }
    EXPECT_FALSE(is_digit(0xFFFFFF30u));
}

// Wanted: strings of such characters are blank and trim to nothing.
TEST(AChar, IsSpaceTakesZeroAndEverythingFrom256)
{
    const std::string spaces(" \t\n\r\v\f\0", 7);
    for (AChar c = 0; c < 256; ++c) {
        EXPECT_EQ(is_space(c), spaces.find(static_cast<char>(c)) != std::string::npos) << c;
    }
    EXPECT_TRUE(is_space(0));
    EXPECT_FALSE(is_space(0xA0));
    EXPECT_FALSE(is_space(0xFF));
    for (const AChar c : {0x100u, 0x141u, 0x4E2Du, 0x10FFFFu, 0x110000u, 0xFFFFFFFFu}) {
        EXPECT_TRUE(is_space(c)) << c;
    }
}

TEST(AChar, DigitValueGivesTheDefaultForOthers)
{
    EXPECT_EQ(digit_value('0', -1), 0);
    EXPECT_EQ(digit_value('9', -1), 9);
    for (const AChar c : {0x2Fu, 0x3Au, 0x41u, 0x130u, 0x660u}) {
        EXPECT_EQ(digit_value(c, -7), -7) << c;
    }
}

TEST(AChar, AlnumValueGoesOnBeyondF)
{
    EXPECT_EQ(alnum_value('0', -1), 0);
    EXPECT_EQ(alnum_value('9', -1), 9);
    EXPECT_EQ(alnum_value('A', -1), 10);
    EXPECT_EQ(alnum_value('F', -1), 15);
    EXPECT_EQ(alnum_value('G', -1), 16);
    EXPECT_EQ(alnum_value('Z', -1), 35);
    EXPECT_EQ(alnum_value('a', -1), 10);
    EXPECT_EQ(alnum_value('z', -1), 35);
    for (const AChar c : {0x2Fu, 0x3Au, 0x40u, 0x5Bu, 0x60u, 0x7Bu, 0xC1u, 0x141u}) {
        EXPECT_EQ(alnum_value(c, -7), -7) << c;
    }
}

TEST(AChar, ToLatin1EndsAt255)
{
    EXPECT_EQ(to_latin1(0, '?'), 0);
    EXPECT_EQ(to_latin1(0xFF, '?'), 0xFF);
    EXPECT_EQ(to_latin1(0x100, '?'), '?');
    EXPECT_EQ(to_latin1(0xFFFFFFFFu, '?'), '?');
}

TEST(AChar, ToLowerFoldsAsciiAlone)
{
    for (AChar c = 0; c < 0x600; ++c) {
        EXPECT_EQ(to_lower(c), c >= 0x41 && c <= 0x5A ? c + 32 : c) << c;
    }
}

struct Utf8Case {
    const char* name;
    std::vector<unsigned char> bytes;
    std::uint64_t consumed; // 0 where the bytes are refused
    AChar value;
};

const std::vector<Utf8Case> utf8_cases = {
    {"nothing", {}, 0, 0},
    {"a zero byte", {0x00, 0x41}, 0, 0},
    {"the lowest character", {0x01}, 1, 0x01},
    {"the largest of one byte", {0x7F, 0x41}, 1, 0x7F},
    {"the lowest of two bytes", {0xC2, 0x80}, 2, 0x80},
    {"the copyright sign", {0xC2, 0xA9}, 2, 0xA9},
    {"the largest of two bytes", {0xDF, 0xBF}, 2, 0x7FF},
    {"the lowest of three bytes", {0xE0, 0xA0, 0x80}, 3, 0x800},
    {"the largest of three bytes", {0xEF, 0xBF, 0xBF}, 3, 0xFFFF},
    {"the lowest of four bytes", {0xF0, 0x90, 0x80, 0x80}, 4, 0x10000},
    {"the largest code point", {0xF4, 0x8F, 0xBF, 0xBF}, 4, 0x10FFFF},
    {"lead byte C0", {0xC0, 0x80}, 0, 0},
    {"lead byte C1", {0xC1, 0x81}, 0, 0},
    {"lead byte F5", {0xF5, 0x80, 0x80, 0x80}, 0, 0},
    {"lead byte F8", {0xF8, 0x80, 0x80, 0x80, 0x80}, 0, 0},
    {"lead byte FF", {0xFF, 0x80, 0x80, 0x80}, 0, 0},
    {"two bytes cut", {0xC2}, 0, 0},
    {"three bytes cut after one", {0xE2}, 0, 0},
    {"three bytes cut after two", {0xE2, 0x82}, 0, 0},
    {"four bytes cut after three", {0xF0, 0x90, 0x80}, 0, 0},
    {"second of two is no continuation", {0xC2, 0x41}, 0, 0},
    {"second of two is a lead byte", {0xC2, 0xC2}, 0, 0},
    {"third of three is no continuation", {0xE2, 0x82, 0x41}, 0, 0},
    {"fourth of four is no continuation", {0xF0, 0x90, 0x80, 0x41}, 0, 0},
    {"second of three is zero", {0xE2, 0x00, 0x80}, 0, 0},
    {"overlong zero of three bytes passes", {0xE0, 0x80, 0x80}, 3, 0},
    {"overlong letter of four bytes passes", {0xF0, 0x80, 0x81, 0x81}, 4, 0x41},
    {"a surrogate passes", {0xED, 0xA0, 0x80}, 3, 0xD800},
    {"beyond the largest behind F4 passes", {0xF4, 0xBF, 0xBF, 0xBF}, 4, 0x13FFFF},
};

TEST(Utf8Decode, AcceptsAndRefusesByTable)
{
    for (const Utf8Case& row : utf8_cases) {
        SCOPED_TRACE(row.name);
        AChar value = 0xABCD;
        std::uint64_t consumed = 99;
        const bool decoded = utf8_decode(row.bytes.data(), row.bytes.size(), &value, consumed);
        EXPECT_EQ(decoded, row.consumed != 0);
        EXPECT_EQ(consumed, row.consumed);
        EXPECT_EQ(value, decoded ? row.value : 0xABCD);
    }
}

TEST(Utf8Decode, NeedsNoPlaceForTheValue)
{
    const unsigned char bytes[] = {0xC2, 0xA9};
    std::uint64_t consumed = 0;
    EXPECT_TRUE(utf8_decode(bytes, 2, nullptr, consumed));
    EXPECT_EQ(consumed, 2u);
}

TEST(Utf8Decode, ReportsAContinuationByteStandingFirst)
{
    std::uint64_t consumed = 0;
    for (const int lead : {0x80, 0xA9, 0xBF}) {
        const std::vector<unsigned char> bytes(4, static_cast<unsigned char>(lead));
        AssertWatch watch;
        EXPECT_FALSE(utf8_decode(bytes.data(), 4, nullptr, consumed));
        EXPECT_EQ(watch.count("achar"), 1u);
    }
}

// Rows are tried in order and a row longer than the text ends the search.
TEST(Utf8Decode, RefusesAContinuationByteInShortTextWithoutAReport)
{
    const unsigned char bytes[] = {0x80, 0x80, 0x80};
    AssertWatch watch;
    std::uint64_t consumed = 0;
    for (std::uint64_t count = 1; count <= 3; ++count) {
        EXPECT_FALSE(utf8_decode(bytes, count, nullptr, consumed));
    }
    EXPECT_EQ(watch.count(), 0u);
}

struct EncodeCase {
    AChar value;
    std::vector<unsigned char> bytes;
};

const std::vector<EncodeCase> encode_cases = {
    {0x00, {0x00}},
    {0x7F, {0x7F}},
    {0x80, {0xC2, 0x80}},
    {0x7FF, {0xDF, 0xBF}},
    {0x800, {0xE0, 0xA0, 0x80}},
    {0xD800, {0xED, 0xA0, 0x80}},
    {0xFFFF, {0xEF, 0xBF, 0xBF}},
    {0x10000, {0xF0, 0x90, 0x80, 0x80}},
    {0x10FFFF, {0xF4, 0x8F, 0xBF, 0xBF}},
};

TEST(Utf8Encode, WritesByTableInExactlyEnoughRoom)
{
    for (const EncodeCase& row : encode_cases) {
        std::vector<unsigned char> buffer(row.bytes.size());
        std::uint64_t written = 99;
        EXPECT_TRUE(utf8_encode(row.value, buffer.data(), buffer.size(), &written)) << row.value;
        EXPECT_EQ(written, row.bytes.size()) << row.value;
        EXPECT_EQ(buffer, row.bytes) << row.value;
        EXPECT_TRUE(utf8_encode(row.value, buffer.data(), buffer.size(), nullptr)) << row.value;
    }
}

TEST(Utf8Encode, WritesNothingInTooLittleRoom)
{
    for (const EncodeCase& row : encode_cases) {
        for (std::uint64_t room = 0; room < row.bytes.size(); ++room) {
            std::array<unsigned char, 4> buffer{0xEE, 0xEE, 0xEE, 0xEE};
            const auto before = buffer;
            std::uint64_t written = 99;
            EXPECT_FALSE(utf8_encode(row.value, buffer.data(), room, &written)) << row.value;
            EXPECT_EQ(written, 0u) << row.value;
            EXPECT_EQ(buffer, before) << row.value;
        }
    }
}

TEST(Utf8Encode, ReportsWhatIsNoCodePoint)
{
    std::array<unsigned char, 8> buffer{};
    for (const AChar c : {0x110000u, 0xFFFFFFFFu}) {
        AssertWatch watch;
        std::uint64_t written = 99;
        EXPECT_FALSE(utf8_encode(c, buffer.data(), buffer.size(), &written));
        EXPECT_EQ(written, 0u);
        EXPECT_EQ(watch.count("achar"), 1u);
        EXPECT_FALSE(utf8_encode(c, buffer.data(), 0, &written)); // no room, no report
        EXPECT_EQ(watch.count("achar"), 1u);
    }
}

struct Utf16Case {
    const char* name;
    std::u16string units;
    std::uint64_t consumed; // 0 where the units are refused
    AChar value;
};

const std::vector<Utf16Case> utf16_cases = {
    {"nothing", u"", 0, 0},
    {"a zero unit", std::u16string(2, u'\0'), 0, 0},
    {"a letter", u"AB", 1, 0x41},
    {"below the surrogates", {u'\xD7FF'}, 1, 0xD7FF},
    {"above the surrogates", {u'\xE000'}, 1, 0xE000},
    {"the largest unit", {u'\xFFFF'}, 1, 0xFFFF},
    {"the lowest pair", {u'\xD800', u'\xDC00'}, 2, 0x10000},
    {"the largest pair", {u'\xDBFF', u'\xDFFF'}, 2, 0x10FFFF},
    {"a high surrogate at the end", {u'\xD800'}, 0, 0},
    {"a high surrogate before a letter", {u'\xD800', u'A'}, 0, 0},
    {"two high surrogates", {u'\xD800', u'\xD800'}, 0, 0},
    {"a high surrogate before the next unit above", {u'\xD800', u'\xE000'}, 0, 0},
    {"a low surrogate first", {u'\xDC00', u'\xD800'}, 0, 0},
    {"the last low surrogate first", {u'\xDFFF'}, 0, 0},
};

TEST(Utf16Decode, AcceptsAndRefusesByTable)
{
    for (const Utf16Case& row : utf16_cases) {
        SCOPED_TRACE(row.name);
        AChar value = 0xABCD;
        std::uint64_t consumed = 99;
        const bool decoded = utf16_decode(row.units.data(), row.units.size(), &value, &consumed);
        EXPECT_EQ(decoded, row.consumed != 0);
        EXPECT_EQ(consumed, row.consumed);
        EXPECT_EQ(value, decoded ? row.value : 0xABCD);
        EXPECT_EQ(utf16_decode(row.units.data(), row.units.size(), nullptr, nullptr), decoded);
    }
}

TEST(Utf16Encode, WritesPairsFrom10000)
{
    std::array<char16_t, 2> buffer{};
    std::uint64_t written = 0;
    ASSERT_TRUE(utf16_encode(0x10000, buffer.data(), 2, &written));
    EXPECT_EQ(written, 2u);
    EXPECT_EQ(buffer[0], 0xD800);
    EXPECT_EQ(buffer[1], 0xDC00);
    ASSERT_TRUE(utf16_encode(0x10FFFF, buffer.data(), 2, &written));
    EXPECT_EQ(buffer[0], 0xDBFF);
    EXPECT_EQ(buffer[1], 0xDFFF);
}

TEST(Utf16Encode, RefusesSurrogatesAndWhatIsNoCodePoint)
{
    std::array<char16_t, 2> buffer{};
    for (const AChar c : {0xD800u, 0xDBFFu, 0xDC00u, 0xDFFFu, 0x110000u, 0xFFFFFFFFu}) {
        std::uint64_t written = 99;
        EXPECT_FALSE(utf16_encode(c, buffer.data(), 2, &written)) << c;
        EXPECT_EQ(written, 0u) << c;
    }
    EXPECT_TRUE(utf16_encode(0xD7FF, buffer.data(), 1, nullptr));
    EXPECT_TRUE(utf16_encode(0xE000, buffer.data(), 1, nullptr));
}

TEST(Utf16Encode, NeedsRoomButNoBuffer)
{
    std::uint64_t written = 99;
    EXPECT_FALSE(utf16_encode('A', nullptr, 0, &written));
    EXPECT_EQ(written, 0u);
    EXPECT_TRUE(utf16_encode('A', nullptr, 1, &written));
    EXPECT_EQ(written, 1u);
    EXPECT_FALSE(utf16_encode(0x10000, nullptr, 1, &written));
    EXPECT_EQ(written, 0u);
    EXPECT_TRUE(utf16_encode(0x10000, nullptr, 2, &written));
    EXPECT_EQ(written, 2u);
}

TEST(Codecs, EveryCodePointRoundTripsThroughUtf8)
{
    for (AChar c = 1; c < 0x110000; ++c) {
        std::array<unsigned char, 4> bytes{};
        std::uint64_t written = 0;
        std::uint64_t consumed = 0;
        AChar back = 0;
        ASSERT_TRUE(utf8_encode(c, bytes.data(), bytes.size(), &written)) << c;
        ASSERT_EQ(written, c < 0x80 ? 1u : c < 0x800 ? 2u : c < 0x10000 ? 3u : 4u) << c;
        ASSERT_TRUE(utf8_decode(bytes.data(), written, &back, consumed)) << c;
        ASSERT_EQ(back, c);
        ASSERT_EQ(consumed, written) << c;
    }
}

TEST(Codecs, EveryCodePointButSurrogatesRoundTripsThroughUtf16)
{
    for (AChar c = 1; c < 0x110000; ++c) {
        std::array<char16_t, 2> units{};
        std::uint64_t written = 0;
        std::uint64_t consumed = 0;
        AChar back = 0;
        const bool surrogate = c >= 0xD800 && c <= 0xDFFF;
        ASSERT_EQ(utf16_encode(c, units.data(), units.size(), &written), !surrogate) << c;
        if (!surrogate) {
            ASSERT_EQ(written, c < 0x10000 ? 1u : 2u) << c;
            ASSERT_TRUE(utf16_decode(units.data(), written, &back, &consumed)) << c;
            ASSERT_EQ(back, c);
            ASSERT_EQ(consumed, written) << c;
        }
    }
}

} // namespace
