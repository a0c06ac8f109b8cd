#include "protocol/zavl3_client_win32.h"

#include "foundation/afunctionext.h"

#include <algorithm>
#include <exception>
#include <new>

#ifndef VELTO_WORKER_STACK_BYTES
#define VELTO_WORKER_STACK_BYTES 65536
#endif

namespace ZAVL3
{

namespace
{

constexpr std::uint16_t server_port = 8913;
constexpr std::size_t receive_block_bytes = 2048;
constexpr std::size_t worker_stack_bytes = VELTO_WORKER_STACK_BYTES;
constexpr std::uint32_t reconnect_pause_ms = 100;
constexpr std::uint32_t input_wait_ms = 1000;
constexpr std::uint64_t keepalive_command_limit = 4;
constexpr std::uint64_t largest_send_bytes = 0x7FFFFFFF;

// Sockets are started once in a process, and never stopped. Two first clients may both start them,
// which the system counts and allows.
std::atomic<bool> sockets_started{false};

} // namespace

struct Client::WorkerStart {
    Client* client;
    int priority;
};

Client::Client()
{
    if (!sockets_started.exchange(true)) {
        platform::start_sockets();
    }
}

Client::~Client()
{
    stop_worker();
}

void Client::stop_worker()
{
    stop_requested = true;
    while (thread_running) {
        platform::sleep_ms(1);
    }
}

// Whether the thread was started is not looked at: the link of an object whose worker could not
// start stays down, and the object waits for it when it is destroyed. Wanted as it is.
void Client::start_worker(int priority)
{
    auto start = std::make_unique<WorkerStart>(WorkerStart{this, priority});
    thread_running = true;
    try {
        if (platform::start_thread(&Client::worker_main, start.get(), worker_stack_bytes)) {
            start.release(); // the worker frees it
        }
    } catch (const std::bad_alloc&) {
        thread_running = false;
        throw;
    }
}

void Client::worker_main(void* start)
{
    const std::unique_ptr<WorkerStart> given(static_cast<WorkerStart*>(start));
    Client* client = given->client;
    client->run_worker(given->priority);
    const AFunction<> last_act = client->worker_last_act;
    client->thread_running = false; // from here on the object is gone, unless it is left to us
    last_act();
}

bool Client::is_worker_thread() const
{
    return worker_thread_id == platform::current_thread_id();
}

void Client::end_on_worker(const AFunction<>& last_act)
{
    worker_last_act = last_act;
    stop_requested = true;
}

// Thread: worker. Locks: none.
void Client::run_worker(int priority)
{
    worker_thread_id = platform::current_thread_id();
    platform::set_thread_priority(priority);
    while (!stop_requested) {
        platform::sleep_ms(reconnect_pause_ms);
        guard_step(&Client::attempt_connect);
        while (connected && !stop_requested) {
            guard_step(&Client::pump);
        }
    }
    worker_thread_id = 0; // the system may give the number to another thread
}

// Memory that is exhausted costs the link, and with it all that is half done, but never the
// process.
void Client::guard_step(void (Client::*step)())
{
    try {
        (this->*step)();
    } catch (const std::exception&) {
        send_failed = true; // the next pump carries out the loss
    }
}

void Client::attempt_connect()
{
    if (connected) {
        return;
    }
    socket_handle = platform::open_socket();
    if (!platform::connect_socket(socket_handle, server_address, server_port)) {
        platform::close_socket(socket_handle);
        return;
    }
    platform::set_no_delay(socket_handle);
    {
        // A command that began while the link was down must not end on the new one.
        const AMutexLock guard(&send_lock);
        send_failed = false;
        connected = true;
    }
    last_keepalive = platform::unix_time_seconds();
    on_connection_up();
}

void Client::pump()
{
    if (send_failed) {
        return lose_link();
    }
    if (!run_keepalive()) {
        return;
    }
    const int ready = wait_for_input(socket_handle, input_wait_ms);
    if (ready == 1) {
        return receive_block();
    }
    if (ready == 0) {
        return;
    }
    if (ready != -1) {
        assert_failed("zavl3_client_win32", 197, "x == SOCKET_ERROR");
    }
    lose_link();
}

// False when the hook has taken the link down.
bool Client::run_keepalive()
{
    if (keepalive_hook.is_empty() || outstanding_count() >= keepalive_command_limit) {
        return true;
    }
    const std::int64_t now = platform::unix_time_seconds();
    const std::uint32_t since =
        static_cast<std::uint32_t>(now) - static_cast<std::uint32_t>(last_keepalive);
    if (since >= keepalive_period) {
        last_keepalive = now;
        keepalive_hook();
    }
    return connected;
}

void Client::receive_block()
{
    unsigned char block[receive_block_bytes];
    const std::ptrdiff_t received = platform::receive(socket_handle, block, sizeof(block));
    if (received < 1) {
        return lose_link();
    }
    feed_bytes(block, static_cast<std::uint64_t>(received));
    if (is_stream_broken()) {
        lose_link();
    }
}

// Thread: worker. Locks: takes send_lock for the closing alone. Whoever is blocked in a send holds
// it, and is woken first.
void Client::lose_link()
{
    platform::abort_socket(socket_handle);
    {
        const AMutexLock guard(&send_lock);
        platform::close_socket(socket_handle);
        connected = false;
    }
    fail_all_outstanding();
    reset_stream();
    on_connection_down();
}

// Thread: any. Locks: send_lock is held.
void Client::write_bytes(const unsigned char* bytes, std::uint64_t count)
{
    if (send_failed || !connected) {
        return fail_all_outstanding();
    }
    while (count != 0) {
        const std::uint64_t block = std::min(count, largest_send_bytes);
        const std::ptrdiff_t sent =
            send_block(socket_handle, bytes, static_cast<std::size_t>(block));
        if (sent <= 0) {
            send_failed = true; // the worker carries out the loss
            return;
        }
        count -= static_cast<std::uint64_t>(sent);
        // By what remains, not by what was sent: deliberate, and not to be mended. The platform's
        // send takes the whole block, so only a block beyond the largest send would come here
        // twice.
        bytes += count;
    }
}

} // namespace ZAVL3
