#include "sim/channel.h"

#include <algorithm>
#include <cstdlib>
#include <utility>

#include <fmt/format.h>

#include "sim/clip_store.h"
#include "sim/refusal.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

// How long a channel reports that it is cueing before it stands ready.
constexpr std::chrono::milliseconds cue_time{80};

// From so long before its air time on a list's next element cannot be exchanged any more.
constexpr std::chrono::seconds lock_time{1};

[[noreturn]] void refuse_value(const Material& material, std::string_view what, std::uint32_t value,
                               std::uint64_t lowest, std::uint64_t highest)
{
    throw Refusal(fmt::format("clip {} of {} fields cannot take {} {}; {} to {} are allowed",
                              quote(material.clip->name), material.clip->length, what, value,
                              lowest, highest));
}

void check_angle(const Material& material, std::uint8_t angle)
{
    if (angle >= material.clip->angles) {
        throw Refusal(fmt::format("clip {} has no angle {}; 0 to {} are allowed",
                                  quote(material.clip->name), angle, material.clip->angles - 1));
    }
}

void check_between(const Material& material, std::string_view what,
                   std::optional<std::uint32_t> value, std::uint64_t lowest, std::uint64_t highest)
{
    if (value && (*value < lowest || *value > highest)) {
        refuse_value(material, what, *value, lowest, highest);
    }
}

bool waits_for_end(const Precue& precue)
{
    return precue.condition == PrecueCondition::end_of_clip ||
           precue.condition == PrecueCondition::end_of_clip2;
}

bool to_loop_points(Loop loop)
{
    return loop == Loop::loopto || loop == Loop::pingpongto;
}

Turn turn_of(Loop loop)
{
    switch (loop) {
    case Loop::loop:
    case Loop::loopto:
    case Loop::record: // records over its oldest field, so that it turns for ever
        return Turn::loop;
    case Loop::pingpong:
    case Loop::pingpongto:
        return Turn::pingpong;
    case Loop::off:
    case Loop::automatic:
        break;
    }
    return Turn::none;
}

} // namespace

void check_material(const Material& material)
{
    const std::uint64_t length = material.clip->length;
    check_between(material, "start position", material.start, 0, length - 1);
    check_between(material, "out point", material.out_point, material.start + std::uint64_t{1},
                  length);
    check_between(material, "loop in", material.loop_in, 0, length - 1);
    check_between(material, "loop out", material.loop_out,
                  material.loop_in.value_or(0) + std::uint64_t{1}, length);
    check_angle(material, material.angle);
}

Material make_material(const ClipStore& store, const PlaylistElement& element)
{
    Material material;
    material.clip = store.clip(element.clip, element.scope);
    material.scope = element.scope;
    material.start = element.start;
    material.out_point = element.out_point;
    material.angle = element.angle;
    material.at_end = element.at_end;
    check_material(material);
    return material;
}

LoadedList make_list(const ClipStore& store, std::string_view name, ListPlayMode mode)
{
    const Playlist& playlist = store.playlist(name);
    std::vector<Material> elements;
    for (const PlaylistElement& element : playlist.elements) {
        elements.push_back(make_material(store, element));
    }
    LoadedList loaded;
    loaded.name = playlist.name;
    loaded.elements = std::make_shared<const std::vector<Material>>(std::move(elements));
    loaded.mode = mode;
    return loaded;
}

Channel::Channel(char channel_letter, const FieldRate& field_rate)
    : letter(channel_letter), rate(field_rate)
{
}

std::string Channel::name() const
{
    return fmt::format("channel {}", letter);
}

Material& Channel::required_material()
{
    if (!material) {
        throw Refusal(name() + " has nothing loaded; load a clip or a list first");
    }
    return *material;
}

const LoadedList& Channel::required_list() const
{
    if (!list) {
        throw Refusal(name() + " has no list loaded; load one first");
    }
    return *list;
}

const Material& Channel::element(std::size_t index) const
{
    const LoadedList& loaded = required_list();
    if (index >= loaded.elements->size()) {
        throw Refusal(fmt::format("the list {} on {} has no element {}; 0 to {} are allowed",
                                  quote(loaded.name), name(), index, loaded.elements->size() - 1));
    }
    return (*loaded.elements)[index];
}

std::uint32_t Channel::shown_field() const
{
    return field_at(motion.base, direction_of(motion.speed));
}

Loop Channel::effective_loop() const
{
    if (list) { // its elements follow each other, unless one of them stays
        return material->at_end == ListElementAtEnd::loop ? Loop::loopto : Loop::off;
    }
    return material->loop == Loop::automatic ? material->clip->loop : material->loop;
}

// Out point and loop out bind what comes from before them; a position behind them plays on to the
// clip's end.
Path Channel::path() const
{
    const std::uint32_t field = shown_field();
    const std::uint32_t length = material->clip->length;
    const std::uint32_t out = material->out_point.value_or(length);
    const Loop loop = effective_loop();

    Path way{{0, field < out ? out : length}, {0, out}, turn_of(loop)};
    if ((precued && waits_for_end(*precued)) || (list && list->next)) {
        way.turn = Turn::none; // the present turn is the last
    }
    if (to_loop_points(loop)) {
        const Range points = list ? Range{material->start, out}
                                  : Range{material->loop_in.value_or(0),
                                          std::min(material->loop_out.value_or(out), out)};
        if (points.first < points.end) {
            way.round = points;
        }
        way.leg.first = field >= way.round.first ? way.round.first : way.leg.first;
        way.leg.end = field < way.round.end ? way.round.end : way.leg.end;
    }
    return way;
}

void Channel::catch_up(TimePoint now)
{
    while (running) {
        const auto end = end_time(motion, path(), rate, now);
        if (!end) {
            return;
        }
        at_end(*end);
    }
}

// Catches up, and lets a running motion begin anew at `now`.
void Channel::settle(TimePoint now)
{
    catch_up(now);
    if (running) {
        const Moment moment = moment_at(motion, path(), rate, now);
        const Speed speed = std::abs(motion.speed) * moment.direction;
        motion = {now, moment.at, speed};
    }
}

void Channel::at_end(TimePoint when)
{
    const Speed speed = motion.speed;
    hold(when, moment_at(motion, path(), rate, when).field);
    if (list) {
        const auto next = following_element(direction_of(speed));
        pausing = next && !element_ends_by_itself();
        if (next && !pausing) {
            play_element(when, *next, speed);
        }
    } else if (precued && waits_for_end(*precued) &&
               (speed > 0 || turn_of(effective_loop()) != Turn::none)) {
        switch_to_precue(when, speed);
    } else if (precued && precued->condition == PrecueCondition::previous_stops) {
        switch_to_precue(when, std::nullopt);
    }
}

// An element that pauses or turns at its end gives way to what was queued all the same.
bool Channel::element_ends_by_itself() const
{
    return list->next || material->at_end == ListElementAtEnd::take;
}

std::optional<std::size_t> Channel::locked_element(TimePoint now) const
{
    if (!running || !element_ends_by_itself() || !end_time(motion, path(), rate, now + lock_time)) {
        return std::nullopt;
    }
    const auto next = following_element(direction_of(motion.speed));
    return next ? std::optional(next->index) : std::nullopt;
}

std::optional<QueuedElement> Channel::following_element(int direction) const
{
    if (direction < 0) {
        return std::nullopt;
    }
    if (list->next) {
        return list->next;
    }
    if (list->now + 1 < list->elements->size()) {
        return QueuedElement{list->now + 1, Roll::roll};
    }
    return list->turning ? std::optional(QueuedElement{0, Roll::roll}) : std::nullopt;
}

void Channel::hold(TimePoint now, std::uint32_t field)
{
    running = false;
    live = false;
    pausing = false;
    ++jumps;
    motion = {now, parts(field), 0};
}

void Channel::note(ClipUse::Kind kind)
{
    if (!material || material->clip->number == 0) {
        return;
    }
    const ClipUse use{material->clip->number, kind};
    if (std::find(clip_uses.begin(), clip_uses.end(), use) == clip_uses.end()) {
        clip_uses.push_back(use);
    }
}

void Channel::start(TimePoint now, Speed wanted)
{
    if (!running) {
        note(ClipUse::Kind::played);
    }
    if (!running && edit_mask != 0) {
        note(ClipUse::Kind::recorded);
    }
    // A motion that turns round shows the same field first.
    if (!running || direction_of(wanted) != direction_of(motion.speed)) {
        motion.base = parts(shown_field());
    }
    motion.since = now;
    motion.speed = wanted;
    running = true;
    live = false;
    pausing = false;
}

void Channel::put(TimePoint now, Material next_material)
{
    note(ClipUse::Kind::unloaded);
    material = std::move(next_material);
    note(ClipUse::Kind::loaded);
    hold(now, material->start);
    cued_at = now + cue_time;
}

void Channel::play_element(TimePoint now, QueuedElement wanted, std::optional<Speed> wanted_speed)
{
    put(now, element(wanted.index));
    list->now = wanted.index;
    list->next.reset();
    if (wanted.roll == Roll::roll) {
        start(now, wanted_speed.value_or(material->speed));
    }
}

void Channel::switch_to_precue(TimePoint now, std::optional<Speed> wanted_speed)
{
    put(now, std::move(precued->material));
    precued.reset();
    if (wanted_speed) {
        start(now, *wanted_speed > 0 ? *wanted_speed : material->speed);
    }
}

void Channel::cue(TimePoint now, Material next_material)
{
    check_material(next_material);
    unload(now);
    put(now, std::move(next_material));
}

void Channel::load_list(TimePoint now, LoadedList loaded)
{
    std::for_each(loaded.elements->begin(), loaded.elements->end(), check_material);
    unload(now);
    list = std::move(loaded);
    play_element(now, {0, Roll::cueonly}, std::nullopt);
}

void Channel::unload(TimePoint now)
{
    note(ClipUse::Kind::unloaded);
    material.reset();
    list.reset();
    precued.reset();
    edit_mask = 0;
    hold(now, 0);
}

void Channel::play(TimePoint now, std::optional<Speed> wanted)
{
    required_material();
    settle(now);
    const Speed speed = wanted.value_or(material->speed);
    if (pausing && speed > 0) {
        play_element(now, {following_element(1).value().index, Roll::roll}, speed);
    } else {
        start(now, speed);
    }
}

void Channel::stop(TimePoint now)
{
    settle(now);
    const bool was_running = running;
    hold(now, shown_field());
    if (was_running && precued && precued->condition == PrecueCondition::previous_stops) {
        switch_to_precue(now, std::nullopt);
    }
}

void Channel::jog(TimePoint now, std::int32_t distance)
{
    const Material& loaded = required_material();
    settle(now);
    const std::int64_t wanted = std::int64_t{shown_field()} + distance;
    const std::int64_t last = loaded.clip->length - std::int64_t{1};
    hold(now, static_cast<std::uint32_t>(std::clamp(wanted, std::int64_t{0}, last)));
}

void Channel::go_to(TimePoint now, std::uint32_t wanted)
{
    required_material();
    settle(now);
    check_between(*material, "position", wanted, 0, material->clip->length - 1);
    hold(now, wanted);
}

void Channel::go_live(TimePoint now, std::uint32_t delay, std::optional<std::uint8_t> wanted_angle)
{
    required_material();
    settle(now);
    const std::uint32_t newest = material->clip->length - 1;
    check_between(*material, "time delay", delay, 0, newest);
    if (wanted_angle) {
        set_angle(now, *wanted_angle);
    }
    hold(now, newest - delay);
    live = true;
}

void Channel::precue(TimePoint now, Precue wanted)
{
    check_material(wanted.material);
    if (list) {
        throw Refusal(fmt::format("{} plays the list {}; queue an element of it instead", name(),
                                  quote(list->name)));
    }
    settle(now);
    precued = std::move(wanted);
    if (precued->condition == PrecueCondition::immediate) {
        precue_activate(now);
    }
}

void Channel::precue_activate(TimePoint now)
{
    settle(now);
    if (!precued) {
        throw Refusal(name() + " has nothing precued; precue a clip first");
    }
    switch_to_precue(now, running ? std::optional(motion.speed) : std::nullopt);
}

void Channel::precue_clear(TimePoint now)
{
    settle(now);
    precued.reset();
}

void Channel::take(TimePoint now, TransitionType type, std::uint32_t duration, FollowSpeed follow)
{
    settle(now);
    const auto element_to_take = list ? following_element(1) : std::nullopt;
    if (!element_to_take && !precued) {
        throw Refusal(name() + " has nothing ready to take; precue a clip or queue an element");
    }
    const bool forward = running && motion.speed > 0;
    std::optional<Speed> speed;
    if (follow == FollowSpeed::one_x) {
        speed = normal_speed;
    } else if (forward && (follow == FollowSpeed::follow || follow == FollowSpeed::smart)) {
        speed = motion.speed;
    }
    if (element_to_take) {
        play_element(now, {element_to_take->index, Roll::roll}, speed);
    } else {
        switch_to_precue(now, speed.value_or(precued->material.speed));
    }
    transition_end = type == TransitionType::dissolve ? now + duration_of(duration, rate) : now;
}

void Channel::list_play_now(TimePoint now, QueuedElement wanted, std::int32_t distance)
{
    Material first = element(wanted.index);
    const std::int64_t begin = std::int64_t{first.start} + distance;
    const std::int64_t last = first.out_point.value_or(first.clip->length) - std::int64_t{1};
    if (begin < 0 || begin > last) {
        throw Refusal(fmt::format("element {} of the list {} cannot begin {} fields off its start; "
                                  "{} to {} are allowed",
                                  wanted.index, quote(list->name), distance,
                                  -std::int64_t{first.start}, last - first.start));
    }
    play_element(now, {wanted.index, Roll::cueonly}, std::nullopt);
    hold(now, static_cast<std::uint32_t>(begin));
    if (wanted.roll == Roll::roll) {
        start(now, material->speed);
    }
}

void Channel::list_play_next(TimePoint now, QueuedElement wanted)
{
    element(wanted.index);
    settle(now);
    list->next = wanted;
}

void Channel::set_angle(TimePoint now, std::uint8_t wanted)
{
    required_material();
    settle(now);
    check_angle(*material, wanted);
    material->angle = wanted;
}

void Channel::set_loop(TimePoint now, Loop wanted)
{
    required_material();
    settle(now);
    if (list) {
        list->turning = turn_of(wanted) != Turn::none;
    } else {
        material->loop = wanted;
    }
}

void Channel::set_out_point(TimePoint now, std::uint32_t wanted)
{
    required_material();
    settle(now);
    check_between(*material, "out point", wanted, 1, material->clip->length);
    material->out_point = wanted;
}

void Channel::clear_out_point(TimePoint now)
{
    settle(now);
    if (material) {
        material->out_point.reset();
    }
}

void Channel::set_edit_mask(TimePoint now, std::uint16_t mask)
{
    if (mask != 0 && content_protected(*required_material().clip)) {
        throw Refusal(fmt::format("clip {} is read only; nothing can be recorded into it",
                                  quote(material->clip->name)));
    }
    settle(now);
    if (running && edit_mask == 0 && mask != 0) {
        note(ClipUse::Kind::recorded);
    }
    edit_mask = mask;
}

void Channel::set_ee(TimePoint now, std::uint16_t mask, bool automatic)
{
    settle(now);
    ee_mask = mask;
    auto_ee = automatic;
}

ChannelStatus Channel::status(TimePoint now) const
{
    if (!material) {
        return ChannelStatus::idle;
    }
    if (live) {
        return ChannelStatus::timedelay;
    }
    if (running && edit_mask != 0) {
        return ChannelStatus::insert;
    }
    if (running) {
        return effective_loop() == Loop::record ? ChannelStatus::record : ChannelStatus::play;
    }
    return now < cued_at ? ChannelStatus::cueing : ChannelStatus::stop;
}

void Channel::show_list(ChannelView& seen, TimePoint now) const
{
    const auto follows = following_element(1);
    seen.list = list->name;
    seen.list_mode = list->mode;
    seen.list_elements = list->elements;
    seen.list_turning = list->turning;
    seen.list_index = list->now;
    seen.list_next = list->next;
    seen.list_follows = follows ? std::optional(follows->index) : std::nullopt;
    seen.list_locked = locked_element(now);
    seen.loop = list->turning ? Loop::loop : Loop::off;
}

ChannelView Channel::view(TimePoint now) const
{
    Channel present = *this;
    present.settle(now);

    ChannelView seen;
    seen.letter = letter;
    seen.status = present.status(now);
    seen.position = present.shown_field();
    seen.jumps = present.jumps;
    seen.input_field = fields_of_day(now.time_since_epoch(), rate);
    seen.speed = present.live ? normal_speed : present.motion.speed;
    seen.edit_mask = edit_mask;
    seen.ee_mask = ee_mask;
    seen.auto_ee = auto_ee;
    seen.transition_in_progress = now < transition_end;
    if (const auto& shown = present.material) {
        const Clip& clip = *shown->clip;
        seen.clip = clip.name;
        seen.clip_length = clip.length;
        seen.natural_speed = shown->speed;
        seen.interp = clip.interp;
        seen.audio_tracks = audio_track_count(clip);
        seen.loop = shown->loop == Loop::automatic ? clip.loop : shown->loop;
        seen.loop_in = shown->loop_in;
        seen.loop_out = shown->loop_out;
        seen.out_point = shown->out_point;
        seen.angle = shown->angle;
        seen.angle_count = clip.angles;
        seen.playback = shown->playback;
    }
    if (present.list) {
        present.show_list(seen, now);
    }
    if (const auto& waiting = present.precued) {
        seen.precued_clip = waiting->material.clip->name;
        seen.precue_condition = waiting->condition;
    }
    return seen;
}

} // namespace veltosim
