#include "platform/platform.h"
#include "platform/windows/system_calls.h"

#include <algorithm>
#include <atomic>
#include <limits>

namespace platform
{

static_assert(invalid_socket == INVALID_SOCKET);

namespace
{

// A call takes at most this many bytes.
int block_length(std::size_t count)
{
    constexpr std::size_t most = std::numeric_limits<int>::max();
    return static_cast<int>(std::min(count, most));
}

} // namespace

void start_sockets()
{
    static std::atomic<bool> started{false};
    if (started.load()) {
        return;
    }
    WSADATA ignored;
    // Counted by the system, so a second call at the same time is fine.
    system::WSAStartup(WORD{0x0202}, &ignored);
    started.store(true);
}

SocketHandle open_socket()
{
    return system::socket(AF_INET, SOCK_STREAM, IPPROTO_TCP);
}

bool connect_socket(SocketHandle socket, std::uint32_t address, std::uint16_t port)
{
    sockaddr_in peer{};
    peer.sin_family = AF_INET;
    peer.sin_port = htons(port);
    peer.sin_addr.s_addr = htonl(address);
    const auto* address_of_peer = reinterpret_cast<const sockaddr*>(&peer);
    return system::connect(socket, address_of_peer, int{sizeof peer}) == 0;
}

void set_no_delay(SocketHandle socket)
{
    const int on = 1;
    system::setsockopt(socket, IPPROTO_TCP, TCP_NODELAY, reinterpret_cast<const char*>(&on),
                       int{sizeof on});
}

int wait_readable(SocketHandle socket, std::uint32_t time_ms)
{
    fd_set readable;
    readable.fd_count = 1;
    readable.fd_array[0] = socket;
    timeval time;
    time.tv_sec = static_cast<long>(time_ms / 1000);
    time.tv_usec = static_cast<long>(time_ms % 1000 * 1000);
    return system::select(0, &readable, nullptr, nullptr, time_ms == infinite ? nullptr : &time);
}

std::ptrdiff_t receive(SocketHandle socket, void* bytes, std::size_t count)
{
    return system::recv(socket, static_cast<char*>(bytes), block_length(count), 0);
}

std::ptrdiff_t send(SocketHandle socket, const void* bytes, std::size_t count)
{
    const auto* next = static_cast<const char*>(bytes);
    for (std::size_t left = count; left != 0;) {
        const int sent = system::send(socket, next, block_length(left), 0);
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
    // The first fails every later `send`; one that waits inside the system needs the second.
    system::shutdown(socket, SD_BOTH);
    system::CancelIoEx(reinterpret_cast<HANDLE>(socket), nullptr);
}

void close_socket(SocketHandle socket)
{
    system::closesocket(socket);
}

} // namespace platform
