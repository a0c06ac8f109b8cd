#pragma once

#include "connection/velto.h"

#include <map>

// From handles to open connections. One for the process, made at first use and never destroyed.
//
// Thread: any. Locks: `lock` guards the table. remove_connection can run the destructor of the
// connection under it; nothing else is done there but the lookup.
class ConnectionRegistry
{
public:
    VeltoHandle add_connection(const ARef<VeltoConnObject>& reference);
    // Empty for an unknown handle. The object lives for as long as the caller holds the reference.
    ARef<VeltoConnObject> find_connection(VeltoHandle handle);
    void remove_connection(VeltoHandle handle);
    // find_connection with a result: 0, or "Invalid handle" recorded.
    VeltoResult resolve_connection(VeltoHandle handle, ARef<VeltoConnObject>& reference);

private:
    AMutex lock;
    std::map<VeltoHandle, ARef<VeltoConnObject>> connections;
};

ConnectionRegistry& connection_registry();

// The counter of connections, lists and clip records; never gives 0.
VeltoHandle next_handle();
extern std::atomic<std::uint32_t> last_handle;
