#include "flood.h"
#include "getters.h"
#include "names.h"
#include "round_trip.h"
#include "scale.h"
#include "stores.h"

#include <cstdlib>
#include <regex>
#include <string>

namespace
{

struct Measurement {
    const char* name;
    void (*run)(bool smoke);
};

constexpr Measurement measurements[] = {
    {"round_trips", measure_round_trips},
    {"rates", measure_rates},
    {"flood", measure_flood},
    {"getters", measure_getters},
    {"names", measure_names},
    {"store_writes", measure_store_writes},
    {"store_scan", measure_store_scan},
    {"scale", measure_scale},
};

// Takes the filter that the other program's framework takes, and lets its other options pass.
std::regex wanted_names(int argc, char** argv)
{
    static const std::string option = "--benchmark_filter=";
    std::string pattern;
    for (int i = 1; i < argc; ++i) {
        const std::string argument = argv[i];
        if (argument.compare(0, option.size(), option) == 0) {
            pattern = argument.substr(option.size());
        }
    }
    return std::regex(pattern);
}

} // namespace

// VELTO_BENCH_SMOKE shows in a second that it runs; its figures mean nothing.
int main(int argc, char** argv)
{
    if (run_part_of_scale(argc, argv)) {
        return 0;
    }
    const bool smoke = std::getenv("VELTO_BENCH_SMOKE") != nullptr;
    const std::regex wanted = wanted_names(argc, argv);
    for (const Measurement& measurement : measurements) {
        if (std::regex_search(measurement.name, wanted)) {
            measurement.run(smoke);
        }
    }
}
