#pragma once

#include "connection/velto.h"
#include "foundation/athread.h"

#include <list>
#include <unordered_set>

enum KVStoreMode : std::int32_t {
    kv_read = 1,
    kv_read_write = 2,
    kv_write = 3,
};

// One prefix of a metadata database of the server, a folder. Changes come down as a queue that the
// application drains; its writes go up through a thread of the store, which sends one at a time and
// never gives one up. The store holds no values but those on their way.
//
// Thread: any, but for on_metadata and on_metadata_removed, which run where a message is
// dispatched. Locks: `changes_lock` and `pending.lock`, never both, and neither across a call into
// the connection. on_metadata takes changes_lock with the connection's `watches` held; whoever has
// changes_lock takes nothing further. So a worker that delivers a change never waits for a server.
class KVStore
{
public:
    // A mode that reads registers with the connection, one that writes starts the writer.
    KVStore(const ARef<VeltoConnObject>& owner, const std::u16string& database,
            const std::u16string& key_prefix, std::int32_t store_mode);
    KVStore(const KVStore&) = delete;
    KVStore& operator=(const KVStore&) = delete;

    // Once, before the store dies: leaves the connection's tables, gives the writer two seconds to
    // get rid of what is pending, and ends it. A writer that waits for a reply holds this up for
    // as long as it does so. Operations of other threads go on undisturbed.
    void close();

    VeltoResult set(const std::u16string& key, const std::u16string& value);
    VeltoResult erase(const std::u16string& key);
    VeltoResult flush(std::uint32_t timeout_ms);
    VeltoResult get_change(std::uint32_t timeout_ms, std::uint32_t* kind, VeltoTextBuffer key,
                           VeltoTextBuffer value);
    // In any mode: what another store of the connection scans counts too.
    VeltoResult wait_scan(std::uint32_t timeout_ms);

    void on_metadata(const AString& report_prefix, const std::vector<ZAVL3::Metadata>& list);
    void on_metadata_removed(const AString& report_prefix, const std::vector<AString>& list);

protected:
    struct Change {
        std::uint32_t kind = 0; // 0: there is none, against all expectation
        std::u16string key;
        std::u16string value;
    };

    // The write side. Keys are whole here, prefix included; each is in one of the tables at most.
    // The writer waits on `wake`, who waits for it on `drained`.
    struct Pending {
        bool is_empty() const { return kv_set.empty() && kv_erase.empty(); }

        std::mutex lock; // guards all of this
        std::unique_ptr<AThread> thread;
        std::condition_variable wake;
        std::unordered_map<std::u16string, std::u16string> kv_set; // not confirmed yet
        std::unordered_set<std::u16string> kv_erase;               // not confirmed yet
        bool quit = false;
        std::condition_variable drained;
        bool finished = false;
    };

    bool reads() const { return mode != kv_write; }
    bool writes() const { return mode != kv_read; }

    bool cut_prefix(std::u16string& key) const;
    std::list<std::u16string> new_place(const std::u16string& key) const;
    Change take_oldest();

    void start_writer();
    void stop_writer();
    bool wait_drained(std::uint32_t timeout_ms);
    // The writer. All are entered and left with pending.lock held, and let it go meanwhile.
    void run_writer();
    void send_first(std::unique_lock<std::mutex>& guard);
    void pause(std::unique_lock<std::mutex>& guard);
    void send_first_set(std::unique_lock<std::mutex>& guard);
    void send_first_erase(std::unique_lock<std::mutex>& guard);
    template <typename Write>
    bool is_confirmed(std::unique_lock<std::mutex>& guard, Write write);

    const ARef<VeltoConnObject> connection; // outlives the store, closed or not
    const std::u16string folder;
    const std::u16string prefix;
    const std::int32_t mode;

    // The read side. Keys have no prefix here; each is in changes_order, once, exactly when it is
    // in one of the tables.
    std::mutex changes_lock; // guards the next four
    std::condition_variable changes_ready;
    std::list<std::u16string> changes_order;
    std::unordered_map<std::u16string, std::u16string> changes_set;
    std::unordered_set<std::u16string> changes_erase;

    Pending pending;
};
