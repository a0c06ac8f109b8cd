#include "stress/soak.h"

#include <iostream>

#include <CLI/CLI.hpp>
#include <fmt/format.h>

namespace
{

struct CommandLine {
    stress::Options options;
    bool soak = false;
    std::string table;
};

void declare(CLI::App& app, CommandLine& line)
{
    stress::Options& options = line.options;
    app.add_option("--seed", options.seed, "What the threads draw from")->capture_default_str();
    app.add_option("--seconds", options.seconds, "How long")->capture_default_str();
    app.add_option("--threads", options.threads, "Threads that use the library")
        ->capture_default_str()
        ->check(CLI::Range(1u, stress::most_threads - 2));
    app.add_option("--connections", options.limits.connections, "Connections that they share")
        ->capture_default_str();
    app.add_option("--fault-ms", options.fault_ms, "Time between two faults, on average; 0: none")
        ->capture_default_str();
    app.add_option("--patience", options.patience,
                   "Seconds without a step after which a thread counts as stuck")
        ->capture_default_str();
    app.add_option("--only", options.only, "Do only that the name of which contains this text")
        ->check([](const std::string& text) {
            return stress::actions_with(text).empty() ? "there is no such action" : "";
        });
    app.add_flag("--print-actions", options.print_actions, "Print what each thread does");
    app.add_flag("--soak", line.soak, "Print figures as it runs, and a verdict on what has grown");
    app.add_option("--table", line.table, "File for the soak's figures too");
    app.add_flag("--hang", options.hangs, "One thread never returns")->group("");
}

void print_results(const stress::World& world)
{
    fmt::print("results:");
    for (std::size_t code = 0; code < world.results.size(); ++code) {
        fmt::print(" {}: {}", code, world.results[code].load());
    }
    fmt::print("; {} notices, {} changes\n", world.notices.load(), world.changes.load());
}

int stress_run(const stress::Options& options)
{
    stress::Run run(options);
    run.begin();
    std::this_thread::sleep_for(std::chrono::seconds(options.seconds));
    run.finish();
    print_results(run.world);
    fmt::print("{} calls, {} reports, {} links, {} faults, {} findings\n", run.world.calls.load(),
               run.doors.reports.load(), run.doors.links.load(),
               run.breaker ? run.breaker->faults_done.load() : 0, run.verdict.findings());
    return run.verdict.findings() == 0 ? 0 : 1;
}

} // namespace

int main(int argc, char** argv)
{
    CLI::App app("Uses the library from many threads at once while everything breaks, and holds "
                 "what it does against a model.",
                 "velto_stress");
    CommandLine line;
    declare(app, line);
    CLI11_PARSE(app, argc, argv);
    fmt::print("velto_stress {}\n", line.options.to_text());
    std::cout.flush();
    const int status =
        line.soak ? stress::soak(line.options, line.table) : stress_run(line.options);
    if (status != 0) {
        fmt::print("FAILED; to run it again: velto_stress {}{}\n", line.options.to_text(),
                   line.soak ? " --soak" : "");
    }
    return status;
}
