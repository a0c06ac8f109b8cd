#pragma once

#include <cstdint>

#include <time.h>

// Points in time on the clock that a change of the wall clock does not move. When the system does
// not tell its time, all of them are past.
namespace platform
{

timespec monotonic_deadline(std::uint32_t time_ms);

// Rounded up, so that waiting for the result ends at the deadline or behind it; 0 when it is past.
std::int64_t remaining_ms(const timespec& deadline);

} // namespace platform
