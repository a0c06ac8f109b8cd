#include "peer_client.h"

#include <charconv>
#include <string_view>

namespace
{

// The words of an enumeration by their numbers.
using Words = std::unordered_map<std::string_view, std::uint32_t>;

Words numbered(std::initializer_list<std::string_view> words)
{
    Words numbers;
    for (const std::string_view word : words) {
        numbers.emplace(word, static_cast<std::uint32_t>(numbers.size()));
    }
    return numbers;
}

const Words truths = numbered({"false", "true"});
const Words drop_frame_flags = numbered({"df", "ndf"});
const Words channel_names = numbered({"A", "B", "C", "D", "E", "F", "G", "H"});
const Words video_standards =
    numbered({"4K_60p",      "4K_59_94p", "4K_50p",    "4K_30p",      "4K_29_97p",     "4K_25p",
              "4K_24p",      "4K_23_98p", "1080_60p",  "1080_59_94p", "1080_50p",      "1080_30p",
              "1080_29_97p", "1080_25p",  "1080_24p",  "1080_23_98p", "1080_23_98psf", "1080_60i",
              "1080_59_94i", "1080_50i",  "1080_48i",  "1080_47_95i", "720_60p",       "720_59_94p",
              "720_50p",     "625_50i",   "525_59_94i"});

bool convert(std::string_view text, std::uint32_t& value, const Words& words)
{
    const auto found = words.find(text);
    if (found == words.end()) {
        return false;
    }
    value = found->second;
    return true;
}

template <typename Number>
bool convert(std::string_view text, Number& value)
{
    const char* end = text.data() + text.size();
    const auto result = std::from_chars(text.data(), end, value);
    return result.ec == std::errc() && result.ptr == end;
}

// Absent is good, unreadable is not.
template <typename Value, typename... Table>
bool read_optional(const pugi::xml_node& node, std::optional<Value>& value, const Table&... words)
{
    return !node || convert(node.child_value(), value.emplace(), words...);
}

} // namespace

PeerClient::PeerClient(const Responder& responder)
    : link(responder, "</report>",
           [this](const pugi::xml_document& message) { handle_report(message); })
{
}

void PeerClient::follow(std::uint32_t channel)
{
    const std::string command = "<cmd><xid>" + std::to_string(++last_xid) +
                                "</xid><channel_report_register><Channel>" +
                                static_cast<char>('A' + channel) +
                                "</Channel><ChannelReportType>timecode</ChannelReportType>"
                                "</channel_report_register></cmd>";
    link.send(command);
    std::unique_lock guard(lock);
    first_report.wait(guard, [&] { return channels.count(channel) != 0; });
}

std::optional<std::uint32_t> PeerClient::position(std::uint32_t channel) const
{
    const std::lock_guard guard(lock);
    const auto found = channels.find(channel);
    if (found == channels.end()) {
        return std::nullopt;
    }
    return found->second.position;
}

void PeerClient::handle_report(const pugi::xml_document& message)
{
    if (!read_channel_timecode(message.child("report").child("channel_timecode"))) {
        ++refused_reports;
    }
}

bool PeerClient::read_channel_timecode(const pugi::xml_node& content)
{
    std::uint32_t channel = 0;
    Timecodes timecodes;
    if (!convert(content.child_value("Channel"), channel, channel_names) ||
        !convert(content.child_value("ClipPosition"), timecodes.position) ||
        !read_timecode(content.child("DisplayTimecode"), timecodes.display) ||
        !read_timecode(content.child("InputTimecode"), timecodes.input)) {
        return false;
    }
    bool first = false;
    {
        const std::lock_guard guard(lock);
        first = channels.insert_or_assign(channel, timecodes).second;
    }
    if (first) {
        first_report.notify_all();
    }
    return true;
}

bool PeerClient::read_timecode(const pugi::xml_node& node, Timecode& timecode)
{
    std::uint32_t valid = 0;
    if (!convert(node.child_value("Valid"), valid, truths)) {
        return false;
    }
    timecode.valid = valid != 0;
    return read_optional(node.child("VideoStandard"), timecode.video_standard, video_standards) &&
           read_optional(node.child("FieldNumber"), timecode.field_number) &&
           read_optional(node.child("DropFrameFlag"), timecode.drop_frame, drop_frame_flags);
}
