#include "protocol/typehelp.h"

#include "support/assert_watch.h"

#include <cmath>
#include <limits>
#include <set>
#include <string>
#include <vector>

#include <gtest/gtest.h>

namespace
{

using namespace ZAVL3;
using namespace typehelp;

template <typename E>
std::int32_t number(E value)
{
    return static_cast<std::int32_t>(value);
}

constexpr std::uint32_t far_out[] = {0x7FFFFFFF, 0x80000000, 0xFFFFFFFF};

// 0 up to `last` unchanged, and everything else the first row, without a report.
template <typename E>
void expect_identity_rows(E (*convert)(std::uint32_t), std::uint32_t last)
{
    AssertWatch watch;
    for (std::uint32_t i = 0; i <= last; ++i) {
        EXPECT_EQ(number(convert(i)), static_cast<std::int32_t>(i));
    }
    EXPECT_EQ(number(convert(last + 1)), 0);
    for (const std::uint32_t value : far_out) {
        EXPECT_EQ(number(convert(value)), 0);
    }
    EXPECT_EQ(watch.count(), 0u);
}

TEST(Typehelp, TakesTheExportedNumbersOfItsTables)
{
    expect_identity_rows(channel_to_wire, 11);
    expect_identity_rows(repeat_to_wire, 4);
    expect_identity_rows(precue_to_wire, 3);
    expect_identity_rows(stripe_to_wire, 1);
}

// `first` and what follows become 0, 1 and so on; every other value of the enumeration becomes 0.
template <typename E>
void expect_exported(std::uint32_t (*convert)(E), std::int32_t first, std::int32_t last)
{
    AssertWatch watch;
    for (std::int32_t value = 0; value < static_cast<std::int32_t>(word_count<E>); ++value) {
        const bool known = value >= first && value <= last;
        EXPECT_EQ(convert(E{value}), static_cast<std::uint32_t>(known ? value - first : 0));
    }
    EXPECT_EQ(convert(E{-1}), 0u);
    EXPECT_EQ(convert(E{1000}), 0u);
    EXPECT_EQ(watch.count(), 0u);
}

// Its first word has no exported number.
TEST(Typehelp, TakesAnyOtherPlaybackForTheFirst)
{
    AssertWatch watch;
    EXPECT_EQ(playback_to_wire(0), word<Playback>("field"));
    EXPECT_EQ(playback_to_wire(1), word<Playback>("f12"));
    EXPECT_EQ(playback_to_wire(2), word<Playback>("field"));
    for (const std::uint32_t value : far_out) {
        EXPECT_EQ(playback_to_wire(value), word<Playback>("field"));
    }
    EXPECT_EQ(watch.count(), 0u);
}

TEST(Typehelp, GivesTheExportedNumbersOfItsTables)
{
    expect_exported(playback_from_wire, 1, 2);
    expect_exported(repeat_from_wire, 0, 4);
    expect_exported(rate_from_wire, 0, 4);
    expect_exported(resolution_from_wire, 2, 5);
    expect_exported(standard_from_wire, 17, 26);
}

TEST(Typehelp, GivesTheExportedNumbersOfWords)
{
    EXPECT_EQ(rate_from_wire(word<VideoRate>("47_95")), 4u);
    EXPECT_EQ(rate_from_wire(word<VideoRate>("25")), 0u);
    EXPECT_EQ(resolution_from_wire(word<VideoResolution>("1080i")), 0u);
    EXPECT_EQ(resolution_from_wire(word<VideoResolution>("525i")), 3u);
    EXPECT_EQ(resolution_from_wire(word<VideoResolution>("4K")), 0u);
    EXPECT_EQ(standard_from_wire(word<VideoStandard>("1080_60i")), 0u);
    EXPECT_EQ(standard_from_wire(word<VideoStandard>("525_59_94i")), 9u);
    EXPECT_EQ(repeat_from_wire(word<Loop>("auto")), 0u);
    EXPECT_EQ(playback_from_wire(word<Playback>("auto")), 0u);
    EXPECT_EQ(playback_from_wire(word<Playback>("field")), 0u);
    EXPECT_EQ(playback_from_wire(word<Playback>("f12")), 1u);
}

TEST(Typehelp, FoldsTheNineStatesOfAChannelIntoFive)
{
    const std::vector<std::uint32_t> folded = {0, 1, 2, 1, 3, 4, 4, 1, 0};
    ASSERT_EQ(folded.size(), word_count<ChannelStatus>);
    for (std::size_t i = 0; i < folded.size(); ++i) {
        EXPECT_EQ(channel_status_from_wire(ChannelStatus{static_cast<std::int32_t>(i)}), folded[i]);
    }
    EXPECT_EQ(channel_status_from_wire(ChannelStatus{9}), 0u);
    EXPECT_EQ(channel_status_from_wire(ChannelStatus{-1}), 0u);
}

template <typename E>
void expect_reported_outside(E (*convert)(std::uint32_t), std::uint32_t last)
{
    AssertWatch watch;
    for (std::uint32_t i = 0; i <= last; ++i) {
        EXPECT_EQ(number(convert(i)), static_cast<std::int32_t>(i));
    }
    EXPECT_EQ(watch.count(), 0u);
    EXPECT_EQ(number(convert(last + 1)), 0);
    for (const std::uint32_t value : far_out) {
        EXPECT_EQ(number(convert(value)), 0);
    }
    EXPECT_EQ(watch.count("typehelp"), 4u);
}

TEST(Typehelp, ReportsANumberOutsideTheCaseLists)
{
    expect_reported_outside(follow_to_wire, 3);
    expect_reported_outside(transition_to_wire, 1);
    expect_reported_outside(timecode_source_to_wire, 3);
}

TEST(Typehelp, ReportsATimecodeSourceOutside)
{
    AssertWatch watch;
    for (std::int32_t i = 0; i <= 3; ++i) {
        EXPECT_EQ(timecode_source_from_wire(TimecodeSource{i}), static_cast<std::uint32_t>(i));
    }
    EXPECT_EQ(watch.count(), 0u);
    EXPECT_EQ(timecode_source_from_wire(TimecodeSource{4}), 0u);
    EXPECT_EQ(timecode_source_from_wire(TimecodeSource{-1}), 0u);
    EXPECT_EQ(watch.count("typehelp"), 2u);
}

TEST(FieldRateClass, IsKnownForTheInterlacedAndFastStandards)
{
    const std::vector<std::vector<std::int32_t>> classes = {
        {0, 8, 17, 22}, {1, 9, 18, 23, 26}, {2, 10, 19, 24, 25}, {20}, {21}};
    AssertWatch watch;
    for (std::size_t expected = 0; expected < classes.size(); ++expected) {
        for (const std::int32_t standard : classes[expected]) {
            EXPECT_EQ(field_rate_class(VideoStandard{standard}), expected) << standard;
            EXPECT_EQ(is_59_94_family(VideoStandard{standard}), expected == 1) << standard;
        }
    }
    EXPECT_EQ(watch.count(), 0u);
}

TEST(FieldRateClass, IsReportedAnd59_94ForTheOthers)
{
    const std::set<std::int32_t> known = {0,  8, 17, 22, 1,  9,  18, 23,
                                          26, 2, 10, 19, 24, 25, 20, 21};
    AssertWatch watch;
    std::size_t expected_reports = 0;
    for (const std::int32_t standard :
         {3, 4, 5, 6, 7, 11, 12, 13, 14, 15, 16, 27, -1, std::numeric_limits<std::int32_t>::max(),
          std::numeric_limits<std::int32_t>::min()}) {
        ASSERT_EQ(known.count(standard), 0u);
        EXPECT_EQ(field_rate_class(VideoStandard{standard}), 1u) << standard;
        EXPECT_TRUE(is_59_94_family(VideoStandard{standard})) << standard;
        expected_reports += 2;
    }
    EXPECT_EQ(watch.count("typehelp"), expected_reports);
}

TEST(Speed, IsCutToItsLimitsAndTowardsZero)
{
    using Limits = std::numeric_limits<double>;
    constexpr std::int32_t limit = 200 * 65536;
    struct SpeedRow {
        double speed;
        std::int32_t fixed;
    };
    const std::vector<SpeedRow> speeds = {
        {0.0, 0},
        {-0.0, 0},
        {1.0, 0x10000},
        {-1.0, -0x10000},
        {-0.5, -32768},
        {1.5, 0x18000},
        {200.0, limit},
        {-200.0, -limit},
        {300.0, limit},
        {-300.0, -limit},
        {std::nextafter(200.0, 0.0), limit - 1},
        {std::nextafter(200.0, 300.0), limit},
        {std::nextafter(-200.0, 0.0), -limit + 1},
        {1.999 / 65536, 1},
        {-1.999 / 65536, -1},
        {0.999 / 65536, 0},
        {-0.999 / 65536, 0},
        {2147483647.0, limit},
        {-2147483648.0, -limit},
        {Limits::max(), limit},
        {Limits::lowest(), -limit},
        {Limits::infinity(), limit},
        {-Limits::infinity(), -limit},
        {Limits::min(), 0},
        {Limits::denorm_min(), 0},
        {-Limits::denorm_min(), 0},
        {Limits::quiet_NaN(), 0},
        {-Limits::quiet_NaN(), 0},
        {Limits::signaling_NaN(), 0},
    };
    for (const SpeedRow& row : speeds) {
        EXPECT_EQ(speed_to_fixed(row.speed), row.fixed) << row.speed;
    }
}

TEST(Speed, ComesBackExactly)
{
    EXPECT_EQ(fixed_to_speed(0x18000), 1.5);
    EXPECT_EQ(fixed_to_speed(-32768), -0.5);
    EXPECT_EQ(fixed_to_speed(1), 1.0 / 65536);
    EXPECT_EQ(fixed_to_speed(std::numeric_limits<std::int32_t>::max()), 32768 - 1.0 / 65536);
    EXPECT_EQ(fixed_to_speed(std::numeric_limits<std::int32_t>::min()), -32768.0);
    for (const std::int32_t fixed : {0, 1, -1, 98304, -200 * 65536, 200 * 65536}) {
        EXPECT_EQ(speed_to_fixed(fixed_to_speed(fixed)), fixed);
    }
}

template <typename Set>
std::string words_of(const Set& set)
{
    std::string text;
    for (std::uint32_t i = 0; i < set.count; ++i) {
        text += (i == 0 ? "" : " ") + to_wire(set.vec[i]).to_utf8();
    }
    return text;
}

TEST(ChannelMask, NamesTheFirstEightChannels)
{
    EXPECT_EQ(words_of(channel_mask_to_wire(0)), "");
    EXPECT_EQ(words_of(channel_mask_to_wire(0x01)), "A");
    EXPECT_EQ(words_of(channel_mask_to_wire(0x80)), "H");
    EXPECT_EQ(words_of(channel_mask_to_wire(0x85)), "A C H");
    EXPECT_EQ(words_of(channel_mask_to_wire(0xFF)), "A B C D E F G H");
    EXPECT_EQ(words_of(channel_mask_to_wire(0xFFFFFF00)), "");
    EXPECT_EQ(words_of(channel_mask_to_wire(0xFFFFFFFF)), "A B C D E F G H");
}

TEST(EditMask, GoesOutAsSixteenBits)
{
    const std::vector<std::uint16_t> masks = {0, 0x10, 0x20, 0x30, 0x3CF, 0x3DF, 0x3EF, 0x3FF};
    for (std::uint32_t bits = 0; bits < 8; ++bits) {
        EXPECT_EQ(edit_bits_to_mask(bits), masks[bits]);
        EXPECT_EQ(edit_bits_to_mask(bits | 0xFFFFFFF8), masks[bits]);
        EXPECT_EQ(edit_mask_to_bits(masks[bits]), bits);
    }
}

TEST(EditMask, ComesBackAsThreeBits)
{
    for (int bit = 0; bit < 16; ++bit) {
        const std::uint32_t expected = bit == 4 ? 1 : bit == 5 ? 2 : bit < 10 ? 4 : 0;
        EXPECT_EQ(edit_mask_to_bits(static_cast<std::uint16_t>(1 << bit)), expected) << bit;
    }
    EXPECT_EQ(edit_mask_to_bits(0xFC00), 0u);
    EXPECT_EQ(edit_mask_to_bits(0xFFFF), 7u);
}

TEST(TrackMask, NamesVideoKeyAndAudio)
{
    const std::vector<std::string> plain = {"",      "video",       "key",       "video key",
                                            "audio", "video audio", "key audio", "video key audio"};
    const std::vector<std::string> with_timecode = {
        "",      "video timecode",       "key",       "video timecode key",
        "audio", "video timecode audio", "key audio", "video timecode key audio"};
    for (std::uint32_t mask = 0; mask < 8; ++mask) {
        EXPECT_EQ(words_of(track_mask_to_wire(mask, false)), plain[mask]);
        EXPECT_EQ(words_of(track_mask_to_wire(mask, true)), with_timecode[mask]);
        EXPECT_EQ(words_of(track_mask_to_wire(mask | 0xFFFFFFF8, false)), plain[mask]);
    }
}

} // namespace
