#include "platform/platform.h"
#include "platform/posix/system_calls.h"

#include <algorithm>
#include <memory>

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
        blocked = system::pthread_sigmask(SIG_SETMASK, &all, &before) == 0;
    }
    AllSignalsBlocked(const AllSignalsBlocked&) = delete;
    AllSignalsBlocked& operator=(const AllSignalsBlocked&) = delete;
    ~AllSignalsBlocked()
    {
        if (blocked) {
            system::restore_sigmask(SIG_SETMASK, &before, nullptr);
        }
    }

    explicit operator bool() const { return blocked; }

private:
    sigset_t before;
    bool blocked;
};

bool set_stack_size(pthread_attr_t& attributes, std::size_t stack_bytes)
{
    if (stack_bytes == 0) {
        return true;
    }
    const long page_bytes = system::sysconf(_SC_PAGESIZE);
    const long least = system::sysconf(_SC_THREAD_STACK_MIN);
    if (page_bytes <= 0 || least < 0) {
        return false;
    }
    const auto page = static_cast<std::size_t>(page_bytes);
    const std::size_t wanted = std::max(stack_bytes, static_cast<std::size_t>(least));
    const std::size_t whole_pages = (wanted + page - 1) / page * page;
    return system::pthread_attr_setstacksize(&attributes, whole_pages) == 0;
}

bool create_thread(const pthread_attr_t& attributes, ThreadStart* start)
{
    const AllSignalsBlocked blocked;
    pthread_t thread;
    return blocked && system::pthread_create(&thread, &attributes, &run_thread, start) == 0;
}

} // namespace

bool start_thread(ThreadFunction function, void* context, std::size_t stack_bytes)
{
    auto start = std::make_unique<ThreadStart>(ThreadStart{function, context});
    pthread_attr_t attributes;
    if (system::pthread_attr_init(&attributes) != 0) {
        return false;
    }
    const int error = system::pthread_attr_setdetachstate(&attributes, PTHREAD_CREATE_DETACHED);
    const bool started = error == 0 && set_stack_size(attributes, stack_bytes) &&
                         create_thread(attributes, start.get());
    system::pthread_attr_destroy(&attributes);
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
    static thread_local const auto id = static_cast<std::uint32_t>(system::gettid());
    return id;
}

void sleep_ms(std::uint32_t time_ms)
{
    timespec left{};
    left.tv_sec = static_cast<time_t>(time_ms / 1000);
    left.tv_nsec = static_cast<long>(time_ms % 1000) * 1'000'000;
    while (system::clock_nanosleep(CLOCK_MONOTONIC, 0, &left, &left) == EINTR) {
    }
}

void yield_thread()
{
    system::sched_yield();
}

std::int64_t unix_time_seconds()
{
    return system::time(nullptr);
}

} // namespace platform
