#pragma once

#include <vector>

#include "sim/commands.h"

namespace veltosim
{

// What works on the metadata databases.
std::vector<CommandRule> metadata_commands();

} // namespace veltosim
