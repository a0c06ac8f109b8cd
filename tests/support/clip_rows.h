#pragma once

#include "support/wire_row.h"

// Clips by name, and virtual clips.
WireRows clip_rows();
WireRows vclip_rows();
