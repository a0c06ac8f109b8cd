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

using WireRows = std::span<const WireRow>;
