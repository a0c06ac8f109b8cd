#pragma once

#include "platform/platform.h"

#include <atomic>
#include <thread>

#include <pthread.h>
#include <signal.h>

// Keeps interrupting the thread that makes it, as an application's timer might, until it ends. Its
// handler asks for no restart of system calls.
class SignalStorm
{
public:
    SignalStorm()
    {
        handled = 0;
        sent = 0;
        struct sigaction action = {};
        action.sa_handler = [](int) { ++handled; };
        sigaction(SIGUSR1, &action, &before);
        storm = std::thread([this, target = pthread_self()] {
            while (!done) {
                pthread_kill(target, SIGUSR1);
                ++sent;
                platform::sleep_ms(1);
            }
        });
    }
    SignalStorm(const SignalStorm&) = delete;
    SignalStorm& operator=(const SignalStorm&) = delete;
    ~SignalStorm()
    {
        done = true;
        storm.join();
        sigaction(SIGUSR1, &before, nullptr);
    }

    // A sanitizer runs the handler only at calls that it knows, so a wait that it does not know may
    // be interrupted many times before any of them counts as handled.
    static inline std::atomic<int> sent{0};
    static inline std::atomic<int> handled{0};

private:
    std::atomic<bool> done{false};
    struct sigaction before = {};
    std::thread storm;
};
