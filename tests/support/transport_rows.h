#pragma once

#include "support/wire_row.h"

// The rows of all functions, a family each.
WireRows play_and_stop_rows();
WireRows seek_rows();
WireRows load_rows();
WireRows precue_rows();
WireRows live_and_take_rows();
WireRows edit_and_monitor_rows();
WireRows loop_and_out_point_rows();
WireRows list_play_out_rows();
std::vector<WireRow> all_rows();
