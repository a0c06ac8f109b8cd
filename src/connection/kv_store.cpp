#include "connection/kv_store.h"

#include "connection/text.h"

#include <chrono>

using namespace std::chrono_literals;

namespace
{
constexpr auto retry_pause = 200ms;
constexpr std::uint32_t last_flush_ms = 2000;
constexpr auto finish_limit = 10s;

std::chrono::steady_clock::time_point after(std::uint32_t timeout_ms)
{
    return std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
}
} // namespace

KVStore::KVStore(const ARef<VeltoConnObject>& owner, const std::u16string& database,
                 const std::u16string& key_prefix, std::int32_t store_mode)
    : connection(owner), folder(database), prefix(key_prefix), mode(store_mode)
{
    if (reads()) {
        connection->register_store(this, folder);
    }
    if (writes()) {
        start_writer();
    }
}

void KVStore::close()
{
    if (reads()) {
        connection->unregister_store(this);
    }
    if (writes()) {
        stop_writer();
    }
}

// ---- Changes, on their way down.

// False for a key that is none of this store's, and for the one that equals the prefix.
bool KVStore::cut_prefix(std::u16string& key) const
{
    if (key.size() <= prefix.size() || !key.starts_with(prefix)) {
        return false;
    }
    key.erase(0, prefix.size());
    return true;
}

// The entry of a key for changes_order; none for a key that has its place there. Made before the
// tables are touched: memory that is exhausted must not leave a change behind that has no place.
std::list<std::u16string> KVStore::new_place(const std::u16string& key) const
{
    std::list<std::u16string> place;
    if (!changes_set.contains(key) && !changes_erase.contains(key)) {
        place.push_back(key);
    }
    return place;
}

void KVStore::on_metadata(const AString& report_prefix, const std::vector<ZAVL3::Metadata>& list)
{
    const std::u16string first_part = report_prefix.to_wide();
    bool is_news = false;
    const std::lock_guard guard(changes_lock);
    for (const ZAVL3::Metadata& entry : list) {
        std::u16string key = first_part + entry.get<"Key">().to_wide();
        if (!cut_prefix(key)) {
            continue;
        }
        std::list<std::u16string> place = new_place(key);
        changes_set.insert_or_assign(key, entry.get<"Value">().to_wide());
        changes_erase.erase(key);
        is_news = is_news || !place.empty();
        changes_order.splice(changes_order.end(), place);
    }
    if (is_news) {
        changes_ready.notify_all();
    }
}

void KVStore::on_metadata_removed(const AString& report_prefix, const std::vector<AString>& list)
{
    const std::u16string first_part = report_prefix.to_wide();
    bool is_news = false;
    const std::lock_guard guard(changes_lock);
    for (const AString& entry : list) {
        std::u16string key = first_part + entry.to_wide();
        if (!cut_prefix(key)) {
            continue;
        }
        std::list<std::u16string> place = new_place(key);
        changes_erase.insert(key);
        changes_set.erase(key);
        is_news = is_news || !place.empty();
        changes_order.splice(changes_order.end(), place);
    }
    if (is_news) {
        changes_ready.notify_all();
    }
}

// Locks: changes_lock is held.
KVStore::Change KVStore::take_oldest()
{
    if (changes_order.empty()) {
        A_REPORT("kv_store", "!changes_order.empty ()");
        return {};
    }
    if (changes_set.empty() && changes_erase.empty()) {
        A_REPORT("kv_store", "!(changes_set.empty () && changes_erase.empty ())");
        return {};
    }
    Change change;
    change.key = std::move(changes_order.front());
    changes_order.pop_front();
    if (const auto set_there = changes_set.find(change.key); set_there != changes_set.end()) {
        change.kind = VELTO_STORE_CHANGE_SET;
        change.value = std::move(set_there->second);
        changes_set.erase(set_there);
    } else if (changes_erase.erase(change.key) != 0) {
        change.kind = VELTO_STORE_CHANGE_ERASED;
    }
    return change;
}

VeltoResult KVStore::get_change(std::uint32_t timeout_ms, std::uint32_t* kind, VeltoTextBuffer key,
                                VeltoTextBuffer value)
{
    if (!reads()) {
        return result_write_only();
    }
    Change change;
    {
        std::unique_lock guard(changes_lock);
        if (!changes_ready.wait_until(guard, after(timeout_ms),
                                      [this] { return !changes_order.empty(); })) {
            return result_timeout();
        }
        change = take_oldest();
    }
    if (change.kind == 0) {
        return VELTO_RESULT_FAILED; // its text is not recorded: the tables contradict each other
    }
    *kind = change.kind;
    copy_text(change.key, key);
    copy_text(change.value, value);
    return result_ok();
}

VeltoResult KVStore::wait_scan(std::uint32_t timeout_ms)
{
    return connection->wait_scan(folder, timeout_ms) ? result_ok() : result_timeout();
}

// ---- Writes, on their way up.

// The writer is woken only after the lock is free, so that it does not meet it.
VeltoResult KVStore::set(const std::u16string& key, const std::u16string& value)
{
    if (!writes()) {
        return result_read_only();
    }
    const std::u16string full_key = prefix + key;
    {
        const std::lock_guard guard(pending.lock);
        pending.kv_erase.erase(full_key);
        pending.kv_set.insert_or_assign(full_key, value);
    }
    pending.wake.notify_all();
    return result_ok();
}

VeltoResult KVStore::erase(const std::u16string& key)
{
    if (!writes()) {
        return result_read_only();
    }
    const std::u16string full_key = prefix + key;
    {
        const std::lock_guard guard(pending.lock);
        pending.kv_set.erase(full_key);
        pending.kv_erase.insert(full_key);
    }
    pending.wake.notify_all();
    return result_ok();
}

VeltoResult KVStore::flush(std::uint32_t timeout_ms)
{
    if (!writes()) {
        return result_read_only();
    }
    return wait_drained(timeout_ms) ? result_ok() : result_timeout();
}

bool KVStore::wait_drained(std::uint32_t timeout_ms)
{
    std::unique_lock guard(pending.lock);
    return pending.drained.wait_until(guard, after(timeout_ms),
                                      [this] { return pending.finished || pending.is_empty(); });
}

// Without its writer, when the system refuses it, a store keeps its writes to itself:
// flushing it times out.
void KVStore::start_writer()
{
    std::unique_ptr<AThread> thread(new (std::nothrow) AThread);
    const std::lock_guard guard(pending.lock);
    const auto run = [](void* store) { static_cast<KVStore*>(store)->run_writer(); };
    if (A_CHECK("kv_store", thread != nullptr && thread->start(run, this))) {
        pending.thread = std::move(thread);
    }
}

// The writer that has set `finished` has let the lock go for the last time, so that it can be
// waited for under the lock. One that is still in a call, which may take for ever, needs the lock.
void KVStore::stop_writer()
{
    wait_drained(last_flush_ms);
    std::unique_lock guard(pending.lock);
    pending.quit = true;
    if (!pending.thread) {
        return;
    }
    pending.wake.notify_all();
    if (!pending.drained.wait_for(guard, finish_limit, [this] { return pending.finished; })) {
        guard.unlock();
    }
    pending.thread->join();
}

void KVStore::run_writer()
{
    std::unique_lock guard(pending.lock);
    while (!pending.quit) {
        if (pending.is_empty()) {
            pending.wake.wait(guard);
            continue;
        }
        try {
            send_first(guard);
        } catch (const std::exception&) { // memory is exhausted: a failure like any other
            if (!guard.owns_lock()) {
                guard.lock();
            }
            pause(guard);
        }
        if (pending.is_empty()) {
            pending.drained.notify_all();
        }
    }
    pending.finished = true;
    pending.drained.notify_all();
}

void KVStore::send_first(std::unique_lock<std::mutex>& guard)
{
    if (!pending.kv_set.empty()) {
        send_first_set(guard);
    } else {
        send_first_erase(guard);
    }
}

// A key that is set to another value meanwhile stays, to be sent once more; one that is erased
// meanwhile has left the table already.
void KVStore::send_first_set(std::unique_lock<std::mutex>& guard)
{
    const auto it = pending.kv_set.cbegin();
    if (it == pending.kv_set.cend()) {
        A_REPORT("kv_store", "it != pending.kv_set.cend ()");
        return;
    }
    const std::u16string key = it->first;
    const std::u16string value = it->second;
    if (!is_confirmed(
            guard, [&] { return VeltoConnObject::metadata_set(connection, folder, key, value); })) {
        return;
    }
    const auto sent = pending.kv_set.find(key);
    if (sent != pending.kv_set.end() && sent->second == value) {
        pending.kv_set.erase(sent);
    }
}

void KVStore::send_first_erase(std::unique_lock<std::mutex>& guard)
{
    const auto it = pending.kv_erase.cbegin();
    if (it == pending.kv_erase.cend()) {
        A_REPORT("kv_store", "it != pending.kv_erase.cend ()");
        return;
    }
    const std::u16string key = *it;
    if (is_confirmed(guard,
                     [&] { return VeltoConnObject::metadata_erase(connection, folder, key); })) {
        pending.kv_erase.erase(key);
    }
}

// New writes wake the wait, but only closing ends it early.
void KVStore::pause(std::unique_lock<std::mutex>& guard)
{
    pending.wake.wait_for(guard, retry_pause, [this] { return pending.quit; });
}

template <typename Write>
bool KVStore::is_confirmed(std::unique_lock<std::mutex>& guard, Write write)
{
    guard.unlock();
    const bool good = write() == VELTO_RESULT_OK;
    guard.lock();
    if (!good) {
        pause(guard);
    }
    return good;
}
