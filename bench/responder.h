#pragma once

#include <asio.hpp>

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>

// A server that answers every command with a plain ok, as fast as it can, on one thread for each
// client. All competitors of a measurement talk to the same one.
class Responder
{
public:
    Responder();
    Responder(const Responder&) = delete;
    Responder& operator=(const Responder&) = delete;
    ~Responder();

    std::uint32_t address() const { return host; }
    asio::ip::tcp::endpoint endpoint() const;

private:
    void accept_clients();

    std::uint32_t host;
    std::atomic<bool> stopping{false};
    asio::io_context context;
    asio::ip::tcp::acceptor acceptor;
    std::thread thread;
};

// The reply to the command that ends `bytes`, as the responder gives it.
std::string ok_reply_to(const std::string& command);
