#include "sim/channel.h"

#include <chrono>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "sim/refusal.h"

namespace veltosim
{

using namespace std::chrono_literals;

namespace
{

constexpr TimePoint start{};
constexpr auto field = 20ms;

ClipPtr clip(const std::string& name, std::uint32_t length, std::uint8_t angles = 1,
             Loop loop = Loop::off)
{
    return std::make_shared<const Clip>(Clip{name, length, angles, loop, {}, {}});
}

Material whole(const std::string& name, std::uint32_t length)
{
    Material material;
    material.clip = clip(name, length);
    return material;
}

Material looping(Loop loop, std::optional<std::uint32_t> in = {},
                 std::optional<std::uint32_t> out = {})
{
    Material material = whole("news", 100);
    material.loop = loop;
    material.loop_in = in;
    material.loop_out = out;
    return material;
}

LoadedList three_elements()
{
    Material middle = whole("two", 500);
    middle.start = 100;
    middle.out_point = 110;
    LoadedList list;
    list.name = "evening";
    list.elements = std::make_shared<const std::vector<Material>>(
        std::vector{whole("one", 10), middle, whole("three", 10)});
    return list;
}

class ChannelTest : public testing::Test
{
protected:
    Channel channel{'C', FieldRate{50, 1}};

    std::uint32_t position(std::chrono::nanoseconds time) const
    {
        return channel.view(start + time).position;
    }
    ChannelStatus status(std::chrono::nanoseconds time) const
    {
        return channel.view(start + time).status;
    }
    std::string clip_on(std::chrono::nanoseconds time) const
    {
        return channel.view(start + time).clip;
    }
};

std::string refusal_of(const std::function<void()>& action)
{
    try {
        action();
    } catch (const Refusal& refusal) {
        return refusal.what();
    }
    return "(obeyed)";
}

} // namespace

TEST_F(ChannelTest, IsIdleWithNothingLoaded)
{
    const ChannelView view = channel.view(start);
    EXPECT_EQ(view.status, ChannelStatus::idle);
    EXPECT_EQ(view.clip, "");
    EXPECT_EQ(view.position, 0u);
    EXPECT_EQ(view.speed, 0);
}

TEST_F(ChannelTest, CueingTakesAMomentAndThenItStandsAtTheStart)
{
    Material material = whole("news", 100);
    material.start = 30;
    channel.cue(start, material);
    EXPECT_EQ(status(0ms), ChannelStatus::cueing);
    EXPECT_EQ(status(80ms), ChannelStatus::stop);
    EXPECT_EQ(position(1h), 30u);
    EXPECT_EQ(clip_on(0ms), "news");
}

TEST_F(ChannelTest, PlayMovesAndStopHolds)
{
    channel.cue(start, whole("news", 1000));
    channel.play(start + 1s);
    EXPECT_EQ(position(2s), 50u);
    EXPECT_EQ(status(2s), ChannelStatus::play);
    EXPECT_EQ(channel.view(start + 2s).speed, normal_speed);
    channel.stop(start + 3s);
    EXPECT_EQ(position(3s), 100u);
    EXPECT_EQ(position(9s), 100u);
    EXPECT_EQ(status(3s), ChannelStatus::stop);
    EXPECT_EQ(channel.view(start + 3s).speed, 0);
}

TEST_F(ChannelTest, PlaysBackwardsAndSlowly)
{
    Material material = whole("news", 1000);
    material.start = 500;
    channel.cue(start, material);
    channel.play(start, -2 * normal_speed);
    EXPECT_EQ(position(1s), 400u);
    channel.play(start + 1s, normal_speed / 4);
    EXPECT_EQ(position(1s), 400u);
    EXPECT_EQ(position(3s), 425u);
}

TEST_F(ChannelTest, AChangeOfSpeedLosesNoPartOfAField)
{
    channel.cue(start, whole("news", 1000));
    channel.play(start);
    for (int i = 1; i <= 100; ++i) {
        channel.play(start + i * 7ms, normal_speed);
        channel.set_angle(start + i * 7ms, 0);
    }
    EXPECT_EQ(position(700ms + 1ms), 35u);
}

TEST_F(ChannelTest, PlayWithoutSpeedUsesTheSpeedOfTheCue)
{
    Material material = whole("news", 1000);
    material.speed = 3 * normal_speed;
    channel.cue(start, material);
    channel.play(start);
    EXPECT_EQ(position(1s), 150u);
}

TEST_F(ChannelTest, StopsByItselfOnTheLastField)
{
    channel.cue(start, whole("news", 100));
    channel.play(start);
    EXPECT_EQ(status(100 * field - 1ns), ChannelStatus::play);
    EXPECT_EQ(status(100 * field), ChannelStatus::stop);
    EXPECT_EQ(position(1h), 99u);
    channel.play(start + 1h, -normal_speed);
    EXPECT_EQ(position(2h), 0u);
    EXPECT_EQ(status(2h), ChannelStatus::stop);
}

TEST_F(ChannelTest, TheOutPointEndsThePlayUntilItIsCleared)
{
    channel.cue(start, whole("news", 100));
    channel.set_out_point(start, 40);
    channel.play(start);
    EXPECT_EQ(channel.view(start).out_point, 40u);
    EXPECT_EQ(position(1h), 39u);
    channel.clear_out_point(start + 1h);
    channel.play(start + 1h);
    EXPECT_EQ(position(2h), 99u);
}

TEST_F(ChannelTest, APositionBehindTheOutPointPlaysOnToTheEnd)
{
    channel.cue(start, whole("news", 100));
    channel.set_out_point(start, 40);
    channel.go_to(start, 60);
    channel.play(start);
    EXPECT_EQ(position(1h), 99u);
}

TEST_F(ChannelTest, JogMovesAndHoldsWithinTheClip)
{
    channel.cue(start, whole("news", 100));
    channel.play(start);
    channel.jog(start + 10 * field, 5);
    EXPECT_EQ(position(1s), 15u);
    EXPECT_EQ(status(1s), ChannelStatus::stop);
    channel.jog(start, -1000);
    EXPECT_EQ(position(0s), 0u);
    channel.jog(start, 0x7FFFFFFF);
    EXPECT_EQ(position(0s), 99u);
    channel.jog(start, -0x7FFFFFFF - 1);
    EXPECT_EQ(position(0s), 0u);
}

TEST_F(ChannelTest, GotoMovesAndHolds)
{
    channel.cue(start, whole("news", 100));
    channel.play(start);
    channel.go_to(start + 1s, 99);
    EXPECT_EQ(position(9s), 99u);
    EXPECT_EQ(status(9s), ChannelStatus::stop);
    EXPECT_EQ(refusal_of([&] { channel.go_to(start, 100); }),
              "clip 'news' of 100 fields cannot take position 100; 0 to 99 are allowed");
}

TEST_F(ChannelTest, LoopTurnsFromTheClipsStart)
{
    channel.cue(start, looping(Loop::loop, 50, 60));
    channel.play(start);
    EXPECT_EQ(position(99 * field), 99u);
    EXPECT_EQ(position(100 * field), 0u);
    EXPECT_EQ(position(1234 * field), 34u);
    EXPECT_EQ(status(1h), ChannelStatus::play);
}

TEST_F(ChannelTest, LooptoTurnsBetweenItsPoints)
{
    channel.cue(start, looping(Loop::loopto, 50, 60));
    channel.play(start);
    EXPECT_EQ(position(59 * field), 59u);
    EXPECT_EQ(position(60 * field), 50u);
    EXPECT_EQ(position(75 * field), 55u);
}

TEST_F(ChannelTest, LooptoTakesTheOutPointForAMissingLoopOut)
{
    Material material = looping(Loop::loopto, 20);
    material.out_point = 30;
    channel.cue(start, material);
    channel.play(start);
    EXPECT_EQ(position(29 * field), 29u);
    EXPECT_EQ(position(30 * field), 20u);
}

TEST_F(ChannelTest, ALoopOutsideTheOutPointTurnsInTheWholeInstead)
{
    Material material = looping(Loop::loopto, 50, 60);
    material.out_point = 30;
    channel.cue(start, material);
    channel.play(start);
    EXPECT_EQ(position(30 * field), 0u);
}

TEST_F(ChannelTest, APositionBehindTheLoopPlaysOnToTheEndAndThenTurns)
{
    channel.cue(start, looping(Loop::loopto, 50, 60));
    channel.go_to(start, 90);
    channel.play(start);
    EXPECT_EQ(position(9 * field), 99u);
    EXPECT_EQ(position(10 * field), 50u);
    EXPECT_EQ(position(20 * field), 50u);
}

TEST_F(ChannelTest, PingpongTurnsRoundAndShowsItInItsSpeed)
{
    channel.cue(start, looping(Loop::pingpongto, 0, 10));
    channel.play(start);
    EXPECT_EQ(position(9 * field), 9u);
    EXPECT_EQ(position(10 * field), 9u);
    EXPECT_EQ(position(19 * field), 0u);
    EXPECT_EQ(channel.view(start + 15 * field).speed, -normal_speed);
    channel.stop(start + 15 * field);
    EXPECT_EQ(position(1h), 4u);
}

TEST_F(ChannelTest, LoopCanBeChangedWhilePlaying)
{
    channel.cue(start, whole("news", 100));
    channel.play(start);
    channel.set_loop(start + 50 * field, Loop::loop);
    EXPECT_EQ(position(110 * field), 10u);
    EXPECT_EQ(channel.view(start + 1h).loop, Loop::loop);
    channel.set_loop(start + 110 * field, Loop::off);
    EXPECT_EQ(position(1h), 99u);
}

TEST_F(ChannelTest, AutoLoopIsTheClipsOwn)
{
    Material material;
    material.clip = clip("bed", 100, 1, Loop::loop);
    channel.cue(start, material);
    channel.play(start);
    EXPECT_EQ(channel.view(start).loop, Loop::loop);
    EXPECT_EQ(position(105 * field), 5u);
}

TEST_F(ChannelTest, AnglesAreCheckedAgainstTheClip)
{
    Material material;
    material.clip = clip("goal", 100, 4);
    channel.cue(start, material);
    channel.set_angle(start, 3);
    EXPECT_EQ(channel.view(start).angle, 3);
    EXPECT_EQ(channel.view(start).angle_count, 4);
    EXPECT_EQ(refusal_of([&] { channel.set_angle(start, 4); }),
              "clip 'goal' has no angle 4; 0 to 3 are allowed");
}

TEST_F(ChannelTest, WhatNeedsSomethingLoadedIsRefusedWithoutIt)
{
    const std::string text = "channel C has nothing loaded; load a clip or a list first";
    EXPECT_EQ(refusal_of([&] { channel.play(start); }), text);
    EXPECT_EQ(refusal_of([&] { channel.jog(start, 1); }), text);
    EXPECT_EQ(refusal_of([&] { channel.go_to(start, 1); }), text);
    EXPECT_EQ(refusal_of([&] { channel.go_live(start, 0, {}); }), text);
    EXPECT_EQ(refusal_of([&] { channel.set_angle(start, 0); }), text);
    EXPECT_EQ(refusal_of([&] { channel.set_loop(start, Loop::loop); }), text);
    EXPECT_EQ(refusal_of([&] { channel.set_out_point(start, 1); }), text);
    EXPECT_EQ(refusal_of([&] { channel.set_edit_mask(start, 0x10); }), text);
}

TEST_F(ChannelTest, WhatLeavesAnEmptyChannelAsItIsIsObeyed)
{
    channel.stop(start);
    channel.unload(start);
    channel.precue_clear(start);
    channel.clear_out_point(start);
    channel.set_edit_mask(start, 0);
    EXPECT_EQ(status(0s), ChannelStatus::idle);
}

TEST_F(ChannelTest, MaterialMustFitItsClip)
{
    const auto refusal = [&](auto change) {
        Material material = whole("news", 100);
        change(material);
        return refusal_of([&] { channel.cue(start, material); });
    };
    EXPECT_EQ(refusal([](Material& m) { m.start = 100; }),
              "clip 'news' of 100 fields cannot take start position 100; 0 to 99 are allowed");
    EXPECT_EQ(refusal([](Material& m) { m.start = 99, m.out_point = 99; }),
              "clip 'news' of 100 fields cannot take out point 99; 100 to 100 are allowed");
    EXPECT_EQ(refusal([](Material& m) { m.out_point = 101; }),
              "clip 'news' of 100 fields cannot take out point 101; 1 to 100 are allowed");
    EXPECT_EQ(refusal([](Material& m) { m.loop_in = 100; }),
              "clip 'news' of 100 fields cannot take loop in 100; 0 to 99 are allowed");
    EXPECT_EQ(refusal([](Material& m) { m.loop_in = 50, m.loop_out = 50; }),
              "clip 'news' of 100 fields cannot take loop out 50; 51 to 100 are allowed");
    EXPECT_EQ(refusal([](Material& m) { m.angle = 1; }),
              "clip 'news' has no angle 1; 0 to 0 are allowed");
    EXPECT_EQ(status(0s), ChannelStatus::idle);
}

TEST_F(ChannelTest, UnloadTakesAllOff)
{
    channel.cue(start, whole("news", 100));
    channel.precue(start, {whole("weather", 100), PrecueCondition::end_of_clip});
    channel.set_edit_mask(start, 0x10);
    channel.play(start);
    channel.unload(start + 1s);
    const ChannelView view = channel.view(start + 1h);
    EXPECT_EQ(view.status, ChannelStatus::idle);
    EXPECT_EQ(view.clip, "");
    EXPECT_EQ(view.precued_clip, "");
    EXPECT_EQ(view.edit_mask, 0);
}

TEST_F(ChannelTest, APrecuedClipWaitsForItsExplicitSwitch)
{
    channel.cue(start, whole("news", 100));
    channel.precue(start, {whole("weather", 1000), PrecueCondition::explicit_switch});
    channel.play(start, 2 * normal_speed);
    EXPECT_EQ(clip_on(1h), "news");
    EXPECT_EQ(channel.view(start).precued_clip, "weather");
    channel.precue_activate(start + 10 * field);
    EXPECT_EQ(clip_on(10 * field), "weather");
    EXPECT_EQ(position(20 * field), 20u);
    EXPECT_EQ(channel.view(start + 1h).precue_condition, std::nullopt);
}

TEST_F(ChannelTest, ActivatingOnAStoppedChannelOnlyCues)
{
    channel.cue(start, whole("news", 100));
    channel.precue(start, {whole("weather", 1000), PrecueCondition::explicit_switch});
    channel.precue_activate(start);
    EXPECT_EQ(clip_on(1s), "weather");
    EXPECT_EQ(status(1s), ChannelStatus::stop);
}

TEST_F(ChannelTest, AnImmediatePrecueSwitchesAtOnce)
{
    channel.cue(start, whole("news", 100));
    channel.play(start);
    channel.precue(start + field, {whole("weather", 1000), PrecueCondition::immediate});
    EXPECT_EQ(clip_on(field), "weather");
    EXPECT_EQ(status(field), ChannelStatus::play);
}

TEST_F(ChannelTest, APrecueAtTheEndOfTheClipFollowsWithoutAGap)
{
    channel.cue(start, whole("news", 100));
    channel.precue(start, {whole("weather", 1000), PrecueCondition::end_of_clip});
    channel.play(start);
    EXPECT_EQ(clip_on(100 * field - 1ns), "news");
    EXPECT_EQ(clip_on(100 * field), "weather");
    EXPECT_EQ(position(150 * field), 50u);
}

TEST_F(ChannelTest, APrecueAtTheEndOfTheClipEndsALoop)
{
    channel.cue(start, looping(Loop::loop));
    channel.play(start);
    channel.precue(start + 250 * field, {whole("weather", 1000), PrecueCondition::end_of_clip2});
    EXPECT_EQ(clip_on(299 * field), "news");
    EXPECT_EQ(clip_on(300 * field), "weather");
}

TEST_F(ChannelTest, APrecueForWhenThePreviousStopsIsCuedThen)
{
    channel.cue(start, whole("news", 100));
    channel.precue(start, {whole("weather", 1000), PrecueCondition::previous_stops});
    channel.play(start);
    channel.stop(start + 50 * field);
    EXPECT_EQ(clip_on(50 * field), "weather");
    EXPECT_EQ(status(1h), ChannelStatus::stop);
    EXPECT_EQ(position(1h), 0u);
}

TEST_F(ChannelTest, APrecueForWhenThePreviousStopsAlsoSeesItsEnd)
{
    channel.cue(start, whole("news", 100));
    channel.precue(start, {whole("weather", 1000), PrecueCondition::previous_stops});
    channel.play(start);
    EXPECT_EQ(clip_on(1h), "weather");
    EXPECT_EQ(status(1h), ChannelStatus::stop);
}

TEST_F(ChannelTest, AClearedPrecueCannotBeActivated)
{
    channel.cue(start, whole("news", 100));
    channel.precue(start, {whole("weather", 1000), PrecueCondition::end_of_clip});
    channel.precue_clear(start);
    EXPECT_EQ(refusal_of([&] { channel.precue_activate(start); }),
              "channel C has nothing precued; precue a clip first");
    channel.play(start);
    EXPECT_EQ(clip_on(1h), "news");
}

TEST_F(ChannelTest, GoLiveShowsTheNewestFieldUntilItIsLeft)
{
    channel.cue(start, whole("news", 100));
    channel.go_live(start, 10, {});
    EXPECT_EQ(status(1s), ChannelStatus::timedelay);
    EXPECT_EQ(position(1s), 89u);
    EXPECT_EQ(channel.view(start).speed, normal_speed);
    EXPECT_NE(refusal_of([&] { channel.go_live(start, 100, {}); }), "(obeyed)");
    channel.stop(start + 1s);
    EXPECT_EQ(status(1s), ChannelStatus::stop);
}

TEST_F(ChannelTest, TakeRunsWhatIsPrecued)
{
    struct Case {
        FollowSpeed follow;
        Speed outgoing;
        Speed expected;
    };
    const Case cases[] = {
        {FollowSpeed::none, 3 * normal_speed, 2 * normal_speed},
        {FollowSpeed::one_x, 3 * normal_speed, normal_speed},
        {FollowSpeed::follow, 3 * normal_speed, 3 * normal_speed},
        {FollowSpeed::smart, 3 * normal_speed, 3 * normal_speed},
        {FollowSpeed::smart, -normal_speed, 2 * normal_speed},
    };
    for (const Case& row : cases) {
        channel.cue(start, whole("news", 100));
        channel.play(start, row.outgoing);
        Material next = whole("weather", 1000);
        next.speed = 2 * normal_speed;
        channel.precue(start, {next, PrecueCondition::explicit_switch});
        channel.take(start, TransitionType::dissolve, 25, row.follow);
        EXPECT_EQ(clip_on(0s), "weather");
        EXPECT_EQ(channel.view(start).speed, row.expected);
        EXPECT_TRUE(channel.view(start + 25 * field - 1ns).transition_in_progress);
        EXPECT_FALSE(channel.view(start + 25 * field).transition_in_progress);
    }
}

TEST_F(ChannelTest, TakeWithNothingReadyIsRefused)
{
    channel.cue(start, whole("news", 100));
    EXPECT_EQ(refusal_of([&] { channel.take(start, TransitionType::cut, 0, FollowSpeed::none); }),
              "channel C has nothing ready to take; precue a clip or queue an element");
}

TEST_F(ChannelTest, InsertEditShowsWhileTheChannelRuns)
{
    channel.cue(start, whole("news", 100));
    channel.set_edit_mask(start, 0x3FF);
    EXPECT_EQ(status(1s), ChannelStatus::stop);
    channel.play(start + 1s);
    EXPECT_EQ(status(1s), ChannelStatus::insert);
    EXPECT_EQ(channel.view(start).edit_mask, 0x3FF);
    channel.set_edit_mask(start + 1s, 0);
    EXPECT_EQ(status(1s), ChannelStatus::play);
}

TEST_F(ChannelTest, MonitoringIsKeptWithoutAClip)
{
    channel.set_ee(start, 0x30, false);
    EXPECT_EQ(channel.view(start).ee_mask, 0x30);
    EXPECT_FALSE(channel.view(start).auto_ee);
}

TEST_F(ChannelTest, AListIsCuedAtItsFirstElementAndPlaysThroughAll)
{
    channel.load_list(start, three_elements());
    EXPECT_EQ(clip_on(1s), "one");
    EXPECT_EQ(channel.view(start).list, "evening");
    EXPECT_EQ(status(1s), ChannelStatus::stop);
    channel.play(start);
    EXPECT_EQ(clip_on(9 * field), "one");
    EXPECT_EQ(clip_on(10 * field), "two");
    EXPECT_EQ(position(15 * field), 105u);
    EXPECT_EQ(clip_on(20 * field), "three");
    EXPECT_EQ(channel.view(start + 20 * field).list_index, 2u);
    EXPECT_EQ(status(30 * field), ChannelStatus::stop);
    EXPECT_EQ(clip_on(1h), "three");
}

TEST_F(ChannelTest, ATurningListBeginsAnew)
{
    channel.load_list(start, three_elements());
    channel.set_loop(start, Loop::loop);
    channel.play(start);
    EXPECT_EQ(channel.view(start).loop, Loop::loop);
    EXPECT_EQ(clip_on(30 * field), "one");
    EXPECT_EQ(clip_on(3045 * field), "two");
}

TEST_F(ChannelTest, AnElementPlaysOrIsCuedAtOnce)
{
    channel.load_list(start, three_elements());
    channel.list_play_now(start, {1, Roll::roll}, 3);
    EXPECT_EQ(clip_on(0s), "two");
    EXPECT_EQ(position(0s), 103u);
    EXPECT_EQ(status(0s), ChannelStatus::play);
    channel.list_play_now(start, {2, Roll::cueonly}, 0);
    EXPECT_EQ(clip_on(1h), "three");
    EXPECT_EQ(status(1h), ChannelStatus::stop);
    EXPECT_EQ(refusal_of([&] {
                  channel.list_play_now(start, {3, Roll::roll}, 0);
              }),
              "the list 'evening' on channel C has no element 3; 0 to 2 are allowed");
    EXPECT_EQ(refusal_of([&] {
                  channel.list_play_now(start, {1, Roll::roll}, 10);
              }),
              "element 1 of the list 'evening' cannot begin 10 fields off its start; -100 to 9 "
              "are allowed");
}

TEST_F(ChannelTest, AQueuedElementFollowsThePresentOne)
{
    channel.load_list(start, three_elements());
    channel.play(start);
    channel.list_play_next(start, {2, Roll::roll});
    ASSERT_TRUE(channel.view(start).list_next);
    EXPECT_EQ(channel.view(start).list_next->index, 2u);
    EXPECT_EQ(clip_on(10 * field), "three");
    EXPECT_EQ(status(15 * field), ChannelStatus::play);
    EXPECT_FALSE(channel.view(start + 10 * field).list_next);
}

TEST_F(ChannelTest, AnElementQueuedToBeCuedHoldsTheList)
{
    channel.load_list(start, three_elements());
    channel.play(start);
    channel.list_play_next(start, {1, Roll::cueonly});
    EXPECT_EQ(clip_on(1h), "two");
    EXPECT_EQ(position(1h), 100u);
    EXPECT_EQ(status(1h), ChannelStatus::stop);
}

TEST_F(ChannelTest, TakeRunsTheNextElementOfAList)
{
    channel.load_list(start, three_elements());
    channel.take(start, TransitionType::cut, 0, FollowSpeed::none);
    EXPECT_EQ(clip_on(0s), "two");
    EXPECT_EQ(status(0s), ChannelStatus::play);
    channel.list_play_next(start, {0, Roll::cueonly});
    channel.take(start, TransitionType::cut, 0, FollowSpeed::none);
    EXPECT_EQ(clip_on(0s), "one");
    EXPECT_EQ(status(0s), ChannelStatus::play);
}

TEST_F(ChannelTest, ListCommandsNeedAListAndPrecuesNeedNone)
{
    channel.cue(start, whole("news", 100));
    EXPECT_EQ(refusal_of([&] {
                  channel.list_play_next(start, {0, Roll::roll});
              }),
              "channel C has no list loaded; load one first");
    channel.load_list(start, three_elements());
    EXPECT_EQ(refusal_of([&] {
                  channel.precue(start, {whole("news", 100), PrecueCondition::immediate});
              }),
              "channel C plays the list 'evening'; queue an element of it instead");
}

TEST_F(ChannelTest, AnElementThatPausesHoldsTheListUntilPlayOrTake)
{
    LoadedList list = three_elements();
    std::vector<Material> elements = *list.elements;
    elements[0].at_end = ListElementAtEnd::pause;
    elements[1].at_end = ListElementAtEnd::pause;
    list.elements = std::make_shared<const std::vector<Material>>(elements);
    channel.load_list(start, list);
    channel.play(start);
    EXPECT_EQ(clip_on(1h), "one");
    EXPECT_EQ(position(1h), 9u);
    EXPECT_EQ(status(1h), ChannelStatus::stop);
    channel.play(start + 1h);
    EXPECT_EQ(clip_on(1h), "two");
    EXPECT_EQ(position(1h), 100u);
    EXPECT_EQ(position(2h), 109u);
    channel.take(start + 2h, TransitionType::cut, 0, FollowSpeed::none);
    EXPECT_EQ(clip_on(2h), "three");
    EXPECT_EQ(status(2h), ChannelStatus::play);
}

TEST_F(ChannelTest, APausedElementThatIsJoggedPlaysOnInItself)
{
    LoadedList list = three_elements();
    std::vector<Material> elements = *list.elements;
    elements[0].at_end = ListElementAtEnd::pause;
    list.elements = std::make_shared<const std::vector<Material>>(elements);
    channel.load_list(start, list);
    channel.play(start);
    channel.jog(start + 1h, -5);
    channel.play(start + 1h);
    EXPECT_EQ(clip_on(1h), "one");
    EXPECT_EQ(position(1h), 4u);
    channel.play(start + 2h, -normal_speed);
    EXPECT_EQ(clip_on(2h), "one");
    EXPECT_EQ(position(3h), 0u);
}

TEST_F(ChannelTest, AnElementThatLoopsTurnsUntilAnotherIsQueued)
{
    LoadedList list = three_elements();
    std::vector<Material> elements = *list.elements;
    elements[1].at_end = ListElementAtEnd::loop;
    list.elements = std::make_shared<const std::vector<Material>>(elements);
    channel.load_list(start, list);
    channel.play(start);
    EXPECT_EQ(clip_on(10 * field), "two");
    EXPECT_EQ(position(19 * field), 109u);
    EXPECT_EQ(position(20 * field), 100u);
    EXPECT_EQ(position(1005 * field), 105u);
    channel.list_play_next(start + 1005 * field, {2, Roll::roll});
    EXPECT_EQ(clip_on(1009 * field), "two");
    EXPECT_EQ(clip_on(1010 * field), "three");
}

TEST_F(ChannelTest, TheNextElementIsLockedInTheLastSecondBeforeIt)
{
    LoadedList list = three_elements();
    list.elements = std::make_shared<const std::vector<Material>>(
        std::vector{whole("one", 100), whole("two", 100)});
    channel.load_list(start, list);
    const auto locked = [&](std::chrono::nanoseconds time) {
        return channel.view(start + time).list_locked;
    };
    EXPECT_EQ(channel.view(start).list_follows, 1u);
    EXPECT_EQ(locked(1h), std::nullopt);
    channel.play(start);
    EXPECT_EQ(locked(50 * field - 1ns), std::nullopt);
    EXPECT_EQ(locked(50 * field), 1u);
    EXPECT_EQ(locked(100 * field), std::nullopt);
    EXPECT_EQ(channel.view(start + 100 * field).list_follows, std::nullopt);
    EXPECT_EQ(locked(199 * field), std::nullopt);
}

TEST_F(ChannelTest, AChannelThatLoopsItsRecordingRecords)
{
    channel.cue(start, looping(Loop::record));
    channel.play(start);
    EXPECT_EQ(status(1h), ChannelStatus::record);
    channel.stop(start + 1h);
    EXPECT_EQ(status(1h), ChannelStatus::stop);
}

TEST_F(ChannelTest, JumpsCountWhatIsNotReachedByMoving)
{
    channel.cue(start, looping(Loop::loop));
    channel.play(start);
    const std::uint32_t jumps = channel.view(start).jumps;
    EXPECT_EQ(channel.view(start + 1h).jumps, jumps);
    channel.jog(start + 1h, 1);
    EXPECT_GT(channel.view(start + 1h).jumps, jumps);
}

TEST_F(ChannelTest, CatchingUpShowsNowhere)
{
    channel.load_list(start, three_elements());
    channel.set_loop(start, Loop::loop);
    channel.play(start);
    Channel other = channel;
    for (int i = 1; i <= 1000; ++i) {
        other.catch_up(start + i * 7ms);
    }
    const ChannelView expected = channel.view(start + 7s);
    const ChannelView seen = other.view(start + 7s);
    EXPECT_EQ(seen.clip, expected.clip);
    EXPECT_EQ(seen.position, expected.position);
    EXPECT_EQ(seen.jumps, expected.jumps);
    EXPECT_EQ(seen.list_index, expected.list_index);
}

} // namespace veltosim
