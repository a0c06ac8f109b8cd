#include "connection/text.h"

#include "support/assert_watch.h"
#include "support/astring_printer.h"

#include <array>
#include <vector>

#include <gtest/gtest.h>

namespace
{

constexpr VeltoChar untouched = 0x2A2A;

using Units = std::vector<VeltoChar>;

// What a buffer of `size` units, and the unit behind it, hold after the copy, which is the same
// from either kind of text.
Units copied(const AString& text, std::uint32_t size)
{
    Units units(size + 1, untouched);
    Units units_of_wide = units;
    copy_text(text, {units.data(), size});
    copy_text(text.to_wide(), {units_of_wide.data(), size});
    EXPECT_EQ(units, units_of_wide);
    return units;
}

// Writes 1 code point above 0xFFFF, which takes two units.
const AString pair = AString(AChar{0x1F3AC});

TEST(CopyText, WritesTheTextAndAZeroAndNothingBehindIt)
{
    EXPECT_EQ(copied("In", 5), (Units{'I', 'n', 0, untouched, untouched, untouched}));
    EXPECT_EQ(copied("In", 3), (Units{'I', 'n', 0, untouched}));
    EXPECT_EQ(copied(AString(), 3), (Units{0, untouched, untouched, untouched}));
}

TEST(CopyText, CutsATextThatIsTooLong)
{
    EXPECT_EQ(copied("Invalid handle", 3), (Units{'I', 'n', 0, untouched}));
    EXPECT_EQ(copied("Invalid handle", 2), (Units{'I', 0, untouched}));
    EXPECT_EQ(copied("Invalid handle", 1), (Units{0, untouched}));
}

TEST(CopyText, WritesNothingIntoABufferWithoutRoom)
{
    EXPECT_EQ(copied("In", 0), (Units{untouched}));
    copy_text("In", {nullptr, 0});
}

TEST(CopyText, LeavesOutAPairThatDoesNotFitWhole)
{
    const AString text = AString("a") + pair + AString("b");
    EXPECT_EQ(copied(text, 5), (Units{'a', 0xD83C, 0xDFAC, 'b', 0, untouched}));
    EXPECT_EQ(copied(text, 4), (Units{'a', 0xD83C, 0xDFAC, 0, untouched}));
    EXPECT_EQ(copied(text, 3), (Units{'a', 0, untouched, untouched}));
    EXPECT_EQ(copied(text, 2), (Units{'a', 0, untouched}));
    EXPECT_EQ(copied(pair.repeat(3), 6),
              (Units{0xD83C, 0xDFAC, 0xD83C, 0xDFAC, 0, untouched, untouched}));
}

TEST(CopyText, TheLargestSizeNeedsNoMoreThanTheText)
{
    std::array<VeltoChar, 3> units{};
    copy_text("In", {units.data(), 0xFFFFFFFF});
    EXPECT_EQ(units, (std::array<VeltoChar, 3>{'I', 'n', 0}));
    copy_text(std::u16string(u"On"), {units.data(), 0xFFFFFFFF});
    EXPECT_EQ(units, (std::array<VeltoChar, 3>{'O', 'n', 0}));
}

// It was no pair before, and the cut does not make it one.
TEST(CopyText, AHalfThatStandsAloneIsCopied)
{
    const std::u16string text{u'a', 0xD83C};
    Units units(3, untouched);
    copy_text(text, {units.data(), 3});
    EXPECT_EQ(units, (Units{'a', 0xD83C, 0}));
}

TEST(TextFromUnits, TakesTheUnitsUpToTheZero)
{
    const AssertWatch watch;
    EXPECT_EQ(text_from_units(VELTO_TEXT("news_open")), "news_open");
    EXPECT_EQ(text_from_units(VELTO_TEXT("news\0open")), "news");
    EXPECT_EQ(text_from_units(VELTO_TEXT("")), AString());
    EXPECT_EQ(watch.count(), 0u);
}

TEST(WideFromUnits, TakesTheUnitsUpToTheZeroAsTheyStand)
{
    const AssertWatch watch;
    EXPECT_EQ(wide_from_units(VELTO_TEXT("news\0open")), u"news");
    EXPECT_EQ(wide_from_units(VELTO_TEXT("")), u"");
    const VeltoChar half[] = {'a', 0xD83C, 'b', 0};
    EXPECT_EQ(wide_from_units(half), (std::u16string{u'a', 0xD83C, u'b'}));
    EXPECT_EQ(watch.count(), 0u);
}

TEST(WideFromUnits, ANullPointerIsReportedOnceAndIsTheEmptyText)
{
    const AssertWatch watch;
    EXPECT_EQ(wide_from_units(nullptr), u"");
    EXPECT_EQ(watch.count(), 1u);
    EXPECT_EQ(watch.count("astring"), 1u);
}

TEST(TextFromUnits, JoinsPairs)
{
    const AString text = text_from_units(VELTO_TEXT("\u00E9\U0001F3AC"));
    EXPECT_EQ(text.to_utf8(), "\xC3\xA9\xF0\x9F\x8E\xAC");
    EXPECT_EQ(text.length(), 2u);
}

TEST(TextFromUnits, ANullPointerIsReportedOnceAndIsTheEmptyText)
{
    const AssertWatch watch;
    EXPECT_EQ(text_from_units(nullptr), AString());
    EXPECT_EQ(watch.count(), 1u);
    EXPECT_EQ(watch.count("astring"), 1u);
}

} // namespace
