#pragma once

#include "api/connection_registry.h"
#include "support/outcome.h"
#include "support/script_server.h"

#include <optional>

// A connection whose link to a scripted server is up, for tests that play its server.
class Session
{
public:
    Session()
    {
        connection->set_server_address(server.address().number);
        connection->start_worker(0);
        accept();
    }
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;
    // The loss of the link wakes the worker, which then ends at once.
    ~Session()
    {
        link->close();
        velto_close(handle);
    }

    // Takes up the link that follows a loss, or the first.
    void accept()
    {
        link.emplace(server.accept());
        velto_wait_until_connected(handle);
    }

    ScriptServer server;
    ARef<VeltoConnObject> connection = ARef<VeltoConnObject>::create();
    VeltoHandle handle = connection_registry().add_connection(connection);
    std::optional<ScriptLink> link;
};
