#include "connection/velto.h"
#include "timecode_reports.h"

#include <benchmark/benchmark.h>

#include <algorithm>
#include <string>

namespace
{

constexpr std::size_t block_bytes = 2048; // as the worker receives them

// The road of a report, from its bytes to the channel cache, without a socket.
void ReportToCache(benchmark::State& state)
{
    constexpr std::uint32_t reports = 64;
    std::string stream;
    for (std::uint32_t i = 0; i < reports; ++i) {
        append_timecode_report(stream, static_cast<char>('A' + i % channel_count), 1000000 + i);
    }
    VeltoConnObject connection;
    for (auto _ : state) {
        for (std::size_t at = 0; at < stream.size(); at += block_bytes) {
            connection.feed_bytes(stream.data() + at, std::min(block_bytes, stream.size() - at));
        }
    }
    if (!connection.message_ok ||
        connection.channel_state(7)->timecode.value.position != 1000000 + reports - 1) {
        state.SkipWithError("the reports did not arrive");
    }
    state.SetItemsProcessed(state.iterations() * reports);
}

BENCHMARK(ReportToCache);

} // namespace
