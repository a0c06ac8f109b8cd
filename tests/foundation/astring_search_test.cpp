#include "foundation/astring.h"
#include "foundation/astring_model.h"
#include "support/assert_watch.h"
#include "support/astring_printer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>
#include <vector>

using model::Random;
using model::string_of;
using model::Text;
using model::text_of;
using model::texts_of;

namespace
{

using Texts = std::vector<Text>;

constexpr std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();

std::int64_t position_of(std::size_t found)
{
    return found == Text::npos ? -1 : static_cast<std::int64_t>(found);
}

TEST(AStringFind, FindsACharacterFromAPositionOn)
{
    const AString text("abcabc");
    EXPECT_EQ(text.find(L1('a')), 0);
    EXPECT_EQ(text.find(L1('a'), 1), 3);
    EXPECT_EQ(text.find(L1('a'), 3), 3);
    EXPECT_EQ(text.find(L1('a'), 4), -1);
    EXPECT_EQ(text.find(L1('x')), -1);
    EXPECT_EQ(text.find(L1('c'), 5), 5);
    EXPECT_EQ(text.find(L1('c'), 6), -1);
    EXPECT_EQ(text.find(L1('c'), huge), -1);
    EXPECT_EQ(AString().find(L1('a')), -1);
    EXPECT_EQ(text.left(2).find(L1('c')), -1);
}

TEST(AStringFind, TheEmptyNeedleStandsAtZero)
{
    EXPECT_EQ(AString("abc").find(AString(), 7), 0);
    EXPECT_EQ(AString().find(AString(), 7), 0);
    EXPECT_EQ(AString("abc").find(AString(), 1), 0);
}

TEST(AStringFind, FindsANeedleFromAPositionOn)
{
    const AString text("abababc");
    EXPECT_EQ(text.find(AString("ab")), 0);
    EXPECT_EQ(text.find(AString("ab"), 1), 2);
    EXPECT_EQ(text.find(AString("abc")), 4);
    EXPECT_EQ(text.find(AString("abc"), 5), -1);
    EXPECT_EQ(text.find(AString("abababc")), 0);
    EXPECT_EQ(text.find(AString("abababcd")), -1);
    EXPECT_EQ(text.find(AString("bb")), -1);
    EXPECT_EQ(text.find(AString("c"), 6), 6);
    EXPECT_EQ(text.find(AString("c"), huge), -1);
    EXPECT_EQ(AString().find(AString("a")), -1);
    EXPECT_EQ(text.left(6).find(AString("abc")), -1);
    EXPECT_EQ(AString("aabaabaaab").find(AString("aaab")), 6);
}

TEST(AStringFind, FindsANeedleAcrossSegments)
{
    const Text needle = U"needle" + Text(300, U'n') + U"!";
    for (std::size_t before = 240; before < 270; ++before) {
        const Text text = Text(before, U'n') + needle + U"tail";
        ASSERT_EQ(string_of(text).find(string_of(needle)), position_of(text.find(needle)));
    }
}

// Wanted: a candidate is taken in 32 bits. One segment, linked to itself, makes a text that long.
TEST(AStringFind, ACandidateBeyond32BitsIsReportedAndNotFound)
{
    AString text("abc");
    AStringSegment* segment = text.storage->head;
    segment->buflen = segment->buf.size();
    segment->buf.fill(L1('a'));
    segment->next = segment;
    text.storage->total_len = text.len = std::uint64_t{1} << 33;
    AssertWatch watch;
    EXPECT_EQ(text.find(AString("aa"), 0xFFFFFFFE), 0xFFFFFFFE);
    EXPECT_EQ(watch.count(), 0u);
    EXPECT_EQ(text.find(AString("aa"), std::uint64_t{1} << 32), -1);
    EXPECT_EQ(watch.count("astring"), 1u);
    EXPECT_EQ(text.find(L1('a'), std::uint64_t{1} << 32), std::int64_t{1} << 32);
    segment->next = nullptr;
}

TEST(AStringFind, IsThatOfTheModel)
{
    Random random(8);
    for (const std::size_t length : model::lengths) {
        for (int round = 0; round < 60; ++round) {
            const Text text = random.text(length, round % 2 == 0 ? U"ab" : U"aaab");
            const std::size_t wanted = 1 + random.below(round % 3 == 0 ? 300 : 8);
            const Text needle = round % 5 == 0 ? random.text(wanted, U"ab")
                                               : text.substr(random.below(length + 1), wanted);
            const std::size_t from = random.below(length + 3);
            const AString string = random.view(text);
            ASSERT_EQ(string.find(random.view(needle), from),
                      needle.empty() ? 0 : position_of(text.find(needle, from)));
            ASSERT_EQ(string.find(L1('b'), from), position_of(text.find(U'b', from)));
        }
    }
}

TEST(AStringSplit, CutsAtTheWholeSeparator)
{
    EXPECT_EQ(texts_of(AString("a, b, c").split(", ", false)), (Texts{U"a", U"b", U"c"}));
    EXPECT_EQ(texts_of(AString("a,b, c").split(", ", false)), (Texts{U"a,b", U"c"}));
    EXPECT_EQ(texts_of(AString("abc").split(",", true)), (Texts{U"abc"}));
    EXPECT_EQ(texts_of(AString("aaa").split("aa", true)), (Texts{U"", U"a"}));
}

TEST(AStringSplit, KeepsEmptyPiecesOnRequest)
{
    EXPECT_EQ(texts_of(AString(",a,,b,").split(",", false)), (Texts{U"a", U"b"}));
    EXPECT_EQ(texts_of(AString(",a,,b,").split(",", true)), (Texts{U"", U"a", U"", U"b", U""}));
    EXPECT_EQ(texts_of(AString(",").split(",", true)), (Texts{U"", U""}));
    EXPECT_EQ(AString(",").split(",", false).length(), 0u);
}

TEST(AStringSplit, TheEmptyStringHasNoPieces)
{
    EXPECT_EQ(AString().split(",", true).length(), 0u);
    EXPECT_EQ(AString().split_any(",", true).length(), 0u);
    EXPECT_EQ(AString().split_with(AString::Finder(), true, true).length(), 0u);
}

TEST(AStringSplit, AnEmptySeparatorSeparatesNothing)
{
    EXPECT_EQ(texts_of(AString("abc").split("", true)), (Texts{U"abc"}));
    EXPECT_EQ(texts_of(AString("abc").split_any("", true)), (Texts{U"abc"}));
}

TEST(AStringSplitAny, ARunOfSeparatorsIsOne)
{
    EXPECT_EQ(texts_of(AString("a  b").split_any(" ", false)), (Texts{U"a", U"b"}));
    EXPECT_EQ(texts_of(AString("a  b").split_any(" ", true)), (Texts{U"a", U"b"}));
    EXPECT_EQ(texts_of(AString(" ,a, b;c ").split_any(" ,;", false)), (Texts{U"a", U"b", U"c"}));
    EXPECT_EQ(texts_of(AString(" ,a, b;c ").split_any(" ,;", true)),
              (Texts{U"", U"a", U"b", U"c", U""}));
}

TEST(AStringSplitAny, TheSetCanHoldAnyCodePoint)
{
    const AString text(u"a\u3001b\U0001F600c");
    EXPECT_EQ(texts_of(text.split_any(AString(u"\u3001\U0001F600"), true)),
              (Texts{U"a", U"b", U"c"}));
    EXPECT_EQ(texts_of(text.split_any(AString("\x01"), true)), (Texts{text_of(text)}));
}

TEST(AStringSplitWith, NoFinderGivesTheWhole)
{
    EXPECT_EQ(texts_of(AString("a,b").split_with(AString::Finder(), false, false)),
              (Texts{U"a,b"}));
}

void find_comma(const AString* text, std::uint64_t from, std::int64_t* position, std::uint64_t*)
{
    *position = text->find(L1(','), from);
}

void find_gap_before_capital(const AString* text, std::uint64_t from, std::int64_t* position,
                             std::uint64_t* length)
{
    *length = 0;
    for (std::uint64_t i = from; *position < 0 && i < text->length(); ++i) {
        const AChar c = text->getchar(i, 0);
        *position = c >= 'A' && c <= 'Z' ? static_cast<std::int64_t>(i) : -1;
    }
}

void find_start(const AString*, std::uint64_t, std::int64_t* position, std::uint64_t*)
{
    *position = 0;
}

TEST(AStringSplitWith, ASeparatorIsOneCharacterUnlessToldOtherwise)
{
    const AString::Finder finder(find_comma);
    EXPECT_EQ(texts_of(AString("a,b,,c").split_with(finder, false, false)),
              (Texts{U"a", U"b", U"c"}));
}

TEST(AStringSplitWith, KeepsSeparatorsOnRequest)
{
    const AString::Finder finder(find_comma);
    EXPECT_EQ(texts_of(AString("a,b,,c").split_with(finder, false, true)),
              (Texts{U"a", U",", U"b", U",", U",", U"c"}));
    EXPECT_EQ(texts_of(AString(",a").split_with(finder, true, true)), (Texts{U"", U",", U"a"}));
}

TEST(AStringSplitWith, ASeparatorOfNoLengthIsSteppedOverAsOne)
{
    const AString::Finder finder(find_gap_before_capital);
    EXPECT_EQ(texts_of(AString("oneTwoThree").split_with(finder, false, true)),
              (Texts{U"one", U"wo", U"hree"}));
}

TEST(AStringSplitWith, AFindThatGoesBackIsReportedAndEndsTheSplit)
{
    AssertWatch watch;
    EXPECT_EQ(texts_of(AString("abc").split_with(AString::Finder(find_start), true, false)),
              (Texts{U"", U"bc"}));
    EXPECT_EQ(watch.count("astring"), 1u);
}

Texts model_split(const Text& text, const Text& separator, bool keep_empties)
{
    Texts pieces;
    std::size_t pos = 0;
    for (; !text.empty();) {
        const std::size_t found = std::min(text.find(separator, pos), text.size());
        if (found > pos || keep_empties) {
            pieces.push_back(text.substr(pos, found - pos));
        }
        if (found == text.size()) {
            break;
        }
        pos = found + separator.size();
    }
    return pieces;
}

Texts model_split_any(const Text& text, const Text& set, bool keep_empties)
{
    Texts pieces;
    std::size_t pos = 0;
    for (; !text.empty();) {
        const std::size_t found = std::min(text.find_first_of(set, pos), text.size());
        if (found > pos || keep_empties) {
            pieces.push_back(text.substr(pos, found - pos));
        }
        if (found == text.size()) {
            break;
        }
        pos = std::min(text.find_first_not_of(set, found), text.size());
    }
    return pieces;
}

TEST(AStringSplit, IsThatOfTheModel)
{
    Random random(9);
    for (const std::size_t length : model::lengths) {
        for (int round = 0; round < 12; ++round) {
            const Text text = random.text(length, round % 2 == 0 ? U"ab,;" : U"abcdefgh,");
            const AString string = random.view(text);
            const bool keep = round % 3 == 0;
            for (const Text& separator : Texts{U",", U",;", U"a", U"ab,"}) {
                ASSERT_EQ(texts_of(string.split(string_of(separator), keep)),
                          model_split(text, separator, keep));
                ASSERT_EQ(texts_of(string.split_any(string_of(separator), keep)),
                          model_split_any(text, separator, keep));
            }
        }
    }
}

TEST(AStringSplit, OfALongTextGivesEveryPiece)
{
    const AString text = AString("ab,").repeat(100000);
    const AStringList pieces = text.split(",", false);
    EXPECT_EQ(pieces.length(), 100000u);
    EXPECT_TRUE(std::all_of(pieces.begin(), pieces.end(),
                            [](const AString& piece) { return piece == AString("ab"); }));
    EXPECT_EQ(AString::join(text.split_any(",", true), ","), text);
}

} // namespace
