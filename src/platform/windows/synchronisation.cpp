#include "platform/platform.h"
#include "platform/windows/system_calls.h"

namespace platform
{

// A Mutex* or Semaphore* is the system's handle itself.

static_assert(static_cast<DWORD>(WaitResult::signalled) == WAIT_OBJECT_0);
static_assert(static_cast<DWORD>(WaitResult::interrupted) == WAIT_IO_COMPLETION);
static_assert(static_cast<DWORD>(WaitResult::timed_out) == WAIT_TIMEOUT);
static_assert(static_cast<DWORD>(WaitResult::failed) == WAIT_FAILED);
static_assert(infinite == INFINITE);

Mutex* create_mutex()
{
    return static_cast<Mutex*>(system::CreateMutexW(nullptr, FALSE, nullptr));
}

void destroy_mutex(Mutex* mutex)
{
    if (mutex != nullptr) {
        system::close_mutex(mutex);
    }
}

WaitResult lock_mutex(Mutex* mutex)
{
    return static_cast<WaitResult>(system::wait_for_mutex(mutex, INFINITE, FALSE));
}

void unlock_mutex(Mutex* mutex)
{
    system::ReleaseMutex(mutex);
}

Semaphore* create_semaphore(std::uint32_t initial, std::uint32_t maximum)
{
    return static_cast<Semaphore*>(system::CreateSemaphoreW(nullptr, static_cast<LONG>(initial),
                                                            static_cast<LONG>(maximum), nullptr));
}

void destroy_semaphore(Semaphore* semaphore)
{
    if (semaphore != nullptr) {
        system::close_semaphore(semaphore);
    }
}

WaitResult wait_semaphore(Semaphore* semaphore, std::uint32_t time_ms)
{
    return static_cast<WaitResult>(system::wait_for_semaphore(semaphore, time_ms, TRUE));
}

ReleaseResult release_semaphore(Semaphore* semaphore)
{
    if (system::ReleaseSemaphore(semaphore, 1, nullptr)) {
        return ReleaseResult::released;
    }
    if (GetLastError() != ERROR_TOO_MANY_POSTS) {
        return ReleaseResult::failed;
    }
    SetLastError(0);
    return ReleaseResult::too_many_posts;
}

} // namespace platform
