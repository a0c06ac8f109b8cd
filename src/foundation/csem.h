#pragma once

#include "platform/platform.h"

// A counting semaphore. One that could not be created reports every wait and fails it.
class CSem
{
public:
    CSem(std::uint32_t initial, std::uint32_t maximum);
    CSem(const CSem&) = delete;
    CSem& operator=(const CSem&) = delete;
    ~CSem();

    bool is_usable() const { return handle != nullptr; }
    // True when a count was taken, false when `time_ms` ran out. `platform::infinite` waits for
    // ever.
    bool wait(std::uint32_t time_ms);

protected:
    platform::Semaphore* handle;
};
