#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "sim/channel.h"
#include "sim/clip_store.h"
#include "sim/reports.h"
#include "sim/standards.h"

namespace veltosim
{

// What a client has asked to be told of for as long as it is connected.
struct Registrations {
    std::set<std::size_t> reports; // numbers of report types
    ChannelReports channel_reports;
    std::set<std::pair<std::string, std::string>> metadata; // database, prefix
};

// The whole server behind the network: what it is called, what it stores and what its channels do.
struct Station {
    Station(std::string computer_name, const Standard& video_standard, ClipStore store);

    std::string name;
    const Standard& standard;
    ClipStore clips;
    std::vector<Channel> channels; // A to L
};

// The channels as a table of lines, with a heading.
std::string channel_table(const Station& station, TimePoint now);

} // namespace veltosim
