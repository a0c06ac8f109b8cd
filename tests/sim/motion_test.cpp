#include "sim/motion.h"

#include <chrono>

#include <gtest/gtest.h>

namespace veltosim
{

using namespace std::chrono_literals;

namespace
{

constexpr FieldRate fifty{50, 1};
constexpr TimePoint start{};

Motion from(std::uint32_t field, Speed speed = normal_speed)
{
    return {start, parts(field), speed};
}

std::uint32_t field_after(const Motion& motion, const Path& path, std::chrono::nanoseconds time,
                          FieldRate rate = fifty)
{
    return moment_at(motion, path, rate, start + time).field;
}

} // namespace

TEST(Motion, MovesAtTheFieldRate)
{
    const Path path{{0, 1000000}, {0, 1000000}, Turn::none};
    EXPECT_EQ(field_after(from(0), path, 0ns), 0u);
    EXPECT_EQ(field_after(from(0), path, 20ms - 1ns), 0u);
    EXPECT_EQ(field_after(from(0), path, 20ms), 1u);
    EXPECT_EQ(field_after(from(7), path, 1h), 7u + 180000u);
    EXPECT_EQ(field_after(from(0), path, 1001s, {60000, 1001}), 60000u);
    EXPECT_EQ(field_after(from(0), path, 1001s, {24000, 1001}), 24000u);
}

TEST(Motion, FollowsItsSpeed)
{
    const Path path{{0, 100000}, {0, 100000}, Turn::none};
    EXPECT_EQ(field_after(from(0, normal_speed / 2), path, 1s), 25u);
    EXPECT_EQ(field_after(from(0, 200 * normal_speed), path, 1s), 10000u);
    EXPECT_EQ(field_after(from(500, -2 * normal_speed), path, 1s), 400u);
    EXPECT_EQ(field_after(from(500, 0), path, 24h), 500u);
    EXPECT_EQ(field_after(from(500, 1), path, 24h), 500u + 65u);
}

TEST(Motion, ShowsEachFieldEquallyLongInBothDirections)
{
    const Path path{{0, 100}, {0, 100}, Turn::none};
    EXPECT_EQ(field_after(from(50, -normal_speed), path, 20ms - 1ns), 50u);
    EXPECT_EQ(field_after(from(50, -normal_speed), path, 20ms), 49u);
    EXPECT_EQ(field_after(from(0, -normal_speed), path, 10ms), 0u);
}

TEST(Motion, StandsStillBeforeItsBeginning)
{
    const Path path{{0, 100}, {0, 100}, Turn::loop};
    EXPECT_EQ(field_after(from(10), path, -5s), 10u);
}

TEST(Motion, EndsAtTheBorderOfItsLeg)
{
    const Path path{{10, 100}, {10, 100}, Turn::none};
    EXPECT_EQ(field_after(from(90), path, 1h), 99u);
    EXPECT_EQ(field_after(from(90, -normal_speed), path, 1h), 10u);
    EXPECT_EQ(end_time(from(90), path, fifty, start + 199ms), std::nullopt);
    EXPECT_EQ(end_time(from(90), path, fifty, start + 1h), start + 200ms);
    EXPECT_EQ(end_time(from(10, -normal_speed), path, fifty, start + 1h), start + 20ms);
    EXPECT_EQ(end_time(from(90, 0), path, fifty, start + 1h), std::nullopt);
}

TEST(Motion, EndTimeIsTheFirstNanosecondAtTheEnd)
{
    const Path path{{0, 1}, {0, 1}, Turn::none};
    const FieldRate film{24000, 1001};
    const auto end = end_time(from(0), path, film, start + 1s);
    ASSERT_TRUE(end);
    EXPECT_EQ(end_time(from(0), path, film, *end), end);
    EXPECT_EQ(end_time(from(0), path, film, *end - 1ns), std::nullopt);
}

TEST(Motion, LoopsForAsLongAsItIsLeft)
{
    const Path path{{0, 100}, {0, 100}, Turn::loop};
    EXPECT_EQ(field_after(from(90), path, 199ms), 99u);
    EXPECT_EQ(field_after(from(90), path, 200ms), 0u);
    EXPECT_EQ(field_after(from(0), path, 24h * 365 + 100ms), 5u);
    EXPECT_EQ(field_after(from(5, -normal_speed), path, 120ms), 99u);
    EXPECT_EQ(field_after(from(5, -normal_speed), path, 24h * 365), 5u);
    EXPECT_EQ(end_time(from(0), path, fifty, start + 1h), std::nullopt);
}

TEST(Motion, RunsIntoALoopFromOutside)
{
    const Path path{{0, 60}, {40, 60}, Turn::loop};
    EXPECT_EQ(field_after(from(0), path, 59 * 20ms), 59u);
    EXPECT_EQ(field_after(from(0), path, 60 * 20ms), 40u);
    EXPECT_EQ(field_after(from(0), path, 80 * 20ms), 40u);
    EXPECT_EQ(field_after(from(0), path, 79 * 20ms), 59u);
}

TEST(Motion, PingpongTurnsRoundAtBothEnds)
{
    const Path path{{0, 10}, {0, 10}, Turn::pingpong};
    const auto after = [&](int fields) {
        return moment_at(from(0), path, fifty, start + fields * 20ms);
    };
    EXPECT_EQ(after(9).field, 9u);
    EXPECT_EQ(after(9).direction, 1);
    EXPECT_EQ(after(10).field, 9u);
    EXPECT_EQ(after(10).direction, -1);
    EXPECT_EQ(after(19).field, 0u);
    EXPECT_EQ(after(20).field, 0u);
    EXPECT_EQ(after(20).direction, 1);
    EXPECT_EQ(after(23).field, 3u);
    EXPECT_EQ(after(20 * 1000000 + 13).field, 6u);
}

TEST(Motion, PingpongBegunBackwardsTurnsAtTheStart)
{
    const Path path{{0, 10}, {0, 10}, Turn::pingpong};
    const auto after = [&](int fields) {
        return moment_at(from(4, -normal_speed), path, fifty, start + fields * 20ms);
    };
    EXPECT_EQ(after(4).field, 0u);
    EXPECT_EQ(after(5).field, 0u);
    EXPECT_EQ(after(5).direction, 1);
    EXPECT_EQ(after(14).field, 9u);
    EXPECT_EQ(after(15).direction, -1);
}

TEST(Motion, LongDurationsStayExact)
{
    const Path path{{0, 0xFFFFFFFF}, {0, 0xFFFFFFFF}, Turn::none};
    EXPECT_EQ(field_after(from(0), path, 24h * 365), 50u * 3600u * 24u * 365u);
    EXPECT_EQ(field_after(from(0, 200 * normal_speed), path, 24h * 365 * 100), 0xFFFFFFFEu);
    EXPECT_EQ(duration_of(0xFFFFFFFF, {60, 1}).count(), 71582788250000000);
}

TEST(Motion, FieldsOfTheDayBeginAnewAtMidnight)
{
    EXPECT_EQ(fields_of_day(0s, fifty), 0u);
    EXPECT_EQ(fields_of_day(20ms - 1ns, fifty), 0u);
    EXPECT_EQ(fields_of_day(20ms, fifty), 1u);
    EXPECT_EQ(fields_of_day(24h - 1ns, fifty), 24u * 3600 * 50 - 1);
    EXPECT_EQ(fields_of_day(24h, fifty), 0u);
    EXPECT_EQ(fields_of_day(1001s, {60000, 1001}), 60000u);
}

TEST(Motion, TheNextFieldIsTheOneThatIsCountedThen)
{
    EXPECT_EQ(next_field(start, fifty), start + 20ms);
    EXPECT_EQ(next_field(start + 1ns, fifty), start + 20ms);
    EXPECT_EQ(next_field(start + 20ms, fifty), start + 40ms);
    const FieldRate rate{60000, 1001};
    EXPECT_EQ(next_field(start + 24h - 1ns, rate), start + 24h);
    TimePoint now = start + 123456h;
    std::uint64_t number = fields_of_day(now.time_since_epoch(), rate);
    for (int i = 0; i < 1000; ++i) {
        now = next_field(now, rate);
        EXPECT_EQ(fields_of_day(now.time_since_epoch(), rate), ++number);
        EXPECT_EQ(fields_of_day(now.time_since_epoch() - 1ns, rate), number - 1);
    }
}

} // namespace veltosim
