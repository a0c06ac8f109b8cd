#pragma once

#include <array>
#include <cstdint>
#include <limits>
#include <span>
#include <string_view>

#include "sim/channel.h"
#include "sim/message.h"
#include "sim/text.h"
#include "sim/words.h"

namespace veltosim::rules
{

// How the fields of the commands are told.

constexpr FieldRule text(std::string_view name)
{
    return {.name = name};
}

constexpr FieldRule short_text(std::string_view name)
{
    return {.name = name, .highest = 4096};
}

template <class T>
constexpr FieldRule number(std::string_view name)
{
    return {.name = name,
            .kind = FieldKind::number,
            .lowest = std::numeric_limits<T>::min(),
            .highest = std::numeric_limits<T>::max()};
}

constexpr FieldRule word(std::string_view name, Words words)
{
    return {.name = name, .kind = FieldKind::word, .words = words};
}

constexpr FieldRule flag(std::string_view name)
{
    return {.name = name, .kind = FieldKind::flag, .required = false};
}

constexpr FieldRule list_of(std::string_view name, std::span<const FieldRule> item)
{
    return {.name = name, .kind = FieldKind::list, .parts = item};
}

constexpr FieldRule composite(std::string_view name, std::span<const FieldRule> parts)
{
    return {.name = name, .kind = FieldKind::composite, .parts = parts};
}

constexpr FieldRule optional(FieldRule rule)
{
    rule.required = false;
    return rule;
}

inline constexpr auto u8 = number<std::uint8_t>;
inline constexpr auto u16 = number<std::uint16_t>;
inline constexpr auto u32 = number<std::uint32_t>;
inline constexpr auto i32 = number<std::int32_t>;

inline constexpr FieldRule channel = word("Channel", channel_words);
inline constexpr std::array channel_set_item{channel};
inline constexpr FieldRule channel_set = list_of("ChannelSet", channel_set_item);
inline constexpr FieldRule speed = {.name = "Speed",
                                    .kind = FieldKind::speed,
                                    .required = false,
                                    .lowest = -fastest,
                                    .highest = fastest};
inline constexpr FieldRule edit_mask = {
    .name = "SonyEditMask", .kind = FieldKind::number, .lowest = 0, .highest = 0x3FF};
inline constexpr FieldRule auto_ee = word("AutoEE", bool_words);
inline constexpr FieldRule layer = optional(word("Layer", layer_words));
inline constexpr FieldRule loop = word("Loop", loop_words);
inline constexpr FieldRule min_latency = flag("MinLatency"); // all is done at once here anyway
inline constexpr FieldRule roll = word("Roll", roll_words);
inline constexpr FieldRule transition_type = word("TransitionType", transition_type_words);
inline constexpr FieldRule transition_duration = optional(u32("TransitionDuration"));
inline constexpr std::array transition_parts{transition_type, transition_duration};

inline constexpr std::array track_set_item{word("TrackType", track_type_words)};
inline constexpr FieldRule track_set = list_of("TrackSet", track_set_item);
inline constexpr std::array key_item{text("Key")};
inline constexpr FieldRule key_list = list_of("KeyList", key_item);
inline constexpr std::array metadata_parts{text("Key"), text("Value")};
inline constexpr std::array metadata_item{composite("Metadata", metadata_parts)};
inline constexpr FieldRule metadata_list = list_of("MetadataList", metadata_item);

} // namespace veltosim::rules
