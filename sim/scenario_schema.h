#pragma once

#include <string>

namespace veltosim
{

// The format of a scenario as a JSON schema, for editors and for checks of one's own. What it lets
// through can still be refused: that a clip is there, and that a segment fits, is not said in it.
std::string scenario_schema();

} // namespace veltosim
