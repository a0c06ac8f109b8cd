#include "flood.h"

#include "followers.h"
#include "measure.h"
#include "timecode_reports.h"

#include <chrono>
#include <cstdio>
#include <fstream>

namespace
{

constexpr std::uint32_t first_position = 1000000; // all of seven digits, as most of a long day are
constexpr std::size_t send_block_bytes = 65536;
constexpr double longest_flood_seconds = 120; // only catches a hang

std::size_t resident_kilobytes()
{
    std::ifstream status("/proc/self/status");
    for (std::string word; status >> word;) {
        if (word == "VmRSS:") {
            std::size_t kilobytes = 0;
            status >> kilobytes;
            return kilobytes;
        }
    }
    return 0;
}

// The reports of one turn, the channels in turn as well. The position of a report is its number.
struct Flood {
    std::uint32_t first;
    std::uint32_t count;

    char channel(std::uint32_t position) const
    {
        return static_cast<char>('A' + (position - first) % channel_count);
    }
    std::uint32_t last_position(std::uint32_t channel) const
    {
        return first + count - channel_count + channel;
    }
    void send(const Responder& server) const
    {
        std::string block;
        for (std::uint32_t position = first; position != first + count; ++position) {
            append_timecode_report(block, channel(position), position);
            if (block.size() >= send_block_bytes || position + 1 == first + count) {
                server.send(block);
                block.clear();
            }
        }
    }
};

// A client with a server of its own, and what its floods have come to.
template <typename Follower>
class Contestant
{
public:
    Contestant() : server(answer_with_report), follower(server)
    {
        for (std::uint32_t channel = 0; channel < channel_count; ++channel) {
            follower.follow(channel);
        }
    }

    std::uint32_t position(std::uint32_t channel) const { return follower.position(channel); }

    // The receiving side's CPU time is that of the process without this thread, which looks for
    // the end, and the sending one.
    void take(const Flood& flood)
    {
        const double process_start = cpu_seconds(CLOCK_PROCESS_CPUTIME_ID);
        const double own_start = cpu_seconds(CLOCK_THREAD_CPUTIME_ID);
        const auto start = Clock::now();
        double sender_cpu = 0;
        std::thread sender([&] {
            flood.send(server);
            sender_cpu = cpu_seconds(CLOCK_THREAD_CPUTIME_ID);
        });
        while (follower.position(channel_count - 1) != flood.last_position(channel_count - 1)) {
            require(seconds_since(start) < longest_flood_seconds, "the flood did not arrive");
            std::this_thread::sleep_for(std::chrono::microseconds(200));
        }
        seconds += seconds_since(start);
        sender.join();
        const double own = cpu_seconds(CLOCK_THREAD_CPUTIME_ID) - own_start;
        cpu += cpu_seconds(CLOCK_PROCESS_CPUTIME_ID) - process_start - own - sender_cpu;
        reports += flood.count;
        for (std::uint32_t channel = 0; channel < channel_count; ++channel) {
            require(follower.position(channel) == flood.last_position(channel),
                    "a channel ended at another position than the last that was sent");
        }
    }

    double cpu_us() const { return cpu * 1e6 / reports; }
    void print(const char* name, double base_us) const
    {
        std::printf("  %-38s %16.0f %16.2f %12.2f\n", name, reports / seconds, cpu_us(),
                    cpu_us() / base_us);
    }

private:
    const Responder server;
    Follower follower;
    std::uint32_t reports = 0;
    double seconds = 0;
    double cpu = 0;
};

} // namespace

// The two take turns, so that whatever else the machine does meets them alike.
void measure_flood(bool smoke)
{
    const std::uint32_t turns = smoke ? 1 : 10;
    const std::uint32_t reports_per_turn = smoke ? 1000 : 20000;

    Contestant<PeerFollower> peer;
    Contestant<LibraryFollower> library;
    const std::size_t resident_before = resident_kilobytes();
    Flood flood{first_position, reports_per_turn};
    for (std::uint32_t turn = 0; turn < turns; ++turn) {
        peer.take(flood);
        library.take(flood);
        flood.first += flood.count;
    }
    const std::size_t resident_after = resident_kilobytes();
    for (std::uint32_t channel = 0; channel < channel_count; ++channel) {
        require(library.position(channel) == peer.position(channel),
                "the two clients do not agree on a position");
    }

    std::string sample;
    append_timecode_report(sample, 'A', first_position);
    std::printf("flood of channel_timecode, %u reports of %zu bytes to each, in turns of %u\n",
                turns * reports_per_turn, sample.size(), reports_per_turn);
    std::printf("  %-38s %16s %16s %12s\n", "", "reports a second", "CPU us a report",
                "of the peer");
    peer.print("asio, pugixml and a typed cache", peer.cpu_us());
    library.print("velto", peer.cpu_us());
    std::printf("  the same last position on each of the %u channels of both\n", channel_count);
    std::printf("  resident memory %zu KB before, %zu KB after\n", resident_before, resident_after);
}
