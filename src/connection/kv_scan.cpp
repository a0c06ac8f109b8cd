#include "connection/kv_scan.h"

#include "foundation/aassert.h"

#include <chrono>

void KVScan::begin(const std::shared_ptr<KVScan>& record)
{
    const std::lock_guard guard(lock);
    ++scans_in_process;
    if (!self) {
        self = record;
    }
}

void KVScan::scan_end(bool ok)
{
    std::shared_ptr<KVScan> held; // goes after the guard
    const std::lock_guard guard(lock);
    if (!A_CHECK("velto", scans_in_process > 0)) {
        return;
    }
    if (--scans_in_process == 0) {
        scan_ok = ok;
        finished.notify_all();
        held = std::move(self);
    }
}

bool KVScan::wait(std::uint32_t timeout_ms)
{
    const auto deadline = std::chrono::steady_clock::now() + std::chrono::milliseconds(timeout_ms);
    std::unique_lock guard(lock);
    return finished.wait_until(guard, deadline,
                               [this] { return scans_in_process == 0 && scan_ok; });
}

KVScans::~KVScans()
{
    for (const auto& [folder, scan] : byFolder) {
        scan->self.reset();
    }
}
