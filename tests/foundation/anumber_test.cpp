#include "foundation/anumber.h"

#include "foundation/astring_segments.h"
#include "support/assert_watch.h"
#include "support/astring_printer.h"

#include <gtest/gtest.h>

#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace
{

template <typename Number>
using Parser = bool (*)(const AString&, Number*);

template <typename Number>
struct ParseCase {
    AString text;
    std::optional<Number> value; // none where the text is refused
};

template <typename Number>
void expect_parsed(Parser<Number> parse, const std::vector<ParseCase<Number>>& cases)
{
    for (const ParseCase<Number>& row : cases) {
        SCOPED_TRACE(testing::PrintToString(row.text.to_utf8()));
        Number value = 77;
        EXPECT_EQ(parse(row.text, &value), row.value.has_value());
        EXPECT_EQ(value, row.value.value_or(77)); // untouched where the text is refused
        EXPECT_EQ(parse(row.text, nullptr), row.value.has_value());
    }
}

constexpr auto refused = std::nullopt;

TEST(ToU64, ReadsDecimalText)
{
    expect_parsed<std::uint64_t>(
        to_u64, {
                    {"0", 0},
                    {"42", 42},
                    {" \t42\r\n", 42},
                    {"007", 7},
                    {"18446744073709551615", 18446744073709551615u},
                    {"", refused},
                    {"   ", refused},
                    {"-1", refused},
                    {"+1", refused},
                    {"1 2", refused},
                    {"1a", refused},
                    {"1.5", refused},
                    {AString(u"\uFF11"), refused}, // white space, so nothing is left
                    {AString(u"\u4E2D"
                             "42\u4E2D"),
                     42},
                    {AString("1") + AString(AChar{0x4E2D}) + AString("2"), refused},
                    {AString("0").repeat(600) + AString("5"), 5},
                });
}

// Wanted: a total is refused only if it is smaller than the one before.
TEST(ToU64, SeesOverflowOnlyWhereTheTotalShrinks)
{
    expect_parsed<std::uint64_t>(to_u64, {
                                             {"18446744073709551616", refused},
                                             {"18446744073709551619", refused},
                                             {"20000000000000000000", refused},
                                             {"30000000000000000000", 11553255926290448384u},
                                         });
}

// Wanted: the base decides which digits are taken, the multiplier is 10 in both.
TEST(ToU64, MultipliesHexadecimalTextBy10)
{
    expect_parsed<std::uint64_t>(to_u64, {
                                             {"0x0", 0},
                                             {"0x10", 10},
                                             {"0x1F", 25},
                                             {"0x1f", 25},
                                             {"0xFF", 165},
                                             {"0xG", 16},
                                             {"0xZ", 35},
                                             {"0xzz", 385},
                                             {" 0x10 ", 10},
                                             {"0x", refused},
                                             {"0X10", refused},
                                             {"0x1-", refused},
                                             {"0x 1", refused},
                                             {"x10", refused},
                                             {"00x1", refused},
                                             {"0xx", 33},
                                         });
}

TEST(ToI64, ReadsOneSign)
{
    expect_parsed<std::int64_t>(
        to_i64, {
                    {"0", 0},
                    {"-0", 0},
                    {"+7", 7},
                    {"-7", -7},
                    {" -7 ", -7},
                    {"- 7", -7},
                    {"-0x10", -10},
                    {"+0x1F", 25},
                    {"9223372036854775807", 9223372036854775807},
                    {"9223372036854775808", refused},
                    {"-9223372036854775808", std::numeric_limits<std::int64_t>::min()},
                    {"-9223372036854775809", refused},
                    {"18446744073709551615", refused},
                    {"-18446744073709551615", refused},
                    {"", refused},
                    {"-", refused},
                    {"+", refused},
                    {"--1", refused},
                    {"+-1", refused},
                    {"1-", refused},
                });
}

TEST(ToI32, EndsAtItsLimits)
{
    expect_parsed<std::int32_t>(to_i32,
                                {
                                    {"+7", 7},
                                    {"2147483647", 2147483647},
                                    {"2147483648", refused},
                                    {"-2147483648", std::numeric_limits<std::int32_t>::min()},
                                    {"-2147483649", refused},
                                    {"9223372036854775808", refused},
                                    {"", refused},
                                });
}

TEST(ToU32, EndsAtItsLimitsAndTakesNoSign)
{
    expect_parsed<std::uint32_t>(to_u32, {
                                             {" 42 ", 42},
                                             {"0", 0},
                                             {"4294967295", 4294967295u},
                                             {"4294967296", refused},
                                             {"18446744073709551616", refused},
                                             {"", refused},
                                             {"0x", refused},
                                             {"-1", refused},
                                             {"+1", refused},
                                         });
}

TEST(ToU16, EndsAtItsLimits)
{
    expect_parsed<std::uint16_t>(to_u16, {
                                             {"0", 0},
                                             {"65535", 65535},
                                             {"65536", refused},
                                             {"-1", refused},
                                         });
}

TEST(ToU8, EndsAtItsLimits)
{
    expect_parsed<std::uint8_t>(to_u8, {
                                           {"0", 0},
                                           {"255", 255},
                                           {"256", refused},
                                           {"+1", refused},
                                           {"0x1F", 25},
                                       });
}

TEST(ToFract16, ReadsTheFormWithX)
{
    expect_parsed<fract16>(to_fract16, {
                                           {"1X", 0x10000},
                                           {"1.5X", 0x18000},
                                           {" 1.5X ", 0x18000},
                                           {"+1.5X", 0x18000},
                                           {"-1.5X", -0x18000},
                                           {"-0.5X", -0x8000},
                                           {".5X", 0x8000},
                                           {"-.5X", -0x8000},
                                           {"5.X", 0x50000},
                                           {"X", 0},
                                           {"-X", 0},
                                           {"+X", 0},
                                           {".X", 0},
                                           {"-0X", 0},
                                           {"0.99999X", 0xFFFF},
                                           {"0.00001X", 0},
                                           {"0.0000152587890625X", 1},
                                           {"0.0000152587890624X", 0}, // cut, not rounded
                                           {"1 X", 0x10000},
                                           {"+ 1X", 0x10000},
                                       });
}

TEST(ToFract16, RefusesWhatIsNone)
{
    expect_parsed<fract16>(to_fract16, {
                                           {"", refused},
                                           {"  ", refused},
                                           {"1.5x", refused},
                                           {"XX", refused},
                                           {"1XX", refused},
                                           {"--1X", refused},
                                           {"+-1X", refused},
                                           {"0x1X", refused},
                                           {"-0x1X", refused},
                                           {"1.0x1X", refused},
                                           {"1a.5X", refused},
                                           {"+ X", refused},
                                           {"1.5.5X", refused},
                                           {"1.5 X", refused},
                                           {"1.-5X", refused},
                                           {"18446744073709551616X", refused},
                                       });
}

TEST(ToFract16, ReportsAFractionThatIsNotOfDigits)
{
    AssertWatch watch;
    EXPECT_FALSE(to_fract16("1.5aX", nullptr));
    EXPECT_EQ(watch.count("anumber"), 1u);
    EXPECT_FALSE(to_fract16("1a.5X", nullptr));
    EXPECT_EQ(watch.count(), 1u);
}

// The last one is wanted: it wraps in 32 bits.
TEST(ToFract16, EndsAtItsLimits)
{
    expect_parsed<fract16>(to_fract16, {
                                           {"32767X", 0x7FFF0000},
                                           {"32767.5X", 0x7FFF8000},
                                           {"32767.99999X", 0x7FFFFFFF},
                                           {"32768X", refused},
                                           {"-32768X", std::numeric_limits<fract16>::min()},
                                           {"-32769X", refused},
                                           {"4294967296X", refused},
                                           {"-32768.5X", 0x7FFF8000},
                                       });
}

// Wanted: without the X the text is the raw value, not a number of whole units.
TEST(ToFract16, ReadsTextWithoutXAsTheRawValue)
{
    expect_parsed<fract16>(
        to_fract16, {
                        {"65536", 0x10000},
                        {"1", 1},
                        {"-1", -1},
                        {"+1", 1},
                        {"0x10", 10},
                        {"2147483647", 0x7FFFFFFF},
                        {"2147483648", std::numeric_limits<fract16>::min()}, // keeps its bits
                        {"4294967295", -1},
                        {"4294967296", refused},
                        {"-2147483648", std::numeric_limits<fract16>::min()},
                        {"-2147483649", refused},
                        {"1.5", refused},
                        {"1.0", refused},
                    });
}

TEST(ToFract16, ReadsFractionsOfAnyLength)
{
    const auto value_of = [](const AString& text) {
        fract16 value = 77;
        EXPECT_TRUE(to_fract16(text, &value));
        return value;
    };
    EXPECT_EQ(value_of(AString("0.5") + AString("0").repeat(1000) + AString("X")), 0x8000);
    EXPECT_EQ(value_of(AString("0.4") + AString("9").repeat(1000) + AString("X")), 0x7FFF);
}

TEST(FromNumbers, WriteDecimalText)
{
    EXPECT_EQ(from_u64(0), "0");
    EXPECT_EQ(from_u64(18446744073709551615u), "18446744073709551615");
    EXPECT_EQ(from_u32(4294967295u), "4294967295");
    EXPECT_EQ(from_i64(9223372036854775807), "9223372036854775807");
    EXPECT_EQ(from_i64(std::numeric_limits<std::int64_t>::min()), "-9223372036854775808");
    EXPECT_EQ(from_i32(std::numeric_limits<std::int32_t>::min()), "-2147483648");
    EXPECT_EQ(from_i32(-1), "-1");
    EXPECT_EQ(from_i64(0), "0");
}

TEST(FromNumbers, PadToTheWidth)
{
    EXPECT_EQ(from_u64(42, 5, '0'), "00042");
    EXPECT_EQ(from_u64(42, -5, '.'), "42...");
    EXPECT_EQ(from_u64(42, 2, '0'), "42");
    EXPECT_EQ(from_u64(42, 1, '0'), "42");
    EXPECT_EQ(from_u32(7, 3), "  7");
    EXPECT_EQ(from_i64(42, 5, '0'), "00042");
}

// Wanted: the fill stands between the sign and the digits.
TEST(FromNumbers, PadBehindTheSign)
{
    EXPECT_EQ(from_i64(-42, 5, ' '), "-  42");
    EXPECT_EQ(from_i64(-42, -6, '.'), "-42...");
    EXPECT_EQ(from_i64(-42, 3, '0'), "-42");
    EXPECT_EQ(from_i64(-42, 4, '0'), "-042");
    EXPECT_EQ(from_i64(-42, 1, '0'), "-42");
    EXPECT_EQ(from_i64(-42, -1, '0'), "-42");
    EXPECT_EQ(from_i32(-7, 3, '0'), "-07");
}

TEST(FromNumbers, SurviveWidthsThatNoMemoryHolds)
{
    segments_exhausted.store(true);
    AssertWatch watch;
    for (const std::int64_t width :
         {std::numeric_limits<std::int64_t>::min(), std::numeric_limits<std::int64_t>::max()}) {
        EXPECT_TRUE(from_u64(5, width).is_empty());
        EXPECT_TRUE(from_i64(-5, width).is_empty());
    }
    segments_exhausted.store(false);
    EXPECT_GT(watch.count("astring"), 0u);
}

TEST(FromNumbers, RoundTripAtEveryPowerOfTwo)
{
    for (unsigned bit = 0; bit < 64; ++bit) {
        for (const std::uint64_t value :
             {std::uint64_t{1} << bit, (std::uint64_t{1} << bit) - 1, ~(std::uint64_t{1} << bit)}) {
            std::uint64_t unsigned_back = 0;
            std::int64_t signed_back = 0;
            const auto signed_value = static_cast<std::int64_t>(value);
            EXPECT_EQ(from_u64(value), AString(std::to_string(value).c_str()));
            EXPECT_TRUE(to_u64(from_u64(value), &unsigned_back));
            EXPECT_EQ(unsigned_back, value);
            EXPECT_EQ(from_i64(signed_value), AString(std::to_string(signed_value).c_str()));
            EXPECT_TRUE(to_i64(from_i64(signed_value), &signed_back));
            EXPECT_EQ(signed_back, signed_value);
        }
    }
}

struct Fract16Case {
    fract16 value;
    std::uint32_t digits;
    const char* text;
};

TEST(FromFract16, WritesByTable)
{
    const fract16 lowest = std::numeric_limits<fract16>::min();
    const Fract16Case cases[] = {
        {0, 15, "0X"},
        {0x10000, 15, "1X"},
        {0x18000, 15, "1.5X"},
        {-0x18000, 15, "-1.5X"},
        {-0x8000, 15, "-0.5X"},
        {-0x10000, 15, "-1X"},
        {0x7FFFFFFF, 15, "32767.999984741210938X"},
        {lowest, 15, "-32768X"},
        {lowest, 0, "-32768X"},
        {lowest + 1, 15, "-32767.999984741210938X"},
        {1, 15, "0.000015258789063X"},
        {1, 16, "0.0000152587890625X"},
        // Without digits the whole part is rounded, and a minus sign stays.
        {0x17FFF, 0, "1X"},
        {0x18000, 0, "2X"},
        {-0x18000, 0, "-2X"},
        {-1, 0, "-0X"},
        {0x7FFFFFFF, 0, "32768X"},
        // Rounding at the last digit, also into the whole part.
        {0x4000, 1, "0.3X"},
        {0x3FFF, 1, "0.2X"},
        {0xFFFF, 4, "1X"},
        {0xFFFF, 5, "0.99998X"},
        {0x1FFFF, 1, "2X"},
        {-0xFFFF, 1, "-1X"},
        // What rounds to nothing loses its minus sign.
        {-1, 1, "0X"},
        {-1, 4, "0X"},
        {-1, 5, "-0.00002X"},
        {1, 4, "0X"},
        // Trailing zeros go, others stay.
        {0x14000, 10, "1.25X"},
        {0x10000 * 100 + 0x8000, 3, "100.5X"},
        {0x0CCD, 3, "0.05X"},
        // More digits than the 16 that a fraction can have.
        {1, 17, "0.0000152587890625X"},
        {0x18000, 20, "1.5X"},
        {1, 20, "0.0000152587890625X"},
        {1, 0xFFFFFFFFu, "0.0000152587890625X"},
    };
    for (const Fract16Case& row : cases) {
        EXPECT_EQ(from_fract16(row.value, row.digits), AString(row.text))
            << row.value << " with " << row.digits;
    }
}

TEST(FromFract16, EveryFractionReadsBackAsItself)
{
    for (fract16 fraction = 0; fraction < 0x10000; ++fraction) {
        for (const fract16 value : {fraction, -fraction, fraction + 0x7FFF0000}) {
            fract16 back = 77;
            ASSERT_TRUE(to_fract16(from_fract16(value, 15), &back)) << value;
            ASSERT_EQ(back, value);
        }
    }
}

TEST(FromFract16, RoundsHalfUpAtEveryNumberOfDigits)
{
    for (std::uint64_t fraction = 1; fraction < 0x10000; fraction += 7) {
        std::uint64_t limit = 1;
        for (std::uint32_t digits = 1; digits <= 14; ++digits) {
            limit *= 10;
            const std::uint64_t rounded = (fraction * limit * 2 + 0x10000) / 0x20000 + limit * 5;
            std::string expected = std::to_string(rounded / limit) + "." +
                                   std::to_string(rounded % limit + limit).substr(1);
            expected.erase(expected.find_last_not_of('0') + 1);
            expected.erase(expected.find_last_not_of('.') + 1);
            const fract16 value = static_cast<fract16>(0x50000 + fraction);
            ASSERT_EQ(from_fract16(value, digits), AString((expected + "X").c_str())) << digits;
        }
    }
}

template <typename Number>
std::optional<Number> short_decimal(std::string_view text)
{
    Number value = 77;
    const bool taken = take_short_decimal(text, &value);
    EXPECT_TRUE(taken || value == 77) << text;
    return taken ? std::optional<Number>(value) : std::nullopt;
}

TEST(TakeShortDecimal, TakesAFewDigitsAndNothingElse)
{
    EXPECT_EQ(short_decimal<std::uint32_t>("0"), 0u);
    EXPECT_EQ(short_decimal<std::uint32_t>("007"), 7u);
    EXPECT_EQ(short_decimal<std::int32_t>("999999999"), 999999999);
    EXPECT_EQ(short_decimal<std::uint64_t>("123456789"), 123456789u);
    for (const char* text : {"", " 1", "1 ", "-1", "+1", "0x10", "1.5X", "/", ":", "1a", "\xC3\xB1",
                             "0000000001", "1234567890"}) {
        EXPECT_EQ(short_decimal<std::uint32_t>(text), std::nullopt) << text;
    }
}

TEST(TakeShortDecimal, LeavesWhatDoesNotFit)
{
    EXPECT_EQ(short_decimal<std::uint8_t>("255"), 255);
    EXPECT_EQ(short_decimal<std::uint8_t>("256"), std::nullopt);
    EXPECT_EQ(short_decimal<std::uint16_t>("65535"), 65535);
    EXPECT_EQ(short_decimal<std::uint16_t>("65536"), std::nullopt);
}

// All that it takes means the same to the full conversions.
TEST(TakeShortDecimal, AgreesWithTheConversions)
{
    for (const std::uint32_t value : {0u, 1u, 9u, 10u, 255u, 65536u, 98304u, 999999999u}) {
        const std::string text = std::to_string(value);
        const AString string(text.c_str());
        std::uint32_t u32 = 0;
        std::int32_t i32 = 0;
        fract16 fraction = 0;
        ASSERT_TRUE(to_u32(string, &u32) && to_i32(string, &i32) && to_fract16(string, &fraction));
        EXPECT_EQ(short_decimal<std::uint32_t>(text), u32);
        EXPECT_EQ(short_decimal<std::int32_t>(text), i32);
        EXPECT_EQ(short_decimal<fract16>(text), fraction);
    }
}

} // namespace
