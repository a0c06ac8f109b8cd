#pragma once

#include "stress/chance.h"
#include "stress/door.h"
#include "stress/simulator.h"
#include "stress/verdict.h"
#include "velto/velto.h"

#include <array>
#include <deque>
#include <memory>
#include <mutex>
#include <set>
#include <string>

namespace stress
{

// What a handle stands for, as the model knows it. `closing` comes before the call that closes it
// and `closed` after it, so that what other threads may see is known exactly.
struct Thing {
    explicit Thing(std::uint32_t number) : handle(number) {}

    const std::uint32_t handle;
    std::atomic<bool> closing{false};
    std::atomic<bool> closed{false};
};

// Nobody in the harness uses a connection any more when this goes; nor does the library then, but
// for commands that were not waited for. These end with the door.
struct Connection : Thing {
    Connection(std::uint32_t number, std::shared_ptr<Door> way, bool is_async)
        : Thing(number), door(std::move(way)), may_not_wait(is_async)
    {
    }
    ~Connection()
    {
        if (door) {
            door->retire();
        }
    }

    const std::shared_ptr<Door> door;
    const bool may_not_wait; // velto_synchronous is called on it
    std::atomic<bool> tracks_clips{false};
};

// A thing that was got from a connection.
struct Part : Thing {
    Part(std::uint32_t number, std::shared_ptr<Connection> parent)
        : Thing(number), connection(std::move(parent))
    {
    }

    const std::shared_ptr<Connection> connection;
};

struct Record : Part {
    using Part::Part;

    std::string clip;
};

struct Store : Part {
    using Part::Part;

    std::uint32_t mode = VELTO_STORE_READ;
};

// Things that all threads use at once, and some that are closed.
template <typename Kind>
class Pool
{
public:
    void add(std::shared_ptr<Kind> thing)
    {
        const std::lock_guard guard(lock);
        things.push_back(std::move(thing));
    }
    // Null when there is none. Now and then one that is closed.
    std::shared_ptr<Kind> pick(Chance& chance)
    {
        const std::lock_guard guard(lock);
        if (!stale.empty() && chance.one_in(24)) {
            return chance.of(stale);
        }
        return things.empty() ? nullptr : chance.of(things);
    }
    // Null when there would be fewer than that.
    std::shared_ptr<Kind> take(Chance& chance, std::size_t fewest = 0)
    {
        const std::lock_guard guard(lock);
        if (things.size() <= fewest) {
            return nullptr;
        }
        const auto chosen =
            things.begin() + chance.below(static_cast<std::uint32_t>(things.size()));
        std::shared_ptr<Kind> thing = std::move(*chosen);
        things.erase(chosen);
        return thing;
    }
    // As a number that is stale for good, without what the thing kept alive.
    template <typename... Arguments>
    void retire(Arguments... arguments)
    {
        auto closed = std::make_shared<Kind>(arguments...);
        closed->closing = closed->closed = true;
        remember(std::move(closed));
    }
    void remember(std::shared_ptr<Kind> closed)
    {
        const std::lock_guard guard(lock);
        stale.push_back(std::move(closed));
        if (stale.size() > most_stale) {
            stale.pop_front();
        }
    }
    std::vector<std::shared_ptr<Kind>> all()
    {
        const std::lock_guard guard(lock);
        return things;
    }
    std::size_t size()
    {
        const std::lock_guard guard(lock);
        return things.size();
    }

private:
    static constexpr std::size_t most_stale = 8;

    std::mutex lock;
    std::vector<std::shared_ptr<Kind>> things;
    std::deque<std::shared_ptr<Kind>> stale;
};

constexpr std::uint32_t most_threads = 64;

struct Limits {
    std::size_t connections = 8;
    std::size_t fewest_connections = 4;
    std::size_t records = 12;
    std::size_t lists = 8;
    std::size_t stores = 10;
    std::uint32_t hot_closes = 300;
};

// All that the threads of a run share.
class World
{
public:
    World(Doors& all_doors, Verdict& run_verdict, const Limits& most)
        : doors(all_doors), verdict(run_verdict), limits(most), hot_closes_left(most.hot_closes)
    {
    }

    // Up to a number that the run allows, connections are closed while their link is up: the
    // library leaves that link's descriptor open for good.
    bool may_close_hot(Chance& chance);

    Doors& doors;
    Verdict& verdict;
    const Limits limits;

    Pool<Connection> connections;
    Pool<Record> records;
    Pool<Part> lists;
    Pool<Store> stores;

    std::set<std::string> first_clips; // there from the start, for good
    // The latest number that a thread has written, before it is written.
    std::array<std::atomic<std::uint64_t>, most_threads> issued{};

    std::atomic<std::uint64_t> calls{0};
    std::array<std::atomic<std::uint64_t>, VELTO_RESULT_WRITE_ONLY + 1> results{};
    std::atomic<std::uint64_t> notices{0};
    std::atomic<std::uint64_t> changes{0};
    std::atomic<std::uint64_t> opened{0};  // connections
    std::atomic<std::uint64_t> writers{0}; // stores that had a thread of their own

private:
    std::atomic<std::uint32_t> hot_closes_left;
};

} // namespace stress
