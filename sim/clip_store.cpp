#include "sim/clip_store.h"

#include <algorithm>
#include <utility>

#include <fmt/format.h>

#include "sim/refusal.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

constexpr std::size_t most_in_text = 12;

template <class Map>
std::string names_of(const Map& entries)
{
    std::string names;
    std::size_t count = 0;
    for (const auto& [name, entry] : entries) {
        if (count++ == most_in_text) {
            return names + ", ...";
        }
        names += (names.empty() ? "" : ", ") + quote(name);
    }
    return names.empty() ? "none" : names;
}

template <class Map>
const auto& find(const Map& entries, std::string_view what, std::string_view name, ErrorCode code)
{
    const auto found = entries.find(name);
    if (found == entries.end()) {
        throw Refusal(
            fmt::format("there is no {} {}; there are: {}", what, quote(name), names_of(entries)),
            code);
    }
    return found->second;
}

// A heading and what follows it, in lines of bearable length.
std::string paragraph(std::string_view heading, const std::vector<std::string>& names)
{
    constexpr std::size_t longest_line = 90;
    std::string text = fmt::format("{}:", heading);
    std::size_t line = text.size();
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string word = names[i] + (i + 1 < names.size() ? "," : "");
        const bool fits = line + 1 + word.size() <= longest_line;
        text += (fits ? " " : "\n  ") + word;
        line = (fits ? line + 1 : 2) + word.size();
    }
    return text + "\n";
}

template <class Map>
std::vector<std::string> keys_of(const Map& entries)
{
    std::vector<std::string> keys;
    for (const auto& [key, entry] : entries) {
        keys.push_back(key);
    }
    return keys;
}

// The keys that lie in the directory, and no deeper.
template <class Map>
std::vector<std::string> keys_in(const Map& entries, std::string_view directory)
{
    const std::string prefix = directory.empty() ? "" : std::string(directory) + '/';
    std::vector<std::string> keys;
    for (auto entry = entries.lower_bound(prefix);
         entry != entries.end() && entry->first.starts_with(prefix); ++entry) {
        if (directory_of(entry->first) == directory) {
            keys.push_back(entry->first);
        }
    }
    return keys;
}

std::uint64_t fields_on_disk(const Clip& clip)
{
    return clip.untrimmed_length.value_or(clip.length);
}

template <class Record>
void put(ClipStore::ByName<std::shared_ptr<const Record>>& entries,
         const Replacement<std::shared_ptr<const Record>>& replacement)
{
    if (replacement.after) {
        entries.insert_or_assign(replacement.after->name, replacement.after);
    } else {
        entries.erase(replacement.before->name);
    }
}

} // namespace

std::string_view directory_of(std::string_view name)
{
    const std::size_t slash = name.rfind('/');
    return slash == name.npos ? std::string_view() : name.substr(0, slash);
}

void check_store_name(std::string_view what, std::string_view name)
{
    const bool no_empty_part =
        !name.starts_with('/') && !name.ends_with('/') && name.find("//") == name.npos;
    if (!is_name(name) || !no_empty_part) {
        throw Refusal(
            fmt::format("{} cannot be the name of a {}; {}, and none of the parts between "
                        "slashes is empty",
                        quote(name), what, name_rule));
    }
}

void ClipStore::add_clip(Clip clip)
{
    if (clip.number == 0) {
        clip.number = next_number();
    }
    last_number = std::max(last_number, clip.number);
    StoreChange change;
    change.clips.push_back({find_clip(clip.name), std::make_shared<const Clip>(clip), true});
    apply(change);
}

void ClipStore::add_virtual_clip(VirtualClip virtual_clip)
{
    const std::string name = virtual_clip.name;
    virtual_by_name[name] = std::make_shared<const VirtualClip>(std::move(virtual_clip));
}

void ClipStore::add_playlist(Playlist list)
{
    const std::string name = list.name;
    lists_by_name[name] = std::move(list);
}

void ClipStore::add_directory(const std::string& name)
{
    StoreChange change;
    change.directories.push_back(name);
    apply(change);
}

ClipPtr ClipStore::clip(std::string_view name, ClipScope scope) const
{
    if (scope == ClipScope::clip) {
        return find(clips_by_name, "clip", name, ErrorCode::clipnotfound);
    }
    const VirtualClip& found = *virtual_clip(name);
    for (const VirtualTrack& track : found.tracks) {
        for (const Segment& segment : track.segments) {
            check_segment(found, segment, *clip(segment.clip));
        }
    }
    return std::make_shared<const Clip>(as_clip(found));
}

const VirtualClipPtr& ClipStore::virtual_clip(std::string_view name) const
{
    return find(virtual_by_name, "virtual clip", name, ErrorCode::clipnotfound);
}

const Playlist& ClipStore::playlist(std::string_view name) const
{
    return find(lists_by_name, "playlist", name, ErrorCode::general);
}

ClipPtr ClipStore::find_clip(std::string_view name) const
{
    const auto found = clips_by_name.find(name);
    return found == clips_by_name.end() ? nullptr : found->second;
}

ClipPtr ClipStore::find_clip(std::uint64_t number) const
{
    const auto found = clips_by_number.find(number);
    return found == clips_by_number.end() ? nullptr : found->second;
}

bool ClipStore::has_virtual_clip(std::string_view name) const
{
    return virtual_by_name.find(name) != virtual_by_name.end();
}

bool ClipStore::has_directory(std::string_view name) const
{
    return directories.find(name) != directories.end();
}

void ClipStore::require_directory(std::string_view name) const
{
    if (!name.empty()) { // the top is always there
        find(directories, "directory", name, ErrorCode::general);
    }
}

std::vector<ClipPtr> ClipStore::children(const std::string& uuid) const
{
    std::vector<ClipPtr> found;
    const auto entry = children_by_uuid.find(uuid);
    if (entry != children_by_uuid.end()) {
        for (const auto& [number, child] : entry->second) {
            found.push_back(child);
        }
    }
    return found;
}

std::vector<std::string> ClipStore::directory_names() const
{
    return keys_of(directories);
}

std::vector<std::string> ClipStore::directory_names(std::string_view in) const
{
    require_directory(in);
    return keys_in(directories, in);
}

std::vector<std::string> ClipStore::clip_names(std::string_view in) const
{
    require_directory(in);
    return keys_in(clips_by_name, in);
}

std::vector<std::string> ClipStore::made_directories() const
{
    std::vector<std::string> made;
    for (const auto& [name, directory] : directories) {
        if (directory.made) {
            made.push_back(name);
        }
    }
    return made;
}

std::uint64_t ClipStore::available() const
{
    const std::uint64_t most = store_disk.total / store_disk.field_size;
    return used_fields >= most ? 0 : store_disk.total - used_fields * store_disk.field_size;
}

// Directories. -----------------------------------------------------------------------------------

void ClipStore::make_directory(std::string_view name, bool made, Events& events)
{
    const auto [entry, is_new] = directories.try_emplace(std::string(name));
    entry->second.made |= made;
    if (is_new) {
        enter(directory_of(name), events);
        events.push_back({StoreEvent::Kind::directory_created, entry->first});
    }
}

// Something has come into the directory, which comes with it if need be.
void ClipStore::enter(std::string_view directory, Events& events)
{
    if (!directory.empty()) {
        make_directory(directory, false, events);
        ++directories.find(directory)->second.entries;
    }
}

// Something has left the directory, which goes with the last.
void ClipStore::leave(std::string_view directory, Events& events)
{
    const auto entry = directories.find(directory);
    if (entry != directories.end() && --entry->second.entries == 0 && !entry->second.made) {
        const auto gone = directories.extract(entry);
        events.push_back({StoreEvent::Kind::directory_deleted, gone.key()});
        leave(directory_of(gone.key()), events);
    }
}

// Changes. ---------------------------------------------------------------------------------------

void ClipStore::insert(const ClipPtr& clip, Events& events)
{
    enter(directory_of(clip->name), events);
    clips_by_name.insert_or_assign(clip->name, clip);
    clips_by_number[clip->number] = clip;
    if (clip->parent_uuid) {
        children_by_uuid[*clip->parent_uuid][clip->number] = clip;
    }
    used_fields += fields_on_disk(*clip);
}

void ClipStore::remove(const ClipPtr& clip, Events& events)
{
    used_fields -= fields_on_disk(*clip);
    if (clip->parent_uuid) {
        const auto family = children_by_uuid.find(*clip->parent_uuid);
        family->second.erase(clip->number);
        if (family->second.empty()) {
            children_by_uuid.erase(family);
        }
    }
    const auto numbered = clips_by_number.find(clip->number);
    if (numbered->second == clip) {
        clips_by_number.erase(numbered);
    }
    const auto named = clips_by_name.find(clip->name);
    if (named->second == clip) {
        clips_by_name.erase(named);
    }
    leave(directory_of(clip->name), events);
}

void ClipStore::replace(const Replacement<ClipPtr>& replacement, Events& events)
{
    const auto& [before, after, told] = replacement;
    const bool same_name = before && after && before->name == after->name;
    Events directories_left;
    if (before) {
        // Not before its directory is entered anew, if it stays there.
        if (after) {
            enter(directory_of(after->name), events);
        }
        remove(before, directories_left);
    }
    if (after) {
        insert(after, events);
        if (before) {
            leave(directory_of(after->name), directories_left);
        }
    }
    if (told && after) {
        events.push_back(
            {same_name ? StoreEvent::Kind::clip_changed : StoreEvent::Kind::clip_created,
             after->name});
    }
    if (told && before && !same_name) {
        events.push_back({StoreEvent::Kind::clip_deleted, before->name});
    }
    events.insert(events.end(), directories_left.begin(), directories_left.end());
}

std::vector<StoreEvent> ClipStore::apply(const StoreChange& change)
{
    Events events;
    for (const std::string& name : change.directories) {
        make_directory(name, true, events);
    }
    for (const auto& replacement : change.clips) {
        replace(replacement, events);
    }
    for (const auto& replacement : change.virtual_clips) {
        put(virtual_by_name, replacement);
    }
    for (const MetadataChange& entry : change.metadata) {
        metadata_tables.apply(entry);
    }
    return events;
}

std::string ClipStore::summary() const
{
    std::vector<std::string> labels;
    for (const auto& [name, clip] : clips_by_name) {
        labels.push_back(clip->angles == 1 ? name
                                           : fmt::format("{} ({} angles)", name, clip->angles));
    }
    return paragraph("Clips", labels) + paragraph("Directories", keys_of(directories)) +
           paragraph("Virtual clips", keys_of(virtual_by_name)) +
           paragraph("Playlists", keys_of(lists_by_name)) +
           paragraph("Metadata databases", keys_of(metadata_tables.all()));
}

} // namespace veltosim
