#include "round_trip.h"

#include <cstdlib>

// VELTO_BENCH_SMOKE shows in a second that it runs; its figures mean nothing.
int main()
{
    const bool smoke = std::getenv("VELTO_BENCH_SMOKE") != nullptr;
    measure_round_trips(smoke);
    measure_rates(smoke);
}
