#pragma once

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstdint>
#include <deque>
#include <functional>
#include <mutex>
#include <string>
#include <thread>

namespace stress
{

// Where a thread is. It marks every step that it makes.
struct Progress {
    explicit Progress(std::string name) : thread(std::move(name)) {}

    void begin(const char* next_action)
    {
        is_idle = false;
        action = next_action;
        step("");
    }
    void step(const char* next_call)
    {
        call = next_call;
        ++steps;
    }
    // Until it begins the next, if it ever does.
    void end() { is_idle = true; }

    const std::string thread;
    std::atomic<const char*> action{""};
    std::atomic<const char*> call{""};
    std::atomic<std::uint64_t> steps{0};
    std::atomic<bool> is_idle{false};
};

// Ends the process, with the stacks of all threads, when a thread has not made a step for so long.
class Watchdog
{
public:
    // `farewell` is printed and `clean_up` called last.
    Watchdog(std::chrono::seconds longest, std::string farewell, std::function<void()> clean_up);
    Watchdog(const Watchdog&) = delete;
    Watchdog& operator=(const Watchdog&) = delete;
    ~Watchdog();

    Progress& watch(const std::string& thread);

private:
    using Clock = std::chrono::steady_clock;
    struct Watched {
        explicit Watched(const std::string& name) : progress(name) {}

        Progress progress;
        std::uint64_t seen = 0;
        Clock::time_point moved = Clock::now();
    };

    void run();
    void look();
    [[noreturn]] void bite(const Watched& stuck);

    const std::chrono::seconds patience;
    const std::string last_words;
    const std::function<void()> last_act;
    std::mutex lock;
    std::condition_variable ending;
    bool is_ending = false;
    std::deque<Watched> watched;
    std::thread thread;
};

} // namespace stress
