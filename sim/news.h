#pragma once

#include <string>

#include "sim/clip_store.h"
#include "sim/words.h"

namespace veltosim
{

// Something that happened once, other than the state of a channel: each client that has registered
// its kind is told.
struct News {
    ReportType type;
    std::string message; // the report
};

News to_news(const StoreEvent& event);

} // namespace veltosim
