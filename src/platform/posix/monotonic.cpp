#include "platform/posix/monotonic.h"

#include "platform/posix/system_calls.h"

namespace platform
{

namespace
{

constexpr std::int64_t ns_per_ms = 1'000'000;
constexpr std::int64_t ns_per_s = 1'000'000'000;

bool read_clock(timespec& time)
{
    return system::clock_gettime(CLOCK_MONOTONIC, &time) == 0;
}

} // namespace

timespec monotonic_deadline(std::uint32_t time_ms)
{
    timespec deadline{};
    if (!read_clock(deadline)) {
        return deadline; // long past: no wait is drawn out
    }
    const std::int64_t ns = deadline.tv_nsec + std::int64_t{time_ms % 1000} * ns_per_ms;
    deadline.tv_sec += time_ms / 1000 + ns / ns_per_s;
    deadline.tv_nsec = ns % ns_per_s;
    return deadline;
}

std::int64_t remaining_ms(const timespec& deadline)
{
    timespec time{};
    if (!read_clock(time)) {
        return 0;
    }
    const std::int64_t ns =
        (deadline.tv_sec - time.tv_sec) * ns_per_s + (deadline.tv_nsec - time.tv_nsec);
    return ns <= 0 ? 0 : (ns + ns_per_ms - 1) / ns_per_ms;
}

} // namespace platform
