#include "foundation/astringformat.h"

#include "support/astring_printer.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace
{

AString filled(const AString& text, std::initializer_list<const char*> values)
{
    AStringFormat format(text);
    for (const char* value : values) {
        format.arg(value);
    }
    return format.to_string();
}

TEST(AStringFormat, FillsPlaceholdersInOrderOfNumber)
{
    EXPECT_EQ(filled("a%1b%2c", {"X", "Y"}), "aXbYc");
    EXPECT_EQ(filled("%2%1", {"X", "Y"}), "YX");
    EXPECT_EQ(filled("%10 %9", {"X", "Y"}), "Y X");
    EXPECT_EQ(filled("%99-%5-%1", {"a", "b", "c"}), "c-b-a");
}

TEST(AStringFormat, LeavesUnfilledPlaceholders)
{
    EXPECT_EQ(filled("a%1b%2c", {}), "a%1b%2c");
    EXPECT_EQ(filled("a%1b%2c", {"X"}), "aXb%2c");
}

TEST(AStringFormat, IgnoresWhatFindsNoPlaceholder)
{
    EXPECT_EQ(filled("a%1", {"X", "Y", "Z"}), "aX");
    EXPECT_EQ(filled("plain", {"X"}), "plain");
    EXPECT_EQ(filled("", {"X"}), "");
}

// Wanted: each value fills exactly one piece.
TEST(AStringFormat, ARepeatedPlaceholderTakesTwoValues)
{
    EXPECT_EQ(filled("%1%1%2", {"X"}), "X%1%2");
    EXPECT_EQ(filled("%1%1%2", {"X", "Y"}), "XY%2");
    EXPECT_EQ(filled("%1%1%2", {"X", "Y", "Z"}), "XYZ");
    EXPECT_EQ(filled("%2 %1 %2 %1", {"a", "b", "c", "d"}), "c a d b");
}

TEST(AStringFormat, APercentSignWithoutOneOrTwoDigitsIsText)
{
    EXPECT_EQ(filled("100%", {"X"}), "100%");
    EXPECT_EQ(filled("%", {"X"}), "%");
    EXPECT_EQ(filled("%%", {"X"}), "%%");
    EXPECT_EQ(filled("%%1", {"X"}), "%X");
    EXPECT_EQ(filled("%123", {"X"}), "%123");
    EXPECT_EQ(filled("%123%4", {"X"}), "%123X");
    EXPECT_EQ(filled("%1234", {"X"}), "%1234");
    EXPECT_EQ(filled("% 1", {"X"}), "% 1");
    EXPECT_EQ(filled("%a", {"X"}), "%a");
    EXPECT_EQ(filled(AString(u"%\uFF11"), {"X"}), AString(u"%\uFF11"));
    EXPECT_EQ(filled("Tag %1 contains %u subelements. The maximum is %2.", {"clip", "3"}),
              "Tag clip contains %u subelements. The maximum is 3.");
}

TEST(AStringFormat, LeadingZerosAreOfTheNumber)
{
    EXPECT_EQ(filled("%2 %01", {"X"}), "%2 X");
    EXPECT_EQ(filled("%1 %0", {"X"}), "%1 X");
    EXPECT_EQ(filled("%1 %00", {"X"}), "%1 X");
}

TEST(AStringFormat, DoesNotLookIntoValues)
{
    EXPECT_EQ(filled("%1 %2", {"%2", "X"}), "%2 X");
    EXPECT_EQ(filled("%1 %2", {"%1", "%1"}), "%1 %1");
    EXPECT_EQ(filled("%1%2", {"", "X"}), "X");
    // What two values put together is no placeholder either.
    EXPECT_EQ(filled("%1%2%3", {"%", "1", "X"}), "%1X");
}

TEST(AStringFormat, TakesNumbers)
{
    EXPECT_EQ(AStringFormat("%1/%2")
                  .arg(std::uint32_t{4294967295})
                  .arg(std::uint64_t{18446744073709551615u})
                  .to_string(),
              "4294967295/18446744073709551615");
    EXPECT_EQ(AStringFormat("[%1][%2]")
                  .arg(std::uint32_t{7}, 3, '0')
                  .arg(std::uint64_t{7}, -3, '.')
                  .to_string(),
              "[007][7..]");
}

TEST(AStringFormat, FillsPlaceholdersBeyondTheFirstSegment)
{
    const AString padding = AString("-").repeat(254);
    EXPECT_EQ(filled(padding + AString("%12") + padding + AString("%3"), {"X", "Y"}),
              padding + AString("Y") + padding + AString("X"));
}

TEST(AStringFormat, CopiesAreFilledApart)
{
    AStringFormat original("%1-%2");
    original.arg("a");
    AStringFormat copy(original);
    copy.arg("b");
    EXPECT_EQ(original.to_string(), "a-%2");
    EXPECT_EQ(copy.to_string(), "a-b");
}

} // namespace
