#include "sim/clip_store.h"

#include <utility>

#include <fmt/format.h>

#include "sim/refusal.h"
#include "sim/text.h"

namespace veltosim
{

namespace
{

template <class Map>
std::string names_of(const Map& entries)
{
    constexpr std::size_t most = 12;
    std::string names;
    std::size_t count = 0;
    for (const auto& [name, entry] : entries) {
        if (count++ == most) {
            return names + ", ...";
        }
        names += (names.empty() ? "" : ", ") + quote(name);
    }
    return names.empty() ? "none" : names;
}

template <class Map>
const auto& find(const Map& entries, std::string_view what, std::string_view name, ErrorCode code)
{
    const auto found = entries.find(name);
    if (found == entries.end()) {
        throw Refusal(
            fmt::format("there is no {} {}; there are: {}", what, quote(name), names_of(entries)),
            code);
    }
    return found->second;
}

std::string with_angles(const Clip& clip)
{
    return clip.angles == 1 ? clip.name : fmt::format("{} ({} angles)", clip.name, clip.angles);
}

// A heading and what follows it, in lines of bearable length.
std::string paragraph(std::string_view heading, const std::vector<std::string>& names)
{
    constexpr std::size_t longest_line = 90;
    std::string text = fmt::format("{}:", heading);
    std::size_t line = text.size();
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string word = names[i] + (i + 1 < names.size() ? "," : "");
        const bool fits = line + 1 + word.size() <= longest_line;
        text += (fits ? " " : "\n  ") + word;
        line = (fits ? line + 1 : 2) + word.size();
    }
    return text + "\n";
}

} // namespace

void ClipStore::add_clip(Clip clip)
{
    const std::string name = clip.name;
    clips[name] = std::make_shared<const Clip>(std::move(clip));
}

void ClipStore::add_virtual_clip(Clip clip)
{
    const std::string name = clip.name;
    virtual_clips[name] = std::make_shared<const Clip>(std::move(clip));
}

void ClipStore::add_playlist(Playlist list)
{
    const std::string name = list.name;
    playlists[name] = std::move(list);
}

ClipPtr ClipStore::clip(std::string_view name, ClipScope scope) const
{
    return scope == ClipScope::vclip
               ? find(virtual_clips, "virtual clip", name, ErrorCode::clipnotfound)
               : find(clips, "clip", name, ErrorCode::clipnotfound);
}

const Playlist& ClipStore::playlist(std::string_view name) const
{
    return find(playlists, "playlist", name, ErrorCode::general);
}

std::string ClipStore::summary() const
{
    std::vector<std::string> clip_names;
    for (const auto& [name, entry] : clips) {
        clip_names.push_back(with_angles(*entry));
    }
    std::vector<std::string> virtual_names;
    for (const auto& [name, entry] : virtual_clips) {
        virtual_names.push_back(with_angles(*entry));
    }
    std::vector<std::string> list_names;
    for (const auto& [name, list] : playlists) {
        list_names.push_back(name);
    }
    return paragraph("Clips", clip_names) + paragraph("Virtual clips", virtual_names) +
           paragraph("Playlists", list_names);
}

} // namespace veltosim
