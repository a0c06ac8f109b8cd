#include "api/connection_registry.h"

ConnectionRegistry& connection_registry()
{
    return process_table<ConnectionRegistry>();
}

VeltoHandle ConnectionRegistry::add_connection(const ARef<VeltoConnObject>& reference)
{
    return connections.add(reference);
}

ARef<VeltoConnObject> ConnectionRegistry::find_connection(VeltoHandle handle)
{
    return connections.find(handle).value_or(ARef<VeltoConnObject>());
}

void ConnectionRegistry::remove_connection(VeltoHandle handle)
{
    connections.remove(handle);
}

VeltoResult ConnectionRegistry::resolve_connection(VeltoHandle handle,
                                                   ARef<VeltoConnObject>& reference)
{
    reference = find_connection(handle);
    return reference ? VELTO_RESULT_OK : result_invalid_handle();
}
