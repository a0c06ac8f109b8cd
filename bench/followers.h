#pragma once

#include "library_link.h"
#include "measure.h"
#include "peer_client.h"
#include "timecode_reports.h"

// The competitors in following the timecodes of channels, with one interface.

class LibraryFollower
{
public:
    explicit LibraryFollower(const Responder& responder) : link(responder) {}

    void follow(std::uint32_t channel) { position(channel); }
    std::uint32_t position(std::uint32_t channel) const
    {
        std::uint32_t result = 0;
        require(velto_channel_position(link.handle, channel, &result) == VELTO_RESULT_OK,
                "velto_channel_position failed");
        return result;
    }

private:
    LibraryLink link;
};

class PeerFollower
{
public:
    explicit PeerFollower(const Responder& responder) : client(responder) {}

    void follow(std::uint32_t channel) { client.follow(channel); }
    std::uint32_t position(std::uint32_t channel) const
    {
        require(client.refused() == 0, "the peer client refused a report");
        return client.position(channel).value();
    }

private:
    PeerClient client;
};

// A responder's answer: ok, and after a registration also the report that follows it.
inline std::string answer_with_report(const std::string& command)
{
    std::string reply = ok_reply_to(command);
    if (command.find("<channel_report_register>") != std::string::npos) {
        append_timecode_report(reply, text_of(command, "Channel")[0], 0);
    }
    return reply;
}
