#include "foundation/enumstring.h"

#include "support/assert_watch.h"

#include <limits>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using Rows = std::vector<EnumString::Row>;

EnumString table(const Rows& rows)
{
    return EnumString(rows, -1, AString("?"));
}

TEST(EnumString, GoesBothWays)
{
    const EnumString speeds = table({{0, "none"}, {7, "smart"}, {-3, "oneX"}});
    EXPECT_EQ(speeds.to_string(0).to_utf8(), "none");
    EXPECT_EQ(speeds.to_string(7).to_utf8(), "smart");
    EXPECT_EQ(speeds.to_string(-3).to_utf8(), "oneX");
    EXPECT_EQ(speeds.from_string(AString("none")), 0);
    EXPECT_EQ(speeds.from_string(AString("smart")), 7);
    EXPECT_EQ(speeds.from_string(AString("oneX")), -3);
}

TEST(EnumString, KnowsTheBytesOfItsWords)
{
    const EnumString speeds = table({{0, "none"}, {7, "smart"}});
    EXPECT_EQ(speeds.from_string(std::string_view("smart")), 7);
    EXPECT_EQ(speeds.from_string(std::string_view("Smart")), -1);
    EXPECT_EQ(speeds.from_string(std::string_view("smarter").substr(0, 5)), 7);
}

TEST(EnumString, GivesWhatItWasToldForTheUnknown)
{
    const EnumString words = table({{0, "a"}});
    EXPECT_EQ(words.invalid_value, -1);
    EXPECT_EQ(words.invalid_text.to_utf8(), "?");
    for (const std::int32_t value : {1, -1, std::numeric_limits<std::int32_t>::max(),
                                     std::numeric_limits<std::int32_t>::min()}) {
        EXPECT_EQ(words.to_string(value).to_utf8(), "?");
    }
    EXPECT_EQ(words.from_string(AString("b")), -1);
}

TEST(EnumString, MatchesExactly)
{
    const EnumString words = table({{0, "play"}});
    for (const char* text : {"Play", "PLAY", "pla", "plays", " play", "play ", ""}) {
        EXPECT_EQ(words.from_string(AString(text)), -1) << text;
    }
}

TEST(EnumString, TellsWhetherAWordIsKnown)
{
    const EnumString words = table({{3, "play"}});
    std::int32_t value = 9;
    EXPECT_FALSE(words.from_string(AString("stop"), &value));
    EXPECT_EQ(value, 9);
    EXPECT_TRUE(words.from_string(AString("play"), &value));
    EXPECT_EQ(value, 3);
}

TEST(EnumString, HoldsTheFirstOfDuplicatesInEachDirection)
{
    const EnumString words = table({{1, "a"}, {1, "b"}, {2, "a"}, {3, "c"}});
    EXPECT_EQ(words.to_string(1).to_utf8(), "a");
    EXPECT_EQ(words.to_string(2).to_utf8(), "a");
    EXPECT_EQ(words.from_string(AString("a")), 1);
    EXPECT_EQ(words.from_string(AString("b")), 1);
    EXPECT_EQ(words.from_string(AString("c")), 3);
}

TEST(EnumString, SkipsRowsWithoutAText)
{
    AssertWatch watch;
    const EnumString words = table({{0, nullptr}, {1, ""}, {0, "zero"}});
    EXPECT_EQ(words.to_string(0).to_utf8(), "zero");
    EXPECT_EQ(words.to_string(1).to_utf8(), "?");
    EXPECT_EQ(words.from_string(AString()), -1);
    EXPECT_EQ(watch.count(), 0u);
}

TEST(EnumString, WidensTextsByteByByte)
{
    const EnumString words = table({{0, "\xE9t\xE9"}});
    ASSERT_EQ(words.to_string(0).length(), 3u);
    EXPECT_EQ(words.to_string(0).getchar(0, 0), 0xE9u);
    EXPECT_EQ(words.from_string(AString("\xE9t\xE9")), 0);
}

TEST(EnumString, StaysEmptyAndReportsWithoutRows)
{
    AssertWatch watch;
    const EnumString none(std::span<const EnumString::Row>(), -1, AString("?"));
    EXPECT_EQ(watch.count("enumstring"), 1u);
    EXPECT_EQ(none.to_string(0).to_utf8(), "?");
    EXPECT_EQ(none.from_string(AString("a")), -1);

    const EnumString::Row row{0, "a"};
    const EnumString empty(std::span(&row, 0), -1, AString("?"));
    EXPECT_EQ(watch.count("enumstring"), 2u);
    EXPECT_EQ(empty.to_string(0).to_utf8(), "?");
}

} // namespace
