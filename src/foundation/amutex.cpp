#include "foundation/amutex.h"

AMutex::~AMutex()
{
    if (handle != nullptr) {
        platform::destroy_mutex(handle);
    }
}

AMutexLock::AMutexLock(AMutex* mutex)
{
    if (mutex == nullptr || mutex->handle == nullptr) {
        return;
    }
    platform::WaitResult result;
    do {
        result = platform::lock_mutex(mutex->handle);
    } while (result == platform::WaitResult::interrupted);
    if (result != platform::WaitResult::signalled) {
        return;
    }
    hold = ARef<Hold>::create(mutex);
    if (!hold) {
        platform::unlock_mutex(mutex->handle); // nothing is left that would do it later
    }
}

AMutexLock::Hold::~Hold()
{
    platform::unlock_mutex(mutex->handle);
}
