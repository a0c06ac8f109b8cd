#include <chrono>
#include <csignal>
#include <cstdio>
#include <iostream>
#include <utility>

#include <asio.hpp>
#include <fmt/format.h>

#include "sim/log.h"
#include "sim/options.h"
#include "sim/server.h"
#include "sim/station.h"

namespace
{

using namespace veltosim;

Station make_station(const Options& options)
{
    ClipStore store = ClipStore::with_examples();
    for (const Clip& clip : options.clips) {
        store.add_clip(clip);
    }
    return {options.name, *options.standard, std::move(store)};
}

// Whoever started the program may have stopped reading: that is no failure.
void print(const std::string& text)
{
    std::fputs(text.c_str(), stdout);
    std::fflush(stdout);
}

int serve(const Options& options)
{
    asio::io_context context(1);
    Station station = make_station(options);
    const Log log(options.trace);
    Server server(context, options.address, station, log);

    asio::signal_set signals(context, SIGINT, SIGTERM);
    signals.async_wait([&](const std::error_code&, int) { server.stop(); });

    print(fmt::format("listening on {}:{}\n", options.address.to_string(), server_port));
    context.run();
    print(channel_table(station, std::chrono::steady_clock::now()));
    return exit_ok;
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
#ifdef SIGPIPE
    std::signal(SIGPIPE, SIG_IGN);
#endif
    int exit_code = exit_ok;
    const auto options = read_options(argc, argv, std::cout, std::cerr, exit_code);
    if (!options) {
        return exit_code;
    }
    try {
        return serve(*options);
    } catch (const asio::system_error& problem) {
        return report(*options, problem);
    }
}
