#include "connection/channel_state.h"

using ZAVL3::ListElement;

void ChannelListPlay::load(const AString& id, ZAVL3::ListPlayMode play_mode)
{
    list_loaded = true;
    list_id = id;
    mode_known = true;
    mode = play_mode;
}

void ChannelListPlay::unload()
{
    list_loaded = false;
    mode_known = false;
    clear_all();
}

void ChannelListPlay::clear_all()
{
    elements.clear();
    playback_indices = {};
}

void ChannelListPlay::replace(std::uint16_t index, const ListElement& element)
{
    if (index >= elements.size()) {
        elements.resize(std::size_t{index} + 1);
    }
    elements[index] = element;
}

void ChannelListPlay::insert(std::uint16_t index, const ListElement& element)
{
    if (index >= elements.size()) { // nothing moves, and the playback indices stay
        replace(index, element);
        return;
    }
    elements.insert(elements.begin() + index, element);
    for (Index& playback : playback_indices) {
        if (playback.has && playback.value >= index) {
            ++playback.value;
        }
    }
}

void ChannelListPlay::remove(std::uint16_t index)
{
    if (index < elements.size()) {
        elements.erase(elements.begin() + index);
    }
    for (Index& playback : playback_indices) {
        if (!playback.has) {
            continue;
        }
        if (playback.value == index) {
            playback.clear();
        } else if (playback.value > index) {
            --playback.value;
        }
    }
}

void ChannelListPlay::set_air(Air entry, const ZAVL3::ListPlaybackIndex& index)
{
    playback_indices[entry] = index.get<"ListIndex">();
}

void ChannelListPlay::set_loop(ZAVL3::Loop list_loop)
{
    loop_known = true;
    loop = list_loop;
}

std::uint32_t ChannelListPlay::count() const
{
    if (!list_loaded || elements.empty()) {
        return 0;
    }
    const auto size = static_cast<std::uint32_t>(elements.size());
    const auto& content = elements.back().get<"ContentID">();
    const bool is_hole = !content.get<"ClipID">().has && !content.get<"VClipID">().has;
    return is_hole ? size - 1 : size;
}
