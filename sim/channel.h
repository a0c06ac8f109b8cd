#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "sim/clip_record.h"
#include "sim/motion.h"
#include "sim/playlist.h"
#include "sim/standards.h"
#include "sim/words.h"

namespace veltosim
{

class ClipStore;

inline constexpr Speed fastest = 200 * normal_speed;

// A clip together with how it is to be played.
struct Material {
    ClipPtr clip;
    std::uint32_t start = 0;
    std::optional<std::uint32_t> out_point; // first field that is not played
    std::optional<std::uint32_t> loop_in;
    std::optional<std::uint32_t> loop_out; // first field behind the loop
    Loop loop = Loop::automatic;
    std::uint8_t angle = 0;
    Speed speed = normal_speed; // of a play that names none
    Playback playback = Playback::automatic;
    ClipScope scope = ClipScope::clip;
    ListElementAtEnd at_end = ListElementAtEnd::take; // as an element of a list
};

// Throws a Refusal if some value of `material` does not fit its clip.
void check_material(const Material& material);

struct Precue {
    Material material;
    PrecueCondition condition = PrecueCondition::explicit_switch;
};

struct QueuedElement {
    std::size_t index = 0;
    Roll roll = Roll::roll;
};

using ListElements = std::shared_ptr<const std::vector<Material>>;

// A playlist on a channel.
struct LoadedList {
    std::string name;
    ListElements elements; // never empty
    ListPlayMode mode = ListPlayMode::single_channel;
    std::size_t now = 0;
    std::optional<QueuedElement> next;
    bool turning = false; // begins anew behind its last element
};

// What a playlist or one element of it asks for, found and checked. Both throw a Refusal if
// something is not in the store or does not fit.
Material make_material(const ClipStore& store, const PlaylistElement& element);
LoadedList make_list(const ClipStore& store, std::string_view name, ListPlayMode mode);

// What a channel looks like from outside at one moment.
struct ChannelView {
    char letter = 'A';
    ChannelStatus status = ChannelStatus::idle;
    std::string clip;
    std::uint32_t clip_length = 0;
    std::uint32_t position = 0;
    std::uint32_t jumps = 0;       // how often the position was set instead of reached by moving
    std::uint64_t input_field = 0; // what the timecode of the channel's input counts
    Speed speed = 0;
    Speed natural_speed = normal_speed;
    Interp interp = Interp::automatic;
    std::uint8_t audio_tracks = 0;
    Loop loop = Loop::off;
    std::optional<std::uint32_t> loop_in;
    std::optional<std::uint32_t> loop_out;
    std::optional<std::uint32_t> out_point;
    std::uint8_t angle = 0;
    std::uint8_t angle_count = 0;
    Playback playback = Playback::automatic;
    std::string list;
    ListPlayMode list_mode = ListPlayMode::single_channel;
    ListElements list_elements; // those of one load stay the same
    bool list_turning = false;
    std::size_t list_index = 0;
    std::optional<QueuedElement> list_next;  // as it was queued
    std::optional<std::size_t> list_follows; // what comes next, queued or not
    std::optional<std::size_t> list_locked;  // what is so near to its air time that it will come
    std::string precued_clip;
    std::optional<PrecueCondition> precue_condition;
    std::uint16_t edit_mask = 0;
    std::uint16_t ee_mask = 0;
    bool auto_ee = true;
    bool transition_in_progress = false;
};

// What a channel has done to a clip that is stored.
struct ClipUse {
    enum class Kind : std::uint8_t { loaded, unloaded, played, recorded };
    std::uint64_t clip = 0; // its number
    Kind kind = Kind::loaded;

    bool operator==(const ClipUse&) const = default;
};

// One channel of the server: what it holds and how that moves. It is a value that knows no clock:
// each operation is told the time, and catches up first with what has happened since the last one
// (a clip that ended, a list that went on). An operation that cannot be obeyed throws a Refusal;
// the channel may then be half changed, so that callers work on a copy.
class Channel
{
public:
    Channel(char channel_letter, const FieldRate& field_rate);

    void cue(TimePoint now, Material material);
    void load_list(TimePoint now, LoadedList loaded);
    void unload(TimePoint now);

    void play(TimePoint now, std::optional<Speed> wanted = {});
    void stop(TimePoint now);
    void jog(TimePoint now, std::int32_t distance);
    void go_to(TimePoint now, std::uint32_t wanted);
    // Shows the newest field of the clip, or the one that is `delay` fields older.
    void go_live(TimePoint now, std::uint32_t delay, std::optional<std::uint8_t> wanted_angle);

    void precue(TimePoint now, Precue wanted);
    void precue_activate(TimePoint now);
    void precue_clear(TimePoint now);
    // Puts what is ready on air: the list's next element, or the precued clip.
    void take(TimePoint now, TransitionType type, std::uint32_t duration, FollowSpeed follow);

    void list_play_now(TimePoint now, QueuedElement wanted, std::int32_t distance);
    void list_play_next(TimePoint now, QueuedElement wanted);

    void set_angle(TimePoint now, std::uint8_t wanted);
    // On a channel with a list it is the list that turns.
    void set_loop(TimePoint now, Loop wanted);
    void set_out_point(TimePoint now, std::uint32_t wanted);
    void clear_out_point(TimePoint now);
    void set_edit_mask(TimePoint now, std::uint16_t mask);
    void set_ee(TimePoint now, std::uint16_t mask, bool automatic);

    // Goes through all that has ended by itself. Nothing is seen of this, but it need not be gone
    // through again.
    void catch_up(TimePoint now);
    ChannelView view(TimePoint now) const;
    // What it has done to its clips since that was forgotten, in its order, the same only once.
    const std::vector<ClipUse>& uses() const { return clip_uses; }
    void forget_uses() { clip_uses.clear(); }

private:
    Material& required_material();
    const LoadedList& required_list() const;
    const Material& element(std::size_t index) const;
    std::string name() const;

    Path path() const;
    Loop effective_loop() const;
    std::uint32_t shown_field() const;
    ChannelStatus status(TimePoint now) const;
    void show_list(ChannelView& seen, TimePoint now) const;

    void settle(TimePoint now);
    void at_end(TimePoint when);
    bool element_ends_by_itself() const;
    std::optional<std::size_t> locked_element(TimePoint now) const;
    std::optional<QueuedElement> following_element(int direction) const;
    void put(TimePoint now, Material next_material);
    void play_element(TimePoint now, QueuedElement wanted, std::optional<Speed> wanted_speed);
    void switch_to_precue(TimePoint now, std::optional<Speed> wanted_speed);
    void start(TimePoint now, Speed wanted);
    void hold(TimePoint now, std::uint32_t field);
    void note(ClipUse::Kind kind);

    char letter;
    FieldRate rate;
    std::optional<Material> material;
    std::optional<Precue> precued;
    std::optional<LoadedList> list;
    Motion motion;
    bool running = false;
    bool live = false;
    bool pausing = false; // on the last field of a list's element that ends so
    std::uint32_t jumps = 0;
    TimePoint cued_at{};
    TimePoint transition_end{};
    std::uint16_t edit_mask = 0;
    std::uint16_t ee_mask = 0;
    bool auto_ee = true;
    std::vector<ClipUse> clip_uses;
};

} // namespace veltosim
