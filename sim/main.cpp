#include <chrono>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <memory>
#include <utility>

#include <asio.hpp>
#include <fcntl.h>
#include <fmt/format.h>
#include <unistd.h>

#include "sim/control.h"
#include "sim/faults.h"
#include "sim/log.h"
#include "sim/options.h"
#include "sim/refusal.h"
#include "sim/scenario.h"
#include "sim/server.h"
#include "sim/station.h"
#include "sim/store_file.h"

namespace
{

using namespace veltosim;

Scenario make_scenario(const Options& options)
{
    Scenario scenario =
        options.scenario.empty() ? default_scenario() : read_scenario(options.scenario);
    for (const Clip& clip : options.clips) {
        scenario.clips.add_clip(clip);
    }
    return scenario;
}

Station make_station(const Options& options)
{
    Scenario scenario = make_scenario(options);
    const auto now = std::chrono::steady_clock::now();
    auto file = options.store.empty() ? nullptr : std::make_unique<StoreFile>(options.store);
    if (file && !file->is_new()) {
        ClipStore clips = file->load();
        Station station(options.name, *options.standard, std::move(clips), std::move(file));
        load_possible_channels(station, scenario.channels, now);
        return station;
    }
    if (file) {
        file->seed(scenario.clips);
    }
    Station station(options.name, *options.standard, std::move(scenario.clips), std::move(file));
    load_channels(station, scenario.channels, now);
    return station;
}

// Whoever started the program may have closed its standard input: no other file is to get its
// number.
void keep_input()
{
    if (fcntl(STDIN_FILENO, F_GETFD) < 0) {
        open("/dev/null", O_RDONLY);
    }
}

// Whoever started the program may have stopped reading: that is no failure.
void print(const std::string& text)
{
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

int serve(const Options& options, Station& station)
{
    asio::io_context context(1);
    const Log log(options.trace);
    Server server(context, options.address, station, log, options.report_rate);

    for (const std::string& line : options.faults) {
        obey_control(station.faults, line);
    }
    const Control control(context, STDIN_FILENO, [&](const std::string& line) {
        print(obey_control(station.faults, line) + "\n");
    });

    asio::signal_set signals(context, SIGINT, SIGTERM);
    signals.async_wait([&](const std::error_code&, int) { server.stop(); });

    print(fmt::format("listening on {}:{}\n", options.address.to_string(), server_port));
    context.run();
    print(channel_table(station, std::chrono::steady_clock::now()));
    return exit_ok;
}

int report(const std::exception& problem, int exit_code)
{
    fmt::print(stderr, "veltosim: {}\n", problem.what());
    return exit_code;
}

int report(const Options& options, const asio::system_error& problem)
{
    const bool in_use = problem.code() == asio::error::address_in_use;
    fmt::print(stderr, "veltosim: cannot listen on {}:{}: {}{}\n", options.address.to_string(),
               server_port, problem.code().message(),
               in_use ? "; another server runs there: stop it, or give another --address" : "");
    return in_use ? exit_address_in_use : exit_network;
}

} // namespace

int main(int argc, char** argv)
{
    std::signal(SIGPIPE, SIG_IGN);
    keep_input();
    int exit_code = exit_ok;
    const auto options = read_options(argc, argv, std::cout, std::cerr, exit_code);
    if (!options) {
        return exit_code;
    }
    try {
        Station station = make_station(*options);
        return serve(*options, station);
    } catch (const asio::system_error& problem) {
        return report(*options, problem);
    } catch (const StoreError& problem) {
        return report(problem, exit_store);
    } catch (const ScenarioError& problem) {
        return report(problem, exit_scenario);
    } catch (const Refusal& problem) { // a clip of the command line replaced one that is used
        return report(problem, exit_scenario);
    }
}
