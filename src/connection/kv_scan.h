#pragma once

#include "foundation/astring.h"
#include "protocol/zavl3_types.h"

#include <condition_variable>
#include <cstdint>
#include <memory>
#include <mutex>
#include <string>
#include <unordered_map>

// The downloads of one folder. Several may be under way at once; the one that ends last decides how
// the scan has gone.
//
// Thread: a download ends on the worker, or where it is issued with the link down; any waits.
// Locks: `lock`, a leaf.
struct KVScan {
    // Counts one more download. `record` is this one.
    void begin(const std::shared_ptr<KVScan>& record);
    void scan_end(bool ok);
    // Waits until no download is under way and the last one has ended well.
    bool wait(std::uint32_t timeout_ms);

    void ok_delegate() { scan_end(true); }
    void error_delegate(AString, ZAVL3::ErrorCode) { scan_end(false); }

    std::mutex lock;
    std::condition_variable finished;
    std::uint32_t scans_in_process = 0; // guarded by lock
    bool scan_ok = false;               // guarded by lock
    std::shared_ptr<KVScan> self;       // guarded by lock; while delegates point here
};

// The scans of a connection by folder. They stay until the connection goes.
struct KVScans {
    KVScans() = default;
    KVScans(const KVScans&) = delete;
    KVScans& operator=(const KVScans&) = delete;
    // Commands that are outstanding now never end, and so never let go of their records.
    ~KVScans();

    std::unordered_map<std::u16string, std::shared_ptr<KVScan>> byFolder;
};
