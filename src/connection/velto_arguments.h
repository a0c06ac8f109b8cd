#pragma once

#include "connection/text.h"
#include "protocol/typehelp.h"
#include "protocol/zavl3_commands.h"

// The arguments of the exported functions: each knows which field of a command it fills, and how
// its exported value becomes the protocol's. Nothing is refused here; the server does or does not.
namespace argument
{

template <FixedString Name, auto Convert>
struct Argument;

template <FixedString Name, typename Wire, typename Exported, Wire (*Convert)(Exported)>
struct Argument<Name, Convert> {
    Exported value;

    template <typename Command>
    void fill(Command& command) const
    {
        command.template set<Name>(Convert(value));
    }
};

// A field that a function fills in by itself.
template <FixedString Name, auto Value>
struct Constant {
    template <typename Command>
    static void fill(Command& command)
    {
        command.template set<Name>(Value);
    }
};

template <typename Wire>
Wire low_bits(std::uint32_t value)
{
    return static_cast<Wire>(value);
}

inline ZAVL3::TrackSet tracks(std::uint32_t mask)
{
    return typehelp::track_mask_to_wire(mask, false);
}

// Video is created with its timecode.
inline ZAVL3::TrackSet new_tracks(std::uint32_t mask)
{
    return typehelp::track_mask_to_wire(mask, true);
}

inline bool is_one(std::uint32_t value)
{
    return value == 1;
}

inline bool is_not_one(std::uint32_t value)
{
    return value != 1;
}

using Channel = Argument<"Channel", typehelp::channel_to_wire>;
using Mask = Argument<"ChannelSet", typehelp::channel_mask_to_wire>;
using Clip = Argument<"ClipID", text_from_units>;
using ParentClip = Argument<"ParentClipID", text_from_units>;
using FromClip = Argument<"FromID", text_from_units>;
using ToClip = Argument<"ToID", text_from_units>;
using VClip = Argument<"VClipID", text_from_units>;
using Directory = Argument<"DirectoryName", text_from_units>;
using List = Argument<"ListID", text_from_units>;
using Tracks = Argument<"TrackSet", tracks>;
using NewTracks = Argument<"TrackSet", new_tracks>;
using Repeat = Argument<"Loop", typehelp::repeat_to_wire>;
using Condition = Argument<"PrecueCondition", typehelp::precue_to_wire>;
using Transition = Argument<"TransitionType", typehelp::transition_to_wire>;
using Follow = Argument<"FollowSpeed", typehelp::follow_to_wire>;
using Speed = Argument<"Speed", typehelp::speed_to_fixed>;
using Goto = Argument<"GotoPosition", low_bits<std::uint32_t>>;
using Position = Argument<"ClipPosition", low_bits<std::uint32_t>>;
using LoopIn = Argument<"LoopIn", low_bits<std::uint32_t>>;
using Length = Argument<"ClipLength", low_bits<std::uint32_t>>;
using Duration = Argument<"TransitionDuration", low_bits<std::uint32_t>>;
using Distance = Argument<"JogDistance", low_bits<std::int32_t>>;
using VClipPosition = Argument<"VClipPosition", low_bits<std::uint32_t>>;
using VClipDistance = Argument<"VClipDistance", low_bits<std::int32_t>>;
using Angle = Argument<"Angle", low_bits<std::uint8_t>>;
using Index = Argument<"ListIndex", low_bits<std::uint16_t>>;
using EditBits = Argument<"SonyEditMask", typehelp::edit_bits_to_mask>;
using Manual = Argument<"AutoEE", is_not_one>;
using MinLatency = Argument<"MinLatency", is_one>;

inline constexpr Constant<"Layer", ZAVL3::word<ZAVL3::Layer>("normal")> normal_layer;
inline constexpr Constant<"ClipScope", ZAVL3::word<ZAVL3::ClipScope>("vclip")> vclip_scope;
inline constexpr Constant<"Loop", ZAVL3::word<ZAVL3::Loop>("off")> no_loop;
inline constexpr Constant<"MinLatency", true> always_min_latency;
inline constexpr Constant<"Roll", ZAVL3::word<ZAVL3::Roll>("cueonly")> cue_only;
inline constexpr Constant<"Roll", ZAVL3::word<ZAVL3::Roll>("roll")> roll;

} // namespace argument
