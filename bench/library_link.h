#pragma once

#include "responder.h"
#include "velto/velto.h"

// A connection of the library, up for as long as the object lives. It has to be the last client
// that its responder gets.
class LibraryLink
{
public:
    explicit LibraryLink(const Responder& responder)
        : handle(velto_connect(responder.address())), server(responder)
    {
        velto_wait_until_connected(handle);
    }
    LibraryLink(const LibraryLink&) = delete;
    LibraryLink& operator=(const LibraryLink&) = delete;
    // Closing waits for the worker, which else may wait a second for input.
    ~LibraryLink()
    {
        server.hang_up();
        velto_close(handle);
    }

    const VeltoHandle handle;

private:
    const Responder& server;
};
