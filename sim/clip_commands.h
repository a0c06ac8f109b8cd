#pragma once

#include <vector>

#include "sim/commands.h"

namespace veltosim
{

// What works on the store: clips, directories, lists of names, the disk.
std::vector<CommandRule> clip_commands();

// What works on edit lists.
std::vector<CommandRule> virtual_clip_commands();

// The tracks that TrackSet names.
TrackSet wanted_tracks(const Fields& fields);

} // namespace veltosim
