#include "platform/platform.h"
#include "platform/posix/monotonic.h"
#include "platform/posix/system_calls.h"

#include <algorithm>

#include <limits.h>
#include <netinet/in.h>
#include <netinet/tcp.h>

namespace platform
{

namespace
{

int descriptor(SocketHandle socket)
{
    return static_cast<int>(static_cast<std::intptr_t>(socket));
}

// Repeats `call` for as long as a signal interrupts it.
template <typename Call>
auto uninterrupted(Call call)
{
    for (;;) {
        const auto result = call();
        if (result != -1 || errno != EINTR) {
            return result;
        }
    }
}

// An interrupted connect goes on in the background, and its end shows as writability.
bool await_connected(SocketHandle socket)
{
    pollfd entry{descriptor(socket), POLLOUT, 0};
    if (uninterrupted([&] { return system::poll(&entry, nfds_t{1}, -1); }) != 1) {
        return false;
    }
    int error = 0;
    socklen_t size = sizeof error;
    return system::getsockopt(entry.fd, SOL_SOCKET, SO_ERROR, &error, &size) == 0 && error == 0;
}

} // namespace

void start_sockets() {}

SocketHandle open_socket()
{
    const int opened = system::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, IPPROTO_TCP);
    return opened < 0 ? invalid_socket : static_cast<SocketHandle>(opened);
}

bool connect_socket(SocketHandle socket, std::uint32_t address, std::uint16_t port)
{
    sockaddr_in peer{};
    peer.sin_family = AF_INET;
    peer.sin_port = htons(port);
    peer.sin_addr.s_addr = htonl(address);
    const auto* address_of_peer = reinterpret_cast<const sockaddr*>(&peer);
    if (system::connect(descriptor(socket), address_of_peer, socklen_t{sizeof peer}) == 0) {
        return true;
    }
    return errno == EINTR && await_connected(socket);
}

void set_no_delay(SocketHandle socket)
{
    const int on = 1;
    system::setsockopt(descriptor(socket), IPPROTO_TCP, TCP_NODELAY, &on, socklen_t{sizeof on});
}

int wait_readable(SocketHandle socket, std::uint32_t time_ms)
{
    if (socket == invalid_socket) {
        return -1; // poll would skip it and wait
    }
    pollfd entry{descriptor(socket), POLLIN, 0};
    const timespec deadline = monotonic_deadline(time_ms);
    std::int64_t remaining = time_ms;
    for (;;) {
        const auto step = static_cast<int>(std::min<std::int64_t>(remaining, INT_MAX));
        const int ready = system::poll(&entry, nfds_t{1}, time_ms == infinite ? -1 : step);
        if (ready == 1) {
            return (entry.revents & POLLNVAL) != 0 ? -1 : 1;
        }
        if (ready < 0 && errno != EINTR) {
            return -1;
        }
        remaining = remaining_ms(deadline);
        if (ready == 0 && remaining == 0) {
            return 0;
        }
    }
}

std::ptrdiff_t receive(SocketHandle socket, void* bytes, std::size_t count)
{
    return uninterrupted([&] { return system::recv(descriptor(socket), bytes, count, 0); });
}

std::ptrdiff_t send(SocketHandle socket, const void* bytes, std::size_t count)
{
    const auto* next = static_cast<const std::byte*>(bytes);
    for (std::size_t left = count; left != 0;) {
        const auto sent = uninterrupted(
            [&] { return system::send(descriptor(socket), next, left, MSG_NOSIGNAL); });
        if (sent <= 0) {
            return -1;
        }
        next += sent;
        left -= static_cast<std::size_t>(sent);
    }
    return static_cast<std::ptrdiff_t>(count);
}

void abort_socket(SocketHandle socket)
{
    system::shutdown(descriptor(socket), SHUT_RDWR);
}

void close_socket(SocketHandle socket)
{
    system::close(descriptor(socket));
}

} // namespace platform
