#include "platform/faults.h"

#include <mutex>
#include <thread>
#include <vector>

namespace platform::faults
{

namespace
{

struct Armed {
    Fault fault;
    std::thread::id by;

    bool concerns(std::thread::id thread) const
    {
        return fault.threads == Threads::all ||
               (fault.threads == Threads::caller) == (thread == by);
    }
};

struct Queue {
    std::vector<Armed> faults;
    std::uint64_t struck = 0;
};

struct Table {
    Queue& of(Call call) { return queues[static_cast<std::size_t>(call)]; }

    std::mutex lock; // not one of the platform layer, whose calls come here
    std::array<Queue, call_names.size()> queues;
};

// Made by the first test that arms, and never destroyed.
Table& table()
{
    static Table* const made = new Table;
    return *made;
}

} // namespace

void arm(const Fault& fault)
{
    const std::lock_guard guard(table().lock);
    table().of(fault.call).faults.push_back({fault, std::this_thread::get_id()});
    any_armed.store(true, std::memory_order_relaxed);
}

void disarm_all()
{
    const std::lock_guard guard(table().lock);
    table().queues.fill({});
    any_armed.store(false, std::memory_order_relaxed);
}

std::uint64_t struck(Call call)
{
    const std::lock_guard guard(table().lock);
    return table().of(call).struck;
}

std::optional<Strike> next_strike(Call call)
{
    const std::lock_guard guard(table().lock);
    Queue& queue = table().of(call);
    for (Armed& armed : queue.faults) {
        Fault& fault = armed.fault;
        if (fault.times == 0 || !armed.concerns(std::this_thread::get_id())) {
            continue;
        }
        if (fault.behind != 0) {
            --fault.behind;
            return std::nullopt;
        }
        if (fault.times != for_good) {
            --fault.times;
        }
        ++queue.struck;
        return Strike{fault.effect, fault.bytes};
    }
    return std::nullopt;
}

} // namespace platform::faults
