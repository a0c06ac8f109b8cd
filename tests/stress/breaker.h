#pragma once

#include "stress/watchdog.h"
#include "stress/world.h"

namespace stress
{

// Breaks links, and what goes over them, at random.
class Breaker
{
public:
    Breaker(World& shared, Simulator& broken_server, std::uint64_t seed,
            std::chrono::milliseconds mean_pause, Progress& told);
    Breaker(const Breaker&) = delete;
    Breaker& operator=(const Breaker&) = delete;
    ~Breaker() { heal(); }

    // Ends the faults: all links come up again.
    void heal();

    World& world;
    Simulator& simulator;
    Chance chance;
    std::atomic<std::uint64_t> faults_done{0};

private:
    void run();

    const std::chrono::milliseconds mean;
    Progress& progress;
    std::mutex lock;
    std::condition_variable ending;
    bool is_ending = false;
    std::thread thread;
};

} // namespace stress
