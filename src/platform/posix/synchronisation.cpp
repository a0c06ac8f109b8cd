#include "platform/platform.h"
#include "platform/posix/monotonic.h"
#include "platform/posix/system_calls.h"

#include <atomic>
#include <new>

#include <limits.h>

namespace platform
{

struct Mutex {
    pthread_mutex_t native;
};

// `available` keeps the maximum, which the system's semaphore does not know; it follows the counts
// that waiters can have and those that they are just taking.
struct Semaphore {
    sem_t native;
    std::atomic<std::uint32_t> available;
    std::uint32_t maximum;
};

namespace
{

bool make_recursive(pthread_mutex_t& native)
{
    pthread_mutexattr_t attributes;
    if (system::pthread_mutexattr_init(&attributes) != 0) {
        return false;
    }
    const bool made =
        system::pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE) == 0 &&
        system::pthread_mutex_init(&native, &attributes) == 0;
    system::pthread_mutexattr_destroy(&attributes);
    return made;
}

} // namespace

Mutex* create_mutex()
{
    auto* mutex = new (std::nothrow) Mutex;
    if (mutex == nullptr) {
        return nullptr;
    }
    if (!make_recursive(mutex->native)) {
        delete mutex;
        return nullptr;
    }
    return mutex;
}

void destroy_mutex(Mutex* mutex)
{
    if (mutex != nullptr) {
        system::pthread_mutex_destroy(&mutex->native);
        delete mutex;
    }
}

// What the library holds a mutex for is mostly over in less time than going to sleep takes, so it
// is tried a few times first.
WaitResult lock_mutex(Mutex* mutex)
{
    constexpr int tries = 50;
    if (mutex == nullptr) {
        return WaitResult::failed;
    }
    for (int i = 0; i < tries; ++i) {
        const int error = system::pthread_mutex_trylock(&mutex->native);
        if (error != EBUSY) {
            return error == 0 ? WaitResult::signalled : WaitResult::failed;
        }
    }
    const bool locked = system::pthread_mutex_lock(&mutex->native) == 0;
    return locked ? WaitResult::signalled : WaitResult::failed;
}

void unlock_mutex(Mutex* mutex)
{
    if (mutex != nullptr) {
        system::pthread_mutex_unlock(&mutex->native);
    }
}

Semaphore* create_semaphore(std::uint32_t initial, std::uint32_t maximum)
{
    if (maximum == 0 || maximum > SEM_VALUE_MAX || initial > maximum) {
        return nullptr;
    }
    auto* semaphore = new (std::nothrow) Semaphore{{}, initial, maximum};
    if (semaphore != nullptr && system::sem_init(&semaphore->native, 0, initial) != 0) {
        delete semaphore;
        return nullptr;
    }
    return semaphore;
}

void destroy_semaphore(Semaphore* semaphore)
{
    if (semaphore != nullptr) {
        system::sem_destroy(&semaphore->native);
        delete semaphore;
    }
}

namespace
{

// Calls `wait` until it says something else than that a signal has come between.
template <typename Wait>
WaitResult wait_through_signals(Wait wait)
{
    while (wait() != 0) {
        if (errno != EINTR) {
            const bool in_vain = errno == EAGAIN || errno == ETIMEDOUT;
            return in_vain ? WaitResult::timed_out : WaitResult::failed;
        }
    }
    return WaitResult::signalled;
}

WaitResult take_count(sem_t& native, std::uint32_t time_ms)
{
    if (time_ms == 0) {
        return wait_through_signals([&native] { return system::sem_trywait(&native); });
    }
    if (time_ms == infinite) {
        return wait_through_signals([&native] { return system::sem_wait(&native); });
    }
    const timespec deadline = monotonic_deadline(time_ms);
    return wait_through_signals([&native, &deadline] {
        return system::sem_clockwait(&native, CLOCK_MONOTONIC, &deadline);
    });
}

} // namespace

WaitResult wait_semaphore(Semaphore* semaphore, std::uint32_t time_ms)
{
    if (semaphore == nullptr) {
        return WaitResult::failed;
    }
    const WaitResult result = take_count(semaphore->native, time_ms);
    if (result == WaitResult::signalled) {
        --semaphore->available;
    }
    return result;
}

// A post that succeeds is the last that touches the semaphore: a woken waiter may destroy it.
ReleaseResult release_semaphore(Semaphore* semaphore)
{
    if (semaphore == nullptr) {
        return ReleaseResult::failed;
    }
    std::uint32_t available = semaphore->available;
    do {
        if (available >= semaphore->maximum) {
            return ReleaseResult::too_many_posts;
        }
    } while (!semaphore->available.compare_exchange_weak(available, available + 1));
    if (system::sem_post(&semaphore->native) != 0) {
        --semaphore->available;
        return ReleaseResult::failed;
    }
    return ReleaseResult::released;
}

} // namespace platform
