#include "stress/soak.h"

#include <algorithm>
#include <cstdio>

#include <fmt/format.h>
#include <malloc.h>

namespace stress
{

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

namespace
{

constexpr std::uint32_t line_seconds = 10;
constexpr std::size_t clients = 12;

// The library keeps free blocks for texts and messages, up to a number of each: four times 1024 of
// 1 KB and 4096 of 64 and 128 bytes each. A long run fills these pools.
constexpr std::size_t pools_kb = 4 * (1024 + 4096 * (64 + 128) / 1024);
// The allocator's own ways, between two moments at which nothing is open.
constexpr std::size_t heap_tolerance_kb = 256;
constexpr std::size_t resident_tolerance_kb = 4096;
// The last error text of a thread is kept for good, and each store that writes has a thread.
constexpr std::uint64_t kept_bytes_per_writer = 160;

#ifdef VELTO_SANITIZED
constexpr bool memory_counts = false; // the sanitizer keeps what is freed
#else
constexpr bool memory_counts = true;
#endif

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
    explicit Soak(const Table& to) : table(to) {}

    // A run from its setting up to its last closing; what the process has when nothing is open.
    Figures stretch(const Options& options)
    {
        {
            Run run(options);
            run.begin();
            watch(run);
            run.finish();
            findings += run.verdict.findings();
            writers = run.world.writers;
        }
        malloc_trim(0);
        return figures();
    }

    void judge_growth(const Figures& before, const Figures& after)
    {
        const std::size_t kept_kb = writers * kept_bytes_per_writer / 1024;
        compare("threads", before.threads, after.threads, 0);
        compare("descriptors", before.descriptors, after.descriptors, 0);
        if (memory_counts) {
            compare("heap, KB", before.heap_kb, after.heap_kb,
                    heap_tolerance_kb + pools_kb + kept_kb);
            compare("resident, KB", before.resident_kb, after.resident_kb,
                    resident_tolerance_kb + pools_kb + kept_kb);
        }
        table.print(
            fmt::format("kept on purpose: pools of free blocks, {} KB at most; the last error "
                        "texts of the threads of {} stores that write, {} KB at most",
                        pools_kb, writers, kept_kb));
    }

    bool print_verdict() const
    {
        table.print(findings == 0 ? "verdict: nothing lost, nothing grown"
                                  : fmt::format("verdict: {} findings", findings));
        return findings == 0;
    }

private:
    void watch(const Run& run) const
    {
        table.print(
            fmt::format("{:>6} {:>8} {:>7} {:>7} {:>10} {:>10} {:>8} {:>8} {:>8} {:>11} {:>5}", "s",
                        "calls/s", "faults", "links", "calls", "reports", "RSS KB", "heap KB",
                        "threads", "descriptors", "left"));
        const auto start = Clock::now();
        std::uint64_t calls_before = run.world.calls;
        for (std::uint32_t from = 0; from < run.options.seconds;) {
            const std::uint32_t to = std::min(from + line_seconds, run.options.seconds);
            std::this_thread::sleep_until(start + std::chrono::seconds(to));
            print_line(run, to, (run.world.calls - calls_before) / (to - from));
            calls_before = run.world.calls;
            from = to;
        }
    }

    void print_line(const Run& run, std::uint32_t second, std::uint64_t calls_per_second) const
    {
        const Figures now = figures();
        table.print(fmt::format(
            "{:>6} {:>8} {:>7} {:>7} {:>10} {:>10} {:>8} {:>8} {:>8} {:>11} {:>5}", second,
            calls_per_second, run.breaker ? run.breaker->faults_done.load() : 0,
            run.doors.links.load(), run.world.calls.load(), run.doors.reports.load(),
            now.resident_kb, now.heap_kb, now.threads, now.descriptors, left_links(run)));
    }

    // Links that no connection has any more, about: some come up or go at the moment.
    static std::size_t left_links(const Run& run)
    {
        const std::size_t all = link_descriptors(run.doors).size();
        return all > clients ? all - clients : 0;
    }

    void compare(const char* what, std::size_t before, std::size_t after, std::size_t more)
    {
        table.print(fmt::format("{:<14} {:>8} when the first minute was over and all closed, {:>8} "
                                "at the end, {} more allowed",
                                what, before, after, more));
        if (after > before + more) {
            table.print(fmt::format("FINDING: {} has grown", what));
            ++findings;
        }
    }

    const Table& table;
    std::uint64_t findings = 0;
    std::uint64_t writers = 0;
};

} // namespace

int soak(const Options& options, const std::string& table_file)
{
    const Table table(table_file);
    Options steady = options;
    steady.limits.connections = clients;
    steady.limits.fewest_connections = clients - 1;
    Soak run(table);
    steady.seconds = std::min(60u, options.seconds / 3);
    const Figures before = run.stretch(steady);
    steady.seconds = options.seconds - steady.seconds;
    ++steady.seed;
    const Figures after = run.stretch(steady);
    run.judge_growth(before, after);
    return run.print_verdict() ? 0 : 1;
}

} // namespace stress
