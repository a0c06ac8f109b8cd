#pragma once

#include "foundation/enumstring.h"
#include "foundation/no_destructor.h"
#include "protocol/zavl3_tag.h"

#include <array>
#include <cstdint>

namespace ZAVL3
{

// Every enumeration of the protocol: its name and its wire words, value 0 first. An entry here is
// all that an enumeration needs.
#define ZAVL3_ENUMERATIONS(ENUMERATION)                                                            \
    ENUMERATION(AlertingLevel, "na", "ok", "warning", "error")                                     \
    ENUMERATION(AlertingPriority, "harmful", "malfunction")                                        \
    ENUMERATION(Channel, "A", "B", "C", "D", "E", "F", "G", "H", "I", "J", "K", "L")               \
    ENUMERATION(ChannelReportType, "status", "clipid", "speed", "timecode", "info", "peak",        \
                "aux_audio_status", "aux_audio_clipid", "aux_audio_speed", "aux_audio_timecode",   \
                "aux_audio_info", "aux_audio_peak", "listplay", "chaseplay")                       \
    ENUMERATION(ChannelStatus, "nochannel", "idle", "cueing", "stop", "play", "record", "insert",  \
                "testpattern", "timedelay")                                                        \
    ENUMERATION(ChaseElementAtEnd, "black", "pause", "loop")                                       \
    ENUMERATION(ClipScope, "clip", "vclip")                                                        \
    ENUMERATION(CompressionType, "jpeg2000", "dv", "avci", "xavc")                                 \
    ENUMERATION(ConfigurationItemAccess, "user", "eng")                                            \
    ENUMERATION(DropFrameFlag, "df", "ndf")                                                        \
    ENUMERATION(ErrorCode, "general", "clipnotfound", "configname_invalid", "configvalue_invalid") \
    ENUMERATION(FollowSpeed, "none", "smart", "oneX", "follow")                                    \
    ENUMERATION(Interp, "auto", "on", "off")                                                       \
    ENUMERATION(Layer, "normal", "bed")                                                            \
    ENUMERATION(ListElementAtEnd, "take", "pause", "loop")                                         \
    ENUMERATION(ListElementAtStart, "play", "pause")                                               \
    ENUMERATION(ListPlayMode, "single_channel", "pgm_pvw")                                         \
    ENUMERATION(Loop, "off", "loop", "loopto", "pingpong", "pingpongto", "auto", "record")         \
    ENUMERATION(ModifiedFlag, "unmodified", "modified")                                            \
    ENUMERATION(ChannelDirection, "play", "record")                                                \
    ENUMERATION(Playback, "auto", "field", "f12")                                                  \
    ENUMERATION(PrecueCondition, "explicit_switch", "previous_stops", "immediate", "end_of_clip",  \
                "end_of_clip2")                                                                    \
    ENUMERATION(ReferenceSource, "input1", "input2", "refin", "refsdhd", "freerun")                \
    ENUMERATION(ReportType, "clip_change", "config_change", "disk_space", "temperature", "melt",   \
                "directory_change", "playlist_change", "chaselist_change", "export", "alerts",     \
                "chase_ltc_timecode", "ltc_input")                                                 \
    ENUMERATION(Roll, "cueonly", "roll")                                                           \
    ENUMERATION(SpecialClipType, "normal", "iso2", "iso3", "iso4", "iso5", "iso6", "iso7", "iso8", \
                "ssm2", "ssm3")                                                                    \
    ENUMERATION(StealStatus, "available", "import", "export")                                      \
    ENUMERATION(TimecodeSource, "zerobased", "striped", "rectc", "rec0_stripe")                    \
    ENUMERATION(TrackType, "video", "key", "audio", "timecode")                                    \
    ENUMERATION(TransitionType, "cut", "dissolve")                                                 \
    ENUMERATION(VideoRate, "60", "59_94", "50", "48", "47_95", "30", "29_97", "25", "24", "23_98") \
    ENUMERATION(VideoResolution, "4K", "1080p", "1080i", "720p", "625i", "525i")                   \
    ENUMERATION(VideoStandard, "4K_60p", "4K_59_94p", "4K_50p", "4K_30p", "4K_29_97p", "4K_25p",   \
                "4K_24p", "4K_23_98p", "1080_60p", "1080_59_94p", "1080_50p", "1080_30p",          \
                "1080_29_97p", "1080_25p", "1080_24p", "1080_23_98p", "1080_23_98psf", "1080_60i", \
                "1080_59_94i", "1080_50i", "1080_48i", "1080_47_95i", "720_60p", "720_59_94p",     \
                "720_50p", "625_50i", "525_59_94i")

// The values of an enumeration are the indexes of its words; `word<Layer> ("normal")` names one.
#define ZAVL3_DECLARE_ENUMERATION(E, ...)                                                          \
    enum class E : std::int32_t {};                                                                \
    consteval auto wire_words(E)                                                                   \
    {                                                                                              \
        return std::to_array<const char*>({__VA_ARGS__});                                          \
    }
ZAVL3_ENUMERATIONS(ZAVL3_DECLARE_ENUMERATION)
#undef ZAVL3_DECLARE_ENUMERATION

// The words of a boolean.
enum class Boolean : std::int32_t {};
consteval auto wire_words(Boolean)
{
    return std::to_array<const char*>({"false", "true"});
}

template <typename E>
inline constexpr std::size_t word_count = wire_words(E{}).size();

template <typename E>
consteval E word(std::string_view text)
{
    constexpr auto words = wire_words(E{});
    for (std::size_t i = 0; i < words.size(); ++i) {
        if (words[i] == text) {
            return E{static_cast<std::int32_t>(i)};
        }
    }
    throw "no such word";
}

template <typename E>
EnumString make_enum_string()
{
    constexpr auto words = wire_words(E{});
    std::array<EnumString::Row, words.size()> rows{};
    for (std::size_t i = 0; i < words.size(); ++i) {
        rows[i] = {static_cast<std::int32_t>(i), words[i]};
    }
    EnumString table(rows, -1, AString());
    for (const EnumString::Row& row : rows) {
        table.to_string(row.value).make_permanent();
        add_known_word(table.to_string(row.value));
    }
    return table;
}

template <typename E>
inline const NoDestructor<EnumString> enum_string{make_enum_string<E>()};

// The empty text for a value outside the table.
template <typename E>
const AString& to_wire(E value)
{
    return enum_string<E>->to_string(static_cast<std::int32_t>(value));
}

// False, with the value untouched, for an unknown word. `value` may be null. The text is an AString
// or the bytes of one.
template <typename E, typename Characters>
bool from_wire(const Characters& text, E* value)
{
    const std::int32_t number = enum_string<E>->from_string(text);
    if (number == enum_string<E>->invalid_value) {
        return false;
    }
    if (value != nullptr) {
        *value = E{number};
    }
    return true;
}

// Up to `Bound` values in a plain record; the entries from `count` on mean nothing.
template <typename T, std::uint32_t Bound>
struct BoundedVector {
    static constexpr std::uint32_t bound = Bound;

    std::uint32_t count = 0;
    std::array<T, Bound> vec{};

    void push_back(const T& value)
    {
        if (A_CHECK("zavl3_types", count < Bound)) {
            vec[count++] = value;
        }
    }
};

// Holds each value once, in the order of first addition.
template <typename E, std::uint32_t Bound>
struct BoundedSet : BoundedVector<E, Bound> {
    void add(E value)
    {
        for (std::uint32_t i = 0; i < this->count; ++i) {
            if (this->vec[i] == value) {
                return;
            }
        }
        this->push_back(value);
    }

    // All values of the enumeration, in numeric order.
    static BoundedSet all()
    {
        BoundedSet set;
        for (std::size_t i = 0; i < word_count<E>; ++i) {
            set.add(E{static_cast<std::int32_t>(i)});
        }
        return set;
    }
};

using ChannelSet = BoundedSet<Channel, 12>;
using ReportSet = BoundedSet<ReportType, 12>;
using ChannelReportSet = BoundedSet<ChannelReportType, 14>;
using TrackSet = BoundedSet<TrackType, 4>;

} // namespace ZAVL3
