#include "sim/clip_commands.h"

#include <algorithm>
#include <array>
#include <limits>
#include <memory>
#include <random>
#include <utility>

#include <fmt/format.h>

#include "sim/clip_message.h"
#include "sim/command_fields.h"
#include "sim/refusal.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

using namespace rules;

constexpr std::array frame0_parts{optional(i32("FieldNumber")),
                                  optional(word("DropFrameFlag", drop_frame_flag_words))};
constexpr std::array stripe_parts{
    word("Valid", bool_words), optional(word("VideoStandard", video_standard_words)),
    optional(i32("FieldNumber")), optional(word("DropFrameFlag", drop_frame_flag_words))};
constexpr std::array track_attribute_parts{optional(word("TrackType", track_type_words)),
                                           optional(u32("TrimStart"))};
constexpr std::array track_attribute_item{composite("TrackAttr", track_attribute_parts)};
constexpr std::array change_parts{
    optional(text("ID8")),
    optional(text("Title")),
    optional(text("Creator")),
    optional(text("Project")),
    optional(word("Playback", playback_words)),
    optional(word("Interp", interp_words)),
    optional(word("Loop", loop_words)),
    optional(u32("LoopOut")),
    optional(u32("LoopIn")),
    optional(word("TimecodeSource", timecode_source_words)),
    optional(composite("StripeTimecode", stripe_parts)),
    optional(metadata_list),
    optional(key_list),
    optional(u32("TrimStart")),
    optional(u32("TrimEnd")),
    optional(list_of("TrackAttrVector", track_attribute_item)),
    optional(composite("Frame0Timecode", frame0_parts)),
};

// One clip. --------------------------------------------------------------------------------------

ClipPtr wanted_clip(const Call& call, std::string_view field)
{
    return call.station.clips.clip(call.fields.text(field));
}

void replace(Call& call, ClipPtr before, Clip after)
{
    StoreChange change;
    change.clips.push_back({std::move(before), std::make_shared<const Clip>(std::move(after))});
    call.station.commit(change);
}

void check_free(const Call& call, const std::string& name)
{
    check_store_name("clip", name);
    if (call.station.clips.find_clip(name)) {
        throw Refusal(fmt::format("there is a clip {} already", quote(name)));
    }
}

void check_writable(const Clip& clip, bool is_protected, std::string_view what)
{
    if (is_protected) {
        throw Refusal(fmt::format("clip {} is read only; {}", quote(clip.name), what));
    }
}

std::string new_uuid()
{
    static std::mt19937_64 numbers{std::random_device{}()};
    const std::uint64_t high = numbers();
    const std::uint64_t low = numbers();
    return fmt::format("{:08x}-{:04x}-4{:03x}-{:04x}-{:012x}", high >> 32, high >> 16 & 0xFFFF,
                       high & 0xFFF, (low >> 48 & 0x3FFF) | 0x8000, low & 0xFFFFFFFFFFFF);
}

// Stores what is new, if the disk holds it, beside the rest of `change`.
void create(Call& call, Clip clip, StoreChange change = {})
{
    ClipStore& store = call.station.clips;
    const std::uint64_t needed = std::uint64_t{clip.length} * store.disk().field_size;
    if (needed > store.available()) {
        throw Refusal(fmt::format("clip {} of {} fields needs {} bytes; {} are available",
                                  quote(clip.name), clip.length, needed, store.available()));
    }
    clip.uuid = new_uuid();
    clip.number = store.next_number();
    clip.content_edited = call.station.stamp();
    clip.meta_edited = clip.content_edited;
    change.clips.push_back({nullptr, std::make_shared<const Clip>(std::move(clip))});
    call.station.commit(change);
}

void clip_exists(Call& call)
{
    const std::string& name = call.fields.text("ClipID");
    const pugi::xml_node reply = call.replies.add("clipexists");
    add_text(reply, "ClipID", name);
    add_bool(reply, "Exists", call.station.clips.find_clip(name) != nullptr);
}

std::uint32_t wanted_length(const Call& call)
{
    constexpr std::uint32_t seconds = 60; // of a clip of no given length
    const FieldRate& rate = call.station.standard.field_rate;
    const auto length = call.fields.optional<std::uint32_t>("ClipLength")
                            .value_or(seconds * rate.fields / rate.seconds);
    if (length == 0) {
        throw Refusal("a clip of no length cannot be created; 1 field is the least");
    }
    return length;
}

void create_clip(Call& call)
{
    Clip clip;
    clip.name = call.fields.text("ClipID");
    check_free(call, clip.name);
    clip.tracks.clear();
    for (const TrackType type : wanted_tracks(call.fields)) {
        clip.tracks.push_back({type, {}});
    }
    if (clip.tracks.empty()) {
        throw Refusal("TrackSet names no track; name one at least");
    }
    clip.length = wanted_length(call);
    clip.standard = value_of(call.station.standard);
    create(call, clip);
    if (const auto index = call.fields.optional<std::size_t>("Channel")) {
        Material material;
        material.clip = wanted_clip(call, "ClipID");
        Channel loaded = call.station.channels[*index];
        loaded.cue(call.now, std::move(material));
        call.station.replace_channels({*index}, {std::move(loaded)});
    }
}

// The lowest one behind the parent's own that no other child has.
std::uint8_t free_angle(const Clip& parent, const std::vector<ClipPtr>& children)
{
    constexpr int highest = std::numeric_limits<std::uint8_t>::max() - 1;
    for (int angle = 1; angle <= highest; ++angle) {
        if (std::none_of(children.begin(), children.end(),
                         [&](const ClipPtr& child) { return child->angle == angle; })) {
            return static_cast<std::uint8_t>(angle);
        }
    }
    throw Refusal(fmt::format("clip {} has a child for each angle", quote(parent.name)));
}

std::uint8_t wanted_angle(const Call& call, const Clip& parent,
                          const std::vector<ClipPtr>& children)
{
    const auto wanted = call.fields.optional<std::uint8_t>("Angle");
    if (!wanted) {
        return free_angle(parent, children);
    }
    const auto taken = std::find_if(children.begin(), children.end(),
                                    [&](const ClipPtr& child) { return child->angle == *wanted; });
    if (*wanted == 0 || *wanted == std::numeric_limits<std::uint8_t>::max()) {
        throw Refusal(fmt::format("a child cannot be angle {}; 1 to 254 are allowed", *wanted));
    }
    if (taken != children.end()) {
        throw Refusal(fmt::format("angle {} of clip {} is clip {} already", *wanted,
                                  quote(parent.name), quote((*taken)->name)));
    }
    return *wanted;
}

// A child is laid out like its parent, and is one of its angles from then on.
void create_child_clip(Call& call)
{
    ClipPtr parent = wanted_clip(call, "ParentClipID");
    const std::string& name = call.fields.text("ClipID");
    check_free(call, name);
    check_writable(*parent, content_protected(*parent), "it gets no child");
    Clip changed_parent = *parent;
    if (!changed_parent.uuid) {
        changed_parent.uuid = new_uuid();
    }
    Clip child;
    child.name = name;
    child.length = parent->length;
    child.tracks = parent->tracks;
    child.standard = parent->standard;
    child.parent_uuid = changed_parent.uuid;
    child.angle = wanted_angle(call, *parent, call.station.clips.children(*changed_parent.uuid));
    changed_parent.angles =
        std::max(changed_parent.angles, static_cast<std::uint8_t>(*child.angle + 1));
    StoreChange change;
    if (changed_parent != *parent) {
        change.clips.push_back(
            {std::move(parent), std::make_shared<const Clip>(std::move(changed_parent))});
    }
    create(call, std::move(child), std::move(change));
}

void delete_clip(Call& call)
{
    ClipPtr clip = wanted_clip(call, "ClipID");
    check_writable(*clip, content_protected(*clip), "it cannot be deleted");
    const auto children =
        clip->uuid ? call.station.clips.children(*clip->uuid) : std::vector<ClipPtr>();
    if (!children.empty()) {
        throw Refusal(fmt::format("clip {} has the child {}; delete that first", quote(clip->name),
                                  quote(children.front()->name)));
    }
    StoreChange change;
    change.clips.push_back({std::move(clip), nullptr});
    call.station.commit(change);
}

void rename_clip(Call& call)
{
    ClipPtr clip = wanted_clip(call, "FromID");
    check_free(call, call.fields.text("ToID"));
    check_writable(*clip, meta_protected(*clip), "it cannot be renamed");
    Clip renamed = *clip;
    renamed.name = call.fields.text("ToID");
    renamed.meta_edited = call.station.stamp();
    check_message_size(renamed, call.station.standard);
    replace(call, std::move(clip), std::move(renamed));
}

void get_clip_info(Call& call)
{
    const ClipPtr clip = wanted_clip(call, "ClipID");
    add_clip_info(call.replies.add("clipinfo"), *clip, call.station.standard);
}

void modify_clip_attributes(Call& call)
{
    ClipPtr clip = wanted_clip(call, "ClipID");
    const Fields& change = call.fields.find("ClipAttrChange")->parts;
    const bool content = changes_content(change);
    const bool meta = changes_meta(change);
    check_writable(*clip, meta && meta_protected(*clip), "its attributes cannot be changed");
    check_writable(*clip, content && content_protected(*clip), "its content cannot be changed");
    Clip changed = changed_clip(*clip, change, call.station.standard);
    if (meta) {
        changed.meta_edited = call.station.stamp();
    }
    if (content) {
        changed.content_edited = call.station.stamp();
    }
    if (meta || content) {
        replace(call, std::move(clip), std::move(changed));
    }
}

// Directories, lists, the disk. ------------------------------------------------------------------

void create_directory(Call& call)
{
    const std::string& name = call.fields.text("DirectoryName");
    check_store_name("directory", name);
    if (call.station.clips.has_directory(name)) {
        throw Refusal(fmt::format("there is a directory {} already", quote(name)));
    }
    StoreChange change;
    change.directories.push_back(name);
    call.station.commit(change);
}

template <class Names, class NameOf>
void stream(Call& call, std::string_view kind, std::string_view field, const Names& names,
            const NameOf& name_of)
{
    for (const auto& entry : names) {
        add_text(call.replies.add(kind), field, name_of(entry));
    }
    call.replies.add("ok");
}

const std::string& itself(const std::string& name)
{
    return name;
}

template <class Entry>
const std::string& key_of(const Entry& entry)
{
    return entry.first;
}

void download_clipids(Call& call)
{
    const ClipStore& store = call.station.clips;
    if (call.fields.has("DirectoryName")) {
        stream(call, "clipid", "ClipID", store.clip_names(call.fields.text("DirectoryName")),
               itself);
    } else {
        stream(call, "clipid", "ClipID", store.clips(),
               key_of<ClipStore::ByName<ClipPtr>::value_type>);
    }
}

void download_directory_names(Call& call)
{
    const ClipStore& store = call.station.clips;
    stream(call, "directory_name", "DirectoryName",
           call.fields.has("DirectoryName")
               ? store.directory_names(call.fields.text("DirectoryName"))
               : store.directory_names(),
           itself);
}

void download_listids(Call& call)
{
    stream(call, "listid", "ListID", call.station.clips.playlists(),
           key_of<ClipStore::ByName<Playlist>::value_type>);
}

void get_disk_usage(Call& call)
{
    const ClipStore& store = call.station.clips;
    const pugi::xml_node reply = call.replies.add("disk_usage");
    add_text(reply, "TotalDiskSpace", std::to_string(store.disk().total));
    add_text(reply, "AvailableDiskSpace", std::to_string(store.available()));
    add_number(reply, "FieldSize", store.disk().field_size);
}

constexpr FieldRule clip_id = short_text("ClipID");
constexpr FieldRule directory_name = short_text("DirectoryName");

} // namespace

TrackSet wanted_tracks(const Fields& fields)
{
    TrackSet set;
    for (const FieldValue& item : fields.find("TrackSet")->items) {
        const auto type = static_cast<TrackType>(item.number);
        if (std::find(set.begin(), set.end(), type) == set.end()) {
            set.push_back(type);
        }
    }
    return set;
}

std::vector<CommandRule> clip_commands()
{
    return {
        {"clip_exists", {clip_id}, clip_exists},
        {"create_child_clip",
         {clip_id, short_text("ParentClipID"), optional(u8("Angle"))},
         create_child_clip},
        {"create_clip",
         {clip_id, track_set, optional(u32("ClipLength")), optional(channel)},
         create_clip},
        {"create_directory", {directory_name}, create_directory},
        {"delete_clip", {clip_id}, delete_clip},
        {"download_clipids", {optional(directory_name)}, download_clipids},
        {"download_directory_names", {optional(directory_name)}, download_directory_names},
        {"download_listids", {}, download_listids},
        {"get_clip_info", {clip_id}, get_clip_info},
        {"get_disk_usage", {}, get_disk_usage},
        {"modify_clip_attributes",
         {clip_id, composite("ClipAttrChange", change_parts)},
         modify_clip_attributes},
        {"rename_clip", {short_text("FromID"), short_text("ToID")}, rename_clip},
    };
}

} // namespace veltosim
