#include "foundation/astring.h"

#include "foundation/astring_model.h"
#include "foundation/no_destructor.h"
#include "support/assert_watch.h"
#include "support/astring_printer.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <limits>

using model::Random;
using model::string_of;
using model::Text;
using model::text_of;

namespace
{

constexpr std::uint64_t huge = std::numeric_limits<std::uint64_t>::max();

bool holds_nothing(const AString& text)
{
    return text.is_empty() && !text.storage && text.start_offset == 0 && text.length() == 0;
}

bool share(const AString& a, const AString& b)
{
    return a.storage && a.storage.get() == b.storage.get();
}

AStringList list_of(std::initializer_list<const char*> entries)
{
    AStringList list;
    for (const char* entry : entries) {
        list.push_back(entry);
    }
    return list;
}

TEST(AStringConstruction, TheEmptyStringHoldsNoStorage)
{
    EXPECT_TRUE(holds_nothing(AString()));
    EXPECT_TRUE(holds_nothing(AString("")));
    EXPECT_TRUE(holds_nothing(AString("abc", 0)));
    EXPECT_TRUE(holds_nothing(AString(u"")));
    EXPECT_TRUE(holds_nothing(AString(u"abc", 0)));
    EXPECT_TRUE(holds_nothing(AString(std::u16string())));
    EXPECT_TRUE(holds_nothing(AString::from_utf8("abc", 0)));
    EXPECT_TRUE(holds_nothing(AString(AStringList())));
    EXPECT_TRUE(holds_nothing(AString("abc").mid(1, 0)));
    EXPECT_TRUE(AString() == AString("abc").mid(3, 5));
    EXPECT_EQ(AString().length(), 0u);
}

TEST(AStringConstruction, BytesBecomeOneCodePointEach)
{
    EXPECT_EQ(text_of(AString("a\xC2\xA9\xFF")), U"a\u00C2\u00A9\u00FF");
    EXPECT_EQ(text_of(AString("a\0b", 3)), Text(U"a\0b", 3));
    EXPECT_EQ(text_of(AString("a\0b")), U"a");
}

TEST(AStringConstruction, UnitsAreDecoded)
{
    EXPECT_EQ(text_of(AString(u"a\u4E2D\U0001F600")), U"a\u4E2D\U0001F600");
    EXPECT_EQ(text_of(AString(u"abc", 2)), U"ab");
    EXPECT_EQ(text_of(AString(std::u16string(u"xyz"))), U"xyz");
}

TEST(AStringConstruction, OneCharacterCanBeAnyValue)
{
    for (const AChar c : {0u, 0x41u, 0xD800u, 0x110000u, 0xFFFFFFFFu}) {
        const AString text(c);
        EXPECT_EQ(text.length(), 1u);
        EXPECT_EQ(text.getchar(0, 7), c);
        EXPECT_FALSE(share(text, AString(c)));
    }
}

TEST(AStringConstruction, AListIsJoined)
{
    EXPECT_EQ(AString(list_of({"ab", "", "c"})), "abc");
}

TEST(AStringConstruction, ASubstringIsThatOfMid)
{
    const AString text("abcdef");
    EXPECT_EQ(AString(text, 2, 3), "cde");
    EXPECT_TRUE(share(AString(text, 2, 3), text));
    EXPECT_TRUE(holds_nothing(AString(text, 6, 1)));
}

TEST(AStringConstruction, NullPointersAreReportedAndGiveTheEmptyString)
{
    const char* bytes = nullptr;
    const char16_t* units = nullptr;
    const AChar* characters = nullptr;
    AssertWatch watch;
    EXPECT_TRUE(holds_nothing(AString(bytes)));
    EXPECT_TRUE(holds_nothing(AString(bytes, 5)));
    EXPECT_TRUE(holds_nothing(AString(units)));
    EXPECT_TRUE(holds_nothing(AString(units, 5)));
    EXPECT_TRUE(holds_nothing(AString::from_chars(characters, 5)));
    EXPECT_TRUE(holds_nothing(AString::from_utf8(nullptr, 5)));
    EXPECT_EQ(watch.count("astring"), 6u);
    EXPECT_EQ(watch.count(), 6u);
}

TEST(AStringCopy, SharesTheStorage)
{
    const AString text("abc");
    AString copy(text);
    EXPECT_TRUE(share(copy, text));
    copy = AString("def");
    copy = text;
    EXPECT_TRUE(share(copy, text));
    EXPECT_EQ(copy, "abc");
}

TEST(AStringCopy, SelfAssignmentKeepsTheText)
{
    AString text = AString("abcdef").mid(1, 3);
    AString& same = text;
    text = same;
    EXPECT_EQ(text, "bcd");
    text = std::move(same);
    EXPECT_EQ(text, "bcd");
}

TEST(AStringCopy, AMovedFromStringIsEmpty)
{
    AString text = AString("abcdef").mid(1, 3);
    AString moved(std::move(text));
    EXPECT_TRUE(holds_nothing(text)); // NOLINT: the state after the move is what is tested
    EXPECT_EQ(moved, "bcd");
    text = std::move(moved);
    EXPECT_TRUE(holds_nothing(moved)); // NOLINT
    EXPECT_EQ(text, "bcd");
}

TEST(AStringCopy, ARefusedReferenceGivesTheEmptyString)
{
    const AString text = AString("abc").mid(1);
    auto& count = ARefBlock<AStringStorage>::of(text.storage.get())->reference_count;
    const std::uint32_t before = count.exchange(0); // as if it were dying
    AssertWatch watch;
    const AString copy(text);
    AString assigned("xyz");
    assigned = text;
    const AString part = text.left(1);
    count.store(before);
    EXPECT_TRUE(holds_nothing(copy));
    EXPECT_TRUE(holds_nothing(assigned));
    EXPECT_TRUE(holds_nothing(part));
    EXPECT_EQ(watch.count("aref"), 3u);
}

TEST(AStringQueries, GetcharGivesTheDefaultOutside)
{
    const AString text("0123456789");
    EXPECT_EQ(text.getchar(0, 'x'), L1('0'));
    EXPECT_EQ(text.getchar(9, 'x'), L1('9'));
    EXPECT_EQ(text.getchar(10, 'x'), L1('x'));
    EXPECT_EQ(text.getchar(huge, 'x'), L1('x'));
    EXPECT_EQ(text.mid(2, 3).getchar(3, 'x'), L1('x'));
    EXPECT_EQ(AString().getchar(0, 'x'), L1('x'));
}

TEST(AStringQueries, LastGivesTheDefaultForTheEmptyString)
{
    EXPECT_EQ(AString("abc").left(2).last('x'), L1('b'));
    EXPECT_EQ(AString().last('x'), L1('x'));
}

TEST(AStringQueries, BlankIsWhiteSpaceOrNothing)
{
    EXPECT_TRUE(AString().is_blank());
    EXPECT_TRUE(AString(" \t\n\r\v\f\0", 7).is_blank());
    EXPECT_TRUE(AString(u"\u65E5\u672C").is_blank());
    EXPECT_FALSE(AString(" a ").is_blank());
    EXPECT_FALSE(AString("\xA0").is_blank());
    EXPECT_TRUE(string_of(Text(600, U' ')).is_blank());
    EXPECT_FALSE(string_of(Text(600, U' ') + U"x").is_blank());
}

TEST(AStringParts, MidIsCutToWhatIsThere)
{
    const AString text("0123456789");
    EXPECT_TRUE(holds_nothing(text.mid(300, 5)));
    EXPECT_EQ(text.mid(5, 100).length(), 5u);
    EXPECT_EQ(text.mid(5, 100), "56789");
    EXPECT_EQ(text.mid(9), "9");
    EXPECT_TRUE(holds_nothing(text.mid(10)));
    EXPECT_TRUE(holds_nothing(text.mid(huge, huge)));
    EXPECT_EQ(text.mid(0, huge), text);
    EXPECT_EQ(text.mid(3, AString::rest), "3456789");
    // Never what the storage holds beyond the view.
    EXPECT_EQ(text.mid(2, 4).mid(1, huge), "345");
    EXPECT_EQ(text.mid(2, 4).mid(1, AString::rest), "345");
    EXPECT_TRUE(holds_nothing(text.mid(2, 4).mid(4, 1)));
}

TEST(AStringParts, NoneCopiesCharacters)
{
    const AString text("  key=value  ");
    EXPECT_TRUE(share(text.mid(2, 3), text));
    EXPECT_TRUE(share(text.left(4), text));
    EXPECT_TRUE(share(text.left(400), text));
    EXPECT_TRUE(share(text.right(4), text));
    EXPECT_TRUE(share(text.right(400), text));
    EXPECT_TRUE(share(text.drop_left(4), text));
    EXPECT_TRUE(share(text.drop_right(4), text));
    EXPECT_TRUE(share(text.trim(), text));
    EXPECT_TRUE(share(text.trim_left(), text));
    EXPECT_TRUE(share(text.trim_right(), text));
    EXPECT_TRUE(share(text.strip_prefix("  "), text));
    EXPECT_TRUE(share(text.strip_suffix("x"), text));
    for (const AString& piece : text.split("=", false)) {
        EXPECT_TRUE(share(piece, text));
    }
}

TEST(AStringParts, AreThoseOfTheModel)
{
    Random random(1);
    for (const std::size_t length : model::lengths) {
        const Text text = random.text(length, U"ab \u4E2D");
        const AString string = random.view(text);
        for (std::size_t n : {std::size_t{0}, std::size_t{1}, length / 2, length - length / 3,
                              length, length + 1, length + 700}) {
            SCOPED_TRACE(testing::Message() << length << " " << n);
            const std::size_t cut = std::min(n, length);
            EXPECT_EQ(text_of(string.left(n)), text.substr(0, cut));
            EXPECT_EQ(text_of(string.right(n)), text.substr(length - cut));
            EXPECT_EQ(text_of(string.drop_left(n)), text.substr(cut));
            EXPECT_EQ(text_of(string.drop_right(n)), text.substr(0, length - cut));
            const std::size_t count = random.below(length + 2);
            EXPECT_EQ(text_of(string.mid(n, count)), text.substr(cut, count));
            EXPECT_EQ(string.getchar(n, 1), n < length ? text[n] : 1u);
        }
    }
}

TEST(AStringTrim, TakesTheEndsOff)
{
    const AString text(" \t a b\r\n");
    EXPECT_EQ(text.trim_left(), "a b\r\n");
    EXPECT_EQ(text.trim_right(), " \t a b");
    EXPECT_EQ(text.trim(), "a b");
    EXPECT_TRUE(holds_nothing(AString(" \n ").trim()));
    EXPECT_TRUE(holds_nothing(AString(" \n ").trim_left()));
    EXPECT_TRUE(holds_nothing(AString(" \n ").trim_right()));
    EXPECT_TRUE(holds_nothing(AString().trim()));
    EXPECT_EQ(AString("\0a\0", 3).trim(), "a");
}

// Wanted: white space includes every code point of 256 and above.
TEST(AStringTrim, TextOfHighCodePointsTrimsToNothing)
{
    EXPECT_TRUE(holds_nothing(AString(u"\u65E5\u672C\u8A9E").trim()));
    EXPECT_EQ(AString(u"\u0100clip\u0100").trim(), "clip");
    EXPECT_EQ(AString(u"\u00FFclip\u00FF").trim().length(), 6u);
}

TEST(AStringTrim, IsThatOfTheModel)
{
    const Text white = U" \t\n\u0100\u4E2D";
    Random random(2);
    for (const std::size_t before : model::lengths) {
        for (const std::size_t behind : model::lengths) {
            const Text core = random.below(4) == 0 ? U"" : U"x" + random.text(2, U" y") + U"z";
            const Text left = random.text(before, white);
            const Text right = random.text(behind, white);
            const AString string = random.view(left + core + right);
            SCOPED_TRACE(testing::Message() << before << " " << behind);
            EXPECT_EQ(text_of(string.trim_left()), core.empty() ? U"" : core + right);
            EXPECT_EQ(text_of(string.trim_right()), core.empty() ? U"" : left + core);
            EXPECT_EQ(text_of(string.trim()), core);
            EXPECT_EQ(string.is_blank(), core.empty());
        }
    }
}

TEST(AStringStrip, TellsWhatItFound)
{
    bool found = false;
    EXPECT_EQ(AString("prefix rest").strip_prefix("prefix", &found), " rest");
    EXPECT_TRUE(found);
    EXPECT_EQ(AString("prefix rest").strip_prefix("Prefix", &found), "prefix rest");
    EXPECT_FALSE(found);
    EXPECT_EQ(AString("prefix").strip_prefix("PREF", &found, ACompare::ignore_case), "ix");
    EXPECT_TRUE(found);
    EXPECT_EQ(AString("clip.mov").strip_suffix(".mov", &found), "clip");
    EXPECT_TRUE(found);
    EXPECT_EQ(AString("clip.mov").strip_suffix(".MOV", &found), "clip.mov");
    EXPECT_FALSE(found);
    EXPECT_EQ(AString("clip.mov").strip_suffix(".MOV", &found, ACompare::ignore_case), "clip");
    EXPECT_TRUE(found);
    EXPECT_EQ(AString("abc").strip_prefix("abcd", &found), "abc");
    EXPECT_FALSE(found);
    EXPECT_TRUE(holds_nothing(AString("abc").strip_suffix("abc")));
    EXPECT_TRUE(holds_nothing(AString("abc").strip_prefix("abc")));
    EXPECT_EQ(AString("abc").strip_prefix("", &found), "abc");
    EXPECT_TRUE(found);
}

TEST(AStringStrip, IsThatOfTheModel)
{
    Random random(3);
    for (const std::size_t length : model::lengths) {
        for (const std::size_t affix : model::lengths) {
            const Text text = random.text(length, U"ab");
            const Text start = random.below(2) == 0 ? text.substr(0, affix) : Text(affix, U'a');
            const Text end = random.below(2) == 0 ? text.substr(length - std::min(affix, length))
                                                  : Text(affix, U'b');
            const AString string = random.view(text);
            bool found = false;
            EXPECT_EQ(text_of(string.strip_prefix(random.view(start), &found)),
                      text.starts_with(start) ? text.substr(start.size()) : text);
            EXPECT_EQ(found, text.starts_with(start));
            EXPECT_EQ(text_of(string.strip_suffix(random.view(end), &found)),
                      text.ends_with(end) ? text.substr(0, length - end.size()) : text);
            EXPECT_EQ(found, text.ends_with(end));
        }
    }
}

TEST(AStringCompactCopy, LetsALargeStorageGo)
{
    const AString large = string_of(Text(100, U'x'));
    EXPECT_FALSE(share(large.mid(10, 3).compact_copy(32), large));
    EXPECT_EQ(large.mid(10, 3).compact_copy(32), "xxx");
    EXPECT_EQ(large.mid(10, 3).compact_copy(32).storage->total_len, 3u);
    EXPECT_TRUE(share(large.mid(5, 90).compact_copy(32), large));
    EXPECT_TRUE(share(large.left(68).compact_copy(32), large));
    EXPECT_FALSE(share(large.left(67).compact_copy(32), large));
    EXPECT_TRUE(share(large.compact_copy(0), large));
    EXPECT_FALSE(share(large.left(99).compact_copy(0), large));
    EXPECT_TRUE(holds_nothing(AString().compact_copy(0)));
}

TEST(AStringCompare, OrdersByCodePoint)
{
    const auto order = [](const char* a, const char* b) {
        return AString(a).compare(0, b, 0, AString::rest, ACompare::exact);
    };
    EXPECT_EQ(order("abc", "abc"), 0);
    EXPECT_EQ(order("abc", "abd"), -1);
    EXPECT_EQ(order("abd", "abc"), 1);
    EXPECT_EQ(order("ab", "abc"), -1);
    EXPECT_EQ(order("abc", "ab"), 1);
    EXPECT_EQ(order("", ""), 0);
    EXPECT_EQ(order("", "a"), -1);
    EXPECT_EQ(order("a", ""), 1);
    EXPECT_EQ(order("\x01", "\xFF"), -1);
    // Unsigned, and by code point rather than by unit.
    EXPECT_TRUE(AString(u"\uFFFF") < AString(u"\U00010000"));
    EXPECT_TRUE(AString(AChar{0x7FFFFFFF}) < AString(AChar{0x80000000}));
    // The lowest byte in memory does not decide.
    EXPECT_TRUE(AString(AChar{0x00FF}) < AString(AChar{0x0100}));
}

TEST(AStringCompare, HonoursPositionsAndCount)
{
    const AString a("xxabcd");
    const AString b("yabce");
    EXPECT_EQ(a.compare(2, b, 1, 3, ACompare::exact), 0);
    EXPECT_EQ(a.compare(2, b, 1, 4, ACompare::exact), -1);
    EXPECT_EQ(a.compare(2, b, 1, AString::rest, ACompare::exact), -1);
    EXPECT_EQ(a.compare(0, b, 0, 0, ACompare::exact), 0);
    EXPECT_EQ(a.compare(6, b, 5, 9, ACompare::exact), 0);
    EXPECT_EQ(a.compare(huge, b, huge, 9, ACompare::exact), 0);
    EXPECT_EQ(a.compare(6, b, 0, 9, ACompare::exact), -1);
    EXPECT_EQ(a.compare(0, b, 5, 9, ACompare::exact), 1);
    EXPECT_EQ(a.compare(0, AString(), 0, 9, ACompare::exact), 1);
    EXPECT_EQ(a.compare(0, AString(), 0, 0, ACompare::exact), 0);
}

// Wanted: the same view is equal to itself before anything else is looked at.
TEST(AStringCompare, TheSameViewIsEqualWhateverThePositions)
{
    const AString text("abcdef");
    EXPECT_EQ(text.compare(1, AString(text), 3, AString::rest, ACompare::exact), 0);
    EXPECT_EQ(text.mid(1, 3).compare(0, text.mid(1, 3), 2, 1, ACompare::ignore_case), 0);
    EXPECT_EQ(text.compare(1, AString("abcdef"), 3, AString::rest, ACompare::exact), -1);
}

TEST(AStringCompare, CanIgnoreAsciiCase)
{
    const auto order = [](const AString& a, const AString& b) {
        return a.compare(0, b, 0, AString::rest, ACompare::ignore_case);
    };
    EXPECT_EQ(order("Clip", "cLIP"), 0);
    EXPECT_EQ(order("[", "A"), -1); // A is folded to a, which stands behind [
    EXPECT_EQ(order("Z", "["), 1);
    EXPECT_EQ(order("\xC4", "\xE4"), -1); // not ASCII: not folded
    EXPECT_EQ(AString("Clip").compare(0, AString("cLIP"), 0, 4, ACompare::exact), -1);
}

TEST(AStringCompare, EqualityAsksForTheSameLength)
{
    EXPECT_TRUE(AString("abc") == AString("xabcx").mid(1, 3));
    EXPECT_FALSE(AString("abc") == AString("abcd"));
    EXPECT_TRUE(AString("abc") != AString("abd"));
    EXPECT_FALSE(AString() == AString("a"));
}

TEST(AStringCompare, StartsAndEnds)
{
    const AString text("report.xml");
    EXPECT_TRUE(text.starts_with(""));
    EXPECT_TRUE(text.starts_with("report"));
    EXPECT_TRUE(text.starts_with("REPORT", ACompare::ignore_case));
    EXPECT_FALSE(text.starts_with("REPORT"));
    EXPECT_FALSE(text.starts_with("report.xml2"));
    EXPECT_FALSE(AString().starts_with("a"));
    EXPECT_TRUE(AString().starts_with(""));
    EXPECT_TRUE(text.ends_with(""));
    EXPECT_TRUE(text.ends_with(".xml"));
    EXPECT_TRUE(text.ends_with("report.xml"));
    EXPECT_TRUE(text.ends_with(".XML", ACompare::ignore_case));
    EXPECT_FALSE(text.ends_with(".XML"));
    EXPECT_FALSE(text.ends_with("areport.xml"));
    EXPECT_FALSE(AString().ends_with("a"));
    EXPECT_TRUE(AString().ends_with(""));
}

TEST(AStringCompare, IsThatOfTheModel)
{
    Random random(4);
    for (const std::size_t length : model::lengths) {
        for (int round = 0; round < 20; ++round) {
            const Text a = random.text(length, U"ab");
            Text b = a;
            if (!b.empty() && round % 3 != 0) {
                b[random.below(length)] = U"aAbB\U0001F600"[random.below(5)];
            }
            b = b.substr(0, round % 4 == 0 ? random.below(length + 1) : length);
            const AString string_a = random.view(a);
            const AString string_b = random.view(b);
            EXPECT_EQ(string_a == string_b, a == b);
            EXPECT_EQ(string_a < string_b, a < b);
            EXPECT_EQ(string_b < string_a, b < a);
            const std::size_t pos = random.below(length + 2);
            const std::size_t count = random.below(length + 2);
            const Text part_a = pos > a.size() ? U"" : a.substr(pos, count);
            const Text part_b = pos > b.size() ? U"" : b.substr(pos, count);
            const int expected = part_a < part_b ? -1 : part_a > part_b ? 1 : 0;
            EXPECT_EQ(string_a.compare(pos, string_b, pos, count, ACompare::exact), expected);
        }
    }
}

TEST(AStringCombine, ConcatCopiesOnlyWhenItMust)
{
    const AString a("ab");
    const AString b("cd");
    EXPECT_EQ(a + b, "abcd");
    EXPECT_TRUE(share(a + AString(), a));
    EXPECT_TRUE(share(AString() + b, b));
    EXPECT_TRUE(holds_nothing(AString() + AString()));
}

TEST(AStringCombine, AppendingRebindsTheObjectAlone)
{
    AString text("ab");
    const AString before(text);
    text += AString("cd");
    EXPECT_EQ(text, "abcd");
    EXPECT_EQ(before, "ab");
    text += text;
    EXPECT_EQ(text, "abcdabcd");
}

TEST(AStringCombine, RepeatGivesCopies)
{
    EXPECT_EQ(AString("ab").repeat(3), "ababab");
    EXPECT_TRUE(holds_nothing(AString("ab").repeat(0)));
    EXPECT_TRUE(holds_nothing(AString().repeat(huge)));
    EXPECT_EQ(AString("ab").repeat(1), "ab");
    EXPECT_EQ(AString("x").repeat(1000), string_of(Text(1000, U'x')));
}

TEST(AStringCombine, JoinPutsTheSeparatorBetween)
{
    EXPECT_TRUE(holds_nothing(AString::join(AStringList(), ",")));
    EXPECT_EQ(AString::join(list_of({"a", "", "b"}), ", "), "a, , b");
    EXPECT_EQ(AString::join(list_of({"a", "b"}), ""), "ab");
    AStringList one;
    one.push_back("alone");
    EXPECT_TRUE(share(AString::join(one, ","), one.at(0)));
}

TEST(AStringCombine, IsThatOfTheModel)
{
    Random random(5);
    for (const std::size_t length : model::lengths) {
        const Text a = random.text(length, U"ab\u4E2D");
        const Text b = random.text(random.below(600), U"cd");
        const AString string_a = random.view(a);
        EXPECT_EQ(text_of(string_a + random.view(b)), a + b);
        AStringList list;
        list.push_back(string_a);
        list.push_back(random.view(b));
        list.push_back(string_a);
        EXPECT_EQ(text_of(AString::join(list, "--")), a + U"--" + b + U"--" + a);
        EXPECT_EQ(text_of(string_a.repeat(3)), a + a + a);
    }
}

TEST(AStringPad, PutsTheFillBeforeOrBehind)
{
    EXPECT_EQ(AString("ab").pad(5, '*'), "***ab");
    EXPECT_EQ(AString("ab").pad(-5, '*'), "ab***");
    EXPECT_EQ(AString("ab").pad(-3, '*'), "ab*");
    EXPECT_EQ(AString().pad(2, '*'), "**");
    EXPECT_EQ(AString().pad(-2, '*'), "**");
    EXPECT_EQ(AString("a").pad(2, '\xE4'), "\xE4"
                                           "a");
}

TEST(AStringPad, LeavesWhatIsWideEnough)
{
    const AString text("ab");
    for (const std::int64_t width : {0, 1, 2, -1, -2}) {
        EXPECT_TRUE(share(text.pad(width, '*'), text)) << width;
    }
    EXPECT_TRUE(holds_nothing(AString().pad(0, '*')));
}

TEST(AStringPad, IsThatOfTheModel)
{
    Random random(6);
    for (const std::size_t length : model::lengths) {
        for (const std::size_t width : model::lengths) {
            const Text text = random.text(length, U"ab");
            const Text fill(width > length ? width - length : 0, U'.');
            const AString string = random.view(text);
            const auto signed_width = static_cast<std::int64_t>(width);
            EXPECT_EQ(text_of(string.pad(signed_width, '.')), fill + text);
            EXPECT_EQ(text_of(string.pad(-signed_width, '.')), text + fill);
        }
    }
}

TEST(AStringTrim, TrimmedTextIsNotCopied)
{
    for (const char* text : {"", "a", "a b", " ", " a", "a ", "\ta b\n", "   "}) {
        const AString string(text);
        const ATrimmed trimmed(string);
        EXPECT_EQ(*trimmed, string.trim()) << text;
        EXPECT_EQ(string.is_trimmed(), string.trim() == string) << text;
        EXPECT_EQ(&*trimmed == &string, string.is_trimmed()) << text;
    }
}

TEST(AStringStorage, CopiesOfAPermanentTextAreNotCounted)
{
    static const NoDestructor<AString> kept("kept for good");
    const AString& text = *kept;
    text.make_permanent();
    const AString copy = text.left(4);
    EXPECT_TRUE(share(copy, text));
    EXPECT_EQ(text.storage.use_count(), ARefBlock<AStringStorage>::permanent);
    AString().make_permanent();
}

} // namespace
