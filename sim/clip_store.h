#pragma once

#include <cstddef>
#include <cstdint>
#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "sim/clip_record.h"
#include "sim/metadata.h"
#include "sim/playlist.h"
#include "sim/vclips.h"
#include "sim/words.h"

namespace veltosim
{

// How much the server's disk holds, and what a field of a clip takes.
struct Disk {
    std::uint64_t total = 2'000'000'000'000;
    std::uint32_t field_size = 250'000; // never 0

    bool operator==(const Disk&) const = default;
};

// One entry that comes, goes or becomes another one: null is none.
template <class Ptr>
struct Replacement {
    Ptr before;
    Ptr after;
    bool told = true; // to clients that want to know of changes
};

// Changes of a store that are made together.
struct StoreChange {
    std::vector<Replacement<ClipPtr>> clips;
    std::vector<Replacement<VirtualClipPtr>> virtual_clips;
    std::vector<std::string> directories; // made
    std::vector<MetadataChange> metadata; // of one database; all set, or all erase

    bool empty() const
    {
        return clips.empty() && virtual_clips.empty() && directories.empty() && metadata.empty();
    }
};

// What became of one name.
struct StoreEvent {
    enum class Kind : std::uint8_t {
        clip_created,
        clip_changed,
        clip_deleted,
        directory_created,
        directory_deleted
    };
    Kind kind;
    std::string name;
};

// The directory that a clip or directory is in: what stands before the last slash of its name.
// Empty at the top.
std::string_view directory_of(std::string_view name);

// Throws a Refusal for what cannot be the name of a clip or directory.
void check_store_name(std::string_view what, std::string_view name);

// Everything that the server has stored.
//
// A directory is there as long as something is in it, and once made by itself for ever.
class ClipStore
{
public:
    template <class T>
    using ByName = std::map<std::string, T, std::less<>>;

    // Each replaces what has the name.
    void add_clip(Clip clip);
    void add_virtual_clip(VirtualClip virtual_clip);
    void add_playlist(Playlist list);
    void add_directory(const std::string& name);
    void add_metadata(const MetadataChange& entry) { metadata_tables.apply(entry); }
    void set_disk(const Disk& used_disk) { store_disk = used_disk; }

    // What can be played under a name. Clips and virtual clips have names of their own. All throw a
    // Refusal for an unknown name, and for a virtual clip whose clips are gone.
    ClipPtr clip(std::string_view name, ClipScope scope = ClipScope::clip) const;
    const VirtualClipPtr& virtual_clip(std::string_view name) const;
    const Playlist& playlist(std::string_view name) const;

    // Null for an unknown one.
    ClipPtr find_clip(std::string_view name) const;
    ClipPtr find_clip(std::uint64_t number) const;
    bool has_virtual_clip(std::string_view name) const;
    bool has_directory(std::string_view name) const;

    const ByName<ClipPtr>& clips() const { return clips_by_name; }
    const ByName<VirtualClipPtr>& virtual_clips() const { return virtual_by_name; }
    const ByName<Playlist>& playlists() const { return lists_by_name; }
    // The clips that belong to the one of this UUID.
    std::vector<ClipPtr> children(const std::string& uuid) const;
    // All, or those in one directory and no deeper. Throws a Refusal for an unknown directory.
    std::vector<std::string> directory_names() const;
    std::vector<std::string> directory_names(std::string_view in) const;
    std::vector<std::string> clip_names(std::string_view in) const;
    // Those that were made by themselves.
    std::vector<std::string> made_directories() const;

    const MetadataTables& metadata() const { return metadata_tables; }

    const Disk& disk() const { return store_disk; }
    std::uint64_t available() const; // bytes

    // For a clip that is to be added.
    std::uint64_t next_number() { return ++last_number; }

    // Makes the changes, which must fit, and tells what became of each name, in order.
    std::vector<StoreEvent> apply(const StoreChange& change);

    // What there is, in a few lines for a human reader.
    std::string summary() const;

private:
    struct Directory {
        bool made = false;
        std::size_t entries = 0;
    };
    using Events = std::vector<StoreEvent>;

    void insert(const ClipPtr& clip, Events& events);
    void remove(const ClipPtr& clip, Events& events);
    void replace(const Replacement<ClipPtr>& replacement, Events& events);
    void make_directory(std::string_view name, bool made, Events& events);
    void enter(std::string_view directory, Events& events);
    void leave(std::string_view directory, Events& events);
    void require_directory(std::string_view name) const;

    ByName<ClipPtr> clips_by_name;
    std::map<std::uint64_t, ClipPtr> clips_by_number;
    std::map<std::string, std::map<std::uint64_t, ClipPtr>> children_by_uuid;
    ByName<VirtualClipPtr> virtual_by_name;
    ByName<Playlist> lists_by_name;
    ByName<Directory> directories;
    MetadataTables metadata_tables;
    Disk store_disk;
    std::uint64_t used_fields = 0;
    std::uint64_t last_number = 0;
};

} // namespace veltosim
