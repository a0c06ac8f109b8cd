#include "sim/scenario.h"

#include <chrono>
#include <filesystem>
#include <fstream>
#include <random>
#include <string>

#include <gtest/gtest.h>

#include "sim/refusal.h"

namespace veltosim
{

using namespace std::chrono_literals;

namespace
{

std::string error_in(const std::string& text)
{
    try {
        parse_scenario(text, "mine.json");
    } catch (const ScenarioError& error) {
        return error.what();
    }
    return "(none)";
}

const std::string two_clips = "{\"clips\": [\n"
                              "{\"name\": \"one\", \"length\": 100},\n"
                              "{\"name\": \"two\", \"length\": 50, \"angles\": 2}],\n";

} // namespace

TEST(Scenario, TheBuiltInOneHasWhatTheManualNames)
{
    const Scenario scenario = default_scenario();
    for (const char* name :
         {"news_open", "news_close", "news_bed", "weather", "weather_map", "sport_intro",
          "sport_goal", "sport_replay", "interview", "station_ident", "countdown", "colour_bars"}) {
        EXPECT_EQ(scenario.clips.clip(name)->name, name);
    }
    EXPECT_EQ(scenario.clips.clip("headlines", ClipScope::vclip)->length, 3000u);
    EXPECT_EQ(scenario.clips.clip("sport_goal")->angles, 4);
    EXPECT_EQ(scenario.clips.clip("weather_map")->loop_out, 1000u);
    EXPECT_EQ(scenario.clips.clip("weather")->title, "Weather forecast");
    for (const char* name : {"evening_news", "sport_desk", "idents", "promos"}) {
        EXPECT_EQ(scenario.clips.playlist(name).name, name);
    }
    EXPECT_TRUE(scenario.clips.clip("colour_bars")->read_only);
    EXPECT_EQ(scenario.clips.children(*scenario.clips.clip("sport_goal")->uuid).size(), 2u);
    EXPECT_TRUE(scenario.clips.has_directory("archive/empty"));
    for (const ChannelLoad& load : scenario.channels) {
        EXPECT_GE(load.channel, 4u) << "the first channels are for the user";
    }
}

TEST(Scenario, ItsChannelsAreLoadedAndPlay)
{
    const Scenario scenario = default_scenario();
    Station station("studio", *find_standard("1080_50i"), scenario.clips);
    load_channels(station, scenario.channels, TimePoint{});
    const auto status = [&](std::size_t channel) {
        return station.channels[channel].view(TimePoint{} + 1h).status;
    };
    EXPECT_EQ(status(0), ChannelStatus::idle);
    EXPECT_EQ(status(4), ChannelStatus::play);
    EXPECT_EQ(status(7), ChannelStatus::record);
    EXPECT_EQ(station.channels[5].view(TimePoint{}).list, "promos");
    EXPECT_EQ(station.channels[6].view(TimePoint{}).speed, normal_speed / 2);
}

TEST(Scenario, AllKeysAreRead)
{
    const Scenario scenario = parse_scenario(
        R"({"clips": [{"name": "a", "title": "A clip", "length": 100, "angles": 3,
                       "audio_tracks": 16, "interp": "off", "loop": "loopto", "loop_in": 10,
                       "loop_out": 20}],
            "vclips": [{"name": "a", "length": 50}],
            "playlists": [{"name": "l", "elements": [
                {"clip": "a", "position": 5, "out": 60, "angle": 2, "at_end": "pause"},
                {"vclip": "a", "at_end": "loop"}]}],
            "channels": [
                {"channel": "L", "vclip": "a", "position": 7, "out": 9, "loop": "off"},
                {"channel": "B", "playlist": "l", "mode": "pgm_pvw", "loop": "loop", "play": true,
                 "speed": -1.5}]})",
        "mine.json");
    const ClipPtr clip = scenario.clips.clip("a");
    EXPECT_EQ(clip->title, "A clip");
    EXPECT_EQ(clip->length, 100u);
    EXPECT_EQ(clip->angles, 3);
    EXPECT_EQ(audio_track_count(*clip), 16);
    EXPECT_EQ(clip->interp, Interp::off);
    EXPECT_EQ(clip->loop, Loop::loopto);
    EXPECT_EQ(clip->loop_in, 10u);
    EXPECT_EQ(clip->loop_out, 20u);
    EXPECT_EQ(scenario.clips.clip("a", ClipScope::vclip)->length, 50u);

    const auto& elements = scenario.clips.playlist("l").elements;
    ASSERT_EQ(elements.size(), 2u);
    EXPECT_EQ(elements[0].start, 5u);
    EXPECT_EQ(elements[0].out_point, 60u);
    EXPECT_EQ(elements[0].angle, 2);
    EXPECT_EQ(elements[0].at_end, ListElementAtEnd::pause);
    EXPECT_EQ(elements[1].scope, ClipScope::vclip);
    EXPECT_EQ(elements[1].at_end, ListElementAtEnd::loop);

    Station station("studio", *find_standard("1080_50i"), scenario.clips);
    load_channels(station, scenario.channels, TimePoint{});
    const ChannelView last = station.channels[11].view(TimePoint{} + 1s);
    EXPECT_EQ(last.clip_length, 50u);
    EXPECT_EQ(last.position, 7u);
    EXPECT_EQ(last.out_point, 9u);
    EXPECT_EQ(last.status, ChannelStatus::stop);
    const ChannelView list = station.channels[1].view(TimePoint{});
    EXPECT_EQ(list.list_mode, ListPlayMode::pgm_pvw);
    EXPECT_TRUE(list.list_turning);
    EXPECT_EQ(list.speed, -3 * normal_speed / 2);
}

TEST(Scenario, DiskAndDirectoriesAreRead)
{
    const Scenario scenario = parse_scenario(
        R"({"disk": {"total": 1000, "field_size": 3}, "directories": ["a/b"],
            "clips": [{"name": "c", "length": 100}]})",
        "mine.json");
    EXPECT_EQ(scenario.clips.disk(), (Disk{1000, 3}));
    EXPECT_EQ(scenario.clips.available(), 700u);
    EXPECT_EQ(scenario.clips.made_directories(), std::vector<std::string>{"a/b"});
}

TEST(Scenario, MetadataDatabasesAreRead)
{
    const Scenario scenario =
        parse_scenario(R"({"metadata": {"db": {"b": "2", "a": ""}, "empty": {}}})", "mine.json");
    EXPECT_EQ(scenario.clips.metadata().table("db"), (MetadataTable{{"a", ""}, {"b", "2"}}));
    EXPECT_TRUE(scenario.clips.metadata().table("empty").empty());
}

TEST(Scenario, ChannelsThatCannotBeLoadedAreLeftOut)
{
    Scenario scenario =
        parse_scenario(two_clips + "\"channels\": [{\"channel\": \"A\", \"clip\": \"one\"},"
                                   "{\"channel\": \"B\", \"clip\": \"two\"}]}",
                       "mine.json");
    StoreChange change;
    change.clips.push_back({scenario.clips.clip("one"), nullptr});
    scenario.clips.apply(change);
    Station station("studio", *find_standard("1080_50i"), scenario.clips);
    load_possible_channels(station, scenario.channels, TimePoint{});
    EXPECT_EQ(station.channels[0].view(TimePoint{}).clip, "");
    EXPECT_EQ(station.channels[1].view(TimePoint{}).clip, "two");
}

TEST(Scenario, MayHoldNothing)
{
    EXPECT_EQ(error_in("{}"), "(none)");
}

TEST(Scenario, ErrorsTellFileLineAndReason)
{
    struct Case {
        std::string text;
        std::string error;
    };
    const std::string clip_keys =
        "name, standard, tracks, title, creator, project, playback, interp, loop, loop_out, "
        "loop_in, length, timecode_source, stripe_timecode, read_only, id8, read_only_meta, "
        "read_only_content, metadata, special_type, iso_count, ssm_speed, bitrate, "
        "frame0_timecode, trim_start, trim_end, untrimmed_length, compression, uuid, parent_uuid, "
        "angle, loaded, unloaded, played, meta_edited, content_edited, file_type, angles, "
        "audio_tracks";
    const Case cases[] = {
        {"{\n\"clips\": [\n}",
         "3: syntax error while parsing value - unexpected '}'; expected '[', '{', or a literal"},
        {"[]", "1: this holds '[]'; allowed is an object, the scenario"},
        {"{\n\"clip\": []}",
         "2: there is no key 'clip' in the scenario; its keys are disk, directories, clips, "
         "vclips, playlists, metadata, channels"},
        {"{\"clips\": 5}", "1: 'clips' holds '5'; allowed is an array"},
        {"{\"clips\": [\n5]}", "2: this holds '5'; allowed is an object, a clip"},
        {"{\"clips\": [{\"name\": \"a\", \"length\": 5,\n\"lenght\": 5}]}",
         "2: there is no key 'lenght' in a clip; its keys are " + clip_keys},
        {"{\"vclips\": [{\"name\": \"a\", \"length\": 5,\n\"x\": 5}]}",
         "2: there is no key 'x' in a virtual clip; its keys are name, title, length, loop, "
         "tracks, draft"},
        {"{\"clips\": [{\"name\": \"a\", \"length\": 5,\n\"length\": 6}]}",
         "2: the key 'length' is given twice"},
        {"{\"clips\": [\n{\"name\": \"a\"}]}", "2: a clip has no 'length'"},
        {"{\"clips\": [\n{\"length\": 5}]}", "2: a clip has no 'name'"},
        {"{\"clips\": [{\"name\":\n\"\"}]}",
         "2: 'name' holds '\"\"'; allowed is a name; 1 to 255 bytes of UTF-8 are allowed, without "
         "control characters"},
        {"{\"clips\": [{\"name\": \"a\", \"length\":\n0}]}",
         "2: 'length' holds '0'; allowed is a whole number from 1 to 4294967295"},
        {"{\"clips\": [{\"name\": \"a\", \"length\": 1.5}]}",
         "1: 'length' holds '1.5'; allowed is a whole number from 1 to 4294967295"},
        {"{\"clips\": [{\"name\": \"a\", \"length\": -1}]}",
         "1: 'length' holds '-1'; allowed is a whole number from 1 to 4294967295"},
        {"{\"clips\": [{\"name\": \"a\", \"length\": 5, \"angles\": 256}]}",
         "1: 'angles' holds '256'; allowed is a whole number from 1 to 255"},
        {"{\"clips\": [{\"name\": \"a\", \"length\": 5, \"interp\": \"yes\"}]}",
         "1: 'interp' holds '\"yes\"'; allowed is auto, on or off"},
        {"{\"clips\": [\n{\"name\": \"a\", \"length\": 5, \"loop_out\": 6}]}",
         "2: clip 'a' of 5 fields cannot take loop out 6; 1 to 5 are allowed"},
        {"{\"clips\": [\n{\"name\": \"a\", \"length\": 5},\n{\"name\": \"a\", \"length\": 6}]}",
         "3: the clip 'a' is given twice"},
        {two_clips + "\"playlists\": [\n{\"name\": \"l\", \"elements\": [{\"clip\": \"one\"},\n"
                     "{\"clip\": \"three\"}]}]}",
         "6: there is no clip 'three'; there are: 'one', 'two'"},
        {two_clips + "\"playlists\": [{\"name\": \"l\", \"elements\": [{\"vclip\": \"one\"}]}]}",
         "4: there is no virtual clip 'one'; there are: none"},
        {two_clips + "\"playlists\": [{\"name\": \"l\", \"elements\": [\n{\"clip\": \"one\", "
                     "\"position\": 100}]}]}",
         "5: clip 'one' of 100 fields cannot take start position 100; 0 to 99 are allowed"},
        {two_clips + "\"playlists\": [{\"name\": \"l\", \"elements\": [{\"clip\": \"two\", "
                     "\"angle\": 2}]}]}",
         "4: clip 'two' has no angle 2; 0 to 1 are allowed"},
        {two_clips + "\"playlists\": [{\"name\": \"l\", \"elements\": [{\"clip\": \"one\", "
                     "\"at_end\": \"stop\"}]}]}",
         "4: 'at_end' holds '\"stop\"'; allowed is take, pause or loop"},
        {two_clips + "\"playlists\": [{\"name\": \"l\", \"elements\": [{\"position\": 1}]}]}",
         "4: an element of a playlist has one of the keys clip, vclip, and only one"},
        {two_clips + "\"playlists\": [{\"name\": \"l\", \"elements\": []}]}",
         "4: the playlist 'l' has 0 elements; 1 to 1000 are allowed"},
        {two_clips + "\"playlists\": [{\"name\": \"l\", \"elements\": [{\"clip\": \"one\"}]},\n"
                     "{\"name\": \"l\", \"elements\": [{\"clip\": \"one\"}]}]}",
         "5: the playlist 'l' is given twice"},
        {"{\"directories\": [\"a\",\n\"a/\"]}",
         "2: 'a/' cannot be the name of a directory; 1 to 255 bytes of UTF-8 are allowed, without "
         "control characters, and none of the parts between slashes is empty"},
        {"{\"clips\": [\n{\"name\": \"/a\", \"length\": 1}]}",
         "2: '/a' cannot be the name of a clip; 1 to 255 bytes of UTF-8 are allowed, without "
         "control characters, and none of the parts between slashes is empty"},
        {"{\"disk\": {\"total\": 1,\n\"field_size\": 0}}",
         "2: 'field_size' holds '0'; allowed is a whole number from 1 to 4294967295"},
        {"{\"clips\": [\n{\"name\": \"a\", \"length\": 1, \"title\": \"" + std::string(40000, 'x') +
             "\"}]}",
         "2: the record of clip 'a' would take 40564 bytes; a message holds 30720"},
        {"{\"metadata\": {\n\"db\": {\"k\": 5}}}", "2: 'k' holds '5'; allowed is a text"},
        {"{\"metadata\": {\n\"db\": []}}", "2: 'db' holds '[]'; allowed is an object of texts"},
        {"{\"metadata\": 5}", "1: 'metadata' holds '5'; allowed is an object of databases"},
        {"{\"metadata\": {\"db\": {\"k\": \"\",\n\"long\": \"" + std::string(40000, 'x') + "\"}}}",
         "2: key 'long' would take 40070 bytes with its value; a message holds 30720"},
        {two_clips + "\"vclips\": [\n{\"name\": \"v\", \"length\": 10, \"tracks\": [{\"type\": "
                     "\"video\", \"segments\": [{\"clip\": \"none\", \"length\": 1}]}]}]}",
         "5: there is no clip 'none'; there are: 'one', 'two'"},
        {two_clips + "\"vclips\": [\n{\"name\": \"v\", \"length\": 10, \"tracks\": [{\"type\": "
                     "\"video\"}, {\"type\": \"video\"}]}]}",
         "5: virtual clip 'v' has two video tracks"},
        {two_clips + "\"channels\": [{\"clip\": \"one\"}]}", "4: a channel has no 'channel'"},
        {two_clips + "\"channels\": [{\"channel\": \"M\", \"clip\": \"one\"}]}",
         "4: 'channel' holds '\"M\"'; allowed is A, B, C, D, E, F, G, H, I, J, K or L"},
        {two_clips + "\"channels\": [{\"channel\": \"A\", \"clip\": \"one\"},\n"
                     "{\"channel\": \"A\", \"clip\": \"two\"}]}",
         "5: channel A is loaded twice"},
        {two_clips + "\"channels\": [{\"channel\": \"A\", \"playlist\": \"l\"}]}",
         "4: there is no playlist 'l'; there are: none"},
        {two_clips + "\"channels\": [{\"channel\": \"A\", \"playlist\": \"l\",\n\"angle\": 1}]}",
         "5: 'angle' is the playlist's matter"},
        {two_clips + "\"channels\": [{\"channel\": \"A\", \"clip\": \"one\", \"play\": 1}]}",
         "4: 'play' holds '1'; allowed is true or false"},
        {two_clips + "\"channels\": [{\"channel\": \"A\", \"clip\": \"one\", \"speed\": 201}]}",
         "4: 'speed' holds '201'; allowed is a speed from -200 to 200, 1 being normal"},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(error_in(row.text), "mine.json:" + row.error) << row.text;
    }
}

TEST(Scenario, IsReadFromAFile)
{
    const auto file = std::filesystem::temp_directory_path() /
                      ("veltosim_scenario_test_" + std::to_string(std::random_device{}()));
    std::ofstream(file) << default_scenario_text();
    EXPECT_EQ(read_scenario(file.string()).clips.summary(), default_scenario().clips.summary());
    std::ofstream(file) << "{\n\"clips\": 1}";
    std::string error;
    try {
        read_scenario(file.string());
    } catch (const ScenarioError& problem) {
        error = problem.what();
    }
    EXPECT_EQ(error, file.string() + ":2: 'clips' holds '1'; allowed is an array");
    std::filesystem::remove(file);
}

TEST(Scenario, AFileThatCannotBeReadIsToldSo)
{
    const std::string directory = std::filesystem::temp_directory_path().string();
    for (const std::string& file : {directory, directory + "/no/such/file"}) {
        std::string error;
        try {
            read_scenario(file);
        } catch (const ScenarioError& problem) {
            error = problem.what();
        }
        EXPECT_EQ(error.substr(0, file.size() + 17), file + ": cannot be read:") << error;
    }
}

TEST(Scenario, ALoadThatDoesNotFitIsRefused)
{
    Scenario scenario = parse_scenario(
        two_clips + "\"channels\": [{\"channel\": \"A\", \"clip\": \"one\", \"position\": 99}]}",
        "mine.json");
    scenario.clips.add_clip({"one", 10, 1, Loop::off, {}, {}});
    Station station("studio", *find_standard("1080_50i"), scenario.clips);
    EXPECT_THROW(load_channels(station, scenario.channels, TimePoint{}), Refusal);
}

} // namespace veltosim
