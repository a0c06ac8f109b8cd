#pragma once

#include "connection/channel_state.h"
#include "support/describe.h"

// A list element by its clip, or its virtual clip; "-" for a hole.
inline std::string describe_content(const ZAVL3::ListElement& element)
{
    const auto& content = element.get<"ContentID">();
    const auto& clip = content.get<"ClipID">();
    return describe(clip.has ? clip : content.get<"VClipID">());
}

// As "loaded evening, mode 1, [a, -, b], now 0, next 2, lock -, loop 1".
inline std::string describe(const ChannelListPlay& list)
{
    const auto known = [](bool is_known, auto value) {
        return is_known ? describe(value) : std::string("-");
    };
    std::vector<AString> contents;
    for (const ZAVL3::ListElement& element : list.elements) {
        const std::string content = describe_content(element);
        contents.push_back(AString(content.c_str()));
    }
    return (list.list_loaded ? "loaded " : "unloaded ") + describe(list.list_id) + ", mode " +
           known(list.mode_known, list.mode) + ", " + describe(contents) + ", now " +
           describe(list.playback_indices[ChannelListPlay::air_now]) + ", next " +
           describe(list.playback_indices[ChannelListPlay::air_next]) + ", lock " +
           describe(list.playback_indices[ChannelListPlay::air_lock]) + ", loop " +
           known(list.loop_known, list.loop);
}
