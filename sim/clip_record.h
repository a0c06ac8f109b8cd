#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <tuple>
#include <type_traits>
#include <utility>
#include <vector>

#include "sim/words.h"

namespace veltosim
{

// Pairs of key and value, each key once, in the order in which they came.
using Metadata = std::vector<std::pair<std::string, std::string>>;

struct Track {
    TrackType type = TrackType::video;
    std::optional<std::uint32_t> trim_start;

    bool operator==(const Track&) const = default;
};
using Tracks = std::vector<Track>;

struct StripeTimecode {
    bool valid = false;
    std::optional<VideoStandard> standard;
    std::optional<std::int32_t> field;
    std::optional<DropFrameFlag> drop_frame;

    bool operator==(const StripeTimecode&) const = default;
};

struct Frame0Timecode {
    std::optional<std::int32_t> field;
    std::optional<DropFrameFlag> drop_frame;

    bool operator==(const Frame0Timecode&) const = default;
};

// What is recorded under a name, and all that is known of it. Lengths and positions are in fields.
struct Clip {
    std::string name;
    std::uint32_t length = 1; // never 0
    std::uint8_t angles = 1;  // camera angles, numbered from 0; never 0
    Loop loop = Loop::off;    // what loop mode "auto" means for this clip
    std::optional<std::uint32_t> loop_in;
    std::optional<std::uint32_t> loop_out; // first field behind the loop
    Interp interp = Interp::automatic;
    Playback playback = Playback::automatic;
    Tracks tracks{{TrackType::video, {}}, {TrackType::audio, {}}, {TrackType::audio, {}}};

    std::string title{};
    std::string creator{};
    std::string project{};
    std::optional<std::string> id8{};
    std::optional<std::string> file_type{};
    std::optional<Metadata> metadata{};

    std::optional<VideoStandard> standard{}; // none: the server's
    TimecodeSource timecode_source = TimecodeSource::zerobased;
    StripeTimecode stripe{};
    std::optional<Frame0Timecode> frame0{};

    bool read_only = false;
    std::optional<bool> read_only_meta{};
    std::optional<bool> read_only_content{};

    std::optional<SpecialClipType> special_type{};
    std::optional<std::uint32_t> iso_count{};
    std::optional<std::uint32_t> ssm_speed{};
    std::optional<std::uint32_t> bitrate{};
    std::optional<CompressionType> compression{};

    std::optional<std::uint32_t> trim_start{}; // cut off before the first field
    std::optional<std::uint32_t> trim_end{};   // cut off behind the last one
    std::optional<std::uint32_t> untrimmed_length{};

    std::optional<std::string> uuid{};
    std::optional<std::string> parent_uuid{};
    std::optional<std::uint8_t> angle{}; // as which it belongs to its parent

    // Milliseconds since 1970.
    std::optional<std::uint64_t> loaded{};
    std::optional<std::uint64_t> unloaded{};
    std::optional<std::uint64_t> played{};
    std::optional<std::uint64_t> meta_edited{};
    std::optional<std::uint64_t> content_edited{};

    std::uint64_t number = 0; // its own for as long as it is stored, whatever it is called; 0: none

    bool operator==(const Clip&) const = default;
};

// Channels keep the clip that they hold, whatever happens to the store: an entry is never changed,
// only replaced.
using ClipPtr = std::shared_ptr<const Clip>;

// The fields of the records: what messages and what files call them, empty where they do not
// hold them, where they are kept, and what they may hold. Whatever reads or writes a record goes
// by these.
template <class Record, class T>
struct RecordField {
    std::string_view tag;
    std::string_view key;
    T Record::*member;
    Words words{};
    std::uint64_t lowest = 0;
};
template <class Record, class T>
RecordField(std::string_view, std::string_view, T Record::*, Words = {}, std::uint64_t = 0)
    -> RecordField<Record, T>;

template <class Record>
inline constexpr auto fields_of = nullptr;

template <class T>
concept Recorded = !std::is_same_v<decltype(fields_of<T>), const std::nullptr_t>;

template <>
inline constexpr auto fields_of<Track> = std::tuple{
    RecordField{"TrackType", "type", &Track::type, track_type_words},
    RecordField{"TrimStart", "trim_start", &Track::trim_start},
};

template <>
inline constexpr auto fields_of<StripeTimecode> = std::tuple{
    RecordField{"Valid", "valid", &StripeTimecode::valid},
    RecordField{"VideoStandard", "standard", &StripeTimecode::standard, video_standard_words},
    RecordField{"FieldNumber", "field", &StripeTimecode::field},
    RecordField{"DropFrameFlag", "drop_frame", &StripeTimecode::drop_frame, drop_frame_flag_words},
};

template <>
inline constexpr auto fields_of<Frame0Timecode> = std::tuple{
    RecordField{"FieldNumber", "field", &Frame0Timecode::field},
    RecordField{"DropFrameFlag", "drop_frame", &Frame0Timecode::drop_frame, drop_frame_flag_words},
};

// In the order of messages.
template <>
inline constexpr auto fields_of<Clip> = std::tuple{
    RecordField{"ClipID", "name", &Clip::name},
    RecordField{"VideoStandard", "standard", &Clip::standard, video_standard_words},
    RecordField{"TrackInfoVector", "tracks", &Clip::tracks},
    RecordField{"Title", "title", &Clip::title},
    RecordField{"Creator", "creator", &Clip::creator},
    RecordField{"Project", "project", &Clip::project},
    RecordField{"Playback", "playback", &Clip::playback, playback_words},
    RecordField{"Interp", "interp", &Clip::interp, interp_words},
    RecordField{"Loop", "loop", &Clip::loop, loop_words},
    RecordField{"LoopOut", "loop_out", &Clip::loop_out},
    RecordField{"LoopIn", "loop_in", &Clip::loop_in},
    RecordField{"ClipLength", "length", &Clip::length, {}, 1},
    RecordField{"TimecodeSource", "timecode_source", &Clip::timecode_source, timecode_source_words},
    RecordField{"StripeTimecode", "stripe_timecode", &Clip::stripe},
    RecordField{"ReadOnly", "read_only", &Clip::read_only},
    RecordField{"ID8", "id8", &Clip::id8},
    RecordField{"ReadOnlyMeta", "read_only_meta", &Clip::read_only_meta},
    RecordField{"ReadOnlyContent", "read_only_content", &Clip::read_only_content},
    RecordField{"MetadataList", "metadata", &Clip::metadata},
    RecordField{"SpecialClipType", "special_type", &Clip::special_type, special_clip_type_words},
    RecordField{"ISOCount", "iso_count", &Clip::iso_count},
    RecordField{"SSMSpeed", "ssm_speed", &Clip::ssm_speed},
    RecordField{"CompressionBitrate", "bitrate", &Clip::bitrate},
    RecordField{"Frame0Timecode", "frame0_timecode", &Clip::frame0},
    RecordField{"TrimStart", "trim_start", &Clip::trim_start},
    RecordField{"TrimEnd", "trim_end", &Clip::trim_end},
    RecordField{"ClipLengthUntrimmed", "untrimmed_length", &Clip::untrimmed_length},
    RecordField{"CompressionType", "compression", &Clip::compression, compression_type_words},
    RecordField{"ClipUUID", "uuid", &Clip::uuid},
    RecordField{"ParentUUID", "parent_uuid", &Clip::parent_uuid},
    RecordField{"Angle", "angle", &Clip::angle},
    RecordField{"LoadedStamp", "loaded", &Clip::loaded},
    RecordField{"UnloadedStamp", "unloaded", &Clip::unloaded},
    RecordField{"PlayedStamp", "played", &Clip::played},
    RecordField{"MetaEditStamp", "meta_edited", &Clip::meta_edited},
    RecordField{"ContentEditStamp", "content_edited", &Clip::content_edited},
    RecordField{"ClipFileType", "file_type", &Clip::file_type},
    RecordField{"", "angles", &Clip::angles, {}, 1},
};

template <Recorded Record, class Action>
void for_each_field(const Action& action)
{
    std::apply([&](const auto&... field) { (action(field), ...); }, fields_of<Record>);
}

template <class T>
inline constexpr bool is_optional = false;
template <class T>
inline constexpr bool is_optional<std::optional<T>> = true;

std::uint8_t audio_track_count(const Clip& clip);
bool meta_protected(const Clip& clip);
bool content_protected(const Clip& clip);

} // namespace veltosim
