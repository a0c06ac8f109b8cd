#include "sim/station.h"

#include <algorithm>
#include <chrono>
#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "sim/clip_use.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

std::uint64_t wall_clock()
{
    const auto since_1970 = std::chrono::system_clock::now().time_since_epoch();
    return static_cast<std::uint64_t>(
        std::chrono::duration_cast<std::chrono::milliseconds>(since_1970).count());
}

void collect(std::vector<ClipUse>& uses, const Channel& channel)
{
    uses.insert(uses.end(), channel.uses().begin(), channel.uses().end());
}

} // namespace

Station::Station(std::string computer_name, const Standard& video_standard, ClipStore store,
                 std::unique_ptr<StoreFile> store_file)
    : name(std::move(computer_name)), standard(video_standard), clips(std::move(store)),
      clock(wall_clock), file(std::move(store_file))
{
    for (const std::string_view letter : channel_words) {
        channels.emplace_back(letter.front(), standard.field_rate);
    }
}

std::uint64_t Station::stamp()
{
    last_stamp = std::max(last_stamp + 1, clock());
    return last_stamp;
}

void Station::commit(const StoreChange& change)
{
    if (file) {
        file->write(change);
    }
    for (const StoreEvent& event : clips.apply(change)) {
        news.emplace_back(to_news(event));
    }
    if (!change.metadata.empty()) {
        news.emplace_back(MetadataNews(change.metadata));
    }
}

void Station::commit_uses(const std::vector<ClipUse>& uses)
{
    const StoreChange change = stamps_of(uses, clips, [this] { return stamp(); });
    if (!change.empty()) {
        commit(change);
    }
}

void Station::note_use(TimePoint now)
{
    std::vector<ClipUse> uses;
    for (Channel& channel : channels) {
        channel.catch_up(now);
        collect(uses, channel);
    }
    commit_uses(uses);
    for (Channel& channel : channels) {
        channel.forget_uses();
    }
}

void Station::replace_channels(const std::vector<std::size_t>& indexes,
                               std::vector<Channel> changed)
{
    std::vector<ClipUse> uses;
    for (const Channel& channel : changed) {
        collect(uses, channel);
    }
    commit_uses(uses);
    for (std::size_t i = 0; i < indexes.size(); ++i) {
        changed[i].forget_uses();
        channels[indexes[i]] = std::move(changed[i]);
    }
}

std::string channel_table(const Station& station, TimePoint now)
{
    constexpr std::string_view row = "{:<8} {:<10} {:<32} {:>10} {:>10} {:<10} {:>5}\n";
    fmt::memory_buffer table;
    const auto out = std::back_inserter(table);
    fmt::format_to(out, row, "channel", "status", "clip", "position", "speed", "loop", "angle");
    for (const Channel& channel : station.channels) {
        const ChannelView view = channel.view(now);
        if (view.clip.empty()) {
            fmt::format_to(out, row, view.letter, word_of(channel_status_words, view.status), "-",
                           "-", "-", "-", "-");
            continue;
        }
        const std::string clip =
            view.list.empty() ? view.clip
                              : fmt::format("{} ({} {})", view.clip, view.list, view.list_index);
        fmt::format_to(
            out, row, view.letter, word_of(channel_status_words, view.status), on_one_line(clip),
            view.position, fmt::format("{:.2f}X", static_cast<double>(view.speed) / normal_speed),
            word_of(loop_words, view.loop), fmt::format("{}/{}", view.angle, view.angle_count));
    }
    return fmt::to_string(table);
}

} // namespace veltosim
