#pragma once

#include "velto/velto.h"

#include <chrono>
#include <string>

// What the examples on the command line have in common.

// Texts of the library are UTF-16, those of a terminal UTF-8.
std::string printable(const VeltoChar* text);
std::basic_string<VeltoChar> units(const std::string& text);

// The text that the thread's last call has left.
std::string last_error();
// Throws with that text where a call has failed.
void check(VeltoResult result, const std::string& what);

// "127.0.0.1" as velto_connect takes it; the text has to be an address.
uint32_t host_order(const std::string& address);

// A connection for as long as the object lives.
class Server
{
public:
    explicit Server(const std::string& address);
    ~Server() { velto_close(handle); }
    Server(const Server&) = delete;
    Server& operator=(const Server&) = delete;

    // Throws when the link is not up in time.
    void wait_for_link(std::chrono::milliseconds limit = std::chrono::seconds(10)) const;
    operator VeltoHandle() const { return handle; }

private:
    std::string name;
    VeltoHandle handle;
};
