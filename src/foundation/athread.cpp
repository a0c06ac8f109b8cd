#include "foundation/athread.h"

#include <new>

bool AThread::start(platform::ThreadFunction function, void* context)
{
    body = function;
    body_context = context;
    try {
        return ended.is_usable() && platform::start_thread(&AThread::run, this, 0);
    } catch (const std::bad_alloc&) {
        return false;
    }
}

void AThread::join()
{
    while (!ended.wait(platform::infinite)) {
        platform::sleep_ms(1); // the system failed the wait; the thread still uses the object
    }
}

void AThread::run(void* thread)
{
    auto* self = static_cast<AThread*>(thread);
    self->body(self->body_context);
    self->ended.signal();
}
