#include "measure.h"

#include <malloc.h>

#include <algorithm>
#include <cstdio>
#include <cstdlib>

void require(bool good, const char* what)
{
    if (!good) {
        std::fprintf(stderr, "velto_bench: %s\n", what);
        std::exit(1);
    }
}

double seconds_since(Clock::time_point start)
{
    return std::chrono::duration<double>(Clock::now() - start).count();
}

double cpu_seconds(clockid_t clock)
{
    timespec time{};
    clock_gettime(clock, &time);
    return static_cast<double>(time.tv_sec) + 1e-9 * static_cast<double>(time.tv_nsec);
}

double allocated_bytes()
{
    const struct mallinfo2 info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

double percentile(std::vector<double>& values, double fraction)
{
    const auto last = static_cast<double>(values.size() - 1);
    const auto nth = values.begin() + static_cast<std::ptrdiff_t>(fraction * last);
    std::nth_element(values.begin(), nth, values.end());
    return *nth;
}

double median(std::vector<double>& values)
{
    return percentile(values, 0.5);
}
