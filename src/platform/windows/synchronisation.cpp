#include "platform/platform.h"
#include "platform/windows/system.h"

namespace platform
{

// A Mutex* or Semaphore* is the system's handle itself.

static_assert(static_cast<DWORD>(WaitResult::signalled) == WAIT_OBJECT_0);
static_assert(static_cast<DWORD>(WaitResult::interrupted) == WAIT_IO_COMPLETION);
static_assert(static_cast<DWORD>(WaitResult::timed_out) == WAIT_TIMEOUT);
static_assert(static_cast<DWORD>(WaitResult::failed) == WAIT_FAILED);
static_assert(infinite == INFINITE);

namespace
{

void close_handle(HANDLE handle)
{
    if (handle != nullptr) {
        CloseHandle(handle);
    }
}

} // namespace

Mutex* create_mutex()
{
    return static_cast<Mutex*>(CreateMutexW(nullptr, FALSE, nullptr));
}

void destroy_mutex(Mutex* mutex)
{
    close_handle(mutex);
}

WaitResult lock_mutex(Mutex* mutex)
{
    return static_cast<WaitResult>(WaitForSingleObjectEx(mutex, INFINITE, FALSE));
}

void unlock_mutex(Mutex* mutex)
{
    ReleaseMutex(mutex);
}

Semaphore* create_semaphore(std::uint32_t initial, std::uint32_t maximum)
{
    return static_cast<Semaphore*>(
        CreateSemaphoreW(nullptr, static_cast<LONG>(initial), static_cast<LONG>(maximum), nullptr));
}

void destroy_semaphore(Semaphore* semaphore)
{
    close_handle(semaphore);
}

WaitResult wait_semaphore(Semaphore* semaphore, std::uint32_t time_ms)
{
    return static_cast<WaitResult>(WaitForSingleObjectEx(semaphore, time_ms, TRUE));
}

ReleaseResult release_semaphore(Semaphore* semaphore)
{
    if (ReleaseSemaphore(semaphore, 1, nullptr)) {
        return ReleaseResult::released;
    }
    if (GetLastError() != ERROR_TOO_MANY_POSTS) {
        return ReleaseResult::failed;
    }
    SetLastError(0);
    return ReleaseResult::too_many_posts;
}

} // namespace platform
