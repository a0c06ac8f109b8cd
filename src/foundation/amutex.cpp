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
    if (result == platform::WaitResult::signalled) {
        sole = mutex;
    }
}

AMutexLock& AMutexLock::operator=(const AMutexLock& other)
{
    if (this != &other) {
        const ARef<Hold> hold = other.share(); // before the old hold goes
        clear();
        shared = hold;
    }
    return *this;
}

void AMutexLock::clear()
{
    if (sole != nullptr) {
        platform::unlock_mutex(std::exchange(sole, nullptr)->handle);
    }
    shared.clear();
}

const ARef<AMutexLock::Hold>& AMutexLock::share() const
{
    if (sole != nullptr) {
        shared = ARef<Hold>::create(sole);
        if (shared) {
            sole = nullptr;
        }
    }
    return shared;
}

AMutexLock::Hold::~Hold()
{
    platform::unlock_mutex(mutex->handle);
}
