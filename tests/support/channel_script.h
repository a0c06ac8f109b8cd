#pragma once

#include "support/channel_reports.h"
#include "support/command_script.h"

#include <gtest/gtest.h>

#include <sstream>
#include <vector>

// What the scripts about channels have in common: the getters, and the server's part.

// How a getter ended, and its outputs as text. These are 77 before.
struct ChannelReading {
    Outcome outcome;
    std::string values;

    bool operator==(const ChannelReading&) const = default;
    friend std::ostream& operator<<(std::ostream& out, const ChannelReading& reading)
    {
        return out << reading.outcome << " with " << reading.values;
    }
};

inline ChannelReading read_to(const std::string& values)
{
    return {succeeded, values};
}

using ReadChannel = ChannelReading (*)(VeltoHandle handle, std::uint32_t channel);

template <auto Getter>
ChannelReading read_number(VeltoHandle handle, std::uint32_t channel)
{
    std::uint32_t value = 77;
    const Outcome outcome = outcome_of([&] { return Getter(handle, channel, &value); });
    return {outcome, std::to_string(value)};
}

template <auto Getter>
ChannelReading read_pair(VeltoHandle handle, std::uint32_t channel)
{
    std::uint32_t first = 77;
    std::uint32_t second = 77;
    const Outcome outcome = outcome_of([&] { return Getter(handle, channel, &first, &second); });
    return {outcome, std::to_string(first) + " " + std::to_string(second)};
}

inline ChannelReading read_speed(VeltoHandle handle, std::uint32_t channel)
{
    double speed = 77;
    const Outcome outcome =
        outcome_of([&] { return velto_channel_speed(handle, channel, &speed); });
    std::ostringstream text;
    text << speed;
    return {outcome, text.str()};
}

inline ChannelReading read_clip(VeltoHandle handle, std::uint32_t channel)
{
    VeltoChar units[16] = {'7', '7'};
    const Outcome outcome = outcome_of([&] {
        return velto_channel_clip(handle, channel, {units, 16});
    });
    return {outcome, std::string(units, units + std::char_traits<VeltoChar>::length(units))};
}

struct ChannelGetter {
    const char* name;
    const char* item; // that it registers
    ReadChannel read;
    const char* report = nullptr;
    std::string fields = {}; // of the report
    std::string values = {}; // that this report gives
    std::string values_before = "77";

    ChannelReading failed(const Outcome& outcome = failed_question) const
    {
        return {outcome, values_before};
    }
    std::string report_on(char channel) const { return channel_report(report, channel, fields); }
};

inline const std::string full_info = info_fields(
    "<ClipLength>1500</ClipLength><Loop>pingpong</Loop><AngleCount>4</AngleCount><Angle>2</Angle>"
    "<EEStatus><SonyEditMask>16</SonyEditMask><AutoEE>false</AutoEE></EEStatus>"
    "<PrecueCount>6</PrecueCount>");

// clang-format off
inline const ChannelGetter status_getter{"velto_channel_status", "status", &read_number<velto_channel_status>,
    "channel_status", "<ChannelStatus>play</ChannelStatus><ClipID>news_open</ClipID>", "3"};
inline const ChannelGetter clip_getter{"velto_channel_clip", "clipid", &read_clip,
    "channel_clipid", "<ClipID>news_open</ClipID>", "news_open"};
inline const ChannelGetter speed_getter{"velto_channel_speed", "speed", &read_speed,
    "channel_speed", "<Speed>-0.5X</Speed>", "-0.5"};
inline const ChannelGetter position_getter{"velto_channel_position", "timecode", &read_number<velto_channel_position>,
    "channel_timecode", position_fields("250"), "250"};
inline const ChannelGetter length_getter{"velto_channel_clip_length", "info", &read_number<velto_channel_clip_length>,
    "channel_info", full_info, "1500"};
inline const ChannelGetter repeat_getter{"velto_channel_repeat", "info", &read_number<velto_channel_repeat>,
    "channel_info", full_info, "3"};
inline const ChannelGetter angle_getter{"velto_channel_angle", "info", &read_pair<velto_channel_angle>,
    "channel_info", full_info, "2 4", "77 77"};
inline const ChannelGetter ee_getter{"velto_channel_ee", "info", &read_pair<velto_channel_ee>,
    "channel_info", full_info, "1 1", "77 77"};
inline const ChannelGetter precue_getter{"velto_channel_precue_count", "info", &read_number<velto_channel_precue_count>,
    "channel_info", full_info, "6"};
// clang-format on

// Those that a report can satisfy.
inline const std::vector<ChannelGetter> channel_getters = {
    status_getter, clip_getter,  speed_getter, position_getter, length_getter,
    repeat_getter, angle_getter, ee_getter,    precue_getter,
};

// Those that none satisfies.
inline const std::vector<ChannelGetter> list_getters = {
    {"velto_playlist_count", "listplay", &read_number<velto_playlist_count>},
    {"velto_playlist_status", "listplay", &read_number<velto_playlist_status>},
};

inline std::vector<ChannelGetter> all_channel_getters()
{
    std::vector<ChannelGetter> getters = channel_getters;
    getters.insert(getters.end(), list_getters.begin(), list_getters.end());
    return getters;
}

// A getter on a thread of its own.
inline std::future<ChannelReading> reading(ReadChannel read, VeltoHandle handle,
                                           std::uint32_t channel)
{
    return in_thread([=] { return read(handle, channel); });
}

inline char letter_of(std::uint32_t channel)
{
    return static_cast<char>('A' + channel);
}

// The bytes of a registration, apart from its xid.
inline std::string registration(char channel, const std::string& item)
{
    return "<channel_report_register>\r\n" + xml_element("Channel", std::string(1, channel)) +
           "\r\n" + xml_element("ChannelReportType", item) + "\r\n</channel_report_register>";
}

inline std::string command_bytes(const std::string& xid, const std::string& element)
{
    return "<cmd>\r\n" + xml_element("xid", xid) + "\r\n" + element + "\r\n</cmd>";
}

// The xid of the registration, which comes next.
inline std::string expect_registration(Session& session, char channel, const std::string& item)
{
    const ReceivedCommand command = session.link->expect_command();
    EXPECT_EQ(command.bytes, command_bytes(command.xid, registration(channel, item)));
    return command.xid;
}

// The first read of an item, which the server answers with `report`.
inline ChannelReading first_read(Session& session, ReadChannel read, std::uint32_t channel,
                                 const std::string& item, const std::string& report)
{
    auto asking = reading(read, session.handle, channel);
    const std::string xid = expect_registration(session, letter_of(channel), item);
    session.link->send(reply_message(xid, "<ok />") + report);
    return await(std::move(asking));
}

inline ChannelReading first_read(Session& session, const ChannelGetter& getter,
                                 std::uint32_t channel)
{
    return first_read(session, getter.read, channel, getter.item,
                      getter.report_on(letter_of(channel)));
}
