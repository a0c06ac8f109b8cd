#include "platform/platform.h"
#include "platform/posix/monotonic.h"

#include <algorithm>
#include <memory>
#include <new>

#include <errno.h>
#include <limits.h>
#include <pthread.h>
#include <sched.h>
#include <signal.h>
#include <time.h>
#include <unistd.h>

namespace platform
{

namespace
{

struct ThreadStart {
    ThreadFunction function;
    void* context;
};

void* run_thread(void* start)
{
    const ThreadStart copy = *static_cast<ThreadStart*>(start);
    delete static_cast<ThreadStart*>(start);
    copy.function(copy.context);
    return nullptr;
}

// The new thread inherits the mask, so that there is no moment at which it takes signals.
class AllSignalsBlocked
{
public:
    AllSignalsBlocked()
    {
        sigset_t all;
        sigfillset(&all);
        pthread_sigmask(SIG_SETMASK, &all, &before);
    }
    AllSignalsBlocked(const AllSignalsBlocked&) = delete;
    AllSignalsBlocked& operator=(const AllSignalsBlocked&) = delete;
    ~AllSignalsBlocked() { pthread_sigmask(SIG_SETMASK, &before, nullptr); }

private:
    sigset_t before;
};

bool set_stack_size(pthread_attr_t& attributes, std::size_t stack_bytes)
{
    if (stack_bytes == 0) {
        return true;
    }
    const auto page = static_cast<std::size_t>(sysconf(_SC_PAGESIZE));
    const auto least = static_cast<std::size_t>(sysconf(_SC_THREAD_STACK_MIN));
    const std::size_t wanted = std::max(stack_bytes, least);
    return pthread_attr_setstacksize(&attributes, (wanted + page - 1) / page * page) == 0;
}

} // namespace

bool start_thread(ThreadFunction function, void* context, std::size_t stack_bytes)
{
    std::unique_ptr<ThreadStart> start(new (std::nothrow) ThreadStart{function, context});
    pthread_attr_t attributes;
    if (!start || pthread_attr_init(&attributes) != 0) {
        return false;
    }
    pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    bool started = set_stack_size(attributes, stack_bytes);
    if (started) {
        const AllSignalsBlocked blocked;
        pthread_t thread;
        started = pthread_create(&thread, &attributes, &run_thread, start.get()) == 0;
    }
    pthread_attr_destroy(&attributes);
    if (started) {
        start.release(); // the thread frees it
    }
    return started;
}

void set_thread_priority(int)
{
    // An ordinary process could lower a thread here, but never raise it again, and a lower one
    // would lengthen every round trip.
}

std::uint32_t current_thread_id()
{
    static thread_local const auto id = static_cast<std::uint32_t>(gettid());
    return id;
}

void sleep_ms(std::uint32_t time_ms)
{
    const timespec deadline = monotonic_deadline(time_ms);
    while (clock_nanosleep(CLOCK_MONOTONIC, TIMER_ABSTIME, &deadline, nullptr) == EINTR) {
    }
}

void yield_thread()
{
    sched_yield();
}

std::int64_t unix_time_seconds()
{
    return time(nullptr);
}

} // namespace platform
