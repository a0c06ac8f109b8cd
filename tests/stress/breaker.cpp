#include "stress/breaker.h"

#include <fmt/format.h>

namespace stress
{

using std::chrono::milliseconds;

namespace
{

struct Fault {
    const char* name;
    std::uint32_t weight;
    void (*happen)(Breaker& breaker);
};

milliseconds some(Breaker& breaker, std::uint32_t most)
{
    return milliseconds(1 + breaker.chance.below(most));
}

std::shared_ptr<Door> a_door(Breaker& breaker)
{
    for (int tries = 0; tries < 20; ++tries) {
        const auto connection = breaker.world.connections.pick(breaker.chance);
        if (connection && connection->door) {
            return connection->door;
        }
    }
    return breaker.world.doors.open(); // nobody comes there
}

void tell(Breaker& breaker, const std::string& line)
{
    const std::string answer = breaker.simulator.control(line);
    breaker.world.verdict.check(answer.starts_with("ok"),
                                fmt::format("the simulator answers '{}' to '{}'", answer, line));
}

template <Cut how>
void cut(Breaker& breaker)
{
    a_door(breaker)->cut(how);
}

void cut_all(Breaker& breaker)
{
    for (const auto& connection : breaker.world.connections.all()) {
        connection->door->cut(Cut::reset);
    }
}

void stall(Breaker& breaker)
{
    a_door(breaker)->stall(some(breaker, 700));
}

void stall_and_cut(Breaker& breaker)
{
    const auto door = a_door(breaker);
    door->stall(milliseconds(2000));
    std::this_thread::sleep_for(some(breaker, 30));
    door->cut(Cut::close);
}

void trickle(Breaker& breaker)
{
    a_door(breaker)->trickle(some(breaker, 500));
}

void garbage(Breaker& breaker)
{
    static const std::string noise[] = {"<",           "</report>", "<reply>",
                                        "<a b='",      "&#0;",      "&amp",
                                        "]]>",         "<!--",      std::string("\0\xFF\xFE", 3),
                                        "<xid>1</xid>"};
    std::string bytes;
    for (std::uint32_t piece = breaker.chance.below(12); piece != ~0u; --piece) {
        bytes += breaker.chance.one_in(4)
                     ? std::string(breaker.chance.below(3000),
                                   static_cast<char>(breaker.chance.below(256)))
                     : breaker.chance.of(noise);
    }
    a_door(breaker)->garbage(bytes);
}

void refuse_links(Breaker& breaker)
{
    a_door(breaker)->refuse(some(breaker, 800));
}

void ignore_links(Breaker& breaker)
{
    a_door(breaker)->ignore(some(breaker, 800));
}

void drop_links(Breaker& breaker)
{
    tell(breaker, "drop now");
}

void drop_before_reply(Breaker& breaker)
{
    static const char* const commands[] = {"",
                                           "metadata_set",
                                           "download_metadata",
                                           "create_clip",
                                           "get_clip_info",
                                           "download_clipids",
                                           "channel_report_register",
                                           "watch_metadata_database",
                                           "modify_clip_attributes",
                                           "play"};
    tell(breaker, fmt::format("drop before-reply {}", breaker.chance.of(commands)));
}

void drop_after(Breaker& breaker)
{
    tell(breaker, fmt::format("drop after {}", 1 + breaker.chance.below(50)));
}

void split(Breaker& breaker)
{
    tell(breaker, fmt::format("split {}", 1 + breaker.chance.below(200)));
}

void delay(Breaker& breaker)
{
    tell(breaker, fmt::format("delay {}", breaker.chance.below(30)));
}

void refuse_command(Breaker& breaker)
{
    static const char* const commands[] = {
        "metadata_set",  "metadata_erase", "create_clip",    "download_clipids", "report_register",
        "get_clip_info", "stop",           "get_disk_usage", "download_metadata"};
    tell(breaker, fmt::format("refuse {}", breaker.chance.of(commands)));
}

void clear(Breaker& breaker)
{
    tell(breaker, "clear");
}

void kill_server(Breaker& breaker)
{
    breaker.simulator.kill_and_start();
}

constexpr Fault faults[] = {
    {"end of a stream", 12, cut<Cut::end_of_stream>},
    {"close", 8, cut<Cut::close>},
    {"reset", 8, cut<Cut::reset>},
    {"all links reset", 1, cut_all},
    {"stall", 8, stall},
    {"stall, then close", 4, stall_and_cut},
    {"trickle", 8, trickle},
    {"garbage", 8, garbage},
    {"nobody listens", 6, refuse_links},
    {"nobody reads", 6, ignore_links},
    {"the server drops all links", 2, drop_links},
    {"the server drops a link before a reply", 8, drop_before_reply},
    {"the server drops a link behind a message", 6, drop_after},
    {"the server writes in pieces", 3, split},
    {"the server is slow", 3, delay},
    {"the server refuses", 6, refuse_command},
    {"the server does well again", 12, clear},
    {"the server dies", 1, kill_server},
};

} // namespace

Breaker::Breaker(World& shared, Simulator& broken_server, std::uint64_t seed,
                 milliseconds mean_pause, Progress& told)
    : world(shared), simulator(broken_server), chance(seed, most_threads), mean(mean_pause),
      progress(told), thread([this] { run(); })
{
}

void Breaker::run()
{
    std::unique_lock guard(lock);
    while (!is_ending) {
        const auto pause = milliseconds(chance.below(static_cast<std::uint32_t>(2 * mean.count())));
        if (ending.wait_for(guard, pause, [this] { return is_ending; })) {
            return;
        }
        const Fault& fault = chance.weighted(faults);
        progress.begin(fault.name);
        guard.unlock();
        fault.happen(*this);
        ++faults_done;
        guard.lock();
    }
}

void Breaker::heal()
{
    {
        const std::lock_guard guard(lock);
        if (std::exchange(is_ending, true)) {
            return;
        }
    }
    ending.notify_all();
    thread.join();
    progress.end();
    tell(*this, "clear");
    // What the server has refused when a link came up is asked for again with the next link alone.
    for (const auto& connection : world.connections.all()) {
        connection->door->cut(Cut::end_of_stream);
        connection->door->heal();
    }
}

} // namespace stress
