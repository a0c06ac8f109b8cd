#pragma once

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "sim/words.h"

namespace veltosim
{

// What is recorded under a name. Lengths and positions are in fields.
struct Clip {
    std::string name;
    std::uint32_t length = 1; // never 0
    std::uint8_t angles = 1;  // camera angles, numbered from 0; never 0
    Loop loop = Loop::off;    // what loop mode "auto" means for this clip
    std::optional<std::uint32_t> loop_in;
    std::optional<std::uint32_t> loop_out; // first field behind the loop
    std::string title{};
    std::uint8_t audio_tracks = 2;
    Interp interp = Interp::automatic;
};

// Channels keep the clip that they hold, whatever happens to the store: an entry is never changed,
// only replaced.
using ClipPtr = std::shared_ptr<const Clip>;

struct PlaylistElement {
    std::string clip;
    std::uint32_t start = 0;
    std::optional<std::uint32_t> out_point; // first field that is not played
    ClipScope scope = ClipScope::clip;
    std::uint8_t angle = 0;
    ListElementAtEnd at_end = ListElementAtEnd::take;
};

struct Playlist {
    std::string name;
    std::vector<PlaylistElement> elements; // never empty
};

class ClipStore
{
public:
    // Each replaces what has the name.
    void add_clip(Clip clip);
    void add_virtual_clip(Clip clip);
    void add_playlist(Playlist list);

    // Clips and virtual clips have names of their own. All throw a Refusal for an unknown name.
    ClipPtr clip(std::string_view name, ClipScope scope = ClipScope::clip) const;
    const Playlist& playlist(std::string_view name) const;

    // What there is, in a few lines for a human reader.
    std::string summary() const;

private:
    template <class T>
    using ByName = std::map<std::string, T, std::less<>>;

    ByName<ClipPtr> clips;
    ByName<ClipPtr> virtual_clips;
    ByName<Playlist> playlists;
};

} // namespace veltosim
