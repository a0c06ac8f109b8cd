#include <memory>
#include <utility>

#include <fmt/format.h>

#include "sim/clip_commands.h"
#include "sim/command_fields.h"
#include "sim/refusal.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

using namespace rules;

constexpr FieldRule vclip_id = short_text("VClipID");
constexpr FieldRule vclip_position = u32("VClipPosition");
constexpr FieldRule length = u32("ClipLength");

// Does `edit` to the virtual clip that the command names. If that is refused it stays as it was.
template <class Edit>
void change(Call& call, const Edit& edit)
{
    const VirtualClipPtr& before = call.station.clips.virtual_clip(call.fields.text("VClipID"));
    VirtualClip changed = *before;
    edit(changed);
    StoreChange made;
    made.virtual_clips.push_back({before, std::make_shared<const VirtualClip>(std::move(changed))});
    call.station.commit(made);
}

void vclip_create(Call& call)
{
    VirtualClip made;
    made.name = call.fields.text("VClipID");
    made.length = call.fields.get<std::uint32_t>("ClipLength");
    check_store_name("virtual clip", made.name);
    if (call.station.clips.has_virtual_clip(made.name)) {
        throw Refusal(fmt::format("there is a virtual clip {} already", quote(made.name)));
    }
    if (made.length == 0) {
        throw Refusal("a virtual clip of no length cannot be created; 1 field is the least");
    }
    StoreChange change;
    change.virtual_clips.push_back({nullptr, std::make_shared<const VirtualClip>(std::move(made))});
    call.station.commit(change);
}

void vclip_free(Call& call)
{
    StoreChange change;
    change.virtual_clips.push_back(
        {call.station.clips.virtual_clip(call.fields.text("VClipID")), nullptr});
    call.station.commit(change);
}

void vclip_modification_start(Call& call)
{
    change(call, [](VirtualClip& edited) {
        if (edited.draft) {
            throw Refusal(
                fmt::format("virtual clip {} is being modified already", quote(edited.name)));
        }
        edited.draft = edited.tracks;
    });
}

void vclip_modification_end(Call& call)
{
    change(call, [](VirtualClip& edited) {
        if (!edited.draft) {
            throw Refusal(fmt::format("virtual clip {} is not being modified; start that first",
                                      quote(edited.name)));
        }
        edited.tracks = std::move(*edited.draft);
        edited.draft.reset();
    });
}

void vclip_cfg_tracks(Call& call)
{
    const ClipPtr like = call.station.clips.clip(call.fields.text("ClipID"));
    change(call, [&](VirtualClip& edited) {
        configure_tracks(edited, wanted_tracks(call.fields), *like);
    });
}

void vclip_add_segment(Call& call)
{
    const Fields& fields = call.fields;
    const ClipPtr source = call.station.clips.clip(fields.text("ClipID"));
    Segment segment;
    segment.at = fields.get<std::uint32_t>("VClipPosition");
    segment.length = fields.get<std::uint32_t>("ClipLength");
    segment.clip = source->name;
    segment.position = fields.get<std::uint32_t>("ClipPosition");
    segment.speed.value = fields.optional<Speed>("Speed").value_or(normal_speed);
    change(call, [&](VirtualClip& edited) {
        add_segment(edited, wanted_tracks(fields), segment, *source);
    });
}

void vclip_clear_segment(Call& call)
{
    change(call, [&](VirtualClip& edited) {
        clear_segment(edited, wanted_tracks(call.fields),
                      call.fields.get<std::uint32_t>("VClipPosition"),
                      call.fields.get<std::uint32_t>("ClipLength"));
    });
}

void vclip_ripple(Call& call)
{
    change(call, [&](VirtualClip& edited) {
        ripple(edited, wanted_tracks(call.fields), call.fields.get<std::uint32_t>("VClipPosition"),
               call.fields.get<std::int32_t>("VClipDistance"));
    });
}

void vclip_track_enable(Call& call)
{
    change(call, [&](VirtualClip& edited) { enable_tracks(edited, wanted_tracks(call.fields)); });
}

} // namespace

std::vector<CommandRule> virtual_clip_commands()
{
    const FieldRule clip_id = short_text("ClipID");
    return {
        {"vclip_add_segment",
         {vclip_id, clip_id, u32("ClipPosition"), track_set, vclip_position, length, speed},
         vclip_add_segment},
        {"vclip_cfg_tracks", {vclip_id, clip_id, track_set}, vclip_cfg_tracks},
        {"vclip_clear_segment", {vclip_id, track_set, vclip_position, length}, vclip_clear_segment},
        {"vclip_create", {vclip_id, length}, vclip_create},
        {"vclip_free", {vclip_id}, vclip_free},
        {"vclip_modification_end", {vclip_id}, vclip_modification_end},
        {"vclip_modification_start", {vclip_id}, vclip_modification_start},
        {"vclip_ripple", {vclip_id, track_set, vclip_position, i32("VClipDistance")}, vclip_ripple},
        {"vclip_track_enable", {vclip_id, track_set}, vclip_track_enable},
    };
}

} // namespace veltosim
