#pragma once

#include "stress/actions.h"
#include "stress/aftermath.h"
#include "stress/breaker.h"
#include "stress/figures.h"

namespace stress
{

struct Options {
    std::uint64_t seed = 1;
    std::uint32_t seconds = 10;
    std::uint32_t threads = 12;
    std::uint32_t fault_ms = 100; // between two faults, on average; 0: none
    std::uint32_t patience = 120; // seconds without a step that are a deadlock
    std::string only;             // what the names of its actions contain
    bool print_actions = false;
    bool hangs = false; // one thread does, on purpose
    Limits limits;

    std::string to_text() const; // as it is written on the command line
};

// Threads that do what they like to connections that break, and the checks behind it.
class Run
{
public:
    explicit Run(const Options& wanted);
    ~Run();
    Run(const Run&) = delete;
    Run& operator=(const Run&) = delete;

    // Begins the actions and the faults.
    void begin();
    // Ends both, and holds what is left against the model.
    void finish();

    const Options options;
    Verdict verdict;
    Simulator simulator;
    Watchdog watchdog;
    Doors doors;
    World world;
    std::unique_ptr<Breaker> breaker;

private:
    void work(Actor& actor);
    void stop();
    void check_leftovers();

    Progress& own_progress;
    Actor judge;
    Figures at_start;
    const std::vector<Action> actions;
    std::atomic<bool> is_stopping{false};
    std::deque<Actor> workers;
    std::vector<std::thread> threads;
};

} // namespace stress
