// The simulator's scenario files: each is either good or refused with a place and a reason.

#include "fuzz/check.h"
#include "sim/scenario.h"

#include "sim/refusal.h"
#include "sim/standards.h"

namespace
{

using namespace veltosim;

void load(const Scenario& scenario)
{
    Station station("studio", *find_standard("1080_50i"), scenario.clips);
    station.clock = [] { return std::uint64_t{5000}; };
    try {
        load_channels(station, scenario.channels, TimePoint{});
    } catch (const Refusal& refusal) {
        FUZZ_CHECK(refusal.what()[0] != '\0');
    }
    FUZZ_CHECK(!channel_table(station, TimePoint{}).empty());
}

} // namespace

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    try {
        load(parse_scenario(fuzz::text_of(data, size), "input"));
    } catch (const ScenarioError& error) {
        FUZZ_CHECK(std::string_view(error.what()).starts_with("input:"));
    }
    return 0;
}
