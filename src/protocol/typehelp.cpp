#include "protocol/typehelp.h"

#include <algorithm>
#include <span>

namespace typehelp
{

using namespace ZAVL3;

namespace
{

// Exported number and protocol value.
struct Row {
    std::uint32_t exported;
    std::int32_t wire;
};

// Rows (first, 0), (first + 1, 1) and so on, as protocol value and exported number.
template <std::size_t Count>
constexpr std::array<Row, Count> rows_from(std::int32_t first)
{
    std::array<Row, Count> rows{};
    for (std::size_t i = 0; i < Count; ++i) {
        const auto number = static_cast<std::uint32_t>(i);
        rows[i] = {number, first + static_cast<std::int32_t>(i)};
    }
    return rows;
}

constexpr auto channel_rows = rows_from<12>(0);
constexpr auto repeat_rows = rows_from<5>(0);
constexpr auto playback_rows = rows_from<2>(1);
constexpr auto precue_rows = rows_from<4>(0);
constexpr auto stripe_rows = rows_from<2>(0);
constexpr auto rate_rows = rows_from<5>(0);
constexpr auto resolution_rows = rows_from<4>(2);
constexpr auto standard_rows = rows_from<10>(17);

// nochannel, idle, cueing, stop, play, record, insert, testpattern, timedelay. That a time delay
// reads like no channel is wanted.
constexpr std::array<Row, word_count<ChannelStatus>> channel_status_rows{
    {{0, 0}, {1, 1}, {2, 2}, {1, 3}, {3, 4}, {4, 5}, {4, 6}, {1, 7}, {0, 8}}};

std::int32_t to_wire_value(std::span<const Row> rows, std::uint32_t exported)
{
    for (const Row& row : rows) {
        if (row.exported == exported) {
            return row.wire;
        }
    }
    return rows.front().wire;
}

template <typename E>
std::uint32_t from_wire_value(std::span<const Row> rows, E wire)
{
    for (const Row& row : rows) {
        if (row.wire == static_cast<std::int32_t>(wire)) {
            return row.exported;
        }
    }
    return rows.front().exported;
}

// 0 to `last` unchanged.
std::uint32_t identity(std::uint32_t value, std::uint32_t last)
{
    return A_CHECK("typehelp", value <= last) ? value : 0;
}

constexpr std::uint16_t video_edit = 0x0010;
constexpr std::uint16_t key_edit = 0x0020;
constexpr std::uint16_t other_edit = 0x03CF;

} // namespace

Channel channel_to_wire(std::uint32_t channel)
{
    return Channel{to_wire_value(channel_rows, channel)};
}

Loop repeat_to_wire(std::uint32_t repeat)
{
    return Loop{to_wire_value(repeat_rows, repeat)};
}

std::uint32_t repeat_from_wire(Loop loop)
{
    return from_wire_value(repeat_rows, loop);
}

Playback playback_to_wire(std::uint32_t playback)
{
    return Playback{to_wire_value(playback_rows, playback)};
}

std::uint32_t playback_from_wire(Playback playback)
{
    return from_wire_value(playback_rows, playback);
}

PrecueCondition precue_to_wire(std::uint32_t condition)
{
    return PrecueCondition{to_wire_value(precue_rows, condition)};
}

std::uint32_t rate_from_wire(VideoRate rate)
{
    return from_wire_value(rate_rows, rate);
}

std::uint32_t resolution_from_wire(VideoResolution resolution)
{
    return from_wire_value(resolution_rows, resolution);
}

std::uint32_t standard_from_wire(VideoStandard standard)
{
    return from_wire_value(standard_rows, standard);
}

DropFrameFlag stripe_to_wire(std::uint32_t value)
{
    return DropFrameFlag{to_wire_value(stripe_rows, value)};
}

std::uint32_t channel_status_from_wire(ChannelStatus status)
{
    return from_wire_value(channel_status_rows, status);
}

FollowSpeed follow_to_wire(std::uint32_t follow)
{
    return FollowSpeed{static_cast<std::int32_t>(identity(follow, 3))};
}

TransitionType transition_to_wire(std::uint32_t transition)
{
    return TransitionType{static_cast<std::int32_t>(identity(transition, 1))};
}

TimecodeSource timecode_source_to_wire(std::uint32_t source)
{
    return TimecodeSource{static_cast<std::int32_t>(identity(source, 3))};
}

std::uint32_t timecode_source_from_wire(TimecodeSource source)
{
    return identity(static_cast<std::uint32_t>(source), 3);
}

std::uint32_t field_rate_class(VideoStandard standard)
{
    switch (static_cast<std::int32_t>(standard)) {
    case 0:
    case 8:
    case 17:
    case 22:
        return 0;
    case 1:
    case 9:
    case 18:
    case 23:
    case 26:
        return 1;
    case 2:
    case 10:
    case 19:
    case 24:
    case 25:
        return 2;
    case 20:
        return 3;
    case 21:
        return 4;
    default:
        assert_failed("typehelp", __LINE__, "field rate class is known");
        return 1;
    }
}

bool is_59_94_family(VideoStandard standard)
{
    return field_rate_class(standard) == 1;
}

std::int32_t speed_to_fixed(double speed)
{
    if (speed != speed) { // a NaN has no place between the limits
        return 0;
    }
    return static_cast<std::int32_t>(std::clamp(speed, -200.0, 200.0) * 65536.0);
}

double fixed_to_speed(std::int32_t speed)
{
    return speed * 1.52587890625e-5;
}

ChannelSet channel_mask_to_wire(std::uint32_t mask)
{
    ChannelSet channels;
    for (std::int32_t channel = 0; channel < 8; ++channel) {
        if ((mask >> channel & 1) != 0) {
            channels.add(Channel{channel});
        }
    }
    return channels;
}

std::uint16_t edit_bits_to_mask(std::uint32_t bits)
{
    return static_cast<std::uint16_t>(((bits & 1) != 0 ? video_edit : 0) |
                                      ((bits & 2) != 0 ? key_edit : 0) |
                                      ((bits & 4) != 0 ? other_edit : 0));
}

std::uint32_t edit_mask_to_bits(std::uint16_t mask)
{
    return ((mask & video_edit) != 0 ? 1u : 0u) | ((mask & key_edit) != 0 ? 2u : 0u) |
           ((mask & other_edit) != 0 ? 4u : 0u);
}

TrackSet track_mask_to_wire(std::uint32_t mask, bool with_timecode)
{
    TrackSet tracks;
    if ((mask & 1) != 0) {
        tracks.add(word<TrackType>("video"));
        if (with_timecode) {
            tracks.add(word<TrackType>("timecode"));
        }
    }
    if ((mask & 2) != 0) {
        tracks.add(word<TrackType>("key"));
    }
    if ((mask & 4) != 0) {
        tracks.add(word<TrackType>("audio"));
    }
    return tracks;
}

} // namespace typehelp
