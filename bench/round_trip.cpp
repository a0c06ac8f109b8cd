#include "round_trip.h"

#include "bare_link.h"
#include "library_link.h"
#include "measure.h"

#include <cstdio>
#include <vector>

namespace
{

// Six digits, as most transaction identifiers of a long measurement have, in every competitor.
constexpr std::uint32_t sample_xid = 100000;

struct Contestant {
    const char* name;
    std::vector<double> times_us;

    template <typename Call>
    void time(Call call)
    {
        const auto start = Clock::now();
        call();
        times_us.push_back(seconds_since(start) * 1e6);
    }
};

template <typename Call>
double calls_per_second(int count, Call call)
{
    const auto start = Clock::now();
    for (int i = 0; i < count; ++i) {
        call();
    }
    return count / seconds_since(start);
}

} // namespace

// The contestants take turns, so that whatever else the machine does meets them alike.
void measure_round_trips(bool smoke)
{
    const int rounds = smoke ? 5 : 400;
    constexpr int calls_per_round = 50;

    const Responder responder;
    const std::string command = stop_command(sample_xid);
    const std::size_t reply_bytes = ok_reply_to(command).size();
    BareLink one_thread(responder);
    ThreadedLink two_threads(responder, reply_bytes);
    const LibraryLink link(responder);

    Contestant floor1{"socket, one thread", {}};
    Contestant floor2{"socket, reader thread and semaphore", {}};
    Contestant library{"velto_cmd_stop1", {}};
    for (int round = 0; round < rounds; ++round) {
        for (int i = 0; i < calls_per_round; ++i) {
            floor1.time([&] {
                one_thread.send(command);
                one_thread.receive(reply_bytes);
            });
        }
        for (int i = 0; i < calls_per_round; ++i) {
            floor2.time([&] {
                two_threads.send(command);
                two_threads.wait_for_reply();
            });
        }
        for (int i = 0; i < calls_per_round; ++i) {
            library.time([&] {
                require(velto_cmd_stop1(link.handle, VELTO_CHANNEL_A) == VELTO_RESULT_OK,
                        "velto_cmd_stop1 failed");
            });
        }
    }

    const double base1 = median(floor1.times_us);
    const double base2 = median(floor2.times_us);
    std::printf("round trip on loopback, %d calls each, in turns of %d\n", rounds * calls_per_round,
                calls_per_round);
    std::printf("  %-38s %10s %10s %12s %12s\n", "", "median us", "99 % us", "of 1 thread",
                "of 2 threads");
    for (Contestant* contestant : {&floor1, &floor2, &library}) {
        const double middle = median(contestant->times_us);
        std::printf("  %-38s %10.1f %10.1f %12.2f %12.2f\n", contestant->name, middle,
                    percentile(contestant->times_us, 0.99), middle / base1, middle / base2);
    }
}

void measure_rates(bool smoke)
{
    const int rounds = smoke ? 2 : 20;
    const int count = smoke ? 100 : 5000;

    const Responder responder;
    const std::string command = stop_command(sample_xid);
    ThreadedLink bare(responder, ok_reply_to(command).size());
    const LibraryLink link(responder);
    velto_synchronous(link.handle, VELTO_COMMANDS_DO_NOT_WAIT);

    std::vector<double> sends, commands;
    for (int round = 0; round < rounds; ++round) {
        sends.push_back(calls_per_second(count, [&] { bare.send(command); }));
        for (int i = 0; i < count; ++i) {
            bare.wait_for_reply();
        }
        commands.push_back(calls_per_second(count, [&] {
            require(velto_cmd_stop1(link.handle, VELTO_CHANNEL_A) == VELTO_RESULT_OK,
                    "velto_cmd_stop1 failed");
        }));
        velto_sync(link.handle);
    }

    const double send_rate = median(sends);
    const double command_rate = median(commands);
    std::printf("not waited for, %d bursts of %d each, in turns; median\n", rounds, count);
    std::printf("  %-38s %10.0f a second\n", "bare sends of the same bytes", send_rate);
    std::printf("  %-38s %10.0f a second (%.2f of them)\n", "velto_cmd_stop1", command_rate,
                command_rate / send_rate);
}
