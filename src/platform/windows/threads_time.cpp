#include "platform/platform.h"
#include "platform/windows/system_calls.h"

#include <limits>

namespace platform
{

bool start_thread(ThreadFunction function, void* context, std::size_t stack_bytes)
{
    if (stack_bytes > std::numeric_limits<unsigned>::max()) {
        return false;
    }
    const auto none = static_cast<std::uintptr_t>(-1);
    return system::_beginthread(function, static_cast<unsigned>(stack_bytes), context) != none;
}

void set_thread_priority(int priority)
{
    system::SetThreadPriority(GetCurrentThread(), priority);
}

std::uint32_t current_thread_id()
{
    return GetCurrentThreadId();
}

void sleep_ms(std::uint32_t time_ms)
{
    Sleep(time_ms);
}

void yield_thread()
{
    Sleep(0);
}

std::int64_t unix_time_seconds()
{
    return system::_time64(nullptr);
}

} // namespace platform
