#pragma once

#include "support/await.h"

#include <algorithm>
#include <condition_variable>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

// What happened, in order, on whatever thread.
class EventLog
{
public:
    void note(std::string event)
    {
        const std::lock_guard guard(lock);
        seen.push_back(std::move(event));
        more.notify_all();
    }

    // Waits until `event` has happened `times` times.
    void await(std::string_view event, std::ptrdiff_t times = 1)
    {
        std::unique_lock guard(lock);
        const auto has_come = [&] { return count_locked(event) >= times; };
        if (!more.wait_for(guard, hang_bound, has_come)) {
            report_hang(std::string(event).c_str());
        }
    }

    std::ptrdiff_t count(std::string_view event) const
    {
        const std::lock_guard guard(lock);
        return count_locked(event);
    }

    std::vector<std::string> all() const
    {
        const std::lock_guard guard(lock);
        return seen;
    }

private:
    std::ptrdiff_t count_locked(std::string_view event) const
    {
        return std::count(seen.begin(), seen.end(), event);
    }

    mutable std::mutex lock;
    std::condition_variable more;
    std::vector<std::string> seen; // under `lock`
};
