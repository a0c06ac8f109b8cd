#include "stress/soak.h"

#include <algorithm>
#include <cstdio>
#include <iterator>

#include <fmt/format.h>

namespace stress
{

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace
{

constexpr std::uint32_t line_seconds = 10;
constexpr std::size_t clients = 12;

// What may come and go between two looks: stores and connections are opened and closed all the
// time, each with threads and a link.
constexpr std::size_t heap_tolerance_kb = 1024;
constexpr double resident_tolerance = 0.10;
constexpr std::size_t resident_tolerance_kb = 4096;
constexpr std::size_t thread_tolerance = 12;
constexpr std::size_t descriptor_tolerance = 24;
// The last error text of a thread is kept for good, and each store that writes has a thread.
constexpr double kept_bytes_per_writer = 256;

#ifdef VELTO_SANITIZED
constexpr bool memory_counts = false; // the sanitizer keeps what is freed
#else
constexpr bool memory_counts = true;
#endif

struct Sample {
    Figures has;
    std::size_t left_links = 0;
    std::uint64_t writers = 0;
};

using Samples = std::vector<Sample>;

// The middle of what a figure was in some stretch of time.
template <typename Figure>
std::size_t middle(Samples::const_iterator from, Samples::const_iterator to, Figure figure)
{
    std::vector<std::size_t> values;
    std::transform(from, to, std::back_inserter(values), figure);
    const auto half = values.begin() + static_cast<std::ptrdiff_t>(values.size() / 2);
    std::nth_element(values.begin(), half, values.end());
    return values.empty() ? 0 : *half;
}

class Table
{
public:
    explicit Table(const std::string& name)
        : file(name.empty() ? nullptr : std::fopen(name.c_str(), "w"))
    {
    }
    Table(const Table&) = delete;
    Table& operator=(const Table&) = delete;
    ~Table()
    {
        if (file != nullptr) {
            std::fclose(file);
        }
    }

    void print(const std::string& line) const
    {
        for (std::FILE* out : {stdout, file}) {
            if (out != nullptr) {
                fmt::print(out, "{}\n", line);
                std::fflush(out);
            }
        }
    }

private:
    std::FILE* const file;
};

class Soak
{
public:
    Soak(Run& watched, const Table& to) : run(watched), table(to) {}

    void watch()
    {
        table.print(fmt::format("{:>6} {:>8} {:>7} {:>10} {:>10} {:>9} {:>9} {:>8} {:>11} {:>5}",
                                "s", "calls/s", "faults", "calls", "reports", "RSS KB", "heap KB",
                                "threads", "descriptors", "left"));
        const auto start = Clock::now();
        std::uint64_t calls_before = run.world.calls;
        for (std::uint32_t second = 1; second <= run.options.seconds; ++second) {
            std::this_thread::sleep_until(start + std::chrono::seconds(second));
            samples.push_back(look());
            if (second % line_seconds == 0 || second == run.options.seconds) {
                const std::uint32_t since =
                    second % line_seconds == 0 ? line_seconds : second % line_seconds;
                print_line(second, (run.world.calls - calls_before) / since);
                calls_before = run.world.calls;
            }
        }
    }

    // What was there after the first minute, of a shorter run after its first third, beside what
    // was there at the end: the middle of a minute each.
    void judge_growth() const
    {
        const auto minute =
            static_cast<std::ptrdiff_t>(std::min<std::size_t>(60, samples.size() / 3));
        const auto kept_kb = static_cast<std::size_t>(
            static_cast<double>(samples.back().writers -
                                samples[static_cast<std::size_t>(minute)].writers) *
            kept_bytes_per_writer / 1024);
        const auto compare = [&](const char* what, auto figure, double share, std::size_t more) {
            const std::size_t before =
                middle(samples.begin() + minute, samples.begin() + 2 * minute, figure);
            const std::size_t after = middle(samples.end() - minute, samples.end(), figure);
            const auto most =
                static_cast<std::size_t>(static_cast<double>(before) * (1 + share)) + more;
            table.print(
                fmt::format("{:<14} {:>9} after the beginning, {:>9} at the end, {} allowed", what,
                            before, after, most));
            run.verdict.check(after <= most, std::string(what) + " has grown");
        };
        compare(
            "threads", [](const Sample& at) { return at.has.threads; }, 0, thread_tolerance);
        compare(
            "descriptors", [](const Sample& at) { return at.has.descriptors - at.left_links; }, 0,
            descriptor_tolerance);
        if (memory_counts) {
            compare(
                "heap, KB", [](const Sample& at) { return at.has.heap_kb; }, 0,
                heap_tolerance_kb + kept_kb);
            compare(
                "resident, KB", [](const Sample& at) { return at.has.resident_kb; },
                resident_tolerance, resident_tolerance_kb + kept_kb);
        }
        table.print(fmt::format("kept on purpose: error texts of the threads of {} stores that "
                                "write, {} KB at most",
                                samples.back().writers, kept_kb));
    }

private:
    // Of the links of all doors those that no connection has any more.
    Sample look() const
    {
        Sample now;
        now.has = figures();
        std::size_t up = 0;
        for (const auto& connection : run.world.connections.all()) {
            up += velto_connected(connection->handle);
        }
        const std::size_t links = link_descriptors(run.doors).size();
        now.left_links = links > up ? links - up : 0;
        now.writers = run.world.writers;
        return now;
    }

    void print_line(std::uint32_t second, std::uint64_t calls_per_second) const
    {
        const Sample& now = samples.back();
        table.print(
            fmt::format("{:>6} {:>8} {:>7} {:>10} {:>10} {:>9} {:>9} {:>8} {:>11} {:>5}", second,
                        calls_per_second, run.breaker ? run.breaker->faults_done.load() : 0,
                        run.world.calls.load(), run.doors.reports.load(), now.has.resident_kb,
                        now.has.heap_kb, now.has.threads, now.has.descriptors, now.left_links));
    }

    Run& run;
    const Table& table;
    Samples samples;
};

} // namespace

int soak(const Options& options, const std::string& table_file)
{
    const Table table(table_file);
    Options steady = options;
    steady.limits.connections = clients;
    steady.limits.fewest_connections = clients - 1;
    Run run(steady);
    run.begin();
    Soak watched(run, table);
    watched.watch();
    run.finish();
    watched.judge_growth();
    const bool good = run.verdict.findings() == 0;
    table.print(good ? "verdict: nothing lost, nothing grown"
                     : fmt::format("verdict: {} findings", run.verdict.findings()));
    return good ? 0 : 1;
}

} // namespace stress
