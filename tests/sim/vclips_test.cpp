#include "sim/vclips.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "commands_fixture.h"
#include "sim/record_json.h"

namespace veltosim
{

namespace
{

const char* const scenario_text = R"({
"clips": [
    {"name": "long", "length": 1000, "tracks": ["video", "audio", "audio", "timecode"]},
    {"name": "short", "length": 10, "tracks": ["video"]}
],
"vclips": [{"name": "known", "length": 100, "title": "A title", "loop": "loop",
            "tracks": [{"type": "video", "segments": [
                {"clip": "short", "at": 90, "length": 10},
                {"clip": "long", "at": 0, "length": 95, "speed": 2}]},
            {"type": "audio", "count": 2, "enabled": false}]}]
})";

class VirtualClipsTest : public CommandsTest
{
protected:
    VirtualClipsTest() : CommandsTest(parse_scenario(scenario_text, "test").clips) {}

    std::string send(const std::string& name, const std::string& fields,
                     const std::string& vclip = "v")
    {
        return answer_to("<" + name + "><VClipID>" + vclip + "</VClipID>" + fields + "</" + name +
                         ">");
    }
    void create(std::uint32_t length = 100)
    {
        EXPECT_EQ(send("vclip_create", "<ClipLength>" + std::to_string(length) + "</ClipLength>"),
                  "<ok/>");
    }
    // The tracks, or those of the draft, in short.
    std::string tracks(const std::string& vclip = "v", bool of_draft = false)
    {
        const VirtualClip& found = *station.clips.virtual_clip(vclip);
        std::string text;
        for (const VirtualTrack& track : of_draft ? *found.draft : found.tracks) {
            text += (text.empty() ? "" : "; ") +
                    std::string(word_of(track_type_words, track.type)) +
                    (track.enabled ? "" : " off");
            for (const Segment& segment : track.segments) {
                text += " " + std::to_string(segment.at) + "+" + std::to_string(segment.length) +
                        "=" + segment.clip + "@" + std::to_string(segment.position);
            }
        }
        return text;
    }
};

std::string set_of(const std::vector<std::string>& types)
{
    std::string set;
    for (const std::string& type : types) {
        set += "<TrackType>" + type + "</TrackType>";
    }
    return "<TrackSet>" + set + "</TrackSet>";
}

const std::string video = set_of({"video"});

std::string number(const std::string& tag, std::int64_t value)
{
    return "<" + tag + ">" + std::to_string(value) + "</" + tag + ">";
}

std::string segment(const std::string& clip, std::uint32_t position, std::uint32_t at,
                    std::uint32_t length, const std::string& speed = "",
                    const std::string& set = video)
{
    return "<ClipID>" + clip + "</ClipID>" + number("ClipPosition", position) + set +
           number("VClipPosition", at) + number("ClipLength", length) +
           (speed.empty() ? "" : "<Speed>" + speed + "</Speed>");
}

std::string range(std::uint32_t at, std::uint32_t length)
{
    return video + number("VClipPosition", at) + number("ClipLength", length);
}

std::string way(std::uint32_t at, std::int32_t distance)
{
    return video + number("VClipPosition", at) + number("VClipDistance", distance);
}

} // namespace

TEST_F(VirtualClipsTest, AreCreatedAndFreed)
{
    create();
    EXPECT_EQ(send("vclip_create", number("ClipLength", 5)),
              error("vclip_create: there is a virtual clip 'v' already"));
    EXPECT_EQ(send("vclip_create", number("ClipLength", 0), "w"),
              error("vclip_create: a virtual clip of no length cannot be created; 1 field is the "
                    "least"));
    EXPECT_EQ(send("vclip_create", number("ClipLength", 1), "long"), "<ok/>")
        << "a clip may be called the same";
    EXPECT_EQ(send("vclip_free", ""), "<ok/>");
    EXPECT_EQ(send("vclip_free", ""),
              error("vclip_free: there is no virtual clip 'v'; there are: 'known', 'long'",
                    "clipnotfound"));
    EXPECT_TRUE(told().empty());
}

TEST_F(VirtualClipsTest, SegmentsLieOverWhatIsThere)
{
    create();
    EXPECT_EQ(
        send("vclip_add_segment", segment("long", 100, 10, 50, "", set_of({"video", "audio"}))),
        "<ok/>");
    EXPECT_EQ(tracks(), "video 10+50=long@100; audio 10+50=long@100");
    EXPECT_EQ(send("vclip_add_segment", segment("short", 2, 30, 5)), "<ok/>");
    EXPECT_EQ(tracks(), "video 10+20=long@100 30+5=short@2 35+25=long@125; audio 10+50=long@100");
    EXPECT_EQ(send("vclip_add_segment", segment("long", 999, 0, 40, "0X")), "<ok/>");
    EXPECT_EQ(tracks(), "video 0+40=long@999 40+20=long@130; audio 10+50=long@100");
}

TEST_F(VirtualClipsTest, ACutSegmentGoesOnWhereItWas)
{
    create();
    EXPECT_EQ(send("vclip_add_segment", segment("long", 0, 0, 100, "2X")), "<ok/>");
    EXPECT_EQ(send("vclip_add_segment", segment("short", 0, 40, 10)), "<ok/>");
    EXPECT_EQ(tracks(), "video 0+40=long@0 40+10=short@0 50+50=long@100");
    EXPECT_EQ(send("vclip_add_segment", segment("long", 500, 0, 100, "-0.5X")), "<ok/>");
    EXPECT_EQ(send("vclip_clear_segment", range(20, 2)), "<ok/>");
    EXPECT_EQ(tracks(), "video 0+20=long@500 22+78=long@489");
}

TEST_F(VirtualClipsTest, SegmentsThatDoNotFitAreRefused)
{
    create();
    const auto misfit = [](const std::string& clip, int length, std::int64_t first,
                           std::int64_t last) {
        return "a segment that shows clip '" + clip + "' of " + std::to_string(length) +
               " fields from field " + std::to_string(first) + " to " + std::to_string(last) +
               " does not fit it";
    };
    struct Case {
        std::string fields;
        std::string text;
    };
    const Case cases[] = {
        {segment("short", 0, 0, 11), misfit("short", 10, 0, 10)},
        {segment("short", 1, 0, 10), misfit("short", 10, 1, 10)},
        {segment("short", 10, 0, 1), misfit("short", 10, 10, 10)},
        {segment("short", 0, 0, 6, "2X"), misfit("short", 10, 0, 10)},
        {segment("short", 4, 0, 6, "-1X"), misfit("short", 10, 4, -1)},
        {segment("long", 4294967295, 0, 1), misfit("long", 1000, 4294967295, 4294967295)},
        {segment("long", 0, 0, 101), "101 fields from 0 on do not fit virtual clip 'v' of 100 "
                                     "fields"},
        {segment("long", 0, 100, 1), "1 fields from 100 on do not fit virtual clip 'v' of 100 "
                                     "fields"},
        {segment("long", 0, 4294967295, 4294967295),
         "4294967295 fields from 4294967295 on do not fit virtual clip 'v' of 100 fields"},
        {segment("long", 0, 0, 0), "0 fields from 0 on do not fit virtual clip 'v' of 100 fields"},
        {segment("long", 0, 0, 1, "", set_of({"key"})), "clip 'long' has no key track"},
        {segment("short", 0, 0, 1, "", set_of({"video", "audio"})),
         "clip 'short' has no audio track"},
        {segment("long", 0, 0, 1, "", set_of({})), "TrackSet names no track; name one at least"},
        {segment("long", 0, 0, 1, "", set_of({"red"})),
         "TrackType holds 'red'; allowed is video, key, audio or timecode"},
        {segment("long", 0, 0, 1, "201X"),
         "Speed holds '201X'; allowed is a speed such as 1.5X, from -200X to 200X"},
    };
    for (const Case& row : cases) {
        EXPECT_EQ(send("vclip_add_segment", row.fields), error("vclip_add_segment: " + row.text));
    }
    EXPECT_EQ(send("vclip_add_segment", segment("none", 0, 0, 1)),
              error("vclip_add_segment: there is no clip 'none'; there are: 'long', 'short'",
                    "clipnotfound"));
    EXPECT_EQ(tracks(), "");
    EXPECT_EQ(send("vclip_add_segment", segment("short", 0, 0, 10)), "<ok/>");
    EXPECT_EQ(send("vclip_add_segment", segment("short", 0, 10, 5, "2X")), "<ok/>");
    EXPECT_EQ(send("vclip_add_segment", segment("short", 5, 20, 6, "-1X")), "<ok/>");
}

TEST_F(VirtualClipsTest, ARippleMovesWhatComesAfter)
{
    create();
    EXPECT_EQ(send("vclip_add_segment", segment("long", 0, 0, 20)), "<ok/>");
    EXPECT_EQ(send("vclip_add_segment", segment("short", 0, 30, 10)), "<ok/>");
    EXPECT_EQ(send("vclip_ripple", way(10, 5)), "<ok/>");
    EXPECT_EQ(tracks(), "video 0+10=long@0 15+10=long@10 35+10=short@0");
    EXPECT_EQ(send("vclip_ripple", way(40, -25)), "<ok/>");
    EXPECT_EQ(tracks(), "video 0+10=long@0 15+5=short@5");
    EXPECT_EQ(send("vclip_ripple", way(15, 80)), "<ok/>");
    EXPECT_EQ(tracks(), "video 0+10=long@0 95+5=short@5");
    EXPECT_EQ(send("vclip_ripple", way(95, 1)),
              error("vclip_ripple: after a ripple from 95 by 1 the video track would end at 101, "
                    "behind the 100 fields of virtual clip 'v'"));
    EXPECT_EQ(send("vclip_ripple", way(0, 2147483647)),
              error("vclip_ripple: after a ripple from 0 by 2147483647 the video track would end "
                    "at 2147483747, behind the 100 fields of virtual clip 'v'"));
    EXPECT_EQ(send("vclip_ripple", way(5, -6)),
              error("vclip_ripple: virtual clip 'v' cannot ripple from 5 by -6; -5 to 95 are "
                    "allowed"));
    EXPECT_EQ(
        send("vclip_ripple", way(100, 0)),
        error("vclip_ripple: 1 fields from 100 on do not fit virtual clip 'v' of 100 fields"));
    EXPECT_EQ(tracks(), "video 0+10=long@0 95+5=short@5");
    EXPECT_EQ(send("vclip_ripple", way(5, -5)), "<ok/>");
    EXPECT_EQ(tracks(), "video 0+5=long@5 90+5=short@5");
}

TEST_F(VirtualClipsTest, TracksAreConfiguredAndSwitched)
{
    create();
    const std::string like_long = "<ClipID>long</ClipID>";
    EXPECT_EQ(send("vclip_clear_segment", range(0, 1)),
              error("vclip_clear_segment: virtual clip 'v' has no video track; configure it "
                    "first"));
    EXPECT_EQ(send("vclip_cfg_tracks", like_long + set_of({"video", "audio"})), "<ok/>");
    EXPECT_EQ(send("vclip_cfg_tracks", like_long + set_of({"key"})),
              error("vclip_cfg_tracks: clip 'long' has no key track"));
    EXPECT_EQ(send("vclip_clear_segment", range(0, 100)), "<ok/>");
    EXPECT_EQ(tracks(), "video; audio");
    EXPECT_EQ(as_clip(*station.clips.virtual_clip("v")).tracks.size(), 3u);
    EXPECT_EQ(send("vclip_track_enable", video), "<ok/>");
    EXPECT_EQ(tracks(), "video; audio off");
    EXPECT_EQ(as_clip(*station.clips.virtual_clip("v")).tracks.size(), 1u);
    EXPECT_EQ(send("vclip_track_enable", set_of({"timecode"})),
              error("vclip_track_enable: virtual clip 'v' has no timecode track; configure it "
                    "first"));
    EXPECT_EQ(send("vclip_track_enable", "<TrackSet />"), "<ok/>");
    EXPECT_EQ(tracks(), "video off; audio off");
}

TEST_F(VirtualClipsTest, AModificationCountsAtItsEnd)
{
    create();
    EXPECT_EQ(send("vclip_add_segment", segment("long", 0, 0, 10)), "<ok/>");
    EXPECT_EQ(send("vclip_modification_start", ""), "<ok/>");
    EXPECT_EQ(send("vclip_modification_start", ""),
              error("vclip_modification_start: virtual clip 'v' is being modified already"));
    EXPECT_EQ(send("vclip_add_segment", segment("short", 0, 50, 10)), "<ok/>");
    EXPECT_EQ(send("vclip_clear_segment", range(0, 5)), "<ok/>");
    EXPECT_EQ(tracks(), "video 0+10=long@0");
    EXPECT_EQ(tracks("v", true), "video 5+5=long@5 50+10=short@0");
    EXPECT_EQ(send("vclip_modification_end", ""), "<ok/>");
    EXPECT_EQ(tracks(), "video 5+5=long@5 50+10=short@0");
    EXPECT_EQ(send("vclip_modification_end", ""),
              error("vclip_modification_end: virtual clip 'v' is not being modified; start that "
                    "first"));
}

TEST_F(VirtualClipsTest, AreLoadedLikeClips)
{
    create(200);
    EXPECT_EQ(send("vclip_add_segment", segment("short", 0, 0, 10)), "<ok/>");
    const std::string cue = "<cue_clip><Channel>A</Channel><ClipID>v</ClipID>"
                            "<ClipScope>vclip</ClipScope></cue_clip>";
    obey(cue);
    EXPECT_EQ(view('A').clip, "v");
    EXPECT_EQ(view('A').clip_length, 200u);
    EXPECT_EQ(view('A').audio_tracks, 0);
    EXPECT_EQ(send("vclip_free", ""), "<ok/>");
    obey("<play><Channel>A</Channel></play>");
    EXPECT_EQ(view('A', 1s).position, 50u) << "a channel keeps what it holds";
}

TEST_F(VirtualClipsTest, AreNotLoadedWithoutTheirClips)
{
    const std::string cue = "<cue_clip><Channel>A</Channel><ClipID>known</ClipID>"
                            "<ClipScope>vclip</ClipScope></cue_clip>";
    obey(cue);
    EXPECT_EQ(view('A').loop, Loop::loop);
    obey("<delete_clip><ClipID>short</ClipID></delete_clip>");
    EXPECT_EQ(answer_to(cue),
              error("cue_clip: there is no clip 'short'; there are: 'long'", "clipnotfound"));
}

TEST_F(VirtualClipsTest, SegmentsOfAScenarioArePutInOrder)
{
    EXPECT_EQ(tracks("known"), "video 0+95=long@0 95+5=short@5; audio off");
}

TEST_F(VirtualClipsTest, AreTheSameWhenWrittenAndRead)
{
    EXPECT_EQ(send("vclip_modification_start", "", "known"), "<ok/>");
    EXPECT_EQ(send("vclip_add_segment", segment("long", 3, 1, 4, "-0.5X"), "known"), "<ok/>");
    const VirtualClip& known = *station.clips.virtual_clip("known");
    EXPECT_EQ(read_virtual_clip(parse_json(to_json(known))), known);
}

} // namespace veltosim
