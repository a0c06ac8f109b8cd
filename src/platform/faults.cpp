#include "platform/faults.h"

#include <mutex>
#include <thread>

namespace platform::faults
{

namespace
{

struct Armed {
    Fault fault{.call = {}, .times = 0};
    std::thread::id by;
    std::uint64_t struck = 0;

    bool concerns(std::thread::id thread) const
    {
        return fault.threads == Threads::all ||
               (fault.threads == Threads::caller) == (thread == by);
    }
};

struct Table {
    Armed& of(Call call) { return entries[static_cast<std::size_t>(call)]; }

    std::mutex lock; // not one of the platform layer, whose calls come here
    std::array<Armed, call_names.size()> entries{};
};

// Made by the first test that arms.
Table& table()
{
    static Table made;
    return made;
}

} // namespace

void arm(const Fault& fault)
{
    const std::lock_guard guard(table().lock);
    table().of(fault.call) = {fault, std::this_thread::get_id()};
    any_armed.store(true, std::memory_order_relaxed);
}

void disarm_all()
{
    const std::lock_guard guard(table().lock);
    table().entries.fill({});
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
    Armed& armed = table().of(call);
    Fault& fault = armed.fault;
    if (fault.times == 0 || !armed.concerns(std::this_thread::get_id())) {
        return std::nullopt;
    }
    if (fault.behind != 0) {
        --fault.behind;
        return std::nullopt;
    }
    if (fault.times != for_good) {
        --fault.times;
    }
    ++armed.struck;
    return Strike{fault.effect, fault.bytes};
}

} // namespace platform::faults
