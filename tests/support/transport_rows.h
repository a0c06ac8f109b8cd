#pragma once

#include "velto/velto.h"

#include <functional>
#include <span>
#include <string>
#include <vector>

// One call of an exported command, and the command that it sends.
struct WireRow {
    const char* function;
    std::function<VeltoResult(VeltoHandle)> call;
    std::vector<std::string> lines; // the command's own element, line by line
    std::size_t reports = 0;        // of checks that did not hold
};

// The rows of all functions, a family each.
using WireRows = std::span<const WireRow>;
WireRows play_and_stop_rows();
WireRows seek_rows();
WireRows load_rows();
WireRows precue_rows();
WireRows live_and_take_rows();
WireRows edit_and_monitor_rows();
WireRows loop_and_out_point_rows();
WireRows list_play_out_rows();
std::vector<WireRow> all_rows();
