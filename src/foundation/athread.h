#pragma once

#include "foundation/bsem.h"
#include "platform/platform.h"

// A thread that can be waited for. The object must not go before `join` has returned, if the thread
// was started.
class AThread
{
public:
    AThread() = default;
    AThread(const AThread&) = delete;
    AThread& operator=(const AThread&) = delete;

    // Once. False, with nothing started, when the system refuses.
    bool start(platform::ThreadFunction function, void* context);
    // Returns when the function has returned; from then on the thread touches nothing of ours.
    void join();

private:
    static void run(void* thread);

    platform::ThreadFunction body = nullptr;
    void* body_context = nullptr;
    BSem ended{false};
};
