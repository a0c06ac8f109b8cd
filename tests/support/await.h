#pragma once

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <future>
#include <utility>

// No test waits as long as this, unless what it waits for never comes.
inline constexpr std::chrono::seconds hang_bound{60};

// Ends the program, since the thread behind a hang cannot be ended.
[[noreturn]] inline void report_hang(const char* awaited)
{
    std::fprintf(stderr, "hang: %s has not come\n", awaited);
    std::abort();
}

// The result of `future`.
template <typename T>
T await(std::future<T> future)
{
    if (future.wait_for(hang_bound) != std::future_status::ready) {
        report_hang("what the test waits for");
    }
    return future.get();
}

template <typename Function>
auto in_thread(Function function)
{
    return std::async(std::launch::async, std::move(function));
}
