#include "sim/vclips.h"

#include <algorithm>

#include <fmt/format.h>

#include "sim/refusal.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

VirtualTrack* find_track(VirtualTracks& tracks, TrackType type)
{
    const auto found = std::find_if(tracks.begin(), tracks.end(),
                                    [&](const VirtualTrack& track) { return track.type == type; });
    return found == tracks.end() ? nullptr : &*found;
}

VirtualTrack& required_track(VirtualClip& edited, TrackType type)
{
    VirtualTrack* track = find_track(edited.edited(), type);
    if (!track) {
        throw Refusal(fmt::format("virtual clip {} has no {} track; configure it first",
                                  quote(edited.name), word_of(track_type_words, type)));
    }
    return *track;
}

// How many tracks of the type the clip has. None is a Refusal.
std::uint8_t count_of(const Clip& clip, TrackType type)
{
    const auto count = std::count_if(clip.tracks.begin(), clip.tracks.end(),
                                     [&](const Track& track) { return track.type == type; });
    if (count == 0) {
        throw Refusal(fmt::format("clip {} has no {} track", quote(clip.name),
                                  word_of(track_type_words, type)));
    }
    return static_cast<std::uint8_t>(count);
}

void check_not_empty(const TrackSet& set)
{
    if (set.empty()) {
        throw Refusal("TrackSet names no track; name one at least");
    }
}

void check_range(const VirtualClip& edited, std::uint32_t at, std::uint32_t length)
{
    if (length == 0 || std::uint64_t{at} + length > edited.length) {
        throw Refusal(fmt::format("{} fields from {} on do not fit virtual clip {} of {} fields",
                                  length, at, quote(edited.name), edited.length));
    }
}

// The segment from its field `skipped` on.
Segment tail_of(const Segment& segment, std::uint32_t skipped)
{
    Segment tail = segment;
    tail.at += skipped;
    tail.length -= skipped;
    tail.position = static_cast<std::uint32_t>(
        segment.position + std::int64_t{skipped} * segment.speed.value / parts_of_field);
    return tail;
}

std::uint64_t end_of(const Segment& segment)
{
    return std::uint64_t{segment.at} + segment.length;
}

// Leaves nothing from `first` to the field before `end`.
void cut_out(std::vector<Segment>& segments, std::uint64_t first, std::uint64_t end)
{
    std::vector<Segment> kept;
    for (const Segment& segment : segments) {
        if (segment.at < first) {
            Segment head = segment;
            head.length = static_cast<std::uint32_t>(std::min(end_of(segment), first) - segment.at);
            kept.push_back(std::move(head));
        }
        if (end_of(segment) > end) {
            const std::uint64_t begin = std::max<std::uint64_t>(segment.at, end);
            kept.push_back(tail_of(segment, static_cast<std::uint32_t>(begin - segment.at)));
        }
    }
    segments = std::move(kept);
}

void insert(std::vector<Segment>& segments, const Segment& segment)
{
    cut_out(segments, segment.at, end_of(segment));
    const auto place = std::find_if(segments.begin(), segments.end(),
                                    [&](const Segment& other) { return other.at > segment.at; });
    segments.insert(place, segment);
}

// Moves all from `at` on. Segments are cut there.
void shift(std::vector<Segment>& segments, std::uint64_t at, std::int64_t distance)
{
    std::vector<Segment> head = segments;
    std::vector<Segment> tail = segments;
    cut_out(head, distance < 0 ? at - static_cast<std::uint64_t>(-distance) : at, UINT64_MAX);
    cut_out(tail, 0, at);
    for (Segment& segment : tail) {
        segment.at = static_cast<std::uint32_t>(segment.at + distance);
        head.push_back(segment);
    }
    segments = std::move(head);
}

} // namespace

Clip as_clip(const VirtualClip& virtual_clip)
{
    Clip clip;
    clip.name = virtual_clip.name;
    clip.title = virtual_clip.title;
    clip.length = virtual_clip.length;
    clip.loop = virtual_clip.loop;
    clip.tracks.clear();
    for (const VirtualTrack& track : virtual_clip.tracks) {
        if (track.enabled) {
            clip.tracks.insert(clip.tracks.end(), track.count, Track{track.type, {}});
        }
    }
    return clip;
}

void check_segment(const VirtualClip& edited, const Segment& segment, const Clip& source)
{
    check_range(edited, segment.at, segment.length);
    const std::int64_t last = segment.position + (segment.length - std::int64_t{1}) *
                                                     segment.speed.value / parts_of_field;
    if (segment.position >= source.length || last < 0 || last >= source.length) {
        throw Refusal(fmt::format(
            "a segment that shows clip {} of {} fields from field {} to {} does not fit it",
            quote(source.name), source.length, segment.position, last));
    }
}

void configure_tracks(VirtualClip& edited, const TrackSet& set, const Clip& like)
{
    check_not_empty(set);
    for (const TrackType type : set) {
        const std::uint8_t count = count_of(like, type);
        if (VirtualTrack* track = find_track(edited.edited(), type)) {
            track->count = count;
        } else {
            edited.edited().push_back({type, true, count, {}});
        }
    }
}

void add_segment(VirtualClip& edited, const TrackSet& set, const Segment& segment,
                 const Clip& source)
{
    check_not_empty(set);
    check_segment(edited, segment, source);
    for (const TrackType type : set) {
        const std::uint8_t count = count_of(source, type);
        VirtualTrack* track = find_track(edited.edited(), type);
        if (!track) {
            track = &edited.edited().emplace_back(VirtualTrack{type, true, count, {}});
        }
        insert(track->segments, segment);
    }
}

void clear_segment(VirtualClip& edited, const TrackSet& set, std::uint32_t at, std::uint32_t length)
{
    check_not_empty(set);
    check_range(edited, at, length);
    for (const TrackType type : set) {
        cut_out(required_track(edited, type).segments, at, std::uint64_t{at} + length);
    }
}

void ripple(VirtualClip& edited, const TrackSet& set, std::uint32_t at, std::int32_t distance)
{
    check_not_empty(set);
    check_range(edited, at, 1);
    if (std::int64_t{at} + distance < 0) {
        throw Refusal(fmt::format("virtual clip {} cannot ripple from {} by {}; {} to {} are "
                                  "allowed",
                                  quote(edited.name), at, distance, -std::int64_t{at},
                                  edited.length - at));
    }
    for (const TrackType type : set) {
        std::vector<Segment>& segments = required_track(edited, type).segments;
        const std::uint64_t end = segments.empty() ? 0 : end_of(segments.back());
        if (end > at && static_cast<std::int64_t>(end) + distance > edited.length) {
            throw Refusal(fmt::format(
                "after a ripple from {} by {} the {} track would end at {}, behind the {} "
                "fields of virtual clip {}",
                at, distance, word_of(track_type_words, type),
                static_cast<std::int64_t>(end) + distance, edited.length, quote(edited.name)));
        }
        shift(segments, at, distance);
    }
}

void enable_tracks(VirtualClip& edited, const TrackSet& set)
{
    for (const TrackType type : set) {
        required_track(edited, type);
    }
    for (VirtualTrack& track : edited.edited()) {
        track.enabled = std::find(set.begin(), set.end(), track.type) != set.end();
    }
}

} // namespace veltosim
