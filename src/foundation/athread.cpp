#include "foundation/athread.h"

bool AThread::start(platform::ThreadFunction function, void* context)
{
    body = function;
    body_context = context;
    return platform::start_thread(&AThread::run, this, 0);
}

void AThread::run(void* thread)
{
    auto* self = static_cast<AThread*>(thread);
    self->body(self->body_context);
    self->ended.signal();
}
