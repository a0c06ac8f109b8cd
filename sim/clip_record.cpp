#include "sim/clip_record.h"

#include <algorithm>

namespace veltosim
{

std::uint8_t audio_track_count(const Clip& clip)
{
    return static_cast<std::uint8_t>(
        std::count_if(clip.tracks.begin(), clip.tracks.end(),
                      [](const Track& track) { return track.type == TrackType::audio; }));
}

bool meta_protected(const Clip& clip)
{
    return clip.read_only || clip.read_only_meta.value_or(false);
}

bool content_protected(const Clip& clip)
{
    return clip.read_only || clip.read_only_content.value_or(false);
}

} // namespace veltosim
