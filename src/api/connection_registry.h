#pragma once

#include "connection/handle_table.h"
#include "connection/velto.h"

// From handles to open connections.
//
// Thread: any. Locks: that of the table. remove_connection can run the destructor of the connection
// under it.
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
    HandleTable<ARef<VeltoConnObject>> connections;
};

ConnectionRegistry& connection_registry();
