#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "sim/channel.h"
#include "sim/clip_store.h"
#include "sim/station.h"
#include "sim/words.h"

namespace veltosim
{

// What a channel holds and does when the server starts: a clip or a playlist.
struct ChannelLoad {
    std::size_t channel = 0;
    std::optional<std::string> playlist;
    PlaylistElement clip; // if there is no playlist
    ListPlayMode mode = ListPlayMode::single_channel;
    std::optional<Loop> loop;
    bool play = false;
    Speed speed = normal_speed; // of the play
};

// What a server has to play with.
struct Scenario {
    ClipStore clips;
    std::vector<ChannelLoad> channels;
};

// "file:line: reason", or without the line if the file cannot be read.
struct ScenarioError : std::runtime_error {
    using std::runtime_error::runtime_error;
};

// All throw a ScenarioError. `file` is what an error calls the text.
Scenario parse_scenario(std::string_view text, const std::string& file);
Scenario read_scenario(const std::string& file);

// The one that is built in, and its text.
Scenario default_scenario();
std::string_view default_scenario_text();

// Loads the channels. Throws a Refusal if that cannot be.
void load_channels(Station& station, const std::vector<ChannelLoad>& loads, TimePoint now);
// The same, but for those that cannot be loaded.
void load_possible_channels(Station& station, const std::vector<ChannelLoad>& loads, TimePoint now);

} // namespace veltosim
