#include "stress/actions.h"

#include <fmt/format.h>

namespace stress
{

namespace
{

constexpr std::uint32_t shared_keys = 24;

struct Change {
    VeltoResult result;
    std::uint32_t kind;
    std::string key;
    std::string value;
};

bool reads(const Store& store)
{
    return store.mode != VELTO_STORE_WRITE;
}

bool writes(const Store& store)
{
    return store.mode != VELTO_STORE_READ;
}

Rule read_rule(const Store& store, const Rule& if_readable)
{
    return reads(store) ? if_readable : Rule{bit(VELTO_RESULT_WRITE_ONLY)};
}

Rule write_rule(const Store& store, const Rule& if_writable)
{
    return writes(store) ? if_writable : Rule{bit(VELTO_RESULT_READ_ONLY)};
}

Change take_change(Actor& actor, const Store& store, std::uint32_t timeout_ms)
{
    Out<std::uint32_t> kind;
    TextOut key, value;
    const VeltoResult result =
        actor.call(NAMED(velto_kvstore_get_change), read_rule(store, wait_with_limit), store,
                   timeout_ms, &kind.value, key.buffer(), value.buffer());
    if (result != VELTO_RESULT_OK) {
        actor.check(kind.is_untouched() && key.is_untouched() && value.is_untouched(),
                    "a change is written on failure");
        return {result, 0, "", ""};
    }
    ++actor.world.changes;
    actor.check(kind.value == VELTO_STORE_CHANGE_SET || kind.value == VELTO_STORE_CHANGE_ERASED,
                "there is no such change");
    actor.check(kind.value == VELTO_STORE_CHANGE_SET || value.text().empty(),
                "an erased key has a value");
    return {result, kind.value, key.text(), value.text()};
}

void check_change(Actor& actor, const Store& store)
{
    const Change change = take_change(actor, store, actor.chance.below(8));
    actor.check(change.kind != VELTO_STORE_CHANGE_SET || actor.number_of(change.key, change.value),
                fmt::format("nobody has written '{}' to '{}'", change.value, change.key));
}

void set_shared_key(Actor& actor, const Store& store)
{
    const std::string key = fmt::format("k{}", actor.chance.below(shared_keys));
    const Rule rule = write_rule(store, never_fails);
    if (actor.chance.one_in(4)) {
        actor.call(NAMED(velto_kvstore_erase), rule, store, units(key).c_str());
    } else {
        actor.call(NAMED(velto_kvstore_set), rule, store, units(key).c_str(),
                   units(actor.new_value(key)).c_str());
    }
}

void refuse_bad_mode(Actor& actor, const Connection& connection)
{
    Out<VeltoStoreHandle> handle;
    actor.call(NAMED(velto_open_kvstore), Rule{bit(VELTO_RESULT_INVALID_ARGUMENT)}, connection,
               units(shared_folder).c_str(), units(shared_prefix).c_str(),
               4 + actor.chance.below(1000), &handle.value);
    actor.check(handle.is_untouched(), "a store is written on failure");
}

} // namespace

std::string own_key(std::uint32_t thread, std::uint32_t index)
{
    return fmt::format("t{}/{}", thread, index);
}

std::shared_ptr<Store> open_private_store(Actor& actor,
                                          const std::shared_ptr<Connection>& connection,
                                          const std::string& in_folder,
                                          const std::string& key_prefix, std::uint32_t mode)
{
    Out<VeltoStoreHandle> handle;
    const VeltoResult result =
        actor.call(NAMED(velto_open_kvstore), never_fails, *connection, units(in_folder).c_str(),
                   units(key_prefix).c_str(), mode, &handle.value);
    if (result != VELTO_RESULT_OK) {
        actor.check(handle.is_untouched(), "a store is written on failure");
        return nullptr;
    }
    auto store = std::make_shared<Store>(handle.value, connection);
    store->mode = mode;
    actor.world.writers += writes(*store) ? 1 : 0;
    return store;
}

// The last store of a connection that was closed takes the connection along.
void close_private_store(Actor& actor, const std::shared_ptr<Store>& store)
{
    const auto& connection = store->connection;
    const bool takes_connection = connection->closing && !actor.world.may_close_hot(actor.chance);
    if (takes_connection) {
        connection->door->shut();
    }
    store->closing = true;
    actor.run(NAMED(velto_close_key_value_store), store->handle);
    store->closed = true;
    if (takes_connection) {
        connection->door->open();
    }
    actor.call(NAMED(velto_kvstore_wait_scan), never_fails, *store, 0u);
}

void open_store(Actor& actor)
{
    const auto connection = actor.a_connection();
    if (!connection || actor.world.stores.size() >= actor.world.limits.stores) {
        return;
    }
    if (actor.chance.one_in(8)) {
        return refuse_bad_mode(actor, *connection);
    }
    if (const auto store = open_private_store(actor, connection, shared_folder, shared_prefix,
                                              1 + actor.chance.below(3))) {
        actor.world.stores.add(store);
    }
}

void close_store(Actor& actor)
{
    const auto store = actor.world.stores.take(actor.chance);
    if (!store) {
        return;
    }
    close_private_store(actor, store);
    actor.world.stores.retire(store->handle, nullptr);
}

void use_store(Actor& actor)
{
    const auto store = actor.a_store();
    for (int i = 0; store && i < 6; ++i) {
        switch (actor.chance.below(8)) {
        case 0:
            actor.call(NAMED(velto_kvstore_flush), write_rule(*store, wait_with_limit), *store,
                       actor.chance.below(30));
            break;
        case 1:
            actor.call(NAMED(velto_kvstore_wait_scan), wait_with_limit, *store,
                       actor.chance.below(30));
            break;
        case 2:
        case 3:
        case 4:
            set_shared_key(actor, *store);
            break;
        default:
            check_change(actor, *store);
        }
    }
}

void write_own_keys(Actor& actor)
{
    if (!actor.own_store) {
        const auto connection = actor.a_waiting_connection();
        actor.own_store =
            connection ? open_private_store(actor, connection, own_folder, "", VELTO_STORE_WRITE)
                       : nullptr;
    }
    if (!actor.own_store) {
        return;
    }
    for (int i = 0; i < 4; ++i) {
        const std::string key = own_key(actor.id, actor.chance.below(own_key_count));
        const std::string value = actor.new_value(key);
        OwnKey& own = actor.own_keys[key];
        own.set = actor.world.issued[actor.id];
        own.is_of_this_store = true;
        actor.call(NAMED(velto_kvstore_set), never_fails, *actor.own_store, units(key).c_str(),
                   units(value).c_str());
    }
    if (actor.call(NAMED(velto_kvstore_flush), wait_with_limit, *actor.own_store,
                   actor.chance.below(200)) == VELTO_RESULT_OK) {
        for (auto& [key, numbers] : actor.own_keys) {
            numbers.confirmed = numbers.is_of_this_store ? numbers.set : numbers.confirmed;
        }
    }
}

// What it has not confirmed by then is lost, or was obeyed without a word.
void close_own_store(Actor& actor)
{
    if (actor.own_store) {
        close_private_store(actor, actor.own_store);
        actor.own_store = nullptr;
        for (auto& [key, numbers] : actor.own_keys) {
            numbers.is_of_this_store = false;
        }
    }
}

// A key with one writer never goes back, in one reader.
void follow_own_keys(Actor& actor)
{
    const auto connection = actor.a_connection();
    if (!connection) {
        return;
    }
    const auto store = open_private_store(actor, connection, own_folder, "", VELTO_STORE_READ);
    if (!store) {
        return;
    }
    std::map<std::string, std::uint64_t> seen;
    for (std::uint32_t left = actor.chance.below(200); left != 0; --left) {
        const Change change = take_change(actor, *store, 20);
        if (change.result != VELTO_RESULT_OK) {
            break;
        }
        const auto number = actor.number_of(change.key, change.value);
        actor.check(number.has_value(),
                    fmt::format("nobody has written '{}' to '{}'", change.value, change.key));
        std::uint64_t& last = seen[change.key];
        actor.check(!number || *number >= last, fmt::format("'{}' goes back from {} to {}",
                                                            change.key, last, number.value_or(0)));
        last = number.value_or(last);
    }
    close_private_store(actor, store);
}

} // namespace stress
