#pragma once

#include "support/xml_text.h"

// What a server tells of its channels, as it stands on the wire. A channel goes by its letter.

inline std::string channel_report(const std::string& name, char channel,
                                  const std::string& fields = {})
{
    return xml_element("report",
                       xml_element(name, xml_element("Channel", std::string(1, channel)) + fields));
}

inline std::string status_report(char channel, const std::string& word)
{
    return channel_report("channel_status", channel, xml_element("ChannelStatus", word));
}

inline std::string clip_report(char channel, const std::string& clip)
{
    return channel_report("channel_clipid", channel, xml_element("ClipID", clip));
}

inline std::string speed_report(char channel, const std::string& speed)
{
    return channel_report("channel_speed", channel, xml_element("Speed", speed));
}

inline std::string position_fields(const std::string& position)
{
    const std::string display = "<Valid>true</Valid><FieldNumber>90000</FieldNumber>";
    return xml_element("ClipPosition", position) + xml_element("DisplayTimecode", display) +
           "<InputTimecode><Valid>false</Valid></InputTimecode>";
}

inline std::string position_report(char channel, const std::string& position)
{
    return channel_report("channel_timecode", channel, position_fields(position));
}

inline std::string info_fields(const std::string& optional_fields)
{
    return xml_element("ChannelInformation", "<ClipID>news_open</ClipID>" + optional_fields);
}

inline std::string info_report(char channel, const std::string& optional_fields = {})
{
    return channel_report("channel_info", channel, info_fields(optional_fields));
}

// List play: the report `channel_listplay_` + `event`.
inline std::string list_report(const std::string& event, char channel,
                               const std::string& fields = {})
{
    return channel_report("channel_listplay_" + event, channel, fields);
}

inline std::string list_loaded(const std::string& list)
{
    return xml_element("ListID", list) + "<ListPlayMode>pgm_pvw</ListPlayMode>";
}

inline std::string list_item(int index)
{
    return xml_element("ListIndex", std::to_string(index));
}

inline std::string list_item(int index, const std::string& clip)
{
    return list_item(index) +
           xml_element("ListElement", xml_element("ContentID", xml_element("ClipID", clip)));
}

inline std::string list_hole(int index)
{
    return list_item(index) + "<ListElement><ContentID></ContentID></ListElement>";
}

inline std::string on_air(int index)
{
    return xml_element("ListPlaybackIndex", list_item(index));
}

inline const std::string off_air = "<ListPlaybackIndex></ListPlaybackIndex>";
