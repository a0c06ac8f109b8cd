#pragma once

#include "platform/faults.h"

#include <errno.h>
#include <poll.h>
#include <pthread.h>
#include <sched.h>
#include <semaphore.h>
#include <signal.h>
#include <sys/socket.h>
#include <time.h>
#include <unistd.h>

// The calls of the system that the platform layer makes, each of which can be made to fail.
namespace platform::system
{

struct AsResult {
    template <typename Result>
    static Result tell(faults::Effect effect)
    {
        switch (effect) {
        case faults::Effect::interrupted:
            return EINTR;
        case faults::Effect::timed_out:
            return ETIMEDOUT;
        default:
            return EINVAL;
        }
    }
};

struct InErrno {
    template <typename Result>
    static Result tell(faults::Effect effect)
    {
        errno = AsResult::tell<int>(effect);
        return static_cast<Result>(-1);
    }
};

// One that goes on in the background when it is interrupted.
template <Call Which, typename Failure, auto Native>
struct InterruptedInside {
    template <typename... Arguments>
    auto operator()(Arguments... arguments) const
    {
        using Result = decltype(Native(arguments...));
        const auto strike = faults::strike(Which);
        if (!strike || strike->effect == faults::Effect::interrupted) {
            const Result result = Native(arguments...);
            if (!strike || result != 0) {
                return result;
            }
        }
        return Failure::template tell<Result>(strike->effect);
    }
};

inline constexpr SystemCall<Call::open_socket, InErrno, ::socket> socket;
inline constexpr InterruptedInside<Call::connect, InErrno, ::connect> connect;
inline constexpr SystemCall<Call::connect_result, InErrno, ::getsockopt> getsockopt;
inline constexpr SystemCall<Call::set_option, InErrno, ::setsockopt> setsockopt;
inline constexpr SystemCall<Call::wait_ready, InErrno, ::poll> poll;
inline constexpr TransferCall<Call::receive, InErrno, ::recv> recv;
inline constexpr TransferCall<Call::send, InErrno, ::send> send;
inline constexpr SystemCall<Call::shut_down, InErrno, ::shutdown> shutdown;
inline constexpr ReleasingCall<Call::close_socket, InErrno, ::close> close;

inline constexpr SystemCall<Call::mutex_attributes, AsResult, ::pthread_mutexattr_init>
    pthread_mutexattr_init;
inline constexpr SystemCall<Call::mutex_attributes, AsResult, ::pthread_mutexattr_settype>
    pthread_mutexattr_settype;
inline constexpr ReleasingCall<Call::mutex_attributes, AsResult, ::pthread_mutexattr_destroy>
    pthread_mutexattr_destroy;
inline constexpr SystemCall<Call::create_mutex, AsResult, ::pthread_mutex_init> pthread_mutex_init;
inline constexpr SystemCall<Call::lock_mutex, AsResult, ::pthread_mutex_trylock>
    pthread_mutex_trylock;
inline constexpr SystemCall<Call::lock_mutex, AsResult, ::pthread_mutex_lock> pthread_mutex_lock;
inline constexpr ReleasingCall<Call::unlock_mutex, AsResult, ::pthread_mutex_unlock>
    pthread_mutex_unlock;
inline constexpr ReleasingCall<Call::destroy_mutex, AsResult, ::pthread_mutex_destroy>
    pthread_mutex_destroy;

inline constexpr SystemCall<Call::create_semaphore, InErrno, ::sem_init> sem_init;
inline constexpr SystemCall<Call::wait_semaphore, InErrno, ::sem_trywait> sem_trywait;
inline constexpr SystemCall<Call::wait_semaphore, InErrno, ::sem_wait> sem_wait;
inline constexpr SystemCall<Call::wait_semaphore, InErrno, ::sem_clockwait> sem_clockwait;
inline constexpr SystemCall<Call::release_semaphore, InErrno, ::sem_post> sem_post;
inline constexpr ReleasingCall<Call::destroy_semaphore, InErrno, ::sem_destroy> sem_destroy;

inline constexpr SystemCall<Call::stack_limits, InErrno, ::sysconf> sysconf;
inline constexpr SystemCall<Call::thread_attributes, AsResult, ::pthread_attr_init>
    pthread_attr_init;
inline constexpr SystemCall<Call::thread_attributes, AsResult, ::pthread_attr_setdetachstate>
    pthread_attr_setdetachstate;
inline constexpr SystemCall<Call::thread_attributes, AsResult, ::pthread_attr_setstacksize>
    pthread_attr_setstacksize;
inline constexpr ReleasingCall<Call::thread_attributes, AsResult, ::pthread_attr_destroy>
    pthread_attr_destroy;
inline constexpr SystemCall<Call::signal_mask, AsResult, ::pthread_sigmask> pthread_sigmask;
inline constexpr ReleasingCall<Call::signal_mask, AsResult, ::pthread_sigmask> restore_sigmask;
inline constexpr SystemCall<Call::start_thread, AsResult, ::pthread_create> pthread_create;

inline constexpr SystemCall<Call::thread_id, InErrno, ::gettid> gettid;
inline constexpr SystemCall<Call::sleep, AsResult, ::clock_nanosleep> clock_nanosleep;
inline constexpr SystemCall<Call::yield, InErrno, ::sched_yield> sched_yield;
inline constexpr SystemCall<Call::monotonic_clock, InErrno, ::clock_gettime> clock_gettime;
inline constexpr SystemCall<Call::wall_clock, InErrno, ::time> time;

} // namespace platform::system
