#pragma once

#include <cstddef>
#include <cstdint>

// Everything that the library asks of the operating system. One implementation in posix/, one in
// windows/; both keep these contracts, and one test suite runs on both.
namespace platform
{

inline constexpr std::uint32_t infinite = 0xFFFFFFFFu;

enum class WaitResult : std::uint32_t {
    signalled = 0,
    interrupted = 192, // an asynchronous call ran on the waiting thread; wait again
    timed_out = 258,
    failed = 0xFFFFFFFFu, // like every value that is not named here
};

enum class ReleaseResult { released, too_many_posts, failed };

// A recursive mutex. Null is the handle of one that could not be created; it cannot be locked, and
// destroying it does nothing. `unlock_mutex` is for the thread that holds it.
struct Mutex;
Mutex* create_mutex();
void destroy_mutex(Mutex* mutex);
WaitResult lock_mutex(Mutex* mutex);
void unlock_mutex(Mutex* mutex);

// A counting semaphore. `maximum` is 1 to 0x7FFFFFFF and not below `initial`; for anything else, or
// when the system refuses, the handle is null, every wait and release of which fails. `time_ms`
// runs on a clock that a change of the wall clock cannot move; a signal handler that runs on the
// waiting thread does not end the wait. Whoever has taken the last count may destroy the semaphore
// at once, even while the release that gave the count has not returned yet.
struct Semaphore;
Semaphore* create_semaphore(std::uint32_t initial, std::uint32_t maximum);
void destroy_semaphore(Semaphore* semaphore);
WaitResult wait_semaphore(Semaphore* semaphore, std::uint32_t time_ms);
// Adds 1, unless that would exceed the maximum: then nothing changes, and no system error stays
// recorded for the thread.
ReleaseResult release_semaphore(Semaphore* semaphore);

// Starts a detached thread on which no signal handler of the application runs, with at least
// `stack_bytes` of stack (0: what the system gives). False, with nothing started, when the system
// refuses; std::bad_alloc, with nobody asked, when memory is exhausted.
using ThreadFunction = void (*)(void* context);
bool start_thread(ThreadFunction function, void* context, std::size_t stack_bytes);

// `priority` of the calling thread, counted from normal (0) in the steps of the Windows thread
// priorities. Where the system grants no such thing to an ordinary process, nothing happens.
void set_thread_priority(int priority);

std::uint32_t current_thread_id();    // the kernel's; never 0
void sleep_ms(std::uint32_t time_ms); // the whole time, whatever signals arrive
void yield_thread();                  // lets whoever else is ready run first
std::int64_t unix_time_seconds();

// Stream sockets over IPv4. Addresses and ports are in host byte order. `invalid_socket` may be
// given to every call and makes it fail.
using SocketHandle = std::uintptr_t;
inline constexpr SocketHandle invalid_socket = ~SocketHandle{0};

// To be called before the first socket is opened; any number of times, from any thread.
void start_sockets();
// Not inherited by programs that the process starts, where the system can say so in one step.
SocketHandle open_socket();
// Blocks until the connection stands or the system gives up.
bool connect_socket(SocketHandle socket, std::uint32_t address, std::uint16_t port);
void set_no_delay(SocketHandle socket);
// 1: readable, or at its end. 0: nothing within the time. -1: error. Works for every descriptor
// number; a signal neither ends the wait nor counts as an error.
int wait_readable(SocketHandle socket, std::uint32_t time_ms);
// The bytes received, 0 at the end of the stream, -1 on an error. A system may tell either of a
// reset by the peer. Signals are not seen.
std::ptrdiff_t receive(SocketHandle socket, void* bytes, std::size_t count);
// Takes the whole block and returns `count`, or fails with -1, when part of the block may have gone
// out. A dead peer is a failure, never a signal.
std::ptrdiff_t send(SocketHandle socket, const void* bytes, std::size_t count);
// Ends both directions: a thread that is blocked in `send` comes back with -1, and so does every
// later `send`. The handle stays allocated, so that nobody else can be given its number meanwhile.
void abort_socket(SocketHandle socket);
void close_socket(SocketHandle socket);

} // namespace platform
