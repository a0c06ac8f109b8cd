#pragma once

#include "platform/platform.h"
#include "protocol/zavl3_api.h"

namespace ZAVL3
{

// Owns the one TCP connection to a server: keeps trying to connect for as long as the object lives,
// feeds what arrives to the parser, writes what the commands produce, and turns every failure of
// the link into the same loss sequence. It knows nothing of XML.
class Client : public API
{
public:
    Client();
    // Ends the worker, which takes up to the pump's wait, or a connect in progress. It closes no
    // socket and calls no delegate: a link that is up stays open, which is wanted.
    ~Client() override;

    // Host byte order. Taken at the next connect attempt.
    void set_server_address(std::uint32_t address) { server_address = address; }
    void start_worker(int priority);

    // Under send_lock.
    void write_bytes(const unsigned char* bytes, std::uint64_t count) override;
    // Both run on the worker, and like all that does, they must not wait for a reply.
    virtual void on_connection_up() {}
    virtual void on_connection_down() {}

    bool is_connected() const { return connected; }

protected:
    // Ends the worker before the members of a derived class go. Not for the worker itself.
    void stop_worker();
    bool is_worker_thread() const;
    // For an object whose last reference goes on its own worker: the worker unwinds, ends its loop
    // and calls `last_act`, with nothing of the object in use any more.
    void end_on_worker(const AFunction<>& last_act);

    // All link state is written by the worker alone, and changes only under send_lock: what a
    // command writes goes out on one link or not at all.
    std::atomic<bool> connected{false};
    std::atomic<std::uint32_t> server_address{0x7F000001};
    platform::SocketHandle socket_handle = platform::invalid_socket; // survives its closing
    std::uint32_t keepalive_period = 0;                              // seconds
    AFunction<> keepalive_hook; // nothing in the library sets it
    std::int64_t last_keepalive = 0;
    std::atomic<bool> send_failed{false};
    std::atomic<bool> thread_running{false};
    std::atomic<bool> stop_requested{false};

    // The calls that can be replaced by a stand-in.
    std::ptrdiff_t (*send_block)(platform::SocketHandle, const void*, std::size_t) = platform::send;
    int (*wait_for_input)(platform::SocketHandle, std::uint32_t) = platform::wait_readable;

private:
    struct WorkerStart;
    static void worker_main(void* start);
    void run_worker(int priority);
    void guard_step(void (Client::*step)());
    void attempt_connect();
    void pump();
    bool run_keepalive();
    void receive_block();
    void lose_link();

    std::atomic<std::uint32_t> worker_thread_id{0};
    AFunction<> worker_last_act;
};

} // namespace ZAVL3
