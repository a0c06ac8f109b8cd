#include "sim/commands.h"

#include <algorithm>
#include <array>
#include <limits>
#include <utility>

#include <fmt/format.h>

#include "sim/clip_commands.h"
#include "sim/command_fields.h"
#include "sim/metadata_commands.h"
#include "sim/refusal.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

using namespace rules;

// Handlers. --------------------------------------------------------------------------------------

std::vector<std::size_t> named_channels(const Fields& fields)
{
    const FieldValue* set = fields.find("ChannelSet");
    if (!set) {
        return {fields.get<std::size_t>("Channel")};
    }
    std::vector<std::size_t> channels;
    for (const FieldValue& item : set->items) {
        const auto index = static_cast<std::size_t>(item.number);
        if (std::find(channels.begin(), channels.end(), index) == channels.end()) {
            channels.push_back(index);
        }
    }
    if (channels.empty()) {
        throw Refusal("ChannelSet names no channel; name one at least");
    }
    return channels;
}

// Does the same to the channel or to all channels of the set, at one time. If one refuses, none has
// moved.
template <class Action>
void on_channels(Call& call, const Action& action)
{
    const std::vector<std::size_t> named = named_channels(call.fields);
    std::vector<Channel> changed;
    for (const std::size_t index : named) {
        action(changed.emplace_back(call.station.channels[index]));
    }
    call.station.replace_channels(named, std::move(changed));
}

// The out point that the fields give: cue_clip names it, precue counts from the start.
std::optional<std::uint32_t> wanted_out_point(const Fields& fields, std::uint32_t start)
{
    const auto length = fields.optional<std::uint32_t>("ClipLength");
    if (!length) {
        return fields.optional<std::uint32_t>("ClipPosition");
    }
    constexpr std::uint64_t most = std::numeric_limits<std::uint32_t>::max();
    return static_cast<std::uint32_t>(std::min(std::uint64_t{start} + *length, most));
}

// The clip that the fields name, and how they want it played. What they leave out is the clip's
// own.
Material wanted_material(const Call& call)
{
    const Fields& fields = call.fields;
    const auto scope = fields.optional<ClipScope>("ClipScope").value_or(ClipScope::clip);
    Material material;
    material.clip = call.station.clips.clip(fields.text("ClipID"), scope);
    material.scope = scope;
    material.start = fields.optional<std::uint32_t>("GotoPosition").value_or(0);
    material.out_point = wanted_out_point(fields, material.start);
    const auto loop_in = fields.optional<std::uint32_t>("LoopIn");
    const auto loop_out = fields.optional<std::uint32_t>("LoopOut");
    material.loop_in = loop_in || loop_out ? loop_in : material.clip->loop_in;
    material.loop_out = loop_in || loop_out ? loop_out : material.clip->loop_out;
    material.loop = fields.optional<Loop>("Loop").value_or(Loop::automatic);
    material.angle = fields.optional<std::uint8_t>("Angle").value_or(std::uint8_t{0});
    material.speed = fields.optional<Speed>("Speed").value_or(normal_speed);
    material.playback = fields.optional<Playback>("Playback").value_or(material.clip->playback);
    return material;
}

void cue_clip(Call& call)
{
    const Material material = wanted_material(call);
    on_channels(call, [&](Channel& target) { target.cue(call.now, material); });
}

void list_load(Call& call)
{
    const auto mode =
        call.fields.optional<ListPlayMode>("ListPlayMode").value_or(ListPlayMode::single_channel);
    const LoadedList list = make_list(call.station.clips, call.fields.text("ListID"), mode);
    on_channels(call, [&](Channel& target) { target.load_list(call.now, list); });
}

void unload(Call& call)
{
    on_channels(call, [&](Channel& target) { target.unload(call.now); });
}

void play(Call& call)
{
    const auto wanted = call.fields.optional<Speed>("Speed");
    on_channels(call, [&](Channel& target) { target.play(call.now, wanted); });
}

void stop(Call& call)
{
    on_channels(call, [&](Channel& target) { target.stop(call.now); });
}

void go_to(Call& call)
{
    const auto wanted = call.fields.get<std::uint32_t>("GotoPosition");
    on_channels(call, [&](Channel& target) { target.go_to(call.now, wanted); });
}

void jog(Call& call)
{
    const auto distance = call.fields.get<std::int32_t>("JogDistance");
    on_channels(call, [&](Channel& target) { target.jog(call.now, distance); });
}

void precue(Call& call)
{
    const auto condition = call.fields.optional<PrecueCondition>("PrecueCondition")
                               .value_or(PrecueCondition::explicit_switch);
    const Precue wanted{wanted_material(call), condition};
    on_channels(call, [&](Channel& target) { target.precue(call.now, wanted); });
}

void precue_activate(Call& call)
{
    on_channels(call, [&](Channel& target) { target.precue_activate(call.now); });
}

void precue_clear(Call& call)
{
    on_channels(call, [&](Channel& target) { target.precue_clear(call.now); });
}

void go_live(Call& call)
{
    const Fields& fields = call.fields;
    std::optional<Material> material;
    if (fields.has("ClipID")) {
        material = wanted_material(call);
    }
    on_channels(call, [&](Channel& target) {
        if (material) {
            target.cue(call.now, *material);
        }
        target.go_live(call.now, fields.optional<std::uint32_t>("TimeDelay").value_or(0),
                       fields.optional<std::uint8_t>("Angle"));
    });
}

void take(Call& call)
{
    const Fields& fields = call.fields;
    const auto type =
        fields.optional<TransitionType>("TransitionType").value_or(TransitionType::cut);
    const auto duration = fields.optional<std::uint32_t>("TransitionDuration").value_or(0);
    const auto follow = fields.optional<FollowSpeed>("FollowSpeed").value_or(FollowSpeed::none);
    on_channels(call, [&](Channel& target) { target.take(call.now, type, duration, follow); });
}

void iso_angle(Call& call)
{
    const auto wanted = call.fields.get<std::uint8_t>("Angle");
    on_channels(call, [&](Channel& target) { target.set_angle(call.now, wanted); });
}

void insert_edit(Call& call)
{
    const auto mask = call.fields.get<std::uint16_t>("SonyEditMask");
    on_channels(call, [&](Channel& target) { target.set_edit_mask(call.now, mask); });
}

void ee(Call& call)
{
    const auto mask = call.fields.get<std::uint16_t>("SonyEditMask");
    const auto automatic = call.fields.get<bool>("AutoEE");
    on_channels(call, [&](Channel& target) { target.set_ee(call.now, mask, automatic); });
}

void set_loop(Call& call)
{
    const auto wanted = call.fields.get<Loop>("Loop");
    on_channels(call, [&](Channel& target) { target.set_loop(call.now, wanted); });
}

void set_out_point(Call& call)
{
    const auto wanted = call.fields.get<std::uint32_t>("ClipPosition");
    on_channels(call, [&](Channel& target) { target.set_out_point(call.now, wanted); });
}

void clear_out_point(Call& call)
{
    on_channels(call, [&](Channel& target) { target.clear_out_point(call.now); });
}

QueuedElement wanted_element(const Fields& fields)
{
    return {fields.get<std::size_t>("ListIndex"), fields.get<Roll>("Roll")};
}

void list_play_now(Call& call)
{
    const auto wanted = wanted_element(call.fields);
    const auto distance = call.fields.optional<std::int32_t>("JogDistance").value_or(0);
    on_channels(call, [&](Channel& target) { target.list_play_now(call.now, wanted, distance); });
}

void list_play_next(Call& call)
{
    const auto wanted = wanted_element(call.fields);
    on_channels(call, [&](Channel& target) { target.list_play_next(call.now, wanted); });
}

void get_computer_name(Call& call)
{
    add_text(call.replies.add("computername"), "ComputerName", call.station.name);
}

void get_video_standard(Call& call)
{
    const Standard& standard = call.station.standard;
    const pugi::xml_node reply = call.replies.add("video_standard");
    add_text(reply, "VideoStandard", standard.name);
    add_text(reply, "VideoRate", standard.rate);
    add_text(reply, "VideoResolution", standard.resolution);
}

void report_register(Call& call)
{
    call.registrations.reports.insert(call.fields.get<ReportType>("ReportType"));
}

void channel_report_register(Call& call)
{
    call.registrations.channel_reports.add(call.fields.get<std::size_t>("Channel"),
                                           call.fields.get<ChannelReportType>("ChannelReportType"));
}

// The table. -------------------------------------------------------------------------------------

std::vector<CommandRule> make_table()
{
    std::vector<CommandRule> table{
        {"channel_report_register",
         {channel, word("ChannelReportType", channel_report_type_words)},
         channel_report_register},
        {"clear_out_point", {channel}, clear_out_point},
        {"cue_clip",
         {channel, text("ClipID"), optional(loop), optional(u32("GotoPosition")),
          optional(u32("ClipPosition")), optional(u8("Angle")),
          optional(word("Playback", playback_words)), speed,
          optional(word("ClipScope", clip_scope_words)), optional(u32("LoopIn")),
          optional(u32("LoopOut")), layer, flag("BlackOnCue")},
         cue_clip},
        {"ee", {channel, edit_mask, auto_ee}, ee},
        {"gang_ee", {channel_set, edit_mask, auto_ee}, ee},
        {"gang_gotocmd", {channel_set, u32("GotoPosition"), min_latency}, go_to},
        {"gang_insert_edit", {channel_set, edit_mask}, insert_edit},
        {"gang_jog", {channel_set, i32("JogDistance"), min_latency}, jog},
        {"gang_play", {channel_set, speed, min_latency}, play},
        {"gang_precue_activate", {channel_set}, precue_activate},
        {"gang_stop", {channel_set, min_latency}, stop},
        {"get_computer_name", {}, get_computer_name},
        {"get_video_standard", {}, get_video_standard},
        {"go_live",
         {channel, optional(text("ClipID")), optional(u8("Angle")), optional(u32("TimeDelay")),
          min_latency},
         go_live},
        {"gotocmd", {channel, u32("GotoPosition"), min_latency}, go_to},
        {"insert_edit", {channel, edit_mask}, insert_edit},
        {"iso_angle", {channel, u8("Angle")}, iso_angle},
        {"jog", {channel, i32("JogDistance"), layer, min_latency}, jog},
        {"list_load",
         {channel, text("ListID"), optional(word("ListPlayMode", list_play_mode_words)),
          optional(composite("Transition", transition_parts)), layer},
         list_load},
        {"list_play_next", {channel, u16("ListIndex"), roll}, list_play_next},
        {"list_play_now",
         {channel, u16("ListIndex"), roll, optional(i32("JogDistance"))},
         list_play_now},
        {"play", {channel, speed, layer, min_latency}, play},
        {"precue",
         {channel, text("ClipID"), optional(word("PrecueCondition", precue_condition_words)),
          optional(u32("GotoPosition")), optional(u32("ClipLength")), optional(u8("Angle")),
          optional(u32("LoopIn")), optional(u32("LoopOut")), optional(loop), min_latency},
         precue},
        {"precue_activate", {channel}, precue_activate},
        {"precue_clear", {channel}, precue_clear},
        {"report_register", {word("ReportType", report_type_words)}, report_register},
        {"set_loop", {channel, loop, layer}, set_loop},
        {"set_out_point", {channel, u32("ClipPosition")}, set_out_point},
        {"stop", {channel, layer, min_latency}, stop},
        {"take",
         {channel, optional(transition_type), transition_duration,
          optional(word("FollowSpeed", follow_speed_words))},
         take},
        {"unload", {channel, layer}, unload},
    };
    for (const auto& more : {clip_commands(), virtual_clip_commands(), metadata_commands()}) {
        table.insert(table.end(), more.begin(), more.end());
    }
    return table;
}

const CommandRule& find_command(std::string_view name)
{
    const auto all = commands();
    const auto found = std::find_if(all.begin(), all.end(),
                                    [&](const CommandRule& rule) { return rule.name == name; });
    if (found == all.end()) {
        throw Refusal(fmt::format("there is no command {}", quote(name)));
    }
    return *found;
}

} // namespace

std::span<const CommandRule> commands()
{
    static const std::vector<CommandRule> table = make_table();
    return table;
}

std::vector<std::string> answer(Station& station, Registrations& registrations,
                                std::string_view command, TimePoint now)
{
    const CommandMessage message(command);
    Replies replies(message.xid());
    std::string refuser = station.name;
    std::string name;
    try {
        const pugi::xml_node content = message.content();
        name = content.name();
        const CommandRule& rule = find_command(name);
        refuser += fmt::format(": {}", rule.name);
        if (const std::string* reason = station.faults.refusal(name)) {
            throw Refusal(*reason);
        }
        const Fields fields(content, rule.fields);
        Call call{station, registrations, fields, now, replies};
        station.note_use(now);
        rule.handler(call);
        if (replies.empty()) {
            replies.add("ok");
        }
    } catch (const Refusal& refusal) {
        replies.clear();
        const pugi::xml_node error = replies.add("error");
        add_text(error, "ErrorMessage", fmt::format("{}: {}", refuser, refusal.what()));
        add_text(error, "ErrorCode", word_of(error_code_words, refusal.code));
    }
    return station.faults.swallows_reply(name) ? std::vector<std::string>() : replies.messages();
}

} // namespace veltosim
