#pragma once

#include "foundation/amutex.h"
#include "foundation/no_destructor.h"
#include "velto/velto.h"

#include <atomic>
#include <map>
#include <optional>

// The one counter of connections, lists and clip records; never gives 0.
VeltoHandle next_handle();
extern std::atomic<std::uint32_t> last_handle;

struct SharedCounter {
    static VeltoHandle next() { return next_handle(); }
};

// One that a table has for itself: its first handle is 1.
struct OwnCounter {
    VeltoHandle next();

    std::atomic<std::uint32_t> last{0};
};

// From handles to values, which are handed out as copies. Numbers rise, and that of a live entry is
// never given out again.
//
// Thread: any. Locks: `lock` guards the table; no pointer into it leaves the lock.
template <typename Value, typename Counter = SharedCounter>
class HandleTable
{
public:
    VeltoHandle add(const Value& value)
    {
        for (;;) {
            const VeltoHandle handle = counter.next();
            const AMutexLock guard(&lock);
            if (entries.try_emplace(handle, value).second) {
                return handle;
            }
        }
    }

    std::optional<Value> find(VeltoHandle handle)
    {
        const AMutexLock guard(&lock);
        const auto found = entries.find(handle);
        return found == entries.end() ? std::nullopt : std::optional<Value>(found->second);
    }

    // Calls `change` with the value itself, under the lock; false for an unknown handle.
    template <typename Change>
    bool change(VeltoHandle handle, Change change)
    {
        const AMutexLock guard(&lock);
        const auto found = entries.find(handle);
        if (found == entries.end()) {
            return false;
        }
        change(found->second);
        return true;
    }

    // An unknown handle is ignored. The value can die here, under the lock.
    void remove(VeltoHandle handle)
    {
        const AMutexLock guard(&lock);
        entries.erase(handle);
    }

    // The same, giving the value, which then dies with the caller and not under the lock.
    std::optional<Value> take(VeltoHandle handle)
    {
        const AMutexLock guard(&lock);
        const auto entry = entries.extract(handle);
        return entry.empty() ? std::nullopt : std::optional<Value>(entry.mapped());
    }

    Counter counter;

private:
    AMutex lock;
    std::map<VeltoHandle, Value> entries;
};

// The table of its kind for the process: made at first use, by whichever thread comes first, and
// never destroyed.
template <typename Table>
Table& process_table()
{
    static NoDestructor<Table> table;
    return *table;
}
