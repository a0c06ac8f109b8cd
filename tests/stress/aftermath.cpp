#include "stress/aftermath.h"

#include "stress/actions.h"

#include <fmt/format.h>

namespace stress
{

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace
{

constexpr auto patience = 60s; // only catches what never comes
constexpr std::uint32_t patience_ms = 60000;
constexpr Rule succeeds{bit(VELTO_RESULT_OK)};

using Table = std::map<std::string, std::string>;

std::shared_ptr<Connection> connection_number(World& world, std::size_t number)
{
    const auto all = world.connections.all();
    return all[number % all.size()];
}

// A link that is up when the faults end may still be lost to one of them: each has to work twice.
bool works_again(Actor& judge, const Connection& connection, Clock::time_point end)
{
    judge.run(NAMED(velto_synchronous), connection.handle, VELTO_COMMANDS_WAIT);
    int good = 0;
    while (good < 2 && Clock::now() < end) {
        judge.run(NAMED(velto_wait_until_connected), connection.handle);
        good += judge.call(NAMED(velto_cmd_stop1), command, connection, 0u) == VELTO_RESULT_OK;
    }
    return good == 2;
}

void wait_for_links(Actor& judge)
{
    const auto end = Clock::now() + patience;
    for (const auto& connection : judge.world.connections.all()) {
        judge.check(works_again(judge, *connection, end),
                    fmt::format("connection {} does not work again", connection->handle));
        judge.run(NAMED(velto_sync), connection->handle);
    }
}

// Whether the connection is told of the clip, before or behind whatever else it has not taken.
bool learns_of_clip(Actor& judge, const Connection& connection, const std::string& clip,
                    Clock::time_point end)
{
    while (Clock::now() < end) {
        TextOut name;
        judge.call(NAMED(velto_track_change_added_clip), succeeds, connection, name.buffer());
        if (name.text() == clip) {
            return true;
        }
        if (name.text().empty()) {
            std::this_thread::sleep_for(5ms);
        }
    }
    return false;
}

void check_changes(Actor& judge)
{
    const std::string clip = "end/" + std::to_string(judge.chance.below(1000000));
    const auto all = judge.world.connections.all();
    for (const auto& connection : all) {
        judge.call(NAMED(velto_track_clip_changes), succeeds, *connection);
    }
    judge.call(NAMED(velto_create_clip1), succeeds, *all.front(), units(clip).c_str(),
               VELTO_TRACK_ALL);
    const auto end = Clock::now() + patience;
    for (const auto& connection : all) {
        judge.check(learns_of_clip(judge, *connection, clip, end),
                    fmt::format("connection {} does not learn of a clip", connection->handle));
    }
}

std::set<std::string> clips_of(Actor& judge, const Connection& connection)
{
    Out<VeltoListHandle> handle;
    judge.call(NAMED(velto_open_clip_list), succeeds, connection, &handle.value);
    const Part list(handle.value, nullptr);
    std::set<std::string> clips;
    for (;;) {
        TextOut name;
        judge.call(NAMED(velto_get_clip_name), succeeds, list, name.buffer());
        if (name.text().empty()) {
            break;
        }
        clips.insert(name.text());
    }
    judge.run(NAMED(velto_close_clip_list), handle.value);
    return clips;
}

void check_clips(Actor& judge, const std::deque<Actor>& workers)
{
    const auto clips = clips_of(judge, *connection_number(judge.world, 0));
    judge.check(clips == clips_of(judge, *connection_number(judge.world, 1)),
                "two connections list different clips");
    for (const Actor& worker : workers) {
        for (std::uint32_t index = 0; index < own_clips; ++index) {
            const Existence known = worker.clips[index];
            const std::string clip = worker.own_clip(index);
            judge.check(known == Existence::unknown ||
                            clips.contains(clip) == (known == Existence::there),
                        "the clip '" + clip + "' is listed against what was done to it");
        }
    }
}

// All that a database holds, through a connection.
Table read_folder(Actor& judge, const std::shared_ptr<Connection>& connection,
                  const std::string& folder)
{
    const auto store = open_private_store(judge, connection, folder, "", VELTO_STORE_READ);
    judge.call(NAMED(velto_kvstore_wait_scan), succeeds, *store, patience_ms);
    Table table;
    for (;;) {
        Out<std::uint32_t> kind;
        TextOut key, value;
        if (judge.call(NAMED(velto_kvstore_get_change), wait_with_limit, *store, 0u, &kind.value,
                       key.buffer(), value.buffer()) != VELTO_RESULT_OK) {
            break;
        }
        table[key.text()] = value.text();
    }
    close_private_store(judge, store);
    return table;
}

// Through two connections, which have to see the same.
Table read_folder_twice(Actor& judge, const std::string& folder)
{
    Table table = read_folder(judge, connection_number(judge.world, 0), folder);
    judge.check(table == read_folder(judge, connection_number(judge.world, 1), folder),
                "two connections read different contents of " + folder);
    return table;
}

void flush_stores(Actor& judge)
{
    for (const auto& store : judge.world.stores.all()) {
        if (store->mode != VELTO_STORE_READ) {
            judge.call(NAMED(velto_kvstore_flush), succeeds, *store, patience_ms);
        }
    }
    read_folder_twice(judge, shared_folder);
}

// Whether a store that has been there through all faults is told of the value.
bool learns_of_value(Actor& judge, const Store& store, const std::string& key,
                     const std::string& wanted, Clock::time_point end)
{
    while (Clock::now() < end) {
        Out<std::uint32_t> kind;
        TextOut found, value;
        const VeltoResult result =
            judge.call(NAMED(velto_kvstore_get_change), wait_with_limit, store, 1000u, &kind.value,
                       found.buffer(), value.buffer());
        if (result == VELTO_RESULT_OK && found.text() == key && value.text() == wanted) {
            return true;
        }
    }
    return false;
}

void check_readers(Actor& judge)
{
    const auto writer = open_private_store(judge, connection_number(judge.world, 2), shared_folder,
                                           shared_prefix, VELTO_STORE_WRITE);
    const std::string key = "end";
    const std::string value = judge.new_value(key);
    judge.call(NAMED(velto_kvstore_set), succeeds, *writer, units(key).c_str(),
               units(value).c_str());
    const auto end = Clock::now() + patience;
    for (const auto& store : judge.world.stores.all()) {
        judge.check(store->mode == VELTO_STORE_WRITE ||
                        learns_of_value(judge, *store, key, value, end),
                    fmt::format("store {} does not learn of a write", store->handle));
    }
    close_private_store(judge, writer);
}

// Nothing that was confirmed is lost, and nothing is there that was not written.
void check_own_keys(Actor& judge, std::deque<Actor>& workers)
{
    const Table table = read_folder_twice(judge, own_folder);
    for (Actor& worker : workers) {
        for (const auto& [key, numbers] : worker.own_keys) {
            const auto entry = table.find(key);
            const auto found = entry == table.end() ? std::optional<std::uint64_t>(0)
                                                    : judge.number_of(key, entry->second);
            judge.check(found && *found >= numbers.confirmed && *found <= numbers.set,
                        fmt::format("'{}' holds '{}'; {} was confirmed, {} written last", key,
                                    entry == table.end() ? "" : entry->second, numbers.confirmed,
                                    numbers.set));
        }
    }
}

void check_new_writes(Actor& judge)
{
    const auto store = open_private_store(judge, connection_number(judge.world, 2), own_folder, "",
                                          VELTO_STORE_WRITE);
    Table written;
    for (std::uint32_t index = 0; index < 200; ++index) {
        const std::string key = own_key(judge.id, index);
        written[key] = judge.new_value(key);
        judge.call(NAMED(velto_kvstore_set), succeeds, *store, units(key).c_str(),
                   units(written[key]).c_str());
    }
    judge.call(NAMED(velto_kvstore_flush), succeeds, *store, patience_ms);
    const Table table = read_folder_twice(judge, own_folder);
    for (const auto& [key, value] : written) {
        const auto entry = table.find(key);
        judge.check(entry != table.end() && entry->second == value,
                    "what was written to '" + key + "' is not there");
    }
    close_private_store(judge, store);
}

void close_everything(Actor& judge)
{
    World& world = judge.world;
    while (world.lists.size() != 0) {
        close_list(judge);
    }
    while (world.records.size() != 0) {
        close_record(judge);
    }
    while (world.stores.size() != 0) {
        close_store(judge);
    }
    while (const auto connection = world.connections.take(judge.chance)) {
        close_and_forget(judge, connection);
        connection->door->retire();
    }
}

} // namespace

void check_aftermath(Actor& judge, std::deque<Actor>& workers)
{
    const auto step = [&judge](const char* name) { judge.progress.begin(name); };
    step("wait for all links");
    wait_for_links(judge);
    for (Actor& worker : workers) {
        step("close the workers' stores");
        worker.progress.begin("close the own store");
        close_own_store(worker);
        worker.progress.end();
    }
    step("flush the stores");
    flush_stores(judge);
    step("check the readers of the stores");
    check_readers(judge);
    step("check changes");
    check_changes(judge);
    step("check clips");
    check_clips(judge, workers);
    step("check the keys of the workers");
    check_own_keys(judge, workers);
    step("check new writes");
    check_new_writes(judge);
    step("close everything");
    close_everything(judge);
}

} // namespace stress
