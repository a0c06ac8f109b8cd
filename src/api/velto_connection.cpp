#include "api/connection_registry.h"
#include "connection/last_error.h"
#include "connection/text.h"

namespace
{
constexpr int worker_priority = -1;
}

VeltoHandle velto_connect(uint32_t address)
{
    auto connection = ARef<VeltoConnObject>::create();
    if (!connection) {
        return 0; // memory is exhausted: the handle of nothing
    }
    connection->set_server_address(address);
    connection->start_worker(worker_priority);
    return connection_registry().add_connection(connection);
}

void velto_close(VeltoHandle handle)
{
    connection_registry().remove_connection(handle);
}

uint32_t velto_connected(VeltoHandle handle)
{
    const auto connection = connection_registry().find_connection(handle);
    return connection && connection->is_connected() ? VELTO_LINK_UP : VELTO_LINK_DOWN;
}

uint32_t velto_wait_until_connected(VeltoHandle handle)
{
    while (velto_connected(handle) == VELTO_LINK_DOWN) {
        platform::sleep_ms(1);
    }
    return VELTO_LINK_UP;
}

void velto_synchronous(VeltoHandle handle, uint32_t value)
{
    if (const auto connection = connection_registry().find_connection(handle)) {
        connection->asynchronous = value;
    }
}

void velto_sync(VeltoHandle handle)
{
    if (const auto connection = connection_registry().find_connection(handle)) {
        VeltoConnObject::sync(connection);
    }
}

void velto_get_last_error(VeltoTextBuffer buffer)
{
    copy_text(get_last_error_text(), buffer);
}
