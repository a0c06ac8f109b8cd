#include "platform/platform.h"
#include "platform/posix/monotonic.h"

#include <new>

#include <pthread.h>

namespace platform
{

struct Mutex {
    pthread_mutex_t native;
};

struct Semaphore {
    pthread_mutex_t lock;
    pthread_cond_t counted;
    std::uint32_t count;
    std::uint32_t maximum;
    std::uint32_t waiters;
};

Mutex* create_mutex()
{
    auto* mutex = new (std::nothrow) Mutex;
    if (mutex == nullptr) {
        return nullptr;
    }
    pthread_mutexattr_t attributes;
    pthread_mutexattr_init(&attributes);
    pthread_mutexattr_settype(&attributes, PTHREAD_MUTEX_RECURSIVE);
    const int error = pthread_mutex_init(&mutex->native, &attributes);
    pthread_mutexattr_destroy(&attributes);
    if (error != 0) {
        delete mutex;
        return nullptr;
    }
    return mutex;
}

void destroy_mutex(Mutex* mutex)
{
    if (mutex != nullptr) {
        pthread_mutex_destroy(&mutex->native);
        delete mutex;
    }
}

WaitResult lock_mutex(Mutex* mutex)
{
    const bool locked = mutex != nullptr && pthread_mutex_lock(&mutex->native) == 0;
    return locked ? WaitResult::signalled : WaitResult::failed;
}

void unlock_mutex(Mutex* mutex)
{
    if (mutex != nullptr) {
        pthread_mutex_unlock(&mutex->native);
    }
}

namespace
{

bool init_monotonic(pthread_cond_t& condition)
{
    pthread_condattr_t attributes;
    pthread_condattr_init(&attributes);
    pthread_condattr_setclock(&attributes, CLOCK_MONOTONIC);
    const int error = pthread_cond_init(&condition, &attributes);
    pthread_condattr_destroy(&attributes);
    return error == 0;
}

} // namespace

Semaphore* create_semaphore(std::uint32_t initial, std::uint32_t maximum)
{
    if (maximum == 0 || maximum > 0x7FFFFFFFu || initial > maximum) {
        return nullptr;
    }
    auto* semaphore = new (std::nothrow) Semaphore{};
    if (semaphore == nullptr) {
        return nullptr;
    }
    if (!init_monotonic(semaphore->counted)) {
        delete semaphore;
        return nullptr;
    }
    pthread_mutex_init(&semaphore->lock, nullptr);
    semaphore->count = initial;
    semaphore->maximum = maximum;
    return semaphore;
}

void destroy_semaphore(Semaphore* semaphore)
{
    if (semaphore != nullptr) {
        pthread_cond_destroy(&semaphore->counted);
        pthread_mutex_destroy(&semaphore->lock);
        delete semaphore;
    }
}

namespace
{

// Locks: semaphore.lock. True when there is a count, false when the time ran out first.
bool await_count(Semaphore& semaphore, std::uint32_t time_ms)
{
    if (time_ms == infinite) {
        while (semaphore.count == 0) {
            pthread_cond_wait(&semaphore.counted, &semaphore.lock);
        }
        return true;
    }
    const timespec deadline = monotonic_deadline(time_ms);
    while (semaphore.count == 0) {
        if (pthread_cond_timedwait(&semaphore.counted, &semaphore.lock, &deadline) != 0) {
            return semaphore.count != 0;
        }
    }
    return true;
}

} // namespace

WaitResult wait_semaphore(Semaphore* semaphore, std::uint32_t time_ms)
{
    if (semaphore == nullptr) {
        return WaitResult::failed;
    }
    pthread_mutex_lock(&semaphore->lock);
    bool counted = semaphore->count != 0;
    if (!counted && time_ms != 0) {
        ++semaphore->waiters;
        counted = await_count(*semaphore, time_ms);
        --semaphore->waiters;
    }
    if (counted) {
        --semaphore->count;
    }
    pthread_mutex_unlock(&semaphore->lock);
    return counted ? WaitResult::signalled : WaitResult::timed_out;
}

ReleaseResult release_semaphore(Semaphore* semaphore)
{
    if (semaphore == nullptr) {
        return ReleaseResult::failed;
    }
    pthread_mutex_lock(&semaphore->lock);
    const bool room = semaphore->count < semaphore->maximum;
    if (room) {
        ++semaphore->count;
        // Under the lock, since a woken waiter may destroy the semaphore as soon as it has that.
        if (semaphore->waiters != 0) {
            pthread_cond_signal(&semaphore->counted);
        }
    }
    pthread_mutex_unlock(&semaphore->lock);
    return room ? ReleaseResult::released : ReleaseResult::too_many_posts;
}

} // namespace platform
