#include "platform/platform.h"
#include "platform/windows/system_calls.h"

#include <limits>

namespace platform
{

namespace
{

// A thread of the library may be in its code for as long as the process lives, whoever unloads it.
bool stay_loaded()
{
    constexpr DWORD by_address_for_good =
        GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS | GET_MODULE_HANDLE_EX_FLAG_PIN;
    static const int inside = 0;
    HMODULE module = nullptr;
    return system::GetModuleHandleExW(by_address_for_good, reinterpret_cast<LPCWSTR>(&inside),
                                      &module) != FALSE;
}

} // namespace

bool start_thread(ThreadFunction function, void* context, std::size_t stack_bytes)
{
    if (stack_bytes > std::numeric_limits<unsigned>::max() || !stay_loaded()) {
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
