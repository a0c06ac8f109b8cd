#include "sim/station.h"

#include <iterator>
#include <utility>

#include <fmt/format.h>

#include "sim/text.h"

namespace veltosim
{

Station::Station(std::string computer_name, const Standard& video_standard, ClipStore store)
    : name(std::move(computer_name)), standard(video_standard), clips(std::move(store))
{
    for (const std::string_view letter : channel_words) {
        channels.emplace_back(letter.front(), standard.field_rate);
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
