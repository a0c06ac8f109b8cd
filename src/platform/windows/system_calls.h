#pragma once

#include "platform/faults.h"
#include "platform/windows/system.h"

#include <process.h>
#include <time.h>

// The calls of the system that the platform layer makes, each of which can be made to fail. Those
// that cannot fail, Sleep and GetCurrentThreadId, are made directly.
namespace platform::system
{

// 0: a null handle, or FALSE.
struct Zero {
    template <typename Result>
    static Result tell(faults::Effect)
    {
        SetLastError(ERROR_NOT_ENOUGH_MEMORY);
        return Result{};
    }
};

struct WaitFailed {
    template <typename Result>
    static Result tell(faults::Effect effect)
    {
        switch (effect) {
        case faults::Effect::interrupted:
            return WAIT_IO_COMPLETION;
        case faults::Effect::timed_out:
            return WAIT_TIMEOUT;
        default:
            SetLastError(ERROR_INVALID_HANDLE);
            return WAIT_FAILED;
        }
    }
};

// SOCKET_ERROR, INVALID_SOCKET.
struct SocketError {
    template <typename Result>
    static Result tell(faults::Effect effect)
    {
        WSASetLastError(effect == faults::Effect::interrupted ? WSAEINTR : WSAENOBUFS);
        return static_cast<Result>(-1);
    }
};

struct MinusOne {
    template <typename Result>
    static Result tell(faults::Effect)
    {
        return static_cast<Result>(-1);
    }
};

struct ErrorCode {
    template <typename Result>
    static Result tell(faults::Effect)
    {
        return WSASYSNOTREADY;
    }
};

inline constexpr SystemCall<Call::start_sockets, ErrorCode, ::WSAStartup> WSAStartup;
inline constexpr SystemCall<Call::open_socket, SocketError, ::socket> socket;
inline constexpr SystemCall<Call::connect, SocketError, ::connect> connect;
inline constexpr SystemCall<Call::set_option, SocketError, ::setsockopt> setsockopt;
inline constexpr SystemCall<Call::wait_ready, SocketError, ::select> select;
inline constexpr TransferCall<Call::receive, SocketError, ::recv> recv;
inline constexpr TransferCall<Call::send, SocketError, ::send> send;
inline constexpr SystemCall<Call::shut_down, SocketError, ::shutdown> shutdown;
inline constexpr SystemCall<Call::cancel, Zero, ::CancelIoEx> CancelIoEx;
inline constexpr ReleasingCall<Call::close_socket, SocketError, ::closesocket> closesocket;

inline constexpr SystemCall<Call::create_mutex, Zero, ::CreateMutexW> CreateMutexW;
inline constexpr SystemCall<Call::lock_mutex, WaitFailed, ::WaitForSingleObjectEx> wait_for_mutex;
inline constexpr ReleasingCall<Call::unlock_mutex, Zero, ::ReleaseMutex> ReleaseMutex;
inline constexpr ReleasingCall<Call::destroy_mutex, Zero, ::CloseHandle> close_mutex;
inline constexpr SystemCall<Call::create_semaphore, Zero, ::CreateSemaphoreW> CreateSemaphoreW;
inline constexpr SystemCall<Call::wait_semaphore, WaitFailed, ::WaitForSingleObjectEx>
    wait_for_semaphore;
inline constexpr SystemCall<Call::release_semaphore, Zero, ::ReleaseSemaphore> ReleaseSemaphore;
inline constexpr ReleasingCall<Call::destroy_semaphore, Zero, ::CloseHandle> close_semaphore;

inline constexpr SystemCall<Call::stay_loaded, Zero, ::GetModuleHandleExW> GetModuleHandleExW;
inline constexpr SystemCall<Call::start_thread, MinusOne, ::_beginthread> _beginthread;
inline constexpr SystemCall<Call::thread_priority, Zero, ::SetThreadPriority> SetThreadPriority;
inline constexpr SystemCall<Call::wall_clock, MinusOne, ::_time64> _time64;

} // namespace platform::system
