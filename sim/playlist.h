#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "sim/words.h"

namespace veltosim
{

struct PlaylistElement {
    std::string clip;
    std::uint32_t start = 0;
    std::optional<std::uint32_t> out_point; // first field that is not played
    ClipScope scope = ClipScope::clip;
    std::uint8_t angle = 0;
    ListElementAtEnd at_end = ListElementAtEnd::take;
};

struct Playlist {
    std::string name;
    std::vector<PlaylistElement> elements; // never empty
};

} // namespace veltosim
