#pragma once

#include "protocol/zavl3_types.h"

#include <cstdint>

// Conversions between the numbers of the exported interface and the values of the protocol. A
// number that a table does not know becomes the value of its first row, without an error.
namespace typehelp
{

ZAVL3::Channel channel_to_wire(std::uint32_t channel);
ZAVL3::Loop repeat_to_wire(std::uint32_t repeat);
std::uint32_t repeat_from_wire(ZAVL3::Loop loop);
ZAVL3::Playback playback_to_wire(std::uint32_t playback);
std::uint32_t playback_from_wire(ZAVL3::Playback playback);
ZAVL3::PrecueCondition precue_to_wire(std::uint32_t condition);
std::uint32_t rate_from_wire(ZAVL3::VideoRate rate);
std::uint32_t resolution_from_wire(ZAVL3::VideoResolution resolution);
std::uint32_t standard_from_wire(ZAVL3::VideoStandard standard);
ZAVL3::DropFrameFlag stripe_to_wire(std::uint32_t value);

// Nine states become five: 0 no channel or a time delay, 1 idle, 2 cueing, 3 play, 4 record.
std::uint32_t channel_status_from_wire(ZAVL3::ChannelStatus status);

// These report a number outside and give the value 0.
ZAVL3::FollowSpeed follow_to_wire(std::uint32_t follow);
ZAVL3::TransitionType transition_to_wire(std::uint32_t transition);
ZAVL3::TimecodeSource timecode_source_to_wire(std::uint32_t source);
std::uint32_t timecode_source_from_wire(ZAVL3::TimecodeSource source);

// 0 for the 60 Hz standards, 1 for 59.94, 2 for 50, 3 for 48, 4 for 47.95. Any other standard is
// reported and counts as 59.94.
std::uint32_t field_rate_class(ZAVL3::VideoStandard standard);
bool is_59_94_family(ZAVL3::VideoStandard standard);

// 1.0 is normal forward play; cut to -200.0 to 200.0 and towards zero. A NaN is 0.
std::int32_t speed_to_fixed(double speed);
double fixed_to_speed(std::int32_t speed);

// Bits 0 to 7, in rising order; a mask names no other channel.
ZAVL3::ChannelSet channel_mask_to_wire(std::uint32_t mask);
std::uint16_t edit_bits_to_mask(std::uint32_t bits);
std::uint32_t edit_mask_to_bits(std::uint16_t mask);
// Bit 0 is video, with its timecode if that is asked for, bit 1 key, bit 2 audio.
ZAVL3::TrackSet track_mask_to_wire(std::uint32_t mask, bool with_timecode);

} // namespace typehelp
