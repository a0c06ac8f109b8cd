#include "getters.h"

#include "followers.h"
#include "measure.h"
#include "timecode_reports.h"

#include <cstdio>
#include <latch>
#include <thread>
#include <vector>

namespace
{

constexpr std::uint32_t channel = 0;

// What one call takes on each of `thread_count` threads that ask at the same time.
template <typename Follower>
double nanoseconds_per_call(const Follower& follower, int thread_count, int calls)
{
    std::latch start(thread_count);
    std::vector<double> seconds(static_cast<std::size_t>(thread_count));
    std::vector<std::thread> threads;
    for (double& own_seconds : seconds) {
        threads.emplace_back([&] {
            start.arrive_and_wait();
            const auto begin = Clock::now();
            for (int i = 0; i < calls; ++i) {
                follower.position(channel);
            }
            own_seconds = seconds_since(begin);
        });
    }
    double sum = 0;
    for (std::size_t i = 0; i < threads.size(); ++i) {
        threads[i].join();
        sum += seconds[i];
    }
    return sum / thread_count / calls * 1e9;
}

} // namespace

// All ask for the same channel, which is where they meet.
void measure_getters(bool smoke)
{
    const int rounds = smoke ? 3 : 15;
    const int calls = smoke ? 1000 : 200000;

    const Responder server(answer_with_report);
    PeerFollower peer(server);
    peer.follow(channel);
    LibraryFollower library(server);
    library.follow(channel);

    std::printf("position of a live channel, %d rounds of %d calls a thread, in turns; median\n",
                rounds, calls);
    std::printf("  %-38s %12s %12s %12s\n", "ns a call", "mutex, map", "velto", "of the peer");
    for (const int thread_count : {1, 2, 4}) {
        std::vector<double> peer_ns, library_ns;
        for (int round = 0; round < rounds; ++round) {
            peer_ns.push_back(nanoseconds_per_call(peer, thread_count, calls));
            library_ns.push_back(nanoseconds_per_call(library, thread_count, calls));
        }
        const double base = median(peer_ns);
        const double own = median(library_ns);
        std::printf("  on %d thread%-28s %12.0f %12.0f %12.2f\n", thread_count,
                    thread_count == 1 ? "" : "s at once", base, own, own / base);
    }
}
