#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <vector>

#include "sim/clip_record.h"
#include "sim/motion.h"
#include "sim/words.h"

namespace veltosim
{

struct SegmentSpeed {
    Speed value = normal_speed;
    bool operator==(const SegmentSpeed&) const = default;
};

// A piece of a stored clip at a place of a virtual clip's track. Its length counts there: at double
// speed it shows twice as many fields of the clip.
struct Segment {
    std::uint32_t at = 0;
    std::uint32_t length = 1; // never 0
    std::string clip;
    std::uint32_t position = 0; // in the clip, of the first field shown
    SegmentSpeed speed;

    bool operator==(const Segment&) const = default;
};

struct VirtualTrack {
    TrackType type = TrackType::video;
    bool enabled = true;
    std::uint8_t count = 1;        // tracks of this type, which have their segments together
    std::vector<Segment> segments; // in their order, none over another

    bool operator==(const VirtualTrack&) const = default;
};
using VirtualTracks = std::vector<VirtualTrack>; // each type once

// An edit list. While it is being modified the edits go into a draft, which takes the place of the
// tracks all at once; what is loaded before that are the old tracks.
struct VirtualClip {
    std::string name;
    std::string title;
    std::uint32_t length = 1; // never 0
    Loop loop = Loop::off;
    VirtualTracks tracks;
    std::optional<VirtualTracks> draft{};

    bool operator==(const VirtualClip&) const = default;
    VirtualTracks& edited() { return draft ? *draft : tracks; }
};

template <>
inline constexpr auto fields_of<Segment> = std::tuple{
    RecordField{"", "at", &Segment::at},       RecordField{"", "length", &Segment::length, {}, 1},
    RecordField{"", "clip", &Segment::clip},   RecordField{"", "position", &Segment::position},
    RecordField{"", "speed", &Segment::speed},
};

template <>
inline constexpr auto fields_of<VirtualTrack> = std::tuple{
    RecordField{"", "type", &VirtualTrack::type, track_type_words},
    RecordField{"", "enabled", &VirtualTrack::enabled},
    RecordField{"", "count", &VirtualTrack::count, {}, 1},
    RecordField{"", "segments", &VirtualTrack::segments},
};

template <>
inline constexpr auto fields_of<VirtualClip> = std::tuple{
    RecordField{"", "name", &VirtualClip::name},
    RecordField{"", "title", &VirtualClip::title},
    RecordField{"", "length", &VirtualClip::length, {}, 1},
    RecordField{"", "loop", &VirtualClip::loop, loop_words},
    RecordField{"", "tracks", &VirtualClip::tracks},
    RecordField{"", "draft", &VirtualClip::draft},
};

using VirtualClipPtr = std::shared_ptr<const VirtualClip>;
using TrackSet = std::vector<TrackType>;

// What a channel plays of it.
Clip as_clip(const VirtualClip& virtual_clip);

// The edits. Each throws a Refusal for what does not fit, and may then have done a part.

// Lays the tracks out like those of `like`.
void configure_tracks(VirtualClip& edited, const TrackSet& set, const Clip& like);
// Puts a piece of `source` over what is there. A track that is not there yet is laid out like the
// source's.
void add_segment(VirtualClip& edited, const TrackSet& set, const Segment& segment,
                 const Clip& source);
// Leaves nothing there: segments that reach into it are cut.
void clear_segment(VirtualClip& edited, const TrackSet& set, std::uint32_t at,
                   std::uint32_t length);
// Moves what comes from `at` on by `distance`: a segment that lies across `at` is cut in two, and
// what is moved over is gone.
void ripple(VirtualClip& edited, const TrackSet& set, std::uint32_t at, std::int32_t distance);
// Switches these tracks on and all others off.
void enable_tracks(VirtualClip& edited, const TrackSet& set);

// Throws a Refusal if the segment does not fit its clip, or the virtual clip.
void check_segment(const VirtualClip& edited, const Segment& segment, const Clip& source);

} // namespace veltosim
