#pragma once

#include <time.h>

#include <chrono>
#include <cstddef>
#include <vector>

// What all measurements share.

using Clock = std::chrono::steady_clock;

// Ends the program unless `good`: a figure of something that failed would mean nothing.
void require(bool good, const char* what);

double seconds_since(Clock::time_point start);
// CPU time used so far: of the process, or of the calling thread.
double cpu_seconds(clockid_t clock);
// What the allocator has given out, in all its arenas.
double allocated_bytes();

// Reorders `values`. The fraction 0.5 is the median.
double percentile(std::vector<double>& values, double fraction);
double median(std::vector<double>& values);
