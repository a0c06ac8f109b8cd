#include "sim/reports.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <tuple>

#include <fmt/format.h>

#include "sim/message.h"
#include "sim/refusal.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

// Collects the messages about one channel.
struct Writer {
    const ChannelView& view;
    const Standard& standard;
    std::vector<std::string>& messages;

    // Adds the report `kind`, whose other fields `add_fields` adds.
    template <class AddFields>
    void add(std::string_view kind, const AddFields& add_fields)
    {
        const Report report(kind);
        add_text(report.content(), "Channel", {&view.letter, 1});
        add_fields(report.content());
        messages.push_back(report.message());
    }
    void add(std::string_view kind)
    {
        add(kind, [](const pugi::xml_node&) {});
    }
};

// Status, clip, speed. ---------------------------------------------------------------------------

bool status_changed(const ChannelView& before, const ChannelView& after)
{
    return std::tie(before.status, before.clip) != std::tie(after.status, after.clip);
}

void write_status(Writer& out, const ChannelView*)
{
    out.add("channel_status", [&](const pugi::xml_node& content) {
        add_text(content, "ChannelStatus", word_of(channel_status_words, out.view.status));
        if (!out.view.clip.empty()) {
            add_text(content, "ClipID", out.view.clip);
        }
    });
}

bool clip_changed(const ChannelView& before, const ChannelView& after)
{
    return before.clip != after.clip;
}

void write_clip(Writer& out, const ChannelView*)
{
    out.add("channel_clipid",
            [&](const pugi::xml_node& content) { add_text(content, "ClipID", out.view.clip); });
}

bool speed_changed(const ChannelView& before, const ChannelView& after)
{
    return before.speed != after.speed;
}

void write_speed(Writer& out, const ChannelView*)
{
    out.add("channel_speed",
            [&](const pugi::xml_node& content) { add_speed(content, "Speed", out.view.speed); });
}

// Timecode. --------------------------------------------------------------------------------------

bool position_changed(const ChannelView& before, const ChannelView& after)
{
    return std::tie(before.position, before.clip) != std::tie(after.position, after.clip);
}

void add_timecode(const pugi::xml_node& parent, std::string_view name, const Standard& standard,
                  std::optional<std::uint64_t> field)
{
    const pugi::xml_node timecode = add_element(parent, name);
    add_bool(timecode, "Valid", field.has_value());
    if (field) {
        const auto flag = standard.drop_frame() ? DropFrameFlag::df : DropFrameFlag::ndf;
        add_text(timecode, "VideoStandard", standard.name);
        add_number(timecode, "FieldNumber", static_cast<std::int64_t>(*field));
        add_text(timecode, "DropFrameFlag", word_of(drop_frame_flag_words, flag));
    }
}

void write_timecode(Writer& out, const ChannelView*)
{
    const ChannelView& view = out.view;
    std::optional<std::uint64_t> shown;
    if (!view.clip.empty()) {
        shown = view.position;
    }
    out.add("channel_timecode", [&](const pugi::xml_node& content) {
        add_number(content, "ClipPosition", view.position);
        add_timecode(content, "DisplayTimecode", out.standard, shown);
        add_timecode(content, "InputTimecode", out.standard, view.input_field);
    });
}

// Info. ------------------------------------------------------------------------------------------

auto info_of(const ChannelView& view)
{
    return std::tie(view.clip, view.clip_length, view.interp, view.loop, view.loop_in,
                    view.loop_out, view.out_point, view.playback, view.angle_count, view.angle,
                    view.audio_tracks, view.ee_mask, view.auto_ee, view.precue_condition,
                    view.transition_in_progress, view.natural_speed);
}

bool info_changed(const ChannelView& before, const ChannelView& after)
{
    return info_of(before) != info_of(after);
}

void add_clip_info(const pugi::xml_node& info, const ChannelView& view)
{
    const std::uint32_t end = view.out_point.value_or(view.clip_length);
    add_number(info, "ClipLength", view.clip_length);
    add_text(info, "Interp", word_of(interp_words, view.interp));
    add_text(info, "Loop", word_of(loop_words, view.loop));
    add_number(info, "LoopIn", view.loop_in.value_or(0));
    add_number(info, "LoopOut", view.loop_out.value_or(end));
    add_text(info, "Playback", word_of(playback_words, view.playback));
    add_number(info, "AngleCount", view.angle_count);
    add_number(info, "Angle", view.angle);
    add_number(info, "AudioTrackCount", view.audio_tracks);
}

void write_info(Writer& out, const ChannelView*)
{
    const ChannelView& view = out.view;
    out.add("channel_info", [&](const pugi::xml_node& content) {
        const pugi::xml_node info = add_element(content, "ChannelInformation");
        add_text(info, "ClipID", view.clip);
        if (!view.clip.empty()) {
            add_clip_info(info, view);
        }
        const pugi::xml_node ee = add_element(info, "EEStatus");
        add_number(ee, "SonyEditMask", view.ee_mask);
        add_bool(ee, "AutoEE", view.auto_ee);
        add_number(info, "PrecueCount", view.precue_condition ? 1 : 0);
        add_bool(info, "TransitionInProgress", view.transition_in_progress);
        if (!view.clip.empty()) {
            add_speed(info, "NaturalSpeed", view.natural_speed);
        }
    });
}

// List play. -------------------------------------------------------------------------------------

using Index = std::optional<std::size_t>;

auto list_of(const ChannelView& view)
{
    return std::tie(view.list_elements, view.list_turning, view.list_index, view.list_follows,
                    view.list_locked);
}

bool list_changed(const ChannelView& before, const ChannelView& after)
{
    return list_of(before) != list_of(after);
}

void add_list_element(const pugi::xml_node& parent, const Material& material)
{
    const pugi::xml_node element = add_element(parent, "ListElement");
    const bool is_virtual = material.scope == ClipScope::vclip;
    add_text(add_element(element, "ContentID"), is_virtual ? "VClipID" : "ClipID",
             material.clip->name);
    add_number(element, "GotoPosition", material.start);
    if (material.out_point) {
        add_number(element, "ClipPosition", *material.out_point);
    }
    add_speed(element, "Speed", material.speed);
    add_number(element, "Angle", material.angle);
    add_text(element, "ListElementAtEnd", word_of(list_element_at_end_words, material.at_end));
}

// Clients may know elements of the list that was there before, also of before they lost the link.
void write_elements(Writer& out)
{
    const ChannelView& view = out.view;
    out.add("channel_listplay_list", [&](const pugi::xml_node& content) {
        add_text(content, "ListID", view.list);
        add_text(content, "ListPlayMode", word_of(list_play_mode_words, view.list_mode));
    });
    out.add("channel_listplay_clear_all");
    std::int64_t index = 0;
    for (const Material& material : *view.list_elements) {
        out.add("channel_listplay_item_exists", [&](const pugi::xml_node& content) {
            add_number(content, "ListIndex", index++);
            add_list_element(content, material);
        });
    }
}

void write_index(Writer& out, std::string_view kind, const Index& index)
{
    out.add(kind, [&](const pugi::xml_node& content) {
        const pugi::xml_node field = add_element(content, "ListPlaybackIndex");
        if (index) {
            add_number(field, "ListIndex", static_cast<std::int64_t>(*index));
        }
    });
}

void write_list(Writer& out, const ChannelView* before)
{
    const ChannelView& view = out.view;
    if (!view.list_elements) {
        out.add("channel_listplay_unloaded");
        return;
    }
    const bool is_new = !before || before->list_elements != view.list_elements;
    if (is_new) {
        write_elements(out);
    }
    if (is_new || before->list_turning != view.list_turning) {
        out.add("channel_listplay_loop", [&](const pugi::xml_node& content) {
            add_text(content, "Loop",
                     word_of(loop_words, view.list_turning ? Loop::loop : Loop::off));
        });
    }
    if (is_new || before->list_index != view.list_index) {
        write_index(out, "channel_listplay_air_now", view.list_index);
    }
    if (is_new || before->list_follows != view.list_follows) {
        write_index(out, "channel_listplay_air_next", view.list_follows);
    }
    if (is_new || before->list_locked != view.list_locked) {
        write_index(out, "channel_listplay_air_lock", view.list_locked);
    }
}

// The table. -------------------------------------------------------------------------------------

// One kind of channel report: when it is due, and what it tells. `before` is what the client was
// told last, or null.
struct Kind {
    ChannelReportType type;
    bool (*changed)(const ChannelView& before, const ChannelView& after);
    void (*write)(Writer& out, const ChannelView* before);
};

constexpr std::array kinds{
    Kind{ChannelReportType::status, status_changed, write_status},
    Kind{ChannelReportType::clipid, clip_changed, write_clip},
    Kind{ChannelReportType::speed, speed_changed, write_speed},
    Kind{ChannelReportType::timecode, position_changed, write_timecode},
    Kind{ChannelReportType::info, info_changed, write_info},
    Kind{ChannelReportType::listplay, list_changed, write_list},
};

const Kind* find_kind(ChannelReportType type)
{
    const auto found = std::find_if(kinds.begin(), kinds.end(),
                                    [&](const Kind& kind) { return kind.type == type; });
    return found == kinds.end() ? nullptr : &*found;
}

bool positions_allow(ChannelReportType type, Positions positions,
                     const std::optional<ChannelView>& before, const ChannelView& after)
{
    if (type != ChannelReportType::timecode || positions == Positions::all) {
        return true;
    }
    return positions == Positions::jumped && (!before || before->jumps != after.jumps);
}

} // namespace

bool Pacer::due(TimePoint now)
{
    const std::uint64_t period = fields_of_day(now.time_since_epoch(), rate);
    const bool is_new = period != last_period;
    last_period = period;
    return is_new;
}

void ChannelReports::add(std::size_t channel, ChannelReportType type)
{
    if (!find_kind(type)) {
        std::vector<std::string_view> words;
        for (const Kind& kind : kinds) {
            words.push_back(word_of(channel_report_type_words, kind.type));
        }
        throw Refusal(fmt::format("this server sends no reports {}; it sends {}",
                                  quote(word_of(channel_report_type_words, type)), any_of(words)));
    }
    told[{channel, type}].reset();
}

bool ChannelReports::has(std::size_t channel, ChannelReportType type) const
{
    return told.find({channel, type}) != told.end();
}

std::vector<std::string> ChannelReports::news(const ReportRound& round, const Standard& standard)
{
    std::vector<std::string> messages;
    for (auto& [key, before] : told) {
        const ChannelView& view = round.channels[key.first];
        const Kind& kind = *find_kind(key.second);
        const bool is_news = !before || kind.changed(*before, view);
        if (is_news && positions_allow(kind.type, round.positions, before, view)) {
            Writer out{view, standard, messages};
            kind.write(out, before ? &*before : nullptr);
            before = view;
        }
    }
    return messages;
}

} // namespace veltosim
