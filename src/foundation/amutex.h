#pragma once

#include "foundation/aref.h"
#include "platform/platform.h"

// A recursive mutex. One that could not be created stays unusable, and is not waited for.
class AMutex
{
public:
    AMutex() : handle(platform::create_mutex()) {}
    AMutex(const AMutex&) = delete;
    AMutex& operator=(const AMutex&) = delete;
    ~AMutex();

    platform::Mutex* handle;
};

// Holds an AMutex. Copies share the hold, and the last one releases it. A guard that could not be
// had is empty, and the caller goes on without the lock.
class AMutexLock
{
public:
    AMutexLock() = default;
    explicit AMutexLock(AMutex* mutex);

    bool is_empty() const { return !hold; }
    void clear() { hold.clear(); }

private:
    class Hold
    {
    public:
        explicit Hold(AMutex* held) : mutex(held) {}
        Hold(const Hold&) = delete;
        Hold& operator=(const Hold&) = delete;
        ~Hold();

    private:
        AMutex* mutex;
    };

    ARef<Hold> hold;
};
