#include "sim/reports.h"

#include <chrono>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "sim/commands.h"
#include "sim/report_source.h"
#include "sim/scenario.h"

namespace veltosim
{

using namespace std::chrono_literals;

namespace
{

using Messages = std::vector<std::string>;

constexpr auto field = 20ms;

// A client beside a server whose clock is the test's.
class ReportsTest : public testing::Test
{
protected:
    Station station{"studio", *find_standard("1080_50i"), default_scenario().clips};
    Registrations registrations;
    std::optional<ReportSource> source{std::in_place, station, station.standard.field_rate};
    TimePoint now{};

    // What the client receives for the command: the reply, and the reports right behind it.
    Messages tell(const std::string& content)
    {
        Messages received =
            answer(station, registrations, "<cmd><xid>7</xid>" + content + "</cmd>", now);
        append(received, source->after_command(now));
        return received;
    }
    // The same without the reply, which is to be `ok`.
    Messages obey(const std::string& content)
    {
        Messages received = tell(content);
        EXPECT_EQ(received.front(), "<reply><xid>7</xid><ok/></reply>");
        received.erase(received.begin());
        return received;
    }
    // What comes at the beginnings of fields within `time`.
    Messages wait(std::chrono::nanoseconds time)
    {
        Messages received;
        const TimePoint end = now + time;
        for (now = next_field(now, station.standard.field_rate); now <= end;
             now = next_field(now, station.standard.field_rate)) {
            append(received, source->at_field(now));
        }
        now = end;
        return received;
    }

private:
    void append(Messages& received, const ReportRound& round)
    {
        const Messages news = registrations.channel_reports.news(round, station.standard);
        received.insert(received.end(), news.begin(), news.end());
    }
};

std::string on(char letter, const std::string& command, const std::string& fields = "")
{
    return "<" + command + "><Channel>" + letter + "</Channel>" + fields + "</" + command + ">";
}

std::string registering(char letter, const std::string& type)
{
    return on(letter, "channel_report_register",
              "<ChannelReportType>" + type + "</ChannelReportType>");
}

std::string report(char letter, const std::string& kind, const std::string& fields = "")
{
    return "<report><" + kind + "><Channel>" + letter + "</Channel>" + fields + "</" + kind +
           "></report>";
}

std::string status(const std::string& word, const std::string& clip = "news_open")
{
    return report('A', "channel_status",
                  "<ChannelStatus>" + word + "</ChannelStatus>" +
                      (clip.empty() ? "" : "<ClipID>" + clip + "</ClipID>"));
}

std::string speed(const std::string& text)
{
    return report('A', "channel_speed", "<Speed>" + text + "</Speed>");
}

std::string valid_timecode(const std::string& name, std::uint64_t number,
                           const std::string& standard = "1080_50i",
                           const std::string& flag = "ndf")
{
    return "<" + name + "><Valid>true</Valid><VideoStandard>" + standard +
           "</VideoStandard><FieldNumber>" + std::to_string(number) +
           "</FieldNumber><DropFrameFlag>" + flag + "</DropFrameFlag></" + name + ">";
}

std::string timecode(std::uint64_t position, std::uint64_t input)
{
    return report('A', "channel_timecode",
                  "<ClipPosition>" + std::to_string(position) + "</ClipPosition>" +
                      valid_timecode("DisplayTimecode", position) +
                      valid_timecode("InputTimecode", input));
}

std::string list_index(const std::string& kind, int index)
{
    const std::string inside = index < 0
                                   ? "<ListPlaybackIndex/>"
                                   : "<ListPlaybackIndex><ListIndex>" + std::to_string(index) +
                                         "</ListIndex></ListPlaybackIndex>";
    return report('A', "channel_listplay_" + kind, inside);
}

std::string part(const std::string& message, const std::string& tag)
{
    const std::size_t begin = message.find("<" + tag + ">");
    const std::size_t end = message.find("</" + tag + ">");
    return begin == message.npos || end == message.npos
               ? "(none)"
               : message.substr(begin + tag.size() + 2, end - begin - tag.size() - 2);
}

const std::string news = "<ClipID>news_open</ClipID>";

} // namespace

TEST_F(ReportsTest, ARegistrationBringsTheFreshReportOfEachKind)
{
    struct Case {
        const char* type;
        std::string message;
    };
    now += 10 * field;
    const Case cases[] = {
        {"status", status("idle", "")},
        {"clipid", report('A', "channel_clipid", "<ClipID></ClipID>")},
        {"speed", speed("0X")},
        {"timecode", report('A', "channel_timecode",
                            "<ClipPosition>0</ClipPosition><DisplayTimecode><Valid>false</Valid>"
                            "</DisplayTimecode>" +
                                valid_timecode("InputTimecode", 10))},
        {"info", report('A', "channel_info",
                        "<ChannelInformation><ClipID></ClipID><EEStatus><SonyEditMask>0"
                        "</SonyEditMask><AutoEE>true</AutoEE></EEStatus><PrecueCount>0"
                        "</PrecueCount><TransitionInProgress>false</TransitionInProgress>"
                        "</ChannelInformation>")},
        {"listplay", report('A', "channel_listplay_unloaded")},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(obey(registering('A', row.type)), Messages{row.message});
    }
    EXPECT_EQ(wait(1s), Messages{});
}

TEST_F(ReportsTest, ARepeatedRegistrationBringsTheReportAgain)
{
    obey(registering('A', "speed"));
    EXPECT_EQ(obey(registering('A', "speed")), Messages{speed("0X")});
}

TEST_F(ReportsTest, WithoutARegistrationNothingIsReported)
{
    EXPECT_EQ(obey(on('A', "cue_clip", news)), Messages{});
    EXPECT_EQ(obey(on('A', "play")), Messages{});
    EXPECT_EQ(wait(1s), Messages{});
}

TEST_F(ReportsTest, OnlyTheRegisteredKindOfTheRegisteredChannelIsReported)
{
    obey(registering('A', "speed"));
    obey(on('A', "cue_clip", news));
    obey(on('B', "cue_clip", news));
    EXPECT_EQ(obey(on('B', "play")), Messages{});
    EXPECT_EQ(obey(on('A', "play")), Messages{speed("1X")});
    EXPECT_EQ(wait(1s), Messages{});
}

TEST_F(ReportsTest, RegistrationsThatCannotBeServedAreRefusedAndForgotten)
{
    for (const char* type : {"peak", "aux_audio_info", "chaseplay", "no_such_kind"}) {
        const Messages received = tell(registering('A', type));
        ASSERT_EQ(received.size(), 1u) << type;
        EXPECT_NE(received[0].find("<error><ErrorMessage>studio: channel_report_register: "),
                  std::string::npos)
            << received[0];
    }
    EXPECT_EQ(part(tell(registering('A', "peak"))[0], "ErrorMessage"),
              "studio: channel_report_register: this server sends no reports 'peak'; it sends "
              "status, clipid, speed, timecode, info or listplay");
    EXPECT_EQ(tell(registering('M', "status")).size(), 1u);
    EXPECT_TRUE(registrations.channel_reports.empty());
}

TEST_F(ReportsTest, StatusPassesThroughCueingStopPlayAndStop)
{
    obey(registering('A', "status"));
    EXPECT_EQ(obey(on('A', "cue_clip", news)), Messages{status("cueing")});
    EXPECT_EQ(wait(1s), Messages{status("stop")});
    EXPECT_EQ(obey(on('A', "play")), Messages{status("play")});
    EXPECT_EQ(wait(1s), Messages{});
    EXPECT_EQ(obey(on('A', "stop")), Messages{status("stop")});
    EXPECT_EQ(obey(on('A', "stop")), Messages{});
    EXPECT_EQ(obey(on('A', "unload")), Messages{status("idle", "")});
}

TEST_F(ReportsTest, AClipThatEndsByItselfIsReported)
{
    obey(on('A', "cue_clip", news + "<GotoPosition>1490</GotoPosition>"));
    wait(1s);
    obey(registering('A', "status"));
    obey(registering('A', "speed"));
    EXPECT_EQ(obey(on('A', "play")), (Messages{status("play"), speed("1X")}));
    EXPECT_EQ(wait(9 * field), Messages{});
    EXPECT_EQ(wait(field), (Messages{status("stop"), speed("0X")}));
}

TEST_F(ReportsTest, RecordAndInsertAreReported)
{
    obey(registering('A', "status"));
    obey(on('A', "cue_clip", "<ClipID>studio_feed</ClipID>"));
    EXPECT_EQ(obey(on('A', "play")), Messages{status("record", "studio_feed")});
    EXPECT_EQ(obey(on('A', "insert_edit", "<SonyEditMask>16</SonyEditMask>")),
              Messages{status("insert", "studio_feed")});
}

TEST_F(ReportsTest, ClipsAreReportedByTheirNames)
{
    obey(registering('A', "clipid"));
    EXPECT_EQ(obey(on('A', "cue_clip", news)),
              Messages{report('A', "channel_clipid", "<ClipID>news_open</ClipID>")});
    EXPECT_EQ(obey(on('A', "cue_clip", news)), Messages{});
    EXPECT_EQ(obey(on('A', "unload")),
              Messages{report('A', "channel_clipid", "<ClipID></ClipID>")});
}

TEST_F(ReportsTest, SpeedsAreWrittenExactly)
{
    struct Case {
        const char* sent;
        const char* told;
    };
    const Case cases[] = {{"-0.5X", "-0.5X"},     {"200X", "200X"},
                          {"-200X", "-200X"},     {"1", "0.0000152587890625X"},
                          {"98304", "1.5X"},      {"-1", "-0.0000152587890625X"},
                          {"0X", "0X"},           {"65535", "0.9999847412109375X"},
                          {"3.0625X", "3.0625X"}, {"1X", "1X"}};
    obey(on('A', "cue_clip", "<ClipID>interview</ClipID><GotoPosition>45000</GotoPosition>"));
    obey(on('A', "play", "<Speed>7X</Speed>"));
    obey(registering('A', "speed"));
    for (const Case& row : cases) {
        EXPECT_EQ(obey(on('A', "play", std::string("<Speed>") + row.sent + "</Speed>")),
                  Messages{speed(row.told)});
    }
}

TEST_F(ReportsTest, PositionsComeWithEachFieldWhileAChannelMoves)
{
    obey(on('A', "cue_clip", news));
    EXPECT_EQ(obey(registering('A', "timecode")), Messages{timecode(0, 0)});
    EXPECT_EQ(wait(1s), Messages{});
    EXPECT_EQ(obey(on('A', "play")), Messages{});
    EXPECT_EQ(wait(3 * field), (Messages{timecode(1, 51), timecode(2, 52), timecode(3, 53)}));
    EXPECT_EQ(wait(997 * field).size(), 997u);
    obey(on('A', "stop"));
    EXPECT_EQ(wait(1s), Messages{});
}

TEST_F(ReportsTest, PositionsOfASlowMotionComeWhenTheyChange)
{
    obey(on('A', "cue_clip", news));
    obey(registering('A', "timecode"));
    obey(on('A', "play", "<Speed>0.25X</Speed>"));
    EXPECT_EQ(wait(8 * field), (Messages{timecode(1, 4), timecode(2, 8)}));
}

TEST_F(ReportsTest, TheReportRateThinsPositionsOut)
{
    source.emplace(station, FieldRate{10, 1});
    obey(on('A', "cue_clip", news));
    obey(registering('A', "timecode"));
    wait(1s);
    obey(on('A', "play"));
    EXPECT_EQ(wait(2s).size(), 20u);
    obey(on('A', "play", "<Speed>-1X</Speed>"));
    EXPECT_EQ(wait(200ms).size(), 2u);
}

TEST_F(ReportsTest, AStopAndAJumpAreToldAtOnceWhateverTheRate)
{
    source.emplace(station, FieldRate{1, 1});
    obey(on('A', "cue_clip", news));
    obey(registering('A', "timecode"));
    wait(1s);
    obey(on('A', "play"));
    wait(10 * field);
    EXPECT_EQ(obey(on('A', "set_loop", "<Loop>loop</Loop>")), Messages{});
    EXPECT_EQ(obey(on('A', "stop")), Messages{timecode(10, 60)});
    EXPECT_EQ(obey(on('A', "stop")), Messages{});
    EXPECT_EQ(obey(on('A', "jog", "<JogDistance>-3</JogDistance>")), Messages{timecode(7, 60)});
    EXPECT_EQ(obey(on('A', "gotocmd", "<GotoPosition>500</GotoPosition>")),
              Messages{timecode(500, 60)});
}

TEST_F(ReportsTest, TheEndOfAClipIsToldAtTheNextFieldWhateverTheRate)
{
    source.emplace(station, FieldRate{1, 1});
    obey(on('A', "cue_clip", news + "<GotoPosition>1490</GotoPosition>"));
    wait(1s);
    obey(registering('A', "timecode"));
    obey(on('A', "play"));
    EXPECT_EQ(wait(20 * field), Messages{timecode(1499, 60)});
}

TEST_F(ReportsTest, ASlowClientGetsNoPositionsAndThenTheNewest)
{
    obey(on('A', "cue_clip", news));
    obey(registering('A', "timecode"));
    obey(registering('A', "status"));
    wait(1s);
    obey(on('A', "play"));
    now += 5 * field;
    ReportRound round = source->at_field(now);
    round.positions = Positions::none;
    EXPECT_EQ(registrations.channel_reports.news(round, station.standard), Messages{});
    answer(station, registrations, "<cmd><xid>7</xid>" + on('A', "stop") + "</cmd>", now);
    round = source->after_command(now);
    round.positions = Positions::none;
    EXPECT_EQ(registrations.channel_reports.news(round, station.standard),
              Messages{status("stop")});
    EXPECT_EQ(wait(1s), Messages{timecode(5, 56)});
}

TEST_F(ReportsTest, DropFrameTimecodeIsThatOfTheFractionalRates)
{
    struct Case {
        const char* standard;
        const char* flag;
    };
    for (const Case& row : {Case{"1080_59_94i", "df"}, Case{"1080_29_97p", "df"},
                            Case{"1080_60i", "ndf"}, Case{"1080_23_98p", "ndf"}}) {
        Station other("studio", *find_standard(row.standard), default_scenario().clips);
        Registrations client;
        const std::string command = "<cmd><xid>7</xid>" + registering('A', "timecode") + "</cmd>";
        answer(other, client, command, now);
        ReportSource there(other, other.standard.field_rate);
        const Messages told = client.channel_reports.news(there.after_command(now), other.standard);
        ASSERT_EQ(told.size(), 1u);
        EXPECT_NE(told[0].find(valid_timecode("InputTimecode", 0, row.standard, row.flag)),
                  std::string::npos)
            << told[0];
    }
}

TEST_F(ReportsTest, InfoTellsAllThatIsKnownOfTheClip)
{
    obey(on('A', "cue_clip", "<ClipID>weather_map</ClipID><Speed>1.5X</Speed>"));
    EXPECT_EQ(
        obey(registering('A', "info")),
        Messages{report('A', "channel_info",
                        "<ChannelInformation><ClipID>weather_map</ClipID><ClipLength>1250"
                        "</ClipLength><Interp>auto</Interp><Loop>loopto</Loop><LoopIn>250</LoopIn>"
                        "<LoopOut>1000</LoopOut><Playback>auto</Playback><AngleCount>1"
                        "</AngleCount><Angle>0</Angle><AudioTrackCount>0</AudioTrackCount>"
                        "<EEStatus><SonyEditMask>0</SonyEditMask><AutoEE>true</AutoEE></EEStatus>"
                        "<PrecueCount>0</PrecueCount><TransitionInProgress>false"
                        "</TransitionInProgress><NaturalSpeed>1.5X</NaturalSpeed>"
                        "</ChannelInformation>")});
}

TEST_F(ReportsTest, InfoFollowsEachOfItsFields)
{
    struct Case {
        std::string command;
        const char* tag;
        const char* value;
    };
    obey(on('A', "cue_clip", "<ClipID>sport_replay</ClipID><Playback>field</Playback>"));
    const Messages fresh = obey(registering('A', "info"));
    ASSERT_EQ(fresh.size(), 1u);
    EXPECT_EQ(part(fresh[0], "Playback"), "field");
    EXPECT_EQ(part(fresh[0], "Interp"), "on");
    EXPECT_EQ(part(fresh[0], "AngleCount"), "6");
    const Case cases[] = {
        {on('A', "set_loop", "<Loop>loop</Loop>"), "Loop", "loop"},
        {on('A', "set_out_point", "<ClipPosition>1500</ClipPosition>"), "LoopOut", "1500"},
        {on('A', "iso_angle", "<Angle>4</Angle>"), "Angle", "4"},
        {on('A', "ee", "<SonyEditMask>48</SonyEditMask><AutoEE>true</AutoEE>"), "SonyEditMask",
         "48"},
        {on('A', "ee", "<SonyEditMask>48</SonyEditMask><AutoEE>false</AutoEE>"), "AutoEE", "false"},
        {on('A', "precue", "<ClipID>weather</ClipID>"), "PrecueCount", "1"},
        {on('A', "precue_clear"), "PrecueCount", "0"},
        {on('A', "precue", "<ClipID>sport_goal</ClipID>"), "PrecueCount", "1"},
        {on('A', "take",
            "<TransitionType>dissolve</TransitionType><TransitionDuration>10"
            "</TransitionDuration>"),
         "TransitionInProgress", "true"},
    };
    for (const Case& row : cases) {
        const Messages told = obey(row.command);
        ASSERT_EQ(told.size(), 1u) << row.command;
        EXPECT_EQ(part(told[0], row.tag), row.value) << told[0];
        EXPECT_EQ(
            obey(row.command.find("take") == row.command.npos ? row.command : on('B', "stop")),
            Messages{})
            << row.command;
    }
    const Messages end = wait(10 * field);
    ASSERT_EQ(end.size(), 1u);
    EXPECT_EQ(part(end[0], "TransitionInProgress"), "false");
    EXPECT_EQ(part(end[0], "ClipID"), "sport_goal");
    EXPECT_EQ(part(end[0], "PrecueCount"), "0");
}

TEST_F(ReportsTest, ALoadedListIsToldElementByElement)
{
    const auto element = [](int index, const std::string& content) {
        return report('A', "channel_listplay_item_exists",
                      "<ListIndex>" + std::to_string(index) + "</ListIndex><ListElement>" +
                          content + "</ListElement>");
    };
    const Messages whole{
        report('A', "channel_listplay_list",
               "<ListID>sport_desk</ListID><ListPlayMode>pgm_pvw</ListPlayMode>"),
        report('A', "channel_listplay_clear_all"),
        element(0, "<ContentID><ClipID>sport_intro</ClipID></ContentID><GotoPosition>0"
                   "</GotoPosition><Speed>1X</Speed><Angle>0</Angle><ListElementAtEnd>take"
                   "</ListElementAtEnd>"),
        element(1, "<ContentID><ClipID>sport_goal</ClipID></ContentID><GotoPosition>0"
                   "</GotoPosition><Speed>1X</Speed><Angle>2</Angle><ListElementAtEnd>take"
                   "</ListElementAtEnd>"),
        element(2, "<ContentID><ClipID>sport_replay</ClipID></ContentID><GotoPosition>0"
                   "</GotoPosition><ClipPosition>500</ClipPosition><Speed>1X</Speed><Angle>0"
                   "</Angle><ListElementAtEnd>take</ListElementAtEnd>"),
        element(3, "<ContentID><VClipID>goals_of_the_day</VClipID></ContentID><GotoPosition>0"
                   "</GotoPosition><Speed>1X</Speed><Angle>0</Angle><ListElementAtEnd>take"
                   "</ListElementAtEnd>"),
        report('A', "channel_listplay_loop", "<Loop>off</Loop>"),
        list_index("air_now", 0),
        list_index("air_next", 1),
        list_index("air_lock", -1),
    };
    const std::string load =
        on('A', "list_load", "<ListID>sport_desk</ListID><ListPlayMode>pgm_pvw</ListPlayMode>");
    obey(registering('A', "listplay"));
    EXPECT_EQ(obey(load), whole);
    EXPECT_EQ(obey(registering('A', "listplay")), whole);
    EXPECT_EQ(obey(load), whole);
    EXPECT_EQ(obey(on('A', "set_loop", "<Loop>loop</Loop>")),
              Messages{report('A', "channel_listplay_loop", "<Loop>loop</Loop>")});
    EXPECT_EQ(obey(on('A', "unload")), Messages{report('A', "channel_listplay_unloaded")});
}

TEST_F(ReportsTest, APlaylistAdvancesElementByElement)
{
    station.clips.add_playlist(
        {"short", {{"weather", 0, 100}, {"weather", 0, 60}, {"news_open", 0, {}}}});
    obey(on('A', "list_load", "<ListID>short</ListID>"));
    wait(1s);
    obey(registering('A', "listplay"));
    EXPECT_EQ(obey(on('A', "play")), Messages{});
    EXPECT_EQ(wait(49 * field), Messages{});
    EXPECT_EQ(wait(field), Messages{list_index("air_lock", 1)});
    EXPECT_EQ(wait(49 * field), Messages{});
    EXPECT_EQ(wait(field), (Messages{list_index("air_now", 1), list_index("air_next", 2),
                                     list_index("air_lock", -1)}));
    EXPECT_EQ(wait(10 * field), Messages{list_index("air_lock", 2)});
    EXPECT_EQ(wait(50 * field), (Messages{list_index("air_now", 2), list_index("air_next", -1),
                                          list_index("air_lock", -1)}));
    EXPECT_EQ(wait(1min), Messages{});
    EXPECT_EQ(obey(on('A', "cue_clip", news)), Messages{report('A', "channel_listplay_unloaded")});
}

TEST_F(ReportsTest, WhatIsQueuedIsNext)
{
    obey(on('A', "list_load", "<ListID>sport_desk</ListID>"));
    obey(registering('A', "listplay"));
    EXPECT_EQ(obey(on('A', "list_play_next", "<ListIndex>3</ListIndex><Roll>roll</Roll>")),
              Messages{list_index("air_next", 3)});
    EXPECT_EQ(obey(on('A', "take")),
              (Messages{list_index("air_now", 3), list_index("air_next", -1)}));
    EXPECT_EQ(obey(on('A', "set_loop", "<Loop>loop</Loop>")),
              (Messages{report('A', "channel_listplay_loop", "<Loop>loop</Loop>"),
                        list_index("air_next", 0)}));
}

TEST_F(ReportsTest, EachClientHasItsOwnRegistrations)
{
    Registrations second;
    const auto told_to_second = [&] {
        return second.channel_reports.news(source->after_command(now), station.standard);
    };
    obey(registering('A', "speed"));
    answer(station, second, "<cmd><xid>1</xid>" + registering('A', "clipid") + "</cmd>", now);
    EXPECT_EQ(told_to_second().size(), 1u);
    EXPECT_EQ(obey(on('A', "cue_clip", news)), Messages{});
    EXPECT_EQ(told_to_second(),
              Messages{report('A', "channel_clipid", "<ClipID>news_open</ClipID>")});
    EXPECT_EQ(obey(on('A', "play")), Messages{speed("1X")});
    EXPECT_EQ(told_to_second(), Messages{});
}

TEST(Pacer, IsDueOnceInEachPeriod)
{
    Pacer pacer({10, 1});
    const TimePoint start{};
    EXPECT_TRUE(pacer.due(start));
    EXPECT_FALSE(pacer.due(start));
    EXPECT_FALSE(pacer.due(start + 100ms - 1ns));
    EXPECT_TRUE(pacer.due(start + 100ms));
    EXPECT_TRUE(pacer.due(start + 10s));
    EXPECT_FALSE(pacer.due(start + 10s + 99ms));
}

} // namespace veltosim
