#pragma once

#include "peer_link.h"

#include <condition_variable>
#include <cstddef>
#include <optional>
#include <unordered_map>

// What an application would write for itself on common libraries, in place of ours: it follows the
// timecodes of channels, on a thread of its own, for threads that ask for the position.
class PeerClient
{
public:
    explicit PeerClient(const Responder& responder);
    PeerClient(const PeerClient&) = delete;
    PeerClient& operator=(const PeerClient&) = delete;

    // Registers for the timecodes of a channel, and waits for the first one.
    void follow(std::uint32_t channel);
    // None before the first report.
    std::optional<std::uint32_t> position(std::uint32_t channel) const;
    // Reports that could not be read.
    std::uint64_t refused() const { return refused_reports; }

private:
    struct Timecode {
        bool valid = false;
        std::optional<std::uint32_t> video_standard;
        std::optional<std::int32_t> field_number;
        std::optional<std::uint32_t> drop_frame;
    };
    struct Timecodes {
        std::uint32_t position = 0;
        Timecode display;
        Timecode input;
    };

    void handle_report(const pugi::xml_document& message);
    bool read_channel_timecode(const pugi::xml_node& content);
    static bool read_timecode(const pugi::xml_node& node, Timecode& timecode);

    std::atomic<std::uint64_t> refused_reports{0};
    mutable std::mutex lock;
    std::condition_variable first_report;
    std::unordered_map<std::uint32_t, Timecodes> channels; // guarded by lock
    std::uint32_t last_xid = 0;
    PeerLink link; // last: its thread uses all the others
};
