#pragma once

#include <string>
#include <string_view>

#include "sim/clip_record.h"
#include "sim/json_entry.h"
#include "sim/playlist.h"
#include "sim/vclips.h"

namespace veltosim
{

// The records as JSON: as users write them in a scenario, and as they are kept in a file. Each
// throws a LocatedError for what is none. Whether a record fits into a store is not looked at.
Clip read_clip(const LocatedJson& json);
VirtualClip read_virtual_clip(const LocatedJson& json);
Playlist read_playlist(const LocatedJson& json);

// What lists and channels say about a clip in the same words.
PlaylistElement read_use_of_clip(const Entry& entry, std::string_view key);

// On one line. What is as in a new record is left out.
std::string to_json(const Clip& clip);
std::string to_json(const VirtualClip& virtual_clip);
std::string to_json(const Playlist& list);

} // namespace veltosim
