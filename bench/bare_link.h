#pragma once

#include "responder.h"

#include <semaphore.h>

#include <memory>
#include <string>
#include <thread>

// The floors under the library: a socket and the bytes of one command, without anything around
// them.

// The bytes of `stop` on channel A, as the library sends them.
std::string stop_command(std::uint32_t xid);

// Sends and receives on one thread.
class BareLink
{
public:
    explicit BareLink(const Responder& responder);

    void send(const std::string& command);
    // Until `count` bytes are there.
    void receive(std::size_t count);

protected:
    asio::io_context context;
    asio::ip::tcp::socket socket;
};

// Receives on a thread of its own, which posts a semaphore for every `reply_bytes` that came.
class ThreadedLink : public BareLink
{
public:
    ThreadedLink(const Responder& responder, std::size_t reply_bytes);
    ThreadedLink(const ThreadedLink&) = delete;
    ThreadedLink& operator=(const ThreadedLink&) = delete;
    ~ThreadedLink();

    void wait_for_reply();

private:
    void read_replies();

    std::size_t size_of_reply;
    sem_t arrived;
    std::thread reader;
};
