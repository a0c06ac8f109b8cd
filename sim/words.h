#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <string_view>

namespace veltosim
{

// The words that the protocol writes for the values of its enumerations. A word's place in its
// array is the number of its value.
using Words = std::span<const std::string_view>;

inline constexpr std::size_t channel_count = 12;
inline constexpr std::array<std::string_view, channel_count> channel_words{
    "A", "B", "C", "D", "E", "F", "G", "H", "I", "J", "K", "L"};

enum class ChannelStatus : std::uint8_t {
    nochannel,
    idle,
    cueing,
    stop,
    play,
    record,
    insert,
    testpattern,
    timedelay
};
inline constexpr std::array<std::string_view, 9> channel_status_words{
    "nochannel", "idle", "cueing", "stop", "play", "record", "insert", "testpattern", "timedelay"};

// "auto" is a keyword of C++.
enum class Loop : std::uint8_t { off, loop, loopto, pingpong, pingpongto, automatic, record };
inline constexpr std::array<std::string_view, 7> loop_words{
    "off", "loop", "loopto", "pingpong", "pingpongto", "auto", "record"};

enum class PrecueCondition : std::uint8_t {
    explicit_switch,
    previous_stops,
    immediate,
    end_of_clip,
    end_of_clip2
};
inline constexpr std::array<std::string_view, 5> precue_condition_words{
    "explicit_switch", "previous_stops", "immediate", "end_of_clip", "end_of_clip2"};

enum class ClipScope : std::uint8_t { clip, vclip };
inline constexpr std::array<std::string_view, 2> clip_scope_words{"clip", "vclip"};

enum class FollowSpeed : std::uint8_t { none, smart, one_x, follow };
inline constexpr std::array<std::string_view, 4> follow_speed_words{"none", "smart", "oneX",
                                                                    "follow"};

enum class DropFrameFlag : std::uint8_t { df, ndf };
inline constexpr std::array<std::string_view, 2> drop_frame_flag_words{"df", "ndf"};

enum class Interp : std::uint8_t { automatic, on, off };
inline constexpr std::array<std::string_view, 3> interp_words{"auto", "on", "off"};

enum class ListElementAtEnd : std::uint8_t { take, pause, loop };
inline constexpr std::array<std::string_view, 3> list_element_at_end_words{"take", "pause", "loop"};

enum class ListPlayMode : std::uint8_t { single_channel, pgm_pvw };
inline constexpr std::array<std::string_view, 2> list_play_mode_words{"single_channel", "pgm_pvw"};

enum class Playback : std::uint8_t { automatic, field, f12 };
inline constexpr std::array<std::string_view, 3> playback_words{"auto", "field", "f12"};

enum class Roll : std::uint8_t { cueonly, roll };
inline constexpr std::array<std::string_view, 2> roll_words{"cueonly", "roll"};

enum class TransitionType : std::uint8_t { cut, dissolve };
inline constexpr std::array<std::string_view, 2> transition_type_words{"cut", "dissolve"};

// The protocol knows the layer "bed" too. This server has none, so that asking for it is refused.
inline constexpr std::array<std::string_view, 1> layer_words{"normal"};

inline constexpr std::array<std::string_view, 2> bool_words{"false", "true"};

enum class ReportType : std::uint8_t {
    clip_change,
    config_change,
    disk_space,
    temperature,
    melt,
    directory_change,
    playlist_change,
    chaselist_change,
    export_requests,
    alerts,
    chase_ltc_timecode,
    ltc_input
};
inline constexpr std::array<std::string_view, 12> report_type_words{
    "clip_change", "config_change",    "disk_space",         "temperature",
    "melt",        "directory_change", "playlist_change",    "chaselist_change",
    "export",      "alerts",           "chase_ltc_timecode", "ltc_input"};

enum class ChannelReportType : std::uint8_t {
    status,
    clipid,
    speed,
    timecode,
    info,
    peak,
    aux_audio_status,
    aux_audio_clipid,
    aux_audio_speed,
    aux_audio_timecode,
    aux_audio_info,
    aux_audio_peak,
    listplay,
    chaseplay
};
inline constexpr std::array<std::string_view, 14> channel_report_type_words{"status",
                                                                            "clipid",
                                                                            "speed",
                                                                            "timecode",
                                                                            "info",
                                                                            "peak",
                                                                            "aux_audio_status",
                                                                            "aux_audio_clipid",
                                                                            "aux_audio_speed",
                                                                            "aux_audio_timecode",
                                                                            "aux_audio_info",
                                                                            "aux_audio_peak",
                                                                            "listplay",
                                                                            "chaseplay"};

enum class TrackType : std::uint8_t { video, key, audio, timecode };
inline constexpr std::array<std::string_view, 4> track_type_words{"video", "key", "audio",
                                                                  "timecode"};

enum class TimecodeSource : std::uint8_t { zerobased, striped, rectc, rec0_stripe };
inline constexpr std::array<std::string_view, 4> timecode_source_words{"zerobased", "striped",
                                                                       "rectc", "rec0_stripe"};

// Only ever passed on, so that their values need no names.
enum class SpecialClipType : std::uint8_t {};
inline constexpr std::array<std::string_view, 10> special_clip_type_words{
    "normal", "iso2", "iso3", "iso4", "iso5", "iso6", "iso7", "iso8", "ssm2", "ssm3"};

enum class CompressionType : std::uint8_t {};
inline constexpr std::array<std::string_view, 4> compression_type_words{"jpeg2000", "dv", "avci",
                                                                        "xavc"};

enum class VideoStandard : std::uint8_t {};
inline constexpr std::array<std::string_view, 27> video_standard_words{
    "4K_60p",      "4K_59_94p", "4K_50p",    "4K_30p",      "4K_29_97p",     "4K_25p",
    "4K_24p",      "4K_23_98p", "1080_60p",  "1080_59_94p", "1080_50p",      "1080_30p",
    "1080_29_97p", "1080_25p",  "1080_24p",  "1080_23_98p", "1080_23_98psf", "1080_60i",
    "1080_59_94i", "1080_50i",  "1080_48i",  "1080_47_95i", "720_60p",       "720_59_94p",
    "720_50p",     "625_50i",   "525_59_94i"};

enum class ErrorCode : std::uint8_t {
    general,
    clipnotfound,
    configname_invalid,
    configvalue_invalid
};
inline constexpr std::array<std::string_view, 4> error_code_words{
    "general", "clipnotfound", "configname_invalid", "configvalue_invalid"};

template <class E, std::size_t N>
constexpr std::string_view word_of(const std::array<std::string_view, N>& words, E value)
{
    return words[static_cast<std::size_t>(value)];
}

} // namespace veltosim
