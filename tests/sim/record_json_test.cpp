#include "sim/record_json.h"

#include <string>

#include <gtest/gtest.h>

#include "sim/scenario.h"

namespace veltosim
{

TEST(RecordJson, EveryRecordIsTheSameWhenWrittenAndRead)
{
    const ClipStore store = default_scenario().clips;
    for (const auto& [name, clip] : store.clips()) {
        Clip read = read_clip(parse_json(to_json(*clip)));
        read.number = clip->number; // is not part of it
        EXPECT_EQ(read, *clip) << name;
    }
    for (const auto& [name, virtual_clip] : store.virtual_clips()) {
        EXPECT_EQ(read_virtual_clip(parse_json(to_json(*virtual_clip))), *virtual_clip) << name;
    }
    for (const auto& [name, list] : store.playlists()) {
        EXPECT_EQ(to_json(read_playlist(parse_json(to_json(list)))), to_json(list)) << name;
    }
}

TEST(RecordJson, TextsOfClientsComeBackAsTheyWere)
{
    Clip clip;
    clip.name = "n\xC3\xA9";
    clip.title = "\x01\"quoted\"\n\t\x7F\\ \xF0\x9F\x8E\xAC";
    clip.metadata = Metadata{{"", ""}, {clip.title, " "}};
    EXPECT_EQ(read_clip(parse_json(to_json(clip))), clip);
}

TEST(RecordJson, WhatIsAsInANewRecordIsNotWritten)
{
    Clip clip;
    clip.name = "a";
    EXPECT_EQ(to_json(clip), R"({"name":"a","length":1})");
    clip.metadata.emplace();
    clip.read_only_meta = false;
    EXPECT_EQ(to_json(clip), R"({"name":"a","read_only_meta":false,"metadata":{},"length":1})");
}

TEST(RecordJson, LinesOfErrorsAreThoseOfTheValue)
{
    struct Case {
        const char* text;
        std::size_t line;
        const char* reason;
    };
    const Case cases[] = {
        {R"({"name": "a", "length": 1,
             "tracks": ["video", "red"]})",
         2, "this holds '\"red\"'; allowed is video, key, audio or timecode"},
        {R"({"name": "a", "length": 1, "tracks": [{"type": "video",
             "x": 1}]})",
         2, "there is no key 'x' in a track; its keys are type, trim_start"},
        {R"({"name": "a", "length": 1, "audio_tracks": 1,
             "tracks": []})",
         1, "'audio_tracks' is said by 'tracks' already"},
        {R"({"name": "a", "length": 1, "audio_tracks": 17})", 1,
         "'audio_tracks' holds '17'; allowed is a whole number from 0 to 16"},
        {R"({"name": "a", "length": 1, "metadata": {"k":
             5}})",
         2, "'k' holds '5'; allowed is a text"},
        {R"({"name": "a", "length": 1, "metadata": []})", 1,
         "'metadata' holds '[]'; allowed is an object of texts"},
        {R"({"name": "a", "length": 1, "title": "\u0000"})", 1,
         "'title' holds '\"\\u0000\"'; allowed is a text"},
        {R"({"name": "a", "length": 1, "loaded": -1})", 1,
         "'loaded' holds '-1'; allowed is a whole number from 0 to 18446744073709551615"},
        {R"({"name": "a", "length": 1, "stripe_timecode": {"field": 2147483648}})", 1,
         "'field' holds '2147483648'; allowed is a whole number from -2147483648 to 2147483647"},
        {R"({"name": "a", "length": 1, "stripe_timecode": {"field": -2147483649}})", 1,
         "'field' holds '-2147483649'; allowed is a whole number from -2147483648 to 2147483647"},
        {R"({"name": "a", "length": 1, "compression": "zip"})", 1,
         "'compression' holds '\"zip\"'; allowed is jpeg2000, dv, avci or xavc"},
    };
    for (const Case& row : cases) {
        try {
            read_clip(parse_json(row.text));
            ADD_FAILURE() << row.text;
        } catch (const LocatedError& error) {
            EXPECT_EQ(error.what(), std::string(row.reason));
            EXPECT_EQ(error.line, row.line) << row.text;
        }
    }
}

TEST(RecordJson, AClipHasAtMostAsManyTracksAsAMessageNames)
{
    std::string tracks = "\"video\"";
    for (int i = 0; i < 16; ++i) {
        tracks += ", \"audio\"";
    }
    const std::string head = R"({"name": "a", "length": 1, "tracks": [)";
    EXPECT_EQ(read_clip(parse_json(head + tracks + "]}")).tracks.size(), 17u);
    EXPECT_THROW(read_clip(parse_json(head + tracks + ", \"key\"]}")), LocatedError);
}

} // namespace veltosim
