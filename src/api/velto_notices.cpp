#include "api/connection_registry.h"

// Records nothing on success: the last-error text stays as the thread's last call left it. Wanted.
VeltoResult velto_get_notification(VeltoHandle handle, uint32_t timeout_ms, uint32_t* kind,
                                   uint32_t* channel)
{
    ARef<VeltoConnObject> connection;
    const VeltoResult result = connection_registry().resolve_connection(handle, connection);
    if (result != VELTO_RESULT_OK) {
        return result;
    }
    connection->notices.wait_notice(timeout_ms, kind, channel);
    return VELTO_RESULT_OK;
}
