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
    AMutexLock(const AMutexLock& other) : shared(other.share()) {}
    AMutexLock& operator=(const AMutexLock& other);
    ~AMutexLock() { clear(); }

    bool is_empty() const { return sole == nullptr && !shared; }
    void clear();

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

    const ARef<Hold>& share() const;

    // The counted hold is made by the first copy: most guards are never copied, and they are taken
    // on every path.
    mutable AMutex* sole = nullptr;
    mutable ARef<Hold> shared;
};
