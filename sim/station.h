#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "sim/channel.h"
#include "sim/clip_store.h"
#include "sim/faults.h"
#include "sim/news.h"
#include "sim/reports.h"
#include "sim/standards.h"
#include "sim/store_file.h"

namespace veltosim
{

// What a client has asked to be told of for as long as it is connected.
struct Registrations {
    std::set<ReportType> reports;
    ChannelReports channel_reports;
    std::set<std::pair<std::string, std::string>> metadata; // database, prefix
};

// The whole server behind the network: what it is called, what it stores and what its channels do.
class Station
{
public:
    // Changes of the store go to `store_file` too, if there is one: it holds the same.
    Station(std::string computer_name, const Standard& video_standard, ClipStore store,
            std::unique_ptr<StoreFile> store_file = {});

    std::string name;
    const Standard& standard;
    ClipStore clips;
    std::vector<Channel> channels;        // A to L
    std::function<std::uint64_t()> clock; // milliseconds since 1970
    Faults faults;

    // The time for a clip's record; no two are the same.
    std::uint64_t stamp();
    // Makes the changes for good: after this they survive a crash. Throws a Refusal if they cannot
    // be written; then nothing has changed.
    void commit(const StoreChange& change);
    // Exchanges some channels for what a command has made of them, and notes in the store what has
    // become of their clips. Throws as `commit` does.
    void replace_channels(const std::vector<std::size_t>& indexes, std::vector<Channel> changed);
    // Notes in the store what the channels have done to their clips by themselves.
    void note_use(TimePoint now);

    // What has happened since the last call, for the clients that want to know.
    std::vector<News> take_news() { return std::exchange(news, {}); }

private:
    void commit_uses(const std::vector<ClipUse>& uses);

    std::unique_ptr<StoreFile> file;
    std::vector<News> news;
    std::uint64_t last_stamp = 0;
};

// The channels as a table of lines, with a heading.
std::string channel_table(const Station& station, TimePoint now);

} // namespace veltosim
