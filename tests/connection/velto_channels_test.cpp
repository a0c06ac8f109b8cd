#include "connection/velto.h"

#include "support/await.h"
#include "support/channel_list.h"
#include "support/channel_reports.h"

#include <functional>

#include <gtest/gtest.h>

namespace
{

// A connection without a link, which is fed with what a server would send.
class ChannelCache : public testing::Test
{
protected:
    void feed(const std::string& message)
    {
        connection->feed_bytes(message.data(), message.size());
        EXPECT_FALSE(connection->is_stream_broken());
    }

    ChannelState& state(char channel)
    {
        return *connection->channel_state(static_cast<std::uint32_t>(channel - 'A'));
    }

    // The items of a channel that a report has come for, in their order.
    std::string received(char channel)
    {
        std::string words;
        for (const ChannelItem* item : state(channel).items()) {
            EXPECT_EQ(item->channel_item_registered, 0u); // a report never sets that
            if (item->channel_item_received != 0) {
                words += (words.empty() ? "" : " ") + ZAVL3::to_wire(item->type).to_utf8();
            }
        }
        return words;
    }

    std::string list(char channel) { return describe(state(channel).list_play.value); }

    // All that are pending, each as its kind and the channel's letter.
    std::string notices()
    {
        std::string text;
        std::uint32_t kind = 0;
        std::uint32_t channel = 0;
        while (connection->notices.wait_notice(0, &kind, &channel), kind != 0) {
            text += (text.empty() ? "" : " ") + std::to_string(kind);
            text += static_cast<char>('A' + channel);
        }
        return text;
    }

    ARef<VeltoConnObject> connection = ARef<VeltoConnObject>::create();
};

TEST_F(ChannelCache, StartsFresh)
{
    for (char channel = 'A'; channel <= 'H'; ++channel) {
        EXPECT_EQ(received(channel), "");
    }
    EXPECT_EQ(notices(), "");
}

TEST_F(ChannelCache, HasEightChannels)
{
    EXPECT_NE(connection->channel_state(7), nullptr);
    EXPECT_EQ(connection->channel_state(8), nullptr);
    EXPECT_EQ(connection->channel_state(0xFFFFFFFF), nullptr);
}

TEST_F(ChannelCache, KeepsTheStatus)
{
    feed(status_report('C', "record"));
    EXPECT_EQ(state('C').status.value, ZAVL3::word<ZAVL3::ChannelStatus>("record"));
    EXPECT_EQ(received('C'), "status");
    EXPECT_EQ(notices(), "5C");
}

TEST_F(ChannelCache, DropsTheClipOfAStatus)
{
    feed(channel_report("channel_status", 'A',
                        "<ChannelStatus>play</ChannelStatus><ClipID>news_open</ClipID>"));
    EXPECT_EQ(describe(state('A').clip_id.value), "");
    EXPECT_EQ(received('A'), "status");
    EXPECT_EQ(notices(), "5A");
}

TEST_F(ChannelCache, KeepsTheClip)
{
    feed(clip_report('B', " news &amp; weather "));
    EXPECT_EQ(describe(state('B').clip_id.value), " news & weather ");
    EXPECT_EQ(received('B'), "clipid");
    EXPECT_EQ(notices(), "1B");
}

TEST_F(ChannelCache, KeepsTheSpeed)
{
    feed(speed_report('H', "-1.5X"));
    EXPECT_EQ(state('H').speed.value, -98304);
    EXPECT_EQ(received('H'), "speed");
    EXPECT_EQ(notices(), "7H");
}

TEST_F(ChannelCache, KeepsThePositionAndBothTimecodes)
{
    feed(position_report('A', "4294967295"));
    const ChannelTimecodes& timecode = state('A').timecode.value;
    EXPECT_EQ(timecode.position, 4294967295u);
    EXPECT_EQ(describe(timecode.display_timecode), "{true, -, 90000, -}");
    EXPECT_EQ(describe(timecode.input_timecode), "{false, -, -, -}");
    EXPECT_EQ(received('A'), "timecode");
    EXPECT_EQ(notices(), "3A");
}

TEST_F(ChannelCache, KeepsTheInformationAndRaisesFiveNotices)
{
    feed(info_report('F', "<ClipLength>1500</ClipLength><Angle>2</Angle>"));
    EXPECT_EQ(describe(state('F').info.value),
              "{news_open, 1500, -, -, -, -, -, -, 2, -, -, -, -, -, -, -, -}");
    EXPECT_EQ(received('F'), "info");
    EXPECT_EQ(notices(), "2F 4F 6F 8F 9F");
}

TEST_F(ChannelCache, NothingOfAFormerInformationIsLeft)
{
    feed(info_report('A', "<ClipLength>1500</ClipLength><Loop>loop</Loop>"));
    feed(info_report('A', "<PrecueCount>1</PrecueCount>"));
    EXPECT_EQ(describe(state('A').info.value),
              "{news_open, -, -, -, -, -, -, -, -, -, -, -, -, 1, -, -, -}");
    EXPECT_EQ(state('A').info.value.get<"ClipLength">().value, 0u); // what is absent reads so
}

TEST_F(ChannelCache, HoldsTheLastReport)
{
    for (const char* speed : {"1X", "2X", "-0.25X"}) {
        feed(speed_report('A', speed));
    }
    EXPECT_EQ(state('A').speed.value, -16384);
    EXPECT_EQ(notices(), "7A");
}

TEST_F(ChannelCache, KeepsChannelsApart)
{
    for (char channel = 'A'; channel <= 'H'; ++channel) {
        feed(position_report(channel, std::to_string(1000 + channel)));
    }
    for (char channel = 'A'; channel <= 'H'; ++channel) {
        EXPECT_EQ(state(channel).timecode.value.position, 1000u + static_cast<unsigned>(channel));
        EXPECT_EQ(received(channel), "timecode");
    }
    EXPECT_EQ(notices(), "3A 3B 3C 3D 3E 3F 3G 3H");
}

TEST_F(ChannelCache, TakesAListWithItsMode)
{
    feed(list_report("list", 'B', list_loaded("evening")));
    EXPECT_EQ(list('B'), "loaded evening, mode 1, [], now -, next -, lock -, loop -");
}

TEST_F(ChannelCache, FollowsAListElementByElement)
{
    feed(list_report("list", 'A', list_loaded("evening")));
    feed(list_report("item_exists", 'A', list_item(0, "a")));
    feed(list_report("item_exists", 'A', list_item(3, "d")));
    feed(list_report("item_exists", 'A', list_hole(1)));
    EXPECT_EQ(list('A'), "loaded evening, mode 1, [a, -, -, d], now -, next -, lock -, loop -");

    feed(list_report("air_now", 'A', on_air(0)));
    feed(list_report("air_next", 'A', on_air(1)));
    feed(list_report("air_lock", 'A', on_air(3)));
    feed(list_report("loop", 'A', "<Loop>pingpong</Loop>"));
    EXPECT_EQ(list('A'), "loaded evening, mode 1, [a, -, -, d], now 0, next 1, lock 3, loop 3");

    feed(list_report("item_insert", 'A', list_item(1, "b")));
    EXPECT_EQ(list('A'), "loaded evening, mode 1, [a, b, -, -, d], now 0, next 2, lock 4, loop 3");
    feed(list_report("item_remove", 'A', list_item(0)));
    EXPECT_EQ(list('A'), "loaded evening, mode 1, [b, -, -, d], now -, next 1, lock 3, loop 3");
    feed(list_report("air_next", 'A', off_air));
    EXPECT_EQ(list('A'), "loaded evening, mode 1, [b, -, -, d], now -, next -, lock 3, loop 3");

    feed(list_report("clear_all", 'A'));
    EXPECT_EQ(list('A'), "loaded evening, mode 1, [], now -, next -, lock -, loop 3");
    feed(list_report("unloaded", 'A'));
    EXPECT_EQ(list('A'), "unloaded evening, mode -, [], now -, next -, lock -, loop 3");
}

TEST_F(ChannelCache, CountsTheListOfAChannel)
{
    feed(list_report("list", 'A', list_loaded("evening")));
    feed(list_report("item_exists", 'A', list_item(0, "a")));
    feed(list_report("item_exists", 'A', list_item(1, "b")));
    feed(list_report("item_exists", 'A', list_hole(2)));
    EXPECT_EQ(state('A').list_play.value.count(), 2u);
    feed(list_report("item_exists", 'A', list_item(2, "c")));
    feed(list_report("item_exists", 'A', list_hole(1)));
    EXPECT_EQ(state('A').list_play.value.count(), 3u);
}

// One report of each kind that the cache takes.
struct CachedReport {
    const char* name;
    std::string fields;
};

const CachedReport cached_reports[] = {
    {"channel_status", "<ChannelStatus>play</ChannelStatus>"},
    {"channel_clipid", "<ClipID>news_open</ClipID>"},
    {"channel_speed", "<Speed>1X</Speed>"},
    {"channel_timecode", position_fields("250")},
    {"channel_info", info_fields("")},
    {"channel_listplay_list", list_loaded("evening")},
    {"channel_listplay_unloaded", ""},
    {"channel_listplay_item_exists", list_item(0, "a")},
    {"channel_listplay_item_insert", list_item(0, "a")},
    {"channel_listplay_item_remove", list_item(0)},
    {"channel_listplay_clear_all", ""},
    {"channel_listplay_air_now", on_air(0)},
    {"channel_listplay_air_lock", on_air(0)},
    {"channel_listplay_air_next", on_air(0)},
    {"channel_listplay_loop", "<Loop>loop</Loop>"},
};

// Wanted, odd as it is: the list getters wait in vain, and those of the information do not.
TEST_F(ChannelCache, AnyListReportCountsAsInformationAndNeverAsList)
{
    for (const CachedReport& report : cached_reports) {
        if (!std::string(report.name).starts_with("channel_listplay_")) {
            continue;
        }
        connection = ARef<VeltoConnObject>::create();
        feed(channel_report(report.name, 'D', report.fields));
        EXPECT_TRUE(connection->message_ok) << report.name;
        EXPECT_EQ(received('D'), "info") << report.name;
        EXPECT_EQ(notices(), "") << report.name;
    }
}

TEST_F(ChannelCache, DropsEveryReportOfAnotherChannel)
{
    EXPECT_EQ(std::size(cached_reports), 15u);
    const std::string empty_list = list('A');
    for (const CachedReport& report : cached_reports) {
        for (char channel = 'I'; channel <= 'L'; ++channel) {
            feed(channel_report(report.name, channel, report.fields));
            EXPECT_TRUE(connection->message_ok) << report.name;
        }
    }
    EXPECT_EQ(notices(), "");
    for (char channel = 'A'; channel <= 'H'; ++channel) {
        EXPECT_EQ(received(channel), "");
        EXPECT_EQ(list(channel), empty_list);
    }
}

TEST_F(ChannelCache, DropsAReportThatCannotBeReadAndTakesTheNext)
{
    const std::function<std::string()> bad_reports[] = {
        [] { return status_report('A', "Play"); },
        [] { return channel_report("channel_clipid", 'A'); },
        [] { return speed_report('A', "fast"); },
        [] { return position_report('A', "-1"); },
        [] { return info_report('A', "<Angle>256</Angle>"); },
        [] { return list_report("item_exists", 'A', list_item(65536, "a")); },
        [] { return list_report("air_now", 'A', on_air(-1)); },
        [] { return status_report('M', "play"); },
    };
    for (const auto& bad_report : bad_reports) {
        feed(bad_report());
        EXPECT_FALSE(connection->message_ok) << bad_report();
        EXPECT_EQ(received('A'), "") << bad_report();
        EXPECT_EQ(notices(), "") << bad_report();
    }
    feed(status_report('A', "play"));
    EXPECT_EQ(received('A'), "status");
    EXPECT_EQ(notices(), "5A");
}

TEST_F(ChannelCache, IgnoresTheReportsOfTheAuxiliaryAudio)
{
    feed(channel_report("channel_aux_audio_speed", 'A', "<Speed>1X</Speed>"));
    feed(channel_report("channel_aux_audio_info", 'A', info_fields("")));
    feed(list_report("modified", 'A', "<ModifiedFlag>modified</ModifiedFlag>"));
    EXPECT_TRUE(connection->message_ok);
    EXPECT_EQ(received('A'), "");
    EXPECT_EQ(notices(), "");
}

// The readers meet the worker at the item's lock: what one read gives comes from one report.
TEST_F(ChannelCache, OneReadGivesTheFieldsOfOneReport)
{
    constexpr int readings = 500;
    state('A').info.channel_item_registered = 1;
    feed(info_report('A', "<AngleCount>0</AngleCount><Angle>0</Angle>"));
    const auto read_on = [this] {
        int torn = 0;
        for (int i = 0; i < readings; ++i) {
            std::pair<unsigned, unsigned> angles{1, 2};
            VeltoConnObject::read_channel(
                connection, 0, &ChannelState::info, [&](const ZAVL3::ChannelInformation& info) {
                    angles = {info.get<"Angle">().value, info.get<"AngleCount">().value};
                });
            torn += angles.first != angles.second;
        }
        return torn;
    };
    auto first = in_thread(read_on);
    auto second = in_thread(read_on);
    for (int i = 0; i < readings; ++i) {
        const std::string angle = std::to_string(i % 256);
        feed(info_report('A', xml_element("AngleCount", angle) + xml_element("Angle", angle)));
    }
    EXPECT_EQ(await(std::move(first)), 0);
    EXPECT_EQ(await(std::move(second)), 0);
}

} // namespace
