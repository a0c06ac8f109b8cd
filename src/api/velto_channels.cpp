#include "api/dispatch.h"
#include "connection/text.h"
#include "protocol/typehelp.h"

using ZAVL3::ChannelInformation;
using ZAVL3::ChannelStatus;

namespace
{

// A getter that `read`s the value of a cached item.
template <typename Value, typename Read>
VeltoResult channel_getter(VeltoHandle handle, uint32_t channel,
                           CachedItem<Value> ChannelState::*item, Read read)
{
    return dispatch(handle, &VeltoConnObject::read_channel<Value, Read>, channel, item, read);
}

// One that gives a number of the channel's information, 0 where that is absent.
template <FixedString Field>
VeltoResult information_getter(VeltoHandle handle, uint32_t channel, uint32_t* number)
{
    return channel_getter(
        handle, channel, &ChannelState::info,
        [=](const ChannelInformation& info) { *number = info.get<Field>().value; });
}

template <typename Value>
void store(uint32_t* output, Value value)
{
    if (output != nullptr) {
        *output = static_cast<uint32_t>(value);
    }
}

} // namespace

VeltoResult velto_channel_status(VeltoHandle handle, uint32_t channel, uint32_t* status)
{
    return channel_getter(handle, channel, &ChannelState::status, [=](ChannelStatus value) {
        *status = typehelp::channel_status_from_wire(value);
    });
}

VeltoResult velto_channel_clip(VeltoHandle handle, uint32_t channel, VeltoTextBuffer clip)
{
    return channel_getter(handle, channel, &ChannelState::clip_id,
                          [=](const AString& value) { copy_text(value, clip); });
}

VeltoResult velto_channel_clip_length(VeltoHandle handle, uint32_t channel, uint32_t* length)
{
    return information_getter<"ClipLength">(handle, channel, length);
}

VeltoResult velto_channel_position(VeltoHandle handle, uint32_t channel, uint32_t* position)
{
    return channel_getter(handle, channel, &ChannelState::timecode,
                          [=](const ChannelTimecodes& value) { *position = value.position; });
}

VeltoResult velto_channel_speed(VeltoHandle handle, uint32_t channel, double* speed)
{
    return channel_getter(handle, channel, &ChannelState::speed,
                          [=](fract16 value) { *speed = typehelp::fixed_to_speed(value); });
}

// Whether the report had a loop mode at all is not looked at; a record without one holds the first.
VeltoResult velto_channel_repeat(VeltoHandle handle, uint32_t channel, uint32_t* repeat)
{
    return channel_getter(handle, channel, &ChannelState::info,
                          [=](const ChannelInformation& info) {
                              *repeat = typehelp::repeat_from_wire(info.get<"Loop">().value);
                          });
}

VeltoResult velto_channel_angle(VeltoHandle handle, uint32_t channel, uint32_t* angle,
                                uint32_t* count)
{
    return channel_getter(handle, channel, &ChannelState::info,
                          [=](const ChannelInformation& info) {
                              const auto& angles = info.get<"AngleCount">();
                              store(angle, info.get<"Angle">().value);
                              store(count, angles.has ? angles.value : 1);
                          });
}

VeltoResult velto_channel_ee(VeltoHandle handle, uint32_t channel, uint32_t* bits, uint32_t* manual)
{
    return channel_getter(
        handle, channel, &ChannelState::info, [=](const ChannelInformation& info) {
            const auto& ee = info.get<"EEStatus">();
            store(bits, typehelp::edit_mask_to_bits(ee.value.get<"SonyEditMask">()));
            store(manual, ee.has && !ee.value.get<"AutoEE">());
        });
}

VeltoResult velto_channel_precue_count(VeltoHandle handle, uint32_t channel, uint32_t* count)
{
    return information_getter<"PrecueCount">(handle, channel, count);
}

VeltoResult velto_playlist_count(VeltoHandle handle, uint32_t channel, uint32_t* count)
{
    return channel_getter(handle, channel, &ChannelState::list_play,
                          [=](const ChannelListPlay& list) { store(count, list.count()); });
}

VeltoResult velto_playlist_status(VeltoHandle handle, uint32_t channel, uint32_t* loaded)
{
    return channel_getter(handle, channel, &ChannelState::list_play,
                          [=](const ChannelListPlay& list) { store(loaded, list.list_loaded); });
}
