#pragma once

#include "api/connection_registry.h"
#include "support/outcome.h"
#include "support/script_server.h"

#include <optional>

#include <gtest/gtest.h>

// A connection whose link to a scripted server is up, for tests that play its server. What the
// worker does when the link comes up is done: it would ask once more for what a test asks for
// meanwhile.
class Session
{
public:
    Session()
    {
        connection->set_server_address(server.address().number);
        connection->start_worker(0);
        accept();
        settle();
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

    // Takes the link away and gives it back. What comes next is what the client then sends first.
    void replace_link()
    {
        link->close();
        accept();
    }

    // When it returns, the client has taken in all that the server has sent, and has itself sent
    // nothing.
    void settle()
    {
        auto stopping = calling([this] { return velto_cmd_stop1(handle, 0); });
        link->reply_ok(link->expect("stop").xid);
        EXPECT_EQ(await(std::move(stopping)), succeeded);
    }

    ScriptServer server;
    ARef<VeltoConnObject> connection = ARef<VeltoConnObject>::create();
    VeltoHandle handle = connection_registry().add_connection(connection);
    std::optional<ScriptLink> link;
};
